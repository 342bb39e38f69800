#pragma once

#include <gesture_api/feature.h>

#include <vellix/either.h>

#include <QByteArray>
#include <QList>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariant>
#include <QtTest>

#include <functional>
#include <initializer_list>
#include <utility>

// Shared code of the tests.

#ifndef TESTING_PATIENCE // shorter where faults prevent most events
#define TESTING_PATIENCE 120'000
#endif

namespace testing {

/// Milliseconds after which a test stops waiting for another process. It only ends hanging ones: passing tests never
/// wait for it.
constexpr int patience = TESTING_PATIENCE;

/// Any JSON value in the form that the loader returns.
QVariant json(const QByteArray &text);
inline QVariantMap jsonMap(const QByteArray &text)
{
    return json(text).toMap();
}

/// The message of a failed result, or "no failure".
template <class T>
QString failure(const vellix::Either<vellix::Error, T> &result)
{
    if (result.isRight())
        return QStringLiteral("no failure");
    const auto &records = result.left().records;
    return records.size() == 1 ? QString::fromStdString(records.front().message) : QStringLiteral("not one record");
}

/// The file that made a failed result.
template <class T>
QString failureFile(const vellix::Either<vellix::Error, T> &result)
{
    return result.isRight() ? QString() : QString::fromStdString(result.left().records.front().location.file);
}

/// The text that `print` writes to a debug stream.
template <class Print>
QString debugText(const Print &print)
{
    QString text;
    QDebug stream(&text);
    print(stream);
    return text;
}

struct LogLine
{
    QString level;
    QString file;
    int line;
    QString function;
    QString body;
};

/// Captures the log while it lives, through the platform's log or Qt's, and keeps it off the terminal.
class LogCapture
{
public:
    LogCapture();
    ~LogCapture();

    QList<LogLine> lines;
    QStringList qtMessages; // "LEVEL CATEGORY: TEXT"
    QStringList qtPlaces;   // "FILE:LINE FUNCTION" of each

private:
    LogCapture *m_previous;
    QtMessageHandler m_previousHandler;
};

/// A device with these features, each supported or not.
class Features : public vellix::gesture::FeaturesProvider
{
public:
    Features(std::initializer_list<std::pair<const char *, bool>> known = {});
    QList<vellix::gesture::Feature *> allFeatures() const override;
    void add(const QString &name, bool supported);

    QList<vellix::gesture::Feature *> features;
    mutable int asked = 0;     // for all features
    mutable int evaluated = 0; // the features that were asked whether they are supported
};

/// Data directories of a user and a system for one test.
class DataTree
{
public:
    DataTree();
    ~DataTree();

    QString userFile(const QString &appId) const;
    QString defaultFile(const QString &appId) const;
    QString user(const QString &path = QString()) const
    {
        return m_root.filePath(QStringLiteral("user/vellix/") + path);
    }
    QString system(const QString &path = QString()) const
    {
        return m_root.filePath(QStringLiteral("system/vellix/") + path);
    }
    QString root() const { return m_root.path(); }

private:
    QTemporaryDir m_root;
};

/// Writes a file, and makes its directories.
void writeFile(const QString &path, const QByteArray &bytes);
QByteArray readFile(const QString &path);
/// The exit code and the output of a program.
struct Run
{
    int exitCode; // negative if it crashed or did not end
    QString out;
    QString err;
};
/// Waits for the end of a started program.
Run ended(QProcess *process);
Run run(const QString &program, const QStringList &arguments);
/// Starts a program with each of these arguments, releases all at once when each has printed something, and returns
/// their exit codes: an empty list if one stays silent.
QList<int> runAtOnce(const QString &program, const QList<QStringList> &arguments);
/// The result of `run` in a forked child; -1 if the child has crashed.
int inChild(const std::function<int()> &run);
/// A callback that shows a dialog at its first call: it runs `meanwhile` after this number of milliseconds, and the
/// next call ends it with `last`.
std::function<void()> dialogCallback(int milliseconds, const std::function<void()> &meanwhile,
                                     const std::function<void()> &last);
/// The bytes of an access list: the rights (4 read, 2 write, 1 execute) of the owner, of one more user, of the group,
/// of the mask and of all others. More users are numbered from this one on.
QByteArray accessList(int owner, unsigned user, int ofUser, int group, int mask, int other, unsigned users = 1);
/// Every file below a directory, hidden ones included, as sorted relative paths.
QStringList filesBelow(const QString &directory);

}

/// Fails with the left side's message if a result is not right.
#define VERIFY_RIGHT(result) QVERIFY2((result).isRight(), qPrintable(testing::failure(result)))

// Qt's own macros give up after 5 seconds; a busy machine needs more.
#undef QTRY_VERIFY
#define QTRY_VERIFY(expr) QTRY_VERIFY_WITH_TIMEOUT((expr), testing::patience / 2)
#undef QTRY_COMPARE
#define QTRY_COMPARE(expr, expected) QTRY_COMPARE_WITH_TIMEOUT((expr), (expected), testing::patience / 2)
