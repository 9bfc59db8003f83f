#include "PdfSheet.h"

#include <QBuffer>
#include <QDateTime>
#include <QFont>
#include <QHash>
#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>
#include <QRawFont>
#include <QRegularExpression>
#include <charconv>
#include <zlib.h>

#include "PdfObjects.h"

namespace {

// Every character a form is expected to carry: the printable ASCII, the
// Latin-1 letters and signs (but the soft hyphen, which a painter does not
// draw), and the dashes, quotes and signs that pasted texts bring.
QString Charset()
{
    QString all;
    for (char16_t c = 0x20; c < 0x7f; ++c)
        all += QChar(c);
    for (char16_t c = 0xa0; c <= 0xff; ++c)
        if (c != 0xad)
            all += QChar(c);
    return all + QStringLiteral("\u2013\u2014\u2018\u2019\u201c\u201d\u2022\u2026\u20ac");
}

// The pieces of a page's text, appended in place: a number with at most
// four decimals and no trailing zeros, a whole number, a word.
void Put(QByteArray& out, double value)
{
    char text[40];
    char* end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, 4).ptr;
    while (end[-1] == '0')
        --end;
    if (end[-1] == '.')
        --end;
    if (end - text == 2 && text[0] == '-' && text[1] == '0') {
        text[0] = '0';
        end = text + 1;
    }
    out.append(text, end - text);
}
void Put(QByteArray& out, int value)
{
    char text[16];
    out.append(text, std::to_chars(text, text + sizeof text, value).ptr - text);
}
void Put(QByteArray& out, const char* text)
{
    out.append(text);
}
template <typename... Pieces> void Write(QByteArray& out, const Pieces&... pieces)
{
    (Put(out, pieces), ...);
}

QByteArray Deflated(const QByteArray& data)
{
    uLongf size = compressBound(uLong(data.size()));
    QByteArray out(qsizetype(size), Qt::Uninitialized);
    if (compress2(reinterpret_cast<Bytef*>(out.data()), &size,
                  reinterpret_cast<const Bytef*>(data.constData()), uLong(data.size()),
                  Z_BEST_SPEED) != Z_OK)
        return {};
    out.truncate(qsizetype(size));
    return out;
}

// The text of a stream object's data, as Qt's writer leaves an uncompressed
// one.
QByteArray StreamData(const QByteArray& body)
{
    const qsizetype start = body.indexOf("stream\n");
    const qsizetype end = body.lastIndexOf("endstream");
    return start < 0 || end < start ? QByteArray() : body.mid(start + 7, end - start - 7);
}

// The characters of a ToUnicode map, by the code each is written with.
QHash<quint16, char16_t> UnicodeOfCodes(const QByteArray& cmap)
{
    QHash<quint16, char16_t> unicode;
    static const QRegularExpression range(
        QStringLiteral("<([0-9A-Fa-f]{4})> <([0-9A-Fa-f]{4})> (\\[[^\\]]*\\]|<[0-9A-Fa-f]+>)"));
    static const QRegularExpression hex(QStringLiteral("<([0-9A-Fa-f]+)>"));
    auto it = range.globalMatch(QString::fromLatin1(cmap));
    while (it.hasNext()) {
        const QRegularExpressionMatch m = it.next();
        const uint first = m.captured(1).toUInt(nullptr, 16);
        const uint last = m.captured(2).toUInt(nullptr, 16);
        const QString target = m.captured(3);
        if (target.startsWith(u'[')) {
            auto each = hex.globalMatch(target);
            for (uint code = first; code <= last && each.hasNext(); ++code) {
                const QString u = each.next().captured(1);
                if (u.size() == 4)
                    unicode.insert(quint16(code), char16_t(u.toUInt(nullptr, 16)));
            }
        } else if (target.size() == 6) {
            const uint u = target.mid(1, 4).toUInt(nullptr, 16);
            for (uint code = first; code <= last; ++code)
                unicode.insert(quint16(code), char16_t(u + code - first));
        }
    }
    return unicode;
}

// The advance of each code, in thousandths of the letters' size, from a
// font's "/W [0 [600 348] 17 26 696 …]".
QHash<quint16, double> WidthsOfCodes(const QByteArray& font)
{
    QHash<quint16, double> width;
    const qsizetype at = font.indexOf("/W [");
    if (at < 0)
        return width;
    QList<double> pending; // numbers met outside an inner list
    bool inner = false;
    uint code = 0;
    static const QRegularExpression token(QStringLiteral("\\[|\\]|-?[0-9.]+"));
    auto it = token.globalMatch(QString::fromLatin1(font.mid(at + 4)));
    while (it.hasNext()) {
        const QString t = it.next().captured();
        if (t == u"[") {
            inner = true;
            code = uint(pending.value(0));
            pending.clear();
        } else if (t == u"]") {
            if (!inner)
                break;
            inner = false;
        } else if (inner) {
            width.insert(quint16(code++), t.toDouble());
        } else if ((pending << t.toDouble()).size() == 3) {
            for (uint c = uint(pending[0]); c <= uint(pending[1]); ++c)
                width.insert(quint16(c), pending[2]);
            pending.clear();
        }
    }
    return width;
}

// One embedded font: its objects as a file carries them, numbered from a
// base, the code each character is written with and its advance.
struct EmbeddedFont {
    QList<QByteArray> objects; // "…endobj\n", numbered from `base`
    int base = 0;
    QHash<char16_t, quint16> code;
    QHash<quint16, double> width;
};

// What every file shares: the page's size and scale, and the two fonts.
struct Letters {
    bool ready = false;
    QByteArray mediaBox;
    double pointsPerMm = 0;
    double pageHeight = 0;
    EmbeddedFont plain, bold;
};

// The font as a painter on a PDF device embeds it after drawing every
// character of the set, taken out of that file with the codes it gave them.
bool MakeFont(bool bold, int base, EmbeddedFont& font, Letters& letters)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    const QString charset = Charset();
    const QFont face = PdfSheet::Font(3.0, bold, 300);
    {
        QPdfWriter writer(&buffer);
        writer.setResolution(300);
        writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait,
                                         QMarginsF(0, 0, 0, 0), QPageLayout::Millimeter));
        letters.pointsPerMm = writer.width() / 210.0 * 72.0 / 300.0;
        QPainter painter;
        if (!painter.begin(&writer))
            return false;
        painter.setFont(face);
        painter.drawText(QPointF(100, 100), charset);
        if (!painter.end())
            return false;
    }
    const PdfObjects all(buffer.data());
    if (!all.valid())
        return false;
    const QByteArray page = all.body(all.kids.value(0));
    static const QRegularExpression box(QStringLiteral("/MediaBox \\[0 0 ([0-9.]+) ([0-9.]+)\\]"));
    const QRegularExpressionMatch size = box.match(QString::fromLatin1(page));
    if (!size.hasMatch())
        return false;
    letters.mediaBox = (size.captured(1) + u' ' + size.captured(2)).toLatin1();
    letters.pageHeight = size.captured(2).toDouble();
    int type0 = 0;
    for (const int n : all.numbers())
        if (PdfDictionary(all.body(n)).contains("/Subtype /Type0"))
            type0 = n;
    const QList<int> reached = type0 ? PdfObjectsReached(all, type0) : QList<int>();
    if (reached.isEmpty())
        return false;
    QHash<int, int> number;
    for (int i = 0; i < reached.size(); ++i)
        number.insert(reached.at(i), base + i);
    font.base = base;
    for (const int n : reached) {
        const QByteArray body = all.body(n);
        const QByteArray dictionary = PdfDictionary(body);
        font.objects << PdfRenumber(dictionary, number) + body.mid(dictionary.size());
        if (dictionary.contains("/Subtype /CIDFontType2"))
            font.width = WidthsOfCodes(dictionary);
    }
    const QByteArray head = PdfDictionary(all.body(type0));
    const int toUnicode = PdfReferences(head.mid(head.indexOf("/ToUnicode"))).value(0);
    const QHash<quint16, char16_t> unicode = UnicodeOfCodes(StreamData(all.body(toUnicode)));
    // A character shares the code of any other drawn with the same glyph (a
    // map names one character a glyph).
    const QRawFont raw = QRawFont::fromFont(face);
    QHash<quint32, quint16> codeOfGlyph;
    for (auto it = unicode.cbegin(); it != unicode.cend(); ++it) {
        const QList<quint32> glyph = raw.glyphIndexesForString(QString(QChar(it.value())));
        if (glyph.size() == 1 && glyph.first() != 0)
            codeOfGlyph.insert(glyph.first(), it.key());
    }
    const QList<quint32> glyphs = raw.glyphIndexesForString(charset);
    for (int i = 0; i < charset.size() && i < glyphs.size(); ++i)
        if (codeOfGlyph.contains(glyphs.at(i)))
            font.code.insert(charset.at(i).unicode(), codeOfGlyph.value(glyphs.at(i)));
    return font.code.size() == charset.size() && !font.width.isEmpty();
}

const Letters& TheLetters()
{
    static const Letters letters = [] {
        Letters made;
        const int first = 4; // after the information, the catalog and the page tree
        made.ready = MakeFont(false, first, made.plain, made);
        made.ready =
            made.ready && MakeFont(true, first + int(made.plain.objects.size()), made.bold, made);
        return made;
    }();
    return letters;
}

} // namespace

bool PdfSheet::Available()
{
    return TheLetters().ready;
}

QFont PdfSheet::Font(double size, bool bold, int dotsPerInch)
{
    // `size` is the height of the letters in millimetres of the sheet; the
    // device turns points into its own dots, drawn at a tenth of a
    // millimetre each.
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSizeF(size * 10.0 * 72.0 / dotsPerInch);
    font.setBold(bold);
    // No shaping, hence no ligatures: every word of a PDF can be found and
    // copied as written, its "fi" two letters and not one glyph.
    font.setStyleStrategy(QFont::PreferNoShaping);
    return font;
}

void PdfSheet::newPage()
{
    m_pages << QList<int>();
    newPart();
}

void PdfSheet::newPageLike(int like)
{
    m_pages << m_pages.value(like).mid(0, 1);
    newPart();
}

void PdfSheet::newPart()
{
    const Letters& l = TheLetters();
    // The scale at full precision: a ten-thousandth off moves the foot of
    // the page by a hundredth of a point.
    const QByteArray scale = QByteArray::number(l.pointsPerMm, 'f', 9);
    QByteArray part;
    part.reserve(16384);
    Write(part, "q\n", scale.constData(), " 0 0 -", scale.constData(), " 0 ", l.pageHeight,
          " cm\n2 J 2 j 0 G 0 g\n");
    m_pages.last() << int(m_parts.size());
    m_parts << part;
    m_pen = -1;
    m_spacing = 0;
}

void PdfSheet::setPen(double pen)
{
    if (pen != m_pen)
        Write(m_parts.last(), pen, " w\n");
    m_pen = pen;
}

void PdfSheet::frame(const QRectF& box, double pen)
{
    setPen(pen);
    Write(m_parts.last(), box.x(), " ", box.y(), " ", box.width(), " ", box.height(), " re S\n");
}

void PdfSheet::line(const QPointF& from, const QPointF& to, double pen)
{
    setPen(pen);
    Write(m_parts.last(), from.x(), " ", from.y(), " m ", to.x(), " ", to.y(), " l S\n");
}

void PdfSheet::fill(const QRectF& box, double level)
{
    Write(m_parts.last(), level, " g ", box.x(), " ", box.y(), " ", box.width(), " ", box.height(),
          " re f 0 g\n");
}

void PdfSheet::cells(double x, double y, double cell, const QVector<QRect>& rectangles)
{
    QByteArray& page = m_parts.last();
    Write(page, "q ", cell, " 0 0 ", cell, " ", x, " ", y, " cm\n");
    for (const QRect& r : rectangles)
        Write(page, r.x(), " ", r.y(), " ", r.width(), " ", r.height(), " re\n");
    page += "f Q\n";
}

bool PdfSheet::text(double x, double baseline, double size, bool bold, double advance,
                    const QString& text)
{
    const EmbeddedFont& font = bold ? TheLetters().bold : TheLetters().plain;
    QByteArray codes;
    codes.reserve(text.size() * 4);
    double natural = 0;
    static const char digits[] = "0123456789ABCDEF";
    for (const QChar c : text) {
        const auto found = font.code.constFind(c.unicode());
        if (found == font.code.cend())
            return false;
        natural += font.width.value(*found) * size / 1000;
        for (int shift = 12; shift >= 0; shift -= 4)
            codes += digits[(*found >> shift) & 0xf];
    }
    QByteArray& page = m_parts.last();
    Write(page, bold ? "BT /B " : "BT /R ", size, " Tf ");
    // The few hundredths of a millimetre a painter's rounded advances take
    // from the letters' own, shared among them.
    const double spacing = text.isEmpty() ? 0 : (advance - natural) / text.size();
    if (spacing != m_spacing)
        Write(page, spacing, " Tc ");
    m_spacing = spacing;
    Write(page, "1 0 0 -1 ", x, " ", baseline, " Tm <");
    page += codes;
    page += "> Tj ET\n";
    return true;
}

QByteArray PdfSheet::finish(const QString& title) const
{
    const Letters& l = TheLetters();
    if (m_pages.isEmpty() || !l.ready)
        return {};
    PdfOut out("%PDF-1.4\n%\xe2\xe3\xcf\xd3\n");
    out.add(
        1,
        "<<\n/Title " + PdfText(title) + "\n/Creator " + PdfText(QStringLiteral("Morvel")) +
            "\n/Producer " + PdfText(QStringLiteral("Morvel")) + "\n/CreationDate (D:" +
            QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMddHHmmss")).toLatin1() +
            "Z)\n>>\nendobj\n");
    out.add(2, "<<\n/Type /Catalog\n/Pages 3 0 R\n>>\nendobj\n");
    int n = l.plain.base;
    for (const EmbeddedFont* font : {&l.plain, &l.bold})
        for (const QByteArray& body : font->objects)
            out.add(n++, body);
    const QByteArray resources = "/Resources <<\n/ProcSet [/PDF /Text]\n/Font <<\n/R " +
                                 QByteArray::number(l.plain.base) + " 0 R\n/B " +
                                 QByteArray::number(l.bold.base) + " 0 R\n>>\n>>\n";
    // Each part once, however many pages draw it.
    const int firstPage = n;
    const int firstPart = n + int(m_pages.size());
    for (int i = 0; i < m_parts.size(); ++i) {
        const QByteArray data = Deflated(m_parts.at(i) + "Q\n");
        if (data.isEmpty())
            return {};
        out.add(firstPart + i, "<<\n/Length " + QByteArray::number(data.size()) +
                                   "\n/Filter /FlateDecode\n>>\nstream\n" + data +
                                   "\nendstream\nendobj\n");
    }
    QByteArray kids;
    for (int p = 0; p < m_pages.size(); ++p) {
        QByteArray contents;
        for (const int part : m_pages.at(p))
            contents += QByteArray::number(firstPart + part) + " 0 R ";
        kids += QByteArray::number(firstPage + p) + " 0 R\n";
        out.add(firstPage + p, "<<\n/Type /Page\n/Parent 3 0 R\n/Contents [" + contents + "]\n" +
                                   resources + "/MediaBox [0 0 " + l.mediaBox + "]\n>>\nendobj\n");
    }
    out.add(3, "<<\n/Type /Pages\n/Kids \n[\n" + kids + "]\n/Count " +
                   QByteArray::number(m_pages.size()) + "\n>>\nendobj\n");
    return out.finish();
}
