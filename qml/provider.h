#pragma once

#include <gesture_api/gestureserviceprovider.h>

/// The provider that QML can create, with the features of the device.
class QmlGestureServiceProvider : public vellix::gesture::GestureServiceProvider
{
    Q_OBJECT

public:
    explicit QmlGestureServiceProvider(QObject *parent = nullptr);
};
