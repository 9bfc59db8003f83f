#pragma once

#include <QList>
#include <QString>

#include "ReportJob.h"

#include <QImage>

class QPagedPaintDevice;
class QPainter;
class QPdfWriter;
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

    // Whether every printing's layout is known, and there is one at least.
    static bool Printable(const QList<ReportJob>& jobs);
    // Sets a PDF writer up for A4 sheets, titled after the first printing.
    static void SetUpPdf(QPdfWriter& writer, const QList<ReportJob>& jobs);
    // Draws the printings' pages with a painter begun on `device`, each on a
    // new page but the very first (`first`, then false); the texts that did
    // not fit their boxes into `missed`.
    static void DrawPages(QPainter& painter, QPagedPaintDevice& device,
                          const QList<ReportJob>& jobs, QStringList& missed, bool& first);
    // The printings as a PDF file written straight from the forms' strokes;
    // empty when a text has a character the file's letters lack (or they
    // could not be had), or a layout is unknown. The texts that did not fit
    // their boxes into `missed`.
    static QByteArray StraightPdf(const QList<ReportJob>& jobs, QStringList& missed);
    // Writes the texts that did not fit their boxes to the daily log.
    static void LogUnfit(const QList<ReportJob>& jobs, const QStringList& missed);

    static constexpr double kPageWidth = 210.0;
    static constexpr double kPageHeight = 297.0;
};

// One page as a picture, `dotsPerMm` dots to the millimetre (a preview).
QImage RenderPageImage(const ReportJob& job, int page, double dotsPerMm);

// Writes the printings as one PDF file, A4; false when it cannot be written.
bool WriteReportPdf(const QList<ReportJob>& jobs, const QString& path);
// The same, the texts that did not fit their boxes into `missed` instead of
// the daily log (for a thread of its own).
bool DrawReportPdf(const QList<ReportJob>& jobs, const QString& path, QStringList& missed);

