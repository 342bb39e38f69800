#include "bench.h"

#include <QVector>

#include <memory>

using namespace vellix::gesture;

// Every gesture offers every action.
static constexpr int gestureCount = 1000;
static constexpr int actionCount = 1000;

static std::unique_ptr<GestureService> sharingService()
{
    QList<Action *> actions;
    for (int i = 0; i < actionCount; ++i)
        actions.append(new Action(QString::number(i), {}, {}));
    QObject owner;
    QList<Gesture *> gestures;
    for (int i = 0; i < gestureCount; ++i) {
        gestures.append(new Gesture(QString::number(i), {}, Gesture::Tap, Gesture::wholeZone, Gesture::NoDirection,
                                    actions, actions.first(), nullptr, {}, &owner));
    }
    return std::make_unique<GestureService>(ApplicationPaths({}, {}, {}), nullptr, true,
                                            GestureService::GestureList([gestures] { return gestures; }), false);
}

// As many objects, and the same links both ways, by hand.
static double linksByHand(QVector<QVector<QObject *>> &users)
{
    return nanoseconds([&users] {
        QObject owner;
        for (int i = 0; i < gestureCount; ++i) {
            auto *object = new QObject(&owner);
            for (QVector<QObject *> &objects : users)
                objects.append(object);
        }
        for (QVector<QObject *> &objects : users)
            objects.resize(objects.size() - gestureCount);
        return true;
    });
}

std::vector<Row> benchClone()
{
    const auto service = sharingService();
    QVector<QVector<QObject *>> users(actionCount, QVector<QObject *>(gestureCount));
    const auto cloneAndDestroy = [&service] {
        return nanoseconds([&service] {
            delete service->clone();
            return true;
        });
    };
    return {ratioRow("clone and destroy a million links", "QObjects, lists of pointers",
                     compare(
                             cloneAndDestroy, [&users] { return linksByHand(users); }, 21),
                     1)};
}
