#include "testing.h"

#include <gesture_api/configuration.h>
#include <gesture_api/gestureservice.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>

#include <fcntl.h>
#include <grp.h>
#include <linux/fs.h>
#include <sys/file.h>
#include <sys/ioctl.h>
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

// The effect of a save on everything that it finds in the file system.
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

    void ownerStays_data()
    {
        QTest::addColumn<uint>("owner");
        QTest::addColumn<uint>("group");
        QTest::newRow("another user and group") << 1234u << 4321u;
        QTest::newRow("another user alone") << 1234u << 0u;
        QTest::newRow("another group alone") << 0u << 4321u;
    }

    void ownerStays()
    {
        QFETCH(uint, owner);
        QFETCH(uint, group);
        if (geteuid() != 0)
            QSKIP("only root can save somebody else's file");
        testing::writeFile(path("file"), "old");
        QCOMPARE(chown(qPrintable(path("file")), owner, group), 0);
        QVERIFY(save(path("file")) > 0);
        struct stat status;
        QCOMPARE(stat(qPrintable(path("file")), &status), 0);
        QCOMPARE(status.st_uid, owner);
        QCOMPARE(status.st_gid, group);
    }

    void accessListStays()
    {
        const QByteArray list = testing::accessList(6, 1234, 6, 0, 6, 0);
        testing::writeFile(path("file"), "old");
        if (setxattr(qPrintable(path("file")), "system.posix_acl_access", list.constData(), list.size(), 0) != 0)
            QSKIP("this file system keeps no access lists");
        QVERIFY(save(path("file")) > 0);
        QCOMPARE(attribute(path("file"), "system.posix_acl_access"), list);
    }

    void longAccessListStays()
    {
        QVERIFY(QDir().mkpath(path("disk")));
        if (mount("none", qPrintable(path("disk")), "tmpfs", 0, "size=1m") != 0)
            QSKIP("a file system that keeps such a list can not be mounted here");
        const QByteArray list = testing::accessList(6, 1000, 4, 0, 6, 0, 1000);
        testing::writeFile(path("disk/file"), "old");
        const bool listed =
                setxattr(qPrintable(path("disk/file")), "system.posix_acl_access", list.constData(), list.size(), 0)
                == 0;
        const qint64 saved = save(path("disk/file"));
        const QByteArray now = attribute(path("disk/file"), "system.posix_acl_access");
        umount(qPrintable(path("disk")));
        QVERIFY(listed);
        QVERIFY(saved > 0);
        QVERIFY(list.size() > 4096);
        QCOMPARE(now, list);
    }

    // A file without an access list does not get the one that the directory gives to new files.
    void directorysAccessListDoesNotWiden()
    {
        QVERIFY(QDir().mkpath(path("dir")));
        testing::writeFile(path("dir/file"), "old");
        QCOMPARE(chmod(qPrintable(path("dir/file")), 0640), 0);
        const QByteArray list = testing::accessList(7, 1234, 7, 7, 7, 7);
        if (setxattr(qPrintable(path("dir")), "system.posix_acl_default", list.constData(), list.size(), 0) != 0)
            QSKIP("this file system keeps no access lists");
        QVERIFY(save(path("dir/file")) > 0);
        QCOMPARE(attribute(path("dir/file"), "system.posix_acl_access"), QByteArray("(none)"));
        QCOMPARE(modeOf(path("dir/file")), 0640);
        // A new file gets it.
        QVERIFY(save(path("dir/new")) > 0);
        QVERIFY(attribute(path("dir/new"), "system.posix_acl_access") != QByteArray("(none)"));
    }

    void attributesOfUsersStay()
    {
        testing::writeFile(path("file"), "old");
        const QByteArray note(3000, 'n');
        if (setxattr(qPrintable(path("file")), "user.note", note.constData(), note.size(), 0) != 0)
            QSKIP("this file system keeps no extended attributes");
        QCOMPARE(setxattr(qPrintable(path("file")), "user.empty", "", 0, 0), 0);
        QCOMPARE(setxattr(qPrintable(path("file")), "user.byte", "b", 1, 0), 0);
        QVERIFY(save(path("file")) > 0);
        QCOMPARE(attribute(path("file"), "user.note"), note);
        QCOMPARE(attribute(path("file"), "user.empty"), QByteArray());
        QCOMPARE(attribute(path("file"), "user.byte"), QByteArray("b"));
    }

    // There, the file is also a new one with the rights of the old one.
    void fileSystemWithoutAttributes()
    {
        QVERIFY(QDir().mkpath(path("disk")));
        if (mount("none", qPrintable(path("disk")), "ramfs", 0, nullptr) != 0)
            QSKIP("such a file system can not be mounted here");
        const QString file = path("disk/file");
        testing::writeFile(file, "old");
        const bool prepared = chmod(qPrintable(file), 0640) == 0;
        const bool without = getxattr(qPrintable(file), "system.posix_acl_access", nullptr, 0) < 0 && errno == ENOTSUP;
        const ino_t before = statusOf(file).st_ino;
        const qint64 saved = save(file);
        const struct stat now = statusOf(file);
        umount(qPrintable(path("disk")));
        QVERIFY(prepared && without);
        QVERIFY(saved > 0);
        QVERIFY(now.st_ino != before);
        QCOMPARE(now.st_mode & 07777, 0640u);
    }

    // In such a directory a new file gets the directory's group.
    void groupStaysInADirectoryThatHandsOnItsOwn()
    {
        if (geteuid() != 0)
            QSKIP("only root can make such a directory of another group");
        QVERIFY(QDir().mkpath(path("dir")));
        QCOMPARE(chown(qPrintable(path("dir")), 0, 1234), 0);
        QCOMPARE(chmod(qPrintable(path("dir")), 02775), 0);
        testing::writeFile(path("dir/file"), "old");
        QCOMPARE(chown(qPrintable(path("dir/file")), 0, 0), 0);
        QCOMPARE(chmod(qPrintable(path("dir/file")), 0660), 0);
        QVERIFY(save(path("dir/file")) > 0);
        const struct stat now = statusOf(path("dir/file"));
        QCOMPARE(now.st_gid, 0u);
        QCOMPARE(now.st_mode & 07777, 0660u);
    }

    void specialBitsStay()
    {
        testing::writeFile(path("file"), "old");
        QCOMPARE(chmod(qPrintable(path("file")), 07750), 0);
        QVERIFY(save(path("file")) > 0);
        QCOMPARE(modeOf(path("file")), 07750);
    }

    // Users who could read or write somebody else's shared file still can afterwards.
    void sharedFileOfSomebodyElse_data()
    {
        QTest::addColumn<uint>("owner");
        QTest::addColumn<uint>("group");
        QTest::addColumn<int>("mode");
        QTest::addColumn<bool>("directly"); // since the file would get another owner
        QTest::newRow("the owner is in the group") << 1u << 1u << 0660 << false;
        QTest::newRow("the owner is not known to be in it") << 1234u << 5678u << 0660 << true;
        QTest::newRow("the owner may do more than the group") << 1u << 1u << 0760 << true;
        QTest::newRow("everybody may write") << 1234u << 5678u << 0666 << false;
        QTest::newRow("it ran as its owner, and would run as another") << 1234u << 5678u << 04666 << false;
    }

    void sharedFileOfSomebodyElse()
    {
        if (geteuid() != 0)
            QSKIP("only root can make somebody else's file");
        QFETCH(uint, owner);
        QFETCH(uint, group);
        QFETCH(int, mode);
        QFETCH(bool, directly);
        const QString file = path("dir/file");
        testing::writeFile(file, "old");
        QCOMPARE(chmod(qPrintable(path("dir")), 0777), 0);
        QCOMPARE(chown(qPrintable(file), owner, group), 0);
        QCOMPARE(chmod(qPrintable(file), static_cast<mode_t>(mode)), 0);
        const ino_t before = statusOf(file).st_ino;

        const auto asUser = [group](uid_t user, const std::function<int()> &run) {
            return inChild(0, [&]() -> int {
                const bool becomes =
                        setgroups(1, &group) == 0 && setgid(user == 4321 ? 4321 : group) == 0 && setuid(user) == 0;
                return becomes ? run() : 99;
            });
        };
        QCOMPARE(asUser(4321, [&] { return save(file) > 0 ? 0 : 1; }), 0);
        QVERIFY(isDocument(file));
        const struct stat now = statusOf(file);
        QCOMPARE(now.st_gid, group);
        QCOMPARE(static_cast<int>(now.st_mode & 07777), mode & 0777);
        QCOMPARE(now.st_ino == before, directly);
        QCOMPARE(now.st_uid, directly ? owner : 4321u);
        QCOMPARE(asUser(owner, [&] { return save(file) > 0 ? 0 : 1; }), 0);
        QCOMPARE(testing::filesBelow(path("dir")), QStringList("file"));
    }

    // Its group's bits have another meaning: the owner may have fewer rights as one of the others.
    void sharedFileWithAnAccessListIsWrittenDirectly()
    {
        if (geteuid() != 0)
            QSKIP("only root can make somebody else's file");
        const QString file = path("dir/file");
        const QByteArray list = testing::accessList(6, 4321, 6, 6, 6, 6);
        testing::writeFile(file, "old");
        QCOMPARE(chmod(qPrintable(path("dir")), 0777), 0);
        QCOMPARE(chown(qPrintable(file), 1234, 4321), 0);
        if (setxattr(qPrintable(file), "system.posix_acl_access", list.constData(), list.size(), 0) != 0)
            QSKIP("this file system keeps no access lists");
        QCOMPARE(inChild(4321, [&] { return save(file) > 0 ? 0 : 1; }), 0);
        QVERIFY(isDocument(file));
        QCOMPARE(statusOf(file).st_uid, 1234u);
        QCOMPARE(attribute(file, "system.posix_acl_access"), list);
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

    void nameWithoutADirectory()
    {
        const QString before = QDir::currentPath();
        const auto cleanUp = qScopeGuard([&] { QDir::setCurrent(before); });
        QVERIFY(QDir::setCurrent(m_directory->path()));
        for (const char *name : {"file", "./other", "new/file"})
            QVERIFY(save(QString::fromLatin1(name)) > 0);
        QVERIFY(save(QStringLiteral("file")) > 0);
        QDir::setCurrent(before);
        QVERIFY(isDocument(path("file")));
        QCOMPARE(testing::filesBelow(m_directory->path()), QStringList({"file", "new/file", "other"}));
    }

    void noNameIsRefused()
    {
        QCOMPARE(refusal(QString()), QStringLiteral("can not open file: No file name specified (path: )"));
    }

    // It stays a pipe, and its reader gets the text.
    void pipeWithAReaderIsWrittenDirectly()
    {
        QCOMPARE(mkfifo(qPrintable(path("pipe")), 0600), 0);
        QFile reader;
        const int descriptor = open(qPrintable(path("pipe")), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        QVERIFY(reader.open(descriptor, QIODevice::ReadOnly | QIODevice::Unbuffered, QFile::AutoCloseHandle));
        const qint64 saved = save(path("pipe"));
        QVERIFY(saved > 0);
        QVERIFY(S_ISFIFO(statusOf(path("pipe")).st_mode));
        QCOMPARE(reader.read(1000).size(), static_cast<int>(saved));
        QCOMPARE(testing::filesBelow(m_directory->path()), QStringList("pipe"));
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

    // Permissions mean nothing to root: the save runs in a child as another user.
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

    // A service of an ordinary user on files that only root may touch: error lines, the defaults, no harm.
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

    // A mount point for a file can only be written directly.
    void directWrite_data()
    {
        QTest::addColumn<int>("oldSize");
        QTest::addColumn<int>("gestures");
        QTest::addColumn<QString>("full"); // the full file system
        QTest::newRow("over a longer file") << 100000 << 10 << "";
        QTest::newRow("over a shorter file") << 10 << 900 << "";
        QTest::newRow("full disk, longer than before") << 20000 << 900 << "disk";
        QTest::newRow("limit, longer than before") << 20000 << 900 << "limit";
    }

    void directWrite()
    {
        QFETCH(int, oldSize);
        QFETCH(int, gestures);
        QFETCH(QString, full);
        QVERIFY(QDir().mkpath(path("disk")));
        if (mount("none", qPrintable(path("disk")), "tmpfs", 0, "size=256k") != 0)
            QSKIP("a file system can not be mounted here");
        const QString file = path("disk/file");
        const QByteArray old(oldSize, 'o');
        testing::writeFile(file, old);
        const bool bound = mount(qPrintable(file), qPrintable(file), nullptr, MS_BIND, nullptr) == 0;
        QFile filler(path("disk/filler"));
        const bool opened = filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
        while (full == QLatin1String("disk") && filler.write(QByteArray(1024, 'x')) == 1024) {
        }
        filler.close();
        const int result = inChild(geteuid(), [&]() -> int {
            QObject owner;
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit limit{100, 100};
            if (full == QLatin1String("limit"))
                setrlimit(RLIMIT_FSIZE, &limit);
            return save(file, manyGestures(gestures, &owner)) > 0 ? 0 : 1;
        });
        const QByteArray now = testing::readFile(file);
        umount(qPrintable(file));
        const QStringList files = testing::filesBelow(path("disk"));
        umount(qPrintable(path("disk")));
        QVERIFY(bound && opened);
        QCOMPARE(result, full.isEmpty() ? 0 : 1);
        if (full.isEmpty())
            QVERIFY2(now.startsWith("{\n") && now.endsWith("}\n"), now.left(100));
        else
            QCOMPARE(now, old);
        QCOMPARE(files, QStringList({"file", "filler"}));
    }

    void appendOnlyDirectory_data()
    {
        QTest::addColumn<bool>("exists");
        QTest::newRow("existing") << true;
        QTest::newRow("absent") << false;
    }

    void appendOnlyDirectory()
    {
        QFETCH(bool, exists);
        QVERIFY(QDir().mkpath(path("dir")));
        if (exists)
            testing::writeFile(path("dir/file"), QByteArray(1000, 'o'));
        if (!setAppendOnly(path("dir"), true))
            QSKIP("a directory can not be made append-only here");
        const mode_t mask = umask(022);
        const qint64 saved = save(path("dir/file"));
        umask(mask);
        const QStringList files = testing::filesBelow(path("dir"));
        QVERIFY(setAppendOnly(path("dir"), false));
        QVERIFY(saved > 0);
        QVERIFY(isDocument(path("dir/file")));
        QVERIFY(exists || modeOf(path("dir/file")) == 0644);
        QCOMPARE(files, QStringList("file"));
    }

    void failuresInAnAppendOnlyDirectory()
    {
        QVERIFY(QDir().mkpath(path("dir")));
        if (!setAppendOnly(path("dir"), true))
            QSKIP("a directory can not be made append-only here");
        QObject owner;
        const QList<Gesture *> gestures = manyGestures(100, &owner);
        rlimit before;
        QCOMPARE(getrlimit(RLIMIT_FSIZE, &before), 0);
        const rlimit limit{64, before.rlim_max};
        const auto handler = std::signal(SIGXFSZ, SIG_IGN);
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &limit), 0);
        const qint64 cut = save(path("dir/file"), gestures);
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &before), 0);
        std::signal(SIGXFSZ, handler);
        const auto unnameable =
                Configuration::ActionBindings::saveJson(path("dir/") + QString(300, QLatin1Char('x')), gestures);
        QVERIFY(setAppendOnly(path("dir"), false));
        QCOMPARE(cut, qint64(-1));
        QVERIFY(unnameable.isLeft());
        QVERIFY2(unnameable.left().startsWith(QLatin1String("can not open file: File name too long")),
                 qPrintable(unnameable.left()));
    }

    // The next save removes the leftovers of killed ones; files of others, or in use, stay.
    void straysAreRemoved()
    {
        const pid_t ended = fork();
        if (ended == 0)
            _exit(0);
        waitpid(ended, nullptr, 0);
        const QString gone = path("dir/.gestures-%1-0").arg(ended);
        const QString atWork = path("dir/.gestures-%1-1").arg(ended);
        const QString running = path("dir/.gestures-%1-0").arg(getppid());
        const QStringList others = {path("dir/.gestures-"),
                                    path("dir/.gestures-%1-").arg(ended),
                                    path("dir/.gestures-%1-0x").arg(ended),
                                    path("dir/.gestures--1-0"),
                                    path("dir/.gestures-0-0"),
                                    path("dir/.gestures-99999999999999-0"),
                                    path("dir/gestures-%1-0").arg(ended)};
        for (const QString &name : QStringList{gone, atWork, running} + others)
            testing::writeFile(name, "half");
        QCOMPARE(symlink("file", qPrintable(path("dir/.gestures-%1-3").arg(ended))), 0);
        QCOMPARE(mkfifo(qPrintable(path("dir/.gestures-%1-4").arg(ended)), 0600), 0);
        QVERIFY(QDir().mkpath(path("dir/.gestures-%1-5").arg(ended)));
        QFile locked(atWork);
        QVERIFY(locked.open(QIODevice::ReadOnly));
        QCOMPARE(flock(locked.handle(), LOCK_EX), 0);

        QVERIFY(save(path("dir/file")) > 0);
        QVERIFY(!QFileInfo::exists(gone));
        for (const QString &name : QStringList{atWork, running} + others)
            QCOMPARE(testing::readFile(name), QByteArray("half"));
        QVERIFY(QFileInfo(path("dir/.gestures-%1-3").arg(ended)).isSymLink());
        QVERIFY(QFileInfo::exists(path("dir/.gestures-%1-4").arg(ended)));
        QVERIFY(QFileInfo::exists(path("dir/.gestures-%1-5").arg(ended)));

        // Of another user's running process.
        testing::writeFile(path("dir/.gestures-1-0"), "half");
        QCOMPARE(chmod(qPrintable(path("dir")), 0777), 0);
        QCOMPARE(chmod(qPrintable(path("dir/file")), 0666), 0);
        QCOMPARE(chmod(qPrintable(path("dir/.gestures-1-0")), 0666), 0);
        QCOMPARE(inChild(geteuid() == 0 ? 65534 : geteuid(), [&] { return save(path("dir/file")) > 0 ? 0 : 1; }), 0);
        QCOMPARE(testing::readFile(path("dir/.gestures-1-0")), QByteArray("half"));

        // Of a process elsewhere with this one's number that is still writing.
        QFile elsewhere(path("dir/.gestures-%1-0").arg(getpid()));
        QVERIFY(elsewhere.open(QIODevice::WriteOnly));
        elsewhere.write("half");
        elsewhere.flush();
        QCOMPARE(flock(elsewhere.handle(), LOCK_EX), 0);
        QVERIFY(save(path("dir/file")) > 0);
        QVERIFY(isDocument(path("dir/file")));
        QCOMPARE(testing::readFile(elsewhere.fileName()), QByteArray("half"));
        elsewhere.close();

        // Of an earlier process with this one's number.
        testing::writeFile(path("dir/.gestures-%1-7").arg(getpid()), "half");
        locked.close();
        QVERIFY(save(path("dir/file")) > 0);
        QVERIFY(!QFileInfo::exists(path("dir/.gestures-%1-7").arg(getpid())));
        QVERIFY(!QFileInfo::exists(atWork));
        QVERIFY(QFileInfo(path("dir/.gestures-%1-3").arg(ended)).isSymLink());
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
        QVERIFY(result == -1 || (!exists && result == -2)); // -2: not even space for its name
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

    static int modeOf(const QString &file) { return static_cast<int>(statusOf(file).st_mode & 07777); }

    static struct stat statusOf(const QString &file)
    {
        struct stat status = {};
        if (stat(qPrintable(file), &status) != 0)
            qFatal("no such file: %s", qPrintable(file));
        return status;
    }

    static QByteArray attribute(const QString &file, const char *name)
    {
        QByteArray value(65536, '\0');
        const ssize_t size = getxattr(qPrintable(file), name, value.data(), static_cast<std::size_t>(value.size()));
        return size < 0 ? QByteArray("(none)") : value.left(static_cast<int>(size));
    }

    static bool setAppendOnly(const QString &directory, bool on)
    {
        const int descriptor = open(qPrintable(directory), O_RDONLY | O_DIRECTORY);
        int flags = 0;
        bool done = ioctl(descriptor, FS_IOC_GETFLAGS, &flags) == 0;
        flags = on ? flags | FS_APPEND_FL : flags & ~FS_APPEND_FL;
        done = done && ioctl(descriptor, FS_IOC_SETFLAGS, &flags) == 0;
        close(descriptor);
        return done;
    }

    static int inChild(uid_t user, const std::function<int()> &run)
    {
        return testing::inChild([&] {
            const bool becomes = geteuid() == user || (setgid(user) == 0 && setuid(user) == 0);
            return becomes ? run() : 99;
        });
    }

    std::unique_ptr<QTemporaryDir> m_directory;
};

QTEST_GUILESS_MAIN(tst_SaveFile)
#include "tst_savefile.moc"
