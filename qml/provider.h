#pragma once

#include <gesture_api/gestureserviceprovider.h>

/// The features of the device: one provider for all engines, never destroyed, as the last user in QML is unknown.
const vellix::gesture::FeaturesProvider *deviceFeatures();

/// The provider that QML can create, with the features of the device.
class QmlGestureServiceProvider : public vellix::gesture::GestureServiceProvider
{
    Q_OBJECT

public:
    explicit QmlGestureServiceProvider(QObject *parent = nullptr);
};
