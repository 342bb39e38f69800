#include "textdrawing.h"

#include <gesturectl/output.h>

#include <algorithm>
#include <cmath>

namespace gesturectl {

// A character is about twice as high as wide, so this screen is 3 by 4.
static const int columns = 48;
static const int rows = 32;

static const char *const symbols = "123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
static const int symbolCount = 61;
static const int unmatched = -1;

// The entry of each cell, row by row.
using Cells = QVector<int>;

static QChar symbolOf(int index)
{
    if (index == unmatched)
        return QLatin1Char('.');
    return QLatin1Char(index < symbolCount ? symbols[index] : '#');
}

// For the legend; entries may share a symbol.
static QString nameOf(int index)
{
    return index < symbolCount ? QString(symbolOf(index)) : QStringLiteral("#%1").arg(index + 1);
}

static int winnerAt(const Panel &panel, const QPointF &position)
{
    analysis::Touch touch = panel.touch;
    touch.position = position;
    for (int i = 0; i < panel.entries.size(); ++i) {
        if (!analysis::firstFailed(panel.entries.at(i).gesture, touch))
            return i;
    }
    return unmatched;
}

static Cells cellsOf(const Panel &panel)
{
    Cells cells;
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column)
            cells.append(winnerAt(panel, QPointF((column + 0.5) / columns, (row + 0.5) / rows)));
    }
    return cells;
}

namespace {
struct Range
{
    int first;
    int last;
};
}

// The cells with their centre between two edges; if there is none, the cell at their middle.
static Range cellsAlong(double from, double to, int count)
{
    const Range centres{int(std::ceil(from * count - 0.5)), int(std::floor(to * count - 0.5))};
    if (centres.first <= centres.last)
        return centres;
    const int only = std::clamp(int((from + to) / 2 * count), 0, count - 1);
    return {only, only};
}

static QRectF largest(const QVector<QRectF> &pieces)
{
    return *std::max_element(pieces.cbegin(), pieces.cend(), [](const QRectF &a, const QRectF &b) {
        return a.width() * a.height() < b.width() * b.height();
    });
}

// Shows an entry that contains no cell's centre, unless another entry would lose its last cell.
static void force(Cells *cells, int index, const QRectF &piece)
{
    const Range across = cellsAlong(piece.left(), piece.right(), columns);
    const Range down = cellsAlong(piece.top(), piece.bottom(), rows);
    for (int row = down.first; row <= down.last; ++row) {
        for (int column = across.first; column <= across.last; ++column) {
            int &cell = (*cells)[row * columns + column];
            if (cell == unmatched || cells->count(cell) > 1)
                cell = index;
        }
    }
}

static QString frame(const char16_t *left, const char16_t *right)
{
    return QString::fromUtf16(left) + QString(columns, QChar(0x2500)) + QString::fromUtf16(right);
}

static QStringList screenOf(const Cells &cells)
{
    QStringList lines{frame(u"┌", u"┐")};
    for (int row = 0; row < rows; ++row) {
        QString line;
        for (int column = 0; column < columns; ++column)
            line.append(symbolOf(cells.at(row * columns + column)));
        lines.append(QStringLiteral("│%1│").arg(line));
    }
    return lines << frame(u"└", u"┘");
}

QStringList textDrawing(const Panel &panel)
{
    Cells cells = cellsOf(panel);
    QVector<bool> isForced;
    for (int i = 0; i < panel.entries.size(); ++i) {
        const analysis::Reach &reach = panel.entries.at(i).reach;
        isForced.append(!reach.none && !cells.contains(i));
        if (isForced.last())
            force(&cells, i, largest(reach.left));
    }

    QList<QStringList> legend;
    for (int i = 0; i < panel.entries.size(); ++i) {
        const Panel::Entry &entry = panel.entries.at(i);
        QStringList notes = remarks(panel, entry, nameOf);
        if (isForced.at(i))
            notes.append(cells.contains(i) ? QStringLiteral("smaller than drawn")
                                           : QStringLiteral("too small to be drawn"));
        legend.append({nameOf(i), shortened(entry.gesture->id()), entry.zone, actionText(entry),
                       notes.join(QStringLiteral(", "))});
    }

    QStringList lines = QStringList(panel.title) + screenOf(cells) + tableLines(legend);
    if (!panel.unmatched.isEmpty())
        lines.append(QStringLiteral(".  ") + unmatchedText(panel));
    return lines;
}

}
