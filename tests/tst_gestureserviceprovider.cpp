#include "testing.h"

#include <gesture_api/configuration.h>
#include <gesture_api/gestureserviceprovider.h>

#include <vellix/exitnotifier.h>
#include <vellix/platform/slateview.h>

#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <QProcess>
#include <QSignalSpy>
#include <QTimer>

using namespace vellix;
using namespace vellix::gesture;
using testing::DataTree;
using testing::LogCapture;

// The task queries of this program take precedence over the platform library's.
static int currentTask = 1234;
static bool taskKnown = true;

int GetCurrentTask(void)
{
    return currentTask;
}

const TaskInfo *GetTaskInfo(int)
{
    static const TaskInfo info{"reader"};
    return taskKnown ? &info : nullptr;
}

static const char *const configuration = R"({
    "actions": [{"path": "next", "title": "Next"}, {"path": "menu", "title": "Menu"}],
    "gestures": [{"id": "g", "kind": "tap", "zone": "left", "availableActions": ["next", "menu"],
                  "defaultAction": "next"}]
})";
static const char *const boundToMenu = R"({"version": 1, "actions": {"g": "menu"}})";

static QString currentPath(const GestureService *service)
{
    return service->gestureList().value(0)->currentAction()->path();
}

// The paths file is read once per process, so one tree serves the whole program.
class tst_GestureServiceProvider : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        for (const QString &app :
             {QStringLiteral("app"), QStringLiteral("other"), ApplicationPathsConfiguration::currentAppId()})
            testing::writeFile(m_tree.defaultFile(app), configuration);
    }

    void cleanup()
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        for (const QString &file : testing::filesBelow(m_tree.user()))
            QFile::remove(m_tree.user(file));
    }

    void missingPathsFileIsPrintedOnceAndTheBuiltInDefaultUsed()
    {
        LogCapture log;
        const ApplicationPathsConfiguration paths = GestureServiceProvider::applicationPathsConfiguration();
        QCOMPARE(paths.currentPath(), QStringLiteral("${USERDATA}/gestures/apps/current"));
        QCOMPARE(log.qtMessages.size(), 1);
        QVERIFY(log.qtMessages[0].startsWith(
                QStringLiteral("critical default: \033[31m [error] expected right but \033[31m ")));
        // Never read again, even if it exists now.
        const QString file = m_tree.system(QStringLiteral("config/gestures/application_paths.json"));
        testing::writeFile(file, R"({"current": "/x", "default": "/y", "filename": "z"})");
        QCOMPARE(GestureServiceProvider::applicationPathsConfiguration().fileName(), QStringLiteral("cfg.json"));
        QCOMPARE(log.qtMessages.size(), 1);
        QVERIFY(QFile::remove(file));
    }

    void startsFromTheEventLoop()
    {
        GestureServiceProvider provider(nullptr);
        QCOMPARE(provider.appId(), ApplicationPathsConfiguration::currentAppId());
        QCOMPARE(provider.readonly(), true);
        QCOMPARE(provider.service(), nullptr);
        QSignalSpy changed(&provider, &GestureServiceProvider::serviceChanged);
        QVERIFY(changed.wait(testing::patience));
        QCOMPARE(changed.size(), 1);
        QVERIFY(provider.service());
        QCOMPARE(changed.at(0).at(0).value<GestureService *>(), provider.service());
        QCOMPARE(provider.service()->parent(), &provider);
        QCOMPARE(provider.service()->readonly(), true);
        QCOMPARE(currentPath(provider.service()), QStringLiteral("next"));
    }

    void appIdSetBeforeTheLoopRuns()
    {
        GestureServiceProvider provider(nullptr);
        QSignalSpy changed(&provider, &GestureServiceProvider::serviceChanged);
        QSignalSpy appIdChanged(&provider, &GestureServiceProvider::appIdChanged);
        provider.setAppId(QStringLiteral("app"));
        QCOMPARE(appIdChanged.size(), 1);
        const QPointer<GestureService> service = provider.service();
        QVERIFY(service);
        QTest::qWait(20);
        QCOMPARE(changed.size(), 1);
        QCOMPARE(provider.service(), service.data());
        QCOMPARE(service->paths().appId(), QStringLiteral("app"));
    }

    void sameValuesChangeNothing()
    {
        GestureServiceProvider provider(nullptr);
        provider.setAppId(QStringLiteral("app"));
        QSignalSpy changed(&provider, &GestureServiceProvider::serviceChanged);
        QSignalSpy appIdChanged(&provider, &GestureServiceProvider::appIdChanged);
        QSignalSpy readonlyChanged(&provider, &GestureServiceProvider::readonlyChanged);
        provider.setAppId(QStringLiteral("app"));
        provider.setReadonly(true);
        QCOMPARE(changed.size() + appIdChanged.size() + readonlyChanged.size(), 0);
    }

    void togglingReadonlyReplacesTheService()
    {
        GestureServiceProvider provider(nullptr);
        provider.setAppId(QStringLiteral("app"));
        const QPointer<GestureService> before = provider.service();
        QSignalSpy changed(&provider, &GestureServiceProvider::serviceChanged);
        provider.setReadonly(false);
        QVERIFY(before); // released with deleteLater, never at once
        QCOMPARE(changed.size(), 1);
        QVERIFY(provider.service() != before);
        QCOMPARE(provider.service()->readonly(), false);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!before);
        provider.setReadonly(true);
    }

    void emptyAppIdReleases()
    {
        GestureServiceProvider provider(nullptr);
        provider.setAppId(QStringLiteral("app"));
        QSignalSpy changed(&provider, &GestureServiceProvider::serviceChanged);
        provider.setAppId(QString());
        QCOMPARE(changed.size(), 1);
        QCOMPARE(changed.at(0).at(0).value<GestureService *>(), nullptr);
        QCOMPARE(provider.service(), nullptr);
        provider.installService(nullptr, QString(), true);
        QCOMPARE(changed.size(), 1);
        QTest::qWait(20);
        // Nothing is watched any more.
        testing::writeFile(m_tree.userFile(QStringLiteral("app")), boundToMenu);
        QTest::qWait(150);
        QCOMPARE(changed.size(), 1);
        // The destroyed watch is released only once.
        provider.setAppId(QStringLiteral("app"));
        QCOMPARE(changed.size(), 2);
        testing::writeFile(m_tree.userFile(QStringLiteral("app")), "{}");
        QTRY_COMPARE(changed.size(), 4);
    }

    void prohibitedAppId()
    {
        LogCapture log;
        GestureServiceProvider provider(nullptr);
        provider.setAppId(QStringLiteral("app"));
        QSignalSpy changed(&provider, &GestureServiceProvider::serviceChanged);
        provider.setAppId(QStringLiteral("qmlplugindump"));
        QCOMPARE(changed.size(), 1);
        QCOMPARE(provider.service(), nullptr);
        QCOMPARE(log.lines.size(), 1);
        QCOMPARE(log.lines[0].level, QStringLiteral("warn"));
        QVERIFY(log.lines[0].body.endsWith(QStringLiteral("app 'qmlplugindump' is prohibited")));
        // No change, no signal; the warning comes each time.
        provider.loadService(nullptr);
        QCOMPARE(changed.size(), 1);
        QCOMPARE(log.lines.size(), 2);
        const auto failed = GestureServiceProvider::newGestureService(nullptr, QStringLiteral("qmlplugindump"), true);
        QCOMPARE(testing::failure(failed), QStringLiteral("app 'qmlplugindump' is prohibited"));
        QCOMPARE(testing::failureFile(failed), QStringLiteral("../../../gesture_api/src/applicationpaths"));
    }

    void loadServiceOnlyWhereThereIsNone()
    {
        GestureServiceProvider provider(nullptr);
        QSignalSpy changed(&provider, &GestureServiceProvider::serviceChanged);
        provider.loadService(nullptr);
        QCOMPARE(changed.size(), 1);
        GestureService *service = provider.service();
        provider.loadService(nullptr);
        QCOMPARE(changed.size(), 1);
        QCOMPARE(provider.service(), service);
    }

    void nothingIsLoadedWithoutAnAppId()
    {
        LogCapture log;
        GestureServiceProvider provider(nullptr);
        provider.setAppId(QString());
        QSignalSpy changed(&provider, &GestureServiceProvider::serviceChanged);
        provider.loadService(nullptr);
        QCOMPARE(provider.service(), nullptr);
        provider.installService(nullptr, QString(), true);
        QCOMPARE(provider.service(), nullptr);
        QCOMPARE(changed.size(), 0);
        QVERIFY(log.lines.isEmpty());
    }

    void releaseService()
    {
        GestureServiceProvider provider(nullptr);
        QSignalSpy changed(&provider, &GestureServiceProvider::serviceChanged);
        provider.releaseService();
        QVERIFY(changed.isEmpty());
        provider.loadService(nullptr);
        const QPointer<GestureService> service = provider.service();
        provider.releaseService();
        QCOMPARE(changed.size(), 2);
        QCOMPARE(provider.service(), nullptr);
        QVERIFY(service);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!service);
    }

    void changeBeforeTheFirstTurnOfTheLoopIsNotLost()
    {
        GestureServiceProvider provider(nullptr);
        provider.setAppId(QStringLiteral("app"));
        QCOMPARE(currentPath(provider.service()), QStringLiteral("next"));
        testing::writeFile(m_tree.userFile(QStringLiteral("app")), boundToMenu);
        QTRY_COMPARE(provider.service() ? currentPath(provider.service()) : QString(), QStringLiteral("menu"));
    }

    void changedFileReplacesTheService()
    {
        GestureServiceProvider provider(nullptr);
        provider.setAppId(QStringLiteral("app"));
        QCOMPARE(currentPath(provider.service()), QStringLiteral("next"));
        QSignalSpy changed(&provider, &GestureServiceProvider::serviceChanged);
        testing::writeFile(m_tree.userFile(QStringLiteral("app")), boundToMenu);
        QTRY_VERIFY(changed.size() >= 2);
        QCOMPARE(changed.at(0).at(0).value<GestureService *>(), nullptr);
        QTRY_COMPARE(currentPath(provider.service()), QStringLiteral("menu"));
        changed.clear();
        QVERIFY(QFile::remove(m_tree.userFile(QStringLiteral("app"))));
        QTRY_COMPARE(changed.size(), 2);
        QCOMPARE(currentPath(provider.service()), QStringLiteral("next"));
    }

    void propertiesSetBeforeTheLoopRuns()
    {
        GestureServiceProvider provider(nullptr);
        provider.setReadonly(false);
        provider.setAppId(QStringLiteral("app"));
        QTest::qWait(20);
        QCOMPARE(provider.service()->readonly(), false);
        QCOMPARE(provider.service()->paths().appId(), QStringLiteral("app"));
    }

    void replacedServiceIsLikeTheProvider()
    {
        DefaultFeaturesProvider features;
        GestureServiceProvider provider(&features);
        provider.setReadonly(false);
        provider.setAppId(QStringLiteral("app"));
        QCOMPARE(provider.service()->featuresProvider(), &features);
        const QPointer<GestureService> before = provider.service();
        testing::writeFile(m_tree.userFile(QStringLiteral("app")), boundToMenu);
        QTRY_VERIFY(provider.service() && provider.service() != before);
        QCOMPARE(provider.service()->readonly(), false);
        QCOMPARE(provider.service()->featuresProvider(), &features);
        provider.service()->prune(); // nothing to save when it is destroyed
    }

    void anotherAppIdIsWatchedInstead()
    {
        GestureServiceProvider provider(nullptr);
        provider.setAppId(QStringLiteral("app"));
        provider.setAppId(QStringLiteral("other"));
        QTest::qWait(20);
        QSignalSpy changed(&provider, &GestureServiceProvider::serviceChanged);
        testing::writeFile(m_tree.userFile(QStringLiteral("app")), boundToMenu);
        QTest::qWait(150);
        QCOMPARE(changed.size(), 0);
        testing::writeFile(m_tree.userFile(QStringLiteral("other")), boundToMenu);
        QTRY_VERIFY(changed.size() >= 2);
        QTRY_COMPARE(currentPath(provider.service()), QStringLiteral("menu"));
    }

    // Deferred deletes do not run in a nested loop: the old watch still exists.
    void watchLetGoIsHeardNoMore()
    {
        GestureServiceProvider provider(nullptr);
        provider.setAppId(QStringLiteral("app"));
        QTest::qWait(20);
        bool ran = false;
        QTimer::singleShot(0, &provider, [&] {
            provider.setAppId(QStringLiteral("other"));
            QSignalSpy changed(&provider, &GestureServiceProvider::serviceChanged);
            testing::writeFile(m_tree.userFile(QStringLiteral("app")), boundToMenu);
            QEventLoop loop;
            QTimer::singleShot(200, &loop, &QEventLoop::quit);
            loop.exec();
            QCOMPARE(changed.size(), 0);
            ran = true;
        });
        QTRY_VERIFY(ran);
    }

    void watchLetGoByHandIsMadeAnewByTheInitialReaction()
    {
        GestureServiceProvider provider(nullptr);
        provider.setAppId(QStringLiteral("app"));
        provider.syncApp(QString(), nullptr);
        QTest::qWait(20);
        QSignalSpy changed(&provider, &GestureServiceProvider::serviceChanged);
        testing::writeFile(m_tree.userFile(QStringLiteral("app")), boundToMenu);
        QTRY_VERIFY(changed.size() >= 2);
    }

    void pathsFileIsUsed()
    {
        const QString file = m_tree.system(QStringLiteral("config/gestures/application_paths.json"));
        testing::writeFile(file, R"({"current": "/nowhere/current", "default": "/nowhere/default", "filename": "f.json",
                                     "prohibitedApps": ["providerchild"]})");
        QProcess child;
        child.start(QStringLiteral(TEST_PROGRAMS "/providerchild"), QStringList());
        QVERIFY(child.waitForFinished(testing::patience));
        QVERIFY(QFile::remove(file));
        QCOMPARE(child.readAllStandardOutput(), QByteArray("no service\n"));
        const QByteArray errors = child.readAllStandardError();
        QVERIFY2(errors.contains("app 'providerchild' is prohibited"), errors.constData());
        QVERIFY2(!errors.contains("application_paths.json"), errors.constData());
    }

    void staleServiceNeverWrites()
    {
        GestureServiceProvider provider(nullptr);
        provider.setReadonly(false);
        provider.setAppId(QStringLiteral("app"));
        const QPointer<GestureService> stale = provider.service();
        QCOMPARE(currentPath(stale), QStringLiteral("next"));
        // The process might end at the very moment of the old service's release.
        int told = 0;
        connect(&provider, &GestureServiceProvider::serviceChanged, &provider, [&](GestureService *service) {
            if (service)
                return;
            QVERIFY(stale);
            ExitNotifier::notify();
            ++told;
        });
        testing::writeFile(m_tree.userFile(QStringLiteral("app")), boundToMenu);
        QTRY_VERIFY(told > 0 && provider.service());
        QCOMPARE(testing::readFile(m_tree.userFile(QStringLiteral("app"))), QByteArray(boundToMenu));
    }

    void serviceReplacedForAnotherReasonStillSaves()
    {
        GestureServiceProvider provider(nullptr);
        provider.setReadonly(false);
        provider.setAppId(QStringLiteral("app"));
        provider.setReadonly(true); // the writable one waits for its deletion
        ExitNotifier::notify();
        QVERIFY(QFileInfo::exists(m_tree.userFile(QStringLiteral("app"))));
    }

    void appIdOfSeveralDirectories_data()
    {
        QTest::addColumn<QString>("appId");
        QTest::addColumn<QString>("action"); // "nothing" if the configuration is outside of the system's data
        QTest::addColumn<bool>("written");   // the user's file is inside of the user's
        QTest::newRow("a slash") << "a/b"
                                 << "menu" << true;
        QTest::newRow("the parent, inside") << ".."
                                            << "menu" << true;
        QTest::newRow("up to the roots") << "../../../etc"
                                         << "menu" << true;
        QTest::newRow("out of the user's data") << "../../../../etc"
                                                << "next" << false;
        QTest::newRow("out of both") << "../../../../../etc"
                                     << "nothing" << false;
        QTest::newRow("down and out of both") << "a/../../../../../../etc"
                                              << "nothing" << false;
    }

    // The host keeps the part after a prefix below its root: nothing outside is read, written, watched or removed.
    void appIdOfSeveralDirectories()
    {
        QFETCH(QString, appId);
        QFETCH(QString, action);
        QFETCH(bool, written);
        const QString byDefault = QDir::cleanPath(m_tree.defaultFile(appId));
        const QString user = QDir::cleanPath(m_tree.userFile(appId));
        // The paths must exist for the kernel.
        for (const QString &path : {m_tree.user(QStringLiteral("gestures/apps/current/a")),
                                    m_tree.system(QStringLiteral("config/gestures/apps/default/a"))})
            QVERIFY(QDir().mkpath(path));
        testing::writeFile(byDefault, configuration);
        testing::writeFile(user, boundToMenu);
        const LogCapture quiet;

        GestureServiceProvider provider(nullptr);
        provider.setReadonly(false);
        provider.setAppId(appId);
        QVERIFY(provider.service());
        const QList<Gesture *> gestures = provider.service()->gestureList();
        QCOMPARE(gestures.isEmpty() ? QStringLiteral("nothing") : currentPath(provider.service()), action);

        QVERIFY(provider.service()->save());
        QCOMPARE(testing::readFile(user) != boundToMenu, written);
        QSignalSpy changed(&provider, &GestureServiceProvider::serviceChanged);
        testing::writeFile(user, "changed");
        if (written)
            QTRY_VERIFY(changed.size() >= 2);
        QTest::qWait(150);
        QCOMPARE(!changed.isEmpty(), written);
        QCOMPARE(provider.service()->prune(), written);
        QCOMPARE(QFile::exists(user), !written);
        QFile::remove(user);
        QVERIFY(QFile::remove(byDefault));
    }

    void programNamedAsAProhibitedOne()
    {
        const QString program = m_tree.root() + QStringLiteral("/qmlplugindump");
        // A link would be resolved to the program's own name.
        QVERIFY(QFile::copy(QStringLiteral(TEST_PROGRAMS "/providerchild"), program));
        QProcess child;
        child.start(program, QStringList());
        QVERIFY(child.waitForFinished(testing::patience));
        QCOMPARE(child.readAllStandardOutput(), QByteArray("no service\n"));
        const QByteArray errors = child.readAllStandardError();
        QVERIFY2(errors.contains("[warn]") && errors.contains("app 'qmlplugindump' is prohibited"), errors.constData());
    }

    void appName()
    {
        QCOMPARE(app_name(), QStringLiteral("1234:reader"));
        taskKnown = false;
        QCOMPARE(app_name(), QStringLiteral("app info unavailable"));
        currentTask = 0; // reported before the missing record
        QCOMPARE(app_name(), QStringLiteral("null pid"));
        currentTask = -5;
        QCOMPARE(app_name(), QStringLiteral("null pid"));
        currentTask = 1; // the smallest valid id
        taskKnown = true;
        QCOMPARE(app_name(), QStringLiteral("1:reader"));
    }

private:
    DataTree m_tree;
};

QTEST_GUILESS_MAIN(tst_GestureServiceProvider)
#include "tst_gestureserviceprovider.moc"
