#include "bench.h"

#include <gesture_api/gestureservice.h>

#include <QGuiApplication>
#include <QKeyEvent>
#include <QtGui/private/qshortcutmap_p.h>

using namespace vellix::gesture;

static GestureService *makeService(const QString &file, const FeaturesProvider &features, QObject *parent)
{
    return new GestureService(ApplicationPaths({}, {}, file), &features, true, parent);
}

// A service with the sample, and touches for it.
class LookupBench
{
public:
    explicit LookupBench(const Size &size)
        : m_tree(size), m_service(makeService(m_tree.defaultFile(), m_features, &m_owner)),
          m_touches(sampleTouches(m_service->gestureList()))
    {
        for (const Gesture *gesture : m_service->gestureList())
            m_plain.push_back({gesture->modes(), gesture->kind(), gesture->direction(), gesture->zone()});
        int hits = 0;
        for (const Touch &touch : m_touches) {
            const Gesture *found = find(touch);
            const PlainGesture *plain = findPlain(touch);
            hits += found ? 1 : 0;
            const int index = found ? m_service->gestureList().indexOf(const_cast<Gesture *>(found)) : -1;
            if (index != (plain ? plain - m_plain.data() : -1))
                qFatal("the two sides find different gestures");
        }
        if (hits * 2 != static_cast<int>(m_touches.size()))
            qFatal("not half of the touches hit");
    }

    double ours() const
    {
        return perTouch([this](const Touch &touch) { return find(touch); });
    }
    double plainLoop() const
    {
        return perTouch([this](const Touch &touch) { return findPlain(touch); });
    }

private:
    struct PlainGesture
    {
        QStringList modes;
        int kind;
        int direction;
        QRectF zone;
    };

    template <class Find>
    double perTouch(const Find &find) const
    {
        const auto all = [&] {
            std::size_t sum = 0;
            for (const Touch &touch : m_touches)
                sum += reinterpret_cast<std::size_t>(find(touch));
            return sum;
        };
        return nanoseconds(all) / static_cast<double>(m_touches.size());
    }

    const Gesture *find(const Touch &touch) const
    {
        return m_service->findGesture(touch.mode, touch.kind, touch.direction, touch.position);
    }

    const PlainGesture *findPlain(const Touch &touch) const
    {
        for (const PlainGesture &gesture : m_plain) {
            if (gesture.kind == touch.kind && gesture.direction == touch.direction
                && (gesture.modes.isEmpty() || gesture.modes.contains(touch.mode))
                && gesture.zone.contains(touch.position))
                return &gesture;
        }
        return nullptr;
    }

    const SampleTree m_tree;
    const SampleFeatures m_features;
    QObject m_owner;
    const GestureService *const m_service;
    const std::vector<Touch> m_touches;
    std::vector<PlainGesture> m_plain;
};

// As many shortcuts as there are gestures; every other pressed key is one of them.
class ShortcutBench : public QObject
{
public:
    explicit ShortcutBench(int shortcuts)
    {
        const auto anywhere = [](QObject *, Qt::ShortcutContext) { return true; };
        for (int i = 0; i < shortcuts; ++i)
            m_map.addShortcut(this, QKeySequence(firstKey + 2 * i), Qt::ApplicationShortcut, anywhere);
        for (int i = 0; i < 4096; ++i) {
            const int key = firstKey + (i * 7919) % (2 * shortcuts);
            m_keys.emplace_back(QEvent::ShortcutOverride, key, Qt::NoModifier, QString(QChar(key)));
        }
    }

    double perKey()
    {
        m_dispatched = 0;
        const double all = nanoseconds([this] {
            for (QKeyEvent &event : m_keys)
                m_map.tryShortcut(&event);
            return m_dispatched;
        });
        if (m_dispatched * 2 != static_cast<int>(m_keys.size()))
            qFatal("not half of the keys were dispatched but %d", m_dispatched);
        return all / static_cast<double>(m_keys.size());
    }

protected:
    bool event(QEvent *event) override
    {
        m_dispatched += event->type() == QEvent::Shortcut;
        return true;
    }

private:
    static constexpr int firstKey = 0x4e00; // any letters work

    QShortcutMap m_map;
    std::vector<QKeyEvent> m_keys;
    int m_dispatched = 0;
};

static Comparison besidePlainLoop(const Size &size, int turns)
{
    const LookupBench bench(size);
    return compare([&] { return bench.ours(); }, [&] { return bench.plainLoop(); }, turns);
}

static Comparison besideShortcuts(const Size &size)
{
    const LookupBench bench(size);
    ShortcutBench shortcuts(size.gestures);
    return compare([&] { return bench.ours(); }, [&] { return shortcuts.perKey(); }, 21);
}

// The same tap, among gestures of its own kind only and among a hundred times as many of other kinds.
static Comparison amongOthers()
{
    const auto serviceAmong = [](int others, QObject *owner) {
        QList<Gesture *> gestures;
        for (int i = 0; i < others; ++i) {
            const auto kind = i % 2 ? Gesture::Hold : Gesture::Swipe;
            gestures.append(new Gesture(QString::number(i), {"reading"}, kind, Gesture::wholeZone, Gesture::ToTop, {},
                                        nullptr, nullptr, {}, owner));
        }
        for (int i = 0; i < 50; ++i)
            gestures.append(new Gesture("tap", {"reading"}, Gesture::Tap, QRectF(i * 0.02, 0, 0.01, 1),
                                        Gesture::NoDirection, {}, nullptr, nullptr, {}, owner));
        return std::make_unique<GestureService>(ApplicationPaths({}, {}, {}), nullptr, true,
                                                GestureService::GestureList([gestures] { return gestures; }), false);
    };
    QObject owner;
    const auto many = serviceAmong(5000, &owner);
    const auto alone = serviceAmong(0, &owner);
    const auto time = [](const GestureService &service) {
        return nanoseconds([&] {
                   std::size_t sum = 0;
                   for (int i = 0; i < 4096; ++i)
                       sum += reinterpret_cast<std::size_t>(service.findGesture(
                               "reading", Gesture::Tap, Gesture::NoDirection, QPointF(i / 4096.0, 0.5)));
                   return sum;
               })
                / 4096;
    };
    return compare([&] { return time(*many); }, [&] { return time(*alone); }, 51);
}

std::vector<Row> benchLookup()
{
    const QString loop = "plain loop";
    const QString shortcuts = "QShortcutMap";
    return {
            ratioRow("lookup at S", loop, besidePlainLoop(sizeS, 201), 1.3),
            ratioRow("lookup at M", loop, besidePlainLoop(sizeM, 101), 1),
            ratioRow("lookup at L", loop, besidePlainLoop(sizeL, 21), 1),
            ratioRow("lookup among 5,000 of other kinds", "alone", amongOthers(), 1.1),
            ratioRow("lookup at S", shortcuts, besideShortcuts(sizeS), 1),
            ratioRow("lookup at M", shortcuts, besideShortcuts(sizeM), 1),
            ratioRow("lookup at L", shortcuts, besideShortcuts(sizeL), 0.5),
    };
}

Comparison lookupAt(const Size &size)
{
    return besidePlainLoop(size, 21);
}
