#pragma once

#include <QList>
#include <QString>
#include <deque>
#include <functional>
#include <memory>

#include "ReportJob.h"

#include <QImage>

class QThreadPool;

class QPagedPaintDevice;
class QPainter;
struct ReportLayout;

// Draws printings on paper-like devices (a printer, a PDF file, a preview),
// A4, black on white, with the layout of each printing's form.
class ReportRenderer
{
public:
    // Each printing from a new page, in order; false when the device cannot
    // be painted on or a layout is unknown. A text that does not fit its box
    // even wrapped and shrunk is written to the daily log and added to
    // `unfit`.
    static bool Render(QPagedPaintDevice& device, const QList<ReportJob>& jobs,
                       QStringList* unfit = nullptr);
    // The texts of the printings that would not fit their boxes on paper.
    static QStringList UnfitTexts(const QList<ReportJob>& jobs);
    // The pages a printing takes: the annexes one per 25 lines, at least one.
    static int PageCount(const ReportJob& job);
    // One page, in millimetres of the sheet, on a painter already scaled.
    static void DrawPage(QPainter& painter, const ReportJob& job, int page);

    static constexpr double kPageWidth = 210.0;
    static constexpr double kPageHeight = 297.0;
};

// One page as a picture, `dotsPerMm` dots to the millimetre (a preview).
QImage RenderPageImage(const ReportJob& job, int page, double dotsPerMm);

// Writes the printings as one PDF file, A4; false when it cannot be written.
bool WriteReportPdf(const QList<ReportJob>& jobs, const QString& path);

// Writes many printings' PDF files at once: each file is drawn on a thread
// of its own while the caller prepares the next, with at most as many files
// at a time as the machine has cores. Each file's end is told to its
// callback on the caller's thread, in the order the files were given; a text
// that did not fit its box is written to the daily log there.
class ReportPdfQueue
{
public:
    // Whether the file was written.
    using Done = std::function<void(bool written)>;

    explicit ReportPdfQueue(int parallel = 0);
    ~ReportPdfQueue();
    ReportPdfQueue(const ReportPdfQueue&) = delete;
    ReportPdfQueue& operator=(const ReportPdfQueue&) = delete;

    // Starts drawing the file, first waiting for the oldest when enough wait
    // their turn; the files already ended are told on the way.
    void Add(const QList<ReportJob>& jobs, const QString& path, Done done);
    // Waits for every file and tells their ends.
    void Finish();

private:
    struct File;
    // Ends the oldest file, waiting for it when `wait`; false when it is
    // still being drawn.
    bool endOldest(bool wait);

    int m_parallel;
    std::unique_ptr<QThreadPool> m_pool;
    std::deque<std::shared_ptr<File>> m_pending;
};
