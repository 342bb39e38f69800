#include "testing.h"

#include <gesture_api/configuration.h>
#include <gesture_api/gestureserviceprovider.h>

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QRegularExpression>

#include <memory>

using namespace vellix::gesture;

// What the README shows does what it says there, and the QML of every page loads. All other blocks of code are looked
// after by docs/docs.py.
class tst_Readme : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        qputenv("XDG_DATA_DIRS", SOURCE_DIR "/examples/data");
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_user.path()));
    }

    void qmlBlocks_data()
    {
        QTest::addColumn<QString>("file");
        const QFileInfoList files = QDir(DOCS_BLOCKS).entryInfoList({"*.qml"});
        QVERIFY(!files.isEmpty());
        for (const QFileInfo &file : files)
            QTest::newRow(qPrintable(file.baseName())) << file.filePath();
    }

    void qmlBlocks()
    {
        QFETCH(QString, file);
        QStringList warnings;
        QQmlEngine engine;
        engine.setOutputWarningsToStandardError(false);
        connect(&engine, &QQmlEngine::warnings, this, [&warnings](const QList<QQmlError> &errors) {
            for (const QQmlError &error : errors)
                warnings.append(error.toString());
        });
        engine.addImportPath(QML_IMPORT_PATH);
        QQmlComponent component(&engine, QUrl::fromLocalFile(file));
        const std::unique_ptr<QObject> object(component.create());
        QVERIFY2(object, qPrintable(component.errorString()));
        QTest::qWait(50); // for the service, and what is bound to it
        QCOMPARE(warnings.join('\n'), QString());
    }

    void qmlClient()
    {
        QQmlEngine engine;
        engine.addImportPath(QML_IMPORT_PATH);
        QQmlComponent component(&engine);
        component.setData(block("qml"), QUrl("README.qml"));
        const std::unique_ptr<QObject> view(component.create());
        QVERIFY2(view, qPrintable(component.errorString()));
        QCOMPARE(view->property("count").toInt(), 22);

        QVariant action;
        QVERIFY(QMetaObject::invokeMethod(view.get(), "actionAt", Q_RETURN_ARG(QVariant, action), Q_ARG(QVariant, 540),
                                          Q_ARG(QVariant, 400)));
        QCOMPARE(action.toString(), QString("page/next"));
        QVERIFY(QMetaObject::invokeMethod(view.get(), "actionAt", Q_RETURN_ARG(QVariant, action), Q_ARG(QVariant, 300),
                                          Q_ARG(QVariant, 10)));
        QCOMPARE(action.toString(), QString());
    }

    // Properties that QML sets are there before the first service is built.
    void appIdSetInQml()
    {
        DefaultFeaturesProvider features;
        GestureServiceProvider provider(&features);
        QQmlEngine engine;
        engine.rootContext()->setContextProperty("gestures", &provider);
        QQmlComponent component(&engine);
        component.setData("import QtQml 2.15\nQtObject { Component.onCompleted: gestures.appId = 'notes' }", QUrl());
        const std::unique_ptr<QObject> object(component.create());
        QVERIFY2(object, qPrintable(component.errorString()));
        QCoreApplication::processEvents();
        QCOMPARE(provider.service()->gestureList().size(), 3);
    }

    void files()
    {
        const QList<QByteArray> files = blocks("json");
        QCOMPARE(files.size(), 3);
        const auto paths = ApplicationPathsConfiguration::fromVariant(testing::json(files.at(0)));
        VERIFY_RIGHT(paths);
        const ApplicationPathsConfiguration assumed = ApplicationPathsConfiguration::newDefault();
        QCOMPARE(paths.right().currentPath(), assumed.currentPath());
        QCOMPARE(paths.right().defaultPath(), assumed.defaultPath());
        QCOMPARE(paths.right().fileName(), assumed.fileName());
        QVERIFY(paths.right().appPaths("qmlplugindump").isLeft());

        const auto bindings = Configuration::ActionBindings::fromVariant(testing::jsonMap(files.at(2)));
        QVERIFY(bindings.isRight());
        DefaultFeaturesProvider features;
        QObject owner;
        const auto gestures = Configuration::fromVariant(testing::json(files.at(1)), &features,
                                                         GestureService::predefinedZones, bindings.right(), &owner);
        VERIFY_RIGHT(gestures);
        QCOMPARE(gestures.right().at(0)->id(), QString("ReadingTapFooterNoDirection"));
        QCOMPARE(gestures.right().at(0)->currentAction()->path(), QString("chapter/list"));
    }

    void sampleConfigurationLoads_data()
    {
        QTest::addColumn<int>("gestures");
        QTest::newRow("reader") << 22;
        QTest::newRow("notes") << 3;
    }

    void sampleConfigurationLoads()
    {
        DefaultFeaturesProvider features;
        QObject owner;
        const auto paths = ApplicationPathsConfiguration::newDefault().appPaths(QTest::currentDataTag()).right();
        const auto gestures =
                Configuration::loadJson(paths.defaultPath(), &features, GestureService::predefinedZones, {}, &owner);
        VERIFY_RIGHT(gestures);
        QTEST(gestures.right().size(), "gestures");
    }

private:
    static QList<QByteArray> blocks(const char *language)
    {
        const QRegularExpression fence(QString("```%1\n(.*?)```").arg(language),
                                       QRegularExpression::DotMatchesEverythingOption);
        QList<QByteArray> found;
        auto match = fence.globalMatch(QString::fromUtf8(testing::readFile(SOURCE_DIR "/README.md")));
        while (match.hasNext())
            found.append(match.next().captured(1).toUtf8());
        return found;
    }

    static QByteArray block(const char *language) { return blocks(language).value(0); }

    QTemporaryDir m_user;
};

QTEST_MAIN(tst_Readme)
#include "tst_readme.moc"
