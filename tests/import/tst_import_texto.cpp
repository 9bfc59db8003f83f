#include <QtTest>

#include "Controller.h"
#include "Field.h"
#include "ImportFixture.h"

using namespace ix;

namespace {

const QString kActividadCols =
    "Codigo,FechaRectificativa,CodigoDetalle,TipoActividad,CodigoActividad,BaseImponible,"
    "Alicuota,Impuesto,ctrl";
const QString kComprobanteCols =
    "CodigoDetalle,Fecha,TipoComprobante,NroComprobante,Denominacion,Cuit,Padron,ImportePercibido";
const QString kTooMany = "El formulario %1 no puede contener mas de 4 registros en el detalle";

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

// A line of an agent's annex: F987 names the voucher type, F985 has none.
QByteArray agente(const QString& form, const QString& importe, const QString& fecha = "15-03-2024",
                  const QString& tipo = "FACA")
{
    return ("2@" + fecha + (form == "F987" ? "@" + tipo : QString()) +
            "@55@CLIENTE@20-12345678-6@12@" + importe + "\n")
        .toUtf8();
}

bool isAgent(const QString& form)
{
    return form == "F985" || form == "F987";
}

} // namespace

// The text rules: header checks, line checks and questions, what each line
// stores, and how files of every shape are read.
class TstImportTexto : public EnvTest
{
    Q_OBJECT
    void seed() override { premises(); }

    QString file(const QByteArray& bytes, const QString& name = "datos.txt")
    {
        WriteBytes(env->path(name), bytes);
        return env->path(name);
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
    void headerMustMatch_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<bool>("rect");
        QTest::addColumn<QByteArray>("header");
        QTest::addColumn<QString>("message"); // "" when accepted
        const QString c = codigo();
        const QString other = "Archivo incorrecto, el archivo que desea importar ";
        auto row = [](const char* name, const char* form, bool rect, const QByteArray& header,
                      const QString& message) {
            QTest::newRow(name) << form << rect << header << message;
        };
        row("padron", "F976", false, cabecera("F976", "9" + c.mid(1)),
            "Número de Padrón incorrecto en Archivo");
        row("month", "F976", false, cabecera("F976", kPadron + "042024" + kObjeto + "O"),
            "Periodo incorrecto en Archivo");
        row("year", "F2001", false, cabecera("F2001", kPadron + "032023" + kObjeto + "O"),
            "Periodo incorrecto en Archivo");
        row("objeto", "F976", false, cabecera("F976", kPadron + "032024" + "0000000000008O"),
            "Número de Objeto incorrecto en Archivo");
        row("rectifying file, original declaration", "F976", false, cabecera("F976", codigo(true)),
            other + "es una Rectificativa");
        row("original file, rectifying declaration", "F977", true, cabecera("F977", codigo()),
            other + "es un Original");
        row("another form", "F976", false, cabecera("F2001"),
            other + "pertenece a un formulario F2001");
        row("annex of another form", "F978", false, cabecera("F977"),
            other + "pertenece a un formulario F977");
        row("short code", "F978", false, "1@123\n", "Número de Padrón incorrecto en Archivo");
        row("agent: form", "F987", false, cabeceraAgente("F985"),
            other + "pertenece a un formulario F985");
        row("agent: kind", "F985", false, cabeceraAgente("F985", "R"),
            other + "es una Rectificativa");
        row("agent: month", "F987", false, cabeceraAgente("F987", "O", "04"),
            "Periodo incorrecto en Archivo");
        row("agent: year", "F987", false, cabeceraAgente("F987", "O", "03", "2023"),
            "Año incorrecto en Archivo");
        row("agent: cuit", "F985", false, cabeceraAgente("F985", "O", "03", "2024", "20111111112"),
            "CUIT incorrecto en Archivo");
        row("agent: no cuit", "F987", false, cabeceraAgente("F987", "O", "03", "2024", ""),
            "CUIT incorrecto en Archivo");
        row("agent: cuit unmasked", "F987", false, cabeceraAgente("F987", "O", "03", "2024", kCuit),
            "");
    }
    void headerMustMatch()
    {
        QFETCH(QString, form);
        QFETCH(bool, rect);
        QFETCH(QByteArray, header);
        QFETCH(QString, message);
        const QByteArray line =
            form == "F976" || form == "F2001" ? actividad("100.00", "0,60", "0.60")
            : isAgent(form)                   ? agente(form, "10.00") + "3@1@10.00\n"
                            : percepcion("15-03-2024", "20-12345678-6", codigo(rect));
        QCOMPARE(importar(form, file(header + line), rect), message.isEmpty());
        QCOMPARE(onlyMessage(), message.isEmpty() ? "<none>" : "Error en línea 1\n" + message);
        if (!message.isEmpty())
            QCOMPARE(env->ui().messages().first().style, Msg::Information);
        QCOMPARE(Db::count(form + "_Detalle"), message.isEmpty() ? 1 : 0);
    }

    void linesAreStoredAsRead_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<bool>("rect");
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("table");
        QTest::addColumn<QString>("columns");
        QTest::addColumn<QStringList>("stored");
        QTest::newRow("activities")
            << "F976" << false
            << cabecera("F976") + actividad("10000.00", "0,60", "60.00") +
                   actividad("2500.5", "3,60", "90.02")
            << "F976_Detalle" << kActividadCols
            << QStringList{codigo() + "|0|0001|Servicios de consultores|620100|10000,00|0,60|"
                                      "60,00|0",
                           codigo() + "|0|0002|Servicios de consultores|620100|2500,50|3,60|"
                                      "90,02|0"};
        QTest::newRow("a rectifying declaration keys its lines by its date")
            << "F2001" << true << cabecera("F2001", codigo(true)) + actividad("100", "6,00", "6")
            << "F2001_Detalle"
            << "Codigo,FechaRectificativa,CodigoDetalle"
            << QStringList{codigo(true) + "|10-04-2024|0001"};
        QTest::newRow("perceptions suffered")
            << "F978" << false << cabecera("F978") + percepcion("15-03-2024") << "F978_Detalle"
            << kComprobanteCols
            << QStringList{"0001|15-03-2024|FACA - Factura A|000000000000123|PROVEEDOR SA|"
                           "20-12345678-6|0000000004567|1234,50"};
        QTest::newRow("retentions suffered")
            << "F977" << false
            << cabecera("F977") + "2@" + codigo().toUtf8() +
                   "@01-01-2020@ 42 @RETENEDOR@20123456786@A-1@7\n"
            << "F977_Detalle" << QString(kComprobanteCols).remove("TipoComprobante,")
            << QStringList{"0001|01-01-2020|000000000000042|RETENEDOR|20-12345678-6|A-1|7,00"};
        QTest::newRow("F987 in its own table")
            << "F987" << false
            << cabeceraAgente("F987") + agente("F987", "5", "15-03-2024", "NCRB") + "3@1@-5\n"
            << "F987_Detalle" << kComprobanteCols
            << QStringList{"0001|15-03-2024|NCRB - Nota de Crédito B|000000000000055|CLIENTE|"
                           "20-12345678-6|0000000000012|5,00"};
        QTest::newRow("quotes as typed")
            << "F978" << false
            << cabecera("F978") + "2@" + codigo().toUtf8() +
                   "@01-03-2024@FACA@1@O'HIGGINS'); DROP TABLE F978_Detalle;--@20123456786@1@1\n"
            << "F978_Detalle"
            << "Denominacion" << QStringList{"O'HIGGINS'); DROP TABLE F978_Detalle;--"};
    }
    void linesAreStoredAsRead()
    {
        QFETCH(QString, form);
        QFETCH(bool, rect);
        QFETCH(QByteArray, text);
        QFETCH(QString, table);
        QFETCH(QString, columns);
        QFETCH(QStringList, stored);
        QVERIFY(importar(form, file(text), rect));
        QCOMPARE(rows(table, columns), stored);
        QVERIFY(env->ui().messages().isEmpty());
        if (form == "F987")
            QCOMPARE(Db::count("F978_Detalle"), 0);
    }

    // The numbers follow the lines already there, and those count against
    // the four lines a monthly return may import: the fifth stops the import
    // and the four before it stay.
    void numbersAndTheFourLineLimit_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<QStringList>("there");
        QTest::addColumn<int>("lines");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QStringList>("numbers");
        QTest::newRow("the fifth F976 line")
            << "F976" << QStringList{} << 6 << "Error en línea 6\n" + kTooMany.arg("F976")
            << QStringList{"0001", "0002", "0003", "0004"};
        QTest::newRow("three there, the second F2001 line")
            << "F2001" << QStringList{"0001", "0002", "0003"} << 2
            << "Error en línea 3\n" + kTooMany.arg("F2001")
            << QStringList{"0001", "0002", "0003", "0004"};
        QTest::newRow("annex lines after 0007") << "F978" << QStringList{"0007"} << 2 << "<none>"
                                                << QStringList{"0007", "0008", "0009"};
    }
    void numbersAndTheFourLineLimit()
    {
        QFETCH(QString, form);
        QFETCH(QStringList, there);
        QFETCH(int, lines);
        QFETCH(QString, message);
        QFETCH(QStringList, numbers);
        for (const QString& n : there)
            Db::insert(form + "_Detalle", {"Codigo=" + codigo(), "FechaRectificativa=0",
                                           "CodigoDetalle=" + n, "ctrl=0"});
        QByteArray text = cabecera(form);
        for (int i = 0; i < lines; ++i)
            text += form == "F978" ? percepcion("01-03-2024") : actividad("100.00", "0,60", "0.60");
        QCOMPARE(importar(form, file(text)), message == "<none>");
        QCOMPARE(onlyMessage(), message);
        QCOMPARE(rows(form + "_Detalle", "CodigoDetalle"), numbers);
    }

    void aRateOutsideTheListAsks_data()
    {
        QTest::addColumn<QString>("rate");
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("result");
        QTest::addColumn<QStringList>("stored");
        const QStringList all{"0001|0,60", "0002|6,00"}, first{"0001|0,60"};
        QTest::newRow("0,6 and go on") << "0,6" << int(Msg::Yes) << true << all;
        QTest::newRow("0,6 and stop") << "0,6" << int(Msg::No) << false << first;
        QTest::newRow("dotted rate") << "0.60" << int(Msg::No) << false << first;
        QTest::newRow("empty rate") << "" << int(Msg::Yes) << true << all;
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
        QCOMPARE(Db::count("F976_Detalle"), 1);
    }

    void linesOfOtherTypesAreSkipped()
    {
        QVERIFY(importar("F976", file("0@comment\n" + cabecera("F976") + "9@x@y\n" +
                                      actividad("100", "0,60", "0.60") + "3@1@0.60\n")));
        QCOMPARE(Db::count("F976_Detalle"), 1);
        QVERIFY(env->ui().messages().isEmpty());
    }

    void annexLineChecks_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QString>("message");
        const QString fecha = "Formato de fecha incorrecto en Archivo";
        const QString dashes = fecha + ". El mismo debe ser DD-MM-YYYY.";
        const QString cuit = "El CUIT informado no es válido. Verifique.";
        const QString later = "Fecha incorrecta, posterior al periodo.";
        auto row = [](const char* name, const char* form, const QByteArray& line,
                      const QString& message) { QTest::newRow(name) << form << line << message; };
        row("F978 date form", "F978", percepcion("2024-03-15"), dashes);
        row("F978 no date", "F978", percepcion("31-02-2024"), dashes);
        row("F978 cuit digit", "F978", percepcion("15-03-2024", "20-12345678-5"), cuit);
        row("F978 cuit letters", "F978", percepcion("15-03-2024", "2O123456786"), cuit);
        row("F985 short date", "F985", agente("F985", "1", "1-3-2024"), dashes);
        row("F987 short date", "F987", agente("F987", "1", "1-3-2024"), fecha);
        row("F987 after the period", "F987", agente("F987", "1", "01-04-2024"), later);
        row("F985 after the period", "F985", agente("F985", "1", "15-03-2025"), later);
    }
    void annexLineChecks()
    {
        QFETCH(QString, form);
        QFETCH(QByteArray, line);
        QFETCH(QString, message);
        const QByteArray good = isAgent(form) ? agente(form, "1") : percepcion("01-03-2024");
        const QByteArray head = isAgent(form) ? cabeceraAgente(form) : cabecera(form);
        QVERIFY(!importar(form, file(head + good + line + good + "3@3@3\n")));
        QCOMPARE(onlyMessage(), "Error en línea 3\n" + message);
        QCOMPARE(Db::count(form + "_Detalle"), 1);
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
        QCOMPARE(Db::count("F978_Detalle"), stored);
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
        const QByteArray text = cabeceraAgente(form) + agente(form, "100.00") +
                                agente(form, "30.25", "15-03-2024", "NCRA") +
                                agente(form, "0.50", "15-03-2024", "FACB") + trailer;
        QCOMPARE(importar(form, file(text)), message.isEmpty());
        QCOMPARE(onlyMessage(), message.isEmpty() ? "<none>" : "Error en línea 5\n" + message);
        QCOMPARE(Db::count(form + "_Detalle"), 3);
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
        QVERIFY(env->ui().messages().isEmpty());
    }

    void accentsAreReadInEitherEncoding_data()
    {
        QTest::addColumn<QByteArray>("bom");
        QTest::addColumn<QByteArray>("name");
        const QByteArray utf8("ALMAC\xC3\x89N O'HIGGINS \xE2\x82\xAC");
        QTest::newRow("utf-8") << QByteArray() << utf8;
        QTest::newRow("utf-8 with BOM") << QByteArray("\xEF\xBB\xBF") << utf8;
        QTest::newRow("windows-1252") << QByteArray() << QByteArray("ALMAC\xC9N O'HIGGINS \x80");
    }
    void accentsAreReadInEitherEncoding()
    {
        QFETCH(QByteArray, bom);
        QFETCH(QByteArray, name);
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
        QCOMPARE(Db::count("F978_Detalle"), 2);
    }

    // A file that cannot be read whole says so in one message and leaves
    // what was stored before it.
    void badFilesKeepWhatWasStored_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<QByteArray>("text"); // empty: no file at all
        QTest::addColumn<QString>("message");
        QByteArray binary;
        for (int i = 0; i < 200000; ++i)
            binary += char((i * 7919) % 251);
        QTest::newRow("binary") << "F978" << binary
                                << "El archivo no contiene registros para importar.";
        QTest::newRow("no file") << "F976" << QByteArray() << "No se pudo abrir el archivo";
        QTest::newRow("detail before any header")
            << "F976" << actividad("100", "0,60", "0.60") + cabecera("F976")
            << "Error en línea 1\nArchivo incorrecto, falta el registro de cabecera.";
        QTest::newRow("agent without trailer")
            << "F987" << cabeceraAgente("F987") + agente("F987", "1")
            << "El archivo no tiene el registro de totales al final.";
    }
    void badFilesKeepWhatWasStored()
    {
        QFETCH(QString, form);
        QFETCH(QByteArray, text);
        QFETCH(QString, message);
        Db::insert(form + "_Detalle",
                   {"Codigo=" + codigo(), "FechaRectificativa=0", "CodigoDetalle=0001", "ctrl=0"});
        QVERIFY(!importar(form, text.isEmpty() ? env->path("no-existe.txt") : file(text)));
        QCOMPARE(env->ui().messages().size(), 1);
        QVERIFY2(env->ui().lastText().startsWith(message), qPrintable(env->ui().lastText()));
        // what came before a missing trailer stays too
        QCOMPARE(Db::count(form + "_Detalle"), form == "F987" ? 2 : 1);
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
        QCOMPARE(Db::count("F976_Detalle"), 1);
        QCOMPARE(ZoImport::CarpetaAnterior(), QFileInfo(path).absolutePath());

        // a cancelled dialog changes nothing
        env->ui().setOpenFile(QString());
        const QString before = p;
        QVERIFY(!imp.Importar(p, true));
        QCOMPARE(p, before);
        QVERIFY(env->ui().messages().isEmpty());
        QCOMPARE(Db::count("F976_Detalle"), 1);
    }

    void theRuleFollowsTheName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("asksHeader");
        QTest::addColumn<int>("stored");
        QTest::newRow("text anywhere in the name") << "datos.txt.xls" << false << 1;
        QTest::newRow("capitals") << "DATOS.TXT" << false << 1;
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
        QCOMPARE(Db::count("F976_Detalle"), stored);
        if (asksHeader) {
            QCOMPARE(env->ui().messages().first().title, "Importar archivo de Excel");
            QCOMPARE(env->ui().messages().first().text,
                     "La hoja del archivo Excel, ¿tiene encabezado?");
        }
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
};

QTEST_GUILESS_MAIN(TstImportTexto)
#include "tst_import_texto.moc"
