#pragma once

#include <QStringList>
#include <deque>
#include <functional>
#include <memory>

class QTemporaryDir;

// Zips many files at once: each job zips one member alone into its own work
// archive and places it at its target, as ArchiveAlone does, but the
// archiver runs while the caller prepares the next file, with at most as many
// runs at a time as the machine has cores. Each job's end is told to its
// callback, in the order the jobs were given.
class ArchiveQueue
{
public:
    // Whether the job's target came out.
    using Done = std::function<void(bool placed)>;

    explicit ArchiveQueue(const QStringList& options = {}, int parallel = 0);
    ~ArchiveQueue();
    ArchiveQueue(const ArchiveQueue&) = delete;
    ArchiveQueue& operator=(const ArchiveQueue&) = delete;

    // A work folder that no running job uses, where the next job's member
    // may be written; "" when none could be made.
    QString Folder() const;
    // Starts a job on a member written in Folder(), first waiting for the
    // oldest one when all places are taken; the jobs already ended are told
    // on the way.
    void Add(const QString& member, const QString& target, Done done);
    // Waits for every job and tells their ends.
    void Finish();

private:
    struct Job;
    // Ends the oldest job, waiting for it when `wait`; false when it still runs.
    bool endOldest(bool wait);

    QStringList m_options;
    int m_parallel;
    std::unique_ptr<QTemporaryDir> m_work;
    int m_added = 0;
    std::deque<std::unique_ptr<Job>> m_running;
};
