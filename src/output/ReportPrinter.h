#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include "ReportJob.h"

// Where the printed forms go: the printer, a preview on the screen, or a PDF
// file. The program installs the Qt one; without it, printings become PDF
// files in a folder (what the tests read back).
class ReportPrinter
{
public:
    virtual ~ReportPrinter() = default;

    virtual bool hasPrinter() const = 0;
    // Sends the pages to the printer; with no printer installed, says so and
    // gives false.
    bool print(const QList<ReportJob>& jobs);
    virtual void preview(const QList<ReportJob>& jobs) = 0;
    // Asks for a file name ("" cancels) and writes the pages there.
    bool saveAsPdf(const QList<ReportJob>& jobs);
    // The name proposed for the PDF of a printing, in the folder last used
    // (the home folder at first): {CUIT}_{form}_{mm-yyyy}.pdf, with _R{n}
    // for the rectification number n, so that one taxpayer's paper never
    // overwrites another's.
    static QString SuggestedPdfPath(const ReportJob& job);

protected:
    virtual bool printPages(const QList<ReportJob>& jobs) = 0;
};

// Writes every printing as a PDF file in a folder: "{layout}_{n}.pdf",
// numbered in the order of the printings. A preview is written the same way,
// as "preview_{layout}_{n}.pdf".
class PdfFolderPrinter : public ReportPrinter
{
public:
    explicit PdfFolderPrinter(const QString& folder = {});

    void setFolder(const QString& folder) { m_folder = folder; }
    QString folder() const;
    // Stands for a machine without a printer.
    void setHasPrinter(bool on) { m_hasPrinter = on; }
    bool hasPrinter() const override { return m_hasPrinter; }
    void preview(const QList<ReportJob>& jobs) override;

    // The files written, oldest first, and the printings they held.
    QStringList files() const { return m_files; }
    QList<ReportJob> printed() const { return m_printed; }
    QList<ReportJob> previewed() const { return m_previewed; }
    void clear();

protected:
    bool printPages(const QList<ReportJob>& jobs) override;

private:
    bool write(const QString& prefix, const QList<ReportJob>& jobs);

    QString m_folder;
    bool m_hasPrinter = true;
    QStringList m_files;
    QList<ReportJob> m_printed;
    QList<ReportJob> m_previewed;
};

// The printer in use; the folder printer under {data folder}/tmp/Reportes
// until another is set. The setter does not take ownership; null restores
// the default.
ReportPrinter& reportPrinter();
void SetReportPrinter(ReportPrinter* printer);
