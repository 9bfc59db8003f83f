#include "QtReportPrinter.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPageLayout>
#include <QPageSize>
#include <QPixmap>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include "output/ReportRenderer.h"

namespace {

// About 96 dots to the inch: the pages at their size on an ordinary screen.
constexpr double kActualDotsPerMm = 3.78;
constexpr double kMinZoom = 0.25;
constexpr double kMaxZoom = 4.0;
constexpr int kPageSpacing = 12;

// The pages of the printings one under another, drawn at the zoom asked
// for, with the buttons to move between them and to change the zoom.
class Preview : public QDialog
{
public:
    Preview(const QList<ReportJob>& jobs, QWidget* parent) : QDialog(parent)
    {
        setObjectName(QStringLiteral("VistaPrevia"));
        setWindowTitle(QStringLiteral("Vista previa"));
        for (const ReportJob& job : jobs)
            for (int p = 0; p < ReportRenderer::PageCount(job); ++p)
                m_pages.append({job, p});

        auto* layout = new QVBoxLayout(this);
        auto* tools = new QHBoxLayout;
        m_previous = tool(tools, QStringLiteral("cmdAnterior"), QStringLiteral("< Anterior"),
                          [this] { showPage(m_current - 1); });
        m_pageLabel = new QLabel;
        m_pageLabel->setObjectName(QStringLiteral("lblPagina"));
        tools->addWidget(m_pageLabel);
        m_next = tool(tools, QStringLiteral("cmdSiguiente"), QStringLiteral("Siguiente >"),
                      [this] { showPage(m_current + 1); });
        tools->addStretch();
        tool(tools, QStringLiteral("cmdAlejar"), QStringLiteral("Alejar (-)"),
             [this] { setZoom(m_zoom / 1.25); });
        m_zoomLabel = new QLabel;
        m_zoomLabel->setObjectName(QStringLiteral("lblZoom"));
        tools->addWidget(m_zoomLabel);
        tool(tools, QStringLiteral("cmdAcercar"), QStringLiteral("Acercar (+)"),
             [this] { setZoom(m_zoom * 1.25); });
        tool(tools, QStringLiteral("cmdAncho"), QStringLiteral("Ajustar al ancho"),
             [this] { setZoom(fitWidthZoom()); });
        tool(tools, QStringLiteral("cmdPagina"), QStringLiteral("Página completa"),
             [this] { setZoom(fitPageZoom()); });
        layout->addLayout(tools);

        m_scroll = new QScrollArea;
        m_scroll->setBackgroundRole(QPalette::Dark);
        m_scroll->setAlignment(Qt::AlignHCenter);
        auto* pages = new QWidget;
        auto* column = new QVBoxLayout(pages);
        column->setSpacing(kPageSpacing);
        for (int i = 0; i < m_pages.size(); ++i) {
            auto* page = new QLabel;
            page->setFrameShape(QFrame::Box);
            column->addWidget(page, 0, Qt::AlignHCenter);
            m_labels << page;
        }
        m_scroll->setWidget(pages);
        m_scroll->setWidgetResizable(false);
        layout->addWidget(m_scroll, 1);
        connect(m_scroll->verticalScrollBar(), &QScrollBar::valueChanged, this,
                [this] { followScroll(); });

        m_buttons = new QDialogButtonBox;
        layout->addWidget(m_buttons);

        // The whole window on the screen, buttons included, whatever its
        // size: at most 90 % of the room the desktop leaves.
        const QRect room = screen() ? screen()->availableGeometry() : QRect(0, 0, 1366, 768);
        resize(qMin(900, room.width() * 9 / 10), qMin(1000, room.height() * 9 / 10));
        setZoom(1.0);
    }

    QDialogButtonBox* buttons() const { return m_buttons; }

    void fitOnShow()
    {
        // Shown for the first time, the page fits the width of the window.
        setZoom(fitWidthZoom());
    }

private:
    struct Page {
        ReportJob job;
        int page;
    };

    template <class F>
    QPushButton* tool(QHBoxLayout* row, const QString& name, const QString& text, F action)
    {
        auto* button = new QPushButton(text);
        button->setObjectName(name);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, action);
        row->addWidget(button);
        return button;
    }

    double fitWidthZoom() const
    {
        const int width = m_scroll->viewport()->width() - 24;
        return width / (ReportRenderer::kPageWidth * kActualDotsPerMm);
    }
    double fitPageZoom() const
    {
        const int height = m_scroll->viewport()->height() - 2 * kPageSpacing;
        return qMin(fitWidthZoom(), height / (ReportRenderer::kPageHeight * kActualDotsPerMm));
    }

    void setZoom(double zoom)
    {
        m_zoom = qBound(kMinZoom, zoom, kMaxZoom);
        const int keep = m_current;
        for (int i = 0; i < m_pages.size(); ++i)
            m_labels[i]->setPixmap(QPixmap::fromImage(
                RenderPageImage(m_pages[i].job, m_pages[i].page, kActualDotsPerMm * m_zoom)));
        m_scroll->widget()->adjustSize();
        m_zoomLabel->setText(QString::number(qRound(m_zoom * 100)) + u'%');
        showPage(keep);
    }

    void showPage(int index)
    {
        if (m_pages.isEmpty())
            return;
        m_current = qBound(0, index, int(m_pages.size()) - 1);
        // The page asked for stays the current one even where the last pages
        // cannot scroll to the top.
        m_jumping = true;
        m_scroll->verticalScrollBar()->setValue(m_labels[m_current]->y() - kPageSpacing / 2);
        m_jumping = false;
        updatePage();
    }

    void followScroll()
    {
        if (m_jumping)
            return;
        const int top = m_scroll->verticalScrollBar()->value() + m_scroll->viewport()->height() / 3;
        for (int i = 0; i < m_labels.size(); ++i)
            if (m_labels[i]->y() <= top)
                m_current = i;
        updatePage();
    }

    void updatePage()
    {
        m_pageLabel->setText(
            QStringLiteral("Página %1 de %2").arg(m_current + 1).arg(m_pages.size()));
        m_previous->setEnabled(m_current > 0);
        m_next->setEnabled(m_current < m_pages.size() - 1);
    }

    QList<Page> m_pages;
    QList<QLabel*> m_labels;
    QScrollArea* m_scroll = nullptr;
    QDialogButtonBox* m_buttons = nullptr;
    QLabel* m_pageLabel = nullptr;
    QLabel* m_zoomLabel = nullptr;
    QPushButton* m_previous = nullptr;
    QPushButton* m_next = nullptr;
    double m_zoom = 1.0;
    int m_current = 0;
    bool m_jumping = false;
};

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
    Preview dialog(jobs, QApplication::activeWindow());
    QDialogButtonBox* buttons = dialog.buttons();
    QPushButton* print =
        buttons->addButton(QStringLiteral("Imprimir"), QDialogButtonBox::ActionRole);
    QPushButton* pdf =
        buttons->addButton(QStringLiteral("Guardar como PDF"), QDialogButtonBox::ActionRole);
    buttons->addButton(QStringLiteral("Cerrar"), QDialogButtonBox::RejectRole);
    QObject::connect(print, &QPushButton::clicked, &dialog, [this, &jobs] { this->print(jobs); });
    QObject::connect(pdf, &QPushButton::clicked, &dialog, [this, &jobs] { saveAsPdf(jobs); });
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    dialog.show();
    dialog.fitOnShow();
    dialog.exec();
}
