#include "testing.h"

#include <gesture_api/gestureservice.h>

#include <vellix/platform/host.h>

#include <QDir>
#include <QFileInfo>

#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <memory>

using namespace vellix;
using namespace vellix::gesture;
using testing::LogCapture;

// A refused user's file is copied to a file beside it before it is overwritten.
class tst_RejectedFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_directory.reset(new QTemporaryDir);
        QCOMPARE(chmod(qPrintable(m_directory->path()), 0755), 0);
        testing::writeFile(path("default"),
                           "{\"actions\": [{\"path\": \"a\", \"title\": \"A\"}], \"gestures\": ["
                           "{\"id\": \"g\", \"kind\": \"tap\", \"zone\": \"left\", "
                           "\"defaultAction\": \"a\"}]}");
        testing::writeFile(file(), "garbage");
    }

    void eachHasItsName()
    {
        QStringList kept;
        for (int number = 1; number <= 8; ++number) {
            const QByteArray bytes = "garbage " + QByteArray::number(number);
            testing::writeFile(file(), bytes);
            QVERIFY(loadAndSave());
            kept.append(number == 1 ? QStringLiteral("file.rejected") : QStringLiteral("file.rejected.%1").arg(number));
            QCOMPARE(testing::readFile(path("dir/") + kept.last()), bytes);
            QCOMPARE(testing::filesBelow(path("dir")), QStringList("file") + kept);
        }
        testing::writeFile(file(), "one too many");
        QVERIFY(!loadAndSave());
        QCOMPARE(testing::readFile(file()), QByteArray("one too many"));
        QCOMPARE(testing::readFile(path("dir/file.rejected")), QByteArray("garbage 1"));
        QCOMPARE(testing::readFile(path("dir/file.rejected.8")), QByteArray("garbage 8"));
        QCOMPARE(testing::filesBelow(path("dir")), QStringList("file") + kept);
    }

    void onlyWhatWasRefusedIsKept_data()
    {
        QTest::addColumn<QByteArray>("meanwhile");
        QTest::newRow("somebody's good file") << QByteArray("{\"version\": 1, \"actions\": {}}");
        QTest::newRow("of the same size") << QByteArray("Garbage");
        QTest::newRow("longer") << QByteArray("garbage and more");
        QTest::newRow("emptied") << QByteArray();
    }

    void onlyWhatWasRefusedIsKept()
    {
        QFETCH(QByteArray, meanwhile);
        LogCapture log;
        GestureService service(paths(), nullptr, false);
        service.gestureList();
        testing::writeFile(file(), meanwhile);
        QVERIFY(service.trySave().isRight());
        QCOMPARE(testing::filesBelow(path("dir")), QStringList("file"));
    }

    void fileThatIsGoneIsNotKept()
    {
        LogCapture log;
        GestureService service(paths(), nullptr, false);
        service.gestureList();
        QVERIFY(QFile::remove(file()));
        QVERIFY(service.trySave().isRight());
        QCOMPARE(testing::filesBelow(path("dir")), QStringList("file"));
    }

    void pipeInItsPlaceDoesNotBlock()
    {
        LogCapture log;
        GestureService service(paths(), nullptr, false);
        service.gestureList();
        QVERIFY(QFile::remove(file()));
        QCOMPARE(mkfifo(qPrintable(file()), 0600), 0);
        const auto saved = service.trySave();
        QCOMPARE(saved.isLeft() ? saved.left() : QString(),
                 QStringLiteral("can not open file: No such device or address (path: %1)").arg(file()));
    }

    // The file is writable all the same, but a save must copy it first.
    void fileThatCanNotBeReadIsKeptOnceItCan()
    {
        QCOMPARE(chmod(qPrintable(file()), 0200), 0);
        if (geteuid() == 0) {
            QCOMPARE(chown(qPrintable(path("dir")), 65534, 65534), 0);
            QCOMPARE(chown(qPrintable(file()), 65534, 65534), 0);
        }
        QCOMPARE(testing::inChild([this]() -> int {
                     if (geteuid() == 0 && (setresgid(65534, 65534, 65534) != 0 || setresuid(65534, 65534, 65534) != 0))
                         return 90;
                     LogCapture log;
                     GestureService service(paths(), nullptr, false);
                     service.gestureList();
                     const auto saved = service.trySave();
                     if (saved.isRight() || !saved.left().startsWith("the rejected file can not be kept beside it"))
                         return 1;
                     if (chmod(qPrintable(file()), 0600) != 0 || testing::readFile(file()) != "garbage")
                         return 2;
                     return service.trySave().isRight() && service.trySave().isRight() ? 0 : 3;
                 }),
                 0);
        QVERIFY(testing::readFile(file()).startsWith('{'));
        QCOMPARE(testing::readFile(path("dir/file.rejected")), QByteArray("garbage"));
        QVERIFY(!QFile::exists(path("dir/file.rejected.2"))); // the service's own file is not copied
    }

    void secondServiceDoesNotKeepTheFirstOnesFile()
    {
        LogCapture log;
        GestureService first(paths(), nullptr, false);
        GestureService second(paths(), nullptr, false);
        first.gestureList();
        second.gestureList();
        QVERIFY(first.trySave().isRight());
        QVERIFY(second.trySave().isRight());
        QCOMPARE(testing::readFile(path("dir/file.rejected")), QByteArray("garbage"));
        QCOMPARE(testing::filesBelow(path("dir")), QStringList({"file", "file.rejected"}));
    }

    // Two programs that both refused it and end at once.
    void pairsOfPrograms()
    {
        const testing::DataTree tree;
        QVERIFY(QFile::copy(path("default"), prepared(tree.defaultFile("app"))));
        const QString user = prepared(tree.userFile("app"));
        for (int pair = 0; pair < 10; ++pair) {
            QDir(QFileInfo(user).path()).removeRecursively();
            testing::writeFile(user, "garbage");
            const QStringList steps{"service", "load", "pause"};
            QCOMPARE(testing::runAtOnce(TEST_PROGRAMS "/stepschild", {steps, steps}), QList<int>({0, 0}));
            QCOMPARE(testing::readFile(user + ".rejected"), QByteArray("garbage"));
            QCOMPARE(testing::filesBelow(QFileInfo(user).path()), QStringList({"cfg.json", "cfg.json.rejected"}));
        }
    }

    void permissionsAreTheOriginals_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<int>("mask");
        QTest::newRow("private, no mask") << 0600 << 0;
        QTest::newRow("group may read") << 0640 << 0;
        QTest::newRow("everybody may read, nobody else by the mask") << 0644 << 0077;
        QTest::newRow("shared") << 0660 << 0022;
    }

    void permissionsAreTheOriginals()
    {
        QFETCH(int, mode);
        QFETCH(int, mask);
        QCOMPARE(chmod(qPrintable(file()), static_cast<mode_t>(mode)), 0);
        const mode_t before = umask(static_cast<mode_t>(mask));
        const bool saved = loadAndSave();
        umask(before);
        QVERIFY(saved);
        QCOMPARE(modeOf("dir/file.rejected"), mode);
        QCOMPARE(modeOf("dir/file"), mode);
    }

    void ownerIsTheOriginals()
    {
        if (geteuid() != 0)
            QSKIP("only root can keep somebody else's file");
        QCOMPARE(chown(qPrintable(file()), 1234, 4321), 0);
        QVERIFY(loadAndSave());
        struct stat status;
        QCOMPARE(stat(qPrintable(path("dir/file.rejected")), &status), 0);
        QCOMPARE(status.st_uid, 1234u);
        QCOMPARE(status.st_gid, 4321u);
    }

    void accessListIsTheOriginals()
    {
        // A list that new files inherit from the directory: user::rwx user:1234:rwx group::rwx mask::rwx other::rwx
        const QByteArray list = testing::accessList(7, 1234, 7, 7, 7, 7);
        if (setxattr(qPrintable(path("dir")), "system.posix_acl_default", list.constData(), list.size(), 0) != 0)
            QSKIP("this file system keeps no access lists");
        QCOMPARE(removexattr(qPrintable(file()), "system.posix_acl_access") == 0 || errno == ENODATA, true);
        QCOMPARE(chmod(qPrintable(file()), 0640), 0);
        QVERIFY(loadAndSave());
        for (const char *name : {"dir/file", "dir/file.rejected"}) {
            QCOMPARE(getxattr(qPrintable(path(name)), "system.posix_acl_access", nullptr, 0), ssize_t(-1));
            QCOMPARE(modeOf(name), 0640);
        }
    }

    void linksAreNotFollowed_data()
    {
        QTest::addColumn<QString>("target");
        QTest::newRow("to a file") << "precious";
        QTest::newRow("to nothing") << "nothing";
    }

    void linksAreNotFollowed()
    {
        QFETCH(QString, target);
        testing::writeFile(path("precious"), "precious");
        QVERIFY(QFile::link(path(qPrintable(target)), path("dir/file.rejected")));
        QVERIFY(loadAndSave());
        QCOMPARE(testing::readFile(path("precious")), QByteArray("precious"));
        QVERIFY(!QFileInfo::exists(path("nothing")));
        QCOMPARE(testing::readFile(path("dir/file.rejected.2")), QByteArray("garbage"));
    }

    // Sparse, so that it takes no space.
    void whatIsTooLargeIsNotOverwritten()
    {
        const qint64 size = 3LL * 1024 * 1024 * 1024;
        QVERIFY(QFile::resize(file(), size));
        QVERIFY(!loadAndSave());
        QCOMPARE(QFileInfo(file()).size(), size);
        QCOMPARE(testing::filesBelow(path("dir")), QStringList("file"));
    }

    // A process with more rights than its user, which the system's access() does not show.
    void privilegedProgramKeepsItAsWell()
    {
        if (geteuid() != 0)
            QSKIP("only root can give a capability away");
        QCOMPARE(chmod(qPrintable(file()), 0400), 0);
        QCOMPARE(testing::inChild([this]() -> int {
                     prctl(PR_SET_KEEPCAPS, 1);
                     if (setresgid(65534, 65534, 65534) != 0 || setresuid(65534, 65534, 65534) != 0)
                         return 90;
                     __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
                     __user_cap_data_struct data[2] = {};
                     data[0].effective = data[0].permitted = 1U << CAP_DAC_OVERRIDE;
                     if (syscall(SYS_capset, &header, data) != 0)
                         return 91;
                     return loadAndSave() ? 0 : 1;
                 }),
                 0);
        QVERIFY(testing::readFile(file()).startsWith('{'));
        QCOMPARE(testing::readFile(path("dir/file.rejected")), QByteArray("garbage"));
    }

    // A file that some may read: the copy of another user stays as private.
    void copyOfSomebodyElsesFileIsAsPrivate()
    {
        if (geteuid() != 0)
            QSKIP("only root can make a file of somebody else");
        QCOMPARE(chown(qPrintable(path("dir")), 65534, 65534), 0);
        QCOMPARE(chown(qPrintable(file()), 1234, 65534), 0);
        QCOMPARE(chmod(qPrintable(file()), 0660), 0);
        QCOMPARE(testing::inChild([this]() -> int {
                     if (setresgid(65534, 65534, 65534) != 0 || setresuid(65534, 65534, 65534) != 0)
                         return 90;
                     return loadAndSave() ? 0 : 1;
                 }),
                 0);
        QCOMPARE(testing::readFile(path("dir/file.rejected")), QByteArray("garbage"));
        QVERIFY((modeOf("dir/file.rejected") & 0007) == 0);
        struct stat status;
        QCOMPARE(stat(qPrintable(path("dir/file.rejected")), &status), 0);
        QVERIFY(status.st_gid == 65534 || (status.st_mode & 0070) == 0);
    }

private:
    QString path(const QString &name) const { return m_directory->filePath(name); }
    QString file() const { return path("dir/file"); }
    ApplicationPaths paths() const { return ApplicationPaths("app", file(), path("default")); }

    static QString prepared(const QString &name)
    {
        QFileInfo(name).dir().mkpath(".");
        return name;
    }

    bool loadAndSave() const
    {
        LogCapture log;
        GestureService service(paths(), nullptr, false);
        service.gestureList();
        return service.trySave().isRight();
    }

    int modeOf(const char *name) const
    {
        struct stat status;
        return stat(qPrintable(path(name)), &status) == 0 ? static_cast<int>(status.st_mode & 07777) : -1;
    }

    std::unique_ptr<QTemporaryDir> m_directory;
};

QTEST_GUILESS_MAIN(tst_RejectedFile)
#include "tst_rejectedfile.moc"
