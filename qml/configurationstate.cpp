#include "configurationstate.h"

#include "provider.h"
#include "words.h"

#include <gesture_api/configuration.h>
#include <gesture_api/gestureservice.h>
#include <gesture_api/gestureserviceprovider.h>

#include <vellix/resolvedpath.h>

#include <QFileInfo>

namespace vellix {
namespace gesture {

using Bindings = Configuration::ActionBindings;

ConfigurationState::ConfigurationState(QObject *parent) : QObject(parent), m_paths(QString(), QString(), QString()) {}

void ConfigurationState::setAppId(const QString &appId)
{
    if (appId == m_appId)
        return;
    m_appId = appId;
    refresh();
}

void ConfigurationState::refresh()
{
    m_problem.clear();
    m_notice.clear();
    m_hasChoices = false;
    m_defaults.clear();
    examine();
    Q_EMIT changed();
}

void ConfigurationState::examine()
{
    if (m_appId.isEmpty()) {
        m_problem = tr("No application was named.");
        return;
    }
    const auto paths = GestureServiceProvider::applicationPathsConfiguration().appPaths(m_appId);
    if (paths.isLeft()) {
        m_problem = tr("“%1” may not have gestures of its own.").arg(m_appId);
        return;
    }
    m_paths = paths.right();
    const QString file = resolvedPath(m_paths.defaultPath());
    if (!QFileInfo::exists(file)) {
        m_problem = tr("There is no application “%1”: no gestures were found in %2.").arg(m_appId, file);
        return;
    }
    if (const auto error = load({}, &m_defaults)) {
        m_problem = tr("The gestures of “%1” cannot be read: %2.").arg(m_appId, words::error(*error));
        return;
    }
    examineChoices();
}

void ConfigurationState::examineChoices()
{
    m_hasChoices = m_paths.currentPathExists();
    const QString place = unwritablePlace();
    const QString future = place.isEmpty() ? tr("The file is kept as “%1.rejected” when the settings save.")
                                                     .arg(QFileInfo(m_paths.currentPath()).fileName())
                                           : tr("Choices cannot be saved: %1 may not be written.").arg(place);
    if (!m_hasChoices) {
        m_notice = place.isEmpty() ? QString() : future;
        return;
    }

    const auto bindings = Bindings::loadJson(m_paths.currentPath());
    if (bindings.isRight()) {
        m_notice = place.isEmpty() ? QString() : future;
        if (const auto error = load(bindings.right(), nullptr))
            m_problem = tr("Your choices do not fit the gestures of “%1”: %2. “Defaults” in the settings forgets them.")
                                .arg(m_appId, words::error(*error));
    } else if (const auto *other = boost::get<Error>(&bindings.left().value)) {
        m_notice =
                tr("Your choices cannot be read (%1), so the defaults are shown. %2").arg(words::error(*other), future);
    } else {
        m_notice = tr("Your choices were saved by another version of this device, so the defaults are shown. %1")
                           .arg(future);
    }
}

boost::optional<Error> ConfigurationState::load(const QMap<QString, QString> &bindings, QVariantMap *actions) const
{
    QObject owner;
    const auto gestures = Configuration::loadJson(m_paths.defaultPath(), deviceFeatures(),
                                                  GestureService::predefinedZones, bindings, &owner);
    if (gestures.isLeft())
        return gestures.left();
    for (const Gesture *gesture : gestures.right()) {
        const Action *action = gesture->currentAction();
        if (actions && action)
            actions->insert(gesture->id(), QVariantMap{{"path", action->path()}, {"title", action->lastTitle()}});
    }
    return {};
}

// The bindings file, or the file or directory that prevents its creation.
QString ConfigurationState::unwritablePlace() const
{
    const QString file = resolvedPath(m_paths.currentPath());
    QFileInfo place(file);
    while (!place.exists() && !place.isRoot())
        place.setFile(place.path());
    const bool fits = place.filePath() == file ? place.isFile() : place.isDir();
    return fits && place.isWritable() ? QString() : place.filePath();
}

QString ConfigurationState::saveProblem(const QString &reason) const
{
    const QString place = unwritablePlace();
    return place.isEmpty() ? tr("The choices were not saved: %1.").arg(reason)
                           : tr("The choices were not saved: %1 may not be written.").arg(place);
}

}
}
