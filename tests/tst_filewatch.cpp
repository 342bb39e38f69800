#include "testing.h"

#include <vellix/platform/vxcomponents.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QSaveFile>
#include <QScopeGuard>

#include <fcntl.h>
#include <limits.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <functional>
#include <memory>

using vellix::components::fs::__watchFileChange;

class tst_FileWatch;
using Change = std::function<void(tst_FileWatch *)>;
Q_DECLARE_METATYPE(Change)

// A report shows the content of the file when the callback ran; the final state counts.
class tst_FileWatch : public QObject
{
    Q_OBJECT

    // Counts the timeouts of all timers in the program while it lives.
    struct TimerCount : public QObject
    {
        TimerCount() { QCoreApplication::instance()->installEventFilter(this); }
        bool eventFilter(QObject *, QEvent *event) override
        {
            count += event->type() == QEvent::Timer;
            return false;
        }
        int count = 0;
    };

private Q_SLOTS:
    void init()
    {
        m_watch.reset();
        m_directory.reset(new QTemporaryDir);
        m_seen.clear();
    }

    void finalState_data()
    {
        QTest::addColumn<QByteArray>("before"); // null for no file
        QTest::addColumn<Change>("change");
        QTest::addColumn<QByteArray>("after");
        const QByteArray absent("(no file)");
        const QByteArray nothing;
        const auto row = [](const char *name, const QByteArray &before, const Change &change, const QByteArray &after) {
            QTest::newRow(name) << before << change << after;
        };

        row(
                "rewritten in place", "old", [](tst_FileWatch *t) { t->write("new"); }, "new");
        row(
                "same length in place", "old", [](tst_FileWatch *t) { t->write("OLD"); }, "OLD");
        row(
                "appended", "old", [](tst_FileWatch *t) { t->append("er"); }, "older");
        row(
                "truncated", "old", [](tst_FileWatch *t) { QVERIFY(truncate(qPrintable(t->file()), 1) == 0); }, "o");
        row(
                "written and renamed over", "old", [](tst_FileWatch *t) { t->replace("new"); }, "new");
        row(
                "replaced by Qt", "old", [](tst_FileWatch *t) { t->saveFile("new"); }, "new");
        row(
                "made by Qt", nothing, [](tst_FileWatch *t) { t->saveFile("new"); }, "new");
        row(
                "deleted", "old", [](tst_FileWatch *t) { QVERIFY(QFile::remove(t->file())); }, absent);
        row(
                "renamed away", "old", [](tst_FileWatch *t) { QVERIFY(QFile::rename(t->file(), t->path("away"))); },
                absent);
        row(
                "deleted and made again", "old",
                [](tst_FileWatch *t) {
                    QVERIFY(QFile::remove(t->file()));
                    t->write("new");
                },
                "new");
        row(
                "made in a directory that is there", nothing, [](tst_FileWatch *t) { t->write("new"); }, "new");
        row(
                "made with several missing directories", "-",
                [](tst_FileWatch *t) { testing::writeFile(t->file(), "new"); }, "new");
        row(
                "the directory renamed away", "old",
                [](tst_FileWatch *t) { QVERIFY(QDir().rename(t->path("a/b"), t->path("a/c"))); }, absent);
        row(
                "the directory replaced by another", "old",
                [](tst_FileWatch *t) {
                    testing::writeFile(t->path("a/other/file"), "new");
                    QVERIFY(QDir().rename(t->path("a/b"), t->path("a/c")));
                    QVERIFY(QDir().rename(t->path("a/other"), t->path("a/b")));
                },
                "new");
        row(
                "the whole tree deleted and made again", "old",
                [](tst_FileWatch *t) {
                    QVERIFY(QDir(t->path("a")).removeRecursively());
                    testing::writeFile(t->file(), "new");
                },
                "new");
        row(
                "replaced by a link", "old",
                [](tst_FileWatch *t) {
                    testing::writeFile(t->path("elsewhere/real"), "new");
                    QVERIFY(QFile::remove(t->file()));
                    QVERIFY(QFile::link(t->path("elsewhere/real"), t->file()));
                },
                "new");
        row(
                "through another name of the same file", "old",
                [](tst_FileWatch *t) {
                    QVERIFY(link(qPrintable(t->file()), qPrintable(t->path("second name"))) == 0);
                    t->writeTo(t->path("second name"), "new");
                },
                "new");
    }

    void finalState()
    {
        QFETCH(QByteArray, before);
        QFETCH(Change, change);
        QFETCH(QByteArray, after);
        if (before != "-")
            QVERIFY(QDir().mkpath(path("a/b")));
        if (!before.isNull() && before != "-")
            write(before);
        watch();
        change(this);
        QTRY_COMPARE(m_seen.isEmpty() ? QByteArray("nothing seen") : m_seen.last(), after);
        settle();
        QCOMPARE(m_seen.last(), after);

        // The watch continues.
        testing::writeFile(file(), "later");
        QTRY_COMPARE(m_seen.last(), QByteArray("later"));
    }

    void linkIsFollowed_data()
    {
        QTest::addColumn<int>("links");
        QTest::newRow("one link") << 1;
        QTest::newRow("a chain of links") << 3;
    }

    void linkIsFollowed()
    {
        QFETCH(int, links);
        testing::writeFile(path("real/file"), "old");
        QVERIFY(QDir().mkpath(path("a/b")));
        QString target = path("real/file");
        for (int i = 1; i < links; ++i) {
            const QString link = path("link%1").arg(i);
            QVERIFY(QFile::link(target, link));
            target = link;
        }
        QVERIFY(QFile::link(target, file()));
        watch();
        writeTo(path("real/file"), "in place");
        QTRY_COMPARE(last(), QByteArray("in place"));
        replaceFile(path("real/file"), "replaced");
        QTRY_COMPARE(last(), QByteArray("replaced"));
        QVERIFY(QFile::remove(path("real/file")));
        QTRY_COMPARE(last(), QByteArray("(no file)"));
        testing::writeFile(path("real/file"), "again");
        QTRY_COMPARE(last(), QByteArray("again"));
        testing::writeFile(path("real/second"), "turned");
        QVERIFY(QFile::remove(file()));
        QVERIFY(QFile::link(path("real/second"), file()));
        QTRY_COMPARE(last(), QByteArray("turned"));
    }

    void linkedDirectory()
    {
        testing::writeFile(path("real/b/file"), "old");
        QVERIFY(QFile::link(path("real"), path("a")));
        watch();
        writeTo(path("real/b/file"), "new");
        QTRY_COMPARE(last(), QByteArray("new"));
        testing::writeFile(path("other/b/file"), "other");
        QVERIFY(QFile::remove(path("a")));
        QVERIFY(QFile::link(path("other"), path("a")));
        QTRY_COMPARE(last(), QByteArray("other"));
    }

    void relativeLinkIsFollowed()
    {
        testing::writeFile(path("real/file"), "old");
        QVERIFY(QDir().mkpath(path("a/b")));
        QVERIFY(symlink("../.././real//file", qPrintable(file())) == 0);
        watch();
        writeTo(path("real/file"), "in place");
        QTRY_COMPARE(last(), QByteArray("in place"));
        replaceFile(path("real/file"), "replaced");
        QTRY_COMPARE(last(), QByteArray("replaced"));
    }

    void circleOfLinksIsNoFile()
    {
        QVERIFY(QDir().mkpath(path("a/b")));
        QVERIFY(symlink("other", qPrintable(file())) == 0);
        QVERIFY(symlink("file", qPrintable(path("a/b/other"))) == 0);
        watch();
        QVERIFY(QFile::remove(path("a/b/other")));
        testing::writeFile(path("a/b/other"), "new");
        QTRY_COMPARE(last(), QByteArray("new"));
    }

    void equalBytesAreNoChange()
    {
        QVERIFY(QDir().mkpath(path("a/b")));
        write("same");
        watch();
        write("same");
        replace("same");
        QVERIFY(QFile::setPermissions(file(), QFile::ReadOwner | QFile::WriteOwner));
        settle();
        QVERIFY(m_seen.isEmpty());
    }

    void otherFilesAreNoChange()
    {
        QVERIFY(QDir().mkpath(path("a/b")));
        write("old");
        watch();
        testing::writeFile(path("a/b/other"), "x");
        testing::writeFile(path("a/other"), "x");
        settle();
        QVERIFY(m_seen.isEmpty());
    }

    void pipeInPlaceOfTheFileDoesNotBlock()
    {
        QVERIFY(QDir().mkpath(path("a/b")));
        write("old");
        watch();
        QVERIFY(QFile::remove(file()));
        QVERIFY(mkfifo(qPrintable(file()), 0600) == 0);
        QTRY_VERIFY(m_calls > 0);
        QVERIFY(QFile::remove(file()));
        testing::writeFile(file(), "new");
        QTRY_COMPARE(last(), QByteArray("new"));
    }

    // No bytes of other readers are taken, and a pipe without any is no empty file.
    void pipeIsNotReadFrom()
    {
        QVERIFY(QDir().mkpath(path("a/b")));
        write("");
        watch();
        QVERIFY(mkfifo(qPrintable(path("pipe")), 0600) == 0);
        QFile pipe(path("pipe"));
        const int descriptor = ::open(qPrintable(path("pipe")), O_RDWR | O_NONBLOCK | O_CLOEXEC);
        QVERIFY(pipe.open(descriptor, QIODevice::ReadWrite | QIODevice::Unbuffered, QFile::AutoCloseHandle));
        QVERIFY(rename(qPrintable(path("pipe")), qPrintable(file())) == 0);
        QTRY_COMPARE(m_calls, 1);
        QCOMPARE(pipe.write("bytes"), 5);
        QVERIFY(QFile::rename(file(), path("pipe")));
        QTRY_COMPARE(m_calls, 2);
        QVERIFY(QFile::rename(path("pipe"), file()));
        QTRY_COMPARE(m_calls, 3);
        settle();
        QCOMPARE(pipe.read(10), QByteArray("bytes"));
    }

    // An unfinished write is not reported at once; a finished one is.
    void writerIsGivenAMoment_data()
    {
        QTest::addColumn<bool>("exists");
        QTest::newRow("a new file") << false;
        QTest::newRow("an old file") << true;
    }

    void writerIsGivenAMoment()
    {
        QFETCH(bool, exists);
        QVERIFY(QDir().mkpath(path("a/b")));
        bool intime = false;
        for (int attempt = 0; attempt < 20 && !intime; ++attempt) { // another program may take too much time
            QFile::remove(file());
            settle();
            watch();
            if (exists) {
                replace("old");
                QTRY_COMPARE(last(), QByteArray("old"));
                settle();
            }
            m_seen.clear();
            QElapsedTimer timer;
            timer.start();
            QFile writer(file());
            QVERIFY(writer.open(exists ? QIODevice::Append | QIODevice::Unbuffered
                                       : QIODevice::WriteOnly | QIODevice::Unbuffered));
            QVERIFY(!exists || writer.write("half") == 4);
            for (int turn = 0; turn < 4; ++turn)
                QCoreApplication::processEvents();
            const bool silent = m_seen.isEmpty();
            intime = timer.elapsed() < 40;
            QVERIFY(silent || !intime);
            writer.write("whole");
            writer.close();
            QTRY_COMPARE(last(), QByteArray(exists ? "oldhalfwhole" : "whole"));
        }
        if (!intime)
            QSKIP("the machine is too busy to tell");
    }

    void writerThatNeverPausesIsSeenAsWell()
    {
        QVERIFY(QDir().mkpath(path("a/b")));
        write("old");
        watch();
        QFile writer(file());
        QVERIFY(writer.open(QIODevice::Append | QIODevice::Unbuffered));
        QElapsedTimer timer;
        for (timer.start(); m_seen.isEmpty() && timer.elapsed() < 5000; QTest::qWait(5))
            writer.write("x");
        QVERIFY(!m_seen.isEmpty());
    }

    // Nothing in the directory is watched yet when the directory itself appears.
    void changeByTheCallbackItself()
    {
        testing::writeFile(path("other/b/file"), "new");
        m_watch.reset(__watchFileChange(file(), nullptr, [this] {
            m_seen.append(testing::readFile(file()));
            if (m_seen.size() == 1)
                write("newer");
        }));
        QVERIFY(QDir().rename(path("other"), path("a")));
        QTRY_COMPARE(last(), QByteArray("newer"));
        QCOMPARE(m_seen, QList<QByteArray>({"new", "newer"}));
    }

    void slowWriterIsSeenToTheEnd()
    {
        QVERIFY(QDir().mkpath(path("a/b")));
        write("old");
        watch();
        QFile writer(file());
        QVERIFY(writer.open(QIODevice::WriteOnly));
        for (int i = 0; i < 5; ++i) {
            writer.write("part ");
            writer.flush();
            QTest::qWait(20);
        }
        QTRY_COMPARE(last(), QByteArray("part part part part part ")); // not closed yet
        writer.write("end");
        writer.close();
        QTRY_COMPARE(last(), QByteArray("part part part part part end"));
    }

    void deletingEitherEndsTheWatch_data()
    {
        QTest::addColumn<bool>("context");
        QTest::newRow("the context") << true;
        QTest::newRow("the returned object") << false;
    }

    void deletingEitherEndsTheWatch()
    {
        QVERIFY(QDir().mkpath(path("a/b")));
        QFETCH(bool, context);
        QPointer<QObject> owner = new QObject(this);
        const QPointer<QObject> watch = __watchFileChange(file(), owner, [this] { ++m_calls; });
        QCOMPARE(watch->parent(), owner.data());
        m_calls = 0;
        delete (context ? owner.data() : watch.data());
        QVERIFY(!watch);
        write("new");
        settle();
        QCOMPARE(m_calls, 0);
        delete owner;
    }

    void callbackMayEndTheWatch()
    {
        QVERIFY(QDir().mkpath(path("a/b")));
        QPointer<QObject> first;
        QPointer<QObject> second;
        const auto end = [&] {
            delete first;
            delete second;
        };
        first = __watchFileChange(file(), this, end);
        second = __watchFileChange(file(), this, end);
        write("new");
        QTRY_VERIFY(!first && !second);
    }

    void twoWatchesOfOneFile()
    {
        QVERIFY(QDir().mkpath(path("a/b")));
        int other = 0;
        const std::unique_ptr<QObject> second(__watchFileChange(file(), nullptr, [&] { ++other; }));
        watch();
        write("new");
        QTRY_VERIFY(other > 0 && last() == "new");
    }

    // Programs that this one starts inherit none of them.
    void oneDescriptorForAll()
    {
        m_watch.reset();
        const QMap<int, QByteArray> before = openFiles();
        QObject context;
        for (int i = 0; i < 20; ++i)
            __watchFileChange(path("file%1").arg(i), &context, [] {});
        QCOMPARE(openFiles().values().count("anon_inode:inotify"), 1);
        const QMap<int, QByteArray> now = openFiles();
        for (auto file = now.cbegin(); file != now.cend(); ++file) {
            if (before.contains(file.key()))
                continue;
            QVERIFY2(fcntl(file.key(), F_GETFD) & FD_CLOEXEC, *file);
            QVERIFY(*file != "anon_inode:inotify" || fcntl(file.key(), F_GETFL) & O_NONBLOCK);
        }
    }

    void descriptorsAreClosed()
    {
        m_watch.reset();
        const QMap<int, QByteArray> before = openFiles();
        {
            const std::unique_ptr<QObject> one(__watchFileChange(file(), nullptr, [] {}));
            std::unique_ptr<QObject> two(__watchFileChange(file(), nullptr, [] {}));
            two.reset();
            QCOMPARE(openFiles().values().count("anon_inode:inotify"), 1);
        }
        QCOMPARE(openFiles(), before);
    }

    void noLookLeavesADescriptorOpen()
    {
        QVERIFY(QDir().mkpath(path("a/b")));
        write("0");
        watch();
        const QMap<int, QByteArray> before = openFiles();
        for (const char *text : {"1", "2", "3"}) {
            replace(text);
            QTRY_COMPARE(last(), QByteArray(text));
        }
        settle();
        QCOMPARE(openFiles(), before);
    }

    // Each directory from the root down and the file, once; paths that are no longer on the way are not watched.
    void kernelWatchesDoNotPileUp_data()
    {
        QTest::addColumn<Change>("change");
        QTest::newRow("the file replaced") << Change([](tst_FileWatch *t) { t->replace("new"); });
        QTest::newRow("the directory replaced") << Change([](tst_FileWatch *t) {
            testing::writeFile(t->path("other/file"), "new");
            QVERIFY(QDir().rename(t->path("a/b"), t->path("gone%1").arg(t->m_seen.size())));
            QVERIFY(QDir().rename(t->path("other"), t->path("a/b")));
        });
        QTest::newRow("a link turned") << Change([](tst_FileWatch *t) {
            const QString directory = t->path("link%1").arg(t->m_seen.size());
            testing::writeFile(directory + QStringLiteral("/file"), "new");
            QVERIFY(QFile::remove(t->path("a/b")) || QDir().rename(t->path("a/b"), t->path("gone")));
            QVERIFY(QFile::link(directory, t->path("a/b")));
        });
    }

    void kernelWatchesDoNotPileUp()
    {
        QFETCH(Change, change);
        QVERIFY(QDir().mkpath(path("a/b")));
        write("old");
        // keeps a descriptor all the time
        const std::unique_ptr<QObject> other(__watchFileChange(m_directory->filePath("elsewhere"), nullptr, [] {}));
        const int without = kernelWatches();
        watch();
        QCOMPARE(kernelWatches(), without + 3); // a, b and the file
        int after = 0;
        for (int i = 0; i < 3; ++i) {
            change(this);
            QTRY_COMPARE(last(), QByteArray("new"));
            settle();
            QVERIFY(i == 0 || kernelWatches() == after);
            after = kernelWatches();
            write("old");
            QTRY_COMPARE(last(), QByteArray("old"));
        }
        QVERIFY(QFile::remove(file()));
        QTRY_COMPARE(last(), QByteArray("(no file)"));
        settle();
        QCOMPARE(kernelWatches(), after - 1);
        m_watch.reset();
        QCOMPARE(kernelWatches(), without);
    }

    void otherWatchOfADirectoryGoesOn()
    {
        QVERIFY(QDir().mkpath(path("a/b")));
        write("old");
        std::unique_ptr<QObject> first(__watchFileChange(path("a/b/other"), nullptr, [] {}));
        watch();
        const std::unique_ptr<QObject> third(__watchFileChange(path("a/b/other"), nullptr, [] {}));
        first.reset();
        replace("new");
        QTRY_COMPARE(last(), QByteArray("new"));
        QVERIFY(QFile::remove(file()));
        QTRY_COMPARE(last(), QByteArray("(no file)"));
        QVERIFY(QDir().rename(path("a/b"), path("a/c")));
        testing::writeFile(file(), "again");
        QTRY_COMPARE(last(), QByteArray("again"));
    }

    void nobodyNeedsToBeTold()
    {
        QVERIFY(QDir().mkpath(path("a/b")));
        const std::unique_ptr<QObject> silent(__watchFileChange(file(), nullptr, nullptr));
        watch();
        write("new");
        QTRY_COMPARE(last(), QByteArray("new"));
        settle();
    }

    void relativePathIsThatOfTheBeginning()
    {
        QVERIFY(QDir().mkpath(path("a/b")));
        const QString before = QDir::currentPath();
        const auto cleanUp = qScopeGuard([&] { QDir::setCurrent(before); });
        QVERIFY(QDir::setCurrent(path("a")));
        int calls = 0;
        const std::unique_ptr<QObject> relative(__watchFileChange("./b//file", nullptr, [&] { ++calls; }));
        write("new");
        QTRY_COMPARE(calls, 1);
        QVERIFY(QDir::setCurrent(before));
        replace("newer");
        QTRY_COMPARE(calls, 2);
    }

    // However the file becomes missing.
    void noFileIsNoChangeFromNoFile()
    {
        watch();
        QVERIFY(QDir().mkpath(path("a")));
        settle();
        testing::writeFile(path("a/b"), "a file in place of the directory");
        settle();
        QVERIFY(QFile::remove(path("a/b")));
        QVERIFY(QFile::link("nowhere", path("a/b")));
        settle();
        QVERIFY(QFile::remove(path("a/b")));
        QVERIFY(QFile::link(QString(300, QLatin1Char('x')), path("a/b")));
        settle();
        QVERIFY(m_seen.isEmpty());
        QVERIFY(QFile::remove(path("a/b")));
        testing::writeFile(file(), "new");
        QTRY_COMPARE(last(), QByteArray("new"));
    }

    // The bytes exist all the time.
    void fileThatBecomesReadable()
    {
        QVERIFY(QDir().mkpath(path("a/b")));
        write("old");
        const QByteArray name = file().toLocal8Bit();
        const uid_t self = geteuid(); // root may read everything
        const auto cleanUp = qScopeGuard([&] { (void)seteuid(self); });
        QVERIFY(chmod(name, 0) == 0);
        QVERIFY(chmod(m_directory->path().toLocal8Bit(), 0755) == 0);
        QVERIFY(self != 0 || seteuid(65534) == 0);
        watch();
        QVERIFY(seteuid(self) == 0);
        QVERIFY(chmod(name, 0644) == 0);
        QVERIFY(self != 0 || seteuid(65534) == 0);
        QTRY_COMPARE(last(), QByteArray("old"));
        QCOMPARE(m_calls, 1);
        QVERIFY(seteuid(self) == 0);
        QVERIFY(chmod(name, 0) == 0);
        QVERIFY(self != 0 || seteuid(65534) == 0);
        QTRY_COMPARE(m_calls, 2);
        QVERIFY(seteuid(self) == 0);
        QVERIFY(QFile::remove(file()));
        QTRY_COMPARE(m_calls, 3); // a missing file differs from an unreadable one
    }

    // More events than the kernel keeps: lost ones must not matter.
    void overflowOfEvents()
    {
        QVERIFY(QDir().mkpath(path("a/b")));
        write("old");
        watch();
        for (int i = 0; i < 10000; ++i) {
            const QByteArray other = path("a/b/other").toLocal8Bit();
            QVERIFY(::close(::open(other.constData(), O_CREAT | O_WRONLY, 0600)) == 0);
            QVERIFY(::unlink(other.constData()) == 0);
        }
        write("new");
        QTRY_COMPARE(last(), QByteArray("new"));
    }

    // If the kernel refuses a watch, the file is polled.
    void withoutTheKernelsHelp()
    {
        m_watch.reset(); // the last watch closes the shared descriptor
        QVERIFY(QDir().mkpath(path("a/b")));
        write("old");
        rlimit before;
        QVERIFY(getrlimit(RLIMIT_NOFILE, &before) == 0);
        const int next = ::dup(0);
        ::close(next);
        const rlimit none{static_cast<rlim_t>(next), before.rlim_max};
        QVERIFY(setrlimit(RLIMIT_NOFILE, &none) == 0);
        testing::LogCapture log;
        watch();
        QVERIFY(setrlimit(RLIMIT_NOFILE, &before) == 0);
        QCOMPARE(log.qtMessages, QStringList("warning default: QSocketNotifier: Invalid socket specified"));
        write("new");
        QTRY_COMPARE(last(), QByteArray("new"));
        m_watch.reset();
    }

    // Nothing in the directory changes except the permission to enter it.
    void directoryThatOpensLater_data()
    {
        QTest::addColumn<int>("closed");
        QTest::newRow("neither readable nor to be searched") << 0000;
        QTest::newRow("readable, not to be searched") << 0444;
    }
    void directoryThatOpensLater()
    {
        QFETCH(int, closed);
        QVERIFY(QDir().mkpath(path("a/b")));
        write("old");
        const QByteArray directory = path("a/b").toLocal8Bit();
        QVERIFY(chmod(directory, static_cast<mode_t>(closed)) == 0);
        QVERIFY(chmod(m_directory->path().toLocal8Bit(), 0755) == 0);
        const uid_t self = geteuid(); // root may look into everything
        const auto cleanUp = qScopeGuard([&] {
            (void)seteuid(self);
            chmod(directory, 0755);
        });
        QVERIFY(self != 0 || seteuid(65534) == 0);
        watch();
        QVERIFY(m_seen.isEmpty());
        QVERIFY(seteuid(self) == 0);
        QVERIFY(chmod(directory, 0755) == 0);
        QVERIFY(self != 0 || seteuid(65534) == 0);
        QTRY_COMPARE(last(), QByteArray("old"));

        // Now the kernel reports: no timer polls any more, except after mounts by others on this machine.
        settle();
        const auto isQuiet = [closed] {
            TimerCount timers;
            QTest::qWait(closed == 0 ? 2200 : 0);
            return timers.count == 0;
        };
        QTRY_VERIFY(isQuiet());
    }

    // It may be entered, but the kernel does not report its entries.
    void fileMadeInADirectoryThatCanNotBeRead()
    {
        QVERIFY(QDir().mkpath(path("a/b")));
        const QByteArray directory = path("a/b").toLocal8Bit();
        QVERIFY(chmod(directory, 0311) == 0);
        QVERIFY(chmod(m_directory->path().toLocal8Bit(), 0755) == 0);
        const uid_t self = geteuid(); // root may look into everything
        const auto cleanUp = qScopeGuard([&] {
            (void)seteuid(self);
            chmod(directory, 0755);
        });
        QVERIFY(self != 0 || seteuid(65534) == 0);
        watch();
        QVERIFY(seteuid(self) == 0);
        write("new");
        QVERIFY(self != 0 || seteuid(65534) == 0);
        QTRY_COMPARE(last(), QByteArray("new"));
    }

    // Captured objects live until it returns.
    void callbackOutlivesItsWatch()
    {
        QVERIFY(QDir().mkpath(path("a/b")));
        auto held = std::make_shared<int>(1);
        bool alive = false;
        m_watch.reset(__watchFileChange(file(), nullptr, [this, held, &alive] {
            bool *const result = &alive;
            const std::weak_ptr<int> seen = held;
            m_watch.reset();
            *result = !seen.expired();
        }));
        held.reset();
        write("new");
        QTRY_VERIFY(!m_watch);
        QVERIFY(alive);
    }

    // The callback shows a dialog, for example, and the new file is written meanwhile.
    void callbackThatRunsAnEventLoop()
    {
        QVERIFY(QDir().mkpath(path("a/b")));
        write("old");
        QByteArray seenWithin;
        const auto callback = testing::dialogCallback(
                200, [this] { write("newer"); }, [&] { seenWithin = testing::readFile(file()); });
        m_watch.reset(__watchFileChange(file(), nullptr, callback));
        replace("new");
        QTRY_COMPARE(seenWithin, QByteArray("newer"));
    }

    // The watch must reach the final state of every edit, however the edits race with it.
    void manyEdits()
    {
        QVERIFY(QDir().mkpath(path("a/b")));
        watch();
        for (int i = 0; i < 300; ++i) {
            const QByteArray text = QByteArray::number(i);
            switch (i % 6) {
            case 0: write(text); break;
            case 1: replace(text); break;
            case 2: QFile::remove(file()); break;
            case 3: testing::writeFile(file(), text); break;
            case 4: QDir(path("a")).removeRecursively(); break;
            default: testing::writeFile(file(), text); break;
            }
            if (i % 7 == 0)
                QCoreApplication::processEvents();
            if (i % 25 == 0) {
                const QByteArray now = testing::readFile(file());
                QTRY_COMPARE(last(), now);
            }
        }
        const QByteArray now = testing::readFile(file());
        QTRY_COMPARE(last(), now);
    }

private:
    QString path(const char *name) const { return m_directory->filePath(QString::fromLatin1(name)); }
    QString file() const { return path("a/b/file"); }
    QByteArray last() const { return m_seen.isEmpty() ? QByteArray("nothing seen") : m_seen.last(); }

    void watch()
    {
        m_calls = 0;
        m_watch.reset(__watchFileChange(file(), nullptr, [this] {
            ++m_calls;
            if (!QFileInfo::exists(file()) || QFileInfo(file()).isFile())
                m_seen.append(testing::readFile(file()));
        }));
    }

    static void writeTo(const QString &file, const QByteArray &bytes)
    {
        QFile writer(file);
        QVERIFY(writer.open(QIODevice::WriteOnly));
        writer.write(bytes);
    }
    void write(const QByteArray &bytes) const { writeTo(file(), bytes); }

    void append(const QByteArray &bytes) const
    {
        QFile writer(file());
        QVERIFY(writer.open(QIODevice::Append));
        writer.write(bytes);
    }

    static void replaceFile(const QString &file, const QByteArray &bytes)
    {
        writeTo(file + QStringLiteral(".new"), bytes);
        QVERIFY(rename(qPrintable(file + QStringLiteral(".new")), qPrintable(file)) == 0);
    }
    void replace(const QByteArray &bytes) const { replaceFile(file(), bytes); }

    void saveFile(const QByteArray &bytes) const
    {
        QSaveFile writer(file());
        QVERIFY(writer.open(QIODevice::WriteOnly));
        writer.write(bytes);
        QVERIFY(writer.commit());
    }

    // The target of each descriptor of this process.
    static QMap<int, QByteArray> openFiles()
    {
        QMap<int, QByteArray> files;
        const QDir descriptors(QStringLiteral("/proc/self/fd"));
        for (const QString &name : descriptors.entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System)) {
            char target[PATH_MAX] = {};
            if (readlink(qPrintable(descriptors.filePath(name)), target, sizeof target - 1) > 0)
                files.insert(name.toInt(), target);
        }
        return files;
    }

    static int kernelWatches()
    {
        const int descriptor = openFiles().key("anon_inode:inotify");
        QFile info(QStringLiteral("/proc/self/fdinfo/%1").arg(descriptor));
        return info.open(QIODevice::ReadOnly) ? info.readAll().count("inotify wd:") : -1;
    }

    // Longer than the watch waits for an unfinished writer.
    static void settle() { QTest::qWait(150); }

    QScopedPointer<QTemporaryDir> m_directory;
    std::unique_ptr<QObject> m_watch;
    QList<QByteArray> m_seen;
    int m_calls = 0;
};
QTEST_GUILESS_MAIN(tst_FileWatch)
#include "tst_filewatch.moc"
