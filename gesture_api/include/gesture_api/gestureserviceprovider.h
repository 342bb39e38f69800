#pragma once

#include <gesture_api/applicationpaths.h>
#include <gesture_api/feature.h>
#include <gesture_api/gestureservice.h>

#include <vellix/either.h>
#include <vellix/export.h>

#include <QObject>
#include <QPointer>
#include <QString>

/// @file
/// The provider of an application's gestures.

namespace vellix {
namespace gesture {

/// Creates the service of an application from the event loop, and replaces it when the application, the read-only
/// property or the bindings file changes. A replaced service is released with deleteLater(). If it was replaced because
/// the file changed, it no longer saves at exit.
class GESTURE_API_EXPORT GestureServiceProvider : public QObject
{
    Q_OBJECT
    ///@{
    /// The functions of the same names, for QML.
    Q_PROPERTY(QString appId READ appId WRITE setAppId NOTIFY appIdChanged)
    Q_PROPERTY(bool readonly READ readonly WRITE setReadonly NOTIFY readonlyChanged)
    Q_PROPERTY(vellix::gesture::GestureService *service READ service NOTIFY serviceChanged)
    ///@}

public:
    /// The features provider is not owned. It must outlive all objects created with it.
    explicit GestureServiceProvider(const FeaturesProvider *featuresProvider, QObject *parent = nullptr);

    /// Initially the file name of the running program. There is no service if it is empty.
    QString appId() const { return m_appId; }
    /// Sets the application. Replaces the service and the watch immediately.
    void setAppId(QString value);
    /// Whether services are created read-only, so that they never save. Initially true.
    bool readonly() const { return m_readonly; }
    /// Replaces the service immediately and does not carry over unsaved choices. The old service still saves if the
    /// process ends before it is deleted.
    void setReadonly(bool value);
    /// The current service, a child of this provider. Null until the event loop runs, loadService() is called or a
    /// property changes, if the application is prohibited, and for a moment when the bindings file has changed.
    GestureService *service() const { return m_service; }

    /// A new service for an application. It belongs to `parent`, or to the caller if there is none. Its gestures are
    /// not read yet, so the only failure is "app 'ID' is prohibited".
    static Either<Error, GestureService *> newGestureService(const FeaturesProvider *featuresProvider,
                                                             const QString &appId, bool readonly,
                                                             QObject *parent = nullptr);
    /// The paths of all applications, read once per process. Falls back to built-in paths, and logs it, if the file is
    /// missing or invalid.
    static ApplicationPathsConfiguration applicationPathsConfiguration();

    /// Replaces the service, regardless of appId() and readonly(). If `appId` is empty, only releases it. If it is
    /// prohibited, also logs a warning.
    void installService(const FeaturesProvider *featuresProvider, const QString &appId, bool readonly);
    /// Creates the service of appId() immediately if there is none. If the application is prohibited, logs a warning.
    void loadService(const FeaturesProvider *featuresProvider);
    /// Releases the service: service() is null from now on, and the event loop deletes the object.
    void releaseService();
    /// Watches the bindings file of this application instead of the previous one. Watches nothing if `appId` is empty
    /// or prohibited.
    void syncApp(const QString &appId, const FeaturesProvider *featuresProvider);

Q_SIGNALS:
    /// Another application was set. The service is replaced during this signal.
    void appIdChanged(QString value);
    /// The property was changed. The service is replaced during this signal.
    void readonlyChanged(bool value);
    /// The service was replaced or released. Emitted twice when the bindings file has changed: with null, then with the
    /// new service.
    void serviceChanged(vellix::gesture::GestureService *value);

private:
    void setService(GestureService *service);
    void replaceStaleService(const FeaturesProvider *featuresProvider);

    QString m_appId;
    bool m_readonly = true;
    QPointer<GestureService> m_service;
    QPointer<QObject> m_watcher;
    QString m_watchedAppId;
};

}
}

/// The current task as "PID:NAME"; "null pid" if there is none, "app info unavailable" if its record is unknown.
GESTURE_API_EXPORT QString app_name();
