#pragma once

#include <QString>
#include <QStringList>
#include <QVector>
#include <memory>

#include "Db.h"
#include "Seed.h"
#include "TestSupport.h"
#include "Tovak.h"
#include "declarations/DetalleDialog.h"
#include "declarations/FormularioDDJJ.h"
#include "declarations/FormulariosDDJJ.h"

// One premises of one taxpayer, and the parameter strings with which the
// tree and the dispatcher open its declarations of March 2024 (or those of
// another premises and period, given as a `Lugar`).
namespace fx {

inline const QString kPadron = QStringLiteral("0000000012345");
inline const QString kObjeto = QStringLiteral("0000000000007");
inline const QString kPeriodo = QStringLiteral("03-2024");

// Whose declaration, and of which period (mm-yyyy).
struct Lugar {
    QString padron = kPadron;
    QString objeto = kObjeto;
    QString periodo = kPeriodo;
    int contribuyente = 1;
};

// The key of a declaration's rows: padrón, period without its "-", objeto,
// and "O" for an original or "R".
inline QString codigo(QChar letra, const Lugar& l = {})
{
    return l.padron + QString(l.periodo).remove(u'-') + l.objeto + letra;
}

inline void premises(const QString& regimen = QStringLiteral("0"),
                     const QString& retencion = QStringLiteral("1"),
                     const QString& percepcion = QStringLiteral("1"))
{
    Seed::AddTaxpayer(1, QStringLiteral("GÓMEZ, ANA"));
    Seed::AddPremises("12345", "7",
                      {"idContribuyente=1", "razon_social=ALMACÉN O'HIGGINS",
                       "calle_numero=O'HIGGINS 1234", "regimen=" + regimen,
                       "retencion=" + retencion, "percepcion=" + percepcion});
}

// How the string of every declaration begins.
inline QString cabeza(const QString& form, const Lugar& l = {})
{
    return QStringLiteral("Padron=") + l.padron + QStringLiteral(" - Objeto N° ") + l.objeto +
           QStringLiteral(";Anio=") + l.periodo.right(4) + QStringLiteral(";Periodo=") +
           l.periodo.left(2) + QStringLiteral(";Formulario=") + form;
}

// The string of a form not yet started, as the dispatcher hands it over.
inline QString nuevo(const QString& form, const Lugar& l = {})
{
    return cabeza(form, l) +
           QStringLiteral(";Rectificativa=Falso;FechaRectificativa=0;FechaRectificativaNueva=0;"
                          "Nuevo=Verdadero;ConDatos=Falso;idEncFormulario=-1;ctrl=0;"
                          "idContribuyente=") +
           QString::number(l.contribuyente) + QStringLiteral(";Codigo=") + codigo(u'O', l) + u';';
}

// An existing version, opened with "Modificar" (or "Consultar").
inline QString existente(const QString& form, const QString& rect = QStringLiteral("Falso"),
                         const QString& fecha = QStringLiteral("0"),
                         const QString& ctrl = QStringLiteral("0"),
                         const QString& nuevoValor = QStringLiteral("Falso"), const Lugar& l = {})
{
    const bool r = rect == QLatin1String("True") || rect == QLatin1String("Verdadero");
    return cabeza(form, l) + QStringLiteral(";Nuevo=") + nuevoValor +
           QStringLiteral(";ConDatos=Verdadero;Rectificativa=") + rect +
           QStringLiteral(";FechaRectificativa=") + fecha + QStringLiteral(";ctrl=") + ctrl +
           QStringLiteral(";idContribuyente=") + QString::number(l.contribuyente) +
           QStringLiteral(";Codigo=") + codigo(r ? u'R' : u'O', l) + u';';
}

// A new rectification: with the lines of the version before it or without.
inline QString rectificativa(const QString& form, bool conDatos, const QString& fechaPrevia,
                             const QString& ctrlNuevo, const QString& fechaNueva)
{
    return cabeza(form) + QStringLiteral(";Nuevo=True;ConDatos=") + (conDatos ? "True" : "False") +
           QStringLiteral(";Rectificativa=True;FechaRectificativa=") + fechaPrevia +
           QStringLiteral(";ctrl=") + ctrlNuevo +
           QStringLiteral(";idContribuyente=1;FechaRectificativaNueva=") + fechaNueva +
           QStringLiteral(";Codigo=") + codigo(u'R') + u';';
}

// Writes one line as the detail dialog does: the next CodigoDetalle of the
// version named in the dialog's string.
inline void writeLine(const QString& table, const QString& parametros, const QStringList& cols,
                      const QStringList& values)
{
    QStringList pairs, version;
    for (const QString key : {"Codigo", "FechaRectificativa", "ctrl"}) {
        pairs << key + u'=' + ReadParameter(parametros, key);
        version << key + QStringLiteral(" = '") + ReadParameter(parametros, key) + u'\'';
    }
    const int next = Db::count(table, version.join(QStringLiteral(" AND "))) + 1;
    pairs << QStringLiteral("CodigoDetalle=") + QString::number(next).rightJustified(4, u'0');
    for (int i = 0; i < cols.size(); ++i)
        pairs << cols[i] + u'=' + values.value(i);
    Db::insert(table, pairs);
}

inline const QStringList kActividad =
    QStringLiteral("CodigoActividad TipoActividad BaseImponible Alicuota Impuesto").split(u' ');
inline const QStringList kComprobante =
    QStringLiteral("Fecha TipoComprobante NroComprobante Denominacion Cuit Padron ImportePercibido")
        .split(u' ');

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
    const QStringList version{"Padron=" + kPadron,           "Objeto=" + kObjeto,
                              "Periodo=" + kPeriodo,         "Rectificativa=" + rect,
                              "FechaRectificativa=" + fecha, "ctrl=" + ctrl};
    Db::insert(form,
               version + QStringList{"Codigo=" + codigo(r ? u'R' : u'O'), column + '=' + value});
    Db::insert("TPadrones_Formularios", version + QStringList{"idFormulario=" + form});
}

// A receipt of an annex: date, type, number, name, CUIT, padrón and amount.
inline QStringList comprobante(const QString& nro, const QString& importe,
                               const QString& tipo = QStringLiteral("FACA - Factura A"))
{
    return QStringLiteral("05-03-2024|%1|%2|PROVEEDOR %3|30-71234567-1|0000000000099|%4")
        .arg(tipo, nro.rightJustified(15, u'0'), nro, importe)
        .split(u'|');
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

// The string a form hands its detail dialog on "Agregar"; with `id`, on
// "Modificar".
inline QString detalle(const QString& form, const QString& id = {}, const Lugar& l = {})
{
    QString s = QStringLiteral("Padron=") + l.padron + QStringLiteral(" - Objeto N° ") + l.objeto +
                QStringLiteral(";Periodo=") + l.periodo + u';';
    if (!id.isEmpty())
        s += QStringLiteral("Id=") + id + u';';
    return s + QStringLiteral("Rectificativa=False;Codigo=") + codigo(u'O', l) +
           QStringLiteral(";Formulario=") + form +
           QStringLiteral(";FechaRectificativa=0;Codigo=") + codigo(u'O', l) +
           QStringLiteral(";DetalleNuevo=Verdadero;ctrl=0;");
}

// The detail dialog of a form as the form makes it, not yet loaded.
inline std::unique_ptr<DetalleDialog> dialogo(const QString& form)
{
    return crearForm(form)->definicion().crearDetalle();
}

// The detail dialog as the form's "Agregar" opens it (no `id`) or
// "Modificar", with the line before it to recall.
inline std::unique_ptr<DetalleDialog> abrirDetalle(const QString& form, const QString& id = {},
                                                   const QStringList& ultimo = {})
{
    auto d = dialogo(form);
    d->Parametros = detalle(form, id);
    d->EsAgrega = id.isEmpty();
    d->Ultimo = ultimo;
    d->load();
    return d;
}

// One column of the original's lines in `table`, by line number.
inline QStringList lineas(const QString& table, const QString& column)
{
    return Db::column(QStringLiteral("SELECT %1 FROM %2 WHERE Codigo = '%3' ORDER BY CodigoDetalle")
                          .arg(column, table, codigo(u'O')));
}

} // namespace fx
