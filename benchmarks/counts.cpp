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

// The document is freed within the load, so here, too.
static void countLoads(const QString &file, int gestures, const FeaturesProvider &features)
{
    QObject owner;
    const auto load = [&] {
        return Configuration::loadJson(file, &features, GestureService::predefinedZones, {}, &owner).getOrErr({});
    };
    const QVariant document = readDocument(file);
    const QList<Gesture *> read = counted("library", [&] {
        return Configuration::fromVariant(document, &features, GestureService::predefinedZones, {}, &owner)
                .getOrErr({});
    });
    const QList<Gesture *> loaded = counted("load", load);
    const bool parsed = counted("parse", [&] { return readDocument(file).isValid(); });
    if (!parsed || loaded.size() != gestures || read.size() != gestures)
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

static void countRebuild(const FeaturesProvider &features, int gestures)
{
    GestureServiceProvider provider(&features);
    provider.setAppId("sample");
    if (provider.service()->gestureList().size() != gestures)
        qFatal("the sample is not provided");
    const int rebuilt = counted("rebuild", [&] {
        provider.releaseService();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        provider.loadService(&features);
        return provider.service()->gestureList().size();
    });
    if (rebuilt != gestures)
        qFatal("the sample is not rebuilt");
}

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const int gestures = app.arguments().value(1).toInt();
    const Size sizes[] = {sizeS, sizeM, sizeL, {"XL", 50000, 20000}};
    const auto size = std::find_if(std::begin(sizes), std::end(sizes),
                                   [gestures](const Size &one) { return one.gestures == gestures; });
    if (size == std::end(sizes))
        qFatal("usage: counts 50|500|5000|50000");

    const SampleTree tree(*size);
    const SampleFeatures features;
    countLoads(tree.defaultFile(), gestures, features);
    GestureService service(ApplicationPaths("sample", tree.userFile(), tree.defaultFile()), &features, false);
    counted("first lookup", [&service] { return findFirst(service); });
    countLookups(service);
    countSettings(service);
    countRebuild(features, gestures);
    service.prune(); // nothing to save at exit
    return 0;
}
