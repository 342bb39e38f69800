#include <gesture_api/gestureserviceprovider.h>

#include "announcement.h"

#include <vellix/exitnotifier.h>
#include <vellix/platform/slateview.h>
#include <vellix/platform/vxcomponents.h>
#include <vellix/resolvedpath.h>

namespace vellix {
namespace gesture {

GestureServiceProvider::GestureServiceProvider(const FeaturesProvider *featuresProvider, QObject *parent)
    : QObject(parent), m_appId(ApplicationPathsConfiguration::currentAppId())
{
    connect(this, &GestureServiceProvider::appIdChanged, this, [this, featuresProvider](const QString &appId) {
        syncApp(appId, featuresProvider);
        installService(featuresProvider, appId, m_readonly);
    });
    connect(this, &GestureServiceProvider::readonlyChanged, this,
            [this, featuresProvider](bool readonly) { installService(featuresProvider, m_appId, readonly); });
    // Queued, so that QML can set its properties first.
    QMetaObject::invokeMethod(
            this,
            [this, featuresProvider] {
                // An existing watch may have a change to report: keep it.
                if (!m_watcher || m_watchedAppId != m_appId)
                    syncApp(m_appId, featuresProvider);
                if (!m_service)
                    installService(featuresProvider, m_appId, m_readonly);
            },
            Qt::QueuedConnection);
}

// The meta-object has this signature. NOLINTNEXTLINE(performance-unnecessary-value-param)
void GestureServiceProvider::setAppId(QString value)
{
    if (value == m_appId)
        return;
    m_appId = value;
    announce(this, &GestureServiceProvider::appIdChanged, value);
}

void GestureServiceProvider::setReadonly(bool value)
{
    if (value == m_readonly)
        return;
    m_readonly = value;
    announce(this, &GestureServiceProvider::readonlyChanged, value);
}

Either<Error, GestureService *> GestureServiceProvider::newGestureService(const FeaturesProvider *featuresProvider,
                                                                          const QString &appId, bool readonly,
                                                                          QObject *parent)
{
    return applicationPathsConfiguration().appPaths(appId).map([=](const ApplicationPaths &paths) {
        return new GestureService(paths, featuresProvider, readonly, parent);
    });
}

ApplicationPathsConfiguration GestureServiceProvider::applicationPathsConfiguration()
{
    static const ApplicationPathsConfiguration configuration =
            ApplicationPathsConfiguration::loadJson(
                    QStringLiteral("${SYSTEMDATA}/config/gestures/application_paths.json"))
                    .qGetOrErr(ApplicationPathsConfiguration::newDefault());
    return configuration;
}

void GestureServiceProvider::setService(GestureService *service)
{
    if (service == m_service)
        return;
    m_service = service;
    if (service) {
        connect(service, &QObject::destroyed, this,
                [this, service] { withdraw(this, &GestureServiceProvider::serviceChanged, service); });
    }
    announce(this, &GestureServiceProvider::serviceChanged, service);
}

void GestureServiceProvider::installService(const FeaturesProvider *featuresProvider, const QString &appId,
                                            bool readonly)
{
    if (m_service)
        m_service->deleteLater();
    setService(appId.isEmpty() ? nullptr
                               : newGestureService(featuresProvider, appId, readonly, this).getOrWarn(nullptr));
}

void GestureServiceProvider::loadService(const FeaturesProvider *featuresProvider)
{
    if (m_service || m_appId.isEmpty())
        return;
    setService(newGestureService(featuresProvider, m_appId, m_readonly, this).getOrWarn(nullptr));
}

void GestureServiceProvider::releaseService()
{
    if (!m_service)
        return;
    m_service->deleteLater();
    setService(nullptr);
}

void GestureServiceProvider::syncApp(const QString &appId, const FeaturesProvider *featuresProvider)
{
    if (m_watcher)
        m_watcher->deleteLater();
    m_watchedAppId.clear();
    if (appId.isEmpty())
        return;
    const auto paths = applicationPathsConfiguration().appPaths(appId);
    if (paths.isLeft())
        return;
    m_watchedAppId = appId;
    const QString currentPath = resolvedPath(paths.right().currentPath());
    m_watcher = components::fs::__watchFileChange(currentPath, this, [this, appId, featuresProvider] {
        // A replaced watch may still report once.
        if (appId == m_watchedAppId)
            replaceStaleService(featuresProvider);
    });
}

void GestureServiceProvider::replaceStaleService(const FeaturesProvider *featuresProvider)
{
    // Another program wrote newer bindings: the old service must not overwrite them at exit.
    if (m_service)
        disconnect(ExitNotifier::instance(), nullptr, m_service, nullptr);
    const QPointer<GestureServiceProvider> self(this); // a listener of the release may destroy it
    releaseService();
    if (self)
        loadService(featuresProvider);
}

}
}

QString app_name()
{
    const int pid = GetCurrentTask();
    if (pid < 1)
        return QStringLiteral("null pid");
    const TaskInfo *info = GetTaskInfo(pid);
    if (!info)
        return QStringLiteral("app info unavailable");
    return QString::number(pid) + QLatin1Char(':') + QString::fromUtf8(info->name);
}
