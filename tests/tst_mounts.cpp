#include "testing.h"

#include <vellix/platform/vxcomponents.h>

#include <QAbstractEventDispatcher>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QPointer>
#include <QScopeGuard>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <functional>
#include <memory>

using vellix::components::fs::__watchFileChange;

class tst_Mounts;
using Step = std::function<void(tst_Mounts *)>;
Q_DECLARE_METATYPE(Step)

// File systems below the watched path come and go. In a mount namespace of its own: no other process sees them.
class tst_Mounts : public QObject
{
    Q_OBJECT

public:
    // The reason for a missing namespace; empty if there is one. Before the first thread: a user namespace needs a
    // single one.
    static QByteArray s_obstacle;
    static void enterNamespace()
    {
        const uid_t user = geteuid();
        const QByteArray userMap = "0 " + QByteArray::number(user) + " 1";
        const QByteArray groupMap = "0 " + QByteArray::number(getegid()) + " 1";
        const bool inNamespace = unshare(user == 0 ? CLONE_NEWNS : CLONE_NEWUSER | CLONE_NEWNS) == 0;
        const bool mapped = inNamespace
                && (user == 0
                    || (tell("/proc/self/setgroups", "deny") && tell("/proc/self/uid_map", userMap)
                        && tell("/proc/self/gid_map", groupMap)));
        if (!mapped || ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
            s_obstacle = QByteArray("no mount namespace of our own: ").append(strerror(errno));
    }

private Q_SLOTS:
    void initTestCase()
    {
        if (!s_obstacle.isEmpty())
            QSKIP(s_obstacle.constData());
    }

    void init()
    {
        m_directory.reset(new QTemporaryDir);
        m_seen.clear();
        mount("tmpfs", "");
        testing::writeFile(file(), "old");
        testing::writeFile(path("stick/b/file"), "new");
        testing::writeFile(path("stick file"), "new");
        QVERIFY(QDir().mkpath(path("elsewhere")));
    }

    void cleanup()
    {
        m_watch.reset();
        umount2(local(""), MNT_DETACH);
    }

    void finalState_data()
    {
        QTest::addColumn<Step>("before");
        QTest::addColumn<Step>("change");
        QTest::addColumn<QByteArray>("after");
        const QByteArray absent("(no file)");
        const Step nothing = [](tst_Mounts *) {};
        const auto row = [](const char *name, const Step &before, const Step &change, const QByteArray &after) {
            QTest::newRow(name) << before << change << after;
        };

        row(
                "mounted over the directory", nothing, [](tst_Mounts *t) { t->mount("tmpfs", "a/b"); }, absent);
        row(
                "mounted over a parent", nothing, [](tst_Mounts *t) { t->mount("tmpfs", "a"); }, absent);
        row(
                "a directory bound over the directory", nothing, [](tst_Mounts *t) { t->bind("stick/b", "a/b"); },
                "new");
        row(
                "a directory bound over a parent", nothing, [](tst_Mounts *t) { t->bind("stick", "a"); }, "new");
        row(
                "a file bound over the file", nothing, [](tst_Mounts *t) { t->bind("stick file", "a/b/file"); }, "new");
        row(
                "bound where there was no file", [](tst_Mounts *t) { QVERIFY(QFile::remove(t->file())); },
                [](tst_Mounts *t) { t->bind("stick/b", "a/b"); }, "new");
        row(
                "bound where a link leads to",
                [](tst_Mounts *t) {
                    QVERIFY(QFile::remove(t->file()));
                    QVERIFY(QFile::link(t->path("elsewhere/b/file"), t->file()));
                },
                [](tst_Mounts *t) { t->bind("stick", "elsewhere"); }, "new");
        row(
                "moved over the directory", [](tst_Mounts *t) { t->bind("stick/b", "elsewhere"); },
                [](tst_Mounts *t) { t->move("elsewhere", "a/b"); }, "new");
        row(
                "moved away", [](tst_Mounts *t) { t->bind("stick/b", "a/b"); },
                [](tst_Mounts *t) { t->move("a/b", "elsewhere"); }, "old");
        row(
                "unmounted, the file system gone", [](tst_Mounts *t) { t->mount("tmpfs", "a/b"); },
                [](tst_Mounts *t) { t->unmount("a/b"); }, "old");
        row(
                "unmounted, the file system still there", [](tst_Mounts *t) { t->bind("stick/b", "a/b"); },
                [](tst_Mounts *t) { t->unmount("a/b"); }, "old");
        row(
                "unmounted lazily", [](tst_Mounts *t) { t->bind("stick/b", "a/b"); },
                [](tst_Mounts *t) { t->unmount("a/b", MNT_DETACH); }, "old");
        row(
                "unmounted, edited and mounted again", [](tst_Mounts *t) { t->bind("stick/b", "a/b"); },
                [](tst_Mounts *t) {
                    t->unmount("a/b");
                    testing::writeFile(t->path("stick/b/file"), "edited");
                    t->bind("stick/b", "a/b");
                },
                "edited");
        row(
                "unmounted lazily, edited and mounted again", [](tst_Mounts *t) { t->bind("stick/b", "a/b"); },
                [](tst_Mounts *t) {
                    t->unmount("a/b", MNT_DETACH);
                    testing::writeFile(t->path("stick/b/file"), "edited");
                    t->bind("stick/b", "a/b");
                },
                "edited");
        row(
                "unmounted, seen, edited and mounted again", [](tst_Mounts *t) { t->bind("stick/b", "a/b"); },
                [](tst_Mounts *t) {
                    t->unmount("a/b");
                    QTRY_COMPARE(t->last(), QByteArray("old"));
                    testing::writeFile(t->path("stick/b/file"), "edited");
                    t->bind("stick/b", "a/b");
                },
                "edited");
        row(
                "edited at its other place", [](tst_Mounts *t) { t->bind("stick/b", "a/b"); },
                [](tst_Mounts *t) { testing::writeFile(t->path("stick/b/file"), "edited"); }, "edited");
    }

    void finalState()
    {
        QFETCH(Step, before);
        QFETCH(Step, change);
        QFETCH(QByteArray, after);
        before(this);
        watch();
        change(this);
        QTRY_COMPARE(last(), after);
        settle();
        QCOMPARE(last(), after);

        // The watch continues.
        testing::writeFile(file(), "later");
        QTRY_COMPARE(last(), QByteArray("later"));
    }

    void overlay()
    {
        for (const char *directory : {"upper", "work"})
            QVERIFY(QDir().mkpath(path(directory)));
        const QString options =
                QStringLiteral("lowerdir=%1,upperdir=%2,workdir=%3").arg(path("stick/b"), path("upper"), path("work"));
        watch();
        if (::mount("overlay", local("a/b"), "overlay", 0, qPrintable(options)) != 0)
            QSKIP("the kernel mounts no overlay here");
        QTRY_COMPARE(last(), QByteArray("new"));
        testing::writeFile(file(), "copied up");
        QTRY_COMPARE(last(), QByteArray("copied up"));
        testing::writeFile(file(), "again");
        QTRY_COMPARE(last(), QByteArray("again"));
    }

    // The bytes count, not their source.
    void noChange_data()
    {
        QTest::addColumn<Step>("change");
        QTest::newRow("mounted elsewhere") << Step([](tst_Mounts *t) { t->mount("tmpfs", "elsewhere"); });
        QTest::newRow("another file of the directory") << Step([](tst_Mounts *t) {
            testing::writeFile(t->path("a/b/other"), "x");
            t->bind("stick file", "a/b/other");
        });
        QTest::newRow("remounted read-only")
                << Step([](tst_Mounts *t) { t->mount(nullptr, "", MS_REMOUNT | MS_RDONLY); });
        QTest::newRow("the same bytes bound over the file") << Step([](tst_Mounts *t) {
            testing::writeFile(t->path("stick file"), "old");
            t->bind("stick file", "a/b/file");
        });
    }

    void noChange()
    {
        QFETCH(Step, change);
        watch();
        change(this);
        settle();
        QVERIFY(m_seen.isEmpty());
        mount(nullptr, "", MS_REMOUNT);
        testing::writeFile(file(), "later");
        QTRY_COMPARE(last(), QByteArray("later"));
    }

    void unmountedAndMountedAgainWithTheSameBytes()
    {
        bind("stick/b", "a/b");
        QVERIFY(QFile::remove(path("stick/b/file")));
        testing::writeFile(path("stick/b/file"), "same");
        unmount("a/b");
        QVERIFY(QFile::remove(file()));
        bind("stick/b", "a/b");
        watch();
        unmount("a/b");
        QTRY_COMPARE(last(), QByteArray("(no file)"));
        bind("stick/b", "a/b");
        QTRY_COMPARE(last(), QByteArray("same"));
        settle();
        QCOMPARE(m_seen, QList<QByteArray>({"(no file)", "same"}));
    }

    // A watched file system is not in use.
    void watchedFileSystemCanBeUnmounted()
    {
        mount("tmpfs", "a/b");
        testing::writeFile(file(), "new");
        watch();
        unmount("a/b");
        QTRY_COMPARE(last(), QByteArray("old"));
        mount("tmpfs", "a");
        QTRY_COMPARE(last(), QByteArray("(no file)"));
        settle();
        unmount("a");
        QTRY_COMPARE(last(), QByteArray("old"));
    }

    void stormOfMounts()
    {
        watch();
        for (int i = 0; i < 500; ++i) {
            bind("stick/b", "a/b");
            if (i % 10 == 0)
                QCoreApplication::processEvents();
            unmount("a/b");
        }
        bind("stick/b", "a/b");
        QTRY_COMPARE(last(), QByteArray("new"));
        settle();
        QCOMPARE(last(), QByteArray("new"));
    }

    // The same mount must not be reported for ever.
    void eventLoopSleepsAfterAMount()
    {
        watch();
        bind("stick/b", "a/b");
        QTRY_COMPARE(last(), QByteArray("new"));
        settle();
        int awoken = 0;
        connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, m_watch.get(),
                [&awoken] { ++awoken; });
        // Other programs' work in the directory for temporary files also wakes it: they pause some time.
        for (int i = 0; i < 50 && (i == 0 || awoken >= 20); ++i) {
            awoken = 0;
            QEventLoop loop;
            QTimer::singleShot(200, &loop, &QEventLoop::quit);
            loop.exec();
        }
        QVERIFY2(awoken < 20, qPrintable(QString::number(awoken)));
    }

    void callbackThatRunsAnEventLoop()
    {
        QByteArray seenWithin;
        const auto callback = testing::dialogCallback(
                50, [this] { unmount("a/b"); }, [&] { seenWithin = testing::readFile(file()); });
        m_watch.reset(__watchFileChange(file(), nullptr, callback));
        bind("stick/b", "a/b");
        QTRY_COMPARE(seenWithin, QByteArray("old"));
    }

    void everyWatchIsToldWhileACallbackRunsAnEventLoop()
    {
        QEventLoop dialog;
        QObject watches;
        int told = 0;
        bool bothWithin = false;
        const auto callback = [&] {
            if (++told == 2)
                dialog.quit();
            if (told > 1)
                return;
            QTimer::singleShot(testing::patience / 4, &dialog, &QEventLoop::quit);
            dialog.exec();
            bothWithin = told == 2;
        };
        __watchFileChange(file(), &watches, callback);
        __watchFileChange(file(), &watches, callback);
        bind("stick/b", "a/b");
        QTRY_COMPARE(told, 2);
        QVERIFY(bothWithin);
    }

    // Another part of the program is notified at the same moment, and runs an event loop before the watch's turn.
    void anotherNotifierThatRunsAnEventLoop()
    {
        int ends[2];
        QVERIFY(pipe2(ends, O_CLOEXEC) == 0);
        const auto cleanUp = qScopeGuard([&] {
            ::close(ends[0]);
            ::close(ends[1]);
        });
        QSocketNotifier other(ends[0], QSocketNotifier::Read);
        QEventLoop dialog;
        connect(&other, &QSocketNotifier::activated, this, [&] {
            other.setEnabled(false);
            QTimer::singleShot(100, &dialog, &QEventLoop::quit);
            dialog.exec();
        });
        watch();
        QCoreApplication::processEvents();
        QVERIFY(::write(ends[1], "x", 1) == 1);
        bind("stick/b", "a/b");
        QTRY_COMPARE(last(), QByteArray("new"));
    }

    void callbackMayEndTheWatch()
    {
        QPointer<QObject> first;
        QPointer<QObject> second;
        QObject context;
        const auto end = [&] {
            delete first;
            delete second;
        };
        first = __watchFileChange(file(), &context, end);
        second = __watchFileChange(file(), &context, end);
        bind("stick/b", "a/b");
        QTRY_VERIFY(!first && !second);
        settle();
    }

    void everyWatchIsTold()
    {
        int other = 0;
        const std::unique_ptr<QObject> second(__watchFileChange(file(), nullptr, [&] { ++other; }));
        const std::unique_ptr<QObject> unrelated(__watchFileChange(path("stick file"), nullptr, [] {}));
        watch();
        bind("stick/b", "a/b");
        QTRY_VERIFY(other == 1 && last() == "new");
    }

    void descriptorsGoWithTheLastWatch()
    {
        const auto all = QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System;
        const auto descriptors = [all] { return QDir(QStringLiteral("/proc/self/fd")).entryList(all).size(); };
        QCoreApplication::processEvents(); // the event loop's own descriptors are open then
        const int before = descriptors();
        watch();
        const int withOne = descriptors();
        {
            QObject context;
            for (int i = 0; i < 20; ++i)
                __watchFileChange(path("a/b/file%1").arg(i), &context, [] {});
            QCOMPARE(descriptors(), withOne);
        }
        m_watch.reset();
        QCOMPARE(descriptors(), before);
    }

    void withoutTheMountTable()
    {
        if (::mount("tmpfs", "/proc", "tmpfs", 0, nullptr) != 0)
            QSKIP("nothing can be mounted over /proc here");
        watch();
        QVERIFY(umount2("/proc", 0) == 0);
        testing::writeFile(file(), "later");
        QTRY_COMPARE(last(), QByteArray("later"));
    }

private:
    static bool tell(const char *where, const QByteArray &what)
    {
        const int descriptor = ::open(where, O_WRONLY | O_CLOEXEC);
        const bool told = descriptor >= 0 && ::write(descriptor, what.constData(), what.size()) == what.size();
        ::close(descriptor);
        return told;
    }

    QString path(const char *name) const { return m_directory->filePath(QString::fromLatin1(name)); }
    QByteArray local(const char *name) const { return QFile::encodeName(path(name)); }
    QString file() const { return path("a/b/file"); }
    QByteArray last() const { return m_seen.isEmpty() ? QByteArray("nothing seen") : m_seen.last(); }

    void mount(const char *type, const char *where, unsigned long flags = 0) const
    {
        QVERIFY2(::mount(type, local(where), type, flags, nullptr) == 0, strerror(errno));
    }
    void bind(const char *what, const char *where) const
    {
        QVERIFY2(::mount(local(what), local(where), nullptr, MS_BIND, nullptr) == 0, strerror(errno));
    }
    void move(const char *what, const char *where) const
    {
        QVERIFY2(::mount(local(what), local(where), nullptr, MS_MOVE, nullptr) == 0, strerror(errno));
    }
    void unmount(const char *where, int flags = 0) const
    {
        QVERIFY2(umount2(local(where), flags) == 0, strerror(errno));
    }

    void watch()
    {
        m_watch.reset(__watchFileChange(file(), nullptr, [this] { m_seen.append(testing::readFile(file())); }));
    }

    // Longer than the watch waits for an unfinished writer.
    static void settle() { QTest::qWait(150); }

    QScopedPointer<QTemporaryDir> m_directory;
    std::unique_ptr<QObject> m_watch;
    QList<QByteArray> m_seen;
};

QByteArray tst_Mounts::s_obstacle;

int main(int argc, char *argv[])
{
    tst_Mounts::enterNamespace();
    QCoreApplication application(argc, argv);
    tst_Mounts test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_mounts.moc"
