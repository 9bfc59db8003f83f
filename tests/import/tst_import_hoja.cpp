#include <QtTest>

#include <xlsxwriter.h>
#include <zip.h>

#include "Field.h"
#include "ImportFixture.h"
#include "import/SpreadsheetReader.h"

using namespace ix;

namespace {

const QString kComprobanteCols = QStringLiteral(
    "Codigo,FechaRectificativa,CodigoDetalle,Fecha,TipoComprobante,NroComprobante,Denominacion,"
    "Cuit,Padron,ImportePercibido,ctrl");

// A workbook written cell by cell: text, numbers, days (a QDate under a
// format of the workbook's own, a QDateTime under the built-in day format 14)
// and, below the data, rows of formatted empty cells. With `inlineStrings`
// the texts stand in the cells instead of the shared table.
void writeXlsx(const QString& path, const QVector<QVariantList>& rows, bool inlineStrings,
               int formattedEmptyRows = 0)
{
    lxw_workbook_options options = {};
    options.constant_memory = inlineStrings ? LXW_TRUE : LXW_FALSE;
    lxw_workbook* wb = workbook_new_opt(QFile::encodeName(path).constData(), &options);
    lxw_worksheet* ws = workbook_add_worksheet(wb, "Datos");
    lxw_worksheet* second = nullptr;
    lxw_format* own = workbook_add_format(wb);
    format_set_num_format(own, "dd/mm/yyyy");
    lxw_format* builtIn = workbook_add_format(wb);
    format_set_num_format_index(builtIn, 14);
    lxw_format* money = workbook_add_format(wb);
    format_set_num_format(money, "#,##0.00");
    for (int r = 0; r < rows.size(); ++r) {
        for (int c = 0; c < rows[r].size(); ++c) {
            const QVariant& v = rows[r][c];
            if (v.typeId() == QMetaType::QString) {
                if (!v.toString().isEmpty())
                    worksheet_write_string(ws, r, c, v.toString().toUtf8().constData(), nullptr);
            } else if (v.typeId() == QMetaType::QDate || v.typeId() == QMetaType::QDateTime) {
                const QDate d = v.toDate();
                lxw_datetime dt = {d.year(), d.month(), d.day(), 0, 0, 0};
                worksheet_write_datetime(ws, r, c, &dt,
                                         v.typeId() == QMetaType::QDate ? own : builtIn);
            } else {
                worksheet_write_number(ws, r, c, v.toDouble(), c == 6 ? money : nullptr);
            }
        }
    }
    for (int r = 0; r < formattedEmptyRows; ++r)
        for (int c = 0; c < 7; ++c)
            worksheet_write_blank(ws, int(rows.size()) + r, c, money);
    // A second sheet, which the import never reads.
    second = workbook_add_worksheet(wb, "Otra");
    worksheet_write_string(second, 0, 0, "no", nullptr);
    workbook_close(wb);
}

QVariantList header978()
{
    return {
        "Fecha",  "Tipo de Comprobante", "Número de Comprobante", "Denominación", "CUIT", "Padrón",
        "Importe"};
}

QString readZipEntry(const QString& path, const QString& entry)
{
    int error = 0;
    zip_t* archive = zip_open(QFile::encodeName(path).constData(), ZIP_RDONLY, &error);
    if (!archive)
        return {};
    QByteArray bytes;
    if (zip_file_t* file = zip_fopen(archive, entry.toUtf8().constData(), 0)) {
        char buffer[65536];
        zip_int64_t got = 0;
        while ((got = zip_fread(file, buffer, sizeof buffer)) > 0)
            bytes.append(buffer, got);
        zip_fclose(file);
    }
    zip_discard(archive);
    return QString::fromUtf8(bytes);
}

} // namespace

// The spreadsheet rules and the two readers behind them, over workbooks saved
// by a real spreadsheet program and workbooks written cell by cell.
class TstImportHoja : public EnvTest
{
    Q_OBJECT
    void seed() override { premises(); }

    bool importarHoja(const QString& form, const QString& path, bool header, bool rect = false)
    {
        env->ui().answer("¿tiene encabezado?", header ? Msg::Yes : Msg::No);
        return importar(form, path, rect);
    }
    QString copy(const QString& fixture, const QString& name)
    {
        const QString to = env->path(name);
        QFile::remove(to);
        QFile::copy(data(fixture), to);
        return to;
    }
    QStringList shownAfterTheQuestion()
    {
        QStringList t = env->ui().texts();
        if (!t.isEmpty())
            t.removeFirst();
        return t;
    }

private slots:
    void numbersReadAsTheShortestText_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("text");
        QTest::newRow("1234.5") << 1234.5 << "1234.5";
        QTest::newRow("0.6") << 0.6 << "0.6";
        QTest::newRow("written with a binary tail")
            << QString("0.59999999999999998").toDouble() << "0.6";
        QTest::newRow("no exponent") << 1.2345e3 << "1234.5";
        QTest::newRow("large") << 20123456786.0 << "20123456786";
        QTest::newRow("million") << 1e6 << "1000000";
        QTest::newRow("small") << 0.0001 << "0.0001";
        QTest::newRow("negative") << -30.25 << "-30.25";
        QTest::newRow("negative zero") << -0.0 << "0";
    }
    void numbersReadAsTheShortestText()
    {
        QFETCH(double, value);
        QFETCH(QString, text);
        QCOMPARE(SpreadsheetReader::NumberText(value), text);
    }

    void daysCountFromTheWorkbooksEpoch()
    {
        QCOMPARE(SpreadsheetReader::SerialDateText(45366, false), QString("15-03-2024"));
        QCOMPARE(SpreadsheetReader::SerialDateText(45366.75, false), QString("15-03-2024"));
        QCOMPARE(SpreadsheetReader::SerialDateText(1, false), QString("01-01-1900"));
        QCOMPARE(SpreadsheetReader::SerialDateText(61, false), QString("01-03-1900"));
        QCOMPARE(SpreadsheetReader::SerialDateText(43904, true), QString("15-03-2024"));
    }

    void xlsxWithSharedOrInlineStrings_data()
    {
        QTest::addColumn<bool>("inlineStrings");
        QTest::newRow("shared strings") << false;
        QTest::newRow("inline strings") << true;
    }
    void xlsxWithSharedOrInlineStrings()
    {
        QFETCH(bool, inlineStrings);
        const QString path = env->path("escrito.xlsx");
        writeXlsx(
            path,
            {header978(),
             {QDate(2024, 3, 15), "FACA", 123.0, "PROVEEDOR S.A.", "20-12345678-6", 4567.0, 1234.5},
             {QDateTime(QDate(2024, 3, 1), QTime()), "NCRA", "0000125", "ÑANDÚ SRL", 20123456786.0,
              "12", 0.6}},
            inlineStrings);
        QCOMPARE(readZipEntry(path, "xl/worksheets/sheet1.xml").contains("inlineStr"),
                 inlineStrings);
        auto reader = SpreadsheetReader::ForFile(path);
        QVERIFY2(reader->read(path), qPrintable(reader->errorText()));
        QCOMPARE(reader->rows().at(1).join('|'),
                 QString("15-03-2024|FACA|123|PROVEEDOR S.A.|20-12345678-6|4567|1234.5"));
        QCOMPARE(reader->rows().at(2).join('|'),
                 QString("01-03-2024|NCRA|0000125|ÑANDÚ SRL|20123456786|12|0.6"));
        QVERIFY(importarHoja("F978", path, true));
        QCOMPARE(rows("F978_Detalle", "CodigoDetalle,Fecha,TipoComprobante,NroComprobante,"
                                      "Denominacion,Cuit,Padron,ImportePercibido"),
                 QStringList({"0001|15-03-2024|FACA - Factura A|000000000000123|PROVEEDOR S.A.|"
                              "20-12345678-6|0000000004567|1234,50",
                              "0002|01-03-2024|NCRA - Nota de Crédito A|000000000000125|"
                              "ÑANDÚ SRL|20-12345678-6|0000000000012|0,60"}));
    }

    void sheetsImport_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<QString>("file");
        QTest::addColumn<bool>("header");
        QTest::addColumn<QString>("table");
        QTest::addColumn<QString>("columns");
        QTest::addColumn<QStringList>("stored");
        const QStringList f978 = {
            codigo() + "|0|0001|15-03-2024|FACA - Factura A|000000000000123|PROVEEDOR S.A.|"
                       "20-12345678-6|0000000004567|1234,50|0",
            codigo() + "|0|0002|01-02-2024|NCRB - Nota de Crédito B|000000000000124|"
                       "OTRO PROVEEDOR|20-12345678-6|0000000004568|0,60|0"};
        const QStringList f977 = {codigo() + "|0|0001|10-03-2024||000000000000555|RETENEDOR SRL|"
                                             "20-12345678-6|0000000000099|100,25|0"};
        const QStringList f987 = {codigo() + "|0|0001|20-03-2024|FACA - Factura A|"
                                             "000000000000777|CLIENTE UNO|20-12345678-6|"
                                             "0000000000012|500,00|0"};
        const QString activities = "CodigoDetalle,TipoActividad,CodigoActividad,BaseImponible,"
                                   "Alicuota,Impuesto";
        const QStringList f2001 = {
            "0001|Servicios de consultores en informática|620100|10000,00|0,60|60,00",
            "0002|Venta al por menor en hipermercados|471110|2500,50|3,60|90,02"};
        for (const QString ext : {"xls", "xlsx"}) {
            // clang-format off
            QTest::addRow("F978 headings with accents, %s", qPrintable(ext)) << "F978"
                << "f978_encabezado." + ext << true << "F978_Detalle" << kComprobanteCols << f978;
            QTest::addRow("F977 headings without accents, %s", qPrintable(ext)) << "F977"
                << "f977_sin_acentos." + ext << true << "F977_Detalle" << kComprobanteCols << f977;
            QTest::addRow("F987 lands in F978_Detalle, %s", qPrintable(ext)) << "F987"
                << "f987_encabezado." + ext << true << "F978_Detalle" << kComprobanteCols << f987;
            QTest::addRow("F2001 without header, %s", qPrintable(ext)) << "F2001"
                << "f976_sin_encabezado." + ext << false << "F2001_Detalle" << activities << f2001;
            // clang-format on
        }
    }
    void sheetsImport()
    {
        QFETCH(QString, form);
        QFETCH(QString, file);
        QFETCH(bool, header);
        QFETCH(QString, table);
        QFETCH(QString, columns);
        QFETCH(QStringList, stored);
        QVERIFY(importarHoja(form, data(file), header));
        QCOMPARE(rows(table, columns), stored);
        if (form == "F987")
            QCOMPARE(Db::count("F987_Detalle"), 0);
        QCOMPARE(env->ui().messages().size(), 1); // the header question alone
    }

    void activitySheetChecksAsTheTextRule()
    {
        const QString path = env->path("actividades.xlsx");
        QVector<QVariantList> sheet = {{"Código de Actividad", "Descripción Actividad",
                                        "Base Imponible", "Alícuota", "Impuesto"}};
        sheet.append({620100.0, "Uno", 100.0, "0,6", 0.6}); // the rate as text, short
        sheet.append({620100.0, "Dos", 100.0, 0.6, 0.61});  // a cent off
        for (int i = 0; i < 5; ++i)
            sheet.append({620100.0, "Más", 100.0, 6.0, 6.0});
        writeXlsx(path, sheet, false);
        env->ui().answer("alícuota", Msg::Yes);
        env->ui().answer("¿Ignorar el error?", Msg::No);
        QVERIFY(!importarHoja("F976", path, true));
        QCOMPARE(shownAfterTheQuestion(),
                 QStringList({"Error en fila 1\nEl valor de alícuota no es válido\n"
                              "¿Continuar con la lectura del archivo?",
                              "Error en fila 2\nEl valor del impuesto no es el mismo que el valor "
                              "calculado (Base Imponible * Alícuota)\n¿Ignorar el error?",
                              "Error en fila 7\nEl formulario F976 no puede contener mas de 4 "
                              "registros en el detalle"}));
        QCOMPARE(Db::count("F976_Detalle"), 4);
    }

    void annexSheetLineChecks_data()
    {
        QTest::addColumn<QVariant>("fecha");
        QTest::addColumn<QVariant>("cuit");
        QTest::addColumn<QString>("message");
        // clang-format off
        QTest::newRow("date as text") << QVariant("2024-03-01") << QVariant(20123456786.0)
            << "Formato de fecha incorrecto. El mismo debe ser " "DD-MM-YYYY.";
        QTest::newRow("a number, not a day") << QVariant(17.0) << QVariant("20-12345678-6")
            << "Formato de fecha incorrecto. El mismo debe ser " "DD-MM-YYYY.";
        QTest::newRow("after the period") << QVariant(QDate(2024, 4, 1)) << QVariant(kCuit)
            << "Fecha incorrecta, posterior al periodo.";
        QTest::newRow("cuit") << QVariant(QDate(2024, 3, 1)) << QVariant(20123456785.0)
            << "El CUIT informado no es válido. Verifique.";
        // clang-format on
    }
    void annexSheetLineChecks()
    {
        QFETCH(QVariant, fecha);
        QFETCH(QVariant, cuit);
        QFETCH(QString, message);
        const QString path = env->path("anexo.xlsx");
        writeXlsx(path,
                  {{QDate(2024, 3, 1), "FACA", 1.0, "A", kCuit, 1.0, 1.0},
                   {fecha, "FACA", 2.0, "B", cuit, 1.0, 1.0},
                   {QDate(2024, 3, 2), "FACA", 3.0, "C", kCuit, 1.0, 1.0}},
                  false);
        QVERIFY(!importarHoja("F978", path, false));
        QCOMPARE(shownAfterTheQuestion(), QStringList{"Error en fila 2\n" + message});
        QCOMPARE(Db::count("F978_Detalle"), 1);
    }

    // A sheet whose columns are not the form's own is refused whole.
    void columnsAreChecked_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<QString>("file");
        QTest::addColumn<bool>("header");
        QTest::addColumn<QString>("message");
        const QString count = "La cantidad de columnas no es correcta. Verifique %1 las 7 "
                              "columnas: \nA - Fecha\nB - Tipo de Comprobante\nC - Número de "
                              "Comprobante\nD - Denominación\nE - CUIT\nF - Padrón\nG - Importe";
        const QString heading = "No se encontró el campo 'Descripción Actividad' en la columna "
                                "B.\nDeberá respetar exactamente el nombre establecido para cada "
                                "columna. (Ver Ayuda)";
        for (const QString ext : {"xls", "xlsx"}) {
            // clang-format off
            QTest::addRow("count with header, %s", qPrintable(ext)) << "F978"
                << "f978_cinco_columnas." + ext << true << count.arg("el encabezado de");
            QTest::addRow("count without header, %s", qPrintable(ext)) << "F978"
                << "f978_cinco_columnas." + ext << false << count.arg("la existencia de");
            QTest::addRow("a wrong heading, %s", qPrintable(ext)) << "F976"
                << "f976_titulo_mal." + ext << true << heading;
            // clang-format on
        }
    }
    void columnsAreChecked()
    {
        QFETCH(QString, form);
        QFETCH(QString, file);
        QFETCH(bool, header);
        QFETCH(QString, message);
        QVERIFY(!importarHoja(form, data(file), header));
        QCOMPARE(shownAfterTheQuestion(), QStringList{message});
        QCOMPARE(env->ui().messages().last().title, "¡Atención!");
        QCOMPARE(Db::count(form + "_Detalle"), 0);
    }

    void headingsMayMixAccentedAndPlainSpellings()
    {
        const QString path = env->path("mixto.xlsx");
        writeXlsx(path,
                  {{"Fecha", "Tipo de Comprobante", "Numero de Comprobante", "Denominación", "CUIT",
                    "Padron", "Importe"},
                   {QDate(2024, 3, 1), "FACA", 1.0, "A", kCuit, 1.0, 1.0}},
                  true);
        QVERIFY(importarHoja("F978", path, true));
        QCOMPARE(Db::count("F978_Detalle"), 1);
    }

    void thousandsOfEmptyRowsAreNotLines()
    {
        const QString path = env->path("vacias.xlsx");
        writeXlsx(path,
                  {header978(),
                   {QDate(2024, 3, 1), "FACA", 1.0, "A", kCuit, 1.0, 1.0},
                   {"", "", "", "", "", "", ""},
                   {QDate(2024, 3, 2), "FACB", 2.0, "B", kCuit, 1.0, 2.0}},
                  false, 5000);
        QVERIFY(importarHoja("F978", path, true));
        QCOMPARE(rows("F978_Detalle", "CodigoDetalle,TipoComprobante"),
                 QStringList({"0001|FACA - Factura A", "0002|FACB - Factura B"}));
    }

    void unreadableFilesGiveAMessageAndKeepWhatWasStored_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("bytes");
        QByteArray pdf = "%PDF-1.4\n1 0 obj << /Type /Catalog >> endobj\ntrailer\n%%EOF\n";
        QFile real(data("f978_encabezado.xlsx"));
        real.open(QIODevice::ReadOnly);
        const QByteArray xlsx = real.readAll();
        QFile realXls(data("f978_encabezado.xls"));
        realXls.open(QIODevice::ReadOnly);
        const QByteArray xls = realXls.readAll();
        QTest::newRow("pdf called .xls") << "informe.xls" << pdf;
        QTest::newRow("pdf called .xlsx") << "informe.xlsx" << pdf;
        QTest::newRow("truncated xlsx") << "cortado.xlsx" << xlsx.left(xlsx.size() / 2);
        QTest::newRow("truncated xls") << "cortado.xls" << xls.left(1536);
        QTest::newRow("empty xlsx") << "vacio.xlsx" << QByteArray();
        QTest::newRow("zip without a workbook")
            << "otro.xlsx" << QByteArray("PK\x05\x06" + QByteArray(18, 0));
        QTest::newRow("neither s nor x at the end") << "datos.xls.bak" << xlsx;
    }
    void unreadableFilesGiveAMessageAndKeepWhatWasStored()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, bytes);
        QVERIFY(importarHoja("F978", data("f978_encabezado.xlsx"), true));
        QCOMPARE(Db::count("F978_Detalle"), 2);
        env->ui().clearMessages();
        const QString path = env->path(name);
        WriteBytes(path, bytes);
        QVERIFY(!importarHoja("F978", path, true));
        QCOMPARE(env->ui().messages().size(), 2);
        QVERIFY2(env->ui().lastText().startsWith("No se pudo abrir el archivo de Excel"),
                 qPrintable(env->ui().lastText()));
        QCOMPARE(Db::count("F978_Detalle"), 2);
    }

    void aSpreadsheetInCapitalsIsRecognised()
    {
        QVERIFY(importarHoja("F978", copy("f978_encabezado.xls", "LIBRO.XLS"), true));
        QCOMPARE(Db::count("F978_Detalle"), 2);
    }

    void progressFollowsTheRowsAndHidesAtTheEnd()
    {
        Field progress("prgImportar", FieldKind::Progress);
        env->ui().answer("¿tiene encabezado?", Msg::Yes);
        ZoImport imp;
        imp.IdFormulario = "F978";
        imp.Path = data("f978_encabezado.xlsx");
        imp.ProgressBar = &progress;
        QString p = parametros("F978");
        QVERIFY(imp.Importar(p, true));
        QCOMPARE(progress.maximum(), 2);
        QCOMPARE(progress.value(), 2);
        QVERIFY(!progress.visible());
    }
};

QTEST_GUILESS_MAIN(TstImportHoja)
#include "tst_import_hoja.moc"
