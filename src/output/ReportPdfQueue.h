#pragma once

#include <QList>
#include <QString>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include "ReportJob.h"

class QThreadPool;

// Writes many printings' PDF files at once: the files are written by groups on
// threads of their own while the caller prepares the next ones, with at most
// as many groups at a time as the machine has cores, each file as
// WriteReportPdf writes it. Each file's end is told to its callback on the
// caller's thread, in the order the files were given; a text that did not fit
// its box is written to the daily log there.
class ReportPdfQueue
{
public:
    // Whether the file was written.
    using Done = std::function<void(bool written)>;

    explicit ReportPdfQueue(int parallel = 0, int perGroup = 16);
    ~ReportPdfQueue();
    ReportPdfQueue(const ReportPdfQueue&) = delete;
    ReportPdfQueue& operator=(const ReportPdfQueue&) = delete;

    // Adds the file to the group being gathered, and starts the group when
    // full, first waiting for the oldest when all threads are taken; the
    // files already ended are told on the way.
    void Add(const QList<ReportJob>& jobs, const QString& path, Done done);
    // Draws what is gathered, waits for every file and tells their ends.
    void Finish();

    struct File;
    struct Group;

private:
    void start();
    // Ends the oldest group, waiting for it when `wait`; false when it is
    // still being drawn.
    bool endOldest(bool wait);

    int m_parallel;
    int m_perGroup;
    std::unique_ptr<QThreadPool> m_pool;
    std::vector<std::shared_ptr<File>> m_gathering;
    std::deque<std::shared_ptr<Group>> m_pending;
};
