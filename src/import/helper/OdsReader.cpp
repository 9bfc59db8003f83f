#include "OdsReader.h"

#include <QXmlStreamReader>
#include <optional>

#include "ZipContainer.h"

namespace {

const QString kTableNs = QStringLiteral("urn:oasis:names:tc:opendocument:xmlns:table:1.0");
const QString kOfficeNs = QStringLiteral("urn:oasis:names:tc:opendocument:xmlns:office:1.0");
const QString kTextNs = QStringLiteral("urn:oasis:names:tc:opendocument:xmlns:text:1.0");
const QByteArray kMimeType = QByteArrayLiteral("application/vnd.oasis.opendocument.spreadsheet");

// A run's count: 1 when absent or not a positive number, at most `bound`.
int repeated(const QXmlStreamReader& xml, const QString& name, int bound)
{
    bool ok = false;
    const qint64 count = xml.attributes().value(kTableNs, name).toLongLong(&ok);
    return ok && count > 0 ? int(qMin<qint64>(count, bound)) : 1;
}

QString officeValue(const QXmlStreamReader& xml, const QString& name)
{
    return xml.attributes().value(kOfficeNs, name).toString();
}

// "2024-03-15" or "2024-03-15T10:00:00" as 15-03-2024.
QString dayText(const QString& iso)
{
    if (iso.size() < 10 || iso.at(4) != u'-' || iso.at(7) != u'-')
        return iso;
    return iso.mid(8, 2) + u'-' + iso.mid(5, 2) + u'-' + iso.left(4);
}

// The text of a paragraph as shown: its spans and links, "text:s" as its
// count of blanks, tabs and line breaks. The reader stands on the <text:p>.
QString paragraph(QXmlStreamReader& xml)
{
    QString text;
    int depth = 1;
    while (depth > 0 && !xml.atEnd()) {
        xml.readNext();
        if (xml.isCharacters()) {
            text += xml.text();
        } else if (xml.isEndElement()) {
            --depth;
        } else if (xml.isStartElement()) {
            if (xml.namespaceUri() != kTextNs || xml.name() == u"note" ||
                xml.name() == u"ruby-text") {
                // notes, frames and annotations are not the text shown
                xml.skipCurrentElement();
                continue;
            }
            ++depth;
            if (xml.name() == u"s")
                text += QString(
                    qBound(1, int(xml.attributes().value(kTextNs, QStringLiteral("c")).toInt()),
                           1024),
                    u' ');
            else if (xml.name() == u"tab")
                text += u'\t';
            else if (xml.name() == u"line-break")
                text += u'\n';
        }
    }
    return text;
}

} // namespace

bool OdsReader::readFirstSheet(const QString& path)
{
    m_valueCells = 0;
    const ZipContainer archive(path);
    if (!archive.isOpen()) {
        fail(QStringLiteral("El archivo no es una hoja de cálculo OpenDocument válida."));
        return false;
    }
    QByteArray data;
    // A text document or a presentation is not a sheet, whatever its name.
    if (archive.read(QStringLiteral("mimetype"), data) == ZipContainer::Entry::Read &&
        data.trimmed() != kMimeType) {
        fail(QStringLiteral("El archivo no es una hoja de cálculo."));
        return false;
    }
    switch (archive.read(QStringLiteral("content.xml"), data)) {
    case ZipContainer::Entry::Read: return readTable(data);
    case ZipContainer::Entry::Missing:
        fail(QStringLiteral("El archivo no es una hoja de cálculo OpenDocument válida."));
        return false;
    default: fail(QStringLiteral("El archivo está dañado.")); return false;
    }
}

bool OdsReader::readTable(const QByteArray& data)
{
    QXmlStreamReader xml(data);
    int tables = 0;
    int row = 0;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isEndElement() && xml.name() == u"table" && xml.namespaceUri() == kTableNs)
            break; // the first sheet alone
        if (!xml.isStartElement() || xml.namespaceUri() != kTableNs)
            continue;
        if (xml.name() == u"table")
            ++tables;
        else if (tables > 0 && xml.name() == u"table-row" && !readRow(xml, row))
            return false;
        else if (xml.name() == u"shapes" || xml.name() == u"named-expressions")
            xml.skipCurrentElement();
    }
    if (xml.hasError()) {
        fail(QStringLiteral("La hoja del archivo está dañada: ") + xml.errorString());
        return false;
    }
    if (tables == 0) {
        fail(QStringLiteral("El archivo no contiene hojas."));
        return false;
    }
    return true;
}

bool OdsReader::readRow(QXmlStreamReader& xml, int& row)
{
    const int rows = repeated(xml, QStringLiteral("number-rows-repeated"), kMaxRows);
    RowCells cells;
    int col = 0;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isEndElement() && xml.name() == u"table-row")
            break;
        if (!xml.isStartElement())
            continue;
        if (xml.namespaceUri() != kTableNs ||
            (xml.name() != u"table-cell" && xml.name() != u"covered-table-cell")) {
            xml.skipCurrentElement();
            continue;
        }
        const int columns = repeated(xml, QStringLiteral("number-columns-repeated"), kMaxColumns);
        const QString text = cellText(xml);
        for (int c = 0; !text.isEmpty() && c < columns && col + c < kMaxColumns; ++c)
            cells.append({col + c, text});
        col = qMin(col + columns, kMaxColumns);
    }
    // A run of equal rows counts once when empty, and row by row when it
    // holds values.
    if (!cells.isEmpty()) {
        const int last = qMin(row + rows, kMaxRows);
        m_valueCells += qint64(cells.size()) * (last - row);
        if (m_valueCells > kMaxValueCells) {
            fail(QStringLiteral("La hoja tiene más celdas con datos de las que se pueden leer."));
            return false;
        }
        for (int r = row; r < last; ++r)
            for (const auto& [c, text] : std::as_const(cells))
                setCell(r, c, text);
    }
    row = qMin(row + rows, kMaxRows);
    return true;
}

QString OdsReader::cellText(QXmlStreamReader& xml)
{
    const QString type = officeValue(xml, QStringLiteral("value-type"));
    std::optional<QString> value;
    if (type == u"float" || type == u"percentage" || type == u"currency") {
        bool ok = false;
        const double number = officeValue(xml, QStringLiteral("value")).toDouble(&ok);
        value = ok ? NumberText(number) : QString();
    } else if (type == u"date") {
        value = dayText(officeValue(xml, QStringLiteral("date-value")));
    } else if (type == u"boolean") {
        const QString truth = officeValue(xml, QStringLiteral("boolean-value"));
        value = truth == u"true" || truth == u"1" ? QStringLiteral("VERDADERO")
                                                  : QStringLiteral("FALSO");
    } else if (type == u"string" &&
               xml.attributes().hasAttribute(kOfficeNs, QStringLiteral("string-value"))) {
        value = officeValue(xml, QStringLiteral("string-value"));
    }
    // The paragraphs of the cell, the text shown: the value of a text cell,
    // and of a time, which the import reads as shown.
    QStringList paragraphs;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isEndElement())
            break;
        if (!xml.isStartElement())
            continue;
        if (xml.namespaceUri() == kTextNs && xml.name() == u"p")
            paragraphs << paragraph(xml);
        else
            xml.skipCurrentElement(); // notes, frames, detective marks
    }
    return value ? *value : paragraphs.join(u'\n');
}
