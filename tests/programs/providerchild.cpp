// Prints whether a provider ends with a service for a program of this one's name.

#include <gesture_api/feature.h>
#include <gesture_api/gestureserviceprovider.h>

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    vellix::gesture::DefaultFeaturesProvider features;
    vellix::gesture::GestureServiceProvider provider(&features);
    // After the provider's own work in the event loop.
    QMetaObject::invokeMethod(&app, &QCoreApplication::quit, Qt::QueuedConnection);
    app.exec();
    std::puts(provider.service() ? "a service" : "no service");
    return 0;
}
