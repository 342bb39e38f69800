#include "labels.h"

#include "areas.h"
#include "typesetting.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace gesturectl {

static const double padding = 5; // of a label in its zone

namespace {
// The texts of a label.
struct Texts
{
    QString number;
    QString id;
    QString action;
};

// Some lines around a point.
struct Label
{
    QVector<Line> lines;
    QPointF centre;
    QSizeF size; // before it is turned
    bool isUpright;
};
}

static std::optional<Label> labelOf(const QVector<Line> &lines, const QPointF &centre, const QSizeF &room,
                                    bool isUpright)
{
    Label label{lines, centre, QSizeF(0, 0), isUpright};
    for (const Line &line : lines) {
        label.size.setWidth(std::max(label.size.width(), widthOf(line.text, line.face)));
        label.size.rheight() += heightOf(line.face);
    }
    if (label.size.width() > room.width() || label.size.height() > room.height())
        return std::nullopt;
    return label;
}

// Id and action below the number, on as many lines as they need.
static std::optional<Label> stacked(const Texts &texts, const QPointF &centre, const QSizeF &room, bool isUpright)
{
    const auto id = filled(wordsOf(texts.id), Plain, room.width());
    const auto action = filled(wordsOf(texts.action), Bold, room.width());
    if (!id || !action)
        return std::nullopt;
    QVector<Line> lines{{texts.number, Large}};
    for (const QString &line : *id)
        lines.append({line, Plain});
    for (const QString &line : *action)
        lines.append({line, Bold});
    return labelOf(lines, centre, room, isUpright);
}

static std::optional<Label> inTwoLines(const Texts &texts, const QPointF &centre, const QSizeF &room, bool isUpright)
{
    return labelOf({{texts.number + QStringLiteral("  ") + texts.id, Plain}, {texts.action, Bold}}, centre, room,
                   isUpright);
}

static std::optional<Label> inOneLine(const Texts &texts, const QPointF &centre, const QSizeF &room, bool isUpright)
{
    return labelOf({{QStringList{texts.number, texts.id, texts.action}.join(QStringLiteral("  ")), Bold}}, centre, room,
                   isUpright);
}

static std::optional<Label> cutShort(const Texts &texts, const QPointF &centre, const QSizeF &room, bool isUpright)
{
    static const double shortest = 60; // a shorter text would be only dots
    if (room.width() < shortest)
        return std::nullopt;
    return labelOf({{texts.number, Large},
                    {elided(texts.id, Plain, room.width()), Plain},
                    {elided(texts.action, Bold, room.width()), Bold}},
                   centre, room, isUpright);
}

// The fullest label that fits into a part of a zone, turned if that helps.
static std::optional<Label> labelIn(const QRectF &part, const Texts &texts)
{
    const QSizeF room = part.adjusted(padding, padding, -padding, -padding).size();
    for (const auto form : {stacked, inTwoLines, inOneLine, cutShort}) {
        if (const auto label = form(texts, part.center(), room, false))
            return label;
        if (const auto label = form(texts, part.center(), room.transposed(), true))
            return label;
    }
    for (const Face face : {Large, Bold, Small}) {
        if (const auto label = labelOf({{texts.number, face}}, part.center(), part.size(), false))
            return label;
    }
    return std::nullopt;
}

static QRectF boxOf(const Label &label)
{
    const QSizeF size = label.isUpright ? label.size.transposed() : label.size;
    return QRectF(label.centre - QPointF(size.width() / 2, size.height() / 2), size);
}

static void drawLabel(QPainter *painter, const Label &label)
{
    painter->fillRect(boxOf(label), Qt::white);
    painter->save();
    painter->translate(label.centre);
    if (label.isUpright)
        painter->rotate(-90);
    painter->setPen(Qt::black);
    double y = -label.size.height() / 2;
    for (const Line &line : label.lines) {
        drawText(painter, QPointF(-metricsOf(line.face).horizontalAdvance(line.text) / 2, y), line.text, line.face);
        y += heightOf(line.face);
    }
    painter->restore();
}

static QRectF largestPart(const analysis::Reach &reach)
{
    QRectF largest;
    for (const QRectF &piece : reach.left) {
        const QRectF part = onPanel(piece);
        if (part.width() * part.height() >= largest.width() * largest.height())
            largest = part;
    }
    return largest;
}

static bool isFree(const QRectF &box, const QVector<QRectF> &taken)
{
    return QRectF(QPointF(), screen).contains(box)
            && std::none_of(taken.cbegin(), taken.cend(),
                            [&box](const QRectF &other) { return other.intersects(box); });
}

// The nearest place around a point.
static std::optional<QRectF> placeNear(const QPointF &point, const QSizeF &size, const QVector<QRectF> &taken)
{
    for (const double distance : {14, 26}) {
        for (int eighth = 0; eighth < 8; ++eighth) {
            const double angle = eighth * M_PI / 4;
            const QPointF centre =
                    point + QPointF(std::cos(angle) * (distance + size.width() / 2), std::sin(angle) * distance);
            const QRectF box(centre - QPointF(size.width() / 2, size.height() / 2), size);
            if (isFree(box, taken))
                return box;
        }
    }
    return std::nullopt;
}

// A place in a zone, row by row.
static std::optional<QRectF> placeIn(const QRectF &zone, const QSizeF &size, const QVector<QRectF> &taken)
{
    static const double step = 10;
    for (double y = zone.top() + padding; y + size.height() + padding <= zone.bottom(); y += step) {
        for (double x = zone.left() + padding; x + size.width() + padding <= zone.right(); x += step) {
            const QRectF box(QPointF(x, y), size);
            if (isFree(box, taken))
                return box;
        }
    }
    return std::nullopt;
}

void drawNever(QPainter *painter, const QRectF &box, const QString &number)
{
    painter->fillRect(box, Qt::white);
    painter->setPen(QPen(Qt::black, 1));
    painter->drawRect(box);
    painter->setPen(QPen(Qt::black, 2));
    const QRectF cross(box.left() + 4, box.center().y() - 4, 8, 8);
    painter->drawLine(cross.topLeft(), cross.bottomRight());
    painter->drawLine(cross.bottomLeft(), cross.topRight());
    drawText(painter, QPointF(box.left() + 17, box.top() + 2), number, Bold);
}

static QSizeF sizeOfNever(const QString &number)
{
    return QSizeF(std::ceil(17 + widthOf(number, Bold) + 3), 18);
}

static void drawLeader(QPainter *painter, const QPointF &from, const QRectF &box)
{
    painter->setPen(QPen(Qt::black, 1));
    painter->drawLine(from, box.center());
}

static void drawNumberOutside(QPainter *painter, int index, const QRectF &part, QVector<QRectF> *taken)
{
    const QSizeF size(widthOf(numberOf(index), Bold), lineHeight);
    const auto box = placeNear(part.center(), size, *taken);
    if (!box)
        return; // the legend still shows it
    drawLeader(painter, part.center(), *box);
    drawLabel(painter, {{{numberOf(index), Bold}}, box->center(), size, false});
    taken->append(*box);
}

static void drawNeverMark(QPainter *painter, int index, const QRectF &zone, QVector<QRectF> *taken)
{
    const QString number = numberOf(index);
    const QSizeF size = sizeOfNever(number);
    auto box = placeIn(zone, size, *taken);
    if (!box) {
        box = placeNear(zone.center(), size, *taken);
        if (!box)
            return;
        drawLeader(painter, zone.center(), *box);
    }
    drawNever(painter, *box, number);
    taken->append(*box);
}

// Labels inside their own parts first: these cannot overlap.
void drawLabels(QPainter *painter, const Panel &panel)
{
    QVector<QRectF> taken;
    QVector<int> outside;
    for (int i = 0; i < panel.entries.size(); ++i) {
        const Panel::Entry &entry = panel.entries.at(i);
        if (entry.reach.none)
            continue;
        const auto label =
                labelIn(largestPart(entry.reach), {numberOf(i), shortened(entry.gesture->id()), actionPath(entry)});
        if (!label) {
            outside.append(i);
            continue;
        }
        drawLabel(painter, *label);
        taken.append(boxOf(*label));
    }
    for (const int i : qAsConst(outside))
        drawNumberOutside(painter, i, largestPart(panel.entries.at(i).reach), &taken);
    for (int i = 0; i < panel.entries.size(); ++i) {
        const QRectF zone = analysis::onScreen(panel.entries.at(i).gesture->zone());
        if (panel.entries.at(i).reach.none && !zone.isNull())
            drawNeverMark(painter, i, onPanel(zone), &taken);
    }
}

}
