#include "panel.h"

#include <gesture_api/action.h>

#include <algorithm>
#include <cmath>
#include <numeric>

using namespace vellix::gesture;

namespace gesturectl {

static const int longestText = 80;
static const int mostLosses = 5;

static bool isShown(uint character)
{
    switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Other_Format: // turns the text around it
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph: return false;
    default: return !QChar::isNonCharacter(character);
    }
}

QString shown(const QString &text)
{
    if (text.isEmpty())
        return QStringLiteral("''");
    QVector<uint> characters = text.toUcs4();
    if (characters.size() > longestText) {
        const int half = longestText / 2;
        characters = characters.mid(0, half) << 0x2026 << characters.mid(characters.size() - half);
    }
    for (uint &character : characters)
        character = isShown(character) ? character : uint(QChar::ReplacementCharacter);
    return QString::fromUcs4(characters.constData(), characters.size());
}

QString actionPath(const Panel::Entry &entry)
{
    const Action *action = entry.gesture->currentAction();
    return action ? shown(action->path()) : QStringLiteral("-");
}

QString actionText(const Panel::Entry &entry)
{
    return actionPath(entry) + (entry.gesture->supported() ? QString() : QStringLiteral("  [not on this device]"));
}

// Never rounded to nothing or to all.
static QString shareText(double share)
{
    if (share < 0.001)
        return QStringLiteral("under 0.1 %");
    if (share > 0.999 && share < 1 - 1e-9)
        return QStringLiteral("over 99.9 %");
    const double tenths = std::round(share * 1000);
    return QString::number(tenths / 10) + QStringLiteral(" %");
}

static int indexOf(const Panel &panel, const Gesture *gesture)
{
    const auto found = std::find_if(panel.entries.cbegin(), panel.entries.cend(),
                                    [gesture](const Panel::Entry &entry) { return entry.gesture == gesture; });
    return int(found - panel.entries.cbegin());
}

QStringList remarks(const Panel &panel, const Panel::Entry &entry, QString (*nameOf)(int index))
{
    const QVector<analysis::Loss> &losses = entry.reach.losses;
    const int told = losses.size() > mostLosses ? mostLosses - 1 : losses.size();
    QStringList texts;
    double rest = entry.reach.lostShare();
    for (int i = 0; i < told; ++i) {
        texts.append(
                QStringLiteral("%1 to %2").arg(shareText(losses.at(i).share), nameOf(indexOf(panel, losses.at(i).to))));
        rest -= losses.at(i).share;
    }
    if (told < losses.size())
        texts.append(QStringLiteral("%1 to %2 others").arg(shareText(rest)).arg(losses.size() - told));
    if (!texts.isEmpty())
        texts.first().prepend(QStringLiteral("loses "));
    if (entry.reach.none)
        texts.append(losses.isEmpty() ? QStringLiteral("never fires: its zone has no area on the screen")
                                      : QStringLiteral("never fires"));
    return texts;
}

QString deadText(const Panel &panel)
{
    const double share =
            std::accumulate(panel.dead.cbegin(), panel.dead.cend(), 0.0,
                            [](double sum, const QRectF &area) { return sum + area.width() * area.height(); });
    return share > 0 ? QStringLiteral("nothing matches on %1 of the screen").arg(shareText(share)) : QString();
}

}
