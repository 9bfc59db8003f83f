#include "PdfObjects.h"

#include <QRegularExpression>
#include <algorithm>

namespace {

// The number after `key` in a dictionary, as in "/Root 2 0 R".
int NumberAfter(const QByteArray& text, const QByteArray& key)
{
    const qsizetype at = text.indexOf(key);
    if (at < 0)
        return 0;
    return PdfReferences(text.mid(at + key.size(), 16)).value(0);
}

} // namespace

QList<int> PdfReferences(const QByteArray& dictionary)
{
    static const QRegularExpression reference(QStringLiteral("\\b(\\d+) 0 R\\b"));
    QList<int> found;
    auto it = reference.globalMatch(QString::fromLatin1(dictionary));
    while (it.hasNext())
        found << it.next().captured(1).toInt();
    return found;
}

QByteArray PdfDictionary(const QByteArray& body)
{
    const QByteArray mark = ">>\nstream\n";
    const qsizetype at = body.indexOf(mark);
    return at < 0 ? body : body.left(at + mark.size());
}

QByteArray PdfRenumber(const QByteArray& dictionary, const QHash<int, int>& number)
{
    static const QRegularExpression reference(QStringLiteral("\\b(\\d+) 0 R\\b"));
    const QString text = QString::fromLatin1(dictionary);
    QString out;
    qsizetype from = 0;
    auto it = reference.globalMatch(text);
    while (it.hasNext()) {
        const QRegularExpressionMatch m = it.next();
        out += QStringView(text).mid(from, m.capturedStart() - from);
        out += QString::number(number.value(m.captured(1).toInt())) + QStringLiteral(" 0 R");
        from = m.capturedEnd();
    }
    out += QStringView(text).mid(from);
    return out.toLatin1();
}

QList<int> PdfObjectsReached(const PdfObjects& all, int n)
{
    QList<int> order;
    QList<int> next{n};
    while (!next.isEmpty()) {
        const int at = next.takeFirst();
        if (order.contains(at))
            continue;
        const QByteArray body = all.body(at);
        if (body.isEmpty())
            return {};
        order << at;
        next += PdfReferences(PdfDictionary(body));
    }
    return order;
}

QByteArray PdfText(const QString& text)
{
    QByteArray out("(\xfe\xff");
    for (const QChar c : text) {
        for (const char byte : {char(c.unicode() >> 8), char(c.unicode() & 0xff)}) {
            if (byte == '(' || byte == ')' || byte == '\\')
                out += '\\';
            out += byte;
        }
    }
    return out + ')';
}

PdfObjects::PdfObjects(const QByteArray& pdf) : m_pdf(pdf)
{
    m_valid = read();
}

QByteArray PdfObjects::body(int n) const
{
    const auto span = m_spans.value(n, {0, 0});
    return m_pdf.mid(span.first, span.second - span.first);
}

bool PdfObjects::read()
{
    const qsizetype at = m_pdf.lastIndexOf("startxref\n");
    if (at < 0)
        return false;
    bool ok = false;
    const qsizetype xref = m_pdf.mid(at + 10, 24).split('\n').value(0).trimmed().toLongLong(&ok);
    if (!ok || !readTable(xref))
        return false;
    const QByteArray trailer = m_pdf.mid(m_pdf.indexOf("trailer", xref));
    info = NumberAfter(trailer, "/Info ");
    pages = NumberAfter(PdfDictionary(body(NumberAfter(trailer, "/Root "))), "/Pages ");
    kids = PdfReferences(PdfDictionary(body(pages)));
    return info > 0 && pages > 0 && !kids.isEmpty();
}

// "xref", "0 N" and N entries of 20 bytes: "0000000015 00000 n \n".
bool PdfObjects::readTable(qsizetype xref)
{
    if (xref <= 0 || !m_pdf.mid(xref).startsWith("xref\n0 "))
        return false;
    const qsizetype line = m_pdf.indexOf('\n', xref + 5);
    const int size = m_pdf.mid(xref + 7, line - xref - 7).trimmed().toInt();
    QList<QPair<qsizetype, int>> starts;
    for (int n = 1; n < size; ++n) {
        const QByteArray entry = m_pdf.mid(line + 1 + 20 * qsizetype(n), 20);
        if (entry.size() != 20)
            return false;
        if (entry.at(17) == 'n')
            starts.append({entry.left(10).toLongLong(), n});
    }
    if (starts.isEmpty())
        return false;
    std::sort(starts.begin(), starts.end());
    m_first = starts.first().first;
    for (int i = 0; i < starts.size(); ++i) {
        const auto [start, n] = starts.at(i);
        const qsizetype end = i + 1 < starts.size() ? starts.at(i + 1).first : xref;
        const QByteArray head = QByteArray::number(n) + " 0 obj\n";
        if (m_pdf.mid(start, head.size()) != head || end <= start + head.size())
            return false;
        m_spans.insert(n, {start + head.size(), end});
        m_order << n;
    }
    return true;
}

void PdfOut::add(int n, const QByteArray& body)
{
    if (m_offsets.size() <= n)
        m_offsets.resize(n + 1);
    m_offsets[n] = m_out.size();
    m_out += QByteArray::number(n) + " 0 obj\n" + body;
}

QByteArray PdfOut::finish()
{
    const qsizetype xref = m_out.size();
    m_out += "xref\n0 " + QByteArray::number(m_offsets.size()) + "\n0000000000 65535 f \n";
    for (int n = 1; n < m_offsets.size(); ++n)
        m_out += QByteArray::number(m_offsets.at(n)).rightJustified(10, '0') + " 00000 n \n";
    m_out += "trailer\n<<\n/Size " + QByteArray::number(m_offsets.size()) +
             " \n/Info 1 0 R\n/Root 2 0 R\n>>\nstartxref\n" + QByteArray::number(xref) +
             " \n%%EOF\n";
    return m_out;
}
