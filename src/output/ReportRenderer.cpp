#include "ReportRenderer.h"

#include <QBuffer>
#include <QFile>
#include <QFont>
#include <QHash>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QPageLayout>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPdfWriter>
#include <QRegularExpression>
#include <unordered_map>

#include "ErrorLog.h"
#include "Numbers.h"
#include "ReportDriver.h"
#include "PdfSheet.h"
#include "ReportLayout.h"
#include "ReportQrCode.h"
#include "Util.h"

namespace {

constexpr double kLeft = 10.0;
constexpr double kWidth = 190.0;
constexpr double kBoxHeight = 10.0;
constexpr double kLineHeight = 6.0;
constexpr double kAnnexLineHeight = 5.4;
// The smallest a text may shrink to fit its box, as a share of its size.
constexpr double kMinScale = 0.6;
constexpr double kOneLineScale = 0.8;
constexpr double kScaleStep = 0.05;
// Letters are drawn in tenths of a millimetre: fonts come in whole dots of
// their device, and at whole millimetres every size would round to 2 or 3.
constexpr double kTextUnit = 10.0;

// Lines of at most `width`, broken at blanks; empty when a word alone is
// wider.
QStringList WrapWords(const QString& text, const QFontMetricsF& metrics, double width)
{
    QStringList lines;
    QString current;
    for (const QString& word : text.split(u' ', Qt::SkipEmptyParts)) {
        if (metrics.horizontalAdvance(word) > width)
            return {};
        const QString longer = current.isEmpty() ? word : current + u' ' + word;
        if (current.isEmpty() || metrics.horizontalAdvance(longer) <= width) {
            current = longer;
        } else {
            lines << current;
            current = word;
        }
    }
    if (!current.isEmpty())
        lines << current;
    return lines;
}

// A font's measures on a device, as a painter lays its letters out there,
// kept per size: the forms ask the same few sizes thousands of times.
struct LetterMeasures {
    QFont font;
    double height = 0;
    double ascent = 0;
    // The letters' height at the whole dots the device gives them.
    double pixels = 0;
    // Each character's advance; a line is as long as their sum, for the
    // letters are not shaped.
    mutable QHash<char16_t, double> advance;
    const QPaintDevice* device = nullptr;

    double width(const QString& text) const
    {
        double sum = 0;
        for (const QChar c : text) {
            auto found = advance.constFind(c.unicode());
            if (found == advance.cend())
                found = advance.insert(c.unicode(),
                                       QFontMetricsF(font, const_cast<QPaintDevice*>(device))
                                           .horizontalAdvance(c));
            sum += *found;
        }
        return sum;
    }
};

const LetterMeasures& MeasuresOf(double size, bool bold, QPaintDevice* device)
{
    struct Key {
        double size;
        bool bold;
        int dpi;
        int type;
        bool operator==(const Key&) const = default;
    };
    struct KeyHash {
        size_t operator()(const Key& k) const
        {
            return qHashMulti(0, k.size, k.bold, k.dpi, k.type);
        }
    };
    thread_local std::unordered_map<Key, LetterMeasures, KeyHash> known;
    const Key key{size, bold, device->logicalDpiY(), device->devType()};
    auto found = known.find(key);
    if (found == known.end()) {
        LetterMeasures m;
        m.font = PdfSheet::Font(size, bold, key.dpi);
        const QFontMetricsF metrics(m.font, device);
        m.height = metrics.height();
        m.ascent = metrics.ascent();
        m.pixels = QFontInfo(QFont(m.font, device)).pixelSize();
        if (known.size() > 1000)
            known.clear();
        found = known.emplace(key, std::move(m)).first;
    }
    found->second.device = device;
    return found->second;
}

// Where a sheet's strokes go, in millimetres of the sheet: a painter (the
// screen, a printer) or a PDF file written straight.
class SheetCanvas
{
public:
    virtual ~SheetCanvas() = default;
    // The device the letters are measured on.
    virtual QPaintDevice* device() const = 0;
    virtual void frame(const QRectF& box, double pen) = 0;
    virtual void line(const QPointF& from, const QPointF& to, double pen) = 0;
    virtual void fill(const QRectF& box) = 0;
    virtual void cells(double x, double y, double cell, const QVector<QRect>& rectangles) = 0;
    // The lines of a text, each in its box in tenths of a millimetre, one
    // line high, aligned by `flags` as a painter's drawText aligns.
    virtual void lines(const QList<QRectF>& boxes, const QStringList& lines,
                       const LetterMeasures& letters, int flags) = 0;
};

// The forms' light grey of the boxes to be filled in.
const QColor kFillColour(225, 225, 225);

class PainterCanvas final : public SheetCanvas
{
public:
    explicit PainterCanvas(QPainter& painter) : m_p(painter)
    {
        m_p.setPen(QPen(Qt::black, 0.25));
        m_p.setBrush(Qt::NoBrush);
    }
    QPaintDevice* device() const override { return m_p.device(); }
    void frame(const QRectF& box, double pen) override
    {
        m_p.setPen(QPen(Qt::black, pen));
        m_p.drawRect(box);
    }
    void line(const QPointF& from, const QPointF& to, double pen) override
    {
        m_p.setPen(QPen(Qt::black, pen));
        m_p.drawLine(from, to);
    }
    void fill(const QRectF& box) override { m_p.fillRect(box, kFillColour); }
    // All in one stroke of the painter: a code of hundreds of rectangles
    // costs one change of pen and brush.
    void cells(double x, double y, double cell, const QVector<QRect>& rectangles) override
    {
        m_p.save();
        m_p.translate(x, y);
        m_p.scale(cell, cell);
        m_p.setPen(Qt::NoPen);
        m_p.setBrush(Qt::black);
        m_p.drawRects(rectangles);
        m_p.restore();
    }
    void lines(const QList<QRectF>& boxes, const QStringList& lines,
               const LetterMeasures& letters, int flags) override
    {
        m_p.save();
        m_p.scale(1 / kTextUnit, 1 / kTextUnit);
        m_p.setFont(letters.font);
        m_p.setPen(Qt::black);
        for (int i = 0; i < lines.size(); ++i)
            m_p.drawText(boxes.at(i), flags, lines.at(i));
        m_p.restore();
    }

private:
    QPainter& m_p;
};

// The sheet as a PDF file of its own; `refused` once a text had a
// character the file's letters lack.
class PdfCanvas final : public SheetCanvas
{
public:
    explicit PdfCanvas(PdfSheet& pdf) : m_pdf(pdf) {}
    QPaintDevice* device() const override
    {
        // Measured as on Qt's PDF writer set up for the forms, so that the
        // same words take the same boxes on both.
        thread_local QBuffer nowhere;
        thread_local QPdfWriter writer(&nowhere);
        thread_local const bool setUp = (ReportRenderer::SetUpPdf(writer, {}), true);
        Q_UNUSED(setUp);
        return &writer;
    }
    void frame(const QRectF& box, double pen) override { m_pdf.frame(box, pen); }
    void line(const QPointF& from, const QPointF& to, double pen) override
    {
        m_pdf.line(from, to, pen);
    }
    void fill(const QRectF& box) override { m_pdf.fill(box, kFillColour.red() / 255.0); }
    void cells(double x, double y, double cell, const QVector<QRect>& rectangles) override
    {
        m_pdf.cells(x, y, cell, rectangles);
    }
    void lines(const QList<QRectF>& boxes, const QStringList& lines,
               const LetterMeasures& letters, int flags) override
    {
        for (int i = 0; i < lines.size(); ++i) {
            const QRectF& box = boxes.at(i);
            const double width = letters.width(lines.at(i));
            double x = box.left();
            if (flags & Qt::AlignHCenter)
                x += (box.width() - width) / 2;
            else if (flags & Qt::AlignRight)
                x += box.width() - width;
            const double baseline = box.top() + (box.height() - letters.height) / 2 + letters.ascent;
            refused = !m_pdf.text(x / kTextUnit, baseline / kTextUnit, letters.pixels / kTextUnit,
                                  letters.font.bold(), width / kTextUnit, lines.at(i)) ||
                      refused;
        }
    }

    bool refused = false;

private:
    PdfSheet& m_pdf;
};

// The drawing primitives of the forms, in millimetres of the sheet. Nothing
// is ever cut: a text too long for its box wraps onto the lines it is
// allowed and shrinks; what still does not fit is noted as unfit (and drawn
// whole all the same).
class Sheet
{
public:
    Sheet(SheetCanvas& canvas, QStringList* unfit) : m_canvas(canvas), m_unfit(unfit) {}

    void frame(double x, double y, double w, double h, double pen = 0.25)
    {
        m_canvas.frame(QRectF(x, y, w, h), pen);
    }
    void line(double x1, double y1, double x2, double y2)
    {
        m_canvas.line(QPointF(x1, y1), QPointF(x2, y2), 0.2);
    }
    void fill(double x, double y, double w, double h) { m_canvas.fill(QRectF(x, y, w, h)); }
    // Black rectangles of whole cells of `cell` millimetres from (x, y).
    void dark(double x, double y, double cell, const QVector<QRect>& rectangles)
    {
        m_canvas.cells(x, y, cell, rectangles);
    }

    // Text inside a rectangle, with a padding of 1.2 mm at the sides, on up
    // to `lines` lines.
    void text(double x, double y, double w, double h, const QString& text, int align,
              double size = 3.0, bool bold = false, int lines = 1)
    {
        if (text.isEmpty())
            return;
        const QRectF area(x + 1.2, y, w - 2.4, h);
        const Fitted fitted = fitting(area, text, size, bold, lines);
        if (!fitted.fits && m_unfit)
            *m_unfit << text;
        draw(area, fitted, bold, align);
    }
    // A ruled box with its caption small in the upper left corner; the value
    // may take two lines.
    void box(double x, double y, double w, double h, const QString& caption, const QString& value,
             int align = Qt::AlignLeft)
    {
        frame(x, y, w, h);
        text(x, y + 0.3, w, 3.2, caption, Qt::AlignLeft, 1.9);
        text(x, y + 3.4, w, h - 3.6, value, align, 3.0, true, 2);
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
    // The size and the lines a text is drawn with in its box.
    struct Fitted {
        double size = 0;
        QStringList lines;
        bool fits = false;
    };
    // One line a little smaller reads better than two; then two or more
    // lines; then one line as small as it may get, and noted as unfit. The
    // same words come back in the same boxes page after page: what was
    // measured once is kept, for the thread's painters of the same device.
    Fitted fitting(const QRectF& area, const QString& text, double size, bool bold, int lines)
    {
        struct Key {
            QString text;
            double width, height, size;
            bool bold;
            int lines, dpi, type;
            bool operator==(const Key&) const = default;
        };
        struct KeyHash {
            size_t operator()(const Key& k) const
            {
                return qHashMulti(0, k.text, k.width, k.height, k.size, k.bold, k.lines, k.dpi,
                                  k.type);
            }
        };
        thread_local std::unordered_map<Key, Fitted, KeyHash> measured;
        const Key key{text,  area.width(), area.height(), size, bold, lines,
                      m_canvas.device()->logicalDpiY(), m_canvas.device()->devType()};
        const auto known = measured.find(key);
        if (known != measured.end())
            return known->second;
        Fitted fitted;
        if (!fit(fitted, area, text, size, bold, 1, kOneLineScale) &&
            !(lines > 1 && fit(fitted, area, text, size, bold, lines, kMinScale)) &&
            !fit(fitted, area, text, size, bold, 1, kMinScale))
            fitted = {size * kMinScale, {text}, false};
        if (measured.size() > 50000)
            measured.clear();
        measured.emplace(key, fitted);
        return fitted;
    }
    // The largest size down to `least` of `size` at which the text fits on
    // at most `lines` lines; false when it does not.
    bool fit(Fitted& fitted, const QRectF& area, const QString& text, double size, bool bold,
             int lines, double least) const
    {
        const double width = area.width() * kTextUnit;
        for (double scale = 1.0; scale >= least - 1e-9; scale -= kScaleStep) {
            const QFont font = makeFont(size * scale, bold);
            const QFontMetricsF metrics(font, m_canvas.device());
            if (metrics.horizontalAdvance(text) <= width) {
                fitted = {size * scale, {text}, true};
                return true;
            }
            if (lines < 2)
                continue;
            const QStringList wrapped = WrapWords(text, metrics, width);
            if (!wrapped.isEmpty() && wrapped.size() <= lines &&
                wrapped.size() * metrics.height() <= (area.height() + 0.2) * kTextUnit) {
                fitted = {size * scale, wrapped, true};
                return true;
            }
        }
        return false;
    }
    QFont makeFont(double size, bool bold) const
    {
        return PdfSheet::Font(size, bold, m_canvas.device()->logicalDpiY());
    }
    // The lines one under the other, the block centred in the area's height.
    void draw(const QRectF& area, const Fitted& fitted, bool bold, int align)
    {
        const LetterMeasures& letters = MeasuresOf(fitted.size, bold, m_canvas.device());
        const double height = letters.height;
        const QRectF box(area.topLeft() * kTextUnit, area.size() * kTextUnit);
        double y = box.top() + (box.height() - height * fitted.lines.size()) / 2;
        QList<QRectF> boxes;
        for (qsizetype i = 0; i < fitted.lines.size(); ++i, y += height)
            boxes << QRectF(box.left(), y, box.width(), height);
        m_canvas.lines(boxes, fitted.lines, letters,
                       (align & Qt::AlignHorizontal_Mask) | Qt::AlignVCenter |
                           Qt::TextSingleLine | Qt::TextDontClip);
    }

    SheetCanvas& m_canvas;
    QStringList* m_unfit;
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
    s.text(kLeft + 48, y + 2, 104, 10, l.title, Qt::AlignHCenter, 3.4, true, 2);
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

// A row of the lines' table: amounts on one line (they shrink), names and
// voucher types on up to two.
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
        s.text(x, y, col.width, h, values.value(c), align, header ? 2.3 : 2.5, header,
               col.amount ? 1 : 2);
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
    // The totals of the bases and of the levy, under their columns.
    double x = kLeft;
    for (int c = 0; c < 2; ++c)
        x += l.columns.at(c).width;
    const double baseWidth = l.columns.at(2).width;
    const double taxWidth = l.columns.last().width;
    const double taxX = kLeft + kWidth - taxWidth;
    s.fill(kLeft, y, kWidth, kLineHeight);
    s.frame(kLeft, y, x - kLeft, kLineHeight, 0.35);
    s.text(kLeft, y, x - kLeft, kLineHeight, l.totalCaption, Qt::AlignRight, 2.7, true);
    s.frame(x, y, baseWidth, kLineHeight, 0.35);
    s.text(x, y, baseWidth, kLineHeight, ExpandTemplate(l.totalValue, job), Qt::AlignRight, 2.7,
           true);
    s.frame(x + baseWidth, y, taxX - x - baseWidth, kLineHeight, 0.35);
    s.frame(taxX, y, taxWidth, kLineHeight, 0.35);
    s.text(taxX, y, taxWidth, kLineHeight, ExpandTemplate(l.totalTax, job), Qt::AlignRight, 2.7,
           true);
    return y + kLineHeight + 3;
}

// The liquidation: each row's caption and its amounts; on the monthly
// returns the credits in column I and the levy in column II.
double Totals(Sheet& s, const ReportLayout& l, const ReportJob& job, double y)
{
    if (l.totals.isEmpty())
        return y;
    const bool twoColumns = std::any_of(l.totals.cbegin(), l.totals.cend(),
                                        [](const LayoutTotal& t) { return !t.credit.isEmpty(); });
    const double amountWidth = 40;
    const double valueX = kLeft + kWidth - amountWidth;
    const double creditX = valueX - amountWidth;
    const double captionWidth = (twoColumns ? creditX : valueX) - kLeft;
    s.fill(kLeft, y, kWidth, kLineHeight);
    s.frame(kLeft, y, captionWidth, kLineHeight, 0.35);
    s.text(kLeft, y, captionWidth, kLineHeight, QStringLiteral("LIQUIDACIÓN"), Qt::AlignLeft, 2.6,
           true);
    if (twoColumns) {
        s.frame(creditX, y, amountWidth, kLineHeight, 0.35);
        s.text(creditX, y, amountWidth, kLineHeight, QStringLiteral("Columna I"), Qt::AlignHCenter,
               2.4, true);
    }
    s.frame(valueX, y, amountWidth, kLineHeight, 0.35);
    s.text(valueX, y, amountWidth, kLineHeight,
           twoColumns ? QStringLiteral("Columna II") : QStringLiteral("Importe"), Qt::AlignHCenter,
           2.4, true);
    y += kLineHeight;
    for (const LayoutTotal& t : l.totals) {
        const double pen = t.strong ? 0.35 : 0.2;
        if (t.strong)
            s.fill(kLeft, y, kWidth, kLineHeight);
        s.frame(kLeft, y, captionWidth, kLineHeight, pen);
        s.text(kLeft, y, captionWidth, kLineHeight, ExpandTemplate(t.caption, job), Qt::AlignLeft,
               2.7, t.strong);
        if (twoColumns) {
            s.frame(creditX, y, amountWidth, kLineHeight, pen);
            s.text(creditX, y, amountWidth, kLineHeight, ExpandTemplate(t.credit, job),
                   Qt::AlignRight, 2.8, t.strong);
        }
        s.frame(valueX, y, amountWidth, kLineHeight, pen);
        s.text(valueX, y, amountWidth, kLineHeight, ExpandTemplate(t.value, job), Qt::AlignRight,
               2.8, t.strong);
        y += kLineHeight;
    }
    s.text(kLeft, y + 0.5, kWidth, 6.5, ExpandTemplate(l.totalsNote, job), Qt::AlignLeft, 2.2,
           false, 2);
    return y + 9;
}

// The total in words, on up to three lines.
double Words(Sheet& s, const ReportLayout& l, const ReportJob& job, double y)
{
    if (l.words.isEmpty())
        return y;
    s.frame(kLeft, y, kWidth, 14);
    s.text(kLeft, y + 0.3, 40, 3.2, QStringLiteral("Son pesos"), Qt::AlignLeft, 1.9);
    s.text(kLeft, y + 3.4, kWidth, 10.4, ExpandTemplate(l.words, job), Qt::AlignLeft, 2.8, true, 3);
    return y + 16;
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
        if (job.parameter(QStringLiteral("TOTALPERCEPCIONES")).isEmpty())
            total = LocaleFixed(SumOfLines(job, 0, job.rows.size()), 2, true);
        AmountRow(s, l, y, l.totalCaption, total);
    } else {
        AmountRow(s, l, y, QStringLiteral("Transporte a hoja siguiente"),
                  LocaleFixed(SumOfLines(job, 0, first + per), 2, true));
    }
    return y + kLineHeight + 3;
}

// The verification code: the declaration's identity as a QR code, dark
// modules on white, with a quiet margin around it inside `side`.
void QrCode(Sheet& s, const ReportJob& job, double x, double y, double side)
{
    // The copies of a declaration carry the same code: it is encoded once.
    thread_local QString text;
    thread_local QVector<QVector<bool>> modules;
    const QString wanted = ReportQrCode::Text(job);
    if (wanted != text || modules.isEmpty()) {
        modules = ReportQrCode::Modules(wanted);
        text = wanted;
    }
    if (modules.isEmpty())
        return;
    const int quiet = 2;
    const double module = side / (modules.size() + 2 * quiet);
    QVector<QRect> runs;
    for (int r = 0; r < modules.size(); ++r) {
        // Runs of dark modules as one rectangle each: no seams between them.
        for (int c = 0; c < modules.size();) {
            if (!modules[r][c]) {
                ++c;
                continue;
            }
            int end = c;
            while (end < modules.size() && modules[r][end])
                ++end;
            runs.append(QRect(quiet + c, quiet + r, end - c, 1));
            c = end;
        }
    }
    s.dark(x, y, module, runs);
}

void Signature(Sheet& s, const ReportLayout& l, const ReportJob& job)
{
    const double y = 246;
    const double h = 34;
    // Left: the tie to the submission file, the code and the Guidv beside it,
    // and the premises that heads the taxpayer where the form is given it.
    const double left = 74;
    s.frame(kLeft, y, left, h);
    QrCode(s, job, kLeft + 0.5, y + 0.5, 33);
    const double tx = kLeft + 34;
    const double tw = left - 34;
    s.text(tx, y + 1, tw, 6, QStringLiteral("Código de verificación (Guidv)"), Qt::AlignLeft, 1.9,
           false, 2);
    s.text(tx, y + 7, tw, 7, ExpandTemplate(l.guidv, job), Qt::AlignLeft, 4.2, true);
    if (!l.principal.isEmpty()) {
        s.text(tx, y + 16, tw, 4, QStringLiteral("Padrón principal"), Qt::AlignLeft, 1.9);
        s.text(tx, y + 20, tw, 10, ExpandTemplate(l.principal, job), Qt::AlignLeft, 2.6, true, 2);
    }
    // Middle: the office's stamp.
    const double mx = kLeft + left + 2;
    const double mw = 46;
    s.frame(mx, y, mw, h);
    s.text(mx, y + 1, mw, 4, QStringLiteral("Sello y fecha de recepción"), Qt::AlignHCenter, 2.0);
    // Right: who signs, and in which capacity.
    const double x = mx + mw + 2;
    const double w = kLeft + kWidth - x;
    s.frame(x, y, w, h);
    s.text(x, y + 0.5, w, 6,
           QStringLiteral("Declaro bajo juramento que los datos consignados son correctos."),
           Qt::AlignHCenter, 2.0, false, 2);
    s.line(x + 6, y + 16, x + w - 6, y + 16);
    s.text(x, y + 16, w, 4, QStringLiteral("Firma"), Qt::AlignHCenter, 2.2);
    s.text(x, y + 20, w, 8, QStringLiteral("Aclaración: ") + ExpandTemplate(l.suscriptor, job),
           Qt::AlignLeft, 2.5, false, 2);
    s.text(x, y + 28, w, 5.5, QStringLiteral("Carácter: ") + ExpandTemplate(l.caracter, job),
           Qt::AlignLeft, 2.5, false, 2);
}

// What of a page is drawn: all of it, all but the copy's label ("ORIGINAL
// MUNICIPALIDAD"), or that label alone.
enum class PagePart { Whole, Body, CopyLabel };

void CopyLabel(Sheet& s, const ReportLayout& l, const ReportJob& job)
{
    const QString copy = ExpandTemplate(l.copy, job);
    if (!copy.isEmpty())
        s.text(kLeft, 282, kWidth, 6, copy, Qt::AlignHCenter, 3.2, true);
}

void Footer(Sheet& s, const ReportLayout& l, const ReportJob& job)
{
    s.text(kLeft, 288, kWidth, 4,
           QStringLiteral("Formulario ") + l.name + QStringLiteral(" - Guidv ") +
               ExpandTemplate(l.guidv, job),
           Qt::AlignRight, 2.0);
}

void DrawJobPage(SheetCanvas& canvas, const ReportJob& job, int page, QStringList* unfit,
                 PagePart part = PagePart::Whole)
{
    const ReportLayout* l = FindReportLayout(job.layout);
    if (!l)
        return;
    Sheet s(canvas, unfit);
    if (part != PagePart::Body)
        CopyLabel(s, *l, job);
    if (part == PagePart::CopyLabel)
        return;
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

// Whether `job` prints what `first` prints but for the copy's label: the
// copies of a declaration differ in nothing else.
bool SameButTheLabel(const ReportJob& first, const ReportJob& job)
{
    if (job.layout != first.layout || job.realLines != first.realLines ||
        job.parameters.size() != first.parameters.size() || job.columns != first.columns ||
        job.record != first.record || job.rows != first.rows)
        return false;
    static const QRegularExpression named(QStringLiteral("\\{(\\w+)\\}"));
    QStringList label;
    for (auto it = named.globalMatch(FindReportLayout(job.layout)->copy); it.hasNext();)
        label << it.next().captured(1);
    for (qsizetype i = 0; i < job.parameters.size(); ++i) {
        const QString& mine = job.parameters.at(i);
        if (mine != first.parameters.at(i) && !label.contains(mine.section(u';', 0, 0)))
            return false;
    }
    return true;
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

bool ReportRenderer::Printable(const QList<ReportJob>& jobs)
{
    return !jobs.isEmpty() && std::all_of(jobs.cbegin(), jobs.cend(), [](const ReportJob& job) {
        return FindReportLayout(job.layout) != nullptr;
    });
}

void ReportRenderer::SetUpPdf(QPdfWriter& writer, const QList<ReportJob>& jobs)
{
    writer.setResolution(300);
    writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait,
                                     QMarginsF(0, 0, 0, 0), QPageLayout::Millimeter));
    writer.setTitle(jobs.isEmpty() ? QString()
                                   : QStringLiteral("Formulario ") + jobs.first().layout);
    writer.setCreator(QStringLiteral("Morvel"));
}

void ReportRenderer::DrawPages(QPainter& painter, QPagedPaintDevice& device,
                               const QList<ReportJob>& jobs, QStringList& missed, bool& first)
{
    const QPageLayout page = device.pageLayout();
    const QRectF paint = page.paintRect(QPageLayout::Millimeter);
    const double dotsPerMm = device.width() / paint.width();
    for (const ReportJob& job : jobs) {
        for (int p = 0; p < PageCount(job); ++p) {
            if (!first)
                device.newPage();
            first = false;
            painter.save();
            painter.scale(dotsPerMm, dotsPerMm);
            painter.translate(-paint.left(), -paint.top());
            painter.fillRect(QRectF(0, 0, kPageWidth, kPageHeight), Qt::white);
            PainterCanvas canvas(painter);
            DrawJobPage(canvas, job, p, &missed);
            painter.restore();
        }
    }
}

// A text that did not fit its box is a fault of the layout: the paper still
// shows it whole, and the developer learns of it.
void ReportRenderer::LogUnfit(const QList<ReportJob>& jobs, const QStringList& missed)
{
    if (!missed.isEmpty())
        LogError(QStringLiteral("0"),
                 QStringLiteral("Texto que no cabe en su casilla: ") +
                     missed.join(QStringLiteral(" | ")),
                 QStringLiteral("ReportRenderer.Render ") + jobs.first().layout);
}

void ReportRenderer::DrawPage(QPainter& painter, const ReportJob& job, int page)
{
    PainterCanvas canvas(painter);
    DrawJobPage(canvas, job, page, nullptr);
}

QByteArray ReportRenderer::StraightPdf(const QList<ReportJob>& jobs, QStringList& missed)
{
    if (!Printable(jobs) || !PdfSheet::Available())
        return {};
    PdfSheet pdf;
    PdfCanvas canvas(pdf);
    QStringList unfit;
    // The first printing's pages are written in two parts, the label apart,
    // so that its copies write their labels only and show the rest again.
    const ReportJob& first = jobs.first();
    QList<QStringList> bodyUnfit;
    for (int p = 0; p < PageCount(first); ++p) {
        pdf.newPage();
        bodyUnfit << QStringList();
        DrawJobPage(canvas, first, p, &bodyUnfit.last(), PagePart::Body);
        unfit += bodyUnfit.last();
        pdf.newPart();
        DrawJobPage(canvas, first, p, &unfit, PagePart::CopyLabel);
    }
    for (const ReportJob& job : jobs.mid(1)) {
        const bool copy = SameButTheLabel(first, job);
        for (int p = 0; p < PageCount(job); ++p) {
            if (copy) {
                pdf.newPageLike(p);
                unfit += bodyUnfit.at(p);
            } else {
                pdf.newPage();
            }
            DrawJobPage(canvas, job, p, &unfit, copy ? PagePart::CopyLabel : PagePart::Whole);
        }
    }
    if (canvas.refused)
        return {};
    missed += unfit;
    return pdf.finish(QStringLiteral("Formulario ") + jobs.first().layout);
}

bool ReportRenderer::Render(QPagedPaintDevice& device, const QList<ReportJob>& jobs,
                            QStringList* unfit)
{
    QPainter painter;
    if (!Printable(jobs) || !painter.begin(&device))
        return false;
    QStringList missed;
    bool first = true;
    DrawPages(painter, device, jobs, missed, first);
    LogUnfit(jobs, missed);
    if (unfit)
        *unfit += missed;
    return painter.end();
}

QStringList ReportRenderer::UnfitTexts(const QList<ReportJob>& jobs)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    ReportRenderer::SetUpPdf(writer, jobs);
    QStringList unfit;
    ReportRenderer::Render(writer, jobs, &unfit);
    return unfit;
}

bool DrawReportPdf(const QList<ReportJob>& jobs, const QString& path, QStringList& missed)
{
    const QByteArray straight = ReportRenderer::StraightPdf(jobs, missed);
    if (!straight.isEmpty()) {
        QFile file(path);
        return file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
               file.write(straight) == straight.size() && file.flush();
    }
    // A character the straight file's letters lack: the painter draws it.
    QPdfWriter writer(path);
    ReportRenderer::SetUpPdf(writer, jobs);
    QPainter painter;
    if (!ReportRenderer::Printable(jobs) || !painter.begin(&writer))
        return false;
    bool first = true;
    ReportRenderer::DrawPages(painter, writer, jobs, missed, first);
    return painter.end();
}

bool WriteReportPdf(const QList<ReportJob>& jobs, const QString& path)
{
    QStringList missed;
    const bool written = DrawReportPdf(jobs, path, missed);
    ReportRenderer::LogUnfit(jobs, missed);
    return written;
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
