#include "testing.h"

#include <vellix/platform/vxcomponents.h>

#include <QAbstractItemModelTester>
#include <QDir>

#include <sys/stat.h>

using namespace vellix;
using namespace vellix::components;

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
        QTest::newRow("more than one document") << QByteArray("[1] [2]") << "1:5";
        QTest::newRow("a scalar is no document") << QByteArray("5") << "1:1";
        QTest::newRow("broken UTF-8") << QByteArray("[\"\xff\"]") << "1:3";
        QTest::newRow("UTF-16") << QByteArray("\xff\xfe[\0]\0", 6) << "1:1";
        QTest::newRow("nested too deeply") << QByteArray(10000, '[') << "1:1025";
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
    }

    void unreadableFile()
    {
        QTemporaryDir directory;
        QCOMPARE(mkfifo(qPrintable(directory.filePath(QStringLiteral("pipe"))), 0600), 0);
        QFETCH(QString, name);
        QFETCH(QString, reason);
        const QString file = directory.path() + QLatin1Char('/') + name;
        QCOMPARE(testing::failure(VariantLoader::loadJson(file)), file + QStringLiteral(": ") + reason);
    }

    void deviceIsNoFile()
    {
        QCOMPARE(testing::failure(VariantLoader::loadJson(QStringLiteral("/dev/zero"))),
                 QStringLiteral("/dev/zero: Not a regular file"));
    }

    // It opens, and then cannot be read from its start.
    void fileThatFailsWhileItIsRead()
    {
        QCOMPARE(testing::failure(VariantLoader::loadJson(QStringLiteral("/proc/self/mem"))),
                 QStringLiteral("/proc/self/mem: Input/output error"));
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
