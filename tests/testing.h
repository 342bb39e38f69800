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

// What the tests share.

#ifndef TESTING_PATIENCE // less where faults keep much from happening
#define TESTING_PATIENCE 120'000
#endif

namespace testing {

/// Milliseconds after which a test no longer waits for another process. It ends what hangs: no test waits for it.
constexpr int patience = TESTING_PATIENCE;

/// Any JSON value as the loader would hand it over.
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

/// The file of the place where a failed result was made.
template <class T>
QString failureFile(const vellix::Either<vellix::Error, T> &result)
{
    return result.isRight() ? QString() : QString::fromStdString(result.left().records.front().location.file);
}

/// Everything printed while `print` writes to a debug stream.
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

/// Takes what is logged while it lives, through the platform's log or Qt's, away from the terminal.
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
    mutable int asked = 0;     // for all of them
    mutable int evaluated = 0; // of them, whether they are supported
};

/// Data directories of a user and a system, made for one test.
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

/// Writes a file with its directories.
void writeFile(const QString &path, const QByteArray &bytes);
QByteArray readFile(const QString &path);
/// How a program ended, and what it said.
struct Run
{
    int exitCode; // negative when it crashed or did not end
    QString out;
    QString err;
};
/// Waits for the end of a started program.
Run ended(QProcess *process);
Run run(const QString &program, const QStringList &arguments);
/// Starts a program with each of these arguments, lets all go on at once when each has printed something, and returns
/// their exit codes: none when one is silent.
QList<int> runAtOnce(const QString &program, const QList<QStringList> &arguments);
/// What `run` returns in a forked child; -1 when that has crashed.
int inChild(const std::function<int()> &run);
/// A callback that shows a dialog when it is called first: `meanwhile` is run within after so many milliseconds, and
/// the next call ends it with `last`.
std::function<void()> dialogCallback(int milliseconds, const std::function<void()> &meanwhile,
                                     const std::function<void()> &last);
/// The bytes of an access list: the rights (4 read, 2 write, 1 execute) of the owner, of one more user, of the group,
/// of the mask and of everybody else. More than one user are numbered from this one on.
QByteArray accessList(int owner, unsigned user, int ofUser, int group, int mask, int other, unsigned users = 1);
/// Every file below a directory, hidden ones included, as sorted relative paths.
QStringList filesBelow(const QString &directory);

}

/// Fails with the left side's message when a result is not right.
#define VERIFY_RIGHT(result) QVERIFY2((result).isRight(), qPrintable(testing::failure(result)))

// Qt's own give up after 5 seconds, which a busy machine takes.
#undef QTRY_VERIFY
#define QTRY_VERIFY(expr) QTRY_VERIFY_WITH_TIMEOUT((expr), testing::patience / 2)
#undef QTRY_COMPARE
#define QTRY_COMPARE(expr, expected) QTRY_COMPARE_WITH_TIMEOUT((expr), (expected), testing::patience / 2)
