#include "bench.h"

#include <gesture_api/configuration.h>
#include <gesture_api/gestureserviceprovider.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <malloc.h>

#include <memory>

using namespace vellix::gesture;

// Configurations that are large in one way only.

static QJsonArray named(const QString &prefix, int count)
{
    QJsonArray names;
    for (int i = 0; i < count; ++i)
        names.append(prefix + QString::number(i));
    return names;
}

static QJsonObject withActions(int count)
{
    QJsonArray actions;
    for (const QJsonValue path : named("a", count))
        actions.append(QJsonObject{{"path", path}, {"title", path}});
    return {{"actions", actions}, {"actionGroups", QJsonObject{{"all", named("a", count)}}}};
}

// All gestures offer one group.
static QByteArray sharedGroup(int gestures, int actions)
{
    QJsonObject document = withActions(actions);
    QJsonArray entries;
    for (const QJsonValue id : named("g", gestures)) {
        entries.append(QJsonObject{
                {"id", id}, {"kind", "tap"}, {"zone", "whole"}, {"availableActions", "all"}, {"defaultAction", "a0"}});
    }
    document.insert("gestures", entries);
    return QJsonDocument(document).toJson(QJsonDocument::Compact);
}

// Each of the modes has a gesture, and as many gestures have none.
static QByteArray manyModes(int modes, int withoutMode)
{
    QJsonObject document = withActions(1);
    QJsonArray entries;
    for (const QJsonValue mode : named("mode", modes)) {
        entries.append(QJsonObject{
                {"id", mode}, {"modes", QJsonArray{mode}}, {"kind", "tap"}, {"zone", "left"}, {"defaultAction", "a0"}});
    }
    for (const QJsonValue id : named("g", withoutMode))
        entries.append(QJsonObject{{"id", id}, {"kind", "tap"}, {"zone", "right"}, {"defaultAction", "a0"}});
    document.insert("gestures", entries);
    return QJsonDocument(document).toJson(QJsonDocument::Compact);
}

namespace {
class Shape
{
public:
    explicit Shape(const QByteArray &configuration) : m_tree(sizeS) { writeFile(m_tree.defaultFile(), configuration); }

    std::unique_ptr<GestureService> service() const
    {
        auto loaded = std::make_unique<GestureService>(ApplicationPaths({}, {}, m_tree.defaultFile()), nullptr, true);
        if (loaded->gestureList().isEmpty())
            qFatal("the shape does not load");
        return loaded;
    }

private:
    const SampleTree m_tree;
};
}

static Row timeRow(const QString &what, double nanoseconds, double goal)
{
    return {what, "-", "", "", nanoseconds / 1e6, "ms", goal};
}

static double mebibytesOfTheHeap()
{
    const auto info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd) / (1024 * 1024);
}

static std::vector<Row> groupOfManyActions()
{
    const Shape shape(sharedGroup(5000, 10000));
    const double before = mebibytesOfTheHeap();
    std::unique_ptr<GestureService> service;
    const double load = nanoseconds([&] {
        service = shape.service();
        return true;
    });
    const double kept = mebibytesOfTheHeap() - before;
    return {timeRow("load 5,000 gestures with a group of 10,000 actions", load, 200),
            {"heap kept by them", "-", "", "", kept, "MiB", 100}};
}

static std::vector<Row> clones()
{
    const auto small = Shape(sharedGroup(5000, 1000)).service();
    const auto large = Shape(sharedGroup(1000, 10000)).service();
    std::unique_ptr<GestureService> clone(small->clone());
    const auto release = [&clone] {
        return nanoseconds([&clone] {
            clone.reset();
            return true;
        });
    };
    const double deletion = release();
    clone.reset(small->clone());
    const double oneByOne = nanoseconds([&clone] {
        qDeleteAll(clone->gestureList());
        return true;
    });
    release();
    const double cloning = nanoseconds([&] {
        clone.reset(large->clone());
        return true;
    });
    release();
    return {timeRow("destroy a clone of 5,000 gestures with 1,000 actions", deletion, 100),
            timeRow("destroy its gestures one by one", oneByOne, 100),
            timeRow("clone 1,000 gestures with 10,000 actions", cloning, 100)};
}

static std::vector<Row> others()
{
    const auto one = Shape(sharedGroup(1, 10000)).service();
    const double tree = nanoseconds([&one] { return one->gestureList().first()->actionTree(); });
    const auto service = Shape(manyModes(1500, 1000)).service();
    const double index = nanoseconds([&service] {
        return service->findGesture("mode7", Gesture::Tap, Gesture::NoDirection, QPointF(0.9, 0.5));
    });
    return {timeRow("menu of 10,000 actions", tree, 50),
            timeRow("index of 1,500 modes and 1,000 gestures without", index, 5)};
}

// The kernel's watches of this process.
static int watches()
{
    int count = 0;
    const QStringList descriptors = QDir("/proc/self/fdinfo").entryList(QDir::Files);
    for (const QString &descriptor : descriptors) {
        QFile info("/proc/self/fdinfo/" + descriptor);
        if (info.open(QIODevice::ReadOnly))
            count += info.readAll().count("inotify wd:");
    }
    return count;
}

static Row providers()
{
    const SampleTree tree(sizeS);
    const SampleFeatures features;
    std::vector<std::unique_ptr<GestureServiceProvider>> all;
    const auto add = [&](int count) {
        for (int i = 0; i < count; ++i) {
            all.push_back(std::make_unique<GestureServiceProvider>(&features));
            all.back()->setAppId("sample");
        }
        return watches();
    };
    const int ofOne = add(1);
    const int ofAll = add(99);
    return {"watches of the kernel for 100 providers",
            "for one",
            QString::number(ofAll),
            QString::number(ofOne),
            double(ofAll) / ofOne,
            QString(),
            1};
}

std::vector<Row> benchShapes()
{
    std::vector<Row> rows;
    for (const auto &some : {groupOfManyActions(), clones(), others(), std::vector<Row>{providers()}})
        rows.insert(rows.end(), some.begin(), some.end());
    return rows;
}
