#include "provider.h"

using namespace vellix::gesture;

// One for all engines, and never destroyed: its last user in QML is not known.
static const FeaturesProvider *deviceFeatures()
{
    static const auto *const features = new DefaultFeaturesProvider;
    return features;
}

QmlGestureServiceProvider::QmlGestureServiceProvider(QObject *parent) : GestureServiceProvider(deviceFeatures(), parent)
{
}
