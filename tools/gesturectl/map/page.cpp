#include "page.h"

#include "areas.h"
#include "key.h"
#include "labels.h"
#include "legend.h"
#include "typesetting.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QSvgGenerator>

#include <algorithm>
#include <cmath>
#include <numeric>

using namespace vellix;

namespace gesturectl {

static const double margin = 40;
static const double titleHeight = 28;
static const int fewestColumns = 4; // of a page with at least as many panels

static const double largestSide = 32767; // Qt's limit for a picture
static const double largestArea = 1e8;

// `painter` is at the panel's upper left corner.
static void drawPanel(QPainter *painter, const Panel &panel, const Legend &legend)
{
    painter->setPen(Qt::black);
    drawText(painter, QPointF(0, 2), elided(panel.title, Large, screen.width()), Large);
    painter->translate(0, titleHeight);
    painter->setBrush(Qt::NoBrush);
    QVector<QRectF> unmatched;
    for (const QRectF &area : panel.unmatched)
        unmatched.append(onPanel(area));
    drawUnmatched(painter, unmatched);
    drawContested(painter, contestedRegion(panel));
    drawOutlines(painter, panel);
    painter->setPen(QPen(Qt::black, 4, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter->drawRect(QRectF(QPointF(), screen));
    drawLabels(painter, panel);
    painter->translate(0, screen.height() + 12);
    painter->setPen(Qt::black);
    drawText(painter, QPointF(),
             panel.unmatched.isEmpty() ? QStringLiteral("every touch matches") : unmatchedText(panel), Plain);
    painter->translate(0, lineHeight + 6);
    drawLegend(painter, legend);
}

// Above the key.
static const double titlesHeight = 52;

static void drawHead(QPainter *painter, const Page &page, double width)
{
    painter->setPen(Qt::black);
    drawText(painter, QPointF(), elided(QStringLiteral("Gestures of ") + shortened(page.application), Large, width),
             Large);
    drawText(painter, QPointF(0, 24), elided(shortened(page.file), Plain, width), Plain);
    drawKey(painter, QPointF(0, titlesHeight), width);
}

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
    layout.headHeight = titlesHeight + heightOfKey(width) + gap;
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
                            QStringLiteral("a PNG of %1 x %2 pixels is too large: restrict it with --mode or --kind, "
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
