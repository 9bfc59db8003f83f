#include "XlsxReader.h"

#include <QXmlStreamReader>

#include "ZipContainer.h"

namespace {

// The built-in number formats that show a day.
bool isBuiltInDate(int id)
{
    return id >= 14 && id <= 22;
}

// A format of the workbook's own shows a day when, outside quoted text,
// bracketed parts and escaped characters, it has a day or a year, or a month
// that is not the minutes of a time.
bool isDateFormat(const QString& code)
{
    QString bare;
    bool quoted = false;
    bool bracket = false;
    for (int i = 0; i < code.size(); ++i) {
        const QChar c = code.at(i);
        if (quoted) {
            quoted = c != u'"';
        } else if (bracket) {
            bracket = c != u']';
        } else if (c == u'"') {
            quoted = true;
        } else if (c == u'[') {
            bracket = true;
        } else if (c == u'\\' || c == u'_' || c == u'*') {
            ++i;
        } else {
            bare += c.toLower();
        }
    }
    if (bare.contains(u'd') || bare.contains(u'y'))
        return true;
    return bare.contains(u'm') && !bare.contains(u'h') && !bare.contains(u's');
}

// "BC12" gives column 54 and row 11, both from 0; false when it is no reference.
bool parseReference(const QString& ref, int& row, int& col)
{
    int i = 0;
    int c = 0;
    while (i < ref.size() && ref.at(i).isLetter()) {
        c = c * 26 + (ref.at(i).toUpper().unicode() - 'A' + 1);
        if (c > 16384)
            return false;
        ++i;
    }
    bool ok = false;
    const int r = ref.mid(i).toInt(&ok);
    if (i == 0 || !ok || r < 1)
        return false;
    row = r - 1;
    col = c - 1;
    return true;
}

// The text of an <si> or <is> element: its <t>, or the <t> of each run,
// leaving out phonetic guides. The reader stands on the opening element.
QString richText(QXmlStreamReader& xml)
{
    const QString end = xml.name().toString();
    QString text;
    int phonetic = 0;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement()) {
            if (xml.name() == u"rPh")
                ++phonetic;
            else if (xml.name() == u"t" && phonetic == 0)
                text += xml.readElementText(QXmlStreamReader::IncludeChildElements);
        } else if (xml.isEndElement()) {
            if (xml.name() == u"rPh")
                --phonetic;
            else if (xml.name() == end)
                break;
        }
    }
    return text;
}

QString dayFromIso(const QString& iso)
{
    if (iso.size() < 10 || iso.at(4) != u'-')
        return iso;
    return iso.mid(8, 2) + u'-' + iso.mid(5, 2) + u'-' + iso.left(4);
}

} // namespace

bool XlsxReader::readFirstSheet(const QString& path)
{
    m_shared.clear();
    m_dateStyles.clear();
    m_epoch1904 = false;
    ZipContainer archive(path);
    if (!archive.isOpen()) {
        fail(QStringLiteral("El archivo no es una hoja de cálculo de Excel válida."));
        return false;
    }
    QString sheetPath;
    if (!readWorkbook(archive, sheetPath))
        return false;
    QByteArray data;
    if (entry(archive, QStringLiteral("xl/sharedStrings.xml"), data, false))
        readSharedStrings(data);
    if (entry(archive, QStringLiteral("xl/styles.xml"), data, false))
        readStyles(data);
    if (!entry(archive, sheetPath, data, true))
        return false;
    return readSheet(data);
}

bool XlsxReader::entry(const ZipContainer& archive, const QString& name, QByteArray& data,
                       bool required)
{
    const ZipContainer::Entry got = archive.read(name, data);
    if (got != ZipContainer::Entry::Read && required)
        fail(got == ZipContainer::Entry::Missing
                 ? QStringLiteral("El archivo no es una hoja de cálculo de Excel válida.")
                 : QStringLiteral("El archivo está dañado."));
    return got == ZipContainer::Entry::Read;
}

bool XlsxReader::readWorkbook(const ZipContainer& archive, QString& sheetPath)
{
    QByteArray data;
    if (!entry(archive, QStringLiteral("xl/workbook.xml"), data, true))
        return false;
    QString relation;
    QXmlStreamReader xml(data);
    while (!xml.atEnd() && relation.isEmpty()) {
        if (!xml.readNextStartElement())
            continue;
        if (xml.name() == u"workbookPr") {
            const QString v = xml.attributes().value(QStringLiteral("date1904")).toString();
            m_epoch1904 = v == u"1" || v == u"true";
        } else if (xml.name() == u"sheet") {
            for (const QXmlStreamAttribute& a : xml.attributes())
                if (a.name() == u"id")
                    relation = a.value().toString();
        }
    }
    if (relation.isEmpty()) {
        fail(QStringLiteral("El archivo no contiene hojas."));
        return false;
    }
    sheetPath = QStringLiteral("xl/worksheets/sheet1.xml");
    if (!entry(archive, QStringLiteral("xl/_rels/workbook.xml.rels"), data, false))
        return true;
    QXmlStreamReader rels(data);
    while (!rels.atEnd()) {
        if (!rels.readNextStartElement() || rels.name() != u"Relationship")
            continue;
        if (rels.attributes().value(QStringLiteral("Id")) != relation)
            continue;
        const QString target = rels.attributes().value(QStringLiteral("Target")).toString();
        sheetPath = target.startsWith(u'/') ? target.mid(1) : QStringLiteral("xl/") + target;
        break;
    }
    return true;
}

void XlsxReader::readSharedStrings(const QByteArray& data)
{
    QXmlStreamReader xml(data);
    while (!xml.atEnd())
        if (xml.readNextStartElement() && xml.name() == u"si")
            m_shared << richText(xml);
}

void XlsxReader::readStyles(const QByteArray& data)
{
    QHash<int, bool> customDates;
    QXmlStreamReader xml(data);
    bool inCellStyles = false;
    int index = 0;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isEndElement() && xml.name() == u"cellXfs")
            inCellStyles = false;
        if (!xml.isStartElement())
            continue;
        const auto attrs = xml.attributes();
        if (xml.name() == u"numFmt") {
            customDates.insert(attrs.value(QStringLiteral("numFmtId")).toInt(),
                               isDateFormat(attrs.value(QStringLiteral("formatCode")).toString()));
        } else if (xml.name() == u"cellXfs") {
            inCellStyles = true;
        } else if (inCellStyles && xml.name() == u"xf") {
            const int format = attrs.value(QStringLiteral("numFmtId")).toInt();
            if (customDates.value(format, isBuiltInDate(format)))
                m_dateStyles.insert(index);
            ++index;
        }
    }
}

bool XlsxReader::readSheet(const QByteArray& data)
{
    QXmlStreamReader xml(data);
    int row = -1;
    int col = -1;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        if (xml.name() == u"row") {
            const int r = xml.attributes().value(QStringLiteral("r")).toInt();
            row = r > 0 ? r - 1 : qMin(row + 1, kMaxRows);
            col = -1;
            continue;
        }
        if (xml.name() != u"c")
            continue;
        const auto attrs = xml.attributes();
        int r = row, c = qMin(col + 1, kMaxColumns);
        if (!parseReference(attrs.value(QStringLiteral("r")).toString(), r, c))
            r = qMax(row, 0);
        row = r;
        col = c;
        const QString type = attrs.value(QStringLiteral("t")).toString();
        const int style = attrs.value(QStringLiteral("s")).toInt();
        QString value, inlineText;
        while (!xml.atEnd()) {
            xml.readNext();
            if (xml.isEndElement() && xml.name() == u"c")
                break;
            if (!xml.isStartElement())
                continue;
            if (xml.name() == u"v")
                value = xml.readElementText(QXmlStreamReader::IncludeChildElements);
            else if (xml.name() == u"is")
                inlineText = richText(xml);
        }
        setCell(row, col, cellText(type, style, value, inlineText));
    }
    if (xml.hasError()) {
        fail(QStringLiteral("La hoja del archivo está dañada: ") + xml.errorString());
        return false;
    }
    return true;
}

QString XlsxReader::cellText(const QString& type, int style, const QString& value,
                             const QString& inlineText) const
{
    if (type == u"s") {
        bool ok = false;
        const int index = value.toInt(&ok);
        return ok ? m_shared.value(index) : QString();
    }
    if (type == u"inlineStr")
        return inlineText;
    if (type == u"str" || type == u"e")
        return value;
    if (type == u"b")
        return value == u"1" ? QStringLiteral("VERDADERO") : QStringLiteral("FALSO");
    if (type == u"d")
        return dayFromIso(value);
    bool ok = false;
    const double number = value.trimmed().toDouble(&ok);
    if (!ok)
        return value;
    if (m_dateStyles.contains(style))
        return SerialDateText(number, m_epoch1904);
    return NumberText(number);
}
