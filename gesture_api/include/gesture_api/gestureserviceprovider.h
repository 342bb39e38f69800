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
/// Where an application gets its gestures.

namespace vellix {
namespace gesture {

/// Keeps the gesture service of one application: builds it from the event loop, and builds it anew when
/// the application, the read-only switch or the user's file changes. A replaced service is released
/// with deleteLater(); one that was replaced because the file changed does not save any more at exit.
class GESTURE_API_EXPORT GestureServiceProvider : public QObject
{
    Q_OBJECT
    ///@{
    /// What the functions of this name return and set, for QML.
    Q_PROPERTY(QString appId READ appId WRITE setAppId NOTIFY appIdChanged)
    Q_PROPERTY(bool readonly READ readonly WRITE setReadonly NOTIFY readonlyChanged)
    Q_PROPERTY(vellix::gesture::GestureService *service READ service NOTIFY serviceChanged)
    ///@}

public:
    /// The provider of features is not owned and outlives everything that is made with it.
    explicit GestureServiceProvider(const FeaturesProvider *featuresProvider, QObject *parent = nullptr);

    /// The running program's file name at start. Nothing is provided for an empty one.
    QString appId() const { return m_appId; }
    /// Another application: the service and the watch are replaced at once.
    void setAppId(QString value);
    /// Whether the services are made so that they never save. True at start.
    bool readonly() const { return m_readonly; }
    /// Replaces the service at once, so that choices that were not saved are lost to the new one; the old one still
    /// saves if the process ends before it is deleted.
    void setReadonly(bool value);
    /// The current service, a child of this provider. Null until the event loop has run or one of the setters was
    /// called, for an application that is prohibited, and for a moment when the user's file has changed.
    GestureService *service() const { return m_service; }

    /// A new service of an application, which belongs to `parent` or, without one, to the caller. Its gestures are
    /// not read yet, so that this fails with "app 'ID' is prohibited" alone.
    static Either<Error, GestureService *> newGestureService(const FeaturesProvider *featuresProvider,
                                                             const QString &appId, bool readonly,
                                                             QObject *parent = nullptr);
    /// The file of all applications' paths, read once per process; built-in paths when there is none or it cannot be
    /// used, which is told on the log.
    static ApplicationPathsConfiguration applicationPathsConfiguration();

    /// Replaces the service, whatever appId() and readonly() say; an empty `appId` only lets it go.
    void installService(const FeaturesProvider *featuresProvider, const QString &appId, bool readonly);
    /// Makes a service of appId() if there is none.
    void loadService(const FeaturesProvider *featuresProvider);
    /// Lets the service go: service() is null from now on, the object is deleted by the event loop.
    void releaseService();
    /// Watches the user's file of this application in place of the one watched before; an empty or prohibited one
    /// has none.
    void syncApp(const QString &appId, const FeaturesProvider *featuresProvider);

Q_SIGNALS:
    /// Another application was set. The service is made anew in the course of this signal.
    void appIdChanged(QString value);
    /// The switch was turned. The service is made anew in the course of this signal.
    void readonlyChanged(bool value);
    /// There is another service, or none. When the user's file has changed it comes twice, first with null.
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
