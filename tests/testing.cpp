#include "testing.h"

#include <QDir>
#include <QDirIterator>
#include <QEventLoop>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTimer>
#include <QtEndian>

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <memory>
#include <sstream>
#include <vector>

// Defined in a coverage build.
extern "C" void __gcov_init(void *) __attribute__((weak));

namespace testing {

static LogCapture *capture = nullptr;

QVariant json(const QByteArray &text)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson('[' + text + ']', &error);
    if (error.error != QJsonParseError::NoError)
        qFatal("a test's JSON is wrong: %s: %s", qPrintable(error.errorString()), text.constData());
    return document.toVariant().toList().value(0);
}

static void captureQt(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    static const char *const levels[] = {"debug", "warning", "critical", "fatal", "info"};
    capture->qtMessages.append(
            QStringLiteral("%1 %2: ").arg(QLatin1String(levels[type]), QLatin1String(context.category)) + text);
    capture->qtPlaces.append(QStringLiteral("%1:%2 %3")
                                     .arg(QLatin1String(context.file))
                                     .arg(context.line)
                                     .arg(QLatin1String(context.function)));
}

LogCapture::LogCapture() : m_previous(capture)
{
    capture = this;
    // cppcheck-suppress useInitializationList ; only now: the handler writes to this object
    m_previousHandler = qInstallMessageHandler(captureQt);
}

LogCapture::~LogCapture()
{
    qInstallMessageHandler(m_previousHandler);
    capture = m_previous;
}

Features::Features(std::initializer_list<std::pair<const char *, bool>> known)
{
    for (const auto &[name, supported] : known)
        add(QString::fromUtf8(name), supported);
}

QList<vellix::gesture::Feature *> Features::allFeatures() const
{
    ++asked;
    return features;
}

void Features::add(const QString &name, bool supported)
{
    const auto answer = [this, supported] {
        ++evaluated;
        return supported;
    };
    features.append(new vellix::gesture::Feature(name, answer, this));
}

DataTree::DataTree()
{
    qputenv("XDG_DATA_HOME", QFile::encodeName(m_root.filePath(QStringLiteral("user"))));
    qputenv("XDG_DATA_DIRS", QFile::encodeName(m_root.filePath(QStringLiteral("system"))));
}

DataTree::~DataTree()
{
    qunsetenv("XDG_DATA_HOME");
    qunsetenv("XDG_DATA_DIRS");
}

QString DataTree::userFile(const QString &appId) const
{
    return user(QStringLiteral("gestures/apps/current/") + appId + QStringLiteral("/cfg.json"));
}

QString DataTree::defaultFile(const QString &appId) const
{
    return system(QStringLiteral("config/gestures/apps/default/") + appId + QStringLiteral("/cfg.json"));
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFileInfo(path).dir().mkpath(QStringLiteral("."));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("can not write %s", qPrintable(path));
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
}

Run ended(QProcess *process)
{
    if (!process->waitForFinished(patience))
        return {-1, QString(), process->errorString()};
    return {process->exitStatus() == QProcess::NormalExit ? process->exitCode() : -2,
            QString::fromUtf8(process->readAllStandardOutput()), QString::fromUtf8(process->readAllStandardError())};
}

Run run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    return ended(&process);
}

QList<int> runAtOnce(const QString &program, const QList<QStringList> &arguments)
{
    std::vector<QProcess> children(static_cast<std::size_t>(arguments.size()));
    auto next = arguments.cbegin();
    for (QProcess &child : children)
        child.start(program, *next++);
    for (QProcess &child : children) {
        if (!child.waitForReadyRead(patience))
            return {};
    }
    for (QProcess &child : children)
        child.write("go\n");
    QList<int> codes;
    for (QProcess &child : children)
        codes.append(ended(&child).exitCode);
    return codes;
}

// Only a normal exit writes the counts of a coverage build. Otherwise nothing of the parent may run at the end.
[[noreturn]] static void endChild(int status)
{
    if (__gcov_init)
        std::exit(status);
    _exit(status);
}

int inChild(const std::function<int()> &run)
{
    const pid_t child = fork();
    if (child == 0)
        endChild(run());
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::function<void()> dialogCallback(int milliseconds, const std::function<void()> &meanwhile,
                                     const std::function<void()> &last)
{
    const auto dialog = std::make_shared<QEventLoop>();
    return [=] {
        if (dialog->isRunning()) {
            last();
            dialog->quit();
            return;
        }
        QTimer::singleShot(milliseconds, dialog.get(), meanwhile);
        QTimer::singleShot(patience / 4, dialog.get(), &QEventLoop::quit);
        dialog->exec();
    };
}

static void appendEntry(QByteArray *list, quint16 tag, int rights, quint32 id)
{
    const quint16 words[] = {qToLittleEndian(tag), qToLittleEndian(static_cast<quint16>(rights))};
    const quint32 number = qToLittleEndian(id);
    list->append(reinterpret_cast<const char *>(words), sizeof words);
    list->append(reinterpret_cast<const char *>(&number), sizeof number);
}

QByteArray accessList(int owner, unsigned user, int ofUser, int group, int mask, int other, unsigned users)
{
    const quint32 nobody = 0xffffffff;
    QByteArray list("\2\0\0\0", 4);
    appendEntry(&list, 0x01, owner, nobody);
    for (unsigned i = 0; i < users; ++i)
        appendEntry(&list, 0x02, ofUser, user + i);
    appendEntry(&list, 0x04, group, nobody);
    appendEntry(&list, 0x10, mask, nobody);
    appendEntry(&list, 0x20, other, nobody);
    return list;
}

QStringList filesBelow(const QString &directory)
{
    QStringList files;
    QDirIterator it(directory, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (it.hasNext())
        files.append(QDir(directory).relativeFilePath(it.next()));
    files.sort();
    return files;
}

static void log(const QString &level, const std::string &file, int line, const std::string &function,
                const vellix::utilities::log::cb::Writer &writer)
{
    std::ostringstream body;
    writer(body);
    if (capture) {
        capture->lines.append({level, QString::fromStdString(file), line, QString::fromStdString(function),
                               QString::fromStdString(body.str())});
    } else {
        std::cerr << qPrintable(level) << ": " << body.str() << std::endl;
    }
}

}

// The program's own log takes precedence over the platform library's.
namespace vellix {
namespace utilities {
namespace log {
namespace cb {

void error(const std::string &file, int line, const std::string &function, const Writer &writer)
{
    testing::log(QStringLiteral("error"), file, line, function, writer);
}

void warn(const std::string &file, int line, const std::string &function, const Writer &writer)
{
    testing::log(QStringLiteral("warn"), file, line, function, writer);
}

}
}
}
}
