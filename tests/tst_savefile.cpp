#include "testing.h"

#include <gesture_api/configuration.h>
#include <gesture_api/gestureservice.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <csignal>
#include <functional>
#include <memory>

using namespace vellix;
using namespace vellix::gesture;
using Bindings = Configuration::ActionBindings;

// How a save treats what it finds in the file system.
class tst_SaveFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_directory.reset(new QTemporaryDir);
        QCOMPARE(chmod(qPrintable(m_directory->path()), 0755), 0);
    }

    void symbolicLinkIsFollowed_data()
    {
        QTest::addColumn<QStringList>("links"); // each to the next, the last to "real/file"
        QTest::addColumn<bool>("dangling");
        QTest::newRow("one link") << QStringList{"link"} << false;
        QTest::newRow("a chain") << QStringList{"link", "second", "third"} << false;
        QTest::newRow("dangling") << QStringList{"link"} << true;
        QTest::newRow("a dangling chain") << QStringList{"link", "second"} << true;
    }

    void symbolicLinkIsFollowed()
    {
        QFETCH(QStringList, links);
        QFETCH(bool, dangling);
        QVERIFY(QDir().mkpath(path("real")));
        if (!dangling)
            testing::writeFile(path("real/file"), "old");
        for (int i = 0; i < links.size(); ++i) {
            const QString target = links.value(i + 1, QStringLiteral("real/file"));
            QCOMPARE(symlink(qPrintable(target), qPrintable(path(links.at(i)))), 0);
        }
        QVERIFY(save(path("link")) > 0);
        QVERIFY(QFileInfo(path("link")).isSymLink());
        QVERIFY(isDocument(path("real/file")));
        QCOMPARE(testing::filesBelow(path("real")), QStringList(QStringLiteral("file")));
    }

    void circleOfLinksIsRefused()
    {
        QCOMPARE(symlink("b", qPrintable(path("a"))), 0);
        QCOMPARE(symlink("a", qPrintable(path("b"))), 0);
        QCOMPARE(refusal(path("a")),
                 QStringLiteral("can not open file: Too many levels of symbolic links (path: %1)").arg(path("a")));
    }

    void permissionsStay_data()
    {
        QTest::addColumn<int>("mode");
        QTest::newRow("private") << 0600;
        QTest::newRow("group may write") << 0664;
        QTest::newRow("everybody") << 0666;
    }

    void permissionsStay()
    {
        QFETCH(int, mode);
        testing::writeFile(path("file"), "old");
        QCOMPARE(chmod(qPrintable(path("file")), static_cast<mode_t>(mode)), 0);
        QVERIFY(save(path("file")) > 0);
        QCOMPARE(modeOf(path("file")), mode);
    }

    void ownerStays()
    {
        if (geteuid() != 0)
            QSKIP("only root can save somebody else's file");
        testing::writeFile(path("file"), "old");
        QCOMPARE(chown(qPrintable(path("file")), 1234, 4321), 0);
        QVERIFY(save(path("file")) > 0);
        struct stat status;
        QCOMPARE(stat(qPrintable(path("file")), &status), 0);
        QCOMPARE(status.st_uid, 1234u);
        QCOMPARE(status.st_gid, 4321u);
    }

    void accessListStays()
    {
        // user::rw- user:1234:rw- group::--- mask::rw- other::---
        static const unsigned char list[] = {2, 0,   0,   0,   1,   0,   6,  0, 255, 255, 255, 255, 2,   0,  6,
                                             0, 210, 4,   0,   0,   4,   0,  0, 0,   255, 255, 255, 255, 16, 0,
                                             6, 0,   255, 255, 255, 255, 32, 0, 0,   0,   255, 255, 255, 255};
        testing::writeFile(path("file"), "old");
        const char *const name = "system.posix_acl_access";
        if (setxattr(qPrintable(path("file")), name, list, sizeof list, 0) != 0)
            QSKIP("this file system keeps no access lists");
        QVERIFY(save(path("file")) > 0);
        unsigned char now[100];
        const ssize_t size = getxattr(qPrintable(path("file")), name, now, sizeof now);
        QCOMPARE(QByteArray(reinterpret_cast<char *>(now), static_cast<int>(size)),
                 QByteArray(reinterpret_cast<const char *>(list), sizeof list));
    }

    void newFileFollowsTheProcessMask()
    {
        const mode_t before = umask(027);
        QVERIFY(save(path("file")) > 0);
        umask(before);
        QCOMPARE(modeOf(path("file")), 0640);
    }

    void hardLinkKeepsTheOldBytes()
    {
        testing::writeFile(path("file"), "old");
        QCOMPARE(link(qPrintable(path("file")), qPrintable(path("other"))), 0);
        QVERIFY(save(path("file")) > 0);
        QCOMPARE(testing::readFile(path("other")), QByteArray("old"));
    }

    void directoriesAreMade()
    {
        QVERIFY(save(path("a/b/c/file")) > 0);
        QVERIFY(isDocument(path("a/b/c/file")));
    }

    void refusals_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("reason");
        QTest::newRow("a directory") << "directory"
                                     << "Is a directory";
        QTest::newRow("a pipe that nobody reads") << "pipe"
                                                  << "No such device or address";
        QTest::newRow("below a file") << "plain/file"
                                      << "Not a directory";
        QTest::newRow("a name too long") << QString(300, QLatin1Char('x')) << "File name too long";
    }

    void refusals()
    {
        QFETCH(QString, name);
        QFETCH(QString, reason);
        QVERIFY(QDir().mkpath(path("directory")));
        QCOMPARE(mkfifo(qPrintable(path("pipe")), 0600), 0);
        testing::writeFile(path("plain"), "text");
        QCOMPARE(refusal(path(name)), QStringLiteral("can not open file: %1 (path: %2)").arg(reason, path(name)));
        QCOMPARE(testing::readFile(path("plain")), QByteArray("text"));
    }

    void deviceIsWrittenDirectly()
    {
        QVERIFY(save(QStringLiteral("/dev/null")) > 0);
        QCOMPARE(save(QStringLiteral("/dev/full")), qint64(-1));
        struct stat status;
        QCOMPARE(stat("/dev/null", &status), 0);
        QVERIFY(S_ISCHR(status.st_mode));
    }

    void ordinaryUser_data()
    {
        QTest::addColumn<QString>("situation");
        QTest::newRow("a read-only file is refused") << "read-only file";
        QTest::newRow("a directory that takes no new file is refused") << "no new file";
        QTest::newRow("a writable file in a read-only directory is written directly") << "direct";
        QTest::newRow("somebody else's file in an own directory is refused") << "foreign file";
        QTest::newRow("a writable file that may not be replaced is written directly") << "sticky";
    }

    // Permissions mean nothing to root: the save runs in a child that is somebody else.
    void ordinaryUser()
    {
        QFETCH(QString, situation);
        const QString file = path("dir/file");
        const bool exists = situation != QLatin1String("no new file");
        QVERIFY(QDir().mkpath(path("dir")));
        if (exists)
            testing::writeFile(file, "old");
        const bool root = geteuid() == 0;
        const uid_t user = root ? 65534 : geteuid();
        if (root) {
            QCOMPARE(chown(qPrintable(path("dir")), user, user), 0);
            if (situation == QLatin1String("sticky")) {
                QCOMPARE(chown(qPrintable(path("dir")), 0, 0), 0);
                QCOMPARE(chmod(qPrintable(path("dir")), 01777), 0);
                QCOMPARE(chmod(qPrintable(file), 0666), 0);
            } else if (exists && situation != QLatin1String("foreign file")) {
                QCOMPARE(chown(qPrintable(file), user, user), 0);
            }
        } else if (situation == QLatin1String("foreign file") || situation == QLatin1String("sticky")) {
            QSKIP("only root can make somebody else's file");
        }
        if (situation == QLatin1String("read-only file"))
            QCOMPARE(chmod(qPrintable(file), 0444), 0);
        if (situation == QLatin1String("no new file") || situation == QLatin1String("direct"))
            QCOMPARE(chmod(qPrintable(path("dir")), 0555), 0);

        const bool direct = situation == QLatin1String("direct") || situation == QLatin1String("sticky");
        const int result = inChild(user, [&]() -> int {
            const auto saved = Bindings::saveJson(file, {});
            if (direct)
                return saved.isRight() && saved.right() > 0 ? 0 : 1;
            return saved.isLeft()
                            && saved.left()
                                    == QStringLiteral("can not open file: Permission denied (path: ") + file
                                            + QLatin1Char(')')
                    ? 0
                    : 2;
        });
        QCOMPARE(result, 0);
        QCOMPARE(chmod(qPrintable(path("dir")), 0755), 0);
        if (direct)
            QVERIFY(isDocument(file));
        else
            QCOMPARE(testing::readFile(file), exists ? QByteArray("old") : QByteArray("(no file)"));
        QCOMPARE(testing::filesBelow(path("dir")), exists ? QStringList(QStringLiteral("file")) : QStringList());
    }

    // A service of an ordinary user on what only root may touch: error lines, the defaults, no harm.
    void serviceWithoutPermission_data()
    {
        QTest::addColumn<QString>("situation");
        QTest::newRow("the user's file can not be read") << "file";
        QTest::newRow("the home directory is somebody else's") << "home";
    }

    void serviceWithoutPermission()
    {
        if (geteuid() != 0)
            QSKIP("only root can take a permission away from somebody else");
        QFETCH(QString, situation);
        const bool file = situation == QLatin1String("file");
        const QByteArray choice = R"({"version": 1, "actions": {"g": "b"}})";
        testing::writeFile(path("default"), R"({"actions": [{"path": "a", "title": "A"}, {"path": "b", "title": "B"}],
            "gestures": [{"id": "g", "kind": "tap", "zone": "left", "defaultAction": "a"}]})");
        QVERIFY(QDir().mkpath(path("home")));
        if (file) {
            testing::writeFile(path("home/user"), choice);
            QCOMPARE(chmod(qPrintable(path("home/user")), 0600), 0);
        }
        const int result = inChild(65534, [&]() -> int {
            testing::LogCapture log;
            GestureService service(ApplicationPaths({}, path("home/user"), path("default")), nullptr, false);
            if (service.gestureList().size() != 1
                || service.gestureList().at(0)->currentAction()->path() != QLatin1String("a"))
                return 1;
            if (log.lines.size() != (file ? 1 : 0) || (file && !log.lines[0].body.contains("Permission denied")))
                return 2;
            if (!service.save() || log.qtMessages.size() != 1
                || !log.qtMessages[0].contains("can not open file: Permission denied (path: "))
                return 3;
            return 0;
        });
        QCOMPARE(result, 0);
        QCOMPARE(testing::filesBelow(path("home")), file ? QStringList("user") : QStringList());
        QVERIFY(!file || testing::readFile(path("home/user")) == choice);
    }

    // A limit on the size of files fails the write as a full disk does.
    void fullDiskKeepsTheOldFile_data()
    {
        QTest::addColumn<int>("gestures");
        QTest::addColumn<bool>("exists");
        QTest::newRow("small, existing") << 10 << true;
        QTest::newRow("small, absent") << 10 << false;
        QTest::newRow("beyond every buffer, existing") << 900 << true;
        QTest::newRow("beyond every buffer, absent") << 900 << false;
    }

    void fullDiskKeepsTheOldFile()
    {
        QFETCH(int, gestures);
        QFETCH(bool, exists);
        if (exists)
            testing::writeFile(path("dir/file"), "old");
        else
            QVERIFY(QDir().mkpath(path("dir")));
        const int result = inChild(geteuid(), [&]() -> int {
            QObject owner;
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit limit{64, 64};
            setrlimit(RLIMIT_FSIZE, &limit);
            return save(path("dir/file"), manyGestures(gestures, &owner)) == -1 ? 0 : 1;
        });
        QCOMPARE(result, 0);
        QCOMPARE(testing::readFile(path("dir/file")), exists ? QByteArray("old") : QByteArray("(no file)"));
        QCOMPARE(testing::filesBelow(path("dir")), exists ? QStringList(QStringLiteral("file")) : QStringList());
    }

    void fullFileSystemKeepsTheOldFile_data() { fullDiskKeepsTheOldFile_data(); }

    void fullFileSystemKeepsTheOldFile()
    {
        QFETCH(int, gestures);
        QFETCH(bool, exists);
        const QString disk = path("disk");
        QVERIFY(QDir().mkpath(disk));
        if (mount("none", qPrintable(disk), "tmpfs", 0, "size=64k") != 0)
            QSKIP("a file system can not be mounted here; the limit on file sizes is tested above");
        const QByteArray old(20000, 'o');
        if (exists)
            testing::writeFile(disk + "/file", old);
        QFile filler(disk + "/filler");
        QVERIFY(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        while (filler.write(QByteArray(1024, 'x')) == 1024) {
        }
        filler.close();

        QObject owner;
        const qint64 result = save(disk + "/file", manyGestures(gestures, &owner));
        const QByteArray now = testing::readFile(disk + "/file");
        QFile::remove(disk + "/filler");
        const QStringList files = testing::filesBelow(disk);
        const qint64 retried = save(disk + "/file", manyGestures(gestures, &owner));
        umount(qPrintable(disk));
        QVERIFY(result == -1 || (!exists && result == -2)); // -2: not even a name for it
        QCOMPARE(now, exists ? old : QByteArray("(no file)"));
        QCOMPARE(files, exists ? QStringList("file") : QStringList());
        QVERIFY(retried > 0);
    }

private:
    QString path(const QString &name) const { return m_directory->filePath(name); }
    QString path(const char *name) const { return path(QString::fromLatin1(name)); }

    static qint64 save(const QString &file, const QList<Gesture *> &gestures = {})
    {
        const auto saved = Bindings::saveJson(file, gestures);
        return saved.isRight() ? saved.right() : -2;
    }

    static QList<Gesture *> manyGestures(int count, QObject *owner)
    {
        QList<Gesture *> gestures;
        for (int i = 0; i < count; ++i) {
            auto *action = new Action(QStringLiteral("path"), {}, {});
            gestures.append(new Gesture(QStringLiteral("gesture number %1").arg(i), {}, Gesture::Tap, {},
                                        Gesture::NoDirection, {}, action, nullptr, {}, owner));
        }
        return gestures;
    }

    static QString refusal(const QString &file)
    {
        const auto saved = Bindings::saveJson(file, {});
        return saved.isLeft() ? saved.left() : QStringLiteral("no refusal");
    }

    static bool isDocument(const QString &file)
    {
        return testing::readFile(file) == "{\n    \"actions\": {\n    },\n    \"version\": 1\n}\n";
    }

    static int modeOf(const QString &file)
    {
        struct stat status;
        return stat(qPrintable(file), &status) == 0 ? static_cast<int>(status.st_mode & 07777) : -1;
    }

    static int inChild(uid_t user, const std::function<int()> &run)
    {
        const pid_t child = fork();
        if (child == 0) {
            const bool becomes = geteuid() == user || (setgid(user) == 0 && setuid(user) == 0);
            _exit(becomes ? run() : 99);
        }
        int status = 0;
        waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    std::unique_ptr<QTemporaryDir> m_directory;
};

QTEST_GUILESS_MAIN(tst_SaveFile)
#include "tst_savefile.moc"
