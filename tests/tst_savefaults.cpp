#include "testing.h"

#include <QDir>
#include <QFileInfo>
#include <QMap>
#include <QProcess>
#include <QRegularExpression>

#include <sys/stat.h>
#include <sys/xattr.h>

#include <memory>

// A save that is interrupted, or that fails, at any of its system calls.
class tst_SaveFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY2(!QStandardPaths::findExecutable("strace").isEmpty(), "strace is missing"); }

    void everyCall_data()
    {
        QTest::addColumn<int>("gestures");
        QTest::addColumn<bool>("exists");
        QTest::addColumn<QString>("fault");
        const struct
        {
            const char *name;
            int gestures;
        } sizes[] = {{"small", 3}, {"beyond every buffer", 600}};
        for (const auto &size : sizes) {
            for (const bool exists : {true, false}) {
                for (const char *fault : {"signal=KILL", "error=ENOSPC", "error=EIO", "error=EINTR", "error=EMFILE"}) {
                    QTest::addRow("%s, %s, %s", fault, size.name, exists ? "existing" : "absent")
                            << size.gestures << exists << fault;
                }
            }
        }
    }

    void everyCall()
    {
        QFETCH(int, gestures);
        QFETCH(bool, exists);
        QFETCH(QString, fault);
        const bool kill = fault.startsWith("signal");
        const QList<Call> calls = trace(gestures, exists);
        QVERIFY(!calls.isEmpty());
        int faults = 0;
        for (const Call &call : calls) {
            if (!kill && !canFail(call))
                continue;
            ++faults;
            prepare(exists);
            const int status = run(saving(gestures), {QString("%1:%2:when=%3").arg(call.name, fault).arg(call.number)});
            const QByteArray now = testing::readFile(file());
            const QByteArray context = call.name.toUtf8() + ' ' + QByteArray::number(call.number) + ": "
                    + QByteArray::number(status) + " " + now.left(60);
            QVERIFY2(now == m_old || now == m_new, context);
            if (kill) {
                QVERIFY2(status == 128 + 9, context);
                continue;
            }
            // A reported save is complete; a failed one left nothing behind.
            QVERIFY2(status == 0 || status == 1 || status == 2, context);
            QVERIFY2(status != 0 || now == m_new, context);
            QVERIFY2(status != 2 || now == m_old, context);
            const QStringList files = testing::filesBelow(m_directory->filePath("dir"));
            QVERIFY2(files.isEmpty() || files == QStringList("file"), qPrintable(context + files.join(' ')));
        }
        QVERIFY(faults > 0);
    }

    // Success is reported when file and directory are on disk, in this order.
    void orderOfTheCalls_data()
    {
        QTest::addColumn<bool>("exists");
        QTest::newRow("existing") << true;
        QTest::newRow("absent") << false;
    }

    void orderOfTheCalls()
    {
        QFETCH(bool, exists);
        QStringList order;
        for (const Call &call : trace(3, exists)) {
            if (QStringList({"write", "fsync", "rename"}).contains(commonName(call)))
                order.append(commonName(call));
        }
        QCOMPARE(order, QStringList({"write", "fsync", "rename", "fsync"}));
    }

    void newDirectoriesAreOnDiskAsWell()
    {
        m_directory.reset(new QTemporaryDir);
        QStringList order;
        for (const Call &call : calls(saving(3))) {
            if (QStringList({"mkdir", "fsync", "rename"}).contains(commonName(call)))
                order.append(commonName(call));
        }
        QCOMPARE(order, QStringList({"mkdir", "fsync", "fsync", "rename", "fsync"}));
    }

    // If the file cannot be replaced, it is written directly; a full disk then fails before the first old byte is lost.
    void directWrite_data()
    {
        QTest::addColumn<int>("oldSize");
        QTest::addColumn<QStringList>("faults");
        QTest::addColumn<int>("status");
        const QString noRename = "rename,renameat,renameat2:error=EBUSY";
        const QString unknown = "fallocate:error=EOPNOTSUPP";
        const struct
        {
            const char *name;
            int oldSize;
        } sizes[] = {{"longer", 100000}, {"shorter", 5}};
        for (const auto &size : sizes) {
            QTest::addRow("%s", size.name) << size.oldSize << QStringList{noRename} << 0;
            QTest::addRow("%s, no room can be reserved", size.name)
                    << size.oldSize << QStringList{noRename, unknown} << 0;
            QTest::addRow("%s, no room", size.name)
                    << size.oldSize << QStringList{noRename, "fallocate:error=ENOSPC"} << 1;
        }
        // The first write is for the temporary file.
        QTest::newRow("shorter, no room can be reserved, nor written")
                << 5 << QStringList{noRename, unknown, "write:error=ENOSPC:when=2"} << 1;
        // Errors that allow a direct write, and one that does not.
        for (const char *error : {"EACCES", "EPERM", "EROFS", "EBUSY", "EOPNOTSUPP"})
            QTest::newRow(error) << 5 << QStringList{"rename,renameat,renameat2:error=" + QString(error)} << 0;
        QTest::newRow("EIO") << 5 << QStringList{"rename,renameat,renameat2:error=EIO"} << 1;
        QTest::newRow("no call that reserves room") << 5 << QStringList{noRename, "fallocate:error=ENOSYS"} << 0;
        QTest::newRow("a busy name and no room for another")
                << 5 << QStringList{"rename,renameat,renameat2:error=ENOSPC"} << 1;
    }

    void directWrite()
    {
        QFETCH(int, oldSize);
        QFETCH(QStringList, faults);
        QFETCH(int, status);
        const QByteArray saved = (trace(600, true), m_new);
        const QByteArray old(oldSize, 'o');
        testing::writeFile(file(), old);
        QCOMPARE(run(saving(600), faults), status);
        QCOMPARE(testing::readFile(file()), status == 0 ? saved : old);
        QCOMPARE(testing::filesBelow(m_directory->filePath("dir")), QStringList("file"));
    }

    // Like a new file: a reported save is on disk, and so is a reverted one.
    void directWriteIsOnDisk_data()
    {
        QTest::addColumn<QStringList>("faults");
        QTest::addColumn<int>("status");
        QTest::addColumn<QStringList>("expected");
        const QString noRename = "rename,renameat,renameat2:error=EBUSY";
        const QStringList first{"write", "fsync", "rename"}; // of the temporary file
        QTest::newRow("saved") << QStringList{noRename} << 0
                               << first + QStringList{"fallocate", "write", "ftruncate", "fsync"};
        QTest::newRow("taken back") << QStringList{noRename, "fallocate:error=ENOSPC"} << 1
                                    << first + QStringList{"fallocate", "ftruncate", "fsync"};
    }

    void directWriteIsOnDisk()
    {
        QFETCH(QStringList, faults);
        QFETCH(int, status);
        QFETCH(QStringList, expected);
        prepare(true);
        QStringList order;
        for (const Call &call : calls(saving(3), faults, status)) {
            if (QStringList({"write", "fsync", "rename", "fallocate", "ftruncate"}).contains(commonName(call)))
                order.append(commonName(call));
        }
        QCOMPARE(order, expected);
    }

    // A signal interrupts the call: it is repeated.
    void interruptedCallIsRepeated_data()
    {
        QTest::addColumn<QStringList>("faults");
        const QString noRename = "rename,renameat,renameat2:error=EBUSY";
        for (const char *name : {"write", "fsync", "fallocate", "ftruncate"})
            QTest::newRow(name) << QStringList{noRename, QString("%1:error=EINTR:when=1").arg(name)};
        int opened = 0;
        for (const Call &call : trace(3, true)) {
            if (call.name.startsWith("open"))
                QTest::addRow("open %d", ++opened)
                        << QStringList{QString("%1:error=EINTR:when=%2").arg(call.name).arg(call.number)};
        }
    }

    void interruptedCallIsRepeated()
    {
        QFETCH(QStringList, faults);
        const QByteArray saved = (trace(3, true), m_new);
        prepare(true);
        QCOMPARE(run(saving(3), faults), 0);
        QCOMPARE(testing::readFile(file()), saved);
        QCOMPARE(testing::filesBelow(m_directory->filePath("dir")), QStringList("file"));
    }

    // The first calls write ten bytes each, or so they report.
    void shortWritesGoOn()
    {
        const QByteArray saved = (trace(3, true), m_new);
        prepare(true);
        QCOMPARE(run(saving(3), {"write:retval=10:when=1..2"}), 0);
        QCOMPARE(testing::readFile(file()), saved.mid(20));
    }

    void writeOfNothingFails()
    {
        prepare(true);
        QCOMPARE(run(saving(3), {"write:retval=0:when=1..1000"}), 1);
        QCOMPARE(testing::readFile(file()), m_old);
    }

    // A network's disk may report only now that it is full.
    void closingTheNewFile_data()
    {
        QTest::addColumn<QString>("error");
        QTest::addColumn<int>("status");
        QTest::newRow("fails") << "EIO" << 1;
        QTest::newRow("is interrupted, which closes it") << "EINTR" << 0;
    }

    void closingTheNewFile()
    {
        QFETCH(QString, error);
        QFETCH(int, status);
        int closing = 0;
        int last = 0;
        for (const Call &call : trace(3, true)) {
            if (call.name == "close")
                last = call.number;
            else if (commonName(call) == "rename")
                closing = last;
        }
        QVERIFY(closing > 0);
        prepare(true);
        QCOMPARE(run(saving(3), {QString("close:error=%1:when=%2").arg(error).arg(closing)}), status);
        QCOMPARE(testing::readFile(file()), status == 0 ? m_new : m_old);
        QCOMPARE(testing::filesBelow(m_directory->filePath("dir")), QStringList("file"));
    }

#ifdef GESTURECTL
    // A disk that fails during a direct write tears the file: the copy is kept, and named.
    void doctorKeepsTheCopyOfATornFile()
    {
        prepare(false);
        const auto configuration = [](const QByteArray &gestures) {
            return "{\"actions\": [{\"path\": \"a\", \"title\": \"A\"}, {\"path\": \"b\", \"title\": \"B\"}], "
                   "\"gestures\": ["
                    + gestures + "]}";
        };
        const QByteArray tap = "{\"id\": \"kept\", \"kind\": \"tap\", \"zone\": \"left\", "
                               "\"availableActions\": [\"a\", \"b\"], \"defaultAction\": \"a\"}";
        testing::writeFile(m_directory->filePath("new.json"), configuration(tap));
        testing::writeFile(m_directory->filePath("old.json"),
                           configuration(tap + ',' + QByteArray(tap).replace("kept", "gone")));
        const QByteArray text =
                "{\"version\": 1, \"actions\": {\"kept\": \"b\", \"gone\": \"b\"}}" + QByteArray(500, '\n');
        testing::writeFile(file(), text);
        QProcess strace;
        strace.start("strace",
                     {"-qq", "-o", m_directory->filePath("log"), "-e", "inject=rename,renameat,renameat2:error=EBUSY",
                      "-e", "inject=ftruncate:error=EIO", GESTURECTL, "doctor", "--old",
                      m_directory->filePath("old.json"), "--new", m_directory->filePath("new.json"), "--bindings",
                      file(), "--write"});
        const testing::Run run = testing::ended(&strace);
        QCOMPARE(run.err,
                 QString("gesturectl: can not write file: Input/output error (path: %1); the old file is "
                         "kept as %1.old\n")
                         .arg(file()));
        QCOMPARE(run.exitCode, 3);
        QCOMPARE(testing::readFile(file() + ".old"), text);
        QVERIFY(testing::readFile(file()) != text);
    }
#endif

    void noRoomForTheNewFileKeepsTheOldOne()
    {
        int made = 0;
        for (const Call &call : trace(3, true)) {
            if (call.line.contains(".gestures-") && call.line.contains("O_CREAT"))
                made = call.number;
        }
        prepare(true);
        QCOMPARE(run(saving(3), {QString("openat:error=ENOSPC:when=%1").arg(made)}), 1);
        QCOMPARE(testing::readFile(file()), m_old);
    }

    // If the new file cannot get the old one's permissions, the old file stays.
    void permissionsThatCanNotBeKept_data()
    {
        QTest::addColumn<QString>("fault");
        for (const char *fault : {"flistxattr:error=EIO", "fgetxattr:error=EIO:when=1", "fgetxattr:error=EIO:when=3",
                                  "fsetxattr:error=EIO", "fremovexattr:error=EIO", "fchmod:error=EIO"})
            QTest::newRow(fault) << QString::fromLatin1(fault);
    }

    void permissionsThatCanNotBeKept()
    {
        QFETCH(QString, fault);
        prepare(true);
        if (setxattr(qPrintable(file()), "user.note", "n", 1, 0) != 0)
            QSKIP("this file system keeps no extended attributes");
        QCOMPARE(run(saving(3), {fault}), 1);
        QCOMPARE(testing::readFile(file()), m_old);
        QCOMPARE(testing::filesBelow(m_directory->filePath("dir")), QStringList("file"));
    }

    void attributesThatThereCanNotBeAreNotMissed()
    {
        prepare(true);
        struct stat before = {};
        struct stat now = {};
        QCOMPARE(stat(qPrintable(file()), &before), 0);
        QCOMPARE(run(saving(3), {"flistxattr,fgetxattr,fremovexattr:error=EOPNOTSUPP"}), 0);
        QCOMPARE(stat(qPrintable(file()), &now), 0);
        QVERIFY(now.st_ino != before.st_ino); // replaced
    }

    // The rename is done, but a power failure may undo it.
    void directoryThatIsNotOnDisk()
    {
        int opened = 0;
        QString name;
        for (const Call &call : trace(3, true)) {
            if (call.line.contains("O_DIRECTORY") && call.line.contains("/dir\"")) {
                opened = call.number;
                name = call.name;
            }
        }
        QVERIFY(opened > 0);
        prepare(true);
        QCOMPARE(run(saving(3), {QString("%1:error=EMFILE:when=%2").arg(name).arg(opened)}), 1);
        prepare(true);
        QCOMPARE(run(saving(3), {"fsync:error=EIO:when=2"}), 1);
        QCOMPARE(testing::readFile(file()), m_new);
    }

    // Until it is like the old one, no other user can read the new file.
    void newFileIsPrivateAtFirst()
    {
        QStringList made;
        for (const Call &call : trace(3, true)) {
            if (call.line.contains(".gestures-") && call.line.contains("O_CREAT"))
                made.append(call.line);
        }
        QCOMPARE(made.size(), 1);
        QVERIFY2(made[0].contains("O_EXCL|O_NOFOLLOW|O_CLOEXEC, 0600"), qPrintable(made[0]));
    }

    // For the removal of leftovers.
    void newFileIsLocked()
    {
        QString after;
        QString previous;
        for (const Call &call : trace(3, true)) {
            if (previous.contains(".gestures-") && previous.contains("O_CREAT"))
                after = call.line;
            previous = call.line;
        }
        QVERIFY2(after.contains(QRegularExpression("^flock\\([0-9]+, LOCK_EX\\|LOCK_NB\\) += 0")), qPrintable(after));
    }

    // For any failure while a refused file is overwritten: its bytes exist, in the file or beside it.
    void refusedFileIsNeverLost_data()
    {
        QTest::addColumn<QString>("fault");
        for (const char *fault : {"signal=KILL", "error=ENOSPC", "error=EIO", "error=EACCES", "error=EMFILE"})
            QTest::newRow(fault) << fault;
    }

    void refusedFileIsNeverLost()
    {
        QFETCH(QString, fault);
        const bool kill = fault.startsWith("signal");
        const QStringList program{TEST_PROGRAMS "/stepschild", "service", "load", "mark", "save", "mark"};
        const testing::DataTree tree;
        testing::writeFile(tree.defaultFile("app"), R"({"gestures": []})");
        const QString user = tree.userFile("app");
        m_directory.reset(new QTemporaryDir);
        testing::writeFile(user, "garbage");
        int faults = 0;
        for (const Call &call : calls(program)) {
            // No other user can read the copy before it is as private as the original.
            if (call.line.contains(".rejected") && call.line.contains("O_CREAT"))
                QVERIFY2(call.line.contains("O_CLOEXEC, 0600)"), qPrintable(call.line));
            if (!kill && !canFail(call))
                continue;
            ++faults;
            QDir(QFileInfo(user).path()).removeRecursively();
            testing::writeFile(user, "garbage");
            const int status = run(program, {QString("%1:%2:when=%3").arg(call.name, fault).arg(call.number)});
            const QByteArray context = call.line.toUtf8() + ": " + QByteArray::number(status);
            QVERIFY2(status == (kill ? 128 + 9 : 0), context);
            const QByteArray kept = testing::readFile(user + ".rejected");
            const QByteArray now = testing::readFile(user);
            QVERIFY2(now == "garbage" || (kept == "garbage" && now.startsWith('{')), context + now + kept);
            QVERIFY2(kill || kept == "garbage" || kept == "(no file)", context + kept);
        }
        QVERIFY(faults > 20);
    }

    // A read that ends too early makes another copy, and one that close reports as lost is no copy.
    void copyThatIsNotWholeDoesNotReplaceARefusedFile()
    {
        const QStringList program{TEST_PROGRAMS "/stepschild", "service", "load", "mark", "save", "mark", "delete"};
        const testing::DataTree tree;
        testing::writeFile(tree.defaultFile("app"), R"({"gestures": []})");
        const QString user = tree.userFile("app");
        testing::writeFile(user, "garbage");
        m_directory.reset(new QTemporaryDir);
        int copies = 0;
        int reads = 0;
        int closes = 0;
        for (const Call &call : calls(program)) {
            copies += call.line.contains(".rejected") && call.line.contains("O_CREAT") ? 1 : 0;
            const bool isRead = copies > 0 && call.name == "pread64";
            const bool isClose = copies > 0 && closes == 0 && call.name == "close";
            if (!isRead && !isClose)
                continue;
            reads += isRead ? 1 : 0;
            closes += isClose ? 1 : 0;
            QDir(QFileInfo(user).path()).removeRecursively();
            testing::writeFile(user, "garbage");
            QCOMPARE(run(program,
                         {QString("%1:%2:when=%3").arg(call.name, isRead ? "retval=0" : "error=EIO").arg(call.number)}),
                     0);
            const QByteArray kept = testing::readFile(user + ".rejected");
            const QByteArray now = testing::readFile(user);
            const QByteArray context = call.line.toUtf8() + now + kept;
            QVERIFY2(now == "garbage" ? kept == "(no file)" : kept == "garbage" && now.startsWith('{'), context);
            QVERIFY2(isRead || now == "garbage", context);
        }
        QVERIFY(reads > 1 && closes == 1);
    }

    // The copy and its name are on disk before the original is overwritten.
    void copyOfARefusedFileIsOnDiskFirst()
    {
        const testing::DataTree tree;
        testing::writeFile(tree.defaultFile("app"), R"({"gestures": []})");
        testing::writeFile(tree.userFile("app"), "garbage");
        m_directory.reset(new QTemporaryDir);
        QStringList order;
        for (const Call &call : calls({TEST_PROGRAMS "/stepschild", "service", "load", "mark", "save", "mark"})) {
            if (QStringList({"write", "fsync", "rename"}).contains(commonName(call)))
                order.append(commonName(call));
        }
        QCOMPARE(order, QStringList({"write", "fsync", "fsync", "write", "fsync", "rename", "fsync"}));
    }

private:
    struct Call
    {
        QString name;
        int number; // the occurrence of its name since the process began
        QString line;
    };

    // Some processors only have the calls that take a directory.
    static QString commonName(const Call &call)
    {
        return call.name == "mkdirat" ? "mkdir" : call.name == "renameat" ? "rename" : call.name;
    }

    QString file() const
    {
        return m_directory->filePath("dir/file");
    }

    // Memory and time cannot fail like this, and a failed close has still closed.
    static bool canFail(const Call &call)
    {
        static const QStringList never{"mmap",    "munmap", "mremap",        "brk",           "mprotect",
                                       "madvise", "futex",  "getpid",        "geteuid",       "getegid",
                                       "getuid",  "getgid", "clock_gettime", "rt_sigprocmask"};
        return !never.contains(call.name);
    }

    void prepare(bool exists)
    {
        m_directory.reset(new QTemporaryDir);
        QVERIFY(QDir().mkpath(m_directory->filePath("dir")));
        if (exists)
            testing::writeFile(file(), "the old bytes");
        m_old = testing::readFile(file());
    }

    QStringList saving(int gestures) const
    {
        return {TEST_PROGRAMS "/savechild", file(), QString::number(gestures), "n"};
    }

    int run(const QStringList &program, const QStringList &injections)
    {
        QStringList arguments{"-qq", "-o", m_directory->filePath("log")};
        for (const QString &injection : injections)
            arguments << "-e"
                      << "inject=" + injection;
        QProcess strace;
        strace.start("strace", arguments + program);
        if (!strace.waitForFinished(testing::patience))
            return -1;
        return strace.exitStatus() == QProcess::CrashExit ? 128 + strace.exitCode() : strace.exitCode();
    }

    // The system calls of one undisturbed save, and the bytes that it wrote.
    QList<Call> trace(int gestures, bool exists)
    {
        prepare(exists);
        const QList<Call> found = calls(saving(gestures));
        m_new = testing::readFile(file());
        return found;
    }

    QList<Call> calls(const QStringList &program, const QStringList &faults = {}, int status = 0)
    {
        if (run(program, faults) != status)
            qFatal("a save does not end as it should");
        QList<Call> found;
        QMap<QString, int> numbers;
        bool within = false;
        const QRegularExpression name("^([a-z0-9_]+)\\(");
        const auto lines = testing::readFile(m_directory->filePath("log")).split('\n');
        for (const QByteArray &line : lines) {
            const auto match = name.match(QString::fromUtf8(line));
            if (!match.hasMatch())
                continue;
            const QString called = match.captured(1);
            const int number = ++numbers[called];
            if (called == "getsid")
                within = !within;
            else if (within)
                found.append({called, number, QString::fromUtf8(line)});
        }
        return found;
    }

    std::unique_ptr<QTemporaryDir> m_directory;
    QByteArray m_old;
    QByteArray m_new;
};

QTEST_GUILESS_MAIN(tst_SaveFaults)
#include "tst_savefaults.moc"
