// Loading and lookup, each beside what cannot be avoided, in one run on one machine.

#include <gesture_api/configuration.h>
#include <gesture_api/gestureservice.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

using namespace vellix::gesture;

static const QStringList modes{QStringLiteral("reading"), QStringLiteral("selecting"), QStringLiteral("menu")};

static QString actionPath(int i)
{
    return QStringLiteral("group%1/action%2").arg(i / 8).arg(i);
}

// Shaped like the sample configuration: groups, fallback lists, inline actions, named and own zones.
static QJsonObject configuration(int gestures, int actions)
{
    QJsonArray actionSection;
    for (int i = 0; i < actions; ++i) {
        actionSection.append(
                QJsonObject{{QStringLiteral("path"), actionPath(i)},
                            {QStringLiteral("titles"),
                             QJsonArray{QStringLiteral("Group %1").arg(i / 8), QStringLiteral("Action %1").arg(i)}}});
    }
    QJsonObject groups;
    for (int i = 0; i < actions; i += 10) {
        QJsonArray members;
        for (int j = i; j < i + 10 && j < actions; ++j)
            members.append(actionPath(j));
        groups.insert(QStringLiteral("group%1").arg(i / 10), members);
    }
    const QStringList kinds{QStringLiteral("tap"), QStringLiteral("hold"), QStringLiteral("swipe"),
                            QStringLiteral("drag")};
    const QStringList directions{QStringLiteral("toLeft"), QStringLiteral("toRight"), QStringLiteral("toTop"),
                                 QStringLiteral("toBottom")};
    QJsonArray gestureSection;
    for (int i = 0; i < gestures; ++i) {
        QJsonObject gesture{{QStringLiteral("id"), QStringLiteral("gesture%1").arg(i)},
                            {QStringLiteral("kind"), kinds.at(i % 4)},
                            {QStringLiteral("modes"), QJsonArray{modes.at(i % 3)}},
                            {QStringLiteral("availableActions"), QStringLiteral("group%1").arg(i % groups.size())}};
        if (i % 4 >= 2)
            gesture.insert(QStringLiteral("direction"), directions.at(i / 4 % 4));
        if (i % 2)
            gesture.insert(QStringLiteral("zone"), QStringLiteral("center"));
        else
            gesture.insert(QStringLiteral("zone"),
                           QJsonObject{{QStringLiteral("x"), (i % 10) * 0.1},
                                       {QStringLiteral("y"), 0.3},
                                       {QStringLiteral("w"), 0.1},
                                       {QStringLiteral("h"), 0.2}});
        if (i % 5 == 0)
            gesture.insert(QStringLiteral("defaultAction"), QJsonArray{actionPath(i % actions), actionPath(0)});
        else
            gesture.insert(QStringLiteral("defaultAction"), actionPath(i % actions));
        if (i % 7 == 0)
            gesture.insert(QStringLiteral("availableActions"),
                           QJsonArray{actionPath(1),
                                      QJsonObject{{QStringLiteral("path"), QStringLiteral("inline%1").arg(i)},
                                                  {QStringLiteral("title"), QStringLiteral("Inline")}}});
        gestureSection.append(gesture);
    }
    return {{QStringLiteral("actions"), actionSection},
            {QStringLiteral("actionGroups"), groups},
            {QStringLiteral("gestures"), gestureSection}};
}

// The configuration of one size, as a file and loaded.
class Fixture
{
public:
    Fixture(int gestures, int actions)
        : file(directory.filePath(QStringLiteral("cfg.json"))), service(ApplicationPaths({}, {}, file), nullptr, true)
    {
        QFile out(file);
        if (!out.open(QIODevice::WriteOnly))
            qFatal("can not write %s", qPrintable(file));
        out.write(QJsonDocument(configuration(gestures, actions)).toJson());
        out.close();
        if (service.gestureList().size() != gestures)
            qFatal("the configuration does not load");
    }

    static const Fixture &of(const benchmark::State &state)
    {
        static std::vector<std::unique_ptr<Fixture>> all;
        for (const auto &fixture : all) {
            if (fixture->service.gestureList().size() == state.range(0))
                return *fixture;
        }
        all.push_back(std::make_unique<Fixture>(state.range(0), state.range(1)));
        return *all.back();
    }

    QTemporaryDir directory;
    QString file;
    GestureService service;
};

static void parseFloor(benchmark::State &state)
{
    const Fixture &fixture = Fixture::of(state);
    for (auto _ : state) {
        QFile file(fixture.file);
        if (!file.open(QIODevice::ReadOnly))
            qFatal("can not read");
        QVariant document = QJsonDocument::fromJson(file.readAll()).toVariant();
        benchmark::DoNotOptimize(document);
    }
}

static void load(benchmark::State &state)
{
    const Fixture &fixture = Fixture::of(state);
    for (auto _ : state) {
        QObject owner;
        auto gestures = Configuration::loadJson(fixture.file, nullptr, GestureService::predefinedZones, {}, &owner);
        benchmark::DoNotOptimize(gestures);
    }
}

namespace {
struct Touch
{
    QString mode;
    Gesture::Kind kind;
    Gesture::Direction direction;
    QPointF position;
};

struct PlainGesture
{
    QStringList modes;
    int kind;
    int direction;
    QRectF zone;
};
}

static std::vector<Touch> touches()
{
    QRandomGenerator random(1);
    std::vector<Touch> all;
    for (int i = 0; i < 4096; ++i) {
        const bool hit = i % 2;
        all.push_back({modes.at(random.bounded(3)), static_cast<Gesture::Kind>(random.bounded(4)),
                       static_cast<Gesture::Direction>(random.bounded(5)),
                       hit ? QPointF(0.5, 0.5) : QPointF(random.generateDouble(), random.generateDouble())});
    }
    return all;
}

static void lookupFloor(benchmark::State &state)
{
    std::vector<PlainGesture> plain;
    for (const Gesture *gesture : Fixture::of(state).service.gestureList())
        plain.push_back({gesture->modes(), gesture->kind(), gesture->direction(), gesture->zone()});
    const std::vector<Touch> all = touches();
    std::size_t next = 0;
    for (auto _ : state) {
        const Touch &touch = all[next++ % all.size()];
        const PlainGesture *found = nullptr;
        for (const PlainGesture &gesture : plain) {
            if (gesture.kind == touch.kind && gesture.direction == touch.direction
                && (gesture.modes.isEmpty() || gesture.modes.contains(touch.mode))
                && gesture.zone.contains(touch.position)) {
                found = &gesture;
                break;
            }
        }
        benchmark::DoNotOptimize(found);
    }
}

static void lookup(benchmark::State &state)
{
    const GestureService &service = Fixture::of(state).service;
    const std::vector<Touch> all = touches();
    std::size_t next = 0;
    for (auto _ : state) {
        const Touch &touch = all[next++ % all.size()];
        Gesture *found = service.findGesture(touch.mode, touch.kind, touch.direction, touch.position);
        benchmark::DoNotOptimize(found);
    }
}

static void sizes(benchmark::internal::Benchmark *bench)
{
    bench->Args({50, 60})->Args({500, 300})->Args({5000, 2000});
}

BENCHMARK(parseFloor)->Apply(sizes);
BENCHMARK(load)->Apply(sizes);
BENCHMARK(lookupFloor)->Apply(sizes);
BENCHMARK(lookup)->Apply(sizes);
BENCHMARK_MAIN();
