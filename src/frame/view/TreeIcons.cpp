#include "TreeIcons.h"

#include <QHash>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

namespace {

QPixmap canvas()
{
    QPixmap pm(16, 16);
    pm.fill(Qt::transparent);
    return pm;
}

QPixmap folder()
{
    QPixmap pm = canvas();
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QColor(0xb0, 0x84, 0x1c));
    p.setBrush(QColor(0xf4, 0xc4, 0x52));
    p.drawRoundedRect(QRectF(1.5, 4.5, 13, 9), 1, 1);
    p.drawRect(QRectF(1.5, 2.5, 5, 2));
    return pm;
}

QPixmap page(bool withLines)
{
    QPixmap pm = canvas();
    QPainter p(&pm);
    p.setPen(QColor(0x60, 0x70, 0x80));
    p.setBrush(Qt::white);
    p.drawRect(QRectF(3.5, 1.5, 9, 13));
    if (withLines) {
        p.setPen(QColor(0x30, 0x60, 0xa0));
        for (int y = 5; y <= 11; y += 2)
            p.drawLine(5, y, 11, y);
    }
    return pm;
}

QPixmap pencil()
{
    QPixmap pm = canvas();
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(QColor(0x2a, 0x5d, 0x9f), 3, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(4, 12), QPointF(12, 4));
    p.setPen(QPen(QColor(0x40, 0x40, 0x40), 1));
    p.drawLine(QPointF(2.5, 13.5), QPointF(4, 12));
    return pm;
}

QPixmap cross()
{
    QPixmap pm = canvas();
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(QColor(0xc0, 0x20, 0x20), 2.5, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(4, 4), QPointF(12, 12));
    p.drawLine(QPointF(12, 4), QPointF(4, 12));
    return pm;
}

} // namespace

QIcon TreeIcon(const QString& key)
{
    static QHash<QString, QIcon> icons;
    if (icons.isEmpty()) {
        icons.insert(QStringLiteral("Carpeta"), QIcon(folder()));
        icons.insert(QStringLiteral("Archivo"), QIcon(page(true)));
        icons.insert(QStringLiteral("Blank"), QIcon(page(false)));
        icons.insert(QStringLiteral("Modificar"), QIcon(pencil()));
        icons.insert(QStringLiteral("Eliminar"), QIcon(cross()));
    }
    return icons.value(key);
}

QPixmap AppPicture(int width, int height)
{
    // drawn once a run: the splash and the main window show the same one
    static QHash<QPair<int, int>, QPixmap> drawn;
    const QPair<int, int> size(width, height);
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
    p.setPen(QColor(0x17, 0x3f, 0x73));
    const QRectF text(height + height * 0.15, 0, width - height * 1.15, height * 0.6);
    p.drawText(text, Qt::AlignLeft | Qt::AlignBottom, QStringLiteral("Morvel"));
    QFont sub = p.font();
    sub.setBold(false);
    sub.setPixelSize(int(height * 0.16));
    p.setFont(sub);
    p.setPen(QColor(0x40, 0x50, 0x60));
    p.drawText(QRectF(text.left(), height * 0.62, text.width(), height * 0.3),
               Qt::AlignLeft | Qt::AlignTop, QStringLiteral("Declaraciones Juradas T.I.S.S.H."));
    p.end();
    drawn.insert(size, pm);
    return pm;
}
