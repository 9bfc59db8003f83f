#include <QtTest>

#include "DatabaseProbe.h"
#include "ErrorLog.h"
#include "Globals.h"
#include "TestSupport.h"
#include "ZoAccess.h"
#include "database/Schema.h"

using namespace Probe;

namespace {
QStringList lower(const QStringList& names)
{
    QStringList out;
    for (const QString& n : names)
        out << n.toLower();
    return out;
}

QStringList split(const char* names)
{
    return QString::fromUtf8(names).split(' ');
}

const char* const kReport = "PADRON DOMICILIO PERIODO RECTIFICATIVA TOTALPERCEPCIONES "
                            "FECHARECTIFICATIVA CODIGO FECHA TIPOCOMPROBANTE NROCOMPROBANTE "
                            "DENOMINACION CUIT IMPORTEPERCIBIDO RAZON_SOCIAL CP";
const char* const kAnnex = "Id Codigo Padron Objeto Domicilio RazonSocial Periodo Rectificativa "
                           "FechaRectificativa Transporte TotalPercepciones ctrl Guidv";
const char* const kAnnexLines = "Id Codigo FechaRectificativa CodigoDetalle Fecha TipoComprobante "
                                "NroComprobante Denominacion Cuit Padron ImportePercibido ctrl";
const char* const kActivityLines = "Id Codigo FechaRectificativa CodigoDetalle TipoActividad "
                                   "CodigoActividad BaseImponible Alicuota Impuesto ctrl";
} // namespace

// A first start leaves a database at the current level: every table and
// column the screens, the files and the reports use, the catalogues, and the
// indices that keep them fast.
class TstSchema : public QObject
{
    Q_OBJECT
    std::unique_ptr<TestEnv> env;

private slots:
    void init()
    {
        env = std::make_unique<TestEnv>();
        env->createDatabase();
    }
    void cleanup()
    {
        VERIFY_UI_CLEAN(*env);
        QVERIFY(env->ui().messages().isEmpty());
        env.reset();
    }

    void firstStartLogsNoFailure() { QVERIFY(!QFile::exists(ErrorLogPath())); }

    void holdsExactlyTheTables()
    {
        QStringList expected = split(
            "Actividades_x_padrones Configuracion_Regional Contribuyentes "
            "Contribuyentes_TActividades DetFormularios EncFormularios F2001 F2001_Detalle F976 "
            "F976_Detalle F977 F977_DETALLE_REPORTE F977_Detalle F978 F978_DETALLE_REPORTE "
            "F978_Detalle F985 F985_DETALLE_REPORTE F985_Detalle F986 F987 F987_DETALLE_REPORTE "
            "F987_Detalle F988 FormasPago Formularios Opciones TPadrones_Formularios tActividades "
            "tBancos tCodigos_Formularios tComprobantes tMenores tMunicipalidades "
            "tPadronesComerciales tPagos");
        QStringList actual = tables();
        expected = lower(expected);
        actual = lower(actual);
        expected.sort();
        actual.sort();
        QCOMPARE(actual, expected);
    }

    // "order": the exact columns in the order of the INSERT statements;
    // "set": the exact columns in any order; "has": at least these.
    void columnsOfEachTable_data()
    {
        QTest::addColumn<QString>("table");
        QTest::addColumn<QString>("mode");
        QTest::addColumn<QStringList>("expected");
        auto row = [](const char* table, const char* mode, const char* columns) {
            QTest::newRow(table) << table << mode << split(columns);
        };
        row("Contribuyentes", "set", "idContribuyente ApellidoNombre Cuit idTContribuyente");
        row("tPadronesComerciales", "set",
            "idContribuyente cuit padron objeto grupo categoria razon_social nombre_fantasia "
            "percepcion retencion regimen suscriptor caracter Principal calle_numero "
            "localidad_departamento cp");
        row("Actividades_x_padrones", "order",
            "cuit padron objeto ActP ActP_Desc Act1 Act1_Desc Act2 Act2_Desc Act3 Act3_Desc "
            "Act4 Act4_Desc Act5 Act5_Desc");
        row("tActividades", "has", "idTActividad Nombre");
        row("tComprobantes", "has", "idTComprobante valor descripcion");
        row("tMunicipalidades", "set", "idTMunicipalidad Nombre");
        row("tMenores", "has", "Codigo");
        row("Opciones", "set", "Nombre Valor");
        row("Formularios", "set", "idFormulario Nombre LeyendaNuevo LeyendaGenerado Orden");
        row("tCodigos_Formularios", "set",
            "Id idFormulario tipo_imponible impuesto_concepto codigo_formulario");
        row("Configuracion_Regional", "set",
            "iCurrDigits iCurrency iDigits iLZero iMeasure iNegCurr iTLZero sDecimal "
            "sMonDecimalSep sMonThousandSep sNativeDigits sNegativeSign sThousand");
        row("TPadrones_Formularios", "set",
            "Id Padron Objeto Periodo idFormulario Rectificativa FechaRectificativa ctrl");
        row("F976", "order",
            "Id Codigo Padron Objeto Periodo Rectificativa FechaRectificativa BaseImponible "
            "Impuesto Accesorios Multas PagoACuenta Percepciones Retenciones SaldoAFavor "
            "SaldoAFavorF SubtotalDeterminado TotalAPagar Tasa ctrl Guidv");
        row("F2001", "order",
            "Id Codigo Padron Objeto Periodo Rectificativa FechaRectificativa BaseImponible "
            "Impuesto Total SaldoAFavor Retenciones Percepciones Desgrabaciones SubtotalCol12 "
            "SubtotalColumna2 DiferenciaCol12 DiferenciaColumna2 PagoACuenta TotalAPagar ctrl "
            "Guidv");
        for (const char* t : {"F977", "F978", "F985", "F987"})
            row(t, "order", kAnnex);
        row("F986", "order",
            "Id Padron Objeto Periodo Rectificativa FechaRectificativa RazonSocial Contribuyente "
            "Domicilio ImpPercibidoF985 AccesoriosCoef Multas Otros ImporteDepositar ctrl Guidv");
        row("F988", "order",
            "Id Padron Objeto Periodo Rectificativa FechaRectificativa RazonSocial Contribuyente "
            "Domicilio ImpPercibidoF987 AccesoriosCoef Multas Otros ImporteDepositar ctrl Guidv");
        for (const char* t : {"F976_Detalle", "F2001_Detalle"})
            row(t, "order", kActivityLines);
        for (const char* t : {"F977_Detalle", "F978_Detalle", "F985_Detalle", "F987_Detalle"})
            row(t, "order", kAnnexLines);
        for (const char* t : {"F977_DETALLE_REPORTE", "F978_DETALLE_REPORTE",
                              "F985_DETALLE_REPORTE", "F987_DETALLE_REPORTE"})
            row(t, "order", kReport);
        row("EncFormularios", "set",
            "idEncFormulario idContribuyente IdFormulario Anio Periodo TipoContribuyente Original "
            "FechaRectificativa FechaRectificativaNueva Copia Hash Guidv Base_Imponible Alicuota "
            "Monto Accesorios_Coeficiente Articulo_44 Dete_DesgravacionesIB Dete_PagoCuentaAP "
            "Dete_PagoCuentaAR Dete_PagoCuentaIB Dete_PercepcionesIB Dete_RetencionesIB "
            "Dete_SaldoAP Dete_SaldoAR Dete_SaldoIB Importe_Percibido Menos_Retenciones Otros "
            "Otros_Saldos Perc_Alicuota1 Perc_Alicuota2 Perc_Alicuota3 Perc_Alicuota4 "
            "Perc_Monto1 Perc_Monto2 Perc_Monto3 Perc_Monto4 Perc_Excentas Personal_Ocupado "
            "Rete_Importe Rete_Monto Saldo_Favor_Ddjj_Anio Saldo_Favor_Ddjj_Periodo idTActividad "
            "idTMunicipalidad");
        row("DetFormularios", "set",
            "idDetFormulario idEncFormulario Renglon Dia Fecha Grupo ApellidoNombre Cuit "
            "Domicilio idComprobante NumeroComprobante BaseImponible Alicuota Impuesto Importe "
            "Monto idTActividad idTMunicipalidad");
        row("FormasPago", "set",
            "idEncFormulario idTPago idTBanco Importe Numero Numero_Giro Rubro");
        row("tPagos", "set", "idTPago Nombre");
        row("tBancos", "set", "idTBanco Nombre");
        row("Contribuyentes_TActividades", "set", "idContribuyente idTActividad");
    }
    void columnsOfEachTable()
    {
        QFETCH(QString, table);
        QFETCH(QString, mode);
        QFETCH(QStringList, expected);
        QStringList actual = lower(columns(table));
        expected = lower(expected);
        if (mode == "has") {
            for (const QString& c : expected)
                QVERIFY2(actual.contains(c), qPrintable(c));
            return;
        }
        if (mode == "set") {
            actual.sort();
            expected.sort();
        }
        QCOMPARE(actual, expected);
    }

    // The tree lists the forms by Orden and compares the captions as text.
    void formsInTheirTreeOrder_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<QString>("orden");
        QTest::addColumn<QString>("nombre");
        QTest::newRow("F976") << "F976"
                              << "1"
                              << "T.I.S.S.H. Régimen General DDJJ Mensual: F976";
        QTest::newRow("F2001") << "F2001"
                               << "2"
                               << "T.I.S.S.H. Procom DDJJ Mensual: F2001";
        QTest::newRow("F978") << "F978"
                              << "3"
                              << "T.I.S.S.H. Anexo Percepciones Deducidas: F978";
        QTest::newRow("F977") << "F977"
                              << "4"
                              << "T.I.S.S.H. Anexo Retenciones Deducidas: F977";
        QTest::newRow("F988") << "F988"
                              << "5"
                              << "T.I.S.S.H. Agentes de Percepción DDJJ Mensual: F988";
        QTest::newRow("F987") << "F987"
                              << "6"
                              << "T.I.S.S.H. Anexo Informativo de Percepciones Realizadas: F987";
        QTest::newRow("F986") << "F986"
                              << "7"
                              << "T.I.S.S.H. Agentes de Retención DDJJ Mensual: F986";
        QTest::newRow("F985") << "F985"
                              << "8"
                              << "T.I.S.S.H. Anexo Informativo de Retenciones Realizadas: F985";
    }
    void formsInTheirTreeOrder()
    {
        QFETCH(QString, form);
        QFETCH(QString, orden);
        QFETCH(QString, nombre);
        const QString where = " FROM Formularios WHERE idFormulario = '" + form + "'";
        QCOMPARE(one("SELECT COUNT(*)" + where), QString("1"));
        QCOMPARE(one("SELECT Orden" + where), orden);
        QCOMPARE(one("SELECT Nombre" + where), nombre);
        QCOMPARE(one("SELECT LeyendaNuevo" + where), "Nuevo - " + nombre);
        QCOMPARE(one("SELECT LeyendaGenerado" + where), "Formulario Generado - " + nombre);
    }

    void submissionCodes_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<QString>("id");
        QTest::addColumn<QString>("codigo");
        QTest::newRow("F977 is 0089") << "F977"
                                      << ""
                                      << "0089";
        QTest::newRow("F978 is 0090") << "F978"
                                      << ""
                                      << "0090";
        QTest::newRow("F985") << "F985"
                              << "7"
                              << "0085";
        QTest::newRow("F987") << "F987"
                              << "8"
                              << "0087";
        for (const char* f : {"F976", "F2001", "F986", "F988"})
            QTest::newRow(f) << f << ""
                             << "";
    }
    void submissionCodes()
    {
        QFETCH(QString, form);
        QFETCH(QString, id);
        QFETCH(QString, codigo);
        const QString where = " FROM tCodigos_Formularios WHERE idFormulario = '" + form + "'";
        QCOMPARE(one("SELECT COUNT(*)" + where), QString("1"));
        if (!id.isEmpty())
            QCOMPARE(one("SELECT Id" + where), id);
        else
            QVERIFY(one("SELECT Id" + where).toInt() >= 1 && one("SELECT Id" + where).toInt() <= 6);
        if (!codigo.isEmpty())
            QCOMPARE(one("SELECT codigo_formulario" + where), codigo);
        QCOMPARE(one("SELECT tipo_imponible" + where), QString("0008"));
        QCOMPARE(one("SELECT LEN(codigo_formulario)" + where), QString("4"));
        QVERIFY(one("SELECT impuesto_concepto" + where).contains('-'));
    }

    void catalogues()
    {
        QVERIFY(one("SELECT COUNT(*) FROM tActividades").toInt() >= 150);
        QVERIFY(one("SELECT MIN(idTActividad) FROM tActividades").toInt() >= 100000);
        QVERIFY(one("SELECT MAX(idTActividad) FROM tActividades").toInt() <= 999999);
        QCOMPARE(one("SELECT COUNT(*) FROM tActividades WHERE INSTR(Nombre, ';') <> 0 "
                     "OR Nombre IS NULL OR Nombre = ''"),
                 QString("0"));
        QCOMPARE(one("SELECT NOMBRE FROM tActividades WHERE idTActividad = 471110"),
                 QString("Venta al por menor en hipermercados"));

        // The first voucher kind is the adjustment, which the annexes drop
        // from their list; every code is the four characters the lookup takes.
        QCOMPARE(one("SELECT TOP 1 valor & ' - ' & descripcion FROM tComprobantes "
                     "ORDER BY idTComprobante"),
                 QString("AJUS - Ajuste"));
        QCOMPARE(one("SELECT descripcion FROM tComprobantes WHERE valor = 'OTRO'"),
                 QString("Otros"));
        QCOMPARE(one("SELECT COUNT(*) FROM tComprobantes WHERE LEN(valor) <> 4 "
                     "OR Nombre <> valor & ' - ' & descripcion"),
                 QString("0"));
        QVERIFY(one("SELECT COUNT(*) FROM tComprobantes WHERE valor LIKE 'NC%'").toInt() >= 1);
        QVERIFY(one("SELECT COUNT(*) FROM tComprobantes WHERE valor LIKE 'FAC%'").toInt() >= 1);
        QVERIFY(one("SELECT COUNT(*) FROM tMunicipalidades").toInt() >= 1);

        QCOMPARE(gAccess().GetInteger("SELECT VALOR FROM OPCIONES WHERE NOMBRE LIKE 'AnioMinimo'"),
                 2000);
        QCOMPARE(gAccess().GetInteger("SELECT VALOR FROM OPCIONES WHERE NOMBRE LIKE 'AnioMaximo'"),
                 2050);
        QCOMPARE(one("SELECT Valor FROM Opciones WHERE Nombre = 'PuntoPorComa'"), QString("S"));
        QCOMPARE(one("SELECT Valor FROM Opciones WHERE Nombre = 'GUID'"), QString("S"));
        QCOMPARE(one("SELECT COUNT(*) FROM (SELECT Nombre FROM Opciones GROUP BY Nombre "
                     "HAVING COUNT(*) > 1)"),
                 QString("0"));
    }

    // The filters of the forms and the tree find their rows through an index,
    // on the tables of the upgrades as well.
    void filtersUseAnIndex_data()
    {
        QTest::addColumn<QString>("table");
        QTest::addColumn<QString>("where");
        const QString declaration = "Codigo = 'x' AND FechaRectificativa = '0' AND ctrl = '0'";
        const QString period = "Padron = 'p' AND Objeto = 'o' AND Periodo = '01-2020'";
        for (const char* t : {"F976", "F2001", "F977", "F978", "F985", "F987"})
            QTest::newRow(qPrintable(QString(t) + " by Codigo")) << t << declaration;
        for (const char* t : {"F976_Detalle", "F2001_Detalle", "F977_Detalle", "F978_Detalle",
                              "F985_Detalle", "F987_Detalle"})
            QTest::newRow(t) << t << declaration;
        for (const char* t : {"F976", "F986", "F988", "TPadrones_Formularios"})
            QTest::newRow(qPrintable(QString(t) + " by period")) << t << period;
        QTest::newRow("premises") << "tPadronesComerciales"
                                  << "padron = 'p' and Objeto = 'o'";
        QTest::newRow("premises by cuit") << "tPadronesComerciales"
                                          << "Cuit = '20123456789'";
        QTest::newRow("activities") << "Actividades_x_padrones"
                                    << "PADRON = 'p' AND OBJETO = 'o'";
        QTest::newRow("activities by cuit") << "Actividades_x_padrones"
                                            << "cuit = '20123456789'";
        QTest::newRow("taxpayer by cuit") << "Contribuyentes"
                                          << "Cuit = '20-12345678-9'";
    }
    void filtersUseAnIndex()
    {
        QFETCH(QString, table);
        QFETCH(QString, where);
        RecordsetPtr rs = gAccess().FillRecordSet("EXPLAIN QUERY PLAN SELECT * FROM " + table +
                                                  " WHERE " + where);
        QVERIFY(rs);
        QString plan;
        for (; !rs->EOF_(); rs->MoveNext())
            plan += rs->Text("detail") + "\n";
        QVERIFY2(plan.contains("INDEX"), qPrintable(plan));
    }

    void aDatabaseWithTablesIsLeftAlone()
    {
        env.reset();
        env = std::make_unique<TestEnv>();
        gAccess().Execute("CREATE TABLE Mia (x TEXT(50))");
        QVERIFY(EnsureBaseSchema());
        QCOMPARE(tables(), QStringList{"Mia"});
    }

    void aFileThatIsNoDatabaseIsNeverWritten()
    {
        env.reset();
        env = std::make_unique<TestEnv>();
        QByteArray junk(4096, '\0');
        for (int i = 0; i < junk.size(); ++i)
            junk[i] = char((i * 7919 + 13) % 251);
        {
            QFile file(DatabasePath());
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(junk);
        }
        QVERIFY(!EnsureBaseSchema());
        CreateCurrentDatabase();
        EnsureIndices();
        CloseDatabase();
        QFile file(DatabasePath());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), junk);
        QVERIFY(!QFile::exists(DatabasePath() + "-wal"));
        QVERIFY(!QFile::exists(DatabasePath() + "-journal"));
    }
};

QTEST_GUILESS_MAIN(TstSchema)
#include "tst_schema.moc"
