#pragma once

#include "panel.h"
#include "typesetting.h"

#include <QPainter>
#include <QVector>

// The legend of a panel: one block of lines for each gesture.

namespace gesturectl {

/// Between the columns of a page.
constexpr double gap = 36;

/// The blocks of a panel in columns.
struct Legend
{
    using Block = QVector<Line>;

    QVector<QVector<Block>> columns;
    double height = 0;
};

Legend legendOf(const Panel &panel, int mostColumns);
double widthOf(const Legend &legend);

/// `painter` is at the upper left corner of the legend.
void drawLegend(QPainter *painter, const Legend &legend);

}
