#include "testing.h"

#include <analysis/lookup.h>
#include <analysis/reach.h>

#include <gesture_api/configuration.h>
#include <gesture_api/gestureservice.h>

#include <QRandomGenerator>

#include <algorithm>
#include <memory>
#include <vector>

using namespace analysis;
using namespace vellix::gesture;

namespace {
struct Entry
{
    QStringList modes;
    QRectF zone;
    Gesture::Kind kind = Gesture::Tap;
    Gesture::Direction direction = Gesture::NoDirection;
};
}

Q_DECLARE_METATYPE(Entry)

// The gestures "0", "1" and so on.
static QList<Gesture *> made(const QList<Entry> &entries, QObject *owner)
{
    QList<Gesture *> gestures;
    for (const Entry &entry : entries)
        gestures.append(new Gesture(QString::number(gestures.size()), entry.modes, entry.kind, entry.zone,
                                    entry.direction, {}, nullptr, nullptr, {}, owner));
    return gestures;
}

// "ID SHARE, ..." of the gestures that take touches from the last gesture in a mode.
static QString lossesOf(const QList<Entry> &entries, const Mode &mode)
{
    QObject owner;
    const QList<Gesture *> gestures = made(entries, &owner);
    const Reach reach = reachOf(gestures.last(), gestures, mode);
    QStringList texts;
    for (const Loss &loss : reach.losses)
        texts.append(loss.to->id() + QStringLiteral(" ") + QString::number(loss.share, 'g', 6));
    return texts.join(", ") + (reach.none ? " none" : "");
}

// Zones with common edges and outside the screen, without area and with negative sides; gestures of no, one and two
// modes, some of them not supported.
static QList<Gesture *> randomGestures(QRandomGenerator *random, QObject *owner)
{
    const auto edge = [&] { return (int(random->bounded(13)) - 2) / 8.0; };
    auto *const lacking = new Feature(
            "lacking", [] { return false; }, owner);
    QList<Gesture *> gestures;
    for (int i = 0; i < 24; ++i) {
        QStringList modes;
        for (const char *mode : {"a", "b"}) {
            if (random->bounded(3) == 0)
                modes << mode;
        }
        const double x = edge();
        const double y = edge();
        gestures.append(new Gesture(QString::number(i), modes, Gesture::Kind(random->bounded(4)),
                                    QRectF(x, y, edge() - x, edge() - y), Gesture::Direction(random->bounded(5)), {},
                                    nullptr, nullptr,
                                    random->bounded(4) ? QList<Feature *>() : QList<Feature *>{lacking}, owner));
    }
    return gestures;
}

static QList<Gesture *> sampleGestures(const char *application, const FeaturesProvider *features, QObject *owner)
{
    const auto loaded = Configuration::loadJson(
            QStringLiteral(SOURCE_DIR "/examples/data/vellix/config/gestures/apps/default/%1/cfg.json")
                    .arg(application),
            features, GestureService::predefinedZones, {}, owner);
    return loaded.isRight() ? loaded.right() : QList<Gesture *>();
}

// Named modes, and the unnamed one; corners and edges of zones as often as the area between them.
static Touch randomTouch(QRandomGenerator *random, const QList<Gesture *> &gestures)
{
    const Gesture *like = gestures.at(random->bounded(gestures.size()));
    QVector<Mode> modes{Mode("a"), Mode(QString()), std::nullopt};
    for (const QString &mode : like->modes())
        modes.append(mode);
    const auto coordinate = [&](double from, double to) {
        const double coordinates[] = {from, to, (from + to) / 2, random->bounded(1.0)};
        return coordinates[random->bounded(4)];
    };
    const QRectF zone = like->zone();
    return {modes.at(random->bounded(modes.size())),
            random->bounded(3) ? like->kind() : Gesture::Kind(random->bounded(4)),
            random->bounded(3) ? like->direction() : Gesture::Direction(random->bounded(5)),
            QPointF(coordinate(zone.left(), zone.right()), coordinate(zone.top(), zone.bottom()))};
}

class tst_Reach : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void onScreen_data()
    {
        QTest::addColumn<QRectF>("zone");
        QTest::addColumn<QRectF>("expected");
        QTest::newRow("inside") << QRectF(0.25, 0.25, 0.5, 0.25) << QRectF(0.25, 0.25, 0.5, 0.25);
        QTest::newRow("beyond two edges") << QRectF(0.5, -0.5, 4, 1) << QRectF(0.5, 0, 0.5, 0.5);
        QTest::newRow("negative sides") << QRectF(0.5, 0.5, -0.25, -0.5) << QRectF(0.25, 0, 0.25, 0.5);
        QTest::newRow("no width") << QRectF(0.5, 0.5, 0, 0.5) << QRectF();
        QTest::newRow("thinner than any touch") << QRectF(0.5, 0, 1e-13, 1) << QRectF();
        QTest::newRow("outside") << QRectF(1.5, 0, 1, 1) << QRectF();
        QTest::newRow("beside the edge") << QRectF(1, 0, 1, 1) << QRectF();
        QTest::newRow("beyond all numbers") << QRectF(-1e308, -1e308, 1.7e308, 1.7e308) << QRectF(0, 0, 1, 1);
    }

    void onScreen()
    {
        QFETCH(QRectF, zone);
        QTEST(analysis::onScreen(zone), "expected");
    }

    void losses_data()
    {
        QTest::addColumn<QList<Entry>>("entries");
        QTest::addColumn<QString>("mode"); // null for every other one
        QTest::addColumn<QString>("expected");
        const QRectF whole(0, 0, 1, 1);
        const QRectF left(0, 0, 0.5, 1);
        const QRectF top(0, 0, 1, 0.5);
        const QString any;
        using Entries = QList<Entry>;

        QTest::newRow("alone") << Entries{{{}, whole}} << any << "";
        QTest::newRow("the same zone") << Entries{{{}, left}, {{}, left}} << any << "0 1 none";
        QTest::newRow("a larger one") << Entries{{{}, whole}, {{}, left}} << any << "0 1 none";
        QTest::newRow("a smaller one") << Entries{{{}, left}, {{}, whole}} << any << "0 0.5";
        QTest::newRow("only an edge in common") << Entries{{{}, left}, {{}, {0.5, 0, 0.5, 1}}} << any << "";
        QTest::newRow("a common part goes to the first")
                << Entries{{{}, left}, {{}, top}, {{}, whole}} << any << "0 0.5, 1 0.25";
        QTest::newRow("two halves") << Entries{{{}, left}, {{}, {0.5, 0, 0.5, 1}}, {{}, whole}} << any
                                    << "0 0.5, 1 0.5 none";
        QTest::newRow("one that got nothing itself takes nothing")
                << Entries{{{}, left}, {{}, left}, {{}, whole}} << any << "0 0.5";
        QTest::newRow("a hole") << Entries{{{}, {0.25, 0.25, 0.5, 0.5}}, {{}, whole}} << any << "0 0.25";
        QTest::newRow("another kind") << Entries{{{}, whole, Gesture::Hold}, {{}, whole}} << any << "";
        QTest::newRow("another direction")
                << Entries{{{}, whole, Gesture::Swipe, Gesture::ToLeft}, {{}, whole, Gesture::Swipe, Gesture::ToTop}}
                << any << "";
        QTest::newRow("the same direction")
                << Entries{{{}, whole, Gesture::Swipe, Gesture::ToTop}, {{}, whole, Gesture::Swipe, Gesture::ToTop}}
                << any << "0 1 none";
        QTest::newRow("of this mode") << Entries{{{"m"}, whole}, {{}, whole}} << "m"
                                      << "0 1 none";
        QTest::newRow("of another mode") << Entries{{{"m"}, whole}, {{}, whole}} << "n"
                                         << "";
        QTest::newRow("of a mode, asked for all others") << Entries{{{"m"}, whole}, {{}, whole}} << any << "";
        QTest::newRow("of every mode") << Entries{{{}, whole}, {{"m"}, whole}} << "m"
                                       << "0 1 none";
        QTest::newRow("the mode without a name is a mode")
                << Entries{{{""}, whole}, {{}, whole}} << QStringLiteral("") << "0 1 none";
        QTest::newRow("an empty zone takes nothing") << Entries{{{}, {0, 0, 0, 1}}, {{}, whole}} << any << "";
        QTest::newRow("negative sides take") << Entries{{{}, {1, 1, -1, -1}}, {{}, whole}} << any << "0 1 none";
        QTest::newRow("of what is on the screen") << Entries{{{}, left}, {{}, {0, 0, 2, 1}}} << any << "0 0.5";
        QTest::newRow("a sliver is nobody's")
                << Entries{{{}, {0, 0, 0.1 + 0.2, 1}}, {{}, {0.3, 0, 0.7, 1}}} << any << "";
        QTest::newRow("but for a sliver")
                << Entries{{{}, {0, 0, 0.3, 1}}, {{}, {0, 0, 0.1 + 0.2, 1}}} << any << "0 1 none";
    }

    void losses()
    {
        QFETCH(QList<Entry>, entries);
        QFETCH(QString, mode);
        QTEST(lossesOf(entries, mode.isNull() ? Mode() : Mode(mode)), "expected");
    }

    void modes()
    {
        QObject owner;
        const QRectF whole(0, 0, 1, 1);
        QCOMPARE(modesOf(made({{{"b", "c"}, whole}, {{"a"}, whole}}, &owner)),
                 (QVector<Mode>{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}));
        QCOMPARE(modesOf(made({{{}, whole}, {{"a"}, whole}}, &owner)), (QVector<Mode>{QStringLiteral("a"), {}}));
        QCOMPARE(modesOf({}), QVector<Mode>());
    }

    void lookup_data()
    {
        QTest::addColumn<QString>("application"); // empty for random gestures
        QTest::addColumn<quint32>("seed");
        for (quint32 seed = 0; seed < 40; ++seed)
            QTest::addRow("random %u", seed) << QString() << seed;
        QTest::addRow("reader") << "reader" << 1U;
        QTest::addRow("notes") << "notes" << 2U;
    }

    // The lookup finds the first gesture that fails no test.
    void lookup()
    {
        QFETCH(QString, application);
        QFETCH(quint32, seed);
        QRandomGenerator random(seed);
        QObject owner;
        const DefaultFeaturesProvider features;
        const QList<Gesture *> gestures = application.isEmpty()
                ? randomGestures(&random, &owner)
                : sampleGestures(qPrintable(application), &features, &owner);
        QVERIFY(!gestures.isEmpty());
        const GestureService service(ApplicationPaths("app", {}, {}), &features, true,
                                     GestureService::GestureList([&gestures] { return gestures; }), false);

        int found = 0;
        QMap<std::optional<Test>, int> failed;
        for (int i = 0; i < 1000; ++i) {
            const Touch touch = randomTouch(&random, gestures);
            const auto first = std::find_if(gestures.cbegin(), gestures.cend(),
                                            [&](const Gesture *gesture) { return !firstFailed(gesture, touch); });
            const Gesture *expected =
                    service.findGesture(touch.mode.value_or("unnamed"), touch.kind, touch.direction, *touch.position);
            QCOMPARE(first == gestures.cend() ? -1 : int(first - gestures.cbegin()),
                     expected ? service.gestureList().indexOf(const_cast<Gesture *>(expected)) : -1);
            found += expected ? 1 : 0;
            for (const Gesture *gesture : gestures)
                ++failed[firstFailed(gesture, touch)];
        }
        QVERIFY2(found > 100 && found < 900, qPrintable(QString::number(found)));
        if (application.isEmpty())
            QCOMPARE(failed.size(), 5); // each test, and none
    }

    void namesOfTests()
    {
        QCOMPARE(nameOf(Test::Modes), QString("mode"));
        QCOMPARE(nameOf(Test::Kind), QString("kind"));
        QCOMPARE(nameOf(Test::Direction), QString("direction"));
        QCOMPARE(nameOf(Test::Zone), QString("zone"));
    }

    // Zones on the lines of a grid, so that each of its squares is wholly inside or outside: the lookup at its centre
    // finds its gesture.
    void againstGrid_data()
    {
        QTest::addColumn<quint32>("seed");
        for (quint32 seed = 0; seed < 60; ++seed)
            QTest::addRow("%u", seed) << seed;
    }

    void againstGrid()
    {
        QFETCH(quint32, seed);
        QRandomGenerator random(seed);
        const int squares = 16;
        const auto line = [&](int from) { return from + int(random.bounded(squares + 1 - from)); };
        QObject owner;
        QList<Entry> entries;
        for (int i = 0; i < 12; ++i) {
            const int x = line(0);
            const int y = line(0);
            Entry entry{{}, QRectF(x, y, line(x) - x, line(y) - y)};
            entry.zone = QRectF(entry.zone.topLeft() / squares, entry.zone.size() / squares);
            if (random.bounded(2))
                entry.modes << QString(QLatin1Char(char('a' + random.bounded(3))));
            entry.kind = random.bounded(4) ? Gesture::Tap : Gesture::Hold;
            entries.append(entry);
        }
        const QList<Gesture *> gestures = made(entries, &owner);

        for (const Mode &mode : {Mode("a"), Mode("b"), Mode()}) {
            for (const Gesture *gesture : gestures) {
                QMap<const Gesture *, int> takers;
                QVector<QPointF> free;
                int all = 0;
                for (int square = 0; square < squares * squares; ++square) {
                    const QPointF centre((square % squares + 0.5) / squares, (square / squares + 0.5) / squares);
                    if (!gesture->zone().contains(centre))
                        continue;
                    ++all;
                    const Gesture *first = *std::find_if(gestures.cbegin(), gestures.cend(), [&](const Gesture *g) {
                        return g == gesture
                                || (g->kind() == gesture->kind() && g->zone().contains(centre)
                                    && (g->modes().isEmpty() || (mode && g->modes().contains(*mode))));
                    });
                    if (first == gesture)
                        free.append(centre);
                    else
                        ++takers[first];
                }
                const Reach reach = reachOf(gesture, gestures, mode);
                QCOMPARE(reach.none, free.isEmpty());
                QCOMPARE(reach.losses.size(), takers.size());
                for (const Loss &loss : reach.losses)
                    QCOMPARE(loss.share, double(takers.value(loss.to)) / all);
                for (const QPointF &centre : free) {
                    // Disjoint: in one piece only.
                    QCOMPARE(std::count_if(reach.left.cbegin(), reach.left.cend(),
                                           [&](const QRectF &piece) { return piece.contains(centre); }),
                             1);
                }
            }
        }
    }
};

QTEST_GUILESS_MAIN(tst_Reach)
#include "tst_reach.moc"
