#pragma once

#include <gesture_api/applicationpaths.h>
#include <gesture_api/feature.h>
#include <gesture_api/gestureservice.h>

#include <vellix/either.h>
#include <vellix/export.h>

#include <QObject>
#include <QPointer>
#include <QString>

namespace vellix {
namespace gesture {

/// Keeps the gesture service of one application: builds it from the event loop, and builds it anew when
/// the application, the read-only switch or the user's file changes. A replaced service is released
/// with deleteLater(); one that was replaced because the file changed does not save any more at exit.
class GESTURE_API_EXPORT GestureServiceProvider : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString appId READ appId WRITE setAppId NOTIFY appIdChanged)
    Q_PROPERTY(bool readonly READ readonly WRITE setReadonly NOTIFY readonlyChanged)
    Q_PROPERTY(vellix::gesture::GestureService *service READ service NOTIFY serviceChanged)

public:
    /// The provider of features is not owned and outlives everything that is made with it.
    explicit GestureServiceProvider(const FeaturesProvider *featuresProvider, QObject *parent = nullptr);

    /// The running program's file name at start. Nothing is provided for an empty one.
    QString appId() const { return m_appId; }
    void setAppId(QString value);
    /// True at start.
    bool readonly() const { return m_readonly; }
    void setReadonly(bool value);
    /// The current service, a child of this provider, or null.
    GestureService *service() const { return m_service; }

    /// A new service of an application; fails with "app 'ID' is prohibited".
    static Either<Error, GestureService *> newGestureService(const FeaturesProvider *featuresProvider,
                                                             const QString &appId, bool readonly,
                                                             QObject *parent = nullptr);
    /// The file of all applications' paths, read once per process; built-in paths when there is none.
    static ApplicationPathsConfiguration applicationPathsConfiguration();

    /// Replaces the service; an empty `appId` only lets it go.
    void installService(const FeaturesProvider *featuresProvider, const QString &appId, bool readonly);
    /// Makes a service if there is none.
    void loadService(const FeaturesProvider *featuresProvider);
    void releaseService();
    /// Watches the user's file of this application in place of the one watched before.
    void syncApp(const QString &appId, const FeaturesProvider *featuresProvider);

Q_SIGNALS:
    void appIdChanged(QString value);
    void readonlyChanged(bool value);
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

/// The current task as "PID:NAME", or "null pid" or "app info unavailable".
GESTURE_API_EXPORT QString app_name();
