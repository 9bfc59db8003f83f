#include "ReportPdfQueue.h"

#include <QThread>
#include <QThreadPool>
#include <algorithm>
#include <chrono>
#include <future>

#include "ReportRenderer.h"

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

// Writes the group's files, one after the other, on the group's thread.
void DrawGroup(const std::vector<std::shared_ptr<ReportPdfQueue::File>>& files)
{
    for (const std::shared_ptr<ReportPdfQueue::File>& file : files)
        file->written = DrawReportPdf(file->jobs, file->path, file->missed);
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
