#pragma once

#include <gesture_api/gestureserviceprovider.h>

/// The provider that QML can make: its features are the device's own.
class QmlGestureServiceProvider : public vellix::gesture::GestureServiceProvider
{
    Q_OBJECT

public:
    explicit QmlGestureServiceProvider(QObject *parent = nullptr);
};
