#include "DetalleComprobante.h"

#include "Globals.h"
#include "Recordset.h"
#include "SqlText.h"
#include "UiPort.h"
#include "Util.h"
#include "Validar.h"
#include "ZoAccess.h"

namespace {

const QString kFecha = QStringLiteral("txtFecha");
const QString kTipo = QStringLiteral("cboComprobante");
const QString kNumero = QStringLiteral("txtNroComprobante");
const QString kDenominacion = QStringLiteral("txtDenominacion");
const QString kCuit = QStringLiteral("txtCuit");
const QString kPadron = QStringLiteral("txtPadron");
const QString kImporte = QStringLiteral("txtImportePercibido");

constexpr int kLargoDenominacion = 50;

// A number left-padded with zeros to `digits`, as the receipt numbers and
// padrones are kept; blank stays blank.
QString Rellenar(const QString& text, int digits)
{
    const QString trimmed = text.trimmed();
    return trimmed.isEmpty() ? trimmed : trimmed.rightJustified(digits, u'0');
}

} // namespace

bool DetalleComprobante::Valida(const QString& texto)
{
    const int dia = texto.left(2).toInt();
    const int mes = texto.mid(3, 2).toInt();
    const int anio = texto.right(4).toInt();
    if (dia < 1 || dia > 31 || mes < 1 || mes > 12)
        return false;
    switch (mes) {
    case 1:
    case 3:
    case 5:
    case 7:
    case 8:
    case 10:
    case 12: return true;
    case 2: return dia < (anio % 4 == 0 ? 30 : 29);
    default: return dia < 31;
    }
}

DetalleComprobante::DetalleComprobante(const QString& windowName, const DatosComprobante& datos)
    : DetalleDialog(windowName), m_datos(datos)
{
}

void DetalleComprobante::design()
{
    clearHandlers();
    setCaption(QStringLiteral("Ingreso de comprobante"));
    add(kFecha, FieldKind::Text).setMask(QStringLiteral("##-##-####"));
    if (m_datos.conTipo)
        add(kTipo, FieldKind::Combo);
    add(kNumero, FieldKind::Text).setMaxLength(15);
    add(kDenominacion, FieldKind::Text);
    add(kCuit, FieldKind::Text).setMask(QStringLiteral("##-########-#"));
    add(kPadron, FieldKind::Text).setMaxLength(13);
    add(kImporte, FieldKind::Text);
    add(QStringLiteral("cmdAceptar"), FieldKind::Button, QStringLiteral("&Aceptar"));
    add(QStringLiteral("cmdCancelar"), FieldKind::Button, QStringLiteral("&Cancelar"));
    add(QStringLiteral("lblF3"), FieldKind::Label, QStringLiteral("F3: Recupera el valor anterior"))
        .setVisible(false);
    add(QStringLiteral("lblNroComprobante"), FieldKind::Label, m_datos.rotuloNumero);
    add(QStringLiteral("lblImportePercibido"), FieldKind::Label, m_datos.rotuloImporte);

    on(QStringLiteral("cmdAceptar"), Ev::Click, [this](EventArgs&) { cmdAceptar(); });
    on(QStringLiteral("cmdCancelar"), Ev::Click, [this](EventArgs&) { unload(); });

    handle(kFecha, Ev::Validate, [this](EventArgs& e) { e.cancel = !ValidarFecha(); });
    // Enter moves on from every box of the line, as from its numbers and its
    // amount: what is typed next lands in the next box.
    QStringList conEnter{kFecha, kDenominacion, kCuit};
    if (m_datos.conTipo)
        conEnter << kTipo;
    for (const QString& name : conEnter)
        handle(name, Ev::KeyPress, [this](EventArgs& e) {
            if (e.key != KeyCode::Return)
                return;
            e.key = 0;
            sendTab();
        });
    handle(kCuit, Ev::LostFocus, [this](EventArgs&) { ValidarCuit(); });
    handle(kDenominacion, Ev::LostFocus, [this](EventArgs&) {
        Field& f = field(kDenominacion);
        if (f.text().size() <= kLargoDenominacion)
            return;
        MsgBox(QStringLiteral("El dato ingresado no puede superar los 50 caracteres. Verifique.-"),
               Msg::Exclamation, QStringLiteral("Mensaje"));
        f.setText(f.text().left(kLargoDenominacion));
    });
    const std::pair<QString, int> numeros[] = {{kNumero, 15}, {kPadron, 13}};
    for (const auto& [name, digits] : numeros) {
        handle(name, Ev::KeyPress, [this, name = name, digits = digits](EventArgs& e) {
            gValidar().TextBox(e.key, field(name), Validar::Digits, digits);
        });
        handle(name, Ev::LostFocus, [this, name = name, digits = digits](EventArgs&) {
            field(name).setText(Rellenar(field(name).text(), digits));
        });
    }
    handle(kImporte, Ev::GotFocus, [this](EventArgs&) { field(kImporte).selectAll(); });
    handle(kImporte, Ev::KeyPress, [this](EventArgs& e) {
        gValidar().TextBox(e.key, field(kImporte), Validar::Decimal, 2);
    });
    handle(kImporte, Ev::Validate, [this](EventArgs& e) {
        e.cancel =
            !AmountRule(field(kImporte),
                        QStringLiteral("El dato ingresado es incorrecto. Por favor verifique.-"),
                        QStringLiteral("Mensaje"));
    });

    // The grid of the form shows the type in column 2 when the annex has one.
    const int desplazamiento = m_datos.conTipo ? 1 : 0;
    addRecall(kFecha, 1);
    if (m_datos.conTipo)
        addRecall(kTipo, 2);
    addRecall(kDenominacion, 3 + desplazamiento);
    addRecall(kCuit, 4 + desplazamiento);
    addRecall(kPadron, 5 + desplazamiento);
    addRecall(kImporte, 6 + desplazamiento);
}

void DetalleComprobante::onLoad()
{
    if (m_datos.conTipo)
        TipoComprobante();
    if (!Parametros.trimmed().isEmpty())
        cargaDatos();
}

void DetalleComprobante::TipoComprobante()
{
    Field& f = field(kTipo);
    f.clearItems();
    RecordsetPtr rs = gAccess().FillRecordSet(QStringLiteral("Select * from tComprobantes"));
    if (!rs)
        return;
    for (rs->MoveFirst(); !rs->EOF_(); rs->MoveNext())
        f.addItem(rs->Text(QStringLiteral("valor")) + QStringLiteral(" - ") +
                  rs->Text(QStringLiteral("descripcion")));
    // The adjustment is the form's own line: the person cannot choose it.
    if (f.listCount() > 0 && f.itemText(0).startsWith(QStringLiteral("AJUS"))) {
        QVector<ListItem> rest = f.items();
        rest.removeFirst();
        f.clearItems();
        f.addItems(rest);
    }
}

void DetalleComprobante::cargaDatos()
{
    if (IdDetalle().isEmpty())
        return;
    RecordsetPtr rs = gAccess().FillRecordSet(
        QStringLiteral("SELECT * FROM %1 WHERE CODIGO = '%2' AND CodigoDetalle = '%3' AND "
                       "FECHARECTIFICATIVA = '%4' AND ctrl = '%5'")
            .arg(m_datos.tabla, Sq(CodigoDeclaracion(Parametros)), Sq(IdDetalle()),
                 Sq(FechaClave(Parametro(QStringLiteral("FechaRectificativa")))),
                 Sq(Parametro(QStringLiteral("ctrl")))));
    if (!rs || rs->RecordCount() == 0)
        return;
    const QDate fecha = TextToDate(rs->Text(QStringLiteral("Fecha")));
    if (fecha.isValid())
        field(kFecha).setText(fecha.toString(QStringLiteral("dd-MM-yyyy")));
    field(kNumero).setText(rs->Text(QStringLiteral("NroComprobante")));
    field(kDenominacion).setText(rs->Text(QStringLiteral("Denominacion")).toUpper());
    const QString cuit = DigitsOnly(rs->Text(QStringLiteral("Cuit")));
    if (cuit.size() == 11)
        field(kCuit).setText(FormatCuit(cuit));
    field(kPadron).setText(rs->Text(QStringLiteral("Padron")));
    field(kImporte).setText(rs->Text(QStringLiteral("ImportePercibido")));
    if (!m_datos.conTipo)
        return;
    QString tipo = rs->Text(QStringLiteral("TipoComprobante")).trimmed();
    if (m_datos.descripcionAlCargar && !tipo.isEmpty()) {
        const QString valor = tipo.section(QStringLiteral(" - "), 0, 0);
        tipo = valor + QStringLiteral(" - ") +
               gAccess().GetString(
                   QStringLiteral("SELECT descripcion FROM tComprobantes WHERE valor = '%1'")
                       .arg(Sq(valor)));
    }
    SetComboText(field(kTipo), tipo);
}

bool DetalleComprobante::ValidarFecha()
{
    Field& f = field(kFecha);
    if (f.isBlankMask())
        return true;
    if (!TextToDate(f.text()).isValid() || !Valida(f.text())) {
        MsgBox(QStringLiteral("La fecha ingresa es incorrecta."), Msg::Exclamation,
               QStringLiteral("Atención..."));
        f.selectAll();
        return false;
    }
    const QString periodo = Parametro(QStringLiteral("Periodo"));
    const int delPeriodo = periodo.right(4).toInt() * 100 + periodo.left(2).toInt();
    const int deLaFecha = f.text().right(4).toInt() * 100 + f.text().mid(3, 2).toInt();
    if (deLaFecha > delPeriodo) {
        MsgBox(QStringLiteral("La fecha ingresada no puede ser mayor a la del período en "
                              "cuestión. Verifique."),
               Msg::Exclamation, QStringLiteral("Mensaje..."));
        f.selectAll();
        return false;
    }
    return true;
}

void DetalleComprobante::ValidarCuit()
{
    Field& f = field(kCuit);
    if (f.isBlankMask())
        return;
    static const QStringList prefijos{QStringLiteral("20"), QStringLiteral("27"),
                                      QStringLiteral("30"), QStringLiteral("23"),
                                      QStringLiteral("33")};
    QString cuit = f.text();
    const bool prefijoValido = prefijos.contains(f.text().left(2));
    if (!prefijoValido || !IsValidCuit(cuit))
        MsgBox(QStringLiteral("Número de CUIT incorrecto"), Msg::Exclamation,
               QStringLiteral("Mensaje..."));
}

bool DetalleComprobante::ComprobanteRepetido(const QString& codigo, const QString& fecha)
{
    QString sql = QStringLiteral(" SELECT COUNT(*) AS CANT FROM %1  WHERE CODIGO = '%2' AND "
                                 "NROCOMPROBANTE = '%3' AND FECHARECTIFICATIVA = '%4' AND "
                                 "ctrl = '%5'")
                      .arg(m_datos.tabla.toUpper(), Sq(codigo), Sq(field(kNumero).text()),
                           Sq(fecha), Sq(Parametro(QStringLiteral("ctrl"))));
    if (m_datos.conTipo)
        sql += QStringLiteral(" AND TIPOCOMPROBANTE = '%1'").arg(Sq(field(kTipo).text()));
    return gAccess().GetInteger(sql) > 0;
}

void DetalleComprobante::cmdAceptar()
{
    Field& fecha = field(kFecha);
    Field& cuit = field(kCuit);
    Field& importe = field(kImporte);
    if (!Requerido(kFecha, fecha.isBlankMask() || fecha.text().trimmed().isEmpty(),
                   QStringLiteral("Debe ingresar el dato Fecha")) ||
        !Requerido(kCuit, cuit.isBlankMask() || cuit.text().trimmed().isEmpty(),
                   QStringLiteral("Debe ingresar el dato Cuit")) ||
        !Requerido(kCuit, DigitsOnly(cuit.text()).size() < 11,
                   QStringLiteral("El CUIT debe tener 11 dígitos.")) ||
        !Requerido(kImporte, importe.text().trimmed().isEmpty(),
                   QStringLiteral("Debe ingresar el dato Importe Percibido")))
        return;
    const std::pair<QString, QString> defaults[] = {
        {kNumero, QStringLiteral("000000000000000")},
        {kPadron, QStringLiteral("0000000000000")},
        {kDenominacion, QStringLiteral("0")},
        {kTipo, QStringLiteral("OTRO - Otros")},
    };
    for (const auto& [name, value] : defaults) {
        if (!hasField(name) || !field(name).text().trimmed().isEmpty())
            continue;
        if (field(name).kind() == FieldKind::Combo)
            SetComboText(field(name), value);
        else
            field(name).setText(value);
    }

    const QString codigo = CodigoDeclaracion(Parametros);
    SetCodigo(codigo);
    const QDate dia = TextToDate(fecha.text());
    const QString fechaTexto =
        dia.isValid() ? dia.toString(QStringLiteral("dd-MM-yyyy")) : fecha.text();
    const QString fechaClave = FechaClave(Parametro(QStringLiteral("FechaRectificativa")));
    if (IdDetalle().isEmpty() && ComprobanteRepetido(codigo, fechaClave)) {
        MsgBox(m_datos.textoDuplicado + field(kNumero).text() + QStringLiteral(" - ") +
                   field(kDenominacion).text() +
                   QStringLiteral(", ya está dado de alta para este período. Verifique.-"),
               Msg::Information, m_tituloMensajes);
        setFocus(kNumero);
        field(kNumero).selectAll();
        return;
    }
    // A new line is numbered as it is written.
    const QString id = IdDetalle();
    QStringList columnas{QStringLiteral("Fecha")};
    QStringList valores{fechaTexto};
    if (m_datos.conTipo) {
        columnas << QStringLiteral("TipoComprobante");
        valores << field(kTipo).text();
    }
    columnas << QStringLiteral("NroComprobante") << QStringLiteral("Denominacion")
             << QStringLiteral("Cuit") << QStringLiteral("Padron")
             << QStringLiteral("ImportePercibido");
    valores << field(kNumero).text() << field(kDenominacion).text() << cuit.text()
            << field(kPadron).text() << importe.text();
    if (!GrabarLinea(m_datos.tabla, codigo, id, fechaClave, columnas, valores))
        return;
    Aceptar();
}
