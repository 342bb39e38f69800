#include "drawing.h"

#include <QBuffer>
#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QSvgGenerator>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>

using namespace vellix;

namespace gesturectl {

// All in the units of the page, which are the pixels of a PNG.
static const QSizeF screen(420, 560);
static const double margin = 40;
static const double gap = 36;
static const double indent = 32; // of a legend's text, behind its number
static const double lineHeight = 16;
static const double largeLineHeight = 18;
static const double smallLineHeight = 11;
static const double titleHeight = 28;
static const double padding = 5;    // of a label in its zone
static const int fewestColumns = 4; // of a page that has so many panels
static const int legendLines = 80;  // a longer legend goes on in the next column
// Another program draws an SVG with another font: a text may become a bit wider than measured.
static const double spare = 0.94;

static const double largestSide = 32767; // of a picture of Qt
static const double largestArea = 1e8;

// Text on the page.

namespace {
enum Face { Plain, Bold, Large, Small };

struct Line
{
    QString text;
    Face face;
};

// What a label tells of a gesture.
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

static QFont fontOf(Face face)
{
    QFont font(QStringLiteral("sans-serif"));
    font.setPixelSize(face == Large ? 16 : face == Small ? 9 : 12);
    font.setBold(face != Plain);
    return font;
}

static const QFontMetricsF &metricsOf(Face face)
{
    static const QFontMetricsF metrics[] = {QFontMetricsF(fontOf(Plain)), QFontMetricsF(fontOf(Bold)),
                                            QFontMetricsF(fontOf(Large)), QFontMetricsF(fontOf(Small))};
    return metrics[face];
}

static double heightOf(Face face)
{
    return face == Large ? largeLineHeight : face == Small ? smallLineHeight : lineHeight;
}

static double widthOf(const QString &text, Face face)
{
    return metricsOf(face).horizontalAdvance(text) / spare;
}

static QString elided(const QString &text, Face face, double width)
{
    return metricsOf(face).elidedText(text, Qt::ElideMiddle, width * spare);
}

// `at` is the upper left corner of the line.
static void drawText(QPainter *painter, const QPointF &at, const QString &text, Face face)
{
    painter->setFont(fontOf(face));
    painter->drawText(QPointF(at.x(), at.y() + metricsOf(face).ascent()), text);
}

// Where a long name may be broken: "ReadingTapLeft" and "page/next" have several words.
static QStringList wordsOf(const QString &text)
{
    QStringList words;
    int start = 0;
    for (int i = 1; i < text.size(); ++i) {
        const QChar before = text.at(i - 1);
        const bool isCapital = text.at(i).isUpper() && !before.isUpper();
        if (!isCapital && !QStringLiteral("/_-., ").contains(before))
            continue;
        words.append(text.mid(start, i - start));
        start = i;
    }
    return words << text.mid(start);
}

// Fills lines with words; nothing when a word is too wide.
static std::optional<QStringList> filled(const QStringList &words, Face face, double width)
{
    QStringList lines{QString()};
    for (const QString &word : words) {
        if (widthOf(word, face) > width)
            return std::nullopt;
        if (widthOf(lines.last() + word, face) > width)
            lines.append(QString());
        lines.last().append(word);
    }
    return lines;
}

static QString numberOf(int index)
{
    return QString::number(index + 1);
}

// Areas of the screen.

static QRectF onPanel(const QRectF &area)
{
    const auto x = [](double relative) { return std::round(relative * screen.width()); };
    const auto y = [](double relative) { return std::round(relative * screen.height()); };
    return QRectF(QPointF(x(area.left()), y(area.top())), QPointF(x(area.right()), y(area.bottom())));
}

// Lines across an area, in step with those of its neighbours; Qt's own patterns do not reach an SVG.
static void addHatching(QPainterPath *path, const QRectF &area, double step, bool isRising)
{
    const double low = isRising ? area.left() + area.top() : area.left() - area.bottom();
    const double high = isRising ? area.right() + area.bottom() : area.right() - area.top();
    for (double line = std::ceil(low / step) * step; line <= high; line += step) {
        const double from = std::max(area.left(), isRising ? line - area.bottom() : line + area.top());
        const double to = std::min(area.right(), isRising ? line - area.top() : line + area.bottom());
        if (from >= to)
            continue;
        path->moveTo(from, isRising ? line - from : from - line);
        path->lineTo(to, isRising ? line - to : to - line);
    }
}

static void drawDead(QPainter *painter, const QVector<QRectF> &areas) // in the page's units
{
    QPainterPath path;
    for (const QRectF &area : areas)
        addHatching(&path, area, 12, true);
    painter->setPen(QPen(Qt::black, 1));
    painter->drawPath(path);
}

static QPen dashedPen(double width, const QVector<qreal> &pattern)
{
    QPen pen(Qt::black, width, Qt::SolidLine, Qt::FlatCap);
    pen.setDashPattern(pattern);
    return pen;
}

static void drawContested(QPainter *painter, const QRegion &region)
{
    QPainterPath path;
    for (const QRect &area : region)
        addHatching(&path, QRectF(area), 8, false);
    painter->setPen(dashedPen(1, {2, 5}));
    painter->drawPath(path);
}

// The sides that a piece of a zone has in common with it.
static void addSides(QPainterPath *path, const QRectF &piece, const QRectF &zone)
{
    const auto side = [path](const QPointF &from, const QPointF &to) {
        path->moveTo(from);
        path->lineTo(to);
    };
    if (piece.left() == zone.left())
        side(piece.topLeft(), piece.bottomLeft());
    if (piece.right() == zone.right())
        side(piece.topRight(), piece.bottomRight());
    if (piece.top() == zone.top())
        side(piece.topLeft(), piece.topRight());
    if (piece.bottom() == zone.bottom())
        side(piece.bottomLeft(), piece.bottomRight());
}

static void drawOutlines(QPainter *painter, const Panel &panel)
{
    QPainterPath lost;
    QPainterPath left;
    for (const Panel::Entry &entry : panel.entries) {
        const QRectF zone = onPanel(analysis::onScreen(entry.gesture->zone()));
        for (const analysis::Loss &loss : entry.reach.losses) {
            for (const QRectF &piece : loss.area)
                addSides(&lost, onPanel(piece), zone);
        }
        for (const QRectF &piece : entry.reach.left)
            addSides(&left, onPanel(piece), zone);
    }
    painter->setPen(dashedPen(2, {4, 3}));
    painter->drawPath(lost);
    painter->setPen(QPen(Qt::black, 2));
    painter->drawPath(left);
}

static QRegion contestedRegion(const Panel &panel)
{
    QRegion region;
    for (const Panel::Entry &entry : panel.entries) {
        for (const analysis::Loss &loss : entry.reach.losses) {
            for (const QRectF &piece : loss.area)
                region += onPanel(piece).toRect();
        }
    }
    return region;
}

// Labels.

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

// Id and action below the number, in as many lines as they need.
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
    static const double shortest = 60; // or only dots would remain
    if (room.width() < shortest)
        return std::nullopt;
    return labelOf({{texts.number, Large},
                    {elided(texts.id, Plain, room.width()), Plain},
                    {elided(texts.action, Bold, room.width()), Bold}},
                   centre, room, isUpright);
}

// As much of the text as fits into a part of a zone, turned when that helps.
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

// A frame around a cross and a number.
static void drawNever(QPainter *painter, const QRectF &box, const QString &number)
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
        return; // the legend still has it
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

// Those inside their own parts first: these cannot meet.
static void drawLabels(QPainter *painter, const Panel &panel)
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

// The legend of a panel: one block of lines for each gesture.

using Block = QVector<Line>;

static Block blockOf(const Panel &panel, int index)
{
    const double width = screen.width() - indent;
    const Panel::Entry &entry = panel.entries.at(index);
    Block block{{elided(shortened(entry.gesture->id()), Bold, width), Bold},
                {elided(entry.zone + QStringLiteral(":  ") + actionText(entry), Plain, width), Plain}};
    QStringList texts = remarks(panel, entry, numberOf);
    for (int i = 0; i + 1 < texts.size(); ++i)
        texts[i].append(QStringLiteral(", "));
    const QStringList lines = filled(texts, Plain, width).value_or(texts);
    for (const QString &line : lines)
        if (!line.isEmpty())
            block.append({line, Plain});
    return block;
}

namespace {
// The blocks of a panel in columns.
struct Legend
{
    QVector<QVector<Block>> columns;
    double height = 0;
};
}

static int lineCount(const QVector<Block> &blocks)
{
    return std::accumulate(blocks.cbegin(), blocks.cend(), 0,
                           [](int sum, const Block &block) { return sum + block.size(); });
}

static Legend legendOf(const Panel &panel, int mostColumns)
{
    QVector<Block> blocks;
    for (int i = 0; i < panel.entries.size(); ++i)
        blocks.append(blockOf(panel, i));
    const int count = lineCount(blocks);
    const int columns = std::clamp((count + legendLines - 1) / legendLines, 1, mostColumns);
    Legend legend;
    legend.columns.append(QVector<Block>());
    int lines = 0;
    for (const Block &block : qAsConst(blocks)) {
        if (lines * columns >= count) {
            legend.columns.append(QVector<Block>());
            lines = 0;
        }
        legend.columns.last().append(block);
        lines += block.size();
        legend.height = std::max(legend.height, lines * lineHeight + legend.columns.last().size() * 4);
    }
    return legend;
}

static double widthOf(const Legend &legend)
{
    return legend.columns.size() * (screen.width() + gap) - gap;
}

static void drawLegend(QPainter *painter, const Legend &legend)
{
    painter->setPen(Qt::black);
    int index = 0;
    for (int column = 0; column < legend.columns.size(); ++column) {
        QPointF at(column * (screen.width() + gap), 0);
        for (const Block &block : legend.columns.at(column)) {
            const QString number = numberOf(index++);
            drawText(painter, QPointF(at.x() + indent - 8 - metricsOf(Bold).horizontalAdvance(number), at.y()), number,
                     Bold);
            for (const Line &line : block) {
                drawText(painter, at + QPointF(indent, 0), line.text, line.face);
                at.ry() += lineHeight;
            }
            at.ry() += 4;
        }
    }
}

// `painter` stands at the panel's upper left corner.
static void drawPanel(QPainter *painter, const Panel &panel, const Legend &legend)
{
    painter->setPen(Qt::black);
    drawText(painter, QPointF(0, 2), elided(panel.title, Large, screen.width()), Large);
    painter->translate(0, titleHeight);
    painter->setBrush(Qt::NoBrush);
    QVector<QRectF> dead;
    for (const QRectF &area : panel.dead)
        dead.append(onPanel(area));
    drawDead(painter, dead);
    drawContested(painter, contestedRegion(panel));
    drawOutlines(painter, panel);
    painter->setPen(QPen(Qt::black, 4, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter->drawRect(QRectF(QPointF(), screen));
    drawLabels(painter, panel);
    painter->translate(0, screen.height() + 12);
    painter->setPen(Qt::black);
    drawText(painter, QPointF(), panel.dead.isEmpty() ? QStringLiteral("every touch matches") : deadText(panel), Plain);
    painter->translate(0, lineHeight + 6);
    drawLegend(painter, legend);
}

// The key at the head of the page: what the lines mean.

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
             [](QPainter *painter, const QRectF &box) { drawDead(painter, {box}); }},
            {QStringLiteral("the gesture of this number never fires"),
             [](QPainter *painter, const QRectF &box) { drawNever(painter, box, QStringLiteral("1")); }}};
    return signs;
}

// Where each sign stands in a page of a width; the last one is the place below them.
static QVector<QPointF> placesOfKey(double width)
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

static void drawHead(QPainter *painter, const Page &page, double width)
{
    painter->setPen(Qt::black);
    drawText(painter, QPointF(), elided(QStringLiteral("Gestures of ") + shortened(page.application), Large, width),
             Large);
    drawText(painter, QPointF(0, 24), elided(shortened(page.file), Plain, width), Plain);
    const QVector<QPointF> places = placesOfKey(width);
    for (int i = 0; i < key().size(); ++i) {
        const QPointF at = QPointF(0, 52) + places.at(i);
        key().at(i).draw(painter, QRectF(at, signSize));
        painter->setPen(Qt::black);
        drawText(painter, at + QPointF(signSize.width() + 8, 2), key().at(i).text, Plain);
    }
}

// The page.

namespace {
struct Layout
{
    QVector<Legend> legends;
    double cellWidth = 0;
    int columns = 1;
    double headHeight = 0;
    QVector<double> rowHeights;
    QSizeF size;
};
}

static Layout layoutOf(const Page &page)
{
    Layout layout;
    int legendColumns = 1;
    const int mostLegendColumns = std::max(1, 2 * fewestColumns / page.panels.size());
    for (const Panel &panel : page.panels) {
        layout.legends.append(legendOf(panel, mostLegendColumns));
        layout.cellWidth = std::max(layout.cellWidth, widthOf(layout.legends.last()));
        legendColumns = std::max(legendColumns, layout.legends.last().columns.size());
    }
    const int columns = std::max(fewestColumns, int(std::sqrt(page.panels.size())));
    layout.columns = std::clamp(columns / legendColumns, 1, page.panels.size());
    const double width = layout.columns * (layout.cellWidth + gap) - gap;
    layout.headHeight = 52 + placesOfKey(width).constLast().y() + gap;
    double height = layout.headHeight;
    for (int i = 0; i < page.panels.size(); ++i) {
        if (i % layout.columns == 0)
            layout.rowHeights.append(0);
        const double needed = titleHeight + screen.height() + 12 + lineHeight + 6 + layout.legends.at(i).height + gap;
        layout.rowHeights.last() = std::max(layout.rowHeights.last(), needed);
    }
    height = std::accumulate(layout.rowHeights.cbegin(), layout.rowHeights.cend(), height);
    layout.size = QSizeF(std::ceil(width + 2 * margin), std::ceil(height - gap + 2 * margin));
    return layout;
}

static void drawPage(QPainter *painter, const Page &page, const Layout &layout)
{
    painter->translate(margin, margin);
    drawHead(painter, page, layout.size.width() - 2 * margin);
    double y = layout.headHeight;
    for (int i = 0; i < page.panels.size(); ++i) {
        const int column = i % layout.columns;
        painter->save();
        painter->translate(column * (layout.cellWidth + gap), y);
        drawPanel(painter, page.panels.at(i), layout.legends.at(i));
        painter->restore();
        if (column + 1 == layout.columns)
            y += layout.rowHeights.at(i / layout.columns);
    }
}

QByteArray svg(const Page &page)
{
    const Layout layout = layoutOf(page);
    QBuffer buffer;
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setSize(layout.size.toSize());
    generator.setViewBox(QRectF(QPointF(), layout.size));
    generator.setResolution(96);
    generator.setTitle(QStringLiteral("Gestures of ") + shortened(page.application));
    QPainter painter(&generator);
    painter.fillRect(QRectF(QPointF(), layout.size), Qt::white);
    drawPage(&painter, page, layout);
    painter.end();
    return buffer.data();
}

Result<QByteArray> png(const Page &page)
{
    const Layout layout = layoutOf(page);
    const double width = layout.size.width();
    const double height = layout.size.height();
    const auto tooLarge = [&] {
        return Left(Failure{BadFiles,
                            QStringLiteral("a PNG of %1 x %2 pixels is too large: narrow it with --mode or --kind, "
                                           "or draw an SVG")
                                    .arg(width)
                                    .arg(height)});
    };
    if (width > largestSide || height > largestSide || width * height > largestArea)
        return tooLarge();
    QImage image(layout.size.toSize(), QImage::Format_Grayscale8);
    if (image.isNull())
        return tooLarge();
    image.fill(Qt::white);
    QPainter painter(&image);
    drawPage(&painter, page, layout);
    painter.end();
    QBuffer buffer;
    if (!image.save(&buffer, "PNG"))
        return tooLarge();
    return Right(buffer.data());
}

}
