#include "testing.h"

#include <vellix/platform/vxcomponents.h>

#include <gesture_api/applicationpaths.h>

#include <QAbstractItemModelTester>
#include <QDir>
#include <QScopeGuard>
#include <QSet>

#include <fcntl.h>
#include <signal.h>
#include <stdio.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <functional>
#include <future>
#include <utility>

using namespace vellix;
using namespace vellix::components;
using vellix::gesture::ApplicationPathsConfiguration;

using Load = QString (*)(const QString &);
Q_DECLARE_METATYPE(Load)

using BeforeRead = std::function<void()>;
Q_DECLARE_METATYPE(BeforeRead)

// Called once, by the next read of this process.
static BeforeRead beforeRead;
// Reads this many bytes, then fails. Negative: never.
static ssize_t readableBytes = -1;

// Takes precedence over the C library's.
extern "C" Q_DECL_EXPORT ssize_t read(int descriptor, void *buffer, size_t size)
{
    if (beforeRead)
        std::exchange(beforeRead, nullptr)();
    if (readableBytes == 0) {
        errno = EIO;
        return -1;
    }
    if (readableBytes > 0)
        size = std::min(size, static_cast<size_t>(std::exchange(readableBytes, 0)));
    return syscall(SYS_read, descriptor, buffer, size);
}

class tst_VxComponents : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void loadsADocument()
    {
        testing::DataTree tree;
        testing::writeFile(tree.user(QStringLiteral("file.json")), R"({"a": [1, 1.5, "x", null, true], "b": {}})");
        const auto document = VariantLoader::loadJson(QStringLiteral("${USERDATA}/file.json"));
        VERIFY_RIGHT(document);
        const QVariantList list = document.right().toMap().value(QStringLiteral("a")).toList();
        QCOMPARE(list.at(0).userType(), int(QMetaType::LongLong));
        QCOMPARE(list.at(1).userType(), int(QMetaType::Double));
        QCOMPARE(list.at(2).userType(), int(QMetaType::QString));
        QVERIFY(list.at(3).isNull());
        QCOMPARE(list.at(4).userType(), int(QMetaType::Bool));
        QCOMPARE(document.right().toMap().value(QStringLiteral("b")).userType(), int(QMetaType::QVariantMap));
    }

    void marksOfEncodingAreSkipped()
    {
        QTemporaryDir directory;
        const QString file = directory.filePath(QStringLiteral("file.json"));
        testing::writeFile(file, "\xef\xbb\xbf[1]");
        VERIFY_RIGHT(VariantLoader::loadJson(file));
    }

    void syntaxErrorSaysThePlace_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("place");
        QTest::newRow("empty") << QByteArray() << "1:1";
        QTest::newRow("first line") << QByteArray("{\"a\" 1}") << "1:6";
        QTest::newRow("third line") << QByteArray("{\n  \"a\": 1,\n  x\n}") << "3:3";
        QTest::newRow("columns are characters") << QByteArray("{\"äöü\": x}") << "1:9";
        QTest::newRow("truncated after a value") << QByteArray("{\"a\": [1, 2") << "1:11";
        QTest::newRow("truncated in a string") << QByteArray("[\"abc") << "1:6";
        QTest::newRow("truncated after a key") << QByteArray("{\"a\"") << "1:5";
        QTest::newRow("more than one document") << QByteArray("[1] [2]") << "1:5";
        QTest::newRow("a scalar is no document") << QByteArray("5") << "1:1";
        QTest::newRow("a scalar and a line more") << QByteArray("5\n") << "1:1";
        QTest::newRow("broken UTF-8") << QByteArray("[\"\xff\"]") << "1:3";
        QTest::newRow("UTF-16") << QByteArray("\xff\xfe[\0]\0", 6) << "1:1";
        QTest::newRow("nested too deeply") << QByteArray(10000, '[') << "1:1025";
        QTest::newRow("a word cut off at the end of its line") << QByteArray("{\"a\": tru\n}") << "1:10";
        QTest::newRow("a word cut off at the end") << QByteArray("[1,\ntr") << "2:1";
        QTest::newRow("nothing after a comma") << QByteArray("[1,]") << "1:4";
        QTest::newRow("no comma between values") << QByteArray("[1 2]") << "1:4";
        QTest::newRow("a number that is none") << QByteArray("[-]") << "1:3";
        QTest::newRow("truncated after empty lines") << QByteArray("[1,\n\n") << "2:1";
        QTest::newRow("an escape that is none") << QByteArray("[\"\\u12g4\"]") << "1:7";
        QTest::newRow("a number beyond doubles") << QByteArray("[1e999]") << "1:7";
    }

    void syntaxErrorSaysThePlace()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, place);
        QTemporaryDir directory;
        const QString file = directory.filePath(QStringLiteral("file.json"));
        testing::writeFile(file, text);
        const QString message = testing::failure(VariantLoader::loadJson(file));
        const QString start = file + QLatin1Char(':') + place + QStringLiteral(": ");
        QVERIFY2(message.startsWith(start) && message.size() > start.size(), qPrintable(message));
    }

    void unreadableFile_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("reason");
        QTest::newRow("missing") << "missing"
                                 << "No such file or directory";
        QTest::newRow("a directory") << "."
                                     << "Is a directory";
        QTest::newRow("a pipe") << "pipe"
                                << "Not a regular file";
        QTest::newRow("a pipe that may not be read") << "closed pipe"
                                                     << "Not a regular file";
        QTest::newRow("a directory that may not be read") << "closed directory"
                                                          << "Is a directory";
        QTest::newRow("a file that may not be read") << "closed file"
                                                     << "Permission denied";
        QTest::newRow("below a file") << "closed file/file"
                                      << "Not a directory";
        QTest::newRow("a dangling link") << "dangling"
                                         << "No such file or directory";
        QTest::newRow("a link to a pipe") << "link to the pipe"
                                          << "Not a regular file";
        QTest::newRow("a circle of links") << "circle"
                                           << "Too many levels of symbolic links";
        QTest::newRow("a name too long") << QString(300, QLatin1Char('x')) << "File name too long";
    }

    void unreadableFile()
    {
        QTemporaryDir directory;
        const auto path = [&directory](const char *name) { return QFile::encodeName(directory.filePath(name)); };
        QCOMPARE(mkfifo(path("pipe"), 0600), 0);
        QCOMPARE(mkfifo(path("closed pipe"), 0), 0);
        QCOMPARE(mkdir(path("closed directory"), 0), 0);
        testing::writeFile(directory.filePath(QStringLiteral("closed file")), "{}");
        QCOMPARE(chmod(path("closed file"), 0), 0);
        QCOMPARE(symlink("nowhere", path("dangling")), 0);
        QCOMPARE(symlink("pipe", path("link to the pipe")), 0);
        QCOMPARE(symlink("circle", path("circle")), 0);
        QCOMPARE(chmod(QFile::encodeName(directory.path()), 0755), 0);
        QFETCH(QString, name);
        QFETCH(QString, reason);
        const QString file = directory.path() + QLatin1Char('/') + name;
        const uid_t self = geteuid(); // root may read everything
        const auto cleanUp = qScopeGuard([&] { (void)seteuid(self); });
        QVERIFY(self != 0 || seteuid(65534) == 0);
        QCOMPARE(testing::failure(VariantLoader::loadJson(file)), file + QStringLiteral(": ") + reason);
    }

    void noName()
    {
        const testing::LogCapture quiet;
        QCOMPARE(testing::failure(VariantLoader::loadJson(QString())), QStringLiteral(": No file name specified"));
    }

    void pipeThatComesInBetween_data()
    {
        QTest::addColumn<Load>("load"); // the failure without the path
        QTest::newRow("a document") << Load([](const QString &file) {
            return testing::failure(VariantLoader::loadJson(file)).remove(file + QStringLiteral(": "));
        });
        QTest::newRow("the paths of the applications") << Load([](const QString &file) {
            return testing::failure(ApplicationPathsConfiguration::loadJson(file))
                    .remove(QStringLiteral(" (path: ") + file + QLatin1Char(')'));
        });
    }

    // A regular file when it is checked, and a pipe without a writer when it is opened.
    void pipeThatComesInBetween()
    {
        QFETCH(Load, load);
        QTemporaryDir directory;
        const QString file = directory.filePath(QStringLiteral("file"));
        const QByteArray fileName = QFile::encodeName(file);
        const QByteArray pipeName = fileName + ".pipe";
        testing::writeFile(file, R"({"current": "c", "default": "d", "filename": "f"})");
        QCOMPARE(mkfifo(pipeName, 0600), 0);
        const pid_t swapper = fork();
        while (swapper == 0) {
            if (renameat2(AT_FDCWD, fileName, AT_FDCWD, pipeName, RENAME_EXCHANGE) != 0 || getppid() == 1)
                _exit(1);
        }

        auto outcomes = std::async(std::launch::async, [&] {
            QSet<QString> all;
            for (int i = 0; i < 20000; ++i)
                all.insert(load(file));
            return all;
        });
        const bool ended = outcomes.wait_for(std::chrono::seconds(60)) == std::future_status::ready;
        kill(swapper, SIGKILL);
        QCOMPARE(waitpid(swapper, nullptr, 0), swapper);
        while (outcomes.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready) {
            for (const QByteArray &name : {fileName, pipeName})
                ::close(::open(name, O_RDWR | O_NONBLOCK)); // a writer that comes and goes
        }
        QVERIFY(ended);
        QCOMPARE(outcomes.get() - QSet<QString>({"no failure", "Not a regular file"}), QSet<QString>());
    }

    void deviceIsNoFile()
    {
        QCOMPARE(testing::failure(VariantLoader::loadJson(QStringLiteral("/dev/zero"))),
                 QStringLiteral("/dev/zero: Not a regular file"));
    }

    // It opens, but cannot be read from its start.
    void fileThatFailsWhileItIsRead()
    {
        QCOMPARE(testing::failure(VariantLoader::loadJson(QStringLiteral("/proc/self/mem"))),
                 QStringLiteral("/proc/self/mem: Input/output error"));
    }

    void fileThatFailsAfterItsStart()
    {
        QTemporaryDir directory;
        const QString file = directory.filePath(QStringLiteral("file.json"));
        testing::writeFile(file, "[[1]" + QByteArray(100000, ' ') + ']');
        readableBytes = 4;
        const QString message = testing::failure(VariantLoader::loadJson(file)).remove(file);
        readableBytes = -1;
        QCOMPARE(message, QStringLiteral(":1:4: unterminated array")); // the part that could be read
    }

    // Larger than a QByteArray.
    void hugeFile()
    {
        QTemporaryDir directory;
        const QString file = directory.filePath(QStringLiteral("file.json"));
        testing::writeFile(file, "[1]");
        QCOMPARE(truncate(QFile::encodeName(file), qint64(3) << 30), 0);
        QCOMPARE(testing::failure(VariantLoader::loadJson(file)), file + QStringLiteral(":1:1: illegal value"));
    }

    void pathsOfQt()
    {
        QCOMPARE(testing::failure(VariantLoader::loadJson(QStringLiteral(":/missing"))),
                 QStringLiteral(":/missing: No such file or directory"));
        QCOMPARE(testing::failure(VariantLoader::loadJson(QStringLiteral(":/schemas"))),
                 QStringLiteral(":/schemas: Is a directory"));
        const auto document = VariantLoader::loadJson(QStringLiteral(":/schemas/bindings.schema.json"));
        VERIFY_RIGHT(document);
        QVERIFY(document.right().toMap().contains(QStringLiteral("$id")));
    }

    void relativePath()
    {
        QTemporaryDir directory;
        const QString before = QDir::currentPath();
        const auto restore = qScopeGuard([&before] { QDir::setCurrent(before); });
        QVERIFY(QDir::setCurrent(directory.path()));
        testing::writeFile(QStringLiteral("a:b.json"), "[1]");
        VERIFY_RIGHT(VariantLoader::loadJson(QStringLiteral("a:b.json")));
        QCOMPARE(testing::failure(VariantLoader::loadJson(QStringLiteral("missing"))),
                 QStringLiteral("missing: No such file or directory"));
    }

    // Files of the kernel have no size.
    void fileWithoutSize()
    {
        const auto restore = qScopeGuard([] { prctl(PR_SET_NAME, "tst_vxcomponent"); });
        prctl(PR_SET_NAME, "[1, 2, 3]");
        const auto document = VariantLoader::loadJson(QStringLiteral("/proc/self/comm"));
        VERIFY_RIGHT(document);
        QCOMPARE(document.right(), QVariant(QVariantList{1, 2, 3}));
    }

    // The NUL after a process's only argument is found at the end.
    void longFileWithoutSize()
    {
        const QByteArray argument = '[' + QByteArray(100000, ' ') + ']';
        int input[2];
        QCOMPARE(pipe(input), 0);
        const pid_t child = fork();
        if (child == 0) {
            dup2(input[0], 0);
            ::close(input[1]);
            execl("/bin/cat", argument.constData(), nullptr);
            _exit(1);
        }
        const QString file = QStringLiteral("/proc/%1/cmdline").arg(child);
        const QString expected = file + QStringLiteral(":1:100003: garbage at the end of the document");
        QTRY_COMPARE(testing::failure(VariantLoader::loadJson(file)), expected);
        ::close(input[0]);
        ::close(input[1]);
        QCOMPARE(waitpid(child, nullptr, 0), child);
    }

    void fileThatChangesWhileItIsRead_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        QTest::addColumn<QString>("outcome");
        QTest::newRow("grows") << QByteArray("[1]") << QByteArray("[1] [2]") << "no failure";
        QTest::newRow("grows by its end")
                << QByteArray("[1, 2") << QByteArray("[1, 2]") << ":1:5: invalid termination by number";
        QTest::newRow("shrinks") << QByteArray("[1] [2]") << QByteArray("[1]") << "no failure";
        QTest::newRow("shrinks by its end")
                << QByteArray("[1]") << QByteArray("[1") << ":1:2: invalid termination by number";
        QTest::newRow("is emptied") << QByteArray("[1]") << QByteArray() << ":1:1: illegal value";
        QTest::newRow("is filled") << QByteArray() << QByteArray("[1]") << "no failure";
        QTest::newRow("is rewritten") << QByteArray("[1]") << QByteArray("{x}") << ":1:2: unterminated object";
        QTest::newRow("grows much") << QByteArray("[1]") << "[1]" + QByteArray(100000, 'x') << "no failure";
    }

    // Between the look at its size and the first read.
    void fileThatChangesWhileItIsRead()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        QFETCH(QString, outcome);
        QTemporaryDir directory;
        const QString file = directory.filePath(QStringLiteral("file.json"));
        testing::writeFile(file, before);
        beforeRead = [&] { testing::writeFile(file, after); };
        QCOMPARE(testing::failure(VariantLoader::loadJson(file)).remove(file), outcome);
        QVERIFY(!beforeRead);
    }

    void listIsProducedOnce()
    {
        int calls = 0;
        const ReadonlyLazyList<int> list([&calls] {
            ++calls;
            return QList<int>{1, 2, 3};
        });
        QCOMPARE(calls, 0);
        QCOMPARE(list.get(), QList<int>({1, 2, 3}));
        QCOMPARE(&list.get(), &list.get());
        QCOMPARE(calls, 1);
    }

    void listWithoutProducerIsEmpty() { QVERIFY(ReadonlyLazyList<int>().get().isEmpty()); }

    void mapIsEager()
    {
        int calls = 0;
        const ReadonlyLazyList<QObject *> list([this] { return QList<QObject *>{this, nullptr}; });
        const ReadonlyLazyList<int> mapped = list.map<int>([&calls](QObject *const &object) {
            ++calls;
            return object ? 1 : 0;
        });
        QCOMPARE(calls, 2);
        QCOMPARE(mapped.get(), QList<int>({1, 0}));
        QCOMPARE(calls, 2);
    }

    void modelComputesAtTheFirstRowCount()
    {
        int calls = 0;
        const ReadonlyLazyList<int> list([&calls] {
            ++calls;
            return QList<int>{7, 8};
        });
        ReadonlyLazyListModel *model = list.acquireModel(this);
        QCOMPARE(calls, 0);
        QCOMPARE(list.acquireModel(nullptr), model);
        QCOMPARE(model->parent(), this);
        QCOMPARE(model->rowCount(), 2);
        QCOMPARE(calls, 1);
        QAbstractItemModelTester tester(model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(model->index(1).data().toInt(), 8);
        QCOMPARE(model->index(1).data(Qt::EditRole), QVariant());
        QCOMPARE(model->data(QModelIndex()), QVariant());
        QCOMPARE(model->roleNames().value(Qt::DisplayRole), QByteArray("display"));
        delete model;
    }

    void modelOfNothing()
    {
        const ReadonlyLazyListModel none(nullptr, nullptr);
        QCOMPARE(none.rowCount(), 0);
        const ReadonlyLazyListModel noItems([] { return 2; }, nullptr);
        QCOMPARE(noItems.rowCount(), 2);
        QCOMPARE(noItems.index(1).data(), QVariant());
    }

    void modelAnswersForItsOwnRowsOnly()
    {
        const ReadonlyLazyListModel model([] { return 2; }, [](int row) { return row; });
        const ReadonlyLazyListModel other([] { return 9; }, [](int row) { return row; });
        QCOMPARE(model.rowCount(model.index(0)), 0);
        QCOMPARE(model.data(model.index(1), Qt::DisplayRole), QVariant(1));
        const testing::LogCapture quiet; // Qt warns about them
        QCOMPARE(model.data(other.index(1), Qt::DisplayRole), QVariant());
        QCOMPARE(model.data(other.index(5), Qt::DisplayRole), QVariant());
    }

    // A model that has shrunk since.
    void rowThatIsNotThereAnyMore()
    {
        int count = 2;
        const ReadonlyLazyListModel model([&count] { return count; }, [](int row) { return row; });
        const QModelIndex last = model.index(1);
        count = 1;
        const testing::LogCapture quiet;
        QCOMPARE(last.data(), QVariant());
    }

    void assignedListKeepsWhatWasComputed()
    {
        int calls = 0;
        const ReadonlyLazyList<int> computed([&calls] { return QList<int>{++calls}; });
        QCOMPARE(computed.get(), QList<int>{1});
        ReadonlyLazyList<int> list;
        list = computed;
        QCOMPARE(list.get(), QList<int>{1});
        QCOMPARE(calls, 1);
    }

    void listIsAPlainValue()
    {
        ReadonlyLazyList<int> list = ReadonlyLazyList<int>::Producer([] { return QList<int>{1}; });
        list = list.map<int>([](const int &i) { return i + 1; });
        QCOMPARE(list.get(), QList<int>{2});
        delete list.acquireModel();
    }

    void copyHasAModelOfItsOwn()
    {
        const ReadonlyLazyList<int> list([] { return QList<int>{1}; });
        ReadonlyLazyListModel *model = list.acquireModel(this);
        const ReadonlyLazyList<int> copy(list);
        QVERIFY(copy.acquireModel(this) != model);
    }
};

QTEST_GUILESS_MAIN(tst_VxComponents)
#include "tst_vxcomponents.moc"
