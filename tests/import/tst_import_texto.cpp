#include <QtTest>

#include "Controller.h"
#include "Field.h"
#include "ImportFixture.h"
#include "Util.h"

using namespace ix;

namespace {

const QString kActividadCols =
    QStringLiteral("Codigo,FechaRectificativa,CodigoDetalle,TipoActividad,CodigoActividad,"
                   "BaseImponible,Alicuota,Impuesto,ctrl");
const QString kComprobanteCols =
    QStringLiteral("CodigoDetalle,Fecha,TipoComprobante,NroComprobante,Denominacion,Cuit,Padron,"
                   "ImportePercibido");

QByteArray cabecera(const QString& form, const QString& code = codigo())
{
    return ("1@" + code + "@" + form + "\n").toUtf8();
}

QByteArray actividad(const QString& base, const QString& rate, const QString& tax)
{
    return ("2@620100@Servicios de consultores@" + base + "@" + rate + "@" + tax + "\n").toUtf8();
}

// A line of an annex of perceptions suffered: the row code first.
QByteArray percepcion(const QString& fecha, const QString& cuit = "20-12345678-6",
                      const QString& code = codigo())
{
    return ("2@" + code + "@" + fecha + "@FACA@123@PROVEEDOR SA@" + cuit + "@4567@1234.5\n")
        .toUtf8();
}

QByteArray cabeceraAgente(const QString& form, const QString& kind = "O", const QString& mes = "03",
                          const QString& anio = "2024", const QString& cuit = "20-12345678-6")
{
    return ("1@" + form + "@" + kind + "@" + mes + "@" + anio + "@" + cuit + "@\n").toUtf8();
}

QByteArray agente(const QString& tipo, const QString& importe, const QString& fecha = "15-03-2024")
{
    return ("2@" + fecha + "@" + tipo + "@55@CLIENTE@20-12345678-6@12@" + importe + "\n").toUtf8();
}

QByteArray agenteSinTipo(const QString& importe, const QString& fecha = "15-03-2024")
{
    return ("2@" + fecha + "@55@CLIENTE@20-12345678-6@12@" + importe + "\n").toUtf8();
}

} // namespace

// The text rules: header checks, line checks and questions, what each line
// stores, and how files of every shape are read.
class TstImportTexto : public QObject
{
    Q_OBJECT
    std::unique_ptr<TestEnv> env;

    QString file(const QByteArray& bytes, const QString& name = "datos.txt")
    {
        const QString path = env->path(name);
        writeFile(path, bytes);
        return path;
    }
    // The message shown, when exactly one was.
    QString onlyMessage()
    {
        const auto& m = env->ui().messages();
        return m.size() == 1 ? m.first().text
               : m.isEmpty() ? "<none>"
                             : env->ui().texts().join(" || ");
    }

private slots:
    void init()
    {
        env = std::make_unique<TestEnv>();
        env->createDatabase();
        premises();
    }
    void cleanup() { env.reset(); }

    void headerOfTheDeclarationMustMatch_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<bool>("rect");
        QTest::addColumn<QByteArray>("header");
        QTest::addColumn<QString>("message");
        const QString c = codigo();
        QTest::newRow("padron") << "F976" << false << cabecera("F976", "9" + c.mid(1))
                                << "Número de Padrón incorrecto en Archivo";
        QTest::newRow("month") << "F976" << false
                               << cabecera("F976", kPadron + "042024" + kObjeto + "O")
                               << "Periodo incorrecto en Archivo";
        QTest::newRow("year") << "F2001" << false
                              << cabecera("F2001", kPadron + "032023" + kObjeto + "O")
                              << "Periodo incorrecto en Archivo";
        QTest::newRow("objeto") << "F976" << false
                                << cabecera("F976", kPadron + "032024" + "0000000000008O")
                                << "Número de Objeto incorrecto en Archivo";
        QTest::newRow("rectifying file, original declaration")
            << "F976" << false << cabecera("F976", codigo(true))
            << "Archivo incorrecto, el archivo que desea importar es una Rectificativa";
        QTest::newRow("original file, rectifying declaration")
            << "F977" << true << cabecera("F977", codigo(false))
            << "Archivo incorrecto, el archivo que desea importar es un Original";
        QTest::newRow("another form")
            << "F976" << false << cabecera("F2001")
            << "Archivo incorrecto, el archivo que desea importar pertenece a un formulario F2001";
        QTest::newRow("annex of another form")
            << "F978" << false << cabecera("F977")
            << "Archivo incorrecto, el archivo que desea importar pertenece a un formulario F977";
        QTest::newRow("short code")
            << "F978" << false << QByteArray("1@123\n") << "Número de Padrón incorrecto en Archivo";
    }
    void headerOfTheDeclarationMustMatch()
    {
        QFETCH(QString, form);
        QFETCH(bool, rect);
        QFETCH(QByteArray, header);
        QFETCH(QString, message);
        const QByteArray line = form == "F976" || form == "F2001"
                                    ? actividad("100.00", "0,60", "0.60")
                                    : percepcion("15-03-2024", "20-12345678-6", codigo(rect));
        QVERIFY(!importar(form, file(header + line), rect));
        QCOMPARE(onlyMessage(), "Error en línea 1\n" + message);
        QCOMPARE(env->ui().messages().first().style, Msg::Information);
        QCOMPARE(count(form + "_Detalle"), 0);
        VERIFY_UI_CLEAN(*env);
    }

    void headerOfAnAgentMustMatch_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<QByteArray>("header");
        QTest::addColumn<QString>("message");
        QTest::newRow("form") << "F987" << cabeceraAgente("F985")
                              << "Archivo incorrecto, el archivo que desea importar pertenece a "
                                 "un formulario F985";
        QTest::newRow("kind") << "F985" << cabeceraAgente("F985", "R")
                              << "Archivo incorrecto, el archivo que desea importar es una "
                                 "Rectificativa";
        QTest::newRow("month") << "F987" << cabeceraAgente("F987", "O", "04")
                               << "Periodo incorrecto en Archivo";
        QTest::newRow("year") << "F987" << cabeceraAgente("F987", "O", "03", "2023")
                              << "Año incorrecto en Archivo";
        QTest::newRow("cuit") << "F985" << cabeceraAgente("F985", "O", "03", "2024", "20111111112")
                              << "CUIT incorrecto en Archivo";
        QTest::newRow("no cuit") << "F987" << cabeceraAgente("F987", "O", "03", "2024", "")
                                 << "CUIT incorrecto en Archivo";
    }
    void headerOfAnAgentMustMatch()
    {
        QFETCH(QString, form);
        QFETCH(QByteArray, header);
        QFETCH(QString, message);
        QVERIFY(!importar(form, file(header + agente("FACA", "10.00") + "3@1@10.00\n")));
        QCOMPARE(onlyMessage(), "Error en línea 1\n" + message);
        QCOMPARE(count(form + "_Detalle"), 0);
    }

    void agentHeaderWithTheCuitUnmaskedIsAccepted()
    {
        QVERIFY(importar("F987", file(cabeceraAgente("F987", "O", "03", "2024", kCuit) +
                                      agente("FACA", "10.00") + "3@1@10.00\n")));
        QCOMPARE(count("F987_Detalle"), 1);
        VERIFY_UI_CLEAN(*env);
    }

    void activityLinesAreStoredAsRead()
    {
        QVERIFY(importar("F976", file(cabecera("F976") + actividad("10000.00", "0,60", "60.00") +
                                      actividad("2500.5", "3,60", "90.02"))));
        QCOMPARE(rows("F976_Detalle", kActividadCols),
                 QStringList({codigo() + "|0|0001|Servicios de consultores|620100|10000,00|0,60|"
                                         "60,00|0",
                              codigo() + "|0|0002|Servicios de consultores|620100|2500,50|3,60|"
                                         "90,02|0"}));
        QVERIFY(env->ui().messages().isEmpty());
    }

    void rectifyingDeclarationKeysItsLinesByItsDate()
    {
        QVERIFY(importar(
            "F2001", file(cabecera("F2001", codigo(true)) + actividad("100", "6,00", "6")), true));
        QCOMPARE(rows("F2001_Detalle", "Codigo,FechaRectificativa,CodigoDetalle"),
                 QStringList{codigo(true) + "|10-04-2024|0001"});
    }

    void theFifthActivityStopsTheImportAndTheFourBeforeStay()
    {
        QByteArray text = cabecera("F976");
        for (int i = 0; i < 6; ++i)
            text += actividad("100.00", "0,60", "0.60");
        QVERIFY(!importar("F976", file(text)));
        QCOMPARE(onlyMessage(),
                 "Error en línea 6\nEl formulario F976 no puede contener mas de 4 registros en "
                 "el detalle");
        QCOMPARE(rows("F976_Detalle", "CodigoDetalle"),
                 QStringList({"0001", "0002", "0003", "0004"}));
    }

    void theLimitCountsTheLinesAlreadyThere()
    {
        for (const char* n : {"0001", "0002", "0003"})
            gAccess().Execute("INSERT INTO F2001_Detalle (Codigo, FechaRectificativa, "
                              "CodigoDetalle, ctrl) VALUES ('" +
                              codigo() + "', '0', '" + n + "', '0')");
        QVERIFY(!importar("F2001", file(cabecera("F2001") + actividad("1", "6,00", "0.06") +
                                        actividad("2", "6,00", "0.12"))));
        QCOMPARE(onlyMessage(), "Error en línea 3\nEl formulario F2001 no puede contener mas de "
                                "4 registros en el detalle");
        QCOMPARE(rows("F2001_Detalle", "CodigoDetalle"),
                 QStringList({"0001", "0002", "0003", "0004"}));
    }

    void aRateOutsideTheListAsks_data()
    {
        QTest::addColumn<QString>("rate");
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("result");
        QTest::addColumn<QStringList>("stored");
        QTest::newRow("0,6 and go on")
            << "0,6" << int(Msg::Yes) << true << QStringList({"0001|0,60", "0002|6,00"});
        QTest::newRow("0,6 and stop")
            << "0,6" << int(Msg::No) << false << QStringList({"0001|0,60"});
        QTest::newRow("dotted rate")
            << "0.60" << int(Msg::No) << false << QStringList({"0001|0,60"});
        QTest::newRow("empty rate")
            << "" << int(Msg::Yes) << true << QStringList({"0001|0,60", "0002|6,00"});
    }
    void aRateOutsideTheListAsks()
    {
        QFETCH(QString, rate);
        QFETCH(int, answer);
        QFETCH(bool, result);
        QFETCH(QStringList, stored);
        env->ui().answer("El valor de alícuota no es válido", answer);
        QCOMPARE(importar("F976",
                          file(cabecera("F976") + actividad("100", "0,60", "0.60") +
                               actividad("100", rate, "0.60") + actividad("100", "6,00", "6.00"))),
                 result);
        QCOMPARE(onlyMessage(), "Error en línea 3\nEl valor de alícuota no es válido\n"
                                "¿Continuar con la lectura del archivo?");
        QCOMPARE(env->ui().messages().first().style & Msg::YesNo, Msg::YesNo);
        QCOMPARE(rows("F976_Detalle", "CodigoDetalle,Alicuota"), stored);
        VERIFY_UI_CLEAN(*env);
    }

    void aTaxOffByOneCentAsks_data()
    {
        QTest::addColumn<int>("answer");
        QTest::addColumn<QStringList>("stored");
        QTest::newRow("ignore: stored as read")
            << int(Msg::Yes) << QStringList({"0001|1234,57", "0002|1234,56", "0003|1,20"});
        QTest::newRow("do not ignore: left out")
            << int(Msg::No) << QStringList({"0001|1234,57", "0002|1,20"});
    }
    void aTaxOffByOneCentAsks()
    {
        QFETCH(int, answer);
        QFETCH(QStringList, stored);
        env->ui().answer("¿Ignorar el error?", answer);
        // 102880.50 * 1.20 / 100 = 1234.566, which rounds to 1234.57.
        QVERIFY(importar("F976", file(cabecera("F976") + actividad("102880.50", "1,20", "1234.57") +
                                      actividad("102880.50", "1,20", "1234.56") +
                                      actividad("100", "1,20", "1.20"))));
        QCOMPARE(onlyMessage(),
                 "Error en línea 3\nEl valor del impuesto no es el mismo que el valor calculado "
                 "(Base Imponible * Alícuota)\n¿Ignorar el error?");
        QCOMPARE(rows("F976_Detalle", "CodigoDetalle,Impuesto"), stored);
        VERIFY_UI_CLEAN(*env);
    }

    void emptyLinesAreSkippedAndNotCounted()
    {
        Field progress("prgImportar", FieldKind::Progress);
        progress.setVisible(false);
        const QByteArray text = "\r\n" + cabecera("F976") + "\r\n\n\r\n" +
                                actividad("100", "0,60", "0.60").replace("\n", "\r\n") + "\n\n" +
                                actividad("100", "0,6", "0.60");
        env->ui().answer("alícuota", Msg::No);
        QVERIFY(!importar("F976", file(text), false, &progress));
        QCOMPARE(onlyMessage().left(17), QString("Error en línea 3\n"));
        QCOMPARE(progress.maximum(), 3);
        QVERIFY(!progress.visible());
        QCOMPARE(count("F976_Detalle"), 1);
    }

    void linesOfOtherTypesAreSkipped()
    {
        QVERIFY(importar("F976", file("0@comment\n" + cabecera("F976") + "9@x@y\n" +
                                      actividad("100", "0,60", "0.60") + "3@1@0.60\n")));
        QCOMPARE(count("F976_Detalle"), 1);
        QVERIFY(env->ui().messages().isEmpty());
    }

    void annexLinesAreStoredInTheirFormat()
    {
        QVERIFY(importar("F978", file(cabecera("F978") + percepcion("15-03-2024"))));
        QVERIFY(importar("F977", file(cabecera("F977") + "2@" + codigo().toUtf8() +
                                      "@01-01-2020@ 42 @RETENEDOR@20123456786@A-1@7\n")));
        QCOMPARE(rows("F978_Detalle", kComprobanteCols),
                 QStringList{"0001|15-03-2024|FACA - Factura A|000000000000123|PROVEEDOR SA|"
                             "20-12345678-6|0000000004567|1234,50"});
        QCOMPARE(rows("F977_Detalle", QString(kComprobanteCols).replace("TipoComprobante,", "")),
                 QStringList{"0001|01-01-2020|000000000000042|RETENEDOR|20-12345678-6|A-1|"
                             "7,00"});
        VERIFY_UI_CLEAN(*env);
    }

    void annexLineChecks_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QString>("message");
        const QString fechaArchivo =
            "Formato de fecha incorrecto en Archivo. El mismo debe ser DD-MM-YYYY.";
        QTest::newRow("F978 date form") << "F978" << percepcion("2024-03-15") << fechaArchivo;
        QTest::newRow("F978 no date") << "F978" << percepcion("31-02-2024") << fechaArchivo;
        QTest::newRow("F978 cuit digit") << "F978" << percepcion("15-03-2024", "20-12345678-5")
                                         << "El CUIT informado no es válido. Verifique.";
        QTest::newRow("F978 cuit letters") << "F978" << percepcion("15-03-2024", "2O123456786")
                                           << "El CUIT informado no es válido. Verifique.";
        QTest::newRow("F985 short date")
            << "F985" << agenteSinTipo("1", "1-3-2024") << fechaArchivo;
        QTest::newRow("F987 short date") << "F987" << agente("FACA", "1", "1-3-2024")
                                         << "Formato de fecha incorrecto en Archivo";
        QTest::newRow("F987 after the period") << "F987" << agente("FACA", "1", "01-04-2024")
                                               << "Fecha incorrecta, posterior al periodo.";
        QTest::newRow("F985 after the period") << "F985" << agenteSinTipo("1", "15-03-2025")
                                               << "Fecha incorrecta, posterior al periodo.";
    }
    void annexLineChecks()
    {
        QFETCH(QString, form);
        QFETCH(QByteArray, line);
        QFETCH(QString, message);
        const bool agent = form == "F985" || form == "F987";
        const QByteArray good = agent ? (form == "F987" ? agente("FACA", "1") : agenteSinTipo("1"))
                                      : percepcion("01-03-2024");
        const QByteArray head = agent ? cabeceraAgente(form) : cabecera(form);
        QVERIFY(!importar(form, file(head + good + line + good + "3@3@3\n")));
        QCOMPARE(onlyMessage(), "Error en línea 3\n" + message);
        QCOMPARE(count(form + "_Detalle"), 1);
    }

    void aLineOfAnotherDeclarationAsks_data()
    {
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("result");
        QTest::addColumn<int>("stored");
        QTest::newRow("go on") << int(Msg::Yes) << true << 2;
        QTest::newRow("stop") << int(Msg::No) << false << 1;
    }
    void aLineOfAnotherDeclarationAsks()
    {
        QFETCH(int, answer);
        QFETCH(bool, result);
        QFETCH(int, stored);
        env->ui().answer("Código no coincide con cabecera.", answer);
        const QString other = kPadron + "022024" + kObjeto + "O";
        QCOMPARE(importar("F978", file(cabecera("F978") + percepcion("01-03-2024") +
                                       percepcion("01-03-2024", "20-12345678-6", other) +
                                       percepcion("02-03-2024"))),
                 result);
        QCOMPARE(onlyMessage(), "Error en línea 3\nCódigo no coincide con cabecera.\n"
                                "¿Continuar con la lectura del archivo?");
        QCOMPARE(count("F978_Detalle"), stored);
        VERIFY_UI_CLEAN(*env);
    }

    void trailerOfAgents_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<QByteArray>("trailer");
        QTest::addColumn<QString>("message");
        const QString sum = "La suma de los importes en el detalle no coincide con el total "
                            "especificado al final del archivo.";
        const QString many = "La cantidad de elementos en el detalle no coincide con la cantidad "
                             "especificada al final del archivo. Por favor verifique.";
        QTest::newRow("credit note lowers the sum") << "F987" << QByteArray("3@3@70.25") << "";
        QTest::newRow("credit note added") << "F987" << QByteArray("3@3@130.75") << sum;
        QTest::newRow("F985 has no credit notes") << "F985" << QByteArray("3@3@130.75") << "";
        QTest::newRow("one cent off") << "F987" << QByteArray("3@3@70.24") << sum;
        QTest::newRow("count") << "F987" << QByteArray("3@2@70.25") << many;
        QTest::newRow("count not a figure") << "F987" << QByteArray("3@tres@70.25") << many;
    }
    void trailerOfAgents()
    {
        QFETCH(QString, form);
        QFETCH(QByteArray, trailer);
        QFETCH(QString, message);
        const bool f987 = form == "F987";
        const QByteArray text = cabeceraAgente(form) +
                                (f987 ? agente("FACA", "100.00") : agenteSinTipo("100.00")) +
                                (f987 ? agente("NCRA", "30.25") : agenteSinTipo("30.25")) +
                                (f987 ? agente("FACB", "0.50") : agenteSinTipo("0.50")) + trailer;
        QCOMPARE(importar(form, file(text)), message.isEmpty());
        QCOMPARE(onlyMessage(), message.isEmpty() ? "<none>" : "Error en línea 5\n" + message);
        QCOMPARE(count(form + "_Detalle"), 3);
    }

    void aFileSavedOnWindowsImportsWhole()
    {
        QVERIFY(importar("F987", data("f987_windows1252.txt")));
        QCOMPARE(rows("F987_Detalle", kComprobanteCols),
                 QStringList({"0001|05-03-2024|FACA - Factura A|0001-00000123|"
                              "ALMACÉN DOÑA MARÍA|20-12345678-6|0000000004567|1500,00",
                              "0002|12-03-2024|NCRA - Nota de Crédito A|0001-00000009|"
                              "ALMACÉN DOÑA MARÍA|20-12345678-6|0000000004567|250,50",
                              "0003|28-02-2024|FACB - Factura B|000000000000077|PEREZ & HIJOS|"
                              "20-12345678-6|0000000000012|99,99"}));
        VERIFY_UI_CLEAN(*env);
        QVERIFY(env->ui().messages().isEmpty());
    }

    void agentFileWithoutTrailerSaysSo()
    {
        QVERIFY(!importar("F987", file(cabeceraAgente("F987") + agente("FACA", "1"))));
        QVERIFY(onlyMessage().contains("registro de totales"));
        QCOMPARE(count("F987_Detalle"), 1);
    }

    void f987TextLinesLandInTheirOwnTable()
    {
        QVERIFY(importar("F987", file(cabeceraAgente("F987") + agente("NCRB", "5") + "3@1@-5\n")));
        QCOMPARE(rows("F987_Detalle", kComprobanteCols),
                 QStringList{"0001|15-03-2024|NCRB - Nota de Crédito B|000000000000055|CLIENTE|"
                             "20-12345678-6|0000000000012|5,00"});
        QCOMPARE(count("F978_Detalle"), 0);
    }

    void numbersFollowTheLinesAlreadyThere()
    {
        gAccess().Execute("INSERT INTO F978_Detalle (Codigo, FechaRectificativa, CodigoDetalle, "
                          "ctrl) VALUES ('" +
                          codigo() + "', '0', '0007', '0')");
        QVERIFY(importar(
            "F978", file(cabecera("F978") + percepcion("01-03-2024") + percepcion("02-03-2024"))));
        QCOMPARE(rows("F978_Detalle", "CodigoDetalle"), QStringList({"0007", "0008", "0009"}));
    }

    void accentsAreReadInEitherEncoding_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("utf-8") << QByteArray("ALMAC\xC3\x89N O'HIGGINS \xE2\x82\xAC");
        QTest::newRow("utf-8 with BOM") << QByteArray("ALMAC\xC3\x89N O'HIGGINS \xE2\x82\xAC");
        QTest::newRow("windows-1252") << QByteArray("ALMAC\xC9N O'HIGGINS \x80");
    }
    void accentsAreReadInEitherEncoding()
    {
        QFETCH(QByteArray, name);
        const QByteArray bom = QByteArray(QTest::currentDataTag()).contains("BOM")
                                   ? QByteArray("\xEF\xBB\xBF")
                                   : QByteArray();
        const QByteArray line =
            "2@" + codigo().toUtf8() + "@01-03-2024@FACA@1@" + name + "@20123456786@1@1\r\n";
        QVERIFY(importar("F978", file(bom + cabecera("F978") + line)));
        QCOMPARE(rows("F978_Detalle", "Denominacion"),
                 QStringList{QString::fromUtf8("ALMACÉN O'HIGGINS €")});
    }

    void linesOfMegabytesAreRead()
    {
        const QByteArray big(3 * 1024 * 1024, 'X');
        const QByteArray text = cabecera("F978") + "9@" + big + "\n" + "2@" + codigo().toUtf8() +
                                "@01-03-2024@FACA@1@" + big + "@20123456786@1@1\n" +
                                percepcion("02-03-2024");
        QVERIFY(importar("F978", file(text)));
        QCOMPARE(gAccess().GetLong("SELECT LEN(Denominacion) FROM F978_Detalle WHERE "
                                   "CodigoDetalle = '0001'"),
                 big.size());
        QCOMPARE(count("F978_Detalle"), 2);
    }

    void aBinaryFileGivesAClearMessageAndKeepsWhatWasStored()
    {
        QVERIFY(importar("F978", file(cabecera("F978") + percepcion("01-03-2024"))));
        QByteArray binary;
        for (int i = 0; i < 200000; ++i)
            binary += char((i * 7919) % 251);
        QVERIFY(!importar("F978", file(binary, "imagen.txt")));
        QCOMPARE(env->ui().messages().size(), 1);
        QVERIFY(!env->ui().lastText().isEmpty());
        QCOMPARE(count("F978_Detalle"), 1);
    }

    void aDetailBeforeAnyHeaderStops()
    {
        QVERIFY(!importar("F976", file(actividad("100", "0,60", "0.60") + cabecera("F976"))));
        QCOMPARE(onlyMessage(), "Error en línea 1\nArchivo incorrecto, falta el registro de "
                                "cabecera.");
        QCOMPARE(count("F976_Detalle"), 0);
    }

    void aMissingFileGivesAMessage()
    {
        QVERIFY(!importar("F976", env->path("no-existe.txt")));
        QVERIFY(onlyMessage().startsWith("No se pudo abrir el archivo"));
    }

    void valuesWithQuotesAreStoredAsTyped()
    {
        const QByteArray line = "2@" + codigo().toUtf8() +
                                "@01-03-2024@FACA@1@O'HIGGINS'); DROP TABLE F978_Detalle;--"
                                "@20123456786@1@1\n";
        QVERIFY(importar("F978", file(cabecera("F978") + line)));
        QCOMPARE(rows("F978_Detalle", "Denominacion"),
                 QStringList{"O'HIGGINS'); DROP TABLE F978_Detalle;--"});
    }

    // --- The frame: the file, its name, the form's controls ----------------------

    void theFileIsChosenInTheDialogAndItsFolderRemembered()
    {
        const QString path = file(cabecera("F976") + actividad("100", "0,60", "0.60"));
        env->ui().setOpenFile(path);
        ZoImport imp;
        imp.IdFormulario = "F976";
        QString p = parametros("F976");
        QVERIFY(imp.Importar(p, false));
        QCOMPARE(count("F976_Detalle"), 1);
        QCOMPARE(ZoImport::CarpetaAnterior(), QFileInfo(path).absolutePath());
    }

    void aCancelledDialogChangesNothing()
    {
        QVERIFY(importar("F976", file(cabecera("F976") + actividad("100", "0,60", "0.60"))));
        env->ui().setOpenFile(QString());
        ZoImport imp;
        imp.IdFormulario = "F976";
        QString p = parametros("F976");
        const QString before = p;
        QVERIFY(!imp.Importar(p, true));
        QCOMPARE(p, before);
        QVERIFY(env->ui().messages().isEmpty());
        QCOMPARE(count("F976_Detalle"), 1);
    }

    void theRuleFollowsTheName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("asksHeader");
        QTest::addColumn<int>("stored");
        QTest::newRow("text anywhere in the name") << "datos.txt.xls" << false << 1;
        QTest::newRow("capitals") << "DATOS.TXT" << false << 1;
        QTest::newRow("spreadsheet in capitals") << "LIBRO.XLS" << true << 0;
        QTest::newRow("xls not at the end") << "datos.xls.bak" << true << 0;
        QTest::newRow("other files are ignored") << "datos.csv" << false << 0;
    }
    void theRuleFollowsTheName()
    {
        QFETCH(QString, name);
        QFETCH(bool, asksHeader);
        QFETCH(int, stored);
        if (asksHeader)
            env->ui().answer("¿tiene encabezado?", Msg::No);
        importar("F976", file(cabecera("F976") + actividad("100", "0,60", "0.60"), name));
        QCOMPARE(count("F976_Detalle"), stored);
        if (asksHeader) {
            QCOMPARE(env->ui().messages().first().title, "Importar archivo de Excel");
            QCOMPARE(env->ui().messages().first().text,
                     "La hoja del archivo Excel, ¿tiene encabezado?");
        }
        VERIFY_UI_CLEAN(*env);
    }

    void theFormsControlsAreGivenBackTheirState()
    {
        class Form : public Controller
        {
        public:
            Form() : Controller("F976") {}
            void design() override
            {
                add("cmdImportar", FieldKind::Button, "Importar");
                add("cmdModificar", FieldKind::Button, "Modificar").setEnabled(false);
                add("gridFormulario", FieldKind::Grid);
                add("txtPadron", FieldKind::Text).setEnabled(false);
            }
        } form;
        form.load();
        env->ui().setOpenFile(file(cabecera("F976") + actividad("100", "0,6", "0.60")));
        QString p = parametros("F976");
        p.replace("Formulario=F976;", "");
        bool enabledMeanwhile = true;
        env->ui().answer("alícuota", Msg::No);
        // The question comes while the import runs: the form's controls are off.
        QObject::connect(&form.field("cmdImportar"), &Field::changed, [&](Field* f, auto) {
            if (!f->enabled())
                enabledMeanwhile = false;
        });
        QVERIFY(!ZoImport::ImportarDesde(form, p, nullptr));
        QVERIFY(!enabledMeanwhile);
        QVERIFY(form.field("cmdImportar").enabled());
        QVERIFY(!form.field("cmdModificar").enabled());
        QVERIFY(form.field("gridFormulario").enabled());
    }

    void helpers()
    {
        QCOMPARE(ZoImport::DeleteZeros("000120"), QString("120"));
        QCOMPARE(ZoImport::DeleteZeros("0000"), QString());
        QCOMPARE(ZoImport::DeleteZeros("A00"), QString("A00"));
        QVERIFY(ZoImport::FechaPeriodo("31-03-2024", 3, 2024));
        QVERIFY(ZoImport::FechaPeriodo("01-12-2023", 3, 2024));
        QVERIFY(!ZoImport::FechaPeriodo("01-04-2024", 3, 2024));
        QVERIFY(!ZoImport::FechaPeriodo("30-02-2024", 3, 2024));
        QVERIFY(!ZoImport::FechaPeriodo("1-3-2024", 3, 2024));
        QVERIFY(ZoImport::EsCuitValido("20-12345678-6"));
        QVERIFY(ZoImport::EsCuitValido("20123456786"));
        QVERIFY(!ZoImport::EsCuitValido("2012345678"));
        QVERIFY(!ZoImport::EsCuitValido("20123456785"));
        QVERIFY(!ZoImport::EsCuitValido("20 12345678 6"));
    }
};

QTEST_GUILESS_MAIN(TstImportTexto)
#include "tst_import_texto.moc"
