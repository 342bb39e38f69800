#include "testing.h"

#include <gesture_api/configuration.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QScopeGuard>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mount.h>

#include <memory>

using namespace vellix;
using namespace vellix::gesture;
using testing::DataTree;

// The choices that a writable service saves at its process's end, and those that it leaves alone. Each row is a list of
// steps for tests/programs/stepschild.cpp, the choices before, and those afterwards.
class tst_ExitSave : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_tree.reset(); // it also resets the variables
        m_tree.reset(new DataTree);
        testing::writeFile(m_tree->defaultFile(QStringLiteral("app")), R"({
            "actions": [{"path": "x", "title": "X"}, {"path": "y", "title": "Y"}, {"path": "z", "title": "Z"}],
            "actionGroups": {"all": ["x", "y", "z"]},
            "gestures": [
                {"id": "A", "kind": "tap", "zone": "left", "availableActions": "all", "defaultAction": "x"},
                {"id": "B", "kind": "tap", "zone": "right", "availableActions": "all", "defaultAction": "x"}
            ]})");
    }

    void exit_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("after");
        QTest::addColumn<QString>("rejected");

        const auto row = [](const char *name, const char *before, const char *steps, const char *after,
                            const char *rejected = "") {
            QTest::newRow(name) << QString::fromLatin1(before) << QString::fromLatin1(steps)
                                << QString::fromLatin1(after) << QString::fromLatin1(rejected);
        };
        // No other program was involved.
        row("the same bytes: every current action", "A=y", "service load", "A=y B=x");
        row("the same bytes, not loaded before", "A=y", "service", "A=y B=x");
        row("absent as before", "absent", "service load", "A=x B=x");
        row("own choice", "A=y", "service choose B z", "A=y B=z");
        row("own choice, saved and exit", "A=y", "service choose B z save exit", "A=y B=z");
        row("rewritten with the same bytes", "A=y", "service load bytes {\"version\":1,\"actions\":{\"A\":\"y\"}}",
            "A=y B=x");
        row("what cannot be read, as before", "garbage", "service load", "A=x B=x", "garbage");

        // Another program wrote, and this service chose nothing.
        row("changed, no choice", "A=y", "service load bind A z", "A=z");
        row("changed, no choice, exit()", "A=y", "service load bind A z exit", "A=z");
        row("made, no choice", "absent", "service load bind A z", "A=z");
        row("removed, no choice", "A=y", "service load remove", "absent");
        row("changed after a save", "A=y", "service choose B z save bind A z", "A=z");
        row("removed after a save", "A=y", "service choose B z save remove", "absent");
        row("made unreadable, no choice", "A=y", "service load bytes garbage", "garbage");
        row("of another version, no choice", "A=y", "service load bytes {\"version\":2,\"actions\":{}}",
            "{\"version\":2,\"actions\":{}}");
        row("changed after one that cannot be read", "garbage", "service load bind A z", "A=z");
        row("changed and running a loop, service alone", "A=y", "service load bind A z loop", "A=z");

        // Another program wrote, and this service chose.
        row("changed, own choice of another gesture", "A=y", "service choose B z bind A z", "A=z B=z");
        row("changed before the own choice", "A=y", "service load bind A z choose B z", "A=z B=z");
        row("changed, own choice of the same gesture", "A=y", "service choose A x bind A z", "A=x");
        row("made, own choice", "absent", "service choose B z bind A z", "A=z B=z");
        row("removed, own choice", "A=y", "service choose B z remove", "B=z");
        row("a gesture that is not known here stays", "A=y", "service choose B z bind Q q", "B=z Q=q");
        row("own choice that was saved is not one any more", "A=y", "service choose B z save bind B y", "B=y");
        row("own choice after a save", "A=y", "service choose B z save choose A z bind B y", "A=z B=y");
        row("chosen and chosen back", "A=y", "service choose A z choose A y bind A x", "A=y");
        row("chosen to be none", "A=y", "service clear A bind A z", "empty");
        row("an action that was destroyed is no choice", "A=y", "service load destroy y bind A z", "A=z");
        row("one that its gesture wanted to keep", "A=y", "service load cling y bind A z", "A=z");
        row("a choice that was destroyed is none", "A=y", "service choose A z destroy z bind A y", "A=y");
        row("merged from a clone", "A=y", "service load clone choose B z merge bind A z", "A=z B=z");
        row("made unreadable, own choice", "A=y", "service choose B z bytes garbage", "B=z", "garbage");
        row("of another version, own choice", "A=y", "service choose B z bytes {\"version\":2,\"actions\":{}}", "B=z",
            "{\"version\":2,\"actions\":{}}");

        // More than one notification.
        row("a second notifier does not undo", "A=y", "service choose B z second bind A z", "A=z B=z");
        row("told early, and again at the end", "A=y", "service choose B z bind A z notify", "A=z B=z");
        row("told early, then changed", "A=y", "service choose B z notify bind B y", "B=y");
        row("told early after a change, then a choice", "A=y", "service load bind A z notify choose B y", "A=z B=y");

        // More than one service.
        row("two services, one choice each", "A=y", "service choose A z service choose B z", "A=z B=z");
        row("two services, a choice and a save", "A=y", "service load service choose B z save", "A=y B=z");
        row("two services, the later saved first", "A=y", "service choose A z service choose B z save use 0",
            "A=z B=z");
        row("a clone that was saved by hand", "A=y", "service load clone choose B z save", "A=y B=z");
        row("pruned", "A=y", "service load prune", "absent");
        row("pruned, then written by somebody", "A=y", "service load prune bind A z", "A=z");
        row("deleted before the end", "A=y", "service choose B z delete", "A=y");
        row("read-only", "A=y", "reader choose B z", "A=y");
        row("read-only, changed", "A=y", "reader choose B z bind A z", "A=z");

        // A provider.
        row("provider", "A=y", "provider choose B z", "A=y B=z");
        row("provider whose callback is queued", "A=y", "provider load bind A z", "A=z");
        row("provider whose callback is queued, exit()", "A=y", "provider load bind A z exit", "A=z");
        row("provider, own choice, callback is queued", "A=y", "provider choose B z bind A z", "A=z B=z");
        row("provider that has heard of it", "A=y", "provider load bind A z loop", "A=z B=x");
        row("provider that has heard of a reset", "A=y", "provider load remove loop", "A=x B=x");
        row("a save, a nested loop, exit()", "A=y", "provider choose B z save loop exit", "A=y B=z");
        row("a save, somebody's choice, exit()", "A=y", "provider choose B z save loop load bind A z exit", "A=z");

        row("provider that is deleted before the end", "A=y", "provider choose B z delete-provider", "A=y");
        row("the same, but saved when the loop ends", "A=y", "provider choose B z safe quit delete-provider",
            "A=y B=z");
        row("saved when the loop ends, on top of another's", "A=y", "service choose B z safe bind A z quit delete",
            "A=z B=z");

        // Another process.
        row("a child that exits", "A=y", "service choose B z save bind A z fork exit", "A=z");
        row("a child that exits saves no choice", "A=y", "service choose B z delete service fork choose A z exit",
            "A=y B=x");
        row("a child that returns", "A=y", "service load fork choose B z bind A z", "A=z");
        row("a child that makes its own service", "A=y", "fork service choose B z exit", "A=y B=z");
        row("a child that saves by hand", "A=y", "fork service choose B z save exit", "A=y B=z");
        row("exit() from another thread saves nothing", "A=y", "service choose B z thread-exit", "A=y");
    }

    void exit()
    {
        QFETCH(QString, before);
        QFETCH(QString, steps);
        QFETCH(QString, after);
        QFETCH(QString, rejected);
        if (before == QLatin1String("garbage"))
            testing::writeFile(userFile(), "garbage");
        else if (before != QLatin1String("absent"))
            testing::writeFile(userFile(),
                               "{\"version\":1,\"actions\":{\"" + before.toUtf8().replace("=", "\":\"") + "\"}}");
        const testing::Run child = testing::run(QStringLiteral(TEST_PROGRAMS "/stepschild"), steps.split(' '));
        QVERIFY2(child.exitCode == 0, qPrintable(child.err));
        QCOMPARE(choices(), after);
        QCOMPARE(readRejected(), rejected);
        QCOMPARE(testing::filesBelow(QFileInfo(userFile()).path()).size(),
                 (after == QLatin1String("absent") ? 0 : 1) + (rejected.isEmpty() ? 0 : 1));
    }

    // The user's directory is unmounted while a program runs, and mounted again after its end.
    void unmountedMeanwhile_data()
    {
        QTest::addColumn<QString>("steps");
        QTest::newRow("no choice") << "service load pause";
        QTest::newRow("own choice") << "service choose B z pause";
        QTest::newRow("own choice, and the loop runs") << "service choose B z pause loop";
        QTest::newRow("provider that has not heard of it") << "provider load pause";
        QTest::newRow("provider that has heard of it") << "provider load pause loop";
        QTest::newRow("provider that loads again") << "provider load pause loop load";
    }

    void unmountedMeanwhile()
    {
        QFETCH(QString, steps);
        const QString store = m_tree->root() + QStringLiteral("/store");
        const QByteArray bytes = "{\"version\":1,\"actions\":{\"A\":\"y\"}}";
        const auto mountStore = [&] {
            return mount(qPrintable(store), qPrintable(m_tree->user()), nullptr, MS_BIND, nullptr) == 0;
        };
        QVERIFY(QDir().mkpath(store));
        QVERIFY(QDir().mkpath(m_tree->user()));
        if (!mountStore())
            QSKIP("a directory can not be mounted here");
        const auto unmount = qScopeGuard([this] { umount2(qPrintable(m_tree->user()), MNT_DETACH); });
        testing::writeFile(userFile(), bytes);
        QProcess child;
        child.start(QStringLiteral(TEST_PROGRAMS "/stepschild"), steps.split(' '));
        QVERIFY(child.waitForReadyRead(testing::patience));
        QCOMPARE(umount(qPrintable(m_tree->user())), 0);
        child.write("go\n");
        QCOMPARE(testing::ended(&child).exitCode, 0);
        QVERIFY(mountStore());
        QCOMPARE(testing::readFile(userFile()), bytes);
        QCOMPARE(testing::filesBelow(m_tree->user()), QStringList("gestures/apps/current/app/cfg.json"));
    }

    // Programs that end at once, each with a choice of its own: none is lost.
    void manyProgramsAtOnce()
    {
        const int count = 8;
        QByteArrayList gestures;
        for (int i = 0; i < count; ++i) {
            gestures.append("{\"id\": \"G" + QByteArray::number(i)
                            + "\", \"kind\": \"tap\", \"zone\": \"left\", \"availableActions\": \"all\", "
                              "\"defaultAction\": \"x\"}");
        }
        testing::writeFile(m_tree->defaultFile(QStringLiteral("app")),
                           "{\"actions\": [{\"path\": \"x\", \"title\": \"X\"}, {\"path\": \"y\", \"title\": \"Y\"}], "
                           "\"actionGroups\": {\"all\": [\"x\", \"y\"]}, \"gestures\": ["
                                   + gestures.join(',') + "]}");
        testing::writeFile(userFile(), "{\"version\":1,\"actions\":{\"old\":\"choice\"}}");
        QList<QStringList> steps;
        QStringList expected;
        for (int i = 0; i < count; ++i) {
            const QString id = QStringLiteral("G%1").arg(i);
            expected.append(id + QStringLiteral("=y"));
            steps.append({"service", "choose", id, "y", "pause", "exit"});
        }
        QCOMPARE(testing::runAtOnce(QStringLiteral(TEST_PROGRAMS "/stepschild"), steps),
                 QVector<int>(count, 0).toList());
        // The first to end writes all its choices, the others add their own.
        const QStringList found = choices().split(' ');
        for (const QString &choice : qAsConst(expected))
            QVERIFY2(found.contains(choice), qPrintable(found.join(' ')));
    }

    // Another program that is about to compare and to write: the save waits for it, but not for ever.
    void lockIsWaitedFor_data()
    {
        QTest::addColumn<QString>("steps");
        QTest::newRow("at the end") << "service choose B z";
        QTest::newRow("by hand") << "service choose B z save delete";
    }

    void lockIsWaitedFor()
    {
        QFETCH(QString, steps);
        testing::writeFile(userFile(), "{\"version\":1,\"actions\":{\"A\":\"y\"}}");
        QFile directory;
        const int descriptor = open(qPrintable(QFileInfo(userFile()).path()), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        QVERIFY(directory.open(descriptor, QIODevice::ReadOnly, QFile::AutoCloseHandle));
        QCOMPARE(flock(descriptor, LOCK_SH), 0);
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(testing::run(QStringLiteral(TEST_PROGRAMS "/stepschild"), steps.split(' ')).exitCode, 0);
        QVERIFY(timer.elapsed() >= 900);
        QCOMPARE(choices(), QStringLiteral("A=y B=z"));
    }

private:
    QString userFile() const { return m_tree->userFile(QStringLiteral("app")); }

    QString readRejected() const
    {
        const QString file = userFile() + QStringLiteral(".rejected");
        return QFileInfo::exists(file) ? QString::fromUtf8(testing::readFile(file)) : QString();
    }

    // "A=x B=y", "empty", "absent", or the bytes of a file without bindings.
    QString choices() const
    {
        if (!QFileInfo::exists(userFile()))
            return QStringLiteral("absent");
        const auto bindings = Configuration::ActionBindings::loadJson(userFile());
        if (bindings.isLeft())
            return QString::fromUtf8(testing::readFile(userFile()));
        QStringList texts;
        for (auto binding = bindings.right().cbegin(); binding != bindings.right().cend(); ++binding)
            texts.append(binding.key() + QLatin1Char('=') + *binding);
        return texts.isEmpty() ? QStringLiteral("empty") : texts.join(QLatin1Char(' '));
    }

    std::unique_ptr<DataTree> m_tree;
};

QTEST_GUILESS_MAIN(tst_ExitSave)
#include "tst_exitsave.moc"
