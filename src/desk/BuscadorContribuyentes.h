#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

// One taxpayer as the finder lists it.
struct ContribuyenteListado {
    int id = 0;
    QString nombre;
    QString cuit;  // masked, as the taxpayer dialog keeps it
    QString clave; // name and CUIT folded for the search, in both spellings
};

// The finder of the main window: every taxpayer, filtered as one types by name
// or CUIT without regard to case or accents, in the order asked for, the
// recently opened first when so asked. The recent ones are kept per user.
class BuscadorContribuyentes
{
public:
    enum Orden { Recientes = 0, PorNombre = 1, PorCuit = 2 };

    // Reads every taxpayer from the table.
    void Cargar();
    // Takes the list as given (the benchmark's synthetic desk).
    void Asignar(QVector<ContribuyenteListado> lista);

    int count() const { return int(m_lista.size()); }
    const ContribuyenteListado& at(int index) const { return m_lista.at(index); }

    // The taxpayers whose name or CUIT holds every word of `texto`, as
    // indices of at(), in the order asked for.
    QVector<int> Filtrar(const QString& texto, Orden orden) const;

    // Lower case without accents: "Ñandú" and "ñandu" read "nandu".
    static QString Plegar(const QString& text);

    // The CUITs opened lately, the latest first.
    static QStringList ListaRecientes();
    // Puts a CUIT at the head of the recent ones.
    static void RecordarReciente(const QString& cuit);
    static constexpr int kRecientes = 10;

private:
    void ordenar();
    static bool coincide(const QString& clave, const QStringList& palabras);

    QVector<ContribuyenteListado> m_lista;
    QVector<int> m_porNombre;
    QVector<int> m_porCuit;
};
