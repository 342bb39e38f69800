// The work of a program with a configuration of some size, piece by piece, for callgrind to count: counts GESTURES.
// Each piece writes a part of callgrind's output that has its name. scripts/bench reads them.

#include "sample.h"

#include <gesture_api/configuration.h>
#include <gesture_api/gesturekindfiltermodel.h>
#include <gesture_api/gestureserviceprovider.h>

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>

#include <valgrind/callgrind.h>

#include <algorithm>
#include <memory>

using namespace vellix::gesture;

template <class Piece>
static auto counted(const char *name, const Piece &piece)
{
    CALLGRIND_START_INSTRUMENTATION;
    CALLGRIND_ZERO_STATS;
    auto result = piece();
    CALLGRIND_DUMP_STATS_AT(name);
    CALLGRIND_STOP_INSTRUMENTATION;
    return result;
}

static QVariant readDocument(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).toVariant() : QVariant();
}

struct Sample
{
    explicit Sample(const Size &s) : size(s), tree(s) {}

    const Size size;
    const SampleTree tree;
    const SampleFeatures features;
    const QString file = tree.defaultFile();
};

static void countParse(const Sample &sample)
{
    if (!counted("parse", [&sample] { return readDocument(sample.file).isValid(); }))
        qFatal("the sample is not read");
}

static void countLoad(const Sample &sample)
{
    QObject owner;
    const auto loaded = counted("load", [&] {
        return Configuration::loadJson(sample.file, &sample.features, GestureService::predefinedZones, {}, &owner);
    });
    if (loaded.isLeft() || loaded.right().size() != sample.size.gestures)
        qFatal("the sample does not load");
}

static void countLibrary(const Sample &sample)
{
    QObject owner;
    const QVariant document = readDocument(sample.file);
    const auto read = counted("library", [&] {
        return Configuration::fromVariant(document, &sample.features, GestureService::predefinedZones, {}, &owner);
    });
    if (read.isLeft() || read.right().size() != sample.size.gestures)
        qFatal("the sample does not load");
}

static void countLookups(const GestureService &service)
{
    const std::vector<Touch> touches = sampleTouches(service.gestureList());
    const auto lookUp = [&] {
        return std::count_if(touches.begin(), touches.end(), [&service](const Touch &touch) {
            return service.findGesture(touch.mode, touch.kind, touch.direction, touch.position) != nullptr;
        });
    };
    lookUp(); // the first ones complete the index
    if (counted("lookups", lookUp) * 2 != static_cast<std::ptrdiff_t>(touches.size()))
        qFatal("not half of the touches hit");
}

// Only for ids and paths that need no escape.
static QByteArray bytesByHand(const QList<Gesture *> &gestures)
{
    std::vector<const Gesture *> sorted(gestures.cbegin(), gestures.cend());
    std::sort(sorted.begin(), sorted.end(), [](const Gesture *a, const Gesture *b) { return a->id() < b->id(); });
    QByteArray text = "{\n    \"actions\": {\n";
    for (const Gesture *gesture : sorted) {
        text += "        \"" + gesture->id().toUtf8() + "\": \"" + gesture->currentAction()->path().toUtf8()
                + (gesture == sorted.back() ? "\"\n" : "\",\n");
    }
    return text + "    },\n    \"version\": 1\n}\n";
}

// What a settings screen does.
static void countSettings(GestureService &service)
{
    std::unique_ptr<GestureService> clone;
    const bool merged = counted("clone", [&] {
        clone.reset(service.clone());
        return service.fastMerge(clone.get());
    });
    const bool haveTrees = counted("trees", [&clone] {
        const QList<Gesture *> &gestures = clone->gestureList();
        return std::all_of(gestures.cbegin(), gestures.cend(), [](Gesture *gesture) { return gesture->actionTree(); });
    });
    const int rows = counted("filter", [&clone] {
        GestureKindFilterModel model;
        model.setWhiteList({Gesture::Tap});
        model.setSourceModel(clone->gestures());
        for (int row = 0; row < model.rowCount(); ++row)
            model.data(model.index(row, 0));
        return model.rowCount();
    });
    const bool destroyed = counted("destruction", [&clone] {
        clone.reset();
        return true;
    });
    if (!merged || !haveTrees || rows < 1 || !destroyed)
        qFatal("the sample can not be edited");
    if (!counted("save", [&service] { return service.save(); }))
        qFatal("the sample can not be saved");
    QFile saved(service.paths().currentPath());
    const QByteArray text = counted("bytes by hand", [&service] { return bytesByHand(service.gestureList()); });
    if (!saved.open(QIODevice::ReadOnly) || saved.readAll() != text)
        qFatal("the two sides save different files");
}

static void countService(const Sample &sample)
{
    GestureService service(ApplicationPaths("sample", sample.tree.userFile(), sample.file), &sample.features, false);
    counted("first lookup", [&service] { return findFirst(service); });
    countLookups(service);
    countSettings(service);
    service.prune(); // nothing to save at exit
}

static void countRebuild(const Sample &sample)
{
    GestureServiceProvider provider(&sample.features);
    provider.setAppId("sample");
    if (provider.service()->gestureList().size() != sample.size.gestures)
        qFatal("the sample is not provided");
    const int rebuilt = counted("rebuild", [&] {
        provider.releaseService();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        provider.loadService(&sample.features);
        return provider.service()->gestureList().size();
    });
    if (rebuilt != sample.size.gestures)
        qFatal("the sample is not rebuilt");
}

// A refused document of 2,000 gestures costs no more than an accepted one.
static void countRefusals(const Sample &sample)
{
    const QString &file = sample.file;
    QObject owner;
    const auto load = [&] { return Configuration::loadJson(file, &sample.features, {}, {}, &owner).isLeft(); };
    const QByteArray whole = sampleConfiguration({"", 2000, 800});
    bool isRefused = true;
    const auto refuse = [&](const char *name, const QByteArray &document) {
        writeFile(file, document);
        isRefused = counted(name, load) && isRefused;
    };
    writeFile(file, whole);
    counted("parse to refuse", [&] { return readDocument(file).isValid(); });
    refuse("refusal, cut off", whole.left(whole.lastIndexOf('}')));
    refuse("refusal, first action", QByteArray(whole).replace(whole.indexOf("\"path\""), 6, "\"pith\""));
    refuse("refusal, last gesture", QByteArray(whole).replace(whole.lastIndexOf("\"kind\""), 6, "\"sort\""));
    if (!isRefused)
        qFatal("a wrong document is not refused");
}

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const QString gestures = app.arguments().value(1);
    const Size sizes[] = {sizeS, sizeM, sizeL, {"XL", 50000, 20000}};
    const auto size = std::find_if(std::begin(sizes), std::end(sizes),
                                   [&](const Size &one) { return QString::number(one.gestures) == gestures; });
    const QMap<QString, void (*)(const Sample &)> groups{{"parse", countParse},     {"load", countLoad},
                                                         {"library", countLibrary}, {"service", countService},
                                                         {"rebuild", countRebuild}, {"refusal", countRefusals}};
    const auto group = groups.value(app.arguments().value(2));
    if (size == std::end(sizes) || !group)
        qFatal("usage: counts 50|500|5000|50000 parse|load|library|service|rebuild|refusal");
    group(Sample(*size));
    return 0;
}
