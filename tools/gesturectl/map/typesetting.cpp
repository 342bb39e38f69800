#include "typesetting.h"

#include <QFont>

namespace gesturectl {

static const double largeLineHeight = 18;
static const double smallLineHeight = 11;
// Other programs draw an SVG with other fonts: a text may become a bit wider than measured.
static const double spare = 0.94;

static QFont fontOf(Face face)
{
    QFont font(QStringLiteral("sans-serif"));
    font.setPixelSize(face == Large ? 16 : face == Small ? 9 : 12);
    font.setBold(face != Plain);
    return font;
}

const QFontMetricsF &metricsOf(Face face)
{
    static const QFontMetricsF metrics[] = {QFontMetricsF(fontOf(Plain)), QFontMetricsF(fontOf(Bold)),
                                            QFontMetricsF(fontOf(Large)), QFontMetricsF(fontOf(Small))};
    return metrics[face];
}

double heightOf(Face face)
{
    return face == Large ? largeLineHeight : face == Small ? smallLineHeight : lineHeight;
}

double widthOf(const QString &text, Face face)
{
    return metricsOf(face).horizontalAdvance(text) / spare;
}

QString elided(const QString &text, Face face, double width)
{
    return metricsOf(face).elidedText(text, Qt::ElideMiddle, width * spare);
}

void drawText(QPainter *painter, const QPointF &at, const QString &text, Face face)
{
    painter->setFont(fontOf(face));
    painter->drawText(QPointF(at.x(), at.y() + metricsOf(face).ascent()), text);
}

QStringList wordsOf(const QString &text)
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

std::optional<QStringList> filled(const QStringList &words, Face face, double width)
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

}
