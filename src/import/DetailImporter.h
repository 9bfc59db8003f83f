#pragma once

#include <QElapsedTimer>
#include <QHash>
#include <QString>
#include <QStringList>
#include <memory>
#include <optional>

#include "ImportRule.h"
#include "PreparedInsert.h"

class Field;
class Transaction;

// The engine shared by the twelve import rules: it knows the declaration at
// hand, reads a text file or a spreadsheet's rows, checks each line as its
// form's family demands, and inserts it into the detail table. A message
// with the information icon ends the import at that line; the lines inserted
// before it stay. The inserts are grouped in a transaction for speed only:
// it is committed before any message is shown, and whenever the reading ends,
// whatever the answer to a question was. Every line goes in through one
// prepared statement with its values bound.
class DetailImporter
{
public:
    DetailImporter(const ImportRule& rule, const QString& parametros, int mes, int anio,
                   Field* progress);
    ~DetailImporter();

    // The text rule of the form; false when it stopped or could not read.
    bool ImportarTexto(const QString& path);
    // The spreadsheet rule of the form; false when it stopped or could not read.
    bool ImportarHoja(const QString& path, bool encabezado);

    // How many lines went into the detail table.
    qint64 Importadas() const { return m_importadas; }

    // The fields of a detail line in the order of the activity insert, or of
    // the annex insert (TipoComprobante empty where the form has none).
    enum Actividad { CodigoActividad, TipoActividad, Base, Alicuota, Impuesto };
    enum Comprobante { Fecha, Tipo, Numero, Denominacion, Cuit, Padron, Importe };

private:
    enum class Origen { Texto, Hoja };
    enum class Paso { Sigue, Detiene };

    // Declaration at hand.
    QString periodoArchivo() const;
    // Messages: the line's prefix, the text; questions answered Yes or No.
    Paso detener(const QString& texto);
    bool preguntar(const QString& texto, const QString& pregunta);
    void comenzar();
    void confirmar();
    void avanzar();

    Paso cabeceraDeclaracion(const QStringList& campos);
    Paso cabeceraAgente(const QStringList& campos);
    Paso tipoDeclaracion(bool rectificativa);
    Paso pie(const QStringList& campos);
    Paso detalleTexto(const QStringList& campos);
    Paso detalle(QStringList linea);
    Paso actividad(QStringList linea);
    Paso comprobante(QStringList linea);
    QStringList comprobanteDeColumnas(const QStringList& celdas, int desde) const;

    QString siguienteDetalle();
    QString tipoGuardado(const QString& tipo);
    // Stores a line; a line the database refuses stops the import, saying why.
    Paso insertar(const QStringList& columnas, const QStringList& valores);
    // Adds a line's amount to the sum the trailer must match.
    void sumar(qint64 centavos);

    const ImportRule& m_rule;
    Origen m_origen = Origen::Texto;
    QString m_tabla;
    QString m_padron, m_objeto, m_codigo, m_fecha, m_ctrl;
    bool m_rectificativa = false;
    int m_mes = 0;
    int m_anio = 0;
    QString m_periodo;   // the parameter's Periodo
    QString m_anioParam; // the parameter's Anio
    Field* m_progress = nullptr;

    qint64 m_linea = 0; // number of the line or row in hand
    qint64 m_importadas = 0;
    bool m_conCabecera = false;
    bool m_conPie = false;
    QString m_codigoArchivo;                  // the header's row code (annexes)
    std::optional<qint64> m_sumaCentavos = 0; // none once it overflowed
    qint64 m_proximo = -1;                    // next CodigoDetalle, read once
    std::unique_ptr<Transaction> m_transaccion;
    PreparedInsert m_insercion;
    QHash<QString, QString> m_comprobantes;
    QElapsedTimer m_desdeYield;
};
