#include "ReportRenderer.h"

#include <QFont>
#include <QPageLayout>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPdfWriter>

#include "Numbers.h"
#include "ReportDriver.h"
#include "ReportLayout.h"
#include "Util.h"

namespace {

constexpr double kLeft = 10.0;
constexpr double kWidth = 190.0;
constexpr double kBoxHeight = 10.0;
constexpr double kLineHeight = 6.0;
constexpr double kAnnexLineHeight = 5.2;

// The drawing primitives of the forms, in millimetres of the sheet.
class Sheet
{
public:
    explicit Sheet(QPainter& painter) : m_p(painter)
    {
        m_p.setPen(QPen(Qt::black, 0.25));
        m_p.setBrush(Qt::NoBrush);
    }

    void frame(double x, double y, double w, double h, double pen = 0.25)
    {
        m_p.setPen(QPen(Qt::black, pen));
        m_p.drawRect(QRectF(x, y, w, h));
    }
    void line(double x1, double y1, double x2, double y2)
    {
        m_p.setPen(QPen(Qt::black, 0.2));
        m_p.drawLine(QPointF(x1, y1), QPointF(x2, y2));
    }
    void fill(double x, double y, double w, double h)
    {
        m_p.fillRect(QRectF(x, y, w, h), QColor(225, 225, 225));
    }
    // Text inside a rectangle, with a padding of 1.2 mm at the sides.
    void text(double x, double y, double w, double h, const QString& text, int align,
              double size = 3.0, bool bold = false)
    {
        // `size` is the height of the letters in millimetres of the sheet;
        // the device turns points into its own dots, which the painter's
        // scale then maps onto millimetres.
        QFont font(QStringLiteral("DejaVu Sans"));
        font.setPointSizeF(size * 72.0 / m_p.device()->logicalDpiY());
        font.setBold(bold);
        m_p.setFont(font);
        m_p.setPen(Qt::black);
        const QRectF area(x + 1.2, y, w - 2.4, h);
        const QString shown =
            QFontMetricsF(font, m_p.device()).elidedText(text, Qt::ElideRight, area.width());
        m_p.drawText(area, align | Qt::AlignVCenter | Qt::TextSingleLine, shown);
    }
    // A ruled box with its caption small in the upper left corner.
    void box(double x, double y, double w, double h, const QString& caption, const QString& value,
             int align = Qt::AlignLeft)
    {
        frame(x, y, w, h);
        text(x, y + 0.3, w, 3.2, caption, Qt::AlignLeft, 1.9);
        text(x, y + 3.4, w, h - 3.6, value, align, 3.0, true);
    }
    // A small square with an "X" when marked, and its label after it.
    void check(double x, double y, const QString& label, bool marked)
    {
        frame(x, y, 5, 5);
        if (marked)
            text(x - 1.2, y, 7.4, 5, QStringLiteral("X"), Qt::AlignHCenter, 3.2, true);
        text(x + 6, y, 40, 5, label, Qt::AlignLeft, 2.6, true);
    }

private:
    QPainter& m_p;
};

double Header(Sheet& s, const ReportLayout& l, const ReportJob& job)
{
    const double y = 10;
    s.frame(kLeft, y, kWidth, 26, 0.5);
    s.line(kLeft + 48, y, kLeft + 48, y + 26);
    s.line(kLeft + 152, y, kLeft + 152, y + 26);
    s.text(kLeft, y + 3, 48, 7, QStringLiteral("MUNICIPALIDAD"), Qt::AlignHCenter, 3.6, true);
    s.text(kLeft, y + 10, 48, 5, QStringLiteral("Dirección de Rentas"), Qt::AlignHCenter, 2.4);
    s.text(kLeft, y + 16, 48, 5, QStringLiteral("T.I.S.S.H."), Qt::AlignHCenter, 2.6, true);
    s.text(kLeft + 48, y + 4, 104, 8, l.title, Qt::AlignHCenter, 3.4, true);
    s.text(kLeft + 48, y + 13, 104, 6, l.subtitle, Qt::AlignHCenter, 2.3);
    s.text(kLeft + 48, y + 19, 104, 5, QStringLiteral("Declaración jurada"), Qt::AlignHCenter, 2.3);
    s.text(kLeft + 152, y + 3, 38, 5, QStringLiteral("FORMULARIO"), Qt::AlignHCenter, 2.4);
    s.text(kLeft + 152, y + 9, 38, 12, l.number, Qt::AlignHCenter, 8.0, true);

    // The kind of declaration and the dates.
    const double k = y + 28;
    s.frame(kLeft, k, kWidth, 9);
    const QString fechaRect = ExpandTemplate(l.fechaRectificativa, job);
    bool rect = false;
    bool orig = false;
    if (l.original.isEmpty()) {
        rect = !fechaRect.isEmpty() && fechaRect != QLatin1String("0");
        orig = !rect;
    } else {
        orig = !ExpandTemplate(l.original, job).isEmpty();
        rect = !ExpandTemplate(l.rectificativa, job).isEmpty();
    }
    s.check(kLeft + 3, k + 2, QStringLiteral("ORIGINAL"), orig);
    s.check(kLeft + 40, k + 2, QStringLiteral("RECTIFICATIVA"), rect);
    if (rect && !fechaRect.isEmpty())
        s.text(kLeft + 85, k, 60, 9, QStringLiteral("Fecha rectificativa: ") + fechaRect,
               Qt::AlignLeft, 2.6);
    if (!l.fecha.isEmpty())
        s.text(kLeft + 140, k, 50, 9, QStringLiteral("Fecha: ") + ExpandTemplate(l.fecha, job),
               Qt::AlignRight, 2.6);
    return k + 11;
}

double Identification(Sheet& s, const ReportLayout& l, const ReportJob& job, double y)
{
    for (const QList<LayoutBox>& row : l.identification) {
        double x = kLeft;
        for (const LayoutBox& b : row) {
            s.box(x, y, b.width, kBoxHeight, b.caption, ExpandTemplate(b.value, job));
            x += b.width;
        }
        y += kBoxHeight;
    }
    return y + 2;
}

void Row(Sheet& s, const ReportLayout& l, double y, double h, const QStringList& values,
         bool header)
{
    double x = kLeft;
    if (header)
        s.fill(kLeft, y, kWidth, h);
    for (int c = 0; c < l.columns.size(); ++c) {
        const LayoutColumn& col = l.columns.at(c);
        s.frame(x, y, col.width, h, header ? 0.35 : 0.2);
        const int align = header ? Qt::AlignHCenter : col.amount ? Qt::AlignRight : Qt::AlignLeft;
        s.text(x, y, col.width, h, values.value(c), align, header ? 2.3 : 2.5, header);
        x += col.width;
    }
}

QStringList Captions(const ReportLayout& l)
{
    QStringList captions;
    for (const LayoutColumn& col : l.columns)
        captions << col.caption;
    return captions;
}

// A row spanning all columns but the last, with an amount in the last.
void AmountRow(Sheet& s, const ReportLayout& l, double y, const QString& caption,
               const QString& amount)
{
    const double last = l.columns.isEmpty() ? 40 : l.columns.last().width;
    s.fill(kLeft, y, kWidth, kLineHeight);
    s.frame(kLeft, y, kWidth - last, kLineHeight, 0.35);
    s.frame(kLeft + kWidth - last, y, last, kLineHeight, 0.35);
    s.text(kLeft, y, kWidth - last, kLineHeight, caption, Qt::AlignRight, 2.7, true);
    s.text(kLeft + kWidth - last, y, last, kLineHeight, amount, Qt::AlignRight, 2.7, true);
}

double ActivityLines(Sheet& s, const ReportLayout& l, const ReportJob& job, double y)
{
    s.text(kLeft, y, kWidth, 5, QStringLiteral("DETERMINACIÓN DE LA TASA POR ACTIVIDAD"),
           Qt::AlignLeft, 2.6, true);
    y += 5;
    Row(s, l, y, 8, Captions(l), true);
    y += 8;
    for (int line = 0; line < ReportDriver::kActivityLines; ++line) {
        QStringList values;
        for (const LayoutColumn& col : l.columns)
            values << ExpandTemplate(col.value, job, line);
        Row(s, l, y, kLineHeight + 1, values, false);
        y += kLineHeight + 1;
    }
    if (!l.totalCaption.isEmpty()) {
        // The total of the bases sits under the base column.
        double x = kLeft;
        for (int c = 0; c < 2; ++c)
            x += l.columns.at(c).width;
        s.fill(kLeft, y, kWidth, kLineHeight);
        s.frame(kLeft, y, x - kLeft, kLineHeight, 0.35);
        s.text(kLeft, y, x - kLeft, kLineHeight, l.totalCaption, Qt::AlignRight, 2.7, true);
        s.frame(x, y, l.columns.at(2).width, kLineHeight, 0.35);
        s.text(x, y, l.columns.at(2).width, kLineHeight, ExpandTemplate(l.totalValue, job),
               Qt::AlignRight, 2.7, true);
        const double taxX = kLeft + kWidth - l.columns.last().width;
        s.frame(x + l.columns.at(2).width, y, taxX - x - l.columns.at(2).width, kLineHeight, 0.35);
        s.frame(taxX, y, l.columns.last().width, kLineHeight, 0.35);
        s.text(taxX, y, l.columns.last().width, kLineHeight, ExpandTemplate(l.totalTax, job),
               Qt::AlignRight, 2.7, true);
    }
    return y + kLineHeight + 3;
}

double Totals(Sheet& s, const ReportLayout& l, const ReportJob& job, double y)
{
    if (l.totals.isEmpty())
        return y;
    const double amountWidth = 40;
    const double x = kLeft + 70;
    const double w = kWidth - 70;
    s.text(kLeft, y, 68, 6, QStringLiteral("LIQUIDACIÓN"), Qt::AlignLeft, 2.6, true);
    for (const LayoutTotal& t : l.totals) {
        if (t.strong)
            s.fill(x, y, w, kLineHeight);
        s.frame(x, y, w - amountWidth, kLineHeight, t.strong ? 0.35 : 0.2);
        s.frame(x + w - amountWidth, y, amountWidth, kLineHeight, t.strong ? 0.35 : 0.2);
        s.text(x, y, w - amountWidth, kLineHeight, t.caption, Qt::AlignLeft, 2.7, t.strong);
        s.text(x + w - amountWidth, y, amountWidth, kLineHeight, ExpandTemplate(t.value, job),
               Qt::AlignRight, 2.8, t.strong);
        y += kLineHeight;
    }
    return y + 3;
}

double Words(Sheet& s, const ReportLayout& l, const ReportJob& job, double y)
{
    if (l.words.isEmpty())
        return y;
    s.frame(kLeft, y, kWidth, 9);
    s.text(kLeft, y + 0.3, 40, 3.2, QStringLiteral("Son pesos"), Qt::AlignLeft, 1.9);
    s.text(kLeft, y + 3, kWidth, 6, ExpandTemplate(l.words, job), Qt::AlignLeft, 2.8, true);
    return y + 11;
}

// The transport of one annex page: the sum of the amounts of the lines
// before `first`.
double SumOfLines(const ReportJob& job, int first, int end)
{
    double sum = 0;
    for (int r = first; r < end && r < job.rows.size(); ++r)
        sum += TextToDouble(job.cell(r, QStringLiteral("IMPORTEPERCIBIDO")));
    return sum;
}

bool IsBlankLine(const ReportJob& job, int row)
{
    return row >= job.realLines || job.cell(row, QStringLiteral("CODIGO")).isEmpty();
}

double AnnexLines(Sheet& s, const ReportLayout& l, const ReportJob& job, int page, double y)
{
    const int per = ReportDriver::kLinesPerPage;
    const int first = page * per;
    const bool lastPage = page == ReportRenderer::PageCount(job) - 1;
    s.text(kLeft, y, kWidth, 5, QStringLiteral("DETALLE DE COMPROBANTES"), Qt::AlignLeft, 2.6,
           true);
    s.text(kLeft, y, kWidth, 5,
           QStringLiteral("Hoja %1 de %2").arg(page + 1).arg(ReportRenderer::PageCount(job)),
           Qt::AlignRight, 2.4);
    y += 5;
    Row(s, l, y, 8, Captions(l), true);
    y += 8;
    if (page > 0) {
        AmountRow(s, l, y, QStringLiteral("Transporte de hoja anterior"),
                  LocaleFixed(SumOfLines(job, 0, first), 2, true));
        y += kLineHeight;
    }
    for (int r = first; r < first + per; ++r) {
        QStringList values;
        if (!IsBlankLine(job, r)) {
            for (const LayoutColumn& col : l.columns)
                values << ExpandTemplate(col.value, job, r);
        }
        Row(s, l, y, kAnnexLineHeight, values, false);
        y += kAnnexLineHeight;
    }
    if (lastPage) {
        QString total = ExpandTemplate(l.totalValue, job);
        if (total.isEmpty())
            total = LocaleFixed(SumOfLines(job, 0, job.rows.size()), 2, true);
        AmountRow(s, l, y, l.totalCaption, total);
    } else {
        AmountRow(s, l, y, QStringLiteral("Transporte a hoja siguiente"),
                  LocaleFixed(SumOfLines(job, 0, first + per), 2, true));
    }
    return y + kLineHeight + 3;
}

void Signature(Sheet& s, const ReportLayout& l, const ReportJob& job)
{
    const double y = 246;
    const double h = 34;
    // Left: the premises that heads the taxpayer, and the tie to the file.
    // A form that is not given the principal padrón shows no empty box for it.
    s.frame(kLeft, y, 90, h);
    double boxY = y;
    if (!l.principal.isEmpty()) {
        s.box(kLeft, boxY, 90, kBoxHeight, QStringLiteral("Padrón principal"),
              ExpandTemplate(l.principal, job));
        boxY += kBoxHeight;
    }
    s.box(kLeft, boxY, 90, kBoxHeight, QStringLiteral("Código de verificación (Guidv)"),
          ExpandTemplate(l.guidv, job));
    s.text(kLeft, y + 2 * kBoxHeight + 1, 90, 12, QStringLiteral("Sello y fecha de recepción"),
           Qt::AlignHCenter, 2.2);
    // Right: who signs, and in which capacity.
    const double x = kLeft + 92;
    const double w = kWidth - 92;
    s.frame(x, y, w, h);
    s.line(x + 10, y + 16, x + w - 10, y + 16);
    s.text(x, y + 16, w, 4, QStringLiteral("Firma"), Qt::AlignHCenter, 2.2);
    s.text(x, y + 21, w, 5, QStringLiteral("Aclaración: ") + ExpandTemplate(l.suscriptor, job),
           Qt::AlignLeft, 2.6);
    s.text(x, y + 27, w, 5, QStringLiteral("Carácter: ") + ExpandTemplate(l.caracter, job),
           Qt::AlignLeft, 2.6);
    s.text(x, y + 1, w, 4,
           QStringLiteral("Declaro bajo juramento que los datos consignados son correctos."),
           Qt::AlignHCenter, 2.0);
}

void Footer(Sheet& s, const ReportLayout& l, const ReportJob& job)
{
    const QString copy = ExpandTemplate(l.copy, job);
    if (!copy.isEmpty())
        s.text(kLeft, 282, kWidth, 6, copy, Qt::AlignHCenter, 3.2, true);
    s.text(kLeft, 288, kWidth, 4,
           QStringLiteral("Formulario ") + l.name + QStringLiteral(" - Guidv ") +
               ExpandTemplate(l.guidv, job),
           Qt::AlignRight, 2.0);
}

} // namespace

int ReportRenderer::PageCount(const ReportJob& job)
{
    const ReportLayout* layout = FindReportLayout(job.layout);
    if (!layout || layout->kind != LayoutKind::Annex)
        return 1;
    const int per = ReportDriver::kLinesPerPage;
    return qMax(1, int((job.rows.size() + per - 1) / per));
}

void ReportRenderer::DrawPage(QPainter& painter, const ReportJob& job, int page)
{
    const ReportLayout* l = FindReportLayout(job.layout);
    if (!l)
        return;
    Sheet s(painter);
    double y = Header(s, *l, job);
    y = Identification(s, *l, job, y);
    if (l->kind == LayoutKind::Annex) {
        AnnexLines(s, *l, job, page, y);
    } else {
        if (l->kind == LayoutKind::Return)
            y = ActivityLines(s, *l, job, y);
        y = Totals(s, *l, job, y);
        Words(s, *l, job, y);
    }
    Signature(s, *l, job);
    Footer(s, *l, job);
}

bool ReportRenderer::Render(QPagedPaintDevice& device, const QList<ReportJob>& jobs)
{
    for (const ReportJob& job : jobs) {
        if (!FindReportLayout(job.layout))
            return false;
    }
    QPainter painter;
    if (jobs.isEmpty() || !painter.begin(&device))
        return false;
    const QPageLayout page = device.pageLayout();
    const QRectF paint = page.paintRect(QPageLayout::Millimeter);
    const double dotsPerMm = device.width() / paint.width();
    bool first = true;
    for (const ReportJob& job : jobs) {
        for (int p = 0; p < PageCount(job); ++p) {
            if (!first)
                device.newPage();
            first = false;
            painter.save();
            painter.scale(dotsPerMm, dotsPerMm);
            painter.translate(-paint.left(), -paint.top());
            painter.fillRect(QRectF(0, 0, kPageWidth, kPageHeight), Qt::white);
            DrawPage(painter, job, p);
            painter.restore();
        }
    }
    return painter.end();
}

bool WriteReportPdf(const QList<ReportJob>& jobs, const QString& path)
{
    QPdfWriter writer(path);
    writer.setResolution(300);
    writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait,
                                     QMarginsF(0, 0, 0, 0), QPageLayout::Millimeter));
    writer.setTitle(jobs.isEmpty() ? QString()
                                   : QStringLiteral("Formulario ") + jobs.first().layout);
    writer.setCreator(QStringLiteral("Morvel"));
    return ReportRenderer::Render(writer, jobs);
}

QImage RenderPageImage(const ReportJob& job, int page, double dotsPerMm)
{
    QImage image(qRound(ReportRenderer::kPageWidth * dotsPerMm),
                 qRound(ReportRenderer::kPageHeight * dotsPerMm), QImage::Format_RGB32);
    image.setDotsPerMeterX(qRound(dotsPerMm * 1000));
    image.setDotsPerMeterY(qRound(dotsPerMm * 1000));
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.scale(dotsPerMm, dotsPerMm);
    ReportRenderer::DrawPage(painter, job, page);
    return image;
}
