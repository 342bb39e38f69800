// One load and one lookup, for counting their instructions.

#include "sample.h"

#include <gesture_api/configuration.h>
#include <gesture_api/gestureservice.h>

#include <QCoreApplication>

using namespace vellix::gesture;

// The counter runs in these two functions only: scripts/bench contains their names.
extern "C" {
Q_DECL_EXPORT Q_NEVER_INLINE QList<Gesture *> counted_load(const QString &file, const FeaturesProvider *features,
                                                           QObject *owner);
Q_DECL_EXPORT Q_NEVER_INLINE Gesture *counted_lookup(const GestureService &service, const Touch &touch);
}

QList<Gesture *> counted_load(const QString &file, const FeaturesProvider *features, QObject *owner)
{
    return Configuration::loadJson(file, features, GestureService::predefinedZones, {}, owner).getOrErr({});
}

Gesture *counted_lookup(const GestureService &service, const Touch &touch)
{
    return service.findGesture(touch.mode, touch.kind, touch.direction, touch.position);
}

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const SampleTree tree(sizeS);
    const SampleFeatures features;
    QObject owner;
    const QList<Gesture *> gestures = counted_load(tree.defaultFile(), &features, &owner);

    const GestureService service(ApplicationPaths({}, {}, tree.defaultFile()), &features, true);
    Gesture *const last = service.gestureList().last();
    const Touch touch{last->modes().value(0), last->kind(), last->direction(), last->zone().center()};
    service.findGesture({}, Gesture::Tap, Gesture::NoDirection, {}); // the first lookup makes the index
    const bool found = counted_lookup(service, touch);
    return gestures.size() == sizeS.gestures && found ? 0 : 1;
}
