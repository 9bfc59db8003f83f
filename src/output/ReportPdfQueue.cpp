#include "ReportPdfQueue.h"

#include <QBuffer>
#include <QFile>
#include <QHash>
#include <QPainter>
#include <QPdfWriter>
#include <QRegularExpression>
#include <QThread>
#include <QThreadPool>
#include <algorithm>
#include <chrono>
#include <future>

#include "ReportRenderer.h"

namespace {

// The objects of a PDF file as this program's writer lays it out: each
// "n 0 obj" at the offset its cross-reference table gives, running up to the
// next object or the table.
class PdfObjects
{
public:
    explicit PdfObjects(const QByteArray& pdf) : m_pdf(pdf) { m_valid = read(); }

    bool valid() const { return m_valid; }
    // What follows "n 0 obj\n", its "endobj" included; empty when there is no
    // such object.
    QByteArray body(int n) const
    {
        const auto span = m_spans.value(n, {0, 0});
        return m_pdf.mid(span.first, span.second - span.first);
    }
    // What comes before the first object: the version and the binary mark.
    QByteArray header() const { return m_pdf.left(m_first); }

    int info = 0;
    int pages = 0;
    QList<int> kids;

private:
    bool read();
    bool readTable(qsizetype xref);

    QByteArray m_pdf;
    QHash<int, QPair<qsizetype, qsizetype>> m_spans;
    qsizetype m_first = 0;
    bool m_valid = false;
};

// The objects a dictionary names, "n 0 R", in their order.
QList<int> References(const QByteArray& dictionary)
{
    static const QRegularExpression reference(QStringLiteral("\\b(\\d+) 0 R\\b"));
    QList<int> found;
    auto it = reference.globalMatch(QString::fromLatin1(dictionary));
    while (it.hasNext())
        found << it.next().captured(1).toInt();
    return found;
}

// The number after `key` in a dictionary, as in "/Root 2 0 R".
int NumberAfter(const QByteArray& text, const QByteArray& key)
{
    const qsizetype at = text.indexOf(key);
    if (at < 0)
        return 0;
    return References(text.mid(at + key.size(), 16)).value(0);
}

// An object's dictionary, up to its stream's data when it has one.
QByteArray Dictionary(const QByteArray& body)
{
    const QByteArray mark = ">>\nstream\n";
    const qsizetype at = body.indexOf(mark);
    return at < 0 ? body : body.left(at + mark.size());
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
    pages = NumberAfter(Dictionary(body(NumberAfter(trailer, "/Root "))), "/Pages ");
    kids = References(Dictionary(body(pages)));
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
    }
    return true;
}

// A text string as the writer spells it: UTF-16 with its byte order mark.
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

// The dictionary with its references turned to the new numbers.
QByteArray Renumber(const QByteArray& dictionary, const QHash<int, int>& number)
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

// The file being written: its objects one after the other, and at the end
// the table of where each begins.
class PdfOut
{
public:
    explicit PdfOut(const QByteArray& header) : m_out(header) {}
    void add(int n, const QByteArray& body)
    {
        if (m_offsets.size() <= n)
            m_offsets.resize(n + 1);
        m_offsets[n] = m_out.size();
        m_out += QByteArray::number(n) + " 0 obj\n" + body;
    }
    QByteArray finish()
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

private:
    QByteArray m_out;
    QList<qsizetype> m_offsets;
};

} // namespace

QByteArray ExtractPdfPages(const QByteArray& pdf, int first, int count, const QString& title)
{
    const PdfObjects all(pdf);
    if (!all.valid() || first < 0 || count <= 0 || first + count > all.kids.size())
        return {};
    // The objects the pages use, as they are met; their numbers follow those
    // of the information, the catalog and the page tree.
    QHash<int, int> number{{all.pages, 3}};
    QList<int> order;
    QList<int> next = all.kids.mid(first, count);
    while (!next.isEmpty()) {
        const int n = next.takeFirst();
        if (number.contains(n))
            continue;
        const QByteArray body = all.body(n);
        if (body.isEmpty())
            return {};
        number.insert(n, 4 + int(order.size()));
        order << n;
        next += References(Dictionary(body));
    }
    PdfOut out(all.header());
    const QByteArray info = all.body(all.info);
    const qsizetype creator = info.indexOf("\n/Creator");
    out.add(1, "<<\n/Title " + PdfText(title) +
                   (creator < 0 ? QByteArray("\n>>\nendobj\n") : info.mid(creator)));
    out.add(2, "<<\n/Type /Catalog\n/Pages 3 0 R\n>>\nendobj\n");
    QByteArray kids;
    for (int k = first; k < first + count; ++k)
        kids += QByteArray::number(number.value(all.kids.at(k))) + " 0 R\n";
    out.add(3, "<<\n/Type /Pages\n/Kids \n[\n" + kids + "]\n/Count " + QByteArray::number(count) +
                   "\n/ProcSet [/PDF /Text /ImageB /ImageC]\n>>\nendobj\n");
    for (const int n : std::as_const(order)) {
        const QByteArray body = all.body(n);
        const QByteArray dictionary = Dictionary(body);
        out.add(number.value(n), Renumber(dictionary, number) + body.mid(dictionary.size()));
    }
    return out.finish();
}

struct ReportPdfQueue::File {
    QList<ReportJob> jobs;
    QString path;
    QStringList missed; // the drawing thread's until the group ends
    bool written = false;
    Done done;
};

struct ReportPdfQueue::Group {
    std::vector<std::shared_ptr<File>> files;
    std::promise<void> promise;
    std::future<void> drawn;
};

namespace {

using File = ReportPdfQueue::File;

int PagesOf(const QList<ReportJob>& jobs)
{
    int pages = 0;
    for (const ReportJob& job : jobs)
        pages += ReportRenderer::PageCount(job);
    return pages;
}

QString TitleOf(const QList<ReportJob>& jobs)
{
    return QStringLiteral("Formulario ") + jobs.first().layout;
}

bool WriteBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
           file.write(bytes) == bytes.size() && file.flush();
}

// The file drawn alone, as WriteReportPdf draws it; what did not fit is
// already noted.
bool WriteAlone(const File& file)
{
    QPdfWriter writer(file.path);
    ReportRenderer::SetUpPdf(writer, file.jobs);
    QPainter painter;
    if (!painter.begin(&writer))
        return false;
    QStringList again;
    bool first = true;
    ReportRenderer::DrawPages(painter, writer, file.jobs, again, first);
    return painter.end();
}

// Draws the group's files as one document and parts it into theirs; a file
// that cannot be parted out is drawn alone.
void DrawGroup(const std::vector<std::shared_ptr<File>>& files)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    std::vector<std::pair<File*, int>> drawn; // each file and its first page
    bool whole = false;
    {
        QPdfWriter writer(&buffer);
        ReportRenderer::SetUpPdf(writer, {});
        QPainter painter;
        bool first = true;
        int pages = 0;
        for (const std::shared_ptr<File>& file : files) {
            if (!ReportRenderer::Printable(file->jobs) ||
                (!painter.isActive() && !painter.begin(&writer)))
                continue;
            ReportRenderer::DrawPages(painter, writer, file->jobs, file->missed, first);
            drawn.emplace_back(file.get(), pages);
            pages += PagesOf(file->jobs);
        }
        whole = painter.isActive() && painter.end();
    }
    for (const auto& [file, page] : drawn) {
        const QByteArray own =
            whole ? ExtractPdfPages(buffer.data(), page, PagesOf(file->jobs), TitleOf(file->jobs))
                  : QByteArray();
        file->written = own.isEmpty() ? WriteAlone(*file) : WriteBytes(file->path, own);
    }
}

} // namespace

ReportPdfQueue::ReportPdfQueue(int parallel, int perGroup)
    : m_parallel(parallel > 0 ? parallel : qMax(1, QThread::idealThreadCount())),
      m_perGroup(qMax(1, perGroup)), m_pool(std::make_unique<QThreadPool>())
{
    // The threads live as long as the queue: each keeps the fonts it loaded
    // for the groups after.
    m_pool->setMaxThreadCount(m_parallel);
    m_pool->setExpiryTimeout(-1);
}

ReportPdfQueue::~ReportPdfQueue()
{
    Finish();
}

void ReportPdfQueue::Add(const QList<ReportJob>& jobs, const QString& path, Done done)
{
    while (!m_pending.empty() && endOldest(false)) {
    }
    auto file = std::make_shared<File>();
    file->jobs = jobs;
    file->path = path;
    file->done = std::move(done);
    m_gathering.push_back(std::move(file));
    if (int(m_gathering.size()) >= m_perGroup)
        start();
}

void ReportPdfQueue::start()
{
    if (m_gathering.empty())
        return;
    while (int(m_pending.size()) >= m_parallel)
        endOldest(true);
    auto group = std::make_shared<Group>();
    group->files.swap(m_gathering);
    group->drawn = group->promise.get_future();
    m_pool->start([group] {
        DrawGroup(group->files);
        group->promise.set_value();
    });
    m_pending.push_back(std::move(group));
}

void ReportPdfQueue::Finish()
{
    start();
    while (!m_pending.empty())
        endOldest(true);
}

bool ReportPdfQueue::endOldest(bool wait)
{
    const std::shared_ptr<Group> group = m_pending.front();
    if (!wait && group->drawn.wait_for(std::chrono::seconds(0)) != std::future_status::ready)
        return false;
    group->drawn.get();
    m_pending.pop_front();
    for (const std::shared_ptr<File>& file : group->files) {
        if (!file->missed.isEmpty())
            ReportRenderer::LogUnfit(file->jobs, file->missed);
        if (file->done)
            file->done(file->written);
    }
    return true;
}
