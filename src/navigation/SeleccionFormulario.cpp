#include "SeleccionFormulario.h"

#include <QDate>
#include <QTime>

#include "FormTables.h"
#include "Globals.h"
#include "NavigationText.h"
#include "SqlText.h"
#include "Transaction.h"
#include "UiPort.h"
#include "Util.h"
#include "Validar.h"
#include "ZoAccess.h"
#include "ZoParameterString.h"

namespace {

const QString kFecha = QStringLiteral("txtFecha");
const QString kAceptar = QStringLiteral("cmdAceptar");
const QString kCancelar = QStringLiteral("cmdCancelar");

// The options in the order of OpcionesSeleccion.
const char* const kOptions[] = {"optModificar", "optRectificativaSinDatos",
                                "optRectificativaConDatos", "optEliminar", "optConsultar"};

QString option(int index)
{
    return QString::fromLatin1(kOptions[index]);
}

// The latest date of the declaration's rectifications, by form.
QString latestDateSql(const QString& form, const QString& padron, const QString& objeto,
                      const QString& mm, const QString& yyyy)
{
    if (form == QLatin1String("F976") || form == QLatin1String("F978") ||
        form == QLatin1String("F2001")) {
        const QString code = padron + mm + yyyy + objeto;
        return QStringLiteral("SELECT MAX(FECHARECTIFICATIVA) FROM ") + form +
               QStringLiteral(" WHERE CODIGO IN (") + Quoted(code + u'O') + u',' +
               Quoted(code + u'R') + u')';
    }
    if (form == QLatin1String("F986") || form == QLatin1String("F988"))
        return QStringLiteral("SELECT MAX(FECHARECTIFICATIVA) FROM ") + form +
               QStringLiteral(" WHERE PADRON = ") + Quoted(padron) +
               QStringLiteral(" AND PERIODO = ") + Quoted(mm + u'-' + yyyy);
    // The annexes F977, F985 and F987 have never had a statement of their own:
    // the test runs whatever the last action left in gSql.
    return gSql;
}

// A new rectification date is refused only when its year, month and day are
// each at most those of the earlier date, compared as texts.
bool notLater(const QString& date, const QString& earlier)
{
    return date.right(4) <= earlier.right(4) && date.mid(3, 2) <= earlier.mid(3, 2) &&
           date.left(2) <= earlier.left(2);
}

} // namespace

SeleccionFormulario::SeleccionFormulario() : Controller(QStringLiteral("SeleccionFormulario")) {}

void SeleccionFormulario::design()
{
    setCaption(QStringLiteral("Selección de Formulario"));
    const char* const captions[] = {"Modificar", "Rectificativa sin datos",
                                    "Rectificativa con datos", "Eliminar", "Consultar"};
    for (int i : {4, 0, 1, 2, 3})
        add(option(i), FieldKind::Option, QString::fromUtf8(captions[i]))
            .setGroup(QStringLiteral("opciones"));
    field(option(0)).setValue(1);
    add(QStringLiteral("lblFecha"), FieldKind::Label,
        QStringLiteral("Fecha presentación ddjj anterior"));
    Field& fecha = add(kFecha, FieldKind::Text);
    fecha.setMask(QStringLiteral("##-##-####"));
    fecha.setText(fecha.blankMask());
    fecha.setEnabled(false);
    add(kAceptar, FieldKind::Button, QStringLiteral("Aceptar"));
    add(kCancelar, FieldKind::Button, QStringLiteral("Cancelar"));

    on(option(1), Ev::Click, [this](EventArgs&) { chooseRectificativa(); });
    on(option(2), Ev::Click, [this](EventArgs&) { chooseRectificativa(); });
    for (int i : {0, 3, 4})
        on(option(i), Ev::Click, [this](EventArgs&) { chooseOther(); });
    on(kFecha, Ev::Validate, [this](EventArgs& e) { e.cancel = !validDateField(); });
    // Aceptar is the default button: Enter on a choice or on the date accepts.
    const Handler acceptOnEnter = [this](EventArgs& e) {
        if (e.key == KeyCode::Return) {
            e.key = 0;
            aceptar();
        }
    };
    for (int i : {4, 0, 1, 2, 3})
        on(option(i), Ev::KeyPress, acceptOnEnter);
    on(kFecha, Ev::KeyPress, acceptOnEnter);
    on(kAceptar, Ev::Click, [this](EventArgs&) { aceptar(); });
    on(kCancelar, Ev::Click, [this](EventArgs&) { cancelar(); });
}

QString SeleccionFormulario::value(const char* key) const
{
    return gParameters().ReadValue(Parametros, QString::fromLatin1(key));
}

void SeleccionFormulario::onLoad()
{
    OpcionesSeleccion = -1;
    m_stayOpen = false;
    const QString periodo = value("Periodo");
    m_mes = periodo.left(2).toInt();
    m_anio = (periodo.size() > 2 ? periodo.right(4) : value("Anio")).toInt();
    if (m_mes == 0)
        m_mes = QDate::currentDate().month();
    if (m_anio == 0)
        m_anio = QDate::currentDate().year();

    if (!isLatest()) {
        // Only the latest declaration can change; the others can be looked at.
        for (int i : {0, 1, 2, 3})
            field(option(i)).setEnabled(false);
        field(option(4)).setEnabled(true);
        field(option(0)).setValue(0);
        field(option(4)).setValue(1);
    }
    if (!field(option(4)).checked() && IsEncFormularioCopy(Parametros)) {
        // A copy must be completed before it can be rectified.
        field(option(0)).setValue(1);
        field(option(1)).setEnabled(false);
        field(option(2)).setEnabled(false);
        field(kFecha).setEnabled(false);
    }
}

bool SeleccionFormulario::isLatest()
{
    const QString padron = value("Padron");
    const QString form = value("Formulario");
    if (!FormTables::find(form))
        return true;
    const QString periodo = value("Periodo");
    const QString period = periodo.size() > 2 ? periodo : TwoDigits(periodo) + u'-' + value("Anio");
    gSql = QStringLiteral("SELECT MAX(ctrl) FROM ") + form + QStringLiteral(" WHERE Padron = ") +
           Quoted(PadronOfValue(padron)) + QStringLiteral(" AND Objeto = ") +
           Quoted(padron.right(13)) + QStringLiteral(" AND Periodo = ") + Quoted(period);
    const QString latest = gAccess().GetString(gSql);
    return latest.isEmpty() || latest == value("ctrl");
}

void SeleccionFormulario::onQueryUnload(bool& cancel, int mode)
{
    Q_UNUSED(cancel);
    // The close box is the same as Cancelar.
    if (mode == 0)
        OpcionesSeleccion = -1;
}

void SeleccionFormulario::chooseRectificativa()
{
    field(kFecha).setEnabled(true);
    setFocus(kFecha);
}

void SeleccionFormulario::chooseOther()
{
    field(kFecha).setEnabled(false);
}

bool SeleccionFormulario::validDateField()
{
    Field& fecha = field(kFecha);
    if (fecha.isBlankMask() || TextToDate(fecha.text()).isValid())
        return true;
    MsgBox(QStringLiteral("La fecha ingresa es incorrecta."), Msg::Critical,
           QStringLiteral("Atención..."));
    return false;
}

void SeleccionFormulario::aceptar()
{
    m_stayOpen = false;
    if (field(option(1)).checked() || field(option(2)).checked()) {
        if (!dateOrderPasses())
            return;
        if (field(option(1)).checked())
            RectificativaSinDatos();
        else
            RectificativaConDatos();
    } else if (field(option(3)).checked()) {
        Eliminar();
    } else if (field(option(4)).checked()) {
        Consultar();
    } else {
        Modificar();
    }
    if (!m_stayOpen)
        hide();
}

void SeleccionFormulario::cancelar()
{
    OpcionesSeleccion = -1;
    hide();
}

bool SeleccionFormulario::dateOrderPasses()
{
    const Field& fecha = field(kFecha);
    if (fecha.isBlankMask() || fecha.clipText().isEmpty())
        return true;
    const QDate typed = TextToDate(fecha.text());
    const QString date =
        typed.isValid() ? typed.toString(QStringLiteral("dd-MM-yyyy")) : fecha.text();
    const QString padron = value("Padron");
    const QString mm = TwoDigits(value("Periodo").left(2));
    const QString yyyy = value("Periodo").size() > 2 ? value("Periodo").right(4) : value("Anio");
    gSql = latestDateSql(value("Formulario"), PadronOfValue(padron), padron.right(13), mm, yyyy);
    // A date that carries its time is compared by its day.
    const QString earlier = gAccess().GetString(gSql).left(10);
    if (!notLater(date, earlier))
        return true;
    MsgBox(QStringLiteral("La fecha de Rectificativa debe ser mayor a la del formulario"),
           Msg::Information);
    setFocus(kFecha);
    return false;
}

void SeleccionFormulario::Consultar()
{
    OpcionesSeleccion = 4;
    Parametros =
        gParameters().SetValue(Parametros, QStringLiteral("ConDatos"), QStringLiteral("True"));
    Parametros =
        gParameters().SetValue(Parametros, QStringLiteral("Nuevo"), QStringLiteral("Consultar"));
}

void SeleccionFormulario::Modificar()
{
    OpcionesSeleccion = 0;
    Parametros =
        gParameters().SetValue(Parametros, QStringLiteral("ConDatos"), QStringLiteral("True"));
    Parametros =
        gParameters().SetValue(Parametros, QStringLiteral("Nuevo"), QStringLiteral("False"));
}

bool SeleccionFormulario::rectificationDateAccepted()
{
    Field& fecha = field(kFecha);
    if (fecha.isBlankMask() || fecha.clipText().isEmpty()) {
        MsgBox(QStringLiteral("Debe ingresar una fecha."), Msg::Exclamation,
               QStringLiteral("Atención !"));
        setFocus(kFecha);
        m_stayOpen = true;
        return false;
    }
    if (!gValidar().FechaPeriodo(fecha, m_mes, m_anio, 1, true)) {
        m_stayOpen = true;
        return false;
    }
    return true;
}

void SeleccionFormulario::patch(const QString& fechaNueva, const QString& conDatos)
{
    if (!Parametros.endsWith(u';'))
        Parametros += u';';
    Parametros += QStringLiteral("FechaRectificativaNueva=") + fechaNueva + u';';
    const ZoParameterString& ps = gParameters();
    Parametros = ps.SetValue(Parametros, QStringLiteral("Rectificativa"), QStringLiteral("True"));
    Parametros = ps.SetValue(Parametros, QStringLiteral("ConDatos"), conDatos);
    Parametros = ps.SetValue(Parametros, QStringLiteral("Nuevo"), QStringLiteral("True"));
    hide();
}

void SeleccionFormulario::RectificativaSinDatos()
{
    OpcionesSeleccion = 1;
    if (rectificationDateAccepted())
        patch(field(kFecha).text(), QStringLiteral("False"));
}

void SeleccionFormulario::RectificativaConDatos()
{
    OpcionesSeleccion = 2;
    if (!rectificationDateAccepted())
        return;
    const QDateTime when(TextToDate(field(kFecha).text()), QTime::currentTime());
    patch(when.toString(QStringLiteral("dd-MM-yyyy HH:mm:ss")), QStringLiteral("True"));
}

void SeleccionFormulario::Eliminar()
{
    OpcionesSeleccion = 3;
    const QString form = value("Formulario");
    const FormTables* tables = FormTables::find(form);
    if (!tables)
        return;
    const QString padronValue = value("Padron");
    const QString padron = PadronOfValue(padronValue);
    const QString objeto = padronValue.right(13);
    const QString periodo = value("Periodo");
    const QString mm = TwoDigits(periodo.left(2));
    const QString yyyy = periodo.size() > 2 ? periodo.right(4) : value("Anio");
    const QString period = mm + u'-' + yyyy;
    const bool original = IsNoText(value("Rectificativa"));
    QString fecha = value("FechaRectificativa");
    if (fecha == QLatin1String("__-__-____") || fecha == QLatin1String("NO"))
        fecha = QStringLiteral("0");
    const QString ctrl = value("ctrl");

    ZoAccess& db = gAccess();
    const QString latest = db.GetString(
        QStringLiteral("SELECT ctrl FROM ") + form + QStringLiteral(" WHERE Padron = ") +
        Quoted(padron) + QStringLiteral(" AND Objeto = ") + Quoted(objeto) +
        QStringLiteral(" AND Periodo = ") + Quoted(period) + QStringLiteral(" ORDER BY ctrl DESC"));
    if (latest != ctrl) {
        MsgBox(QStringLiteral("No se puede eliminar este formulario.\r\n"
                              "Debe eliminar los formularios mas recientes primero."),
               Msg::Exclamation);
        return;
    }
    // The question names the declaration it deletes.
    const QString nombrada = QStringLiteral("\nFormulario ") + form + QStringLiteral(" del período ") +
                             period +
                             (original ? QStringLiteral(", original")
                                       : QStringLiteral(", rectificativa ") + fecha) +
                             QStringLiteral(" - Padrón ") + padron + QStringLiteral(" Objeto ") +
                             objeto;
    if (MsgBox(QStringLiteral("Esta seguro de eliminar el formulario?") + nombrada,
               Msg::YesNo + Msg::Question, QStringLiteral("Eliminar")) != Msg::Yes) {
        m_stayOpen = true;
        return;
    }
    field(kAceptar).setEnabled(false);
    field(kCancelar).setEnabled(false);
    const QString kind = original ? QStringLiteral("AND Rectificativa in ('False','Falso') ")
                                  : QStringLiteral("AND Rectificativa in ('True','Verdadero') ");
    const QString version = kind + QStringLiteral("AND FECHARECTIFICATIVA = ") + Quoted(fecha) +
                            QStringLiteral(" AND ctrl = ") + Quoted(ctrl);
    const QString where = QStringLiteral("WHERE Padron = ") + Quoted(padron) +
                          QStringLiteral(" AND Objeto = ") + Quoted(objeto) +
                          QStringLiteral(" AND Periodo = ") + Quoted(period) + u' ';
    // The declaration, its lines and its registration go together or stay;
    // a deletion the database refuses keeps the window open.
    if (!SaveWhole([&] {
            if (!tables->detailTable.isEmpty()) {
                const QString codigo = db.GetString(QStringLiteral("SELECT Codigo FROM ") + form +
                                                    u' ' + where + version);
                db.Execute(QStringLiteral("DELETE FROM ") + tables->detailTable.toUpper() +
                           QStringLiteral(" WHERE Codigo = ") + Quoted(codigo) +
                           QStringLiteral(" AND ctrl = ") + Quoted(ctrl));
            }
            db.Execute(QStringLiteral("DELETE FROM ") + form + u' ' + where + version);
            // The registration row goes with the declaration, for every form alike.
            db.Execute(QStringLiteral("DELETE FROM TPADRONES_FORMULARIOS ") + where +
                       QStringLiteral(" AND idFormulario = ") + Quoted(form) + u' ' + version);
            return true;
        }))
        m_stayOpen = true;
    field(kAceptar).setEnabled(true);
    field(kCancelar).setEnabled(true);
}
