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
    /// Two paths, with or without a prefix. Nothing is checked.
    ApplicationPaths(const QString &appId, const QString &currentPath, const QString &defaultPath);

    /// The application that has these files, mostly the file name of its program.
    QString appId() const;
    /// The user's action bindings.
    QString currentPath() const;
    /// The gesture configuration of the system.
    QString defaultPath() const;
    /// Whether there is a file of the user's now; without one the defaults hold.
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
    /// Reads a QVariantMap of the strings "current", "default" and "filename" and the list "prohibitedApps";
    /// without the list nothing is prohibited.
    ///
    /// Fails with "expected map<>", "field `NAME` must be set", "field `NAME` must have type `string`", or
    /// "field 'prohibitedApps' must have type list<str>".
    static Either<Error, ApplicationPathsConfiguration> fromVariant(const QVariant &value);
    /// Reads a file; a path prefix is expanded. Fails with "REASON (path: PATH)" for a file that cannot be read, and
    /// as fromVariant() does; what is not JSON is no map.
    static Either<Error, ApplicationPathsConfiguration> loadJson(const QString &path);

    /// The files of one application: DIRECTORY/ID/FILENAME in the two directories. Fails with
    /// "app 'ID' is prohibited".
    Either<Error, ApplicationPaths> appPaths(const QString &appId) const;
    /// The file name of the running program.
    static QString currentAppId();

    /// The directory of the users' bindings, its prefix not expanded.
    QString currentPath() const;
    /// The directory of the system's configurations, its prefix not expanded.
    QString defaultPath() const;
    /// What an application's file is called in its directory in each of the two.
    QString fileName() const;

private:
    QString m_currentPath;
    QString m_defaultPath;
    QString m_fileName;
    QStringList m_prohibitedApps;
};

}
}
