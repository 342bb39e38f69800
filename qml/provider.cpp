#include "provider.h"

using namespace vellix::gesture;

// One for all engines, and never destroyed: the last user in QML is unknown.
static const FeaturesProvider *deviceFeatures()
{
    static const auto *const features = new DefaultFeaturesProvider;
    return features;
}

QmlGestureServiceProvider::QmlGestureServiceProvider(QObject *parent) : GestureServiceProvider(deviceFeatures(), parent)
{
}
