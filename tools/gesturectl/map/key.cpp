#include "key.h"

#include "areas.h"
#include "labels.h"
#include "typesetting.h"

#include <QVector>

namespace gesturectl {

namespace {
struct Sign
{
    QString text;
    void (*draw)(QPainter *painter, const QRectF &box);
};
}

static const QSizeF signSize(36, 18);

static void drawFrame(QPainter *painter, const QRectF &box)
{
    painter->setPen(QPen(Qt::black, 2));
    painter->drawRect(box);
}

static void drawDashedFrame(QPainter *painter, const QRectF &box)
{
    painter->setPen(dashedPen(2, {4, 3}));
    painter->drawRect(box);
}

static const QVector<Sign> &key()
{
    static const QVector<Sign> signs{
            {QStringLiteral("gets its touches"), drawFrame},
            {QStringLiteral("loses them to an earlier gesture"), drawDashedFrame},
            {QStringLiteral("zones overlap: the earlier gesture fires"),
             [](QPainter *painter, const QRectF &box) { drawContested(painter, QRegion(box.toRect())); }},
            {QStringLiteral("no gesture matches"),
             [](QPainter *painter, const QRectF &box) { drawUnmatched(painter, {box}); }},
            {QStringLiteral("the gesture of this number never fires"),
             [](QPainter *painter, const QRectF &box) { drawNever(painter, box, QStringLiteral("1")); }}};
    return signs;
}

// The last row, below all signs.
static QVector<QPointF> placesOf(double width)
{
    QVector<QPointF> places;
    QPointF at;
    for (const Sign &sign : key()) {
        const double needed = signSize.width() + 8 + widthOf(sign.text, Plain);
        if (at.x() > 0 && at.x() + needed > width)
            at = QPointF(0, at.y() + signSize.height() + 8);
        places.append(at);
        at.rx() += needed + 24;
    }
    return places << QPointF(0, at.y() + signSize.height());
}

double heightOfKey(double width)
{
    return placesOf(width).constLast().y();
}

void drawKey(QPainter *painter, const QPointF &corner, double width)
{
    const QVector<QPointF> places = placesOf(width);
    for (int i = 0; i < key().size(); ++i) {
        const QPointF at = corner + places.at(i);
        key().at(i).draw(painter, QRectF(at, signSize));
        painter->setPen(Qt::black);
        drawText(painter, at + QPointF(signSize.width() + 8, 2), key().at(i).text, Plain);
    }
}

}
