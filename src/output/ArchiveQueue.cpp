#include "ArchiveQueue.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include "ZoGenerateDisk.h"

struct ArchiveQueue::Job {
    QProcess process;
    QStringList arguments;
    QString archive;
    QString target;
    Done done;
    bool started = false;
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

QString ArchiveQueue::Folder() const
{
    // The runs end in the order they began, so the folder of the run that
    // began m_parallel + 1 jobs ago is free again.
    return m_work->isValid() ? m_work->filePath(QString::number(m_added % (m_parallel + 1)))
                             : QString();
}

ArchiveQueue::~ArchiveQueue()
{
    Finish();
}

void ArchiveQueue::Add(const QString& member, const QString& target, Done done)
{
    const QString archive = QFileInfo(member).absolutePath() + QStringLiteral("/TEMPFILE.ZIP");
    ++m_added;
    while (!m_running.empty() && endOldest(false)) {
    }
    while (int(m_running.size()) >= m_parallel)
        endOldest(true);
    auto job = std::make_unique<Job>();
    job->arguments = ArchiveArguments(member, archive, m_options);
    job->archive = archive;
    job->target = target;
    job->done = std::move(done);
    // A zip left by a run that stopped would take the new member beside its
    // old one: start from none.
    QFile::remove(archive);
    job->started = StartSevenZip(job->process, job->arguments);
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
    if (!wait && job.started && job.process.state() != QProcess::NotRunning &&
        !job.process.waitForFinished(0))
        return false;
    const int code = job.started ? WaitSevenZip(job.process, job.arguments) : -1;
    bool placed = false;
    if (code == 0 && QFileInfo::exists(job.archive))
        placed = PlaceArchive(job.archive, job.target);
    else
        QFile::remove(job.archive);
    const Done done = std::move(job.done);
    m_running.pop_front();
    if (done)
        done(placed);
    return true;
}
