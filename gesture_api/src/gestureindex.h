#pragma once

#include <gesture_api/gesture.h>

#include <QHash>
#include <QPair>
#include <QVector>

#include <algorithm>
#include <array>
#include <memory>

namespace vellix {
namespace gesture {

/// A gesture of an index. The edges are stored beside the pointer: the zone alone rules out most gestures.
struct IndexEntry
{
    explicit IndexEntry(Gesture *g = nullptr, int i = 0) : gesture(g), position(i)
    {
        if (!g)
            return;
        const QRectF &zone = g->zone();
        left = zone.width() < 0 ? zone.x() + zone.width() : zone.x();
        right = zone.width() < 0 ? zone.x() : zone.x() + zone.width();
        top = zone.height() < 0 ? zone.y() + zone.height() : zone.y();
        bottom = zone.height() < 0 ? zone.y() : zone.y() + zone.height();
    }

    /// Whether the zone contains no point at all.
    bool isNull() const { return left == right || top == bottom; }
    bool contains(const QPointF &point) const { return spans(point) && gesture->zone().contains(point); }

    double left = 0;
    double right = 0;
    double top = 0;
    double bottom = 0;
    Gesture *gesture;
    int position; // in the list

private:
    // Added up, for one jump instead of four: any of the tests may fail, and the processor could not predict which.
    bool spans(const QPointF &point) const
    {
        const int failed = (point.x() < left) + (point.x() > right) + (point.y() < top) + (point.y() > bottom);
        return failed == 0;
    }
};

/// Gestures in the order of their list. Of many, a lookup only visits those that can be the first in its cell of the
/// screen, a square of a sixteenth: however many gestures there are, only few can.
class IndexEntries
{
public:
    void append(const IndexEntry &entry) { m_entries.append(entry); }

    void squeeze() { m_entries.squeeze(); }

    const QVector<IndexEntry> &all() const { return m_entries; }

    /// The first gesture whose zone contains the point, or null.
    const IndexEntry *first(const QPointF &point) const
    {
        if (m_entries.size() <= few || !isOnScreen(point)) {
            for (const IndexEntry &entry : m_entries) {
                if (entry.contains(point))
                    return &entry;
            }
            return nullptr;
        }
        for (const int i : candidates(cellOf(point.x()), cellOf(point.y()))) {
            if (m_entries.at(i).contains(point))
                return &m_entries.at(i);
        }
        return nullptr;
    }

private:
    static constexpr int few = 16;
    static constexpr int cells = 16; // in each direction; a power of two, so that the edges are exact
    static constexpr std::size_t cellCount = std::size_t(cells) * cells;

    // The part of a zone that is in a cell.
    struct Part
    {
        Part(const IndexEntry &entry, int column, int row)
            : left(std::max(entry.left, double(column) / cells)),
              right(std::min(entry.right, double(column + 1) / cells)), top(std::max(entry.top, double(row) / cells)),
              bottom(std::min(entry.bottom, double(row + 1) / cells))
        {
        }

        // Numbers that are none, which a zone may have, are always in a zone, as they are for a single lookup.
        bool isEmpty() const { return left > right || top > bottom; }
        bool isWithin(const IndexEntry &entry) const
        {
            return left >= entry.left && right <= entry.right && top >= entry.top && bottom <= entry.bottom;
        }

        double left, right, top, bottom;
    };

    struct Grid
    {
        std::array<QVector<int>, cellCount> candidates; // places in m_entries
        std::array<bool, cellCount> isFilled = {};
    };

    static bool isOnScreen(const QPointF &point)
    {
        return point.x() >= 0 && point.x() <= 1 && point.y() >= 0 && point.y() <= 1;
    }

    static int cellOf(double coordinate) { return std::min(static_cast<int>(coordinate * cells), cells - 1); }

    const QVector<int> &candidates(int column, int row) const
    {
        if (!m_grid)
            m_grid = std::make_shared<Grid>();
        const std::size_t cell = std::size_t(row) * cells + std::size_t(column);
        if (!m_grid->isFilled[cell])
            m_grid->candidates[cell] = foundIn(column, row);
        m_grid->isFilled[cell] = true;
        return m_grid->candidates[cell];
    }

    // A gesture is no candidate if an earlier one has all of its points in the cell.
    QVector<int> foundIn(int column, int row) const
    {
        QVector<int> found;
        for (int i = 0; i < m_entries.size(); ++i) {
            const Part part(m_entries.at(i), column, row);
            const auto hides = [&](int earlier) { return part.isWithin(m_entries.at(earlier)); };
            if (!m_entries.at(i).isNull() && !part.isEmpty() && std::none_of(found.cbegin(), found.cend(), hides))
                found.append(i);
        }
        return found;
    }

    QVector<IndexEntry> m_entries;
    mutable std::shared_ptr<Grid> m_grid; // made by the first lookup; each cell is filled by its first lookup
};

/// The gestures of one list by kind, direction and mode, each part in the order of the list: gestures that a lookup
/// does not ask for cost nothing.
class GestureIndex
{
public:
    explicit GestureIndex(const QList<Gesture *> &gestures)
    {
        for (int i = 0; i < gestures.size(); ++i) {
            if (gestures.at(i))
                add(IndexEntry(gestures.at(i), i));
        }
        for (IndexEntries &entries : m_ofAllModes)
            entries.squeeze();
        for (IndexEntries &entries : m_byMode)
            entries.squeeze();
    }

    /// The first gesture of this mode, kind and direction whose zone contains the position, or null.
    Gesture *find(const QString &mode, Gesture::Kind kind, Gesture::Direction direction, const QPointF &position) const
    {
        return first(mode, kind, direction,
                     [&position](const IndexEntries &entries) { return entries.first(position); });
    }

    /// The first gesture of this mode, kind and direction whose zone passes the test, or null.
    template <class Test>
    Gesture *findByZone(const QString &mode, Gesture::Kind kind, Gesture::Direction direction, const Test &test) const
    {
        return first(mode, kind, direction, [&test](const IndexEntries &entries) -> const IndexEntry * {
            const auto passes = [&test](const IndexEntry &entry) { return test(entry.gesture->zone()); };
            const auto found = std::find_if(entries.all().cbegin(), entries.all().cend(), passes);
            return found == entries.all().cend() ? nullptr : &*found;
        });
    }

private:
    // Callers may pass any numbers.
    static quint64 keyOf(int kind, int direction) { return quint64(quint32(kind)) << 32 | quint32(direction); }

    void add(const IndexEntry &entry)
    {
        const quint64 key = keyOf(entry.gesture->kind(), entry.gesture->direction());
        const QStringList &modes = entry.gesture->modes();
        for (const QString &mode : modes)
            m_byMode[{key, mode}].append(entry);
        if (modes.isEmpty())
            m_ofAllModes[key].append(entry);
    }

    template <class Search>
    Gesture *first(const QString &mode, Gesture::Kind kind, Gesture::Direction direction, const Search &search) const
    {
        const quint64 key = keyOf(kind, direction);
        const auto ofAllModes = m_ofAllModes.constFind(key);
        const IndexEntry *const always = ofAllModes == m_ofAllModes.cend() ? nullptr : search(*ofAllModes);
        const auto ofMode = m_byMode.constFind({key, mode});
        const IndexEntry *const named = ofMode == m_byMode.cend() ? nullptr : search(*ofMode);
        if (!always || !named)
            return always ? always->gesture : named ? named->gesture : nullptr;
        return always->position < named->position ? always->gesture : named->gesture;
    }

    QHash<quint64, IndexEntries> m_ofAllModes; // the gestures without a mode
    QHash<QPair<quint64, QString>, IndexEntries> m_byMode;
};

}
}
