#include "SampleData.h"

#include <QVector>

#include "Globals.h"
#include "SqlText.h"
#include "ZoAccess.h"

namespace SampleData {

namespace {

using Row = QStringList;

void insert(const QString& table, const QStringList& columns, const Row& values)
{
    QStringList quoted;
    for (const QString& v : values)
        quoted << u'\'' + Sq(v) + u'\'';
    gAccess().Execute(QStringLiteral("INSERT INTO ") + table + QStringLiteral(" (") +
                      columns.join(QStringLiteral(", ")) + QStringLiteral(") VALUES (") +
                      quoted.join(QStringLiteral(", ")) + u')');
}

// One version of a declaration: its identity and the key of its rows.
struct Version {
    Premises premises;
    QString form;
    QString periodo; // mm-yyyy
    bool rectificativa = false;
    QString fecha = QStringLiteral("0");
    QString ctrl = QStringLiteral("0");

    QString codigo() const
    {
        return premises.padron + QString(periodo).remove(u'-') + premises.objeto +
               (rectificativa ? u'R' : u'O');
    }
    QString rect() const
    {
        return rectificativa ? QStringLiteral("Verdadero") : QStringLiteral("False");
    }
};

const QString kDomicilio = QStringLiteral(" - VALDO - CAPITAL");

// The header row as "Aceptar" writes it, and the registration row the tree
// lists. F986 and F988 have no Codigo.
void declare(const Version& v, const QStringList& columns, const Row& values)
{
    const bool conCodigo = v.form != QLatin1String("F986") && v.form != QLatin1String("F988");
    QStringList cols{QStringLiteral("Padron"),
                     QStringLiteral("Objeto"),
                     QStringLiteral("Periodo"),
                     QStringLiteral("Rectificativa"),
                     QStringLiteral("FechaRectificativa"),
                     QStringLiteral("ctrl")};
    Row row{v.premises.padron, v.premises.objeto, v.periodo, v.rect(), v.fecha, v.ctrl};
    if (conCodigo) {
        cols.prepend(QStringLiteral("Codigo"));
        row.prepend(v.codigo());
    }
    insert(v.form, cols + columns, row + values);
    insert(QStringLiteral("TPadrones_Formularios"),
           {QStringLiteral("Padron"), QStringLiteral("Objeto"), QStringLiteral("Periodo"),
            QStringLiteral("idFormulario"), QStringLiteral("Rectificativa"),
            QStringLiteral("FechaRectificativa"), QStringLiteral("ctrl")},
           {v.premises.padron, v.premises.objeto, v.periodo, v.form, v.rect(), v.fecha, v.ctrl});
}

// Detail lines numbered "0001" upward, as the detail dialogs write them.
void lines(const Version& v, const QStringList& columns, const QVector<Row>& rows)
{
    int n = 0;
    for (const Row& r : rows)
        insert(v.form + QStringLiteral("_Detalle"),
               QStringList{QStringLiteral("Codigo"), QStringLiteral("FechaRectificativa"),
                           QStringLiteral("CodigoDetalle"), QStringLiteral("ctrl")} +
                   columns,
               Row{v.codigo(), v.fecha, QStringLiteral("%1").arg(++n, 4, 10, QChar(u'0')), v.ctrl} +
                   r);
}

const QStringList kActividad = {QStringLiteral("TipoActividad"), QStringLiteral("CodigoActividad"),
                                QStringLiteral("BaseImponible"), QStringLiteral("Alicuota"),
                                QStringLiteral("Impuesto")};
const QStringList kComprobante = {QStringLiteral("Fecha"),
                                  QStringLiteral("TipoComprobante"),
                                  QStringLiteral("NroComprobante"),
                                  QStringLiteral("Denominacion"),
                                  QStringLiteral("Cuit"),
                                  QStringLiteral("Padron"),
                                  QStringLiteral("ImportePercibido")};
const QStringList kAnexo = {QStringLiteral("Domicilio"), QStringLiteral("RazonSocial"),
                            QStringLiteral("Transporte"), QStringLiteral("TotalPercepciones")};
const QStringList kMensual = {
    QStringLiteral("BaseImponible"), QStringLiteral("Impuesto"),
    QStringLiteral("Accesorios"),    QStringLiteral("Multas"),
    QStringLiteral("PagoACuenta"),   QStringLiteral("Percepciones"),
    QStringLiteral("Retenciones"),   QStringLiteral("SaldoAFavor"),
    QStringLiteral("SaldoAFavorF"),  QStringLiteral("SubtotalDeterminado"),
    QStringLiteral("TotalAPagar"),   QStringLiteral("Tasa")};

void taxpayers()
{
    const QStringList cols{QStringLiteral("idContribuyente"), QStringLiteral("ApellidoNombre"),
                           QStringLiteral("Cuit")};
    insert(QStringLiteral("Contribuyentes"), cols, {QString::number(kId), kNombre, kCuit});
    insert(QStringLiteral("Contribuyentes"), cols,
           {QStringLiteral("2"), QStringLiteral("RIVERO MARIA LAURA"),
            QStringLiteral("27-28456123-1")});
    insert(
        QStringLiteral("Contribuyentes"), cols,
        {QStringLiteral("3"), QStringLiteral("EL MOLINO S.R.L."), QStringLiteral("30-70845123-8")});
}

void premises(const Premises& p, const Row& data, const QStringList& activities)
{
    const QString cuit = QString(kCuit).remove(u'-');
    insert(QStringLiteral("tPadronesComerciales"),
           {QStringLiteral("idContribuyente"), QStringLiteral("cuit"), QStringLiteral("padron"),
            QStringLiteral("objeto"), QStringLiteral("grupo"), QStringLiteral("categoria"),
            QStringLiteral("razon_social"), QStringLiteral("nombre_fantasia"),
            QStringLiteral("percepcion"), QStringLiteral("retencion"), QStringLiteral("regimen"),
            QStringLiteral("calle_numero"), QStringLiteral("localidad_departamento"),
            QStringLiteral("cp"), QStringLiteral("Suscriptor"), QStringLiteral("Caracter")},
           Row{QString::number(kId), cuit, p.padron, p.objeto} + data);
    QStringList cols{QStringLiteral("cuit"), QStringLiteral("padron"), QStringLiteral("objeto")};
    const QStringList names{QStringLiteral("ActP"), QStringLiteral("Act1"), QStringLiteral("Act2")};
    for (int i = 0; i < activities.size() / 2; ++i)
        cols << names.at(i) << names.at(i) + QStringLiteral("_Desc");
    insert(QStringLiteral("Actividades_x_padrones"), cols,
           Row{cuit, p.padron, p.objeto} + activities);
}

void registry()
{
    taxpayers();
    premises(kGeneral,
             {QStringLiteral("C"), QStringLiteral("3"), kNombre, QStringLiteral("ALMACEN DON JUAN"),
              QStringLiteral("0"), QStringLiteral("0"), QStringLiteral("0"),
              QStringLiteral("SAN MARTIN 1250"), QStringLiteral("VALDO - CAPITAL"),
              QStringLiteral("9180"), kNombre, QStringLiteral("TITULAR")},
             {QStringLiteral("472120"),
              QStringLiteral("Venta al por menor de productos de almacén y dietética"),
              QStringLiteral("472171"),
              QStringLiteral("Venta al por menor de pan y productos de "
                             "panadería"),
              QStringLiteral("472200"),
              QStringLiteral("Venta al por menor de bebidas en comercios especializados")});
    premises(kProcom,
             {QStringLiteral("B"), QStringLiteral("2"), kNombre,
              QStringLiteral("KIOSCO LA ESQUINA"), QStringLiteral("0"), QStringLiteral("0"),
              QStringLiteral("1"), QStringLiteral("BELGRANO 455"),
              QStringLiteral("VALDO - CAPITAL"), QStringLiteral("9180"), kNombre,
              QStringLiteral("TITULAR")},
             {QStringLiteral("472172"),
              QStringLiteral("Venta al por menor de bombones, golosinas y demás productos de "
                             "confitería"),
              QStringLiteral("472300"),
              QStringLiteral("Venta al por menor de tabaco en comercios especializados")});
    premises(kAgente,
             {QStringLiteral("E"), QString(), kNombre, QStringLiteral("DISTRIBUIDORA GOMEZ"),
              QStringLiteral("1"), QStringLiteral("1"), QStringLiteral("2"),
              QStringLiteral("RUTA 7 KM 12"), QStringLiteral("VALDO - CAPITAL"),
              QStringLiteral("9180"), kNombre, QStringLiteral("TITULAR")},
             {QStringLiteral("463220"),
              QStringLiteral("Venta al por mayor de bebidas no alcohólicas"),
              QStringLiteral("463111"), QStringLiteral("Venta al por mayor de productos lácteos")});
    gAccess().Execute(QStringLiteral("UPDATE tPadronesComerciales SET Principal = 'X' WHERE "
                                     "padron = '") +
                      kGeneral.padron + u'\'');
}

void generalReturns()
{
    const QString marzo = kMes + u'-' + kAnio;
    const Version f976{kGeneral, QStringLiteral("F976"), marzo};
    declare(f976, kMensual,
            {QStringLiteral("1.170.000,00"), QStringLiteral("24.240,00"), QStringLiteral("0,00"),
             QStringLiteral("0,00"), QStringLiteral("0,00"), QStringLiteral("830,40"),
             QStringLiteral("1.250,00"), QStringLiteral("0,00"), QStringLiteral("__-____"),
             QStringLiteral("2.080,40"), QStringLiteral("22.159,60"), QStringLiteral("24.240,00")});
    lines(f976, kActividad,
          {{QStringLiteral("Venta al por menor de productos de almacén y dietética"),
            QStringLiteral("472120"), QStringLiteral("850.000,00"), QStringLiteral("2,40"),
            QStringLiteral("20.400,00")},
           {QStringLiteral("Venta al por menor de pan y productos de panadería"),
            QStringLiteral("472171"), QStringLiteral("320.000,00"), QStringLiteral("1,20"),
            QStringLiteral("3.840,00")}});

    const QString domicilio = QStringLiteral("SAN MARTIN 1250") + kDomicilio;
    const Version f977{kGeneral, QStringLiteral("F977"), marzo};
    declare(f977, kAnexo, {domicilio, kNombre, QStringLiteral("0,00"), QStringLiteral("1.250,00")});
    lines(f977, kComprobante,
          {{QStringLiteral("05-03-2024"), QStringLiteral(" "), QStringLiteral("000000000001245"),
            QStringLiteral("SUPERMERCADOS DEL SUR S.A."), QStringLiteral("30-71234567-1"),
            QStringLiteral("0000000002210"), QStringLiteral("750,00")},
           {QStringLiteral("18-03-2024"), QStringLiteral(" "), QStringLiteral("000000000000387"),
            QStringLiteral("MAYORISTA EL TREBOL S.A."), QStringLiteral("30-69874521-1"),
            QStringLiteral("0000000003877"), QStringLiteral("500,00")}});

    const Version f978{kGeneral, QStringLiteral("F978"), marzo};
    declare(f978, kAnexo, {domicilio, kNombre, QStringLiteral("0,00"), QStringLiteral("830,40")});
    lines(f978, kComprobante,
          {{QStringLiteral("07-03-2024"), QStringLiteral("FACA - Factura A"),
            QStringLiteral("000200000014587"), QStringLiteral("DISTRIBUIDORA NORTE S.A."),
            QStringLiteral("30-70845123-8"), QStringLiteral("0000000001533"),
            QStringLiteral("512,40")},
           {QStringLiteral("21-03-2024"), QStringLiteral("FACA - Factura A"),
            QStringLiteral("000300000002291"), QStringLiteral("LACTEOS DEL VALLE S.R.L."),
            QStringLiteral("33-58612479-5"), QStringLiteral("0000000006012"),
            QStringLiteral("318,00")}});

    // February: the original and its rectification of 20 March.
    const QString febrero = QStringLiteral("02-") + kAnio;
    const struct {
        Version version;
        const char* base;
        const char* impuesto;
    } feb[] = {
        {{kGeneral, QStringLiteral("F976"), febrero}, "780.000,00", "18.720,00"},
        {{kGeneral, QStringLiteral("F976"), febrero, true, QStringLiteral("20-03-2024"),
          QStringLiteral("1")},
         "810.000,00",
         "19.440,00"},
    };
    for (const auto& f : feb) {
        const QString base = QString::fromLatin1(f.base);
        const QString impuesto = QString::fromLatin1(f.impuesto);
        const QString cero = QStringLiteral("0,00");
        declare(f.version, kMensual,
                {base, impuesto, cero, cero, cero, cero, cero, cero, QStringLiteral("__-____"),
                 cero, impuesto, impuesto});
        lines(f.version, kActividad,
              {{QStringLiteral("Venta al por menor de productos de almacén y dietética"),
                QStringLiteral("472120"), base, QStringLiteral("2,40"), impuesto}});
    }
}

void procomReturn()
{
    const Version f2001{kProcom, QStringLiteral("F2001"), kMes + u'-' + kAnio};
    const QString cero = QStringLiteral("0,00");
    const QString total = QStringLiteral("7.620,00");
    declare(f2001,
            {QStringLiteral("BaseImponible"), QStringLiteral("Impuesto"), QStringLiteral("Total"),
             QStringLiteral("SaldoAFavor"), QStringLiteral("Retenciones"),
             QStringLiteral("Percepciones"), QStringLiteral("Desgrabaciones"),
             QStringLiteral("SubtotalCol12"), QStringLiteral("SubtotalColumna2"),
             QStringLiteral("DiferenciaCol12"), QStringLiteral("DiferenciaColumna2"),
             QStringLiteral("PagoACuenta"), QStringLiteral("TotalAPagar")},
            {QStringLiteral("305.000,00"), total, total, cero, cero, cero, cero, cero, total, cero,
             total, cero, total});
    lines(f2001, kActividad,
          {{QStringLiteral("Venta al por menor de bombones, golosinas y demás productos de "
                           "confitería"),
            QStringLiteral("472172"), QStringLiteral("210.000,00"), QStringLiteral("2,00"),
            QStringLiteral("4.200,00")},
           {QStringLiteral("Venta al por menor de tabaco en comercios especializados"),
            QStringLiteral("472300"), QStringLiteral("95.000,00"), QStringLiteral("3,60"),
            QStringLiteral("3.420,00")}});
}

void agentReturns()
{
    const QString marzo = kMes + u'-' + kAnio;
    const QString domicilio = QStringLiteral("RUTA 7 KM 12") + kDomicilio;
    const QString cero = QStringLiteral("0,00");
    const struct {
        const char* annex;
        const char* ret;
        const char* column;
        const char* total;
        QVector<Row> rows;
    } agents[] = {
        {"F985",
         "F986",
         "ImpPercibidoF985",
         "3.480,00",
         {{QStringLiteral("08-03-2024"), QStringLiteral(" "), QStringLiteral("000000000000101"),
           QStringLiteral("CONSTRUCTORA ANDINA S.A."), QStringLiteral("30-50001234-6"),
           QStringLiteral("0000000005120"), QStringLiteral("2.130,00")},
          {QStringLiteral("22-03-2024"), QStringLiteral(" "), QStringLiteral("000000000000102"),
           QStringLiteral("TRANSPORTES RIVERO S.R.L."), QStringLiteral("30-71512348-3"),
           QStringLiteral("0000000008044"), QStringLiteral("1.350,00")}}},
        {"F987",
         "F988",
         "ImpPercibidoF987",
         "2.215,75",
         {{QStringLiteral("04-03-2024"), QStringLiteral("FACA - Factura A"),
           QStringLiteral("000400000001120"), QStringLiteral("ALMACEN LA ESTRELLA"),
           QStringLiteral("27-31567890-6"), QStringLiteral("0000000003345"),
           QStringLiteral("1.425,75")},
          {QStringLiteral("15-03-2024"), QStringLiteral("FACA - Factura A"),
           QStringLiteral("000400000001187"), QStringLiteral("AUTOSERVICIO CENTRAL S.R.L."),
           QStringLiteral("30-71234567-1"), QStringLiteral("0000000002290"),
           QStringLiteral("790,00")}}},
    };
    for (const auto& a : agents) {
        const QString total = QString::fromLatin1(a.total);
        const Version annex{kAgente, QString::fromLatin1(a.annex), marzo};
        declare(annex, kAnexo, {domicilio, kNombre, cero, total});
        lines(annex, kComprobante, a.rows);
        const Version ret{kAgente, QString::fromLatin1(a.ret), marzo};
        declare(ret,
                {QStringLiteral("RazonSocial"), QStringLiteral("Contribuyente"),
                 QStringLiteral("Domicilio"), QString::fromLatin1(a.column),
                 QStringLiteral("AccesoriosCoef"), QStringLiteral("Multas"),
                 QStringLiteral("Otros"), QStringLiteral("ImporteDepositar")},
                {kNombre, kNombre, domicilio + QStringLiteral(" C.P. 9180"), total, cero, cero,
                 cero, total});
    }
}

} // namespace

void Insert()
{
    registry();
    generalReturns();
    procomReturn();
    agentReturns();
}

QString PremisesNode(const Premises& premises)
{
    return QStringLiteral("Padrón N° ") + premises.padron + QStringLiteral(" - Objeto N° ") +
           premises.objeto;
}

QString Declaration(const Premises& premises, const QString& form)
{
    return QStringLiteral("Padron=") + premises.padron + QStringLiteral(" - Objeto N° ") +
           premises.objeto + QStringLiteral(";Anio=") + kAnio + QStringLiteral(";Periodo=") + kMes +
           QStringLiteral(";Formulario=") + form +
           QStringLiteral(";Nuevo=Falso;ConDatos=Verdadero;Rectificativa=False;"
                          "FechaRectificativa=0;ctrl=0;idContribuyente=") +
           QString::number(kId) + u';';
}

} // namespace SampleData
