#pragma once

#include <QString>
#include <QStringList>
#include <QVector>
#include <memory>

#include "Globals.h"
#include "SqlText.h"
#include "TestSupport.h"
#include "Tovak.h"
#include "ZoAccess.h"
#include "declarations/DetalleDialog.h"
#include "declarations/FormularioDDJJ.h"
#include "declarations/FormulariosDDJJ.h"

// One premises of one taxpayer, and the parameter strings with which the
// tree and the dispatcher open its declarations of March 2024.
namespace fx {

inline const QString kPadron = QStringLiteral("0000000012345");
inline const QString kObjeto = QStringLiteral("0000000000007");
inline const QString kPeriodo = QStringLiteral("03-2024");

inline QString codigo(QChar letra)
{
    return kPadron + QStringLiteral("032024") + kObjeto + letra;
}

inline void premises(const QString& regimen = QStringLiteral("0"),
                     const QString& retencion = QStringLiteral("1"),
                     const QString& percepcion = QStringLiteral("1"))
{
    gAccess().Execute(QStringLiteral("INSERT INTO Contribuyentes (idContribuyente, "
                                     "ApellidoNombre, Cuit) VALUES (1, 'GÓMEZ, ANA', "
                                     "'20-12345678-6')"));
    gAccess().Execute(
        QStringLiteral("INSERT INTO tPadronesComerciales (idContribuyente, cuit, padron, objeto, "
                       "razon_social, percepcion, retencion, regimen, calle_numero, "
                       "localidad_departamento, cp) VALUES (1, '20123456786', '%1', '%2', "
                       "'ALMACÉN O''HIGGINS', '%3', '%4', '%5', 'O''HIGGINS 1234', 'CAPITAL', "
                       "'5500')")
            .arg(kPadron, kObjeto, percepcion, retencion, regimen));
}

// The string of a form not yet started, as the dispatcher hands it over.
inline QString nuevo(const QString& form)
{
    return QStringLiteral("Padron=") + kPadron + QStringLiteral(" - Objeto N° ") + kObjeto +
           QStringLiteral(";Anio=2024;Periodo=03;Formulario=") + form +
           QStringLiteral(";Rectificativa=Falso;FechaRectificativa=0;FechaRectificativaNueva=0;"
                          "Nuevo=Verdadero;ConDatos=Falso;idEncFormulario=-1;ctrl=0;"
                          "idContribuyente=1;Codigo=") +
           codigo(u'O') + u';';
}

// An existing version, opened with "Modificar" (or "Consultar").
inline QString existente(const QString& form, const QString& rect = QStringLiteral("Falso"),
                         const QString& fecha = QStringLiteral("0"),
                         const QString& ctrl = QStringLiteral("0"),
                         const QString& nuevoValor = QStringLiteral("Falso"))
{
    const bool r = rect == QLatin1String("True") || rect == QLatin1String("Verdadero");
    return QStringLiteral("Padron=") + kPadron + QStringLiteral(" - Objeto N° ") + kObjeto +
           QStringLiteral(";Anio=2024;Periodo=03;Formulario=") + form + QStringLiteral(";Nuevo=") +
           nuevoValor + QStringLiteral(";ConDatos=Verdadero;Rectificativa=") + rect +
           QStringLiteral(";FechaRectificativa=") + fecha + QStringLiteral(";ctrl=") + ctrl +
           QStringLiteral(";idContribuyente=1;Codigo=") + codigo(r ? u'R' : u'O') + u';';
}

// A new rectification: with the lines of the version before it or without.
inline QString rectificativa(const QString& form, bool conDatos, const QString& fechaPrevia,
                             const QString& ctrlNuevo, const QString& fechaNueva)
{
    return QStringLiteral("Padron=") + kPadron + QStringLiteral(" - Objeto N° ") + kObjeto +
           QStringLiteral(";Anio=2024;Periodo=03;Formulario=") + form +
           QStringLiteral(";Nuevo=True;ConDatos=") + (conDatos ? "True" : "False") +
           QStringLiteral(";Rectificativa=True;FechaRectificativa=") + fechaPrevia +
           QStringLiteral(";ctrl=") + ctrlNuevo + QStringLiteral(";idContribuyente=1;") +
           QStringLiteral("FechaRectificativaNueva=") + fechaNueva + QStringLiteral(";Codigo=") +
           codigo(u'R') + u';';
}

inline int count(const QString& sql)
{
    return gAccess().GetInteger(sql);
}

inline QStringList column(const QString& sql)
{
    QStringList out;
    RecordsetPtr rs = gAccess().FillRecordSet(sql);
    for (; rs && !rs->EOF_(); rs->MoveNext())
        out << rs->Text(0);
    return out;
}

// Writes one line as the detail dialog does: the next CodigoDetalle of the
// version named in the dialog's string.
inline void writeLine(const QString& table, const QString& parametros, const QStringList& cols,
                      const QStringList& values)
{
    const QString cod = ReadParameter(parametros, QStringLiteral("Codigo"));
    const QString fecha = ReadParameter(parametros, QStringLiteral("FechaRectificativa"));
    const QString ctrl = ReadParameter(parametros, QStringLiteral("ctrl"));
    const int next = gAccess().GetInteger(QStringLiteral("SELECT COUNT(*) FROM ") + table +
                                          QStringLiteral(" WHERE Codigo = '") + cod +
                                          QStringLiteral("' AND FechaRectificativa = '") + fecha +
                                          QStringLiteral("' AND ctrl = '") + ctrl + u'\'') +
                     1;
    QStringList quoted;
    for (const QString& v : values)
        quoted << u'\'' + Sq(v) + u'\'';
    gAccess().Execute(QStringLiteral("INSERT INTO ") + table +
                      QStringLiteral(" (Codigo, FechaRectificativa, CodigoDetalle, ctrl, ") +
                      cols.join(u',') + QStringLiteral(") VALUES ('") + cod +
                      QStringLiteral("', '") + fecha + QStringLiteral("', '") +
                      QString::number(next).rightJustified(4, u'0') + QStringLiteral("', '") +
                      ctrl + QStringLiteral("', ") + quoted.join(u',') + u')');
}

inline const QStringList kActividad = {
    QStringLiteral("CodigoActividad"), QStringLiteral("TipoActividad"),
    QStringLiteral("BaseImponible"), QStringLiteral("Alicuota"), QStringLiteral("Impuesto")};
inline const QStringList kComprobante = {QStringLiteral("Fecha"),
                                         QStringLiteral("TipoComprobante"),
                                         QStringLiteral("NroComprobante"),
                                         QStringLiteral("Denominacion"),
                                         QStringLiteral("Cuit"),
                                         QStringLiteral("Padron"),
                                         QStringLiteral("ImportePercibido")};

// Plays the person in the detail dialog: each opening writes the next of
// `lines` into `table` and accepts.
inline void scriptLines(TestEnv& env, const QString& dialog, const QString& table,
                        const QStringList& cols, const QVector<QStringList>& lines)
{
    for (const QStringList& line : lines)
        env.ui().onShow(dialog, [line, table, cols](Controller& c) {
            auto& d = static_cast<DetalleDialog&>(c);
            writeLine(table, d.Parametros, cols, line);
            d.Aceptado = true;
            d.unload();
        });
}

// A stored version: its header row holding `column` = `value`, and its
// registration row.
inline void storeVersion(const QString& form, const QString& column, const QString& value,
                         const QString& rect = QStringLiteral("False"),
                         const QString& fecha = QStringLiteral("0"),
                         const QString& ctrl = QStringLiteral("0"))
{
    const bool r = rect == QLatin1String("True") || rect == QLatin1String("Verdadero");
    const QStringList values{
        codigo(r ? u'R' : u'O'), kPadron, kObjeto, kPeriodo, rect, fecha, ctrl, value};
    gAccess().Execute(QStringLiteral("INSERT INTO ") + form +
                      QStringLiteral(" (Codigo, Padron, Objeto, Periodo, Rectificativa, "
                                     "FechaRectificativa, ctrl, ") +
                      column + QStringLiteral(") VALUES ('") + values.join(QStringLiteral("', '")) +
                      QStringLiteral("')"));
    const QStringList reg{kPadron, kObjeto, kPeriodo, form, rect, fecha, ctrl};
    gAccess().Execute(QStringLiteral("INSERT INTO TPadrones_Formularios (Padron, Objeto, Periodo, "
                                     "idFormulario, Rectificativa, FechaRectificativa, ctrl) "
                                     "VALUES ('") +
                      reg.join(QStringLiteral("', '")) + QStringLiteral("')"));
}

// A form made as the dispatcher makes it, by its IdFormulario.
template <class Form = FormularioDDJJ> std::unique_ptr<Form> crearForm(const QString& form)
{
    RegistrarFormularios();
    return std::unique_ptr<Form>(static_cast<Form*>(CreateDeclarationForm(form).release()));
}

// Opens `form` with `parametros` as the dispatcher does, its version holding
// `lines` already: activities for the monthly returns, receipts otherwise.
inline void abrirForm(FormularioDDJJ& form, const QString& parametros,
                      const QVector<QStringList>& lines = {})
{
    for (const QStringList& l : lines)
        writeLine(form.definicion().tablaDetalle, parametros,
                  l.size() == kActividad.size() ? kActividad : kComprobante, l);
    form.Parametros = parametros;
    form.load();
}

} // namespace fx
