#include "testtree.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTemporaryDir>

static QString root()
{
    static const QTemporaryDir directory;
    return directory.path();
}

static QString configurationFile(const QString &appId)
{
    return root() + "/system/vellix/config/gestures/apps/default/" + appId + "/cfg.json";
}

static QString userDirectory()
{
    return root() + "/user/vellix";
}

static QString choicesFile(const QString &appId)
{
    return userDirectory() + "/gestures/apps/current/" + appId + "/cfg.json";
}

static QString read(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

static void write(const QString &name, const QString &text)
{
    QDir().mkpath(QFileInfo(name).path());
    QSaveFile file(name);
    const QByteArray bytes = text.toUtf8();
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        qFatal("can not write %s", qPrintable(name));
}

void TestTree::useForThisProcess()
{
    qputenv("XDG_DATA_DIRS", QFile::encodeName(root() + "/system"));
    qputenv("XDG_DATA_HOME", QFile::encodeName(root() + "/user"));
    write(root() + "/system/vellix/config/gestures/application_paths.json",
          R"({"current": "${USERDATA}/gestures/apps/current", "default": "${SYSTEMDATA}/config/gestures/apps/default",
              "filename": "cfg.json", "prohibitedApps": ["launcher"]})");
    TestTree().reset();
}

void TestTree::reset()
{
    QDir(userDirectory()).removeRecursively();
    QDir(root() + "/system/vellix/config/gestures/apps").removeRecursively();
    for (const char *appId : {"reader", "notes"})
        setConfiguration(appId, read(QString(SAMPLE) + "/apps/default/" + appId + "/cfg.json"));
}

QString TestTree::configuration(const QString &appId) const
{
    return read(configurationFile(appId));
}

void TestTree::setConfiguration(const QString &appId, const QString &text)
{
    write(configurationFile(appId), text);
}

QString TestTree::choices(const QString &appId) const
{
    return read(choicesFile(appId));
}

void TestTree::setChoices(const QString &appId, const QString &text)
{
    write(choicesFile(appId), text);
}

QStringList TestTree::userFiles() const
{
    QStringList files;
    QDirIterator all(userDirectory(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (all.hasNext())
        files.append(QDir(userDirectory()).relativeFilePath(all.next()));
    files.sort();
    return files;
}
