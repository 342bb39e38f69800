#pragma once

#include <QFontMetricsF>
#include <QPainter>
#include <QString>
#include <QStringList>

#include <optional>

// Text on a page, in the page's units: the pixels of a PNG.

namespace gesturectl {

constexpr double lineHeight = 16;

enum Face { Plain, Bold, Large, Small };

struct Line
{
    QString text;
    Face face;
};

const QFontMetricsF &metricsOf(Face face);
double heightOf(Face face);
double widthOf(const QString &text, Face face);
QString elided(const QString &text, Face face, double width);

/// `at` is the upper left corner of the line.
void drawText(QPainter *painter, const QPointF &at, const QString &text, Face face);

/// Splits a name at possible line breaks: "ReadingTapLeft" and "page/next" have several words.
QStringList wordsOf(const QString &text);

/// Fills lines with words; empty if a word is too wide.
std::optional<QStringList> filled(const QStringList &words, Face face, double width);

}
