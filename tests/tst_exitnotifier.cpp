#include "testing.h"

#include <vellix/exitnotifier.h>

#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>

#include <cstdio>
#include <cstdlib>

using vellix::ExitNotifier;

// Counts the emissions of a notifier while it lives.
class Listener : public QObject
{
public:
    explicit Listener(ExitNotifier *notifier)
    {
        connect(notifier, &ExitNotifier::prepareExit, this, [this] { ++told; });
    }

    int told = 0;
};

static QList<ExitNotifier *> notifiersOfApplication()
{
    return qApp->findChildren<ExitNotifier *>(QString(), Qt::FindDirectChildrenOnly);
}

// The exit handler was registered after the application was made, so it runs before the application is destroyed.
static int endWithTheHandlerFirst(int argc, char *argv[])
{
    static QCoreApplication app(argc, argv);
    QObject::connect(ExitNotifier::instance(), &ExitNotifier::prepareExit, [] { std::puts("prepareExit"); });
    return 0;
}

// A listener ends the process before the others are called.
static int endWithinATelling(int argc, char *argv[])
{
    static QCoreApplication app(argc, argv);
    QObject::connect(ExitNotifier::instance(), &ExitNotifier::prepareExit, [] {
        static bool ended = false;
        if (!ended) {
            ended = true;
            std::exit(0);
        }
    });
    QObject::connect(ExitNotifier::instance(), &ExitNotifier::prepareExit, [] { std::puts("told"); });
    ExitNotifier::notify();
    return 1;
}

class tst_ExitNotifier : public QObject
{
    Q_OBJECT

    QByteArray childOutput(const QString &scenario, int expectedExitCode = 0,
                           const QString &program = QStringLiteral(TEST_PROGRAMS "/exitchild"))
    {
        QProcess child;
        // The child leaves services undeleted on purpose.
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("ASAN_OPTIONS"), QStringLiteral("detect_leaks=0"));
        child.setProcessEnvironment(environment);
        child.start(program, {scenario});
        if (!child.waitForFinished(testing::patience) || child.exitStatus() != QProcess::NormalExit)
            return "did not end: " + child.errorString().toUtf8();
        if (child.exitCode() != expectedExitCode)
            return "exit code " + QByteArray::number(child.exitCode()) + ": " + child.readAllStandardError();
        return child.readAllStandardOutput();
    }

private Q_SLOTS:
    void init()
    {
        // Every test begins without a process-wide notifier.
        delete ExitNotifier::instance();
        QCOMPARE(notifiersOfApplication(), QList<ExitNotifier *>());
    }

    void theFirstCallMakesTheInstance()
    {
        ExitNotifier *notifier = ExitNotifier::instance();
        QVERIFY(notifier);
        QCOMPARE(notifiersOfApplication(), QList<ExitNotifier *>{notifier});
    }

    void twoCallsReturnTheSame()
    {
        ExitNotifier *notifier = ExitNotifier::instance();
        QCOMPARE(ExitNotifier::instance(), notifier);
        QCOMPARE(notifiersOfApplication().size(), 1);
    }

    void theParentIsTheApplication() { QCOMPARE(ExitNotifier::instance()->parent(), qApp); }

    void notifyMakesTheNotifier()
    {
        ExitNotifier::notify();
        QCOMPARE(notifiersOfApplication().size(), 1);
        QCOMPARE(ExitNotifier::instance(), notifiersOfApplication().first());
    }

    void notifyTellsEveryTime()
    {
        const Listener listener(ExitNotifier::instance());
        ExitNotifier::notify();
        QCOMPARE(listener.told, 1);
        ExitNotifier::notify();
        QCOMPARE(listener.told, 2);
    }

    void listenersAreToldAtOnceInTheOrderOfConnection()
    {
        QStringList order;
        QObject context;
        for (const QString &name : {QStringLiteral("first"), QStringLiteral("second"), QStringLiteral("third")}) {
            connect(ExitNotifier::instance(), &ExitNotifier::prepareExit, &context,
                    [name, &order] { order.append(name); });
        }
        ExitNotifier::notify();
        QCOMPARE(order, QStringList({QStringLiteral("first"), QStringLiteral("second"), QStringLiteral("third")}));
    }

    void itsDeathBeforeTheExitTells()
    {
        const Listener listener(ExitNotifier::instance());
        ExitNotifier::notify(); // by a client, not at the exit
        delete ExitNotifier::instance();
        QCOMPARE(listener.told, 2);
    }

    void afterItsDeathThereIsANewOne()
    {
        const Listener listener(ExitNotifier::instance());
        delete ExitNotifier::instance();
        QCOMPARE(notifiersOfApplication().size(), 0);
        ExitNotifier::notify();
        QCOMPARE(notifiersOfApplication().size(), 1);
        QCOMPARE(listener.told, 1);
    }

    void aSecondNotifierStandsApart_data()
    {
        QTest::addColumn<bool>("instanceFirst");
        QTest::newRow("made after the process-wide one") << true;
        QTest::newRow("made before the process-wide one") << false;
    }

    void aSecondNotifierStandsApart()
    {
        QFETCH(bool, instanceFirst);
        if (instanceFirst)
            ExitNotifier::instance();
        auto *second = new ExitNotifier;
        QVERIFY(!second->parent());
        QVERIFY(ExitNotifier::instance() != second);

        const Listener ofSecond(second);
        const Listener ofInstance(ExitNotifier::instance());
        ExitNotifier::notify();
        QCOMPARE(ofInstance.told, 1);
        QCOMPARE(ofSecond.told, 0);

        ExitNotifier *instance = ExitNotifier::instance();
        delete second;
        QCOMPARE(ofSecond.told, 0);
        QCOMPARE(ofInstance.told, 1);
        QCOMPARE(ExitNotifier::instance(), instance);
    }

    void aSecondNotifierTakesItsParent()
    {
        QObject parent;
        QCOMPARE((new ExitNotifier(&parent))->parent(), &parent);
    }

    void atTheEndOfAProcess_data()
    {
        QTest::addColumn<QString>("output");
        QTest::newRow("notified twice") << "prepareExit\nprepareExit\n";
        QTest::newRow("application gone") << "prepareExit\napplication is gone\n";
        // Once by hand, once when the application is destroyed: only the exit handler's run is the exit.
        QTest::newRow("notify by hand") << "prepareExit\nprepareExit\n";
        // Two notifiers were made, so the handler runs twice.
        QTest::newRow("a new notifier") << "prepareExit\nprepareExit\n";
    }

    void atTheEndOfAProcess()
    {
        QTEST(QString::fromUtf8(childOutput(QString::fromLatin1(QTest::currentDataTag()))), "output");
    }

    void itsDeathAfterTheExitHandlerTellsNobody()
    {
        QCOMPARE(childOutput(QStringLiteral("handler first"), 0, QCoreApplication::applicationFilePath()),
                 QByteArray("prepareExit\n"));
    }

    void aServiceIsSavedAtTheEnd_data()
    {
        QTest::addColumn<QString>("chosen");
        QTest::addColumn<int>("exitCode");
        QTest::newRow("stack") << "two" << 0;
        QTest::newRow("heap") << "two" << 0;
        QTest::newRow("static") << "two" << 0;
        QTest::newRow("deleted early") << "two" << 0;
        QTest::newRow("no application") << "two" << 0;
        QTest::newRow("exit") << "two" << 0;
        QTest::newRow("exit switch") << "two" << 255;
        QTest::newRow("not loaded") << "one" << 0;
        QTest::newRow("clone") << "(no file)" << 0;
        QTest::newRow("pruned") << "(no file)" << 0;
    }

    void aServiceIsSavedAtTheEnd()
    {
        const testing::DataTree data;
        testing::writeFile(data.defaultFile(QStringLiteral("app")), R"({
            "actions": [{"path": "one", "title": "One"}, {"path": "two", "title": "Two"}],
            "gestures": [{"id": "tap", "kind": "tap", "zone": "center", "availableActions": ["one", "two"],
                          "defaultAction": "one"}]})");
        QFETCH(QString, chosen);
        QFETCH(int, exitCode);
        QCOMPARE(childOutput(QString::fromLatin1(QTest::currentDataTag()), exitCode), QByteArray());
        const QByteArray saved = testing::readFile(data.userFile(QStringLiteral("app")));
        if (chosen == QLatin1String("(no file)")) {
            QCOMPARE(saved, QByteArray("(no file)"));
        } else {
            const QVariantMap actions{{QStringLiteral("tap"), chosen}};
            QCOMPARE(testing::jsonMap(saved).value(QStringLiteral("actions")), QVariant(actions));
        }
    }

    void aListenerThatEndsTheProcessKeepsNobodyFromBeingTold()
    {
        QCOMPARE(childOutput(QStringLiteral("within a telling"), 0, QCoreApplication::applicationFilePath()),
                 QByteArray("told\n"));
    }

    void aServiceThatEndsTheProcessAtLoadIsNotSaved()
    {
        const testing::DataTree data;
        const QByteArray bindings = R"({"version": 1, "actions": {"tap": "two"}})";
        testing::writeFile(data.userFile(QStringLiteral("app")), bindings);
        testing::writeFile(data.defaultFile(QStringLiteral("app")), R"({"gestures": 5})");
        QCOMPARE(childOutput(QStringLiteral("exit switch while loading"), 255), QByteArray());
        QCOMPARE(testing::readFile(data.userFile(QStringLiteral("app"))), bindings);
    }
};

int main(int argc, char *argv[])
{
    if (argc == 2 && qstrcmp(argv[1], "handler first") == 0)
        return endWithTheHandlerFirst(argc, argv);
    if (argc == 2 && qstrcmp(argv[1], "within a telling") == 0)
        return endWithinATelling(argc, argv);
    QCoreApplication app(argc, argv);
    tst_ExitNotifier test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_exitnotifier.moc"
