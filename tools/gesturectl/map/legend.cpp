#include "legend.h"

#include "areas.h"

#include <algorithm>
#include <numeric>

namespace gesturectl {

using Block = Legend::Block;

static const double indent = 32;   // of the text after its number
static const int legendLines = 80; // a longer legend goes on in the next column

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

static int lineCount(const QVector<Block> &blocks)
{
    return std::accumulate(blocks.cbegin(), blocks.cend(), 0,
                           [](int sum, const Block &block) { return sum + block.size(); });
}

Legend legendOf(const Panel &panel, int mostColumns)
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

double widthOf(const Legend &legend)
{
    return legend.columns.size() * (screen.width() + gap) - gap;
}

void drawLegend(QPainter *painter, const Legend &legend)
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

}
