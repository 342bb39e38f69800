#include "testing.h"

#include <gesture_api/gestureserviceprovider.h>

#include <vellix/platform/slateview.h>

#include <QDir>

#include <unistd.h>

#include <thread>

class tst_SlateView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void speechEngineOnThePath_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("speaks");
        for (const char *name : {"espeak-ng", "espeak", "flite", "festival", "pico2wave", "spd-say"})
            QTest::newRow(name) << QString::fromLatin1(name) << true;
        QTest::newRow("another program") << "espeak-ng2" << false;
    }

    void speechEngineOnThePath()
    {
        QFETCH(QString, name);
        QFETCH(bool, speaks);
        QTemporaryDir programs;
        qputenv("PATH", QByteArray("/nowhere:") + QFile::encodeName(programs.path()));
        QVERIFY(!SvTTSSupported());
        const QString engine = programs.filePath(name);
        testing::writeFile(engine, "#!/bin/sh\n");
        QVERIFY(!SvTTSSupported()); // cannot be run
        QVERIFY(QFile::setPermissions(engine, QFile::ReadOwner | QFile::ExeOwner));
        QCOMPARE(SvTTSSupported(), speaks);
        qunsetenv("PATH");
        QVERIFY(!SvTTSSupported());
    }

    void currentTaskIsThisProcess()
    {
        QCOMPARE(GetCurrentTask(), static_cast<int>(getpid()));
        const TaskInfo *info = GetTaskInfo(GetCurrentTask());
        QVERIFY(info);
        QFile comm(QStringLiteral("/proc/self/comm"));
        QVERIFY(comm.open(QIODevice::ReadOnly));
        QCOMPARE(QByteArray(info->name), comm.readAll().trimmed());
        QCOMPARE(app_name(), QStringLiteral("%1:%2").arg(getpid()).arg(QString::fromUtf8(info->name)));
    }

    void eachThreadHasItsAnswer()
    {
        const TaskInfo *mine = GetTaskInfo(GetCurrentTask());
        bool others = false;
        std::thread([&] {
            const TaskInfo *own = GetTaskInfo(GetCurrentTask());
            others = own && own != mine && own->name != mine->name;
        }).join();
        QVERIFY(others);
    }

    void answerLeavesNoDescriptorOpen()
    {
        const QDir descriptors(QStringLiteral("/proc/self/fd"));
        const auto open = [&] { return descriptors.entryList(QDir::AllEntries | QDir::System); };
        const QStringList before = open();
        for (int i = 0; i < 3; ++i)
            GetTaskInfo(GetCurrentTask());
        QCOMPARE(open(), before);
    }

    void unknownTask()
    {
        QCOMPARE(GetTaskInfo(-1), nullptr);
        QCOMPARE(GetTaskInfo(0), nullptr);
        QCOMPARE(GetTaskInfo(999999999), nullptr);
    }
};

QTEST_GUILESS_MAIN(tst_SlateView)
#include "tst_slateview.moc"
