#include "ReportPrinter.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>

#include "ReportRenderer.h"
#include "UiPort.h"
#include "ZoGenerateDisk.h"

namespace {

ReportPrinter* gPrinter = nullptr;

const QString kPdfFolderKey = QStringLiteral("Impresion/CarpetaPdf");

} // namespace

bool ReportPrinter::print(const QList<ReportJob>& jobs)
{
    if (!hasPrinter()) {
        MsgBox(QStringLiteral("El reporte no puede ser impreso por no tener una impresora "
                              "instalada"),
               Msg::Information, QStringLiteral("Atención"));
        return false;
    }
    return printPages(jobs);
}

QString ReportPrinter::SuggestedPdfPath(const ReportJob& job)
{
    QString folder = QSettings(QStringLiteral("Morvel"), QStringLiteral("Morvel"))
                         .value(kPdfFolderKey)
                         .toString();
    if (folder.isEmpty() || !QFileInfo(folder).isDir())
        folder = QDir::homePath();
    QString name = job.field(QStringLiteral("CUIT"));
    name.remove(u'-');
    name += u'_' + job.layout + u'_' + job.field(QStringLiteral("PERIODO"));
    const QString rect = job.field(QStringLiteral("RECTIFICACION"));
    if (!rect.isEmpty() && rect != QLatin1String("0"))
        name += QStringLiteral("_R") + rect;
    name.replace(u'/', u'-');
    return folder + u'/' + name + QStringLiteral(".pdf");
}

bool ReportPrinter::saveAsPdf(const QList<ReportJob>& jobs)
{
    const QString suggested = jobs.isEmpty() ? QString() : SuggestedPdfPath(jobs.first());
    const QString path = ui().chooseSaveFile(QStringLiteral("Guardar como PDF"),
                                             QStringLiteral("Documento PDF (*.pdf)"), suggested);
    if (path.isEmpty())
        return false;
    if (!WriteReportPdf(jobs, path)) {
        MsgBox(QStringLiteral("No se pudo escribir el archivo ") + path + u'.', Msg::Exclamation,
               QStringLiteral("Atención"));
        return false;
    }
    QSettings(QStringLiteral("Morvel"), QStringLiteral("Morvel"))
        .setValue(kPdfFolderKey, QFileInfo(path).absolutePath());
    return true;
}

PdfFolderPrinter::PdfFolderPrinter(const QString& folder) : m_folder(folder) {}

QString PdfFolderPrinter::folder() const
{
    return m_folder.isEmpty() ? WorkFolder() + QStringLiteral("/Reportes") : m_folder;
}

void PdfFolderPrinter::preview(const QList<ReportJob>& jobs)
{
    m_previewed += jobs;
    write(QStringLiteral("preview_"), jobs);
}

void PdfFolderPrinter::clear()
{
    m_files.clear();
    m_printed.clear();
    m_previewed.clear();
}

bool PdfFolderPrinter::printPages(const QList<ReportJob>& jobs)
{
    m_printed += jobs;
    return write(QString(), jobs);
}

bool PdfFolderPrinter::write(const QString& prefix, const QList<ReportJob>& jobs)
{
    if (jobs.isEmpty())
        return false;
    QDir().mkpath(folder());
    const QString path = folder() + u'/' + prefix + jobs.first().layout + u'_' +
                         QString::number(m_files.size() + 1) + QStringLiteral(".pdf");
    if (!WriteReportPdf(jobs, path))
        return false;
    m_files << path;
    return true;
}

ReportPrinter& reportPrinter()
{
    static PdfFolderPrinter fallback;
    return gPrinter ? *gPrinter : fallback;
}

void SetReportPrinter(ReportPrinter* printer)
{
    gPrinter = printer;
}
