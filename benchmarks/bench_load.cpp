#include "bench.h"

#include <gesture_api/configuration.h>
#include <gesture_api/gestureservice.h>

#include <KConfig>
#include <KConfigGroup>
#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <malloc.h>

#include <memory>

using namespace vellix::gesture;

static QVariant readDocument(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("can not read %s", qPrintable(fileName));
    return QJsonDocument::fromJson(file.readAll()).toVariant();
}

static auto load(const QString &fileName, const FeaturesProvider &features, QObject *owner)
{
    return Configuration::loadJson(fileName, &features, GestureService::predefinedZones, {}, owner);
}

// Both sides free the document within the measured time, as a load does. They free the gestures later, as these are its
// result.
static double documentTime(const QString &fileName)
{
    return nanoseconds([&] { return readDocument(fileName).isValid(); });
}

static double loadTime(const QString &fileName, int gestures)
{
    const SampleFeatures features;
    QObject owner;
    return nanoseconds([&] {
        const auto loaded = load(fileName, features, &owner);
        if (loaded.isLeft() || loaded.right().size() != gestures)
            qFatal("the sample does not load");
        return loaded;
    });
}

// Every field of every entry, as text or as a list of texts, the cheapest possible forms.
static double kconfigTime(const QString &fileName, int gestures)
{
    struct Entry
    {
        QString text[5];
        QStringList lists[4];
    };
    return nanoseconds([&] {
        const KConfig config(fileName, KConfig::SimpleConfig);
        std::vector<Entry> entries;
        int found = 0;
        for (const QString &name : config.groupList()) {
            const KConfigGroup group(&config, name);
            if (name.startsWith(QLatin1String("Gesture "))) {
                ++found;
                entries.push_back(
                        {{group.readEntry("id"), group.readEntry("kind"), group.readEntry("direction"),
                          group.readEntry("zone")},
                         {group.readEntry("modes", QStringList()), group.readEntry("availableActions", QStringList()),
                          group.readEntry("defaultAction", QStringList())}});
            } else if (name.startsWith(QLatin1String("Action "))) {
                entries.push_back(
                        {{group.readEntry("path")},
                         {group.readEntry("titles", QStringList()), group.readEntry("features", QStringList())}});
            } else {
                for (const QString &key : group.keyList())
                    entries.push_back({{key}, {group.readEntry(key, QStringList())}});
            }
        }
        if (found != gestures)
            qFatal("the INI file does not load");
        return entries;
    });
}

// The wait of an application at its first touch: the list and the index of the lookups.
static double firstLookupTime(const QString &fileName)
{
    const SampleFeatures features;
    const GestureService service(ApplicationPaths({}, {}, fileName), &features, true);
    return nanoseconds([&] {
        const Gesture *found = findFirst(service);
        if (!found)
            qFatal("the sample does not load");
        return found;
    });
}

// The average of many services, since single blocks that the allocator holds back count as used.
static double bytesPerGesture(const Size &size)
{
    const SampleTree tree(size);
    const SampleFeatures features;
    const auto loaded = [&] {
        auto service = std::make_unique<GestureService>(ApplicationPaths({}, {}, tree.defaultFile()), &features, true);
        findFirst(*service);
        return service;
    };
    loaded(); // the first load of a process makes objects that all share
    const std::size_t before = mallinfo2().uordblks;
    std::vector<std::unique_ptr<GestureService>> services;
    for (int i = 0; i < 50; ++i)
        services.push_back(loaded());
    return static_cast<double>(mallinfo2().uordblks - before) / 50 / size.gestures;
}

// Counted by a program of its own: here, the counting would slow down the other rows.
static double peakOfLoad()
{
    QProcess program;
    program.start(QCoreApplication::applicationDirPath() + "/peak", QStringList());
    bool isNumber = false;
    const double bytes = program.waitForFinished() ? program.readAll().toDouble(&isNumber) : 0;
    if (!isNumber)
        qFatal("the peak of a load was not counted");
    return bytes;
}

static Comparison loadBesideDocument(const Size &size, int turns)
{
    const SampleTree tree(size);
    return compare([&] { return loadTime(tree.defaultFile(), size.gestures); },
                   [&] { return documentTime(tree.defaultFile()); }, turns);
}

static Comparison firstLookupBesideDocument(const Size &size, int turns)
{
    const SampleTree tree(size);
    return compare([&] { return firstLookupTime(tree.defaultFile()); },
                   [&] { return documentTime(tree.defaultFile()); }, turns);
}

static Comparison loadBesideKConfig(const Size &size, int turns)
{
    const SampleTree tree(size);
    const QString ini = QFileInfo(tree.defaultFile()).path() + "/cfg.ini";
    writeFile(ini, sampleIni(size));
    return compare([&] { return loadTime(tree.defaultFile(), size.gestures); },
                   [&] { return kconfigTime(ini, size.gestures); }, turns);
}

// Alternates the two sizes.
static Comparison largeBesideMedium()
{
    const SampleTree large(sizeL);
    const QString largeFile = large.defaultFile();
    const SampleTree medium(sizeM);
    const QString mediumFile = medium.defaultFile();
    return compare([&] { return loadTime(largeFile, sizeL.gestures) / sizeL.gestures; },
                   [&] { return loadTime(mediumFile, sizeM.gestures) / sizeM.gestures; }, 21);
}

std::vector<Row> benchLoad()
{
    const QString parse = "read, parse, toVariant";
    return {
            shown(ratioRow("load at S", parse, loadBesideDocument(sizeS, 301), 0.8)),
            shown(ratioRow("load at M", parse, loadBesideDocument(sizeM, 61), 0.58)),
            shown(ratioRow("load at L", parse, loadBesideDocument(sizeL, 21), 0.75)),
            shown(ratioRow("load and first lookup at S", parse, firstLookupBesideDocument(sizeS, 301), 0.85)),
            shown(ratioRow("load and first lookup at M", parse, firstLookupBesideDocument(sizeM, 61), 0.75)),
            shown(ratioRow("load and first lookup at L", parse, firstLookupBesideDocument(sizeL, 21), 0.95)),
            ratioRow("load per gesture at L", "at M", largeBesideMedium(), 1.3),
            ratioRow("load at S", "KConfig", loadBesideKConfig(sizeS, 101), 0.8),
            ratioRow("load at M", "KConfig", loadBesideKConfig(sizeM, 21), 0.8),
            ratioRow("load at L", "KConfig", loadBesideKConfig(sizeL, 11), 0.8),
            {"heap kept per gesture at S", "-", "", "", bytesPerGesture(sizeS) / 1024, "KiB", 1.25},
            {"peak of a load's heap at S", "-", "", "", peakOfLoad() / 1000, "KB", 130},
    };
}

static double refusalTime(const QString &fileName)
{
    const SampleFeatures features;
    QObject owner;
    return nanoseconds([&] {
        const auto refused = load(fileName, features, &owner);
        if (refused.isRight())
            qFatal("it was not refused");
        return refused;
    });
}

static QByteArray withZones(const QByteArray &configuration, const QJsonValue &zones)
{
    QJsonObject document = QJsonDocument::fromJson(configuration).object();
    document.insert("zones", zones);
    return QJsonDocument(document).toJson();
}

std::vector<Row> benchRefusal()
{
    const Size tenMegabytes{"10 MB", 22000, 8000};
    const SampleTree tree(tenMegabytes);
    const QByteArray whole = sampleConfiguration(tenMegabytes);
    const QString wholeFile = tree.defaultFile();
    const QString refusedFile = QFileInfo(wholeFile).path() + "/refused.json";
    const auto row = [&](const char *what, const QByteArray &refused, const QString &beside, const auto &besideTime) {
        writeFile(refusedFile, refused);
        return shown(ratioRow(QString("refuse 10 MB %1").arg(what), beside,
                              compare([&] { return refusalTime(refusedFile); }, besideTime, 15), 1.1));
    };
    const QString parse = "read, parse, toVariant";
    const auto readRefused = [&] { return documentTime(refusedFile); };

    QByteArray lastWrong = whole;
    lastWrong.replace(whole.lastIndexOf("\"kind\""), 6, "\"sort\"");
    const QByteArray compact =
            QJsonDocument::fromJson(sampleConfiguration({"", 45000, 16000})).toJson(QJsonDocument::Compact);
    const QString compactFile = QFileInfo(wholeFile).path() + "/compact.json";
    writeFile(compactFile, compact);
    // What the host's reader does not understand, it leaves to Qt's parser, which then starts again.
    return {
            row("in one line, cut off", compact.left(compact.size() - 2), "that of the whole",
                [&] { return documentTime(compactFile); }),
            row("of brackets", QByteArray(whole.size(), '['), parse, readRefused),
            row("for its first section", withZones(whole, 5), parse, readRefused),
            row("for its last gesture", lastWrong, "load", [&] { return loadTime(wholeFile, tenMegabytes.gestures); }),
    };
}

Comparison loadAt(const Size &size)
{
    return loadBesideDocument(size, 21);
}
