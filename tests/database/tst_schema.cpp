#include <QtTest>
#include <sqlite3.h>

#include "Db.h"
#include "ErrorLog.h"
#include "Globals.h"
#include "TestSupport.h"
#include "ZoAccess.h"
#include "database/Schema.h"

using namespace Db;

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

QString one(const QString& sql)
{
    return gAccess().GetString(sql);
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
// indices that keep them fast. The checks only read, so the database is
// made once; the last two functions start runs of their own.
class TstSchema : public QObject
{
    Q_OBJECT
    std::unique_ptr<TestEnv> env;

private slots:
    void initTestCase()
    {
        env = std::make_unique<TestEnv>();
        env->createDatabase();
    }
    void cleanup()
    {
        VERIFY_UI_CLEAN(*env);
        QVERIFY(env->ui().messages().isEmpty());
    }
    void cleanupTestCase() { env.reset(); }

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
        Columns<QString, QString, QStringList>("table", "mode", "expected");
        auto row = [](const char* table, const char* mode, const char* columns) {
            Row(table, table, mode, split(columns));
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
        // The older scheme's tables (EncFormularios, DetFormularios, FormasPago...)
        // are made but no screen reads them: their presence is enough.
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
        Columns<QString, QString, QString>("form", "orden", "nombre");
        const QStringList forms{"F976 Régimen General DDJJ Mensual",
                                "F2001 Procom DDJJ Mensual",
                                "F978 Anexo Percepciones Deducidas",
                                "F977 Anexo Retenciones Deducidas",
                                "F988 Agentes de Percepción DDJJ Mensual",
                                "F987 Anexo Informativo de Percepciones Realizadas",
                                "F986 Agentes de Retención DDJJ Mensual",
                                "F985 Anexo Informativo de Retenciones Realizadas"};
        for (int i = 0; i < forms.size(); ++i) {
            const QString id = forms[i].section(' ', 0, 0);
            Row(qPrintable(id), id, QString::number(i + 1),
                "T.I.S.S.H. " + forms[i].section(' ', 1) + ": " + id);
        }
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
        Columns<QString, QString, QString>("form", "id", "codigo");
        for (const char* text : {"F977||0089", "F978||0090", "F985|7|0085", "F987|8|0087", "F976||",
                                 "F2001||", "F986||", "F988||"}) {
            const QStringList row = QString(text).split('|');
            Row(text, row[0], row[1], row[2]);
        }
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
        // The years' limits show in the new year's dialog; the flags that keep
        // a conversion from running twice, in a second start that changes
        // nothing.
        QCOMPARE(one("SELECT COUNT(*) FROM (SELECT Nombre FROM Opciones GROUP BY Nombre "
                     "HAVING COUNT(*) > 1)"),
                 QString("0"));
    }

    // The filters of the forms and the tree find their rows through an index,
    // on the tables of the upgrades as well.
    void filtersUseAnIndex_data()
    {
        Columns<QString, QString>("table", "where");
        const QString declaration = "Codigo = 'x' AND FechaRectificativa = '0' AND ctrl = '0'";
        const QString period = "Padron = 'p' AND Objeto = 'o' AND Periodo = '01-2020'";
        for (const char* t : {"F976", "F2001", "F977", "F978", "F985", "F987"})
            Row(qPrintable(QString(t) + " by Codigo"), t, declaration);
        for (const char* t : {"F976_Detalle", "F2001_Detalle", "F977_Detalle", "F978_Detalle",
                              "F985_Detalle", "F987_Detalle"})
            Row(t, t, declaration);
        for (const char* t : {"F976", "F986", "F988", "TPadrones_Formularios"})
            Row(qPrintable(QString(t) + " by period"), t, period);
        for (const char* pair : {"premises|tPadronesComerciales|padron = 'p' and Objeto = 'o'",
                                 "premises by cuit|tPadronesComerciales|Cuit = '20123456789'",
                                 "activities|Actividades_x_padrones|PADRON = 'p' AND OBJETO = 'o'",
                                 "activities by cuit|Actividades_x_padrones|cuit = '20123456789'",
                                 "taxpayer by cuit|Contribuyentes|Cuit = '20-12345678-9'"}) {
            const QStringList row = QString(pair).split('|');
            Row(qPrintable(row[0]), row[1], row[2]);
        }
    }
    void filtersUseAnIndex()
    {
        SKIP_ON_SERVER("the server plans with its own statistics");
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
        SKIP_ON_SERVER("a damaged file is the file's own case");
        env.reset();
        env = std::make_unique<TestEnv>();
        QByteArray junk(4096, '\0');
        for (int i = 0; i < junk.size(); ++i)
            junk[i] = char((i * 7919 + 13) % 251);
        QVERIFY(WriteBytes(DatabasePath(), junk));
        QVERIFY(!EnsureBaseSchema());
        CreateCurrentDatabase();
        EnsureIndices();
        CloseDatabase();
        QCOMPARE(ReadBytes(DatabasePath()), junk);
        QVERIFY(!QFile::exists(DatabasePath() + "-wal"));
        QVERIFY(!QFile::exists(DatabasePath() + "-journal"));
    }

    // A database of an older version sorted its indices on text by the
    // engine's own folding, ASCII only; once it takes this program's mark
    // they are sorted again and find every letter.
    void olderIndicesAreSortedAgainWithTheMark()
    {
        env = std::make_unique<TestEnv>();
        env->createDatabase();
        CloseDatabase();
        sqlite3* raw = nullptr;
        QCOMPARE(sqlite3_open(DatabasePath().toUtf8().constData(), &raw), SQLITE_OK);
        QString sql = "PRAGMA application_id = 0; CREATE INDEX ix_nombre ON Contribuyentes "
                      "(ApellidoNombre);";
        int id = 0;
        for (const char* name : {"Ñandú S.A.", "ábaco srl", "Zorro", "Ánima", "oso", "ÑANDU",
                                 "árbol", "Beta", "éxito", "Elefante", "ñu", "Nube"})
            for (int copy = 0; copy < 3; ++copy)
                sql += QString("INSERT INTO Contribuyentes (idContribuyente, ApellidoNombre) "
                               "VALUES (%1, '%2');")
                           .arg(++id)
                           .arg(name);
        QCOMPARE(sqlite3_exec(raw, sql.toUtf8().constData(), nullptr, nullptr, nullptr), SQLITE_OK);
        sqlite3_close(raw);
        QVERIFY(Db::column("PRAGMA integrity_check") != QStringList{"ok"});
        MarkDatabase();
        QCOMPARE(Db::column("PRAGMA integrity_check"), QStringList{"ok"});
        QCOMPARE(Db::column("SELECT COUNT(*) FROM Contribuyentes WHERE ApellidoNombre = "
                            "'ÑANDÚ S.A.'"),
                 QStringList{"3"});
        QCOMPARE(Db::column("PRAGMA application_id"), QStringList{"1297241676"});
    }
};

QTEST_GUILESS_MAIN(TstSchema)
#include "tst_schema.moc"
