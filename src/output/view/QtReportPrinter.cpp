#include "QtReportPrinter.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPageLayout>
#include <QPageSize>
#include <QPixmap>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include "output/ReportRenderer.h"

namespace {

// About 96 dots to the inch: the pages at their size on an ordinary screen.
constexpr double kPreviewDotsPerMm = 3.78;

QWidget* PagesWidget(const QList<ReportJob>& jobs)
{
    auto* pages = new QWidget;
    auto* layout = new QVBoxLayout(pages);
    layout->setSpacing(12);
    for (const ReportJob& job : jobs) {
        for (int p = 0; p < ReportRenderer::PageCount(job); ++p) {
            auto* page = new QLabel;
            page->setPixmap(QPixmap::fromImage(RenderPageImage(job, p, kPreviewDotsPerMm)));
            page->setFrameShape(QFrame::Box);
            layout->addWidget(page, 0, Qt::AlignHCenter);
        }
    }
    return pages;
}

} // namespace

bool QtReportPrinter::hasPrinter() const
{
    return !QPrinterInfo::availablePrinterNames().isEmpty();
}

bool QtReportPrinter::printPages(const QList<ReportJob>& jobs)
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageSize(QPageSize(QPageSize::A4));
    printer.setPageOrientation(QPageLayout::Portrait);
    printer.setDocName(jobs.isEmpty() ? QString()
                                      : QStringLiteral("Formulario ") + jobs.first().layout);
    QPrintDialog dialog(&printer, QApplication::activeWindow());
    dialog.setWindowTitle(QStringLiteral("Imprimir"));
    if (dialog.exec() != QDialog::Accepted)
        return false;
    return ReportRenderer::Render(printer, jobs);
}

void QtReportPrinter::preview(const QList<ReportJob>& jobs)
{
    QDialog dialog(QApplication::activeWindow());
    dialog.setObjectName(QStringLiteral("VistaPrevia"));
    dialog.setWindowTitle(QStringLiteral("Vista previa"));
    auto* layout = new QVBoxLayout(&dialog);
    auto* scroll = new QScrollArea;
    scroll->setWidget(PagesWidget(jobs));
    scroll->setBackgroundRole(QPalette::Dark);
    layout->addWidget(scroll);
    auto* buttons = new QDialogButtonBox;
    QPushButton* print =
        buttons->addButton(QStringLiteral("Imprimir"), QDialogButtonBox::ActionRole);
    QPushButton* pdf =
        buttons->addButton(QStringLiteral("Guardar como PDF"), QDialogButtonBox::ActionRole);
    buttons->addButton(QStringLiteral("Cerrar"), QDialogButtonBox::RejectRole);
    layout->addWidget(buttons);
    QObject::connect(print, &QPushButton::clicked, &dialog, [this, &jobs] { this->print(jobs); });
    QObject::connect(pdf, &QPushButton::clicked, &dialog, [this, &jobs] { saveAsPdf(jobs); });
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    dialog.resize(860, 900);
    dialog.exec();
}
