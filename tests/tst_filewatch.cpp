#include "testing.h"

#include <vellix/platform/vxcomponents.h>

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QSaveFile>
#include <QScopeGuard>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <functional>
#include <memory>

using vellix::components::fs::__watchFileChange;

class tst_FileWatch;
using Change = std::function<void(tst_FileWatch *)>;
Q_DECLARE_METATYPE(Change)

// What is reported is what the file held when the callback ran; what counts is the final state.
class tst_FileWatch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_watch.reset();
        m_directory.reset(new QTemporaryDir);
        m_seen.clear();
    }

    void finalState_data()
    {
        QTest::addColumn<QByteArray>("before"); // nothing when null
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

        // And the watch goes on.
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

    void oneDescriptorForAll()
    {
        const auto inotifyDescriptors = [] {
            int count = 0;
            const QDir descriptors(QStringLiteral("/proc/self/fd"));
            for (const QString &name : descriptors.entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System)) {
                char target[64] = {};
                if (readlink(qPrintable(descriptors.filePath(name)), target, sizeof target - 1) > 0)
                    count += QByteArray(target).contains("inotify");
            }
            return count;
        };
        QObject context;
        for (int i = 0; i < 20; ++i)
            __watchFileChange(path("file%1").arg(i), &context, [] {});
        QCOMPARE(inotifyDescriptors(), 1);
    }

    // More events than the kernel keeps: what was lost must not matter.
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

    // Where the kernel gives no watch, the file is looked at now and then.
    void withoutTheKernelsHelp()
    {
        m_watch.reset(); // the descriptor that all share goes with the last watch
        QVERIFY(QDir().mkpath(path("a/b")));
        write("old");
        rlimit before;
        QVERIFY(getrlimit(RLIMIT_NOFILE, &before) == 0);
        const int next = ::dup(0);
        ::close(next);
        const rlimit none{static_cast<rlim_t>(next), before.rlim_max};
        QVERIFY(setrlimit(RLIMIT_NOFILE, &none) == 0);
        QTest::ignoreMessage(QtWarningMsg, "QSocketNotifier: Invalid socket specified");
        watch();
        QVERIFY(setrlimit(RLIMIT_NOFILE, &before) == 0);
        write("new");
        QTRY_COMPARE(last(), QByteArray("new"));
        m_watch.reset();
    }

    // Nothing in the directory changes, only that we may look into it.
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
    }

    // The callback shows a dialog, say, and the new file is written to meanwhile.
    void callbackThatRunsAnEventLoop()
    {
        QVERIFY(QDir().mkpath(path("a/b")));
        write("old");
        QEventLoop dialog;
        QByteArray seenWithin;
        bool first = true;
        m_watch.reset(__watchFileChange(file(), nullptr, [&] {
            if (!first) {
                seenWithin = testing::readFile(file());
                dialog.quit();
                return;
            }
            first = false;
            QTimer::singleShot(200, &dialog, [this] { write("newer"); });
            QTimer::singleShot(testing::patience / 4, &dialog, &QEventLoop::quit);
            dialog.exec();
        }));
        replace("new");
        QTRY_COMPARE(seenWithin, QByteArray("newer"));
    }

    // Every edit ends with a state that the watch must reach, however the edits race with it.
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

    // Longer than the watch waits for a writer that has not finished.
    static void settle() { QTest::qWait(150); }

    QScopedPointer<QTemporaryDir> m_directory;
    std::unique_ptr<QObject> m_watch;
    QList<QByteArray> m_seen;
    int m_calls = 0;
};
QTEST_GUILESS_MAIN(tst_FileWatch)
#include "tst_filewatch.moc"
