#include <gesture_api/applicationpaths.h>

#include "resolvedpath.h"
#include "varianttype.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace vellix {
namespace gesture {

static Left<Error> fail(int line, const QString &message)
{
    return Left(Error({"../../../gesture_api/src/applicationpaths", line}, message.toStdString()));
}

ApplicationPaths::ApplicationPaths(const QString &appId, const QString &currentPath, const QString &defaultPath)
    : m_appId(appId), m_currentPath(currentPath), m_defaultPath(defaultPath)
{
}

QString ApplicationPaths::appId() const
{
    return m_appId;
}

QString ApplicationPaths::currentPath() const
{
    return m_currentPath;
}

QString ApplicationPaths::defaultPath() const
{
    return m_defaultPath;
}

bool ApplicationPaths::currentPathExists() const
{
    return PathResolver::newDefault().exists(m_currentPath.toStdString());
}

ApplicationPathsConfiguration::ApplicationPathsConfiguration(const QString &currentPath, const QString &defaultPath,
                                                             const QString &fileName, const QStringList &prohibitedApps)
    : m_currentPath(currentPath), m_defaultPath(defaultPath), m_fileName(fileName), m_prohibitedApps(prohibitedApps)
{
}

ApplicationPathsConfiguration ApplicationPathsConfiguration::newDefault()
{
    // The tool that dumps the types of QML modules loads every plugin; it must not make gesture files.
    return ApplicationPathsConfiguration(QStringLiteral("${USERDATA}/gestures/apps/current"),
                                         QStringLiteral("${SYSTEMDATA}/config/gestures/apps/default"),
                                         QStringLiteral("cfg.json"), {QStringLiteral("qmlplugindump")});
}

Either<Error, ApplicationPathsConfiguration> ApplicationPathsConfiguration::fromVariant(const QVariant &value)
{
    if (!isType(value, QMetaType::QVariantMap))
        return fail(__LINE__, QStringLiteral("expected map<>"));
    const QVariantMap root = value.toMap();
    const auto current = root.constFind(QStringLiteral("current"));
    const auto defaults = root.constFind(QStringLiteral("default"));
    const auto fileName = root.constFind(QStringLiteral("filename"));
    const auto prohibited = root.constFind(QStringLiteral("prohibitedApps"));
    const auto absent = root.constEnd();

    if (current == absent)
        return fail(__LINE__, QStringLiteral("field `current` must be set"));
    if (defaults == absent)
        return fail(__LINE__, QStringLiteral("field `default` must be set"));
    if (fileName == absent)
        return fail(__LINE__, QStringLiteral("field `filename` must be set"));
    if (!isType(*current, QMetaType::QString))
        return fail(__LINE__, QStringLiteral("field `current` must have type `string`"));
    if (!isType(*defaults, QMetaType::QString))
        return fail(__LINE__, QStringLiteral("field `default` must have type `string`"));
    if (!isType(*fileName, QMetaType::QString))
        return fail(__LINE__, QStringLiteral("field `filename` must have type `string`"));
    if (prohibited != absent && !isType(*prohibited, QMetaType::QStringList)
        && !isType(*prohibited, QMetaType::QVariantList))
        return fail(__LINE__, QStringLiteral("field 'prohibitedApps' must have type list<str>"));

    return Right(ApplicationPathsConfiguration(current->toString(), defaults->toString(), fileName->toString(),
                                               prohibited == absent ? QStringList() : prohibited->toStringList()));
}

// A pipe would block and a device might never end, also one that comes after the path was looked at. A file's reason is
// empty.
static QString openRegular(QFile &file)
{
    const QString irregular = QStringLiteral("Not a regular file");
    const QFileInfo info(file);
    if (info.exists() && !info.isFile() && !info.isDir())
        return irregular;
    if (!info.isNativePath()) // no name at all, or a file within the program
        return file.open(QIODevice::ReadOnly) ? QString() : file.errorString();

    int descriptor;
    do {
        descriptor = ::open(QFile::encodeName(file.fileName()), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    } while (descriptor < 0 && errno == EINTR);
    if (descriptor < 0)
        return qt_error_string(errno);
    struct stat status = {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        close(descriptor);
        return S_ISDIR(status.st_mode) ? QStringLiteral("file to open is a directory") : irregular;
    }
    return file.open(descriptor, QIODevice::ReadOnly, QFile::AutoCloseHandle) ? QString() : file.errorString();
}

Either<Error, ApplicationPathsConfiguration> ApplicationPathsConfiguration::loadJson(const QString &path)
{
    const QString resolved = resolvedPath(path);
    QFile file(resolved);
    const QString obstacle = openRegular(file);
    if (!obstacle.isEmpty())
        return fail(__LINE__, obstacle + QStringLiteral(" (path: ") + resolved + QLatin1Char(')'));
    return fromVariant(QJsonDocument::fromJson(file.readAll()).toVariant());
}

Either<Error, ApplicationPaths> ApplicationPathsConfiguration::appPaths(const QString &appId) const
{
    if (m_prohibitedApps.contains(appId))
        return fail(__LINE__, QStringLiteral("app '") + appId + QStringLiteral("' is prohibited"));
    const QString file = QLatin1Char('/') + appId + QLatin1Char('/') + m_fileName;
    return Right(ApplicationPaths(appId, m_currentPath + file, m_defaultPath + file));
}

QString ApplicationPathsConfiguration::currentAppId()
{
    return QFileInfo(QCoreApplication::applicationFilePath()).fileName();
}

QString ApplicationPathsConfiguration::currentPath() const
{
    return m_currentPath;
}

QString ApplicationPathsConfiguration::defaultPath() const
{
    return m_defaultPath;
}

QString ApplicationPathsConfiguration::fileName() const
{
    return m_fileName;
}

}
}
