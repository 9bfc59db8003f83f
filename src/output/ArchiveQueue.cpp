#include "ArchiveQueue.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QThread>
#include <chrono>
#include <future>

#include "SevenZipRun.h"
#include "ZoGenerateDisk.h"

// A job runs on a thread of its own: the start of a process waits for the
// program to be loaded, and that wait is not the caller's.
struct ArchiveQueue::Job {
    SevenZipRun run;
    std::future<bool> placed;
    Done done;
};

ArchiveQueue::ArchiveQueue(const QStringList& options, int parallel)
    : m_options(options),
      m_parallel(parallel > 0 ? parallel : qMax(1, QThread::idealThreadCount())),
      m_work(std::make_unique<QTemporaryDir>(WorkFolder() + QStringLiteral("/zip-XXXXXX")))
{
    // One folder more than the runs at a time: the one being written.
    for (int i = 0; i <= m_parallel && m_work->isValid(); ++i)
        QDir().mkpath(m_work->filePath(QString::number(i)));
}

ArchiveQueue::~ArchiveQueue()
{
    Finish();
}

QString ArchiveQueue::Folder() const
{
    // The runs end in the order they began, so the folder of the run that
    // began m_parallel + 1 jobs ago is free again.
    return m_work->isValid() ? m_work->filePath(QString::number(m_added % (m_parallel + 1)))
                             : QString();
}

void ArchiveQueue::Add(const QString& member, const QString& target, Done done)
{
    ++m_added;
    while (!m_running.empty() && endOldest(false)) {
    }
    while (int(m_running.size()) >= m_parallel)
        endOldest(true);
    if (SevenZipProgram().isEmpty()) {
        RunSevenZip({}); // logs that it is missing
        if (done)
            done(false);
        return;
    }
    auto job = std::make_unique<Job>();
    job->done = std::move(done);
    const QString archive = QFileInfo(member).absolutePath() + QStringLiteral("/TEMPFILE.ZIP");
    const QStringList arguments = ArchiveArguments(member, archive, m_options);
    SevenZipRun* run = &job->run;
    job->placed = std::async(std::launch::async, [run, arguments, archive, target] {
        // A zip left by a run that stopped would take the new member beside
        // its old one: start from none.
        QFile::remove(archive);
        const bool zipped =
            run->Start(arguments, false) && run->Wait(false) == 0 && QFileInfo::exists(archive);
        if (!zipped) {
            QFile::remove(archive);
            return false;
        }
        return PlaceArchive(archive, target);
    });
    m_running.push_back(std::move(job));
}

void ArchiveQueue::Finish()
{
    while (!m_running.empty())
        endOldest(true);
}

bool ArchiveQueue::endOldest(bool wait)
{
    Job& job = *m_running.front();
    if (!wait && job.placed.wait_for(std::chrono::seconds(0)) != std::future_status::ready)
        return false;
    const bool placed = job.placed.get();
    job.run.LogFailure();
    const Done done = std::move(job.done);
    m_running.pop_front();
    if (done)
        done(placed);
    return true;
}
