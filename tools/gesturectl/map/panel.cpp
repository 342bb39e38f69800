#include "panel.h"

#include <gesturectl/output.h>

#include <gesture_api/action.h>

#include <algorithm>
#include <numeric>

using namespace vellix::gesture;

namespace gesturectl {

static const int longestText = 80;
static const int mostLosses = 5;

QString shortened(const QString &text)
{
    const QVector<uint> characters = text.toUcs4();
    if (characters.size() <= longestText)
        return text.isEmpty() ? QStringLiteral("''") : shown(text);
    const int half = longestText / 2;
    const auto part = [&characters](int from) { return shown(QString::fromUcs4(characters.constData() + from, half)); };
    return part(0) + QChar(0x2026) + part(characters.size() - half);
}

QString actionPath(const Panel::Entry &entry)
{
    const Action *action = entry.gesture->currentAction();
    return action ? shortened(action->path()) : QStringLiteral("-");
}

QString actionText(const Panel::Entry &entry)
{
    return actionPath(entry) + (entry.gesture->supported() ? QString() : QStringLiteral("  [not on this device]"));
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
    const int count = losses.size() > mostLosses ? mostLosses - 1 : losses.size();
    QStringList texts;
    double rest = entry.reach.lostShare();
    for (int i = 0; i < count; ++i) {
        texts.append(
                QStringLiteral("%1 to %2").arg(percent(losses.at(i).share), nameOf(indexOf(panel, losses.at(i).to))));
        rest -= losses.at(i).share;
    }
    if (count < losses.size())
        texts.append(QStringLiteral("%1 to %2 others").arg(percent(rest)).arg(losses.size() - count));
    if (!texts.isEmpty())
        texts.first().prepend(QStringLiteral("loses "));
    if (entry.reach.none)
        texts.append(losses.isEmpty() ? QStringLiteral("never fires: its zone has no area on the screen")
                                      : QStringLiteral("never fires"));
    return texts;
}

QString unmatchedText(const Panel &panel)
{
    const double share =
            std::accumulate(panel.unmatched.cbegin(), panel.unmatched.cend(), 0.0,
                            [](double sum, const QRectF &area) { return sum + area.width() * area.height(); });
    return share > 0 ? QStringLiteral("nothing matches on %1 of the screen").arg(percent(share)) : QString();
}

QString numberOf(int index)
{
    return QString::number(index + 1);
}

}
