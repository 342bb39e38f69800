#include "testing.h"

#include <QDir>
#include <QFileInfo>
#include <QMap>
#include <QProcess>
#include <QRegularExpression>

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
            const int status = run(gestures, QString("%1:%2:when=%3").arg(call.name, fault).arg(call.number));
            const QByteArray now = testing::readFile(file());
            const QByteArray context = call.name.toUtf8() + ' ' + QByteArray::number(call.number) + ": "
                    + QByteArray::number(status) + " " + now.left(60);
            QVERIFY2(now == m_old || now == m_new, context);
            if (kill) {
                QVERIFY2(status == 128 + 9, context);
                continue;
            }
            // What is said to be saved is; what failed left nothing behind.
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
        for (const Call &call : calls(3)) {
            if (QStringList({"mkdir", "fsync", "rename"}).contains(commonName(call)))
                order.append(commonName(call));
        }
        QCOMPARE(order, QStringList({"mkdir", "fsync", "fsync", "rename", "fsync"}));
    }

private:
    struct Call
    {
        QString name;
        int number; // the how manieth of its name since the process began
        QString line;
    };

    // Some processors have only the calls that take a directory.
    static QString commonName(const Call &call)
    {
        return call.name == "mkdirat" ? "mkdir" : call.name == "renameat" ? "rename" : call.name;
    }

    QString file() const { return m_directory->filePath("dir/file"); }

    // Memory and time cannot fail like this, and a close that fails has closed all the same.
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

    int run(int gestures, const QString &injection)
    {
        QStringList arguments{"-qq", "-o", m_directory->filePath("log")};
        if (!injection.isEmpty())
            arguments << "-e"
                      << "inject=" + injection;
        QProcess strace;
        strace.start("strace", arguments << TEST_PROGRAMS "/savechild" << file() << QString::number(gestures) << "n");
        if (!strace.waitForFinished())
            return -1;
        return strace.exitStatus() == QProcess::CrashExit ? 128 + strace.exitCode() : strace.exitCode();
    }

    // The system calls of one undisturbed save, and the bytes that it wrote.
    QList<Call> trace(int gestures, bool exists)
    {
        prepare(exists);
        return calls(gestures);
    }

    QList<Call> calls(int gestures)
    {
        if (run(gestures, QString()) != 0)
            qFatal("an undisturbed save fails");
        m_new = testing::readFile(file());
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
