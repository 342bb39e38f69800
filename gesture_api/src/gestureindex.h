#pragma once

#include <gesture_api/gesture.h>

#include <QHash>
#include <QPair>
#include <QVector>

namespace vellix {
namespace gesture {

/// The gestures of one list by kind, direction and mode, each part in the order of the list: what a lookup does not
/// ask for costs it nothing.
class GestureIndex
{
public:
    explicit GestureIndex(const QList<Gesture *> &gestures)
    {
        for (Gesture *gesture : gestures) {
            if (gesture)
                add(Entry(gesture));
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
    // The edges stand beside the pointer, since most gestures are passed over for their zone alone.
    struct Entry
    {
        explicit Entry(Gesture *g = nullptr) : gesture(g)
        {
            if (!g)
                return;
            const QRectF &zone = g->zone();
            left = zone.width() < 0 ? zone.x() + zone.width() : zone.x();
            right = zone.width() < 0 ? zone.x() : zone.x() + zone.width();
            top = zone.height() < 0 ? zone.y() + zone.height() : zone.y();
            bottom = zone.height() < 0 ? zone.y() : zone.y() + zone.height();
        }

        // One jump for all four tests: any of them may fail, so that the processor could not guess four.
        bool spans(const QPointF &point) const
        {
            return !((point.x() < left) | (point.x() > right) | (point.y() < top) | (point.y() > bottom));
        }

        double left = 0;
        double right = 0;
        double top = 0;
        double bottom = 0;
        Gesture *gesture;
    };
    using Entries = QVector<Entry>;

    struct Part
    {
        Entries ofAllModes; // what is left for the modes that no gesture names
        QHash<QString, Entries> byMode;
    };

    void add(const Entry &entry)
    {
        Part &part = m_parts[{entry.gesture->kind(), entry.gesture->direction()}];
        const QStringList &modes = entry.gesture->modes();
        for (const QString &mode : modes) {
            if (!part.byMode.contains(mode))
                part.byMode.insert(mode, part.ofAllModes);
            part.byMode[mode].append(entry);
        }
        if (!modes.isEmpty())
            return;
        part.ofAllModes.append(entry);
        for (Entries &ofMode : part.byMode)
            ofMode.append(entry);
    }

    template <class Test>
    Gesture *first(const QString &mode, Gesture::Kind kind, Gesture::Direction direction, const Test &test) const
    {
        const auto part = m_parts.constFind({kind, direction});
        if (part == m_parts.cend())
            return nullptr;
        const auto ofMode = part->byMode.constFind(mode);
        for (const Entry &entry : ofMode == part->byMode.cend() ? part->ofAllModes : *ofMode) {
            if (test(entry))
                return entry.gesture;
        }
        return nullptr;
    }

    QHash<QPair<int, int>, Part> m_parts;
};

}
}
