#pragma once

#include <vellix/either.h>
#include <vellix/export.h>

#include <QString>
#include <QStringList>
#include <QVariant>

namespace vellix {
namespace gesture {

/// The paths of an application's two files. The prefixes "${USERDATA}" and "${SYSTEMDATA}" are expanded only when a
/// file is accessed.
class GESTURE_API_EXPORT ApplicationPaths
{
public:
    /// Takes two paths, with or without a prefix. Checks nothing.
    ApplicationPaths(const QString &appId, const QString &currentPath, const QString &defaultPath);

    /// The application of these files, usually the file name of its program.
    QString appId() const;
    /// The user's bindings file.
    QString currentPath() const;
    /// The configuration.
    QString defaultPath() const;
    /// Whether the bindings file exists now. Without it, the defaults apply.
    bool currentPathExists() const;

private:
    QString m_appId;
    QString m_currentPath;
    QString m_defaultPath;
};

/// The rules for the paths of all applications, and the prohibited applications.
class GESTURE_API_EXPORT ApplicationPathsConfiguration
{
public:
    /// Takes the directory of the bindings files, the directory of the configurations, the file name of both files of
    /// an application, and the ids of the prohibited applications.
    ApplicationPathsConfiguration(const QString &currentPath, const QString &defaultPath, const QString &fileName,
                                  const QStringList &prohibitedApps);

    /// The built-in rules, used if there is no paths file.
    static ApplicationPathsConfiguration newDefault();
    /// Reads a QVariantMap of the strings "current", "default" and "filename" and the list "prohibitedApps". Without
    /// the list, no application is prohibited.
    ///
    /// Fails with "expected map<>", "field `NAME` must be set", "field `NAME` must have type `string`", or
    /// "field 'prohibitedApps' must have type list<str>".
    static Either<Error, ApplicationPathsConfiguration> fromVariant(const QVariant &value);
    /// Reads a file; expands a path prefix. If the file cannot be read, fails with "REASON (path: PATH)" and the
    /// expanded path, else like fromVariant(). A file that is not JSON fails with "expected map<>".
    static Either<Error, ApplicationPathsConfiguration> loadJson(const QString &path);

    /// The paths of an application: DIRECTORY/ID/FILENAME for each of the two directories. Fails with
    /// "app 'ID' is prohibited".
    Either<Error, ApplicationPaths> appPaths(const QString &appId) const;
    /// The file name of the running program.
    static QString currentAppId();

    /// The directory of the bindings files. Its prefix is not expanded.
    QString currentPath() const;
    /// The directory of the configurations. Its prefix is not expanded.
    QString defaultPath() const;
    /// The file name of both files of an application.
    QString fileName() const;

private:
    QString m_currentPath;
    QString m_defaultPath;
    QString m_fileName;
    QStringList m_prohibitedApps;
};

}
}
