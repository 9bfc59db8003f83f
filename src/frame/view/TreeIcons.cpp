#include "TreeIcons.h"

#include <QGuiApplication>
#include <QHash>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

namespace {

// Each image is drawn on a grid of 16 units, at every size a tree may ask for,
// so that it stays sharp on a dense screen; at 16 pixels the outlines fall on
// whole pixels.
using Drawing = void (*)(QPainter&);

QPainterPath pageOutline()
{
    QPainterPath path;
    path.moveTo(3.5, 1.5);
    path.lineTo(9.5, 1.5);
    path.lineTo(12.5, 4.5);
    path.lineTo(12.5, 14.5);
    path.lineTo(3.5, 14.5);
    path.closeSubpath();
    return path;
}

void page(QPainter& p, const QColor& edge)
{
    p.setPen(QPen(edge, 1));
    p.setBrush(Qt::white);
    p.drawPath(pageOutline());
    QPainterPath fold;
    fold.moveTo(9.5, 1.5);
    fold.lineTo(9.5, 4.5);
    fold.lineTo(12.5, 4.5);
    p.setBrush(QColor(0xdd, 0xe4, 0xec));
    p.drawPath(fold);
}

void folder(QPainter& p)
{
    const QColor edge(0xa8, 0x76, 0x1a);
    QPainterPath back;
    back.moveTo(1.5, 3.5);
    back.lineTo(6.0, 3.5);
    back.lineTo(7.5, 5.0);
    back.lineTo(14.5, 5.0);
    back.lineTo(14.5, 13.5);
    back.lineTo(1.5, 13.5);
    back.closeSubpath();
    p.setPen(QPen(edge, 1));
    p.setBrush(QColor(0xe3, 0xa8, 0x2b));
    p.drawPath(back);
    QLinearGradient front(0, 6.5, 0, 13.5);
    front.setColorAt(0, QColor(0xfb, 0xd9, 0x7a));
    front.setColorAt(1, QColor(0xf2, 0xbe, 0x4a));
    p.setBrush(front);
    p.drawRect(QRectF(1.5, 6.5, 13, 7));
}

void filledPage(QPainter& p)
{
    page(p, QColor(0x5a, 0x6b, 0x7d));
    p.setPen(QPen(QColor(0x2f, 0x6f, 0xb5), 1));
    for (double y : {6.5, 8.5, 10.5, 12.5})
        p.drawLine(QPointF(5, y), QPointF(y < 7 ? 8.5 : 11, y));
}

void blankPage(QPainter& p)
{
    page(p, QColor(0x8a, 0x97, 0xa5));
}

void pencil(QPainter& p)
{
    p.translate(8, 8);
    p.rotate(-45);
    p.setPen(QPen(QColor(0x5c, 0x45, 0x10), 0.8));
    p.setBrush(QColor(0xf2, 0xb2, 0x33)); // the body
    p.drawRect(QRectF(-3.5, -1.8, 7.5, 3.6));
    p.setBrush(QColor(0xe8, 0x8a, 0x9a)); // the eraser
    p.drawRect(QRectF(4.0, -1.8, 2.5, 3.6));
    QPainterPath tip;
    tip.moveTo(-3.5, -1.8);
    tip.lineTo(-7.0, 0);
    tip.lineTo(-3.5, 1.8);
    tip.closeSubpath();
    p.setBrush(QColor(0xf3, 0xdc, 0xb0));
    p.drawPath(tip);
    QPainterPath lead;
    lead.moveTo(-5.6, -0.7);
    lead.lineTo(-7.0, 0);
    lead.lineTo(-5.6, 0.7);
    lead.closeSubpath();
    p.setBrush(QColor(0x40, 0x40, 0x40));
    p.drawPath(lead);
}

void cross(QPainter& p)
{
    for (const auto& [colour, width] :
         {std::pair{QColor(0x8e, 0x1b, 0x1b), 3.6}, std::pair{QColor(0xe5, 0x39, 0x35), 2.0}}) {
        p.setPen(QPen(colour, width, Qt::SolidLine, Qt::RoundCap));
        p.drawLine(QPointF(4.5, 4.5), QPointF(11.5, 11.5));
        p.drawLine(QPointF(11.5, 4.5), QPointF(4.5, 11.5));
    }
}

QIcon icon(Drawing draw)
{
    QIcon out;
    for (int size : {16, 20, 24, 32, 48, 64}) {
        QPixmap pm(size, size);
        pm.fill(Qt::transparent);
        QPainter p(&pm);
        p.setRenderHint(QPainter::Antialiasing);
        p.scale(size / 16.0, size / 16.0);
        draw(p);
        p.end();
        out.addPixmap(pm);
    }
    return out;
}

} // namespace

QIcon TreeIcon(const QString& key)
{
    static const QHash<QString, QIcon> icons = {
        {QStringLiteral("Carpeta"), icon(folder)},  {QStringLiteral("Archivo"), icon(filledPage)},
        {QStringLiteral("Blank"), icon(blankPage)}, {QStringLiteral("Modificar"), icon(pencil)},
        {QStringLiteral("Eliminar"), icon(cross)},
    };
    return icons.value(key);
}

QPixmap AppPicture(int width, int height)
{
    // The name and the line under it take the palette's text colours, so
    // that they read on a dark desktop as on a light one. Drawn once a run for
    // each size and palette: the splash and the main window show the same one.
    const QPalette palette = QGuiApplication::palette();
    const QColor nameColour = palette.color(QPalette::Active, QPalette::WindowText);
    QColor lineColour = nameColour;
    lineColour.setAlphaF(0.75);
    static QHash<QPair<QPair<int, int>, QRgb>, QPixmap> drawn;
    const QPair<QPair<int, int>, QRgb> size({width, height}, nameColour.rgb());
    if (const auto it = drawn.constFind(size); it != drawn.constEnd())
        return *it;
    QPixmap pm(width, height);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF badge(0, 0, height, height);
    QLinearGradient fill(badge.topLeft(), badge.bottomRight());
    fill.setColorAt(0, QColor(0x2f, 0x6f, 0xb5));
    fill.setColorAt(1, QColor(0x17, 0x3f, 0x73));
    p.setPen(Qt::NoPen);
    p.setBrush(fill);
    p.drawRoundedRect(badge.adjusted(2, 2, -2, -2), height * 0.18, height * 0.18);
    QFont big = p.font();
    big.setBold(true);
    big.setPixelSize(int(height * 0.62));
    p.setFont(big);
    p.setPen(Qt::white);
    p.drawText(badge, Qt::AlignCenter, QStringLiteral("M"));
    QFont title = p.font();
    title.setPixelSize(int(height * 0.36));
    p.setFont(title);
    p.setPen(nameColour);
    const QRectF text(height + height * 0.15, 0, width - height * 1.15, height * 0.6);
    p.drawText(text, Qt::AlignLeft | Qt::AlignBottom, QStringLiteral("Morvel"));
    QFont sub = p.font();
    sub.setBold(false);
    sub.setPixelSize(int(height * 0.16));
    p.setFont(sub);
    p.setPen(lineColour);
    p.drawText(QRectF(text.left(), height * 0.62, text.width(), height * 0.3),
               Qt::AlignLeft | Qt::AlignTop, QStringLiteral("Declaraciones Juradas T.I.S.S.H."));
    p.end();
    drawn.insert(size, pm);
    return pm;
}
