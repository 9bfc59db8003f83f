#include "DetalleActividad.h"

#include "Globals.h"
#include "Numbers.h"
#include "Recordset.h"
#include "SqlText.h"
#include "Tovak.h"
#include "UiPort.h"
#include "Util.h"
#include "Validar.h"
#include "ZoAccess.h"
#include "registry/Busqueda.h"

namespace {

const QString kIdActividad = QStringLiteral("txtIdActividad");
const QString kActividad = QStringLiteral("txtActividad");
const QString kBusqueda = QStringLiteral("cmdPrincipal");
const QString kBase = QStringLiteral("txtBaseImponible");
const QString kAlicuota = QStringLiteral("txtAlicuota");
const QString kTasa = QStringLiteral("txtTasa");

} // namespace

QStringList DetalleActividad::Alicuotas()
{
    QStringList out;
    for (double rate : {0.0, 0.43, 0.6, 1.2, 2.0, 2.4, 3.6, 6.0})
        out << LocaleFixed(rate, 2, false);
    return out;
}

DetalleActividad::DetalleActividad(const QString& windowName, const DatosActividad& datos)
    : DetalleDialog(windowName), m_datos(datos)
{
}

void DetalleActividad::design()
{
    clearHandlers();
    setCaption(QStringLiteral("Detalle de Actividades"));
    // The search comes before the code in the Tab order: Tab from a typed
    // code goes on to the base, past the description the code brings.
    add(kBusqueda, FieldKind::Button, QStringLiteral("..."));
    add(kIdActividad, FieldKind::Text).setMaxLength(6);
    add(kActividad, FieldKind::Text);
    add(kBase, FieldKind::Text);
    add(kAlicuota, FieldKind::Combo);
    add(m_datos.campoLibre, FieldKind::Text).setVisible(false);
    add(kTasa, FieldKind::Text);
    add(QStringLiteral("cmdAceptar"), FieldKind::Button, QStringLiteral("&Aceptar"));
    add(QStringLiteral("cmdCancelar"), FieldKind::Button, QStringLiteral("&Cancelar"));
    add(QStringLiteral("lblF3"), FieldKind::Label, QStringLiteral("F3: Recupera el valor anterior"))
        .setVisible(false);

    on(kBusqueda, Ev::Click, [this](EventArgs&) { BuscarActividad(); });
    on(QStringLiteral("cmdAceptar"), Ev::Click, [this](EventArgs&) { cmdAceptar(); });
    on(QStringLiteral("cmdCancelar"), Ev::Click, [this](EventArgs&) { unload(); });

    on(kIdActividad, Ev::KeyPress, [this](EventArgs& e) {
        if (e.key != KeyCode::Return)
            return;
        e.key = 0;
        setFocus(kBase);
    });
    on(kIdActividad, Ev::LostFocus, [this](EventArgs&) { DescribirActividad(); });

    const QString titulo = QStringLiteral("Advertencia...");
    for (const QString& name : {kBase, kTasa}) {
        handle(name, Ev::GotFocus, [this, name](EventArgs&) { field(name).selectAll(); });
        handle(name, Ev::KeyPress, [this, name](EventArgs& e) {
            gValidar().TextBox(e.key, field(name), Validar::Decimal, 2);
        });
    }
    handle(kAlicuota, Ev::GotFocus, [this](EventArgs&) { field(kAlicuota).selectAll(); });
    handle(kAlicuota, Ev::KeyPress, [this](EventArgs& e) {
        gValidar().TextBox(e.key, field(kAlicuota), Validar::Decimal, 2);
    });
    handle(kBase, Ev::Change, [this](EventArgs&) { CalcularTasa(); });
    handle(kAlicuota, Ev::Change, [this](EventArgs&) { CalcularTasa(); });
    handle(kBase, Ev::Validate, [this, titulo](EventArgs& e) {
        e.cancel = !AmountRule(field(kBase), m_datos.mensajeIncorrecto, titulo);
        CalcularTasa();
    });
    handle(kAlicuota, Ev::Validate, [this, titulo](EventArgs& e) {
        Field& f = field(kAlicuota);
        if (f.text().trimmed().isEmpty())
            return;
        e.cancel = !AmountRule(f, m_datos.mensajeIncorrecto, titulo);
        SetComboText(f, f.text());
        CalcularTasa();
    });
    handle(kTasa, Ev::Validate, [this](EventArgs&) {
        Field& f = field(kTasa);
        if (!f.text().isEmpty())
            f.setText(FormatAmount(f.text()));
    });
    addRecall(kBase, 3);
    addRecall(kAlicuota, 4);
    addRecall(kTasa, 5);
}

void DetalleActividad::onLoad()
{
    CargarAlicuotas();
    if (!Parametros.trimmed().isEmpty())
        cargaDatos();
    // A line in edit keeps its activity: the code is the line's identity.
    m_lineaNueva = field(kIdActividad).text().trimmed().isEmpty();
    for (const QString& name : {kIdActividad, kBusqueda, kActividad})
        field(name).setEnabled(m_lineaNueva);
    // A new line starts at its code, though the search comes first in the
    // Tab order.
    if (m_lineaNueva)
        setFocus(kIdActividad);
}

void DetalleActividad::CargarAlicuotas()
{
    Field& f = field(kAlicuota);
    f.clearItems();
    for (const QString& rate : Alicuotas())
        f.addItem(rate);
}

QString DetalleActividad::FechaLinea() const
{
    const QString nueva = Parametro(QStringLiteral("FechaRectificativaNueva"));
    if (m_datos.fechaNueva && !nueva.isEmpty() && nueva != QStringLiteral("0"))
        return FechaClave(nueva);
    return FechaClave(Parametro(QStringLiteral("FechaRectificativa")));
}

void DetalleActividad::cargaDatos()
{
    RecordsetPtr rs = gAccess().FillRecordSet(
        QStringLiteral("SELECT * FROM %1 WHERE CODIGO = '%2' AND CodigoDetalle = '%3' AND "
                       "FECHARECTIFICATIVA = '%4' AND ctrl = '%5'")
            .arg(m_datos.tabla, Sq(CodigoDeclaracion(Parametros)), Sq(IdDetalle()),
                 Sq(FechaLinea()), Sq(Parametro(QStringLiteral("ctrl")))));
    const QString zero = FormatAmount(QStringLiteral("0"));
    if (!rs || rs->RecordCount() == 0) {
        field(kBase).setText(zero);
        field(kTasa).setText(zero);
        SetComboText(field(kAlicuota), zero);
        return;
    }
    field(kIdActividad).setText(rs->Text(QStringLiteral("CodigoActividad")));
    field(kActividad).setText(rs->Text(QStringLiteral("TipoActividad")));
    field(kBase).setText(rs->Text(QStringLiteral("BaseImponible")));
    SetComboText(field(kAlicuota), rs->Text(QStringLiteral("Alicuota")));
    field(kTasa).setText(rs->Text(QStringLiteral("Impuesto")));
}

void DetalleActividad::CalcularTasa()
{
    // Half-typed figures are left alone: the tax follows once they read.
    const auto base = LocaleNumber(field(kBase).text());
    const auto rate = LocaleNumber(field(kAlicuota).text());
    if (!base || !rate)
        return;
    field(kTasa).setText(LocaleFixed(RoundDecimal(*base * (*rate / 100), 2), 2, true));
}

void DetalleActividad::BuscarActividad()
{
    Busqueda busqueda;
    busqueda.SelectCommandText = ActividadesDelPadron();
    busqueda.ConnectionString = gAccess().ConnectionString();
    busqueda.NombreFormulario = m_datos.formulario;
    busqueda.show(true);
    if (busqueda.Description.isEmpty())
        return;
    field(kIdActividad).setText(busqueda.Id);
    field(kActividad).setText(busqueda.Description);
}

QString DetalleActividad::ActividadesDelPadron() const
{
    const QString padron = Parametro(QStringLiteral("Padron"));
    return QStringLiteral("SELECT ACTP, ACTP_DESC,  ACT1, ACT1_DESC,  ACT2, ACT2_DESC,  ACT3, "
                          "ACT3_DESC,  ACT4, ACT4_DESC,  ACT5, ACT5_DESC  FROM "
                          "ACTIVIDADES_X_PADRONES WHERE PADRON = '%1' AND OBJETO = '%2' ")
        .arg(Sq(padron.left(13)), Sq(padron.mid(26, 13)));
}

void DetalleActividad::DescribirActividad()
{
    // A code typed by hand brings its description as the search would: one
    // of the premises' activities first, else the catalogue's name.
    const QString codigo = field(kIdActividad).text().trimmed();
    if (codigo.isEmpty() || !field(kIdActividad).enabled())
        return;
    QString descripcion;
    if (RecordsetPtr rs = gAccess().FillRecordSet(ActividadesDelPadron()); rs && !rs->EOF_())
        for (int i = 0; i + 1 < rs->FieldCount() && descripcion.isEmpty(); i += 2)
            if (rs->Text(i).trimmed() == codigo)
                descripcion = rs->Text(i + 1);
    if (descripcion.isEmpty() && IsNumericText(codigo))
        if (RecordsetPtr rs = gAccess().FillRecordSet(
                QStringLiteral("SELECT NOMBRE FROM TACTIVIDADES WHERE IDTACTIVIDAD = ") +
                QString::number(codigo.toLongLong()));
            rs && !rs->EOF_())
            descripcion = rs->Text(0);
    if (!descripcion.isEmpty())
        field(kActividad).setText(descripcion);
}

bool DetalleActividad::ActividadRepetida(const QString& codigo, const QString& fecha)
{
    const QString detalleNuevo = Parametro(QStringLiteral("DetalleNuevo"));
    const bool nueva =
        detalleNuevo.compare(QStringLiteral("Verdadero"), Qt::CaseInsensitive) == 0 ||
        detalleNuevo.compare(QStringLiteral("True"), Qt::CaseInsensitive) == 0;
    if (!(m_datos.duplicadoSiempre ? nueva : m_lineaNueva))
        return false;
    RecordsetPtr rs = gAccess().FillRecordSet(
        QStringLiteral("SELECT CODIGOACTIVIDAD, CodigoDetalle FROM %1  WHERE CODIGO = '%2' AND "
                       "FECHARECTIFICATIVA = '%3' AND ctrl = '%4'")
            .arg(m_datos.tabla.toUpper(), Sq(codigo), Sq(fecha),
                 Sq(Parametro(QStringLiteral("ctrl")))));
    if (!rs)
        return false;
    const QString actividad = field(kIdActividad).text();
    for (const auto& row : rs->rows()) {
        // The line in edit does not repeat itself.
        if (row.value(1).toString() == IdDetalle() && !IdDetalle().isEmpty())
            continue;
        if (row.value(0).toString() == actividad)
            return true;
    }
    return false;
}

void DetalleActividad::cmdAceptar()
{
    const auto blank = [this](const QString& name) {
        return field(name).text().trimmed().isEmpty();
    };
    const auto actividadPorDefecto = [this, &blank] {
        if (!blank(kIdActividad))
            return;
        field(kIdActividad).setText(QStringLiteral("999999"));
        field(kActividad).setText(QStringLiteral("Actividades A Clasificar"));
    };
    if (!Requerido(kBase, blank(kBase), QStringLiteral("Debe ingresar el dato Base Imponible")) ||
        !Requerido(kAlicuota, blank(kAlicuota), QStringLiteral("Debe ingresar el dato Alicuota")))
        return;
    if (m_datos.tasaTrasActividad)
        actividadPorDefecto();
    if (!Requerido(kTasa, blank(kTasa), QStringLiteral("Debe ingresar el dato Tasa")))
        return;
    actividadPorDefecto();

    const QString codigo = CodigoDeclaracion(Parametros);
    const QString fecha = FechaLinea();
    if (ActividadRepetida(codigo, fecha)) {
        MsgBox(QStringLiteral("Ya existe un detalle con esta actividad. Verifique.-"),
               Msg::Information, m_tituloMensajes);
        setFocus(kIdActividad);
        return;
    }
    SetCodigo(codigo);
    // A new line is numbered as it is written.
    const QString id = IdDetalle();
    if (!GrabarLinea(m_datos.tabla, codigo, id, fecha,
                     {QStringLiteral("TipoActividad"), QStringLiteral("CodigoActividad"),
                      QStringLiteral("BaseImponible"), QStringLiteral("Alicuota"),
                      QStringLiteral("Impuesto")},
                     {field(kActividad).text(), field(kIdActividad).text(), field(kBase).text(),
                      field(kAlicuota).text(), field(kTasa).text()}))
        return;
    Aceptar();
}
