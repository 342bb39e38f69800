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
#include <QSortFilterProxyModel>

#include <algorithm>
#include <memory>

using namespace vellix::gesture;

// The pages' QML clients work, and their files and other QML load. docs/docs.py runs all other blocks of code.
class tst_Readme : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        qputenv("XDG_DATA_DIRS", SOURCE_DIR "/examples/data");
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_user.path()));
        m_engine.addImportPath(QML_IMPORT_PATH);
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
        QTest::qWait(50); // for the service and its bindings
        QCOMPARE(warnings.join('\n'), QString());
    }

    void qmlClient()
    {
        const std::unique_ptr<QObject> page = qml("README.md", 0);
        QVERIFY(page);
        const auto *editor = page->property("editor").value<QObject *>();
        QVERIFY(editor);
        QCOMPARE(editor->property("model").value<QAbstractItemModel *>()->rowCount(), 22);
    }

    void qmlTouchFindsAnAction()
    {
        const std::unique_ptr<QObject> page = qml("docs/for-reading-applications.md", 0);
        QVERIFY(page);
        QCoreApplication::processEvents();
        const QList<QObject *> children = page->findChildren<QObject *>();
        const auto area = std::find_if(children.cbegin(), children.cend(), [](const QObject *child) {
            return child->metaObject()->indexOfSignal("gestureMade(int,int,QPointF)") >= 0;
        });
        QVERIFY(area != children.cend());
        QSignalSpy triggered(page.get(), SIGNAL(triggered(QString)));
        const auto pathOf = [&](Gesture::Kind kind, Gesture::Direction direction, const QPointF &start) {
            triggered.clear();
            QMetaObject::invokeMethod(*area, "gestureMade", Q_ARG(int, kind), Q_ARG(int, direction),
                                      Q_ARG(QPointF, start));
            return triggered.isEmpty() ? QString() : triggered.first().first().toString();
        };
        QCOMPARE(pathOf(Gesture::Tap, Gesture::NoDirection, {0.9, 0.5}), QString("page/next"));
        QCOMPARE(pathOf(Gesture::Swipe, Gesture::ToRight, {0.5, 0.5}), QString("page/previous"));
        QCOMPARE(pathOf(Gesture::Tap, Gesture::NoDirection, {0.5, 0.01}), QString());
    }

    // Infinity and what is no number pass through JavaScript.
    void qmlTouchHasADirection()
    {
        QQmlEngine engine;
        engine.addImportPath(QML_IMPORT_PATH);
        QQmlComponent component(&engine);
        component.setData("import QtQml 2.15\nimport Vellix.Gesture 1.0\n"
                          "QtObject { function direction(dx, dy) { return Gestures.directionFromVec(dx, dy) } }",
                          QUrl());
        const std::unique_ptr<QObject> object(component.create());
        QVERIFY2(object, qPrintable(component.errorString()));
        const double infinity = qInf();
        const QList<double> steps{-infinity, -300, -1.5, -1, -0.0, 0, 0.5, 1, 300, infinity, qQNaN()};
        for (const double dx : steps) {
            for (const double dy : steps) {
                QVariant direction;
                QVERIFY(QMetaObject::invokeMethod(object.get(), "direction", Q_RETURN_ARG(QVariant, direction),
                                                  Q_ARG(QVariant, dx), Q_ARG(QVariant, dy)));
                QVERIFY2(direction.toInt() == Gesture::directionFromVec(dx, dy),
                         qPrintable(QString("%1, %2").arg(dx).arg(dy)));
            }
        }
    }

    void qmlSectionsHaveHeadings()
    {
        const std::unique_ptr<QObject> view = qml("docs/for-settings-screens.md", 4);
        QVERIFY(view);
        QTRY_VERIFY(!view->property("currentSection").toString().isEmpty());
        QVariant heading;
        QVERIFY(QMetaObject::invokeMethod(view.get(), "headingOf", Q_RETURN_ARG(QVariant, heading),
                                          Q_ARG(QVariant, view->property("currentSection"))));
        QCOMPARE(heading.toString(), QString("reading: tap"));
    }

    void qmlFilterChanges()
    {
        const std::unique_ptr<QObject> page = qml("docs/for-settings-screens.md", 5);
        QVERIFY(page);
        auto *filter = page->findChild<QSortFilterProxyModel *>();
        QVERIFY(filter);
        QTRY_COMPARE(filter->rowCount(), 6);
        filter->setProperty("whiteList", QVariant::fromValue(QList<int>{Gesture::Hold}));
        QCOMPARE(filter->rowCount(), 4);
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
        const QList<QByteArray> files = blocks("docs/files.md", "json");
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
        QCOMPARE(gestures.right().at(0)->currentAction()->path(), QString("menu"));
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
    static QList<QByteArray> blocks(const char *page, const char *language)
    {
        const QRegularExpression fence(QString("```%1\n(.*?)```").arg(language),
                                       QRegularExpression::DotMatchesEverythingOption);
        QList<QByteArray> found;
        auto match = fence.globalMatch(QString::fromUtf8(testing::readFile(QString(SOURCE_DIR "/") + page)));
        while (match.hasNext())
            found.append(match.next().captured(1).toUtf8());
        return found;
    }

    // A QML document of a page; null if it does not load.
    std::unique_ptr<QObject> qml(const char *page, int number)
    {
        QQmlComponent component(&m_engine);
        component.setData(blocks(page, "qml").value(number), QUrl(QString("%1.qml").arg(page)));
        std::unique_ptr<QObject> object(component.create());
        if (!object)
            qWarning() << component.errorString();
        return object;
    }

    QQmlEngine m_engine;
    QTemporaryDir m_user;
};

QTEST_MAIN(tst_Readme)
#include "tst_readme.moc"
