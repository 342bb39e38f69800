#pragma once

#include <vellix/either.h>
#include <vellix/export.h>

#include <QString>
#include <QStringList>
#include <QVariant>

namespace vellix {
namespace gesture {

/// The two files of one application. Paths keep the prefixes "${USERDATA}" and "${SYSTEMDATA}" until
/// the file system is touched.
class GESTURE_API_EXPORT ApplicationPaths
{
public:
    ApplicationPaths(const QString &appId, const QString &currentPath, const QString &defaultPath);

    QString appId() const;
    /// The user's action bindings.
    QString currentPath() const;
    /// The gesture configuration of the system.
    QString defaultPath() const;
    bool currentPathExists() const;

private:
    QString m_appId;
    QString m_currentPath;
    QString m_defaultPath;
};

/// The rules that give every application its files, and the applications that have none.
class GESTURE_API_EXPORT ApplicationPathsConfiguration
{
public:
    /// Two directories that hold one directory for each application, the name of the file in it, and
    /// the applications that get no paths.
    ApplicationPathsConfiguration(const QString &currentPath, const QString &defaultPath, const QString &fileName,
                                  const QStringList &prohibitedApps);

    /// The rules when there is no file of them.
    static ApplicationPathsConfiguration newDefault();
    /// A file without "prohibitedApps" prohibits nothing.
    static Either<Error, ApplicationPathsConfiguration> fromVariant(const QVariant &value);
    static Either<Error, ApplicationPathsConfiguration> loadJson(const QString &path);

    /// Fails with "app 'ID' is prohibited".
    Either<Error, ApplicationPaths> appPaths(const QString &appId) const;
    /// The file name of the running program.
    static QString currentAppId();

    QString currentPath() const;
    QString defaultPath() const;
    QString fileName() const;

private:
    QString m_currentPath;
    QString m_defaultPath;
    QString m_fileName;
    QStringList m_prohibitedApps;
};

}
}
