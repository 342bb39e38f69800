#include "families.h"

#include <analysis/reach.h>
#include <analysis/subject.h>

#include <QHash>

#include <algorithm>

using namespace vellix::gesture;

namespace analysis {

// The place of an entry that decides which touches are its own.
static Place placeOfZone(const Entry &entry)
{
    return entry
            .place[entry.map.contains(QStringLiteral("zone")) ? QStringLiteral("zone") : QStringLiteral("direction")];
}

// A position relative to another one: on the same line, the column is enough.
static QString placeText(const Position &position, const Position &from)
{
    if (position.line != from.line)
        return QStringLiteral("line %1").arg(position.line);
    return QStringLiteral("column %1").arg(position.column);
}

namespace {
/// The losses of a gesture to the same others in some modes.
struct Loser
{
    Reach reach;
    QVector<Mode> modes;
    QString takers;
};
}

static QString takersOf(const Reach &reach, const Position &from, const QHash<const Gesture *, Position> &places)
{
    QStringList takers;
    for (const Loss &loss : reach.losses) {
        const QString share = reach.losses.size() > 1 ? QStringLiteral(", ") + percent(loss.share) : QString();
        takers.append(
                QStringLiteral("%1 (%2%3)").arg(quoted(loss.to->id()), placeText(places.value(loss.to), from), share));
    }
    return QStringLiteral("the earlier ") + listed(takers);
}

static QString modesText(const QVector<Mode> &modes)
{
    QStringList names;
    for (const Mode &mode : modes)
        names.append(mode ? quoted(*mode) : QStringLiteral("all others"));
    if (names.size() > 1)
        return QStringLiteral(" in modes ") + listed(names);
    return modes.first() ? QStringLiteral(" in mode ") + names.first() : QStringLiteral(" in all other modes");
}

static QString takenText(const Loser &loser, const QString &modes)
{
    return loser.takers + (loser.reach.losses.size() > 1 ? QStringLiteral(" take") : QStringLiteral(" takes"))
            + QStringLiteral(" 100 % of its zone") + modes;
}

// One entry for all modes in which the same gestures take the same parts.
static QVector<Loser> losersOf(const Entry &entry, const QVector<Mode> &modes, const QList<Gesture *> &gestures,
                               const QHash<const Gesture *, Position> &places)
{
    QVector<Loser> losers;
    for (const Mode &mode : modes) {
        const Reach reach = reachOf(entry.gesture, gestures, mode);
        const QString takers = takersOf(reach, places.value(entry.gesture), places);
        const auto known = std::find_if(losers.begin(), losers.end(), [&](const Loser &one) {
            return one.takers == takers && one.reach.none == reach.none;
        });
        if (known != losers.end())
            known->modes.append(mode);
        else
            losers.append({reach, {mode}, takers});
    }
    return losers;
}

static void reportLosers(const Entry &entry, const QVector<Loser> &losers, Findings *findings)
{
    const QString gesture = QStringLiteral("gesture ") + quoted(entry.gesture->id());
    const QString never = gesture + QStringLiteral(" never fires");
    const bool isDead = std::all_of(losers.cbegin(), losers.cend(), [](const Loser &one) { return one.reach.none; });
    if (isDead) {
        QStringList taken;
        for (const Loser &loser : losers)
            taken.append(takenText(loser, losers.size() > 1 ? modesText(loser.modes) : QString()));
        findings->add("shadowed", placeOfZone(entry), never + QStringLiteral(": ") + taken.join(QStringLiteral("; ")));
        return;
    }
    for (const Loser &loser : losers) {
        if (loser.reach.losses.isEmpty())
            continue;
        const QString modes = losers.size() > 1 ? modesText(loser.modes) : QString();
        if (loser.reach.none)
            findings->add("shadowed", placeOfZone(entry),
                          never + modes + QStringLiteral(": ") + takenText(loser, QString()));
        else
            findings->add("partly-shadowed", placeOfZone(entry),
                          gesture + QStringLiteral(" loses ") + percent(loser.reach.lostShare())
                                  + QStringLiteral(" of its zone") + modes + QStringLiteral(" to ") + loser.takers);
    }
}

static void findShadowed(const Subject &subject, Findings *findings)
{
    const QList<Gesture *> gestures = subject.matchableGestures();
    const QVector<Mode> modes = modesOf(gestures);
    QHash<const Gesture *, Position> places;
    for (const Entry &entry : subject.entries)
        places.insert(entry.gesture, entry.place.position());
    for (const Entry &entry : subject.entries) {
        if (entry.hasTouches() && !onScreen(entry.gesture->zone()).isNull())
            reportLosers(entry, losersOf(entry, modesOf(entry.gesture, modes), gestures, places), findings);
    }
}

static void findDuplicateIds(const Subject &subject, Findings *findings)
{
    QMap<QString, Entry> known;
    for (const Entry &entry : subject.entries) {
        if (!entry.hasId())
            continue;
        const auto before = known.constFind(entry.gesture->id());
        // Neighbours are refused.
        if (before != known.constEnd() && before->index + 1 != entry.index)
            findings->add("duplicate-id", entry.place[QStringLiteral("id")],
                          QStringLiteral("the id %1 was used before, in %2")
                                  .arg(quoted(entry.gesture->id()),
                                       placeText(before->place.position(), entry.place.position())));
        known.insert(entry.gesture->id(), entry);
    }
}

Rules lookupRules()
{
    const Severity warning = Severity::Warning;
    return {
            {14, "shadowed", warning, "A gesture can never fire.",
             "Move this gesture before the other, or remove one of them. The first gesture that matches wins.",
             findShadowed},
            {15, "partly-shadowed", warning, "A gesture never gets the touches of a part of its zone.",
             "The first gesture that matches wins. If this is intended, use --ignore partly-shadowed.", findShadowed},
            {16, "duplicate-id", warning, "Two gestures have the same id.",
             "Give one of them another id. A user's choice applies to both.", findDuplicateIds},
    };
}

}
