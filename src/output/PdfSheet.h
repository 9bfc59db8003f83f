#pragma once

#include <QByteArray>
#include <QList>
#include <QPointF>
#include <QRect>
#include <QRectF>
#include <QString>
#include <QVector>

class QFont;

// A4 sheets drawn in millimetres from their upper left corner, black on
// white, and written as a PDF file straight from those strokes: a few
// kilobytes a page, written in well under a millisecond, where a painter on a
// PDF device spends some milliseconds on the same page. Its letters are DejaVu
// Sans, plain and bold, embedded whole for the Latin characters a form can
// carry; a text with any other character is refused (`text` answers false)
// and the caller draws that file with a painter instead.
class PdfSheet
{
public:
    // Whether the letters could be had on this machine (made once a run).
    static bool Available();
    // The font a text of `size` millimetres is measured with, on a device of
    // `dotsPerInch` drawn at a tenth of a millimetre a unit.
    static QFont Font(double size, bool bold, int dotsPerInch);

    void newPage();
    // A new page that shows first what the first part of page `like`
    // (counted from 0) shows, without writing it again, and then what is
    // drawn from now on.
    void newPageLike(int like);
    // What is drawn from now on goes into a part of the page of its own, which
    // a page begun with newPageLike may show again.
    void newPart();
    int pageCount() const { return int(m_pages.size()); }
    // A rectangle's outline, `pen` millimetres wide.
    void frame(const QRectF& box, double pen);
    void line(const QPointF& from, const QPointF& to, double pen);
    // A rectangle filled with a grey of `level`, 0 black to 1 white.
    void fill(const QRectF& box, double level);
    // Black rectangles of whole cells of `cell` millimetres from (x, y).
    void cells(double x, double y, double cell, const QVector<QRect>& rectangles);
    // One line of text from (x, baseline), letters `size` millimetres high,
    // `advance` millimetres long; false, and nothing drawn, when a character
    // cannot be written.
    bool text(double x, double baseline, double size, bool bold, double advance,
              const QString& text);
    // The file, titled `title`; empty when no page was begun.
    QByteArray finish(const QString& title) const;

private:
    void setPen(double pen);

    QList<QByteArray> m_parts;
    QList<QList<int>> m_pages; // each page's parts, in the order drawn
    double m_pen = -1;
    double m_spacing = 0;
};
