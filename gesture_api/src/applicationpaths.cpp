#include <gesture_api/applicationpaths.h>

#include "descriptor.h"
#include "varianttype.h"

#include <vellix/platform/vxcomponents.h>
#include <vellix/resolvedpath.h>

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

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
    // The tool that dumps the types of QML modules loads every plugin; it must not create gesture files.
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

// Opens without waiting, even if the file has been replaced since the check. Returns the error if it cannot.
static QString openAtOnce(QFile &file)
{
    if (!QFileInfo(file).isNativePath()) // an empty name, or a Qt resource
        return file.open(QIODevice::ReadOnly) ? QString() : file.errorString();
    const int descriptor = openFile(QFile::encodeName(file.fileName()).toStdString(), O_RDONLY | O_NONBLOCK | O_NOCTTY);
    const bool open = descriptor >= 0 && file.open(descriptor, QIODevice::ReadOnly, QFile::AutoCloseHandle);
    return open ? QString() : qt_error_string(errno);
}

// Reads a file that the platform's loader refuses, to say why in this family's own words.
static Either<Error, QVariant> refusedJson(const QString &path)
{
    const QString resolved = resolvedPath(path);
    const auto unreadable = [&resolved](int line, const QString &reason) {
        return fail(line, reason + QStringLiteral(" (path: ") + resolved + QLatin1Char(')'));
    };

    // A pipe would block and a device might never end.
    const QFileInfo info(resolved);
    if (info.exists() && !info.isFile() && !info.isDir())
        return unreadable(__LINE__, QStringLiteral("Not a regular file"));

    QFile file(resolved);
    const QString obstacle = openAtOnce(file);
    if (!obstacle.isEmpty())
        return unreadable(__LINE__, obstacle);

    struct stat status;
    const bool known = fstat(file.handle(), &status) == 0;
    if (known && S_ISDIR(status.st_mode))
        return unreadable(__LINE__, QStringLiteral("file to open is a directory"));
    if (known && !S_ISREG(status.st_mode))
        return unreadable(__LINE__, QStringLiteral("Not a regular file"));
    return Right(QJsonDocument::fromJson(file.readAll()).toVariant());
}

Either<Error, ApplicationPathsConfiguration> ApplicationPathsConfiguration::loadJson(const QString &path)
{
    // The configuration comes through the same reader, so that a start needs no other.
    const Either<Error, QVariant> value = components::VariantLoader::loadJson(path);
    return value.isRight() ? fromVariant(value.right()) : refusedJson(path).flatMap(fromVariant);
}

Either<Error, ApplicationPaths> ApplicationPathsConfiguration::appPaths(const QString &appId) const
{
    if (m_prohibitedApps.contains(appId))
        return fail(__LINE__, QStringLiteral("app '") + appId + QStringLiteral("' is prohibited"));
    const QString file = QLatin1Char('/') + appId + QLatin1Char('/') + m_fileName;
    return Right(ApplicationPaths(appId, m_currentPath + file, m_defaultPath + file));
}

// The file of this program as the kernel names it, without links; empty if it is not there any more.
static QByteArray programFile()
{
    char path[PATH_MAX];
    const ssize_t size = readlink("/proc/self/exe", path, sizeof path - 1);
    path[qMax<ssize_t>(size, 0)] = '\0';
    struct stat status;
    return lstat(path, &status) == 0 && S_ISREG(status.st_mode) ? QByteArray(path) : QByteArray();
}

QString ApplicationPathsConfiguration::currentAppId()
{
    // Qt gives the same answer, but it formats, walks and keeps paths for it, which a start would not need otherwise.
    const QByteArray file = QCoreApplication::instance() ? programFile() : QByteArray();
    if (!file.isEmpty())
        return QFile::decodeName(file.mid(file.lastIndexOf('/') + 1));
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
