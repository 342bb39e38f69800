#include "provider.h"

using namespace vellix::gesture;

const FeaturesProvider *deviceFeatures()
{
    static const auto *const features = new DefaultFeaturesProvider;
    return features;
}

QmlGestureServiceProvider::QmlGestureServiceProvider(QObject *parent) : GestureServiceProvider(deviceFeatures(), parent)
{
}
