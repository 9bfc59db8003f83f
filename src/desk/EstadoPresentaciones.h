#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

// How a form of a premises stands in one month.
enum class EstadoMes {
    SinAbrir,    // the month is not opened, or the form is not offered in it
    Pendiente,   // offered and not filed
    Original,    // filed, the original only
    Rectificada, // filed and rectified (with the count)
};

struct CeldaPresentacion {
    EstadoMes estado = EstadoMes::SinAbrir;
    int rectificaciones = 0;
    QString total; // the amount of the latest version, as stored
    QString clave; // the tree's key of the latest version, or of the form to start
};

// One form of one premises along the months.
struct FilaPresentacion {
    QString padron;
    QString objeto;
    QString formulario;
    QHash<QString, CeldaPresentacion> celdas; // by period, mm-yyyy

    CeldaPresentacion celda(const QString& periodo) const { return celdas.value(periodo); }
};

// The filings of one taxpayer month by month, read from the same tree that
// the taxpayer's window shows: what is filed, rectified, and what the months
// offer that is not filed yet.
class EstadoPresentaciones
{
public:
    void Cargar(int idContribuyente);

    int idContribuyente() const { return m_id; }
    // One row per form of each premises: those its flags offer and those it
    // has filed, premises by premises in the forms' order.
    const QVector<FilaPresentacion>& filas() const { return m_filas; }
    // The years that hold a filing, oldest first.
    QStringList anios() const;
    // The premises that opened `periodo` (mm-yyyy), as "padron|objeto".
    QStringList premisasAbiertas(const QString& periodo) const;
    QStringList premisas() const { return m_premisas; }

    // The text of a cell as the calendar shows it: "" not opened or not
    // offered, "Pendiente", "✓" and the total for an original, "R" with the
    // count of rectifications and the total.
    static QString Texto(const CeldaPresentacion& celda);
    // "F976  Padrón 4711-1": the form and its premises, without the zeros
    // that pad them.
    static QString Rotulo(const FilaPresentacion& fila);
    // The column of the form's table that holds its total.
    static QString ColumnaTotal(const QString& formulario);

private:
    void leerArbol();
    void leerTotales();
    FilaPresentacion& fila(const QString& padron, const QString& objeto, const QString& form);
    void agregarOfrecidos(const QString& padron, const QString& objeto, const QString& retencion,
                          const QString& percepcion, const QString& regimen);
    void ordenar();

    int m_id = 0;
    QVector<FilaPresentacion> m_filas;
    QStringList m_premisas;
    QHash<QString, QStringList> m_abiertos; // period -> premises
    QHash<QString, QString> m_totalDe;      // latest version's key -> total
};

// Opens the declaration, or the form to start, whose tree key is `clave`, as a
// double click on that node of the taxpayer's tree does; false when the tree no
// longer holds it.
bool AbrirDeclaracion(int idContribuyente, const QString& clave);

// The months' short names, "Ene" to "Dic".
QString MesCorto(int mes);
