#include "provider.h"

using namespace vellix::gesture;

// One for all engines, and never destroyed: nobody knows when the last object that QML made is gone.
static const FeaturesProvider *deviceFeatures()
{
    static const auto *const features = new DefaultFeaturesProvider;
    return features;
}

QmlGestureServiceProvider::QmlGestureServiceProvider(QObject *parent) : GestureServiceProvider(deviceFeatures(), parent)
{
}
