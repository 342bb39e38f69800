#include "testing.h"

#include <gesture_api/configuration.h>
#include <gesture_api/gestureserviceprovider.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>

#include <malloc.h>

#include <memory>

using namespace vellix::gesture;
using testing::DataTree;
using testing::LogCapture;

// Months of running, in short.
class tst_Endurance : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // As in real configurations, some actions are unused, and trees are read.
        QByteArray menu;
        for (int i = 0; i < 30; ++i)
            menu += QByteArray(R"({"path": "menu/NUMBER", "titles": ["Menu", "Entry"]}, )")
                            .replace("NUMBER", QByteArray::number(i));
        testing::writeFile(m_tree.defaultFile("app"),
                           QByteArray(R"({
            "actions": [MENU
                {"path": "next", "title": "Next"}, {"path": "previous", "title": "Previous"},
                {"path": "menu", "title": "Menu"}],
            "actionGroups": {"group": ["menu/1", "menu/2", {"path": "inline", "title": "Inline"}]},
            "gestures": [
                {"id": "g", "kind": "tap", "zone": "left", "availableActions": ["next", "previous", "menu"],
                 "defaultAction": "next"},
                {"kind": "swipe", "direction": "toLeft", "availableActions": "group",
                 "defaultAction": ["menu/1", {"path": "fallback", "title": "Fallback"}]}]})")
                                   .replace("MENU", menu));
    }

    void rebuilds_data()
    {
        QTest::addColumn<bool>("useTrees");
        QTest::newRow("trees unread") << false;
        QTest::newRow("trees read") << true;
    }

    void rebuilds()
    {
        QFETCH(bool, useTrees);
        GestureServiceProvider provider(nullptr);
        provider.setAppId("app");
        const auto rebuild = [&](int times) {
            for (int i = 0; i < times; ++i) {
                provider.installService(nullptr, "app", true);
                for (const Gesture *gesture : provider.service()->gestureList()) {
                    if (useTrees)
                        gesture->actionTree();
                }
                QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
                QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
                QCoreApplication::processEvents();
            }
        };
        rebuild(100);
        const int descriptors = openDescriptors();
        const std::size_t before = mallinfo2().uordblks;
        rebuild(10000);
        QCOMPARE(openDescriptors(), descriptors);
#ifdef __SANITIZE_ADDRESS__
        QSKIP("the leak checker, whose heap this is, looks instead");
#endif
        const auto growth = static_cast<qint64>(mallinfo2().uordblks) - static_cast<qint64>(before);
        QVERIFY2(growth < 100 * 10000, qPrintable(QString("%1 bytes").arg(growth)));
        qInfo("grown by %lld bytes in 10,000 rebuilds", static_cast<long long>(growth));
    }

    // Watches that come and go, and change the application, leave nothing behind.
    void providersComeAndGo()
    {
        const int descriptors = openDescriptors();
        for (int i = 0; i < 1000; ++i) {
            GestureServiceProvider provider(nullptr);
            for (const QString &app : {QString("app"), QString(), QString("other")})
                provider.setAppId(app);
            QCoreApplication::processEvents();
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(openDescriptors(), descriptors);
    }

    // A slow writer: the library reports halves of a file, and the whole file repairs it.
    void slowWriter()
    {
        LogCapture log;
        GestureServiceProvider provider(nullptr);
        provider.setAppId("app");
        QCOMPARE(currentAction(provider), QString("next"));
        connect(&provider, &GestureServiceProvider::serviceChanged, [](GestureService *service) {
            if (service)
                service->gestureList();
        });
        const QByteArray text = R"({"version": 1, "actions": {"g": "menu"}})";
        QDir().mkpath(QFileInfo(m_tree.userFile("app")).path());
        QFile file(m_tree.userFile("app"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        for (const char byte : text.chopped(1)) {
            file.write(&byte, 1);
            file.flush();
            QTest::qWait(8);
        }
        QTRY_VERIFY(!log.lines.isEmpty()); // the torn file was seen
        file.write(text.right(1));
        file.close();
        QTRY_COMPARE(currentAction(provider), QString("menu"));

        testing::writeFile(m_tree.userFile("app"), "foreign");
        QTRY_COMPARE(currentAction(provider), QString("next"));
        testing::writeFile(m_tree.userFile("app"), text);
        QTRY_COMPARE(currentAction(provider), QString("menu"));
        QVERIFY(QFile::remove(m_tree.userFile("app")));
    }

    void twoProcesses_data()
    {
        QTest::addColumn<QStringList>("inPlace");
        QTest::newRow("saves, deletes and renames") << QStringList();
        QTest::newRow("plain writes as well") << QStringList("in-place");
    }

    void twoProcesses()
    {
        QFETCH(QStringList, inPlace);
        std::unique_ptr<QProcess> children[2];
        for (int i = 0; i < 2; ++i) {
            children[i].reset(new QProcess);
            children[i]->setStandardErrorFile(QProcess::nullDevice());
            children[i]->start(TEST_PROGRAMS "/stresschild", QStringList({QString::number(i + 1), "1000"}) + inPlace);
        }
        const auto expect = [](QProcess &child, const QByteArray &word) {
            QElapsedTimer waited;
            waited.start();
            while (!child.canReadLine() && waited.elapsed() < testing::patience) {
                if (!child.waitForReadyRead(1000) && child.state() != QProcess::Running)
                    break;
            }
            return child.readLine().trimmed() == word;
        };
        for (const auto &child : children)
            QVERIFY(expect(*child, "done"));
        // Every service sees the final state of the edits, and later ones.
        for (const char *state : {"", R"({"version": 1, "actions": {"g": "previous"}})", "torn {", "(none)",
                                  R"({"version": 1, "actions": {"g": "menu"}})"}) {
            if (QByteArray(state) == "(none)")
                QVERIFY(QFile::remove(m_tree.userFile("app")));
            else if (*state)
                testing::writeFile(m_tree.userFile("app"), state);
            for (const auto &child : children) {
                child->write("look\n");
                QVERIFY2(expect(*child, "same"), state);
            }
        }
        for (const auto &child : children) {
            child->closeWriteChannel();
            QVERIFY(child->waitForFinished(testing::patience));
            QCOMPARE(child->exitStatus(), QProcess::NormalExit);
        }
        const QStringList left = testing::filesBelow(m_tree.user());
        for (const QString &name : left)
            QVERIFY2(name.endsWith("/cfg.json") || name.endsWith("/cfg.json.away"), qPrintable(name));
    }

private:
    static int openDescriptors()
    {
        return QDir("/proc/self/fd").entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System).size();
    }

    static QString currentAction(const GestureServiceProvider &provider)
    {
        const Gesture *gesture = provider.service() ? provider.service()->gestureList().value(0) : nullptr;
        return gesture && gesture->currentAction() ? gesture->currentAction()->path() : QString();
    }

    DataTree m_tree;
};

QTEST_GUILESS_MAIN(tst_Endurance)
#include "tst_endurance.moc"
