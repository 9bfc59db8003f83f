#include <QtTest>

#include <xlsxwriter.h>
#include <zip.h>

#include "Controller.h"
#include "Field.h"
#include "Globals.h"
#include "ImportFixture.h"
#include "SpreadsheetReader.h"
#include "import/SpreadsheetFile.h"

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

// F977 has no voucher type.
QByteArray percepcion977(const QString& fecha)
{
    return ("2@" + codigo() + "@" + fecha + "@123@PROVEEDOR SA@20-12345678-6@4567@1234.5\n")
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

// The header of the form's text file, and a line of it that passes.
QByteArray cabeceraDe(const QString& form)
{
    return isAgent(form) ? cabeceraAgente(form) : cabecera(form);
}
QByteArray lineaBuena(const QString& form)
{
    return isAgent(form)    ? agente(form, "1")
           : form == "F976" ? actividad("100.00", "0,60", "0.60")
           : form == "F977" ? percepcion977("01-03-2024")
                            : percepcion("01-03-2024");
}

const QString kWholeReceipt = QStringLiteral(
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

// A workbook of one sheet written by hand: `cells` inside the sheet's first
// row, and a shared string table of one string when `shared` is given.
void writeSheetXml(const QString& path, const QString& cells, const QByteArray& shared = {})
{
    QFile::remove(path);
    int error = 0;
    zip_t* archive = zip_open(QFile::encodeName(path).constData(), ZIP_CREATE, &error);
    QVERIFY(archive);
    static QVector<QByteArray> keep;
    keep.clear();
    auto add = [&](const char* name, const QByteArray& bytes) {
        keep.append(bytes);
        zip_source_t* source = zip_source_buffer(archive, keep.last().constData(),
                                                 zip_uint64_t(keep.last().size()), 0);
        zip_file_add(archive, name, source, ZIP_FL_OVERWRITE);
    };
    keep.reserve(3);
    add("xl/workbook.xml", "<workbook><sheets><sheet name=\"H\" sheetId=\"1\" r:id=\"rId1\" "
                           "xmlns:r=\"r\"/></sheets></workbook>");
    add("xl/worksheets/sheet1.xml",
        "<worksheet><sheetData><row r=\"1\">" + cells.toUtf8() + "</row></sheetData></worksheet>");
    if (!shared.isNull())
        add("xl/sharedStrings.xml", "<sst><si><t>" + shared + "</t></si></sst>");
    QCOMPARE(zip_close(archive), 0);
}

// An OpenDocument sheet written by hand: `rows` inside its first table, a
// second table that the import never reads.
void writeOds(const QString& path, const QString& rows)
{
    QFile::remove(path);
    int error = 0;
    zip_t* archive = zip_open(QFile::encodeName(path).constData(), ZIP_CREATE, &error);
    QVERIFY(archive);
    static QVector<QByteArray> keep;
    keep = {"application/vnd.oasis.opendocument.spreadsheet",
            "<office:document-content "
            "xmlns:office=\"urn:oasis:names:tc:opendocument:xmlns:office:1.0\" "
            "xmlns:text=\"urn:oasis:names:tc:opendocument:xmlns:text:1.0\" "
            "xmlns:table=\"urn:oasis:names:tc:opendocument:xmlns:table:1.0\"><office:body>"
            "<office:spreadsheet><table:table table:name=\"Hoja1\">" +
                rows.toUtf8() +
                "</table:table><table:table table:name=\"Otra\"><table:table-row>"
                "<table:table-cell office:value-type=\"string\"><text:p>no</text:p>"
                "</table:table-cell></table:table-row></table:table></office:spreadsheet>"
                "</office:body></office:document-content>"};
    const char* names[] = {"mimetype", "content.xml"};
    for (int i = 0; i < 2; ++i)
        zip_file_add(archive, names[i],
                     zip_source_buffer(archive, keep[i].constData(), zip_uint64_t(keep[i].size()), 0),
                     ZIP_FL_OVERWRITE);
    QCOMPARE(zip_close(archive), 0);
}

// A cell of an OpenDocument sheet: its value attributes and the text shown.
QString odsCell(const QString& attributes, const QString& shown = {})
{
    return "<table:table-cell " + attributes + ">" +
           (shown.isEmpty() ? QString() : "<text:p>" + shown + "</text:p>") + "</table:table-cell>";
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

// The text rules: header checks, line checks and questions, what each line
// stores, and how files of every shape are read; the spreadsheet rules and
// the two readers behind them, over workbooks saved by a real spreadsheet
// program and workbooks written cell by cell.
class TstImport : public EnvTest
{
    Q_OBJECT
    void seed() override { premises(); }

    QString file(const QByteArray& bytes, const QString& name = "datos.txt")
    {
        WriteBytes(env->path(name), bytes);
        return env->path(name);
    }
    // The message shown, when exactly one was.
    // The one message of an import, besides the count it closes with.
    QString onlyMessage()
    {
        QStringList m = env->ui().texts();
        if (!m.isEmpty() && m.last().startsWith("Importación "))
            m.removeLast();
        return m.size() == 1 ? m.first() : m.isEmpty() ? "<none>" : m.join(" || ");
    }

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
    // A good line, the row's `line` and another good line: the import stops
    // at the row's line with its message, and keeps the line before it.
    void stopsAtTheBadLine()
    {
        QFETCH(QString, form);
        QFETCH(QByteArray, line);
        QFETCH(QString, message);
        const QByteArray good = lineaBuena(form);
        const QByteArray head = cabeceraDe(form);
        QVERIFY(!importar(form, file(head + good + line + good + "3@3@3\n")));
        QCOMPARE(onlyMessage(), "Error en línea 3\n" + message);
        QCOMPARE(rows(form + "_Detalle", "CodigoDetalle"), QStringList{"0001"});
    }
    QStringList shownAfterTheQuestion()
    {
        QStringList t = env->ui().texts();
        if (!t.isEmpty())
            t.removeFirst();
        return t;
    }

private slots:
    void headerMustMatch_data()
    {
        // message: "" when accepted
        Columns<QString, bool, QByteArray, QString>("form", "rect", "header", "message");
        const QString c = codigo();
        const QString other = "Archivo incorrecto, el archivo que desea importar ";
        Row("padron", "F976", false, cabecera("F976", "9" + c.mid(1)),
            "Número de Padrón incorrecto en Archivo");
        Row("month", "F976", false, cabecera("F976", kPadron + "042024" + kObjeto + "O"),
            "Periodo incorrecto en Archivo");
        Row("year", "F2001", false, cabecera("F2001", kPadron + "032023" + kObjeto + "O"),
            "Periodo incorrecto en Archivo");
        Row("objeto", "F976", false, cabecera("F976", kPadron + "032024" + "0000000000008O"),
            "Número de Objeto incorrecto en Archivo");
        Row("rectifying file, original declaration", "F976", false, cabecera("F976", codigo(true)),
            other + "es una Rectificativa");
        Row("original file, rectifying declaration", "F977", true, cabecera("F977", codigo()),
            other + "es un Original");
        Row("another form", "F976", false, cabecera("F2001"),
            other + "pertenece a un formulario F2001");
        Row("annex of another form", "F978", false, cabecera("F977"),
            other + "pertenece a un formulario F977");
        Row("short code", "F978", false, QByteArray("1@123\n"),
            "Número de Padrón incorrecto en Archivo");
        Row("agent: form", "F987", false, cabeceraAgente("F985"),
            other + "pertenece a un formulario F985");
        Row("agent: kind", "F985", false, cabeceraAgente("F985", "R"),
            other + "es una Rectificativa");
        Row("agent: month", "F987", false, cabeceraAgente("F987", "O", "04"),
            "Periodo incorrecto en Archivo");
        Row("agent: year", "F987", false, cabeceraAgente("F987", "O", "03", "2023"),
            "Año incorrecto en Archivo");
        Row("agent: cuit", "F985", false, cabeceraAgente("F985", "O", "03", "2024", "20111111112"),
            "CUIT incorrecto en Archivo");
        Row("agent: no cuit", "F987", false, cabeceraAgente("F987", "O", "03", "2024", ""),
            "CUIT incorrecto en Archivo");
        Row("agent: cuit unmasked", "F987", false, cabeceraAgente("F987", "O", "03", "2024", kCuit),
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
        Columns<QString, bool, QByteArray, QString, QString, QStringList>(
            "form", "rect", "text", "table", "columns", "stored");
        auto row = [](const char* name, const char* form, bool rect, const QByteArray& text,
                      const char* table, const QString& columns, const QStringList& stored) {
            Row(name, form, rect, text, table, columns, stored);
        };
        const QString line = codigo() + "|0|%1|Servicios de consultores|620100|%2|%3|%4|0";
        row("activities", "F976", false,
            cabecera("F976") + actividad("10000.00", "0,60", "60.00") +
                actividad("2500.5", "3,60", "90.02"),
            "F976_Detalle", kActividadCols,
            {line.arg("0001", "10000,00", "0,60", "60,00"),
             line.arg("0002", "2500,50", "3,60", "90,02")});
        row("records of other types are skipped", "F976", false,
            "0@comment\n" + cabecera("F976") + "9@x@y\n" + actividad("100", "0,60", "0.60") +
                "3@1@0.60\n",
            "F976_Detalle", "CodigoDetalle", {"0001"});
        row("a rectifying declaration keys its lines by its date", "F2001", true,
            cabecera("F2001", codigo(true)) + actividad("100", "6,00", "6"), "F2001_Detalle",
            "Codigo,FechaRectificativa,CodigoDetalle", {codigo(true) + "|10-04-2024|0001"});
        row("perceptions suffered", "F978", false, cabecera("F978") + percepcion("15-03-2024"),
            "F978_Detalle", kComprobanteCols,
            {"0001|15-03-2024|FACA - Factura A|000000000000123|PROVEEDOR SA|20-12345678-6|"
             "0000000004567|1234,50"});
        row("retentions suffered", "F977", false,
            cabecera("F977") + "2@" + codigo().toUtf8() +
                "@01-01-2020@ 42 @RETENEDOR@20123456786@A-1@7\n",
            "F977_Detalle", QString(kComprobanteCols).remove("TipoComprobante,"),
            {"0001|01-01-2020|000000000000042|RETENEDOR|20-12345678-6|A-1|7,00"});
        row("F987 in its own table", "F987", false,
            cabeceraAgente("F987") + agente("F987", "5", "15-03-2024", "NCRB") + "3@1@-5\n",
            "F987_Detalle", kComprobanteCols,
            {"0001|15-03-2024|NCRB - Nota de Crédito B|000000000000055|CLIENTE|20-12345678-6|"
             "0000000000012|5,00"});
        row("quotes as typed", "F978", false,
            cabecera("F978") + "2@" + codigo().toUtf8() +
                "@01-03-2024@FACA@1@O'HIGGINS'); DROP TABLE F978_Detalle;--@20123456786@1@1\n",
            "F978_Detalle", "Denominacion", {"O'HIGGINS'); DROP TABLE F978_Detalle;--"});
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
        // the person hears how many lines came
        QCOMPARE(env->ui().texts().join(" || "),
                 stored.size() == 1
                     ? QString("Importación terminada: se importó 1 línea de datos.txt.")
                     : QString("Importación terminada: se importaron %1 líneas de datos.txt.")
                           .arg(stored.size()));
        if (form == "F987")
            QCOMPARE(Db::count("F978_Detalle"), 0);
    }

    // The numbers follow the lines already there, and those count against
    // the four lines a monthly return may import: the fifth stops the import
    // and the four before it stay.
    void numbersAndTheFourLineLimit_data()
    {
        Columns<QString, QStringList, int, QString, QStringList>("form", "there", "lines",
                                                                 "message", "numbers");
        const QStringList four{"0001", "0002", "0003", "0004"};
        Row("the fifth F976 line", "F976", QStringList{}, 6,
            "Error en línea 6\n" + kTooMany.arg("F976"), four);
        Row("three there, the second F2001 line", "F2001", four.mid(0, 3), 2,
            "Error en línea 3\n" + kTooMany.arg("F2001"), four);
        Row("annex lines after 0007", "F978", QStringList{"0007"}, 2, "<none>",
            QStringList{"0007", "0008", "0009"});
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

    // A doubtful third line asks whether to go on: "Yes" goes on, keeping
    // the line or leaving it out as the question says; "No" stops the import
    // with the lines before it, and only it: what the person saves afterwards
    // reaches the disk.
    void aDoubtfulLineAsks_data()
    {
        Columns<QString, QByteArray, QString, int, bool, QString, QStringList>(
            "form", "line", "question", "answer", "result", "columns", "stored");
        const QString rate = "El valor de alícuota no es válido\n"
                             "¿Continuar con la lectura del archivo?";
        const QString tax = "El valor del impuesto no es el mismo que el valor calculado "
                            "(Base Imponible * Alícuota)\n¿Ignorar el error?";
        const QString other = "Código no coincide con cabecera.\n"
                              "¿Continuar con la lectura del archivo?";
        const QByteArray elsewhere =
            percepcion("01-03-2024", "20-12345678-6", kPadron + "022024" + kObjeto + "O");
        const QStringList rates{"0001|1,20", "0002|6,00"};
        Row("rate 0,6 and go on", "F976", actividad("100", "0,6", "0.60"), rate, int(Msg::Yes),
            true, "CodigoDetalle,Alicuota", rates);
        Row("rate 0,6 and stop", "F976", actividad("100", "0,6", "0.60"), rate, int(Msg::No),
            false, "CodigoDetalle,Alicuota", rates.mid(0, 1));
        Row("dotted rate", "F976", actividad("100", "0.60", "0.60"), rate, int(Msg::No), false,
            "CodigoDetalle,Alicuota", rates.mid(0, 1));
        Row("empty rate", "F976", actividad("100", "", "0.60"), rate, int(Msg::Yes), true,
            "CodigoDetalle,Alicuota", rates);
        // The first line's 102880.50 * 1.20 / 100 = 1234.566 rounds to 1234.57.
        Row("tax a cent off, ignored: stored as read", "F976",
            actividad("102880.50", "1,20", "1234.56"), tax, int(Msg::Yes), true,
            "CodigoDetalle,Impuesto", QStringList{"0001|1234,57", "0002|1234,56", "0003|6,00"});
        Row("tax a cent off, not ignored: left out", "F976",
            actividad("102880.50", "1,20", "1234.56"), tax, int(Msg::No), true,
            "CodigoDetalle,Impuesto", QStringList{"0001|1234,57", "0002|6,00"});
        Row("another declaration, go on", "F978", elsewhere, other, int(Msg::Yes), true,
            "CodigoDetalle", QStringList{"0001", "0002"});
        Row("another declaration, stop", "F978", elsewhere, other, int(Msg::No), false,
            "CodigoDetalle", QStringList{"0001"});
    }
    void aDoubtfulLineAsks()
    {
        QFETCH(QString, form);
        QFETCH(QByteArray, line);
        QFETCH(QString, question);
        QFETCH(int, answer);
        QFETCH(bool, result);
        QFETCH(QString, columns);
        QFETCH(QStringList, stored);
        env->ui().answer(question.section(u'\n', 0, 0), answer);
        const QByteArray good = form == "F976" ? actividad("102880.50", "1,20", "1234.57")
                                               : percepcion("01-03-2024");
        const QByteArray last = form == "F976" ? actividad("100", "6,00", "6.00")
                                               : percepcion("02-03-2024");
        QCOMPARE(importar(form, file(cabecera(form) + good + line + last)), result);
        QCOMPARE(onlyMessage(), "Error en línea 3\n" + question);
        QCOMPARE(env->ui().messages().first().style & Msg::YesNo, Msg::YesNo);
        QCOMPARE(rows(form + "_Detalle", columns), stored);
        Db::insert(form + "_Detalle",
                   {"Codigo=" + codigo(), "FechaRectificativa=0", "CodigoDetalle=0099", "ctrl=0"});
        CloseDatabase();
        QCOMPARE(rows(form + "_Detalle", "CodigoDetalle").size(), stored.size() + 1);
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

    void annexLineChecks_data()
    {
        Columns<QString, QByteArray, QString>("form", "line", "message");
        const QString fecha = "Formato de fecha incorrecto en Archivo";
        const QString dashes = fecha + ". El mismo debe ser DD-MM-YYYY.";
        const QString cuit = "El CUIT informado no es válido. Verifique.";
        const QString later = "Fecha incorrecta, posterior al periodo.";
        Row("F978 date form", "F978", percepcion("2024-03-15"), dashes);
        Row("F978 no date", "F978", percepcion("31-02-2024"), dashes);
        Row("F978 cuit digit", "F978", percepcion("15-03-2024", "20-12345678-5"), cuit);
        Row("F978 cuit letters", "F978", percepcion("15-03-2024", "2O123456786"), cuit);
        Row("F985 short date", "F985", agente("F985", "1", "1-3-2024"), dashes);
        Row("F987 short date", "F987", agente("F987", "1", "1-3-2024"), fecha);
        Row("F987 after the period", "F987", agente("F987", "1", "01-04-2024"), later);
        Row("F985 after the period", "F985", agente("F985", "1", "15-03-2025"), later);
        // the annexes of perceptions take days written DD-MM-YYYY only
        Row("F978 slashes", "F978", percepcion("15/03/2024"), dashes);
        Row("F977 slashes", "F977", percepcion977("15/03/2024"), dashes);
        Row("F977 no date", "F977", percepcion977("31-02-2024"), dashes);
        // an agent's ten characters that are no day go to the period check
        Row("F985 no such day", "F985", agente("F985", "1", "31-02-2024"), later);
        Row("F987 no such day", "F987", agente("F987", "1", "31-02-2024"), later);
        Row("F987 slashes", "F987", agente("F987", "1", "15/03/2024"), later);
        // a detail record without its fields
        Row("F985 type alone", "F985", QByteArray("2\n"), dashes);
        Row("F987 type alone", "F987", QByteArray("2\n"), fecha);
        Row("F985 empty fields", "F985", QByteArray("2@@\n"), dashes);
        Row("F977 code alone", "F977", "2@" + codigo().toUtf8() + "\n", dashes);
        Row("F978 code alone", "F978", "2@" + codigo().toUtf8() + "\n", dashes);
        Row("F978 code and date", "F978", "2@" + codigo().toUtf8() + "@01-03-2024\n", cuit);
    }
    void annexLineChecks() { stopsAtTheBadLine(); }

    // A control character (NUL among them) is no text of a declaration: the
    // line is refused by name and what came before it stays.
    void controlCharactersAreRefused_data()
    {
        Columns<QString, QByteArray, QString>("form", "line", "message");
        const QString code = "El campo %1 contiene un carácter de control (código %2). Verifique "
                             "el archivo.";
        const QByteArray c = codigo().toUtf8();
        Row("F987 NUL in the name", "F987",
            QByteArray("2@15-03-2024@FACA@55@CLIEN") + '\0' + "TE@20-12345678-6@12@1\n",
            code.arg(5).arg(0));
        Row("F985 escape in the number", "F985",
            QByteArray("2@15-03-2024@5\x1b"
                       "5@CLIENTE@20-12345678-6@12@1\n"),
            code.arg(3).arg(27));
        Row("F978 start of heading", "F978",
            "2@" + c + "@01-03-2024@FACA@1@PROV\x01@20-12345678-6@1@1\n", code.arg(6).arg(1));
        Row("F976 tab in the activity", "F976",
            QByteArray("2@620100@Servicios\tde consultores@100.00@0,60@0.60\n"),
            code.arg(3).arg(9));
        Row("F977 delete", "F977", "2@" + c + "@01-03-2024@123@PROV@20-12345678-6@4567\x7f@1\n",
            code.arg(7).arg(127));
    }
    void controlCharactersAreRefused() { stopsAtTheBadLine(); }

    // An amount whose cents a number cannot count is refused before it is
    // rounded or added; the trailer's total is held to the same range.
    void amountsBeyondTheCentsRange_data()
    {
        Columns<QString, QByteArray, QString, int>("form", "lines", "message", "stored");
        const QString range = "Error en línea 2\nEl importe %1 está fuera del rango admitido.";
        const QString sum = "Error en línea 3\nLa suma de los importes en el detalle no coincide "
                            "con el total especificado al final del archivo.";
        Row("F987 line and trailer", "F987", agente("F987", "1e20") + "3@1@1e20\n",
            range.arg("1e20"), 0);
        Row("F985 negative", "F985", agente("F985", "-1e20") + "3@1@-1e20\n", range.arg("-1e20"),
            0);
        Row("F985 written whole", "F985",
            agente("F985", "100000000000000000000") + "3@1@100000000000000000000\n",
            range.arg("100000000000000000000"), 0);
        Row("F987 trailer only", "F987", agente("F987", "1") + "3@1@1e20\n", sum, 1);
        Row("F977 line", "F977",
            "2@" + codigo().toUtf8() + "@01-03-2024@1@P@20-12345678-6@1@9e18\n", range.arg("9e18"),
            0);
        Row("F976 base", "F976", actividad("1e20", "0,60", "6e17"), range.arg("1e20"), 0);
        Row("F976 tax", "F976", actividad("100", "0,60", "1e20"), range.arg("1e20"), 0);
        Row("just inside", "F987", agente("F987", "90071992547409.91") + "3@1@90071992547409.91\n",
            "", 1);
    }
    void amountsBeyondTheCentsRange()
    {
        QFETCH(QString, form);
        QFETCH(QByteArray, lines);
        QFETCH(QString, message);
        QFETCH(int, stored);
        QCOMPARE(importar(form, file(cabeceraDe(form) + lines)), message.isEmpty());
        QCOMPARE(onlyMessage(), message.isEmpty() ? "<none>" : message);
        QCOMPARE(Db::count(form + "_Detalle"), stored);
    }

    // An amount is stored in its regional form with two decimals, however it
    // is written; a date is taken only when it is a day of the calendar
    // written in plain digits.
    void amountsAndDatesAsWritten_data()
    {
        Columns<QString, QString, QStringList>("fecha", "importe", "stored");
        const auto stored = [](const char* fecha, const char* importe) {
            return QStringList{QString::fromUtf8(fecha) + u'|' + QString::fromUtf8(importe)};
        };
        Row("already normal", "15-03-2024", "1234.50", stored("15-03-2024", "1234,50"));
        Row("cents only", "15-03-2024", "0.05", stored("15-03-2024", "0,05"));
        Row("a leading zero", "15-03-2024", "00.05", stored("15-03-2024", "0,05"));
        Row("one decimal", "15-03-2024", "1234.5", stored("15-03-2024", "1234,50"));
        Row("whole", "15-03-2024", "7", stored("15-03-2024", "7,00"));
        Row("grouped", "15-03-2024", "1,234.50", stored("15-03-2024", "1234,50"));
        Row("three decimals", "15-03-2024", "2.675", stored("15-03-2024", "2,68"));
        Row("fourteen whole digits", "15-03-2024", "12345678901234.00",
            stored("15-03-2024", "12345678901234,00"));
        Row("negative", "15-03-2024", "-3.10", stored("15-03-2024", "-3,10"));
        Row("a leap day", "29-02-2024", "1.00", stored("29-02-2024", "1,00"));
        Row("no such day", "30-02-2024", "1.00", QStringList());
        Row("day zero", "00-03-2024", "1.00", QStringList());
        Row("digits of another script", "١٥-03-2024", "1.00", QStringList());
        Row("slashes", "15/03/2024", "1.00", QStringList());
    }
    void amountsAndDatesAsWritten()
    {
        QFETCH(QString, fecha);
        QFETCH(QString, importe);
        QFETCH(QStringList, stored);
        const QByteArray line = ("2@" + codigo() + "@" + fecha +
                                 "@FACA@123@PROVEEDOR SA@20-12345678-6@4567@" + importe + "\n")
                                    .toUtf8();
        QCOMPARE(importar("F978", file(cabecera("F978") + line)), !stored.isEmpty());
        QCOMPARE(rows("F978_Detalle", "Fecha,ImportePercibido"), stored);
    }

    void trailerOfAgents_data()
    {
        Columns<QString, QByteArray, QString>("form", "trailer", "message");
        const QString sum = "La suma de los importes en el detalle no coincide con el total "
                            "especificado al final del archivo.";
        const QString many = "La cantidad de elementos en el detalle no coincide con la cantidad "
                             "especificada al final del archivo. Por favor verifique.";
        Row("credit note lowers the sum", "F987", QByteArray("3@3@70.25"), "");
        Row("credit note added", "F987", QByteArray("3@3@130.75"), sum);
        Row("F985 has no credit notes", "F985", QByteArray("3@3@130.75"), "");
        Row("one cent off", "F987", QByteArray("3@3@70.24"), sum);
        Row("count", "F987", QByteArray("3@2@70.25"), many);
        Row("count not a figure", "F987", QByteArray("3@tres@70.25"), many);
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
        QCOMPARE(onlyMessage(), QString("<none>"));
    }

    void accentsAreReadInEitherEncoding_data()
    {
        Columns<QByteArray, QByteArray>("bom", "name");
        const QByteArray utf8("ALMAC\xC3\x89N O'HIGGINS \xE2\x82\xAC");
        Row("utf-8", QByteArray(), utf8);
        Row("utf-8 with BOM", QByteArray("\xEF\xBB\xBF"), utf8);
        Row("windows-1252", QByteArray(), QByteArray("ALMAC\xC9N O'HIGGINS \x80"));
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
        QCOMPARE(rows("F978_Detalle", "LEN(Denominacion)"),
                 (QStringList{QString::number(big.size()), "12"}));
        QCOMPARE(Db::count("F978_Detalle"), 2);
    }

    // A file that cannot be read whole says so in one message and leaves
    // what was stored before it.
    void badFilesKeepWhatWasStored_data()
    {
        // text: empty for no file at all
        Columns<QString, QByteArray, QString>("form", "text", "message");
        QByteArray binary;
        for (int i = 0; i < 200000; ++i)
            binary += char((i * 7919) % 251);
        Row("binary", "F978", binary, "El archivo no contiene registros para importar.");
        Row("no file", "F976", QByteArray(), "No se pudo abrir el archivo");
        Row("detail before any header", "F976", actividad("100", "0,60", "0.60") + cabecera("F976"),
            "Error en línea 1\nArchivo incorrecto, falta el registro de cabecera.");
        Row("agent without trailer", "F987", cabeceraAgente("F987") + agente("F987", "1"),
            "El archivo no tiene el registro de totales al final.");
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
        QCOMPARE(onlyMessage(), QString("<none>"));
        QCOMPARE(Db::count("F976_Detalle"), 1);
    }

    void theRuleFollowsTheName_data()
    {
        Columns<QString, QString, int>("name", "question", "stored");
        const QString excel = "La hoja del archivo Excel, ¿tiene encabezado?";
        Row("text anywhere in the name", "datos.txt.xls", "", 1);
        Row("capitals", "DATOS.TXT", "", 1);
        Row("xls not at the end", "datos.xls.bak", excel, 0);
        Row("a spreadsheet in capitals", "LIBRO.XLS", excel, 0);
        Row("an OpenDocument sheet", "datos.ods", "La hoja del archivo, ¿tiene encabezado?", 0);
        Row("other files are ignored", "datos.csv", "", 0);
    }
    void theRuleFollowsTheName()
    {
        QFETCH(QString, name);
        QFETCH(QString, question);
        QFETCH(int, stored);
        if (!question.isEmpty())
            env->ui().answer("¿tiene encabezado?", Msg::No);
        importar("F976", file(cabecera("F976") + actividad("100", "0,60", "0.60"), name));
        QCOMPARE(Db::count("F976_Detalle"), stored);
        if (!question.isEmpty()) {
            QCOMPARE(env->ui().messages().first().title,
                     name.endsWith(".ods") ? "Importar hoja de cálculo"
                                           : "Importar archivo de Excel");
            QCOMPARE(env->ui().messages().first().text, question);
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

    // --- Spreadsheets -----------------------------------------------------------

    void numbersReadAsTheShortestText_data()
    {
        Columns<double, QString>("value", "text");
        Row("1234.5", 1234.5, "1234.5");
        Row("0.6", 0.6, "0.6");
        Row("written with a binary tail", QString("0.59999999999999998").toDouble(), "0.6");
        Row("no exponent", 1.2345e3, "1234.5");
        Row("large", 20123456786.0, "20123456786");
        Row("million", 1e6, "1000000");
        Row("small", 0.0001, "0.0001");
        Row("negative", -30.25, "-30.25");
        Row("negative zero", -0.0, "0");
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
        Row("shared strings", false);
        Row("inline strings", true);
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
        SpreadsheetFile sheet;
        QVERIFY2(sheet.read(path), qPrintable(sheet.errorText()));
        QCOMPARE(sheet.row(1).join('|'),
                 QString("15-03-2024|FACA|123|PROVEEDOR S.A.|20-12345678-6|4567|1234.5"));
        QCOMPARE(sheet.row(2).join('|'),
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
        Columns<QString, QString, bool, QString, QString, QStringList>(
            "form", "file", "header", "table", "columns", "stored");
        const QStringList f978 = {
            codigo() + "|0|0001|15-03-2024|FACA - Factura A|000000000000123|PROVEEDOR S.A.|"
                       "20-12345678-6|0000000004567|1234,50|0",
            codigo() + "|0|0002|01-02-2024|NCRB - Nota de Crédito B|000000000000124|"
                       "OTRO PROVEEDOR|20-12345678-6|0000000004568|0,60|0"};
        const QStringList f977 = {codigo() +
                                  "|0|0001|10-03-2024|<null>|000000000000555|RETENEDOR SRL|"
                                  "20-12345678-6|0000000000099|100,25|0"};
        const QStringList f987 = {codigo() + "|0|0001|20-03-2024|FACA - Factura A|"
                                             "000000000000777|CLIENTE UNO|20-12345678-6|"
                                             "0000000000012|500,00|0"};
        const QString activities = "CodigoDetalle,TipoActividad,CodigoActividad,BaseImponible,"
                                   "Alicuota,Impuesto";
        const QStringList f2001 = {
            "0001|Servicios de consultores en informática|620100|10000,00|0,60|60,00",
            "0002|Venta al por menor en hipermercados|471110|2500,50|3,60|90,02"};
        for (const QString ext : {"xls", "xlsx", "ods"}) {
            // clang-format off
            QTest::addRow("F978 headings with accents, %s", qPrintable(ext)) << "F978"
                << "f978_encabezado." + ext << true << "F978_Detalle" << kWholeReceipt << f978;
            QTest::addRow("F977 headings without accents, %s", qPrintable(ext)) << "F977"
                << "f977_sin_acentos." + ext << true << "F977_Detalle" << kWholeReceipt << f977;
            QTest::addRow("F987 lands in F978_Detalle, %s", qPrintable(ext)) << "F987"
                << "f987_encabezado." + ext << true << "F978_Detalle" << kWholeReceipt << f987;
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
        QCOMPARE(env->ui().messages().size(), 2); // the header question, the count
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
        Columns<QVariant, QVariant, QString>("fecha", "cuit", "message");
        Row("date as text", QVariant("2024-03-01"), QVariant(20123456786.0),
            "Formato de fecha incorrecto. El mismo debe ser "
            "DD-MM-YYYY.");
        Row("a number, not a day", QVariant(17.0), QVariant("20-12345678-6"),
            "Formato de fecha incorrecto. El mismo debe ser "
            "DD-MM-YYYY.");
        Row("after the period", QVariant(QDate(2024, 4, 1)), QVariant(kCuit),
            "Fecha incorrecta, posterior al periodo.");
        Row("cuit", QVariant(QDate(2024, 3, 1)), QVariant(20123456785.0),
            "El CUIT informado no es válido. Verifique.");
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
        Columns<QString, QString, bool, QString>("form", "file", "header", "message");
        const QString count = "La cantidad de columnas no es correcta. Verifique %1 las 7 "
                              "columnas: \nA - Fecha\nB - Tipo de Comprobante\nC - Número de "
                              "Comprobante\nD - Denominación\nE - CUIT\nF - Padrón\nG - Importe";
        const QString heading = "No se encontró el campo 'Descripción Actividad' en la columna "
                                "B.\nDeberá respetar exactamente el nombre establecido para cada "
                                "columna. (Ver Ayuda)";
        for (const QString ext : {"xls", "xlsx", "ods"}) {
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

    // Headings may mix accented and plain spellings; empty rows, even
    // thousands of formatted ones below the data, are no lines.
    void writtenSheetsImport_data()
    {
        Columns<QVector<QVariantList>, int, QStringList>("sheet", "formattedEmptyRows", "stored");
        Row("headings mixing accents",
            QVector<QVariantList>{{"Fecha", "Tipo de Comprobante", "Numero de Comprobante",
                                   "Denominación", "CUIT", "Padron", "Importe"},
                                  {QDate(2024, 3, 1), "FACA", 1.0, "A", kCuit, 1.0, 1.0}},
            0, QStringList{"0001|FACA - Factura A"});
        Row("thousands of empty rows",
            QVector<QVariantList>{header978(),
                                  {QDate(2024, 3, 1), "FACA", 1.0, "A", kCuit, 1.0, 1.0},
                                  {"", "", "", "", "", "", ""},
                                  {QDate(2024, 3, 2), "FACB", 2.0, "B", kCuit, 1.0, 2.0}},
            5000, QStringList{"0001|FACA - Factura A", "0002|FACB - Factura B"});
    }
    void writtenSheetsImport()
    {
        QFETCH(QVector<QVariantList>, sheet);
        QFETCH(int, formattedEmptyRows);
        QFETCH(QStringList, stored);
        const QString path = env->path("escrita.xlsx");
        writeXlsx(path, sheet, formattedEmptyRows == 0, formattedEmptyRows);
        QVERIFY(importarHoja("F978", path, true));
        QCOMPARE(rows("F978_Detalle", "CodigoDetalle,TipoComprobante"), stored);
    }

    void unreadableFilesGiveAMessageAndKeepWhatWasStored_data()
    {
        Columns<QString, QByteArray, QString>("name", "bytes", "message");
        QByteArray pdf = "%PDF-1.4\n1 0 obj << /Type /Catalog >> endobj\ntrailer\n%%EOF\n";
        const QByteArray xlsx = ReadBytes(data("f978_encabezado.xlsx"));
        const QByteArray xls = ReadBytes(data("f978_encabezado.xls"));
        const QByteArray ods = ReadBytes(data("f978_encabezado.ods"));
        const QString excel = "No se pudo abrir el archivo de Excel";
        const QString damaged = "El archivo %1 está dañado o no es una planilla válida.";
        Row("pdf called .xls", "informe.xls", pdf, excel);
        Row("pdf called .xlsx", "informe.xlsx", pdf, excel);
        Row("truncated xlsx", "cortado.xlsx", xlsx.left(xlsx.size() / 2), excel);
        Row("truncated xls", "cortado.xls", xls.left(1536), excel);
        Row("empty xlsx", "vacio.xlsx", QByteArray(), excel);
        Row("zip without a workbook", "otro.xlsx", QByteArray("PK\x05\x06" + QByteArray(18, 0)),
            excel);
        Row("neither s nor x at the end", "datos.xls.bak", xlsx, excel);
        Row("pdf called .ods", "informe.ods", pdf, damaged.arg("informe.ods"));
        Row("truncated ods", "cortado.ods", ods.left(ods.size() / 2), damaged.arg("cortado.ods"));
        Row("empty ods", "vacio.ods", QByteArray(), damaged.arg("vacio.ods"));
        Row("an xlsx called .ods", "libro.ods", xlsx, damaged.arg("libro.ods"));
        QByteArray text = ods;
        text.replace("opendocument.spreadsheet", "opendocument.text       ");
        Row("a text document called .ods", "carta.ods", text, damaged.arg("carta.ods"));
    }
    void unreadableFilesGiveAMessageAndKeepWhatWasStored()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, bytes);
        QFETCH(QString, message);
        QVERIFY(importarHoja("F978", data("f978_encabezado.xlsx"), true));
        QCOMPARE(Db::count("F978_Detalle"), 2);
        env->ui().clearMessages();
        const QString path = env->path(name);
        WriteBytes(path, bytes);
        QVERIFY(!importarHoja("F978", path, true));
        QCOMPARE(env->ui().messages().size(), 2);
        QVERIFY2(env->ui().lastText().startsWith(message), qPrintable(env->ui().lastText()));
        QCOMPARE(Db::count("F978_Detalle"), 2);
    }

    // --- Outside workbooks, read by the helper in a bounded process ------------

    // Two cells far apart take the memory of two cells: the sheet is read, and
    // its columns are checked as any other.
    void cellsFarApartAreReadAsTheyAre_data()
    {
        Columns<QString, QString>("far", "message");
        const QString columns = "La cantidad de columnas no es correcta. Verifique la existencia "
                                "de las 7 columnas: ";
        Row("XFD1048576", "XFD1048576", columns);
        Row("IV1048576", "IV1048576", columns);
        Row("G1048576", "G1048576",
            "Error en fila 1\nFormato de fecha incorrecto. El mismo debe ser DD-MM-YYYY.");
    }
    void cellsFarApartAreReadAsTheyAre()
    {
        QFETCH(QString, far);
        QFETCH(QString, message);
        const QString path = env->path("lejos.xlsx");
        writeSheetXml(path, "<c r=\"A1\" t=\"inlineStr\"><is><t>x</t></is></c></row><row r=\"" +
                                far.mid(far.indexOf(QRegularExpression("\\d"))) + "\"><c r=\"" +
                                far + "\"><v>1</v></c>");
        QVERIFY(QFileInfo(path).size() < 1024);
        QVERIFY(!importarHoja("F978", path, false));
        QVERIFY2(shownAfterTheQuestion().join("||").startsWith(message),
                 qPrintable(env->ui().texts().join("||")));
        QCOMPARE(Db::count("F978_Detalle"), 0);
    }

    // A workbook that makes the helper crash or pass its bounds of memory or
    // output is reported as damaged, and the program goes on: what was stored
    // stays, and the next import works.
    void aWorkbookBeyondTheHelpersBoundsIsDamaged_data()
    {
        Columns<QString, int, int>("name", "stringBytes", "cells");
        Row("output beyond its bound", "salida.xlsx", 1 << 20, 100);
        Row("memory beyond its bound", "memoria.xlsx", 200 << 20, 1);
    }
    void aWorkbookBeyondTheHelpersBoundsIsDamaged()
    {
        QFETCH(QString, name);
        QFETCH(int, stringBytes);
        QFETCH(int, cells);
        QVERIFY(importarHoja("F978", data("f978_encabezado.xlsx"), true));
        env->ui().clearMessages();
        const QString path = env->path(name);
        QString sheet;
        for (int i = 0; i < cells; ++i)
            sheet += QString("<c r=\"A%1\" t=\"s\"><v>0</v></c>").arg(i + 1);
        writeSheetXml(path, sheet, QByteArray(stringBytes, 'A'));
        QVERIFY(QFileInfo(path).size() < 1024 * 1024);
        QVERIFY(!importarHoja("F978", path, true));
        QCOMPARE(shownAfterTheQuestion(),
                 QStringList{"El archivo " + name + " está dañado o no es una planilla válida."});
        QCOMPARE(Db::count("F978_Detalle"), 2);
        QVERIFY(importarHoja("F978", data("f978_encabezado.xlsx"), true));
        QCOMPARE(Db::count("F978_Detalle"), 4);
    }

    // Damaged copies of a real .xls: whatever FreeXL does with them in the
    // helper, each gets one message, and nothing stored is lost.
    void damagedXlsFilesEachGetAMessage()
    {
        const QByteArray good = ReadBytes(data("f978_encabezado.xls"));
        QVERIFY(importarHoja("F978", data("f978_encabezado.xlsx"), true));
        // files on which FreeXL reads outside buffers of its own (found by
        // the fuzz target of the .xls reader)
        for (const char* file : {"freexl_iconv.xls", "freexl_heap.xls"}) {
            env->ui().clearMessages();
            QVERIFY(!importarHoja("F978", data(file), true));
            QCOMPARE(shownAfterTheQuestion().size(), 1);
            QCOMPARE(Db::count("F978_Detalle"), 2);
        }
        const QString path = env->path("danado.xls");
        for (int copy = 0; copy < 24; ++copy) {
            QByteArray bytes = good;
            for (int k = 0; k < 8; ++k)
                bytes[(copy * 613 + k * 977 + 512) % bytes.size()] = char(0xFF - copy * k);
            WriteBytes(path, bytes);
            env->ui().clearMessages();
            importarHoja("F978", path, true);
            QVERIFY2(!env->ui().messages().isEmpty() || Db::count("F978_Detalle") > 2,
                     qPrintable(QString::number(copy)));
            QVERIFY(Db::count("F978_Detalle") >= 2);
        }
    }

    // What LibreOffice writes: values beside the text shown, runs of equal
    // cells and rows written once, empty runs to the sheet's end, notes and
    // spaces inside the text. The values are read, runs as the cells they
    // stand for, and nothing of the second sheet.
    void odsIsReadByItsValuesAndRuns()
    {
        const QString row2 =
            "<table:table-row table:number-rows-repeated=\"2\">" +
            odsCell("office:value-type=\"date\" office:date-value=\"2024-03-15T10:30:00\"",
                    "15/03/24") +
            odsCell("office:value-type=\"string\"", "FACA") +
            odsCell("office:value-type=\"float\" office:value=\"123\" "
                    "table:number-columns-repeated=\"2\"",
                    "123") +
            "<table:covered-table-cell/>" +
            odsCell("office:value-type=\"currency\" office:value=\"1234.5\"", "$ 1.234,50") +
            odsCell("office:value-type=\"percentage\" office:value=\"0.006\"", "0,60%") +
            odsCell("table:number-columns-repeated=\"16000\"") + "</table:table-row>";
        const QString rows =
            "<table:table-column table:number-columns-repeated=\"1024\"/>"
            "<table:table-header-rows><table:table-row>"
            "<table:table-cell office:value-type=\"string\"><office:annotation><text:p>nota"
            "</text:p></office:annotation><text:p><text:span>ÑAN</text:span>DÚ<text:s "
            "text:c=\"2\"/>SA</text:p></table:table-cell>" +
            odsCell("office:value-type=\"boolean\" office:boolean-value=\"true\"", "VERDADERO") +
            odsCell("", "dos") + "</table:table-row></table:table-header-rows>" +
            row2 +
            "<table:table-row table:number-rows-repeated=\"1048570\">" +
            odsCell("table:number-columns-repeated=\"1024\"") + "</table:table-row>";
        const QString path = env->path("calc.ods");
        writeOds(path, rows);
        SpreadsheetFile sheet;
        QVERIFY2(sheet.read(path), qPrintable(sheet.errorText()));
        QCOMPARE(sheet.rowCount(), 3);
        QCOMPARE(sheet.row(0).join('|'), QString("ÑANDÚ  SA|VERDADERO|dos||||"));
        for (int r : {1, 2})
            QCOMPARE(sheet.row(r).join('|'), QString("15-03-2024|FACA|123|123||1234.5|0.006"));
    }

    // Runs of cells holding values beyond any sheet of detail lines are not
    // spelt out: the sheet is refused as damaged, at once.
    void odsRunsBeyondTheBoundAreDamaged()
    {
        const QString path = env->path("enorme.ods");
        writeOds(path, "<table:table-row table:number-rows-repeated=\"1048576\">" +
                           odsCell("office:value-type=\"float\" office:value=\"1\" "
                                   "table:number-columns-repeated=\"16384\"",
                                   "1") +
                           "</table:table-row>");
        QVERIFY(!importarHoja("F978", path, false));
        QCOMPARE(shownAfterTheQuestion(),
                 QStringList{"El archivo enorme.ods está dañado o no es una planilla válida."});
        QCOMPARE(env->ui().messages().last().title, "Importar hoja de cálculo");
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

QTEST_GUILESS_MAIN(TstImport)
#include "tst_import.moc"
