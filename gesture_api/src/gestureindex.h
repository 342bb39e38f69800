#pragma once

#include <gesture_api/gesture.h>

#include <QHash>
#include <QPair>
#include <QVector>

#include <algorithm>

namespace vellix {
namespace gesture {

/// The gestures of one list by kind, direction and mode, each part in the order of the list: gestures that a lookup
/// does not ask for cost nothing.
class GestureIndex
{
public:
    explicit GestureIndex(const QList<Gesture *> &gestures)
    {
        for (int i = 0; i < gestures.size(); ++i) {
            if (gestures.at(i))
                add(Entry(gestures.at(i), i));
        }
    }

    /// The first gesture of this mode, kind and direction whose zone contains the position, or null.
    Gesture *find(const QString &mode, Gesture::Kind kind, Gesture::Direction direction, const QPointF &position) const
    {
        return first(mode, kind, direction, [&position](const Entry &entry) {
            return entry.spans(position) && entry.gesture->zone().contains(position);
        });
    }

    /// The first gesture of this mode, kind and direction whose zone passes the test, or null.
    template <class Test>
    Gesture *findByZone(const QString &mode, Gesture::Kind kind, Gesture::Direction direction, const Test &test) const
    {
        return first(mode, kind, direction, [&test](const Entry &entry) { return test(entry.gesture->zone()); });
    }

private:
    // The edges are stored beside the pointer: the zone alone rules out most gestures.
    struct Entry
    {
        explicit Entry(Gesture *g = nullptr, int i = 0) : gesture(g), position(i)
        {
            if (!g)
                return;
            const QRectF &zone = g->zone();
            left = zone.width() < 0 ? zone.x() + zone.width() : zone.x();
            right = zone.width() < 0 ? zone.x() : zone.x() + zone.width();
            top = zone.height() < 0 ? zone.y() + zone.height() : zone.y();
            bottom = zone.height() < 0 ? zone.y() : zone.y() + zone.height();
        }

        // Added up, for one jump instead of four: any of the tests may fail, and the processor could not predict which.
        bool spans(const QPointF &point) const
        {
            const int failed = (point.x() < left) + (point.x() > right) + (point.y() < top) + (point.y() > bottom);
            return failed == 0;
        }

        double left = 0;
        double right = 0;
        double top = 0;
        double bottom = 0;
        Gesture *gesture;
        int position; // in the list
    };
    using Entries = QVector<Entry>;

    struct Part
    {
        Entries ofAllModes; // the gestures without a mode
        QHash<QString, Entries> byMode;
    };

    void add(const Entry &entry)
    {
        Part &part = m_parts[{entry.gesture->kind(), entry.gesture->direction()}];
        const QStringList &modes = entry.gesture->modes();
        for (const QString &mode : modes)
            part.byMode[mode].append(entry);
        if (modes.isEmpty())
            part.ofAllModes.append(entry);
    }

    template <class Test>
    static const Entry *firstOf(const Entries &entries, const Test &test)
    {
        const auto found = std::find_if(entries.cbegin(), entries.cend(), test);
        return found == entries.cend() ? nullptr : &*found;
    }

    template <class Test>
    Gesture *first(const QString &mode, Gesture::Kind kind, Gesture::Direction direction, const Test &test) const
    {
        const auto part = m_parts.constFind({kind, direction});
        if (part == m_parts.cend())
            return nullptr;
        const Entry *const always = firstOf(part->ofAllModes, test);
        const auto ofMode = part->byMode.constFind(mode);
        const Entry *const named = ofMode == part->byMode.cend() ? nullptr : firstOf(*ofMode, test);
        if (!always || !named)
            return always ? always->gesture : named ? named->gesture : nullptr;
        return always->position < named->position ? always->gesture : named->gesture;
    }

    QHash<QPair<int, int>, Part> m_parts;
};

}
}
