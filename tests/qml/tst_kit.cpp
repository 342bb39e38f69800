// The module's models under Qt's own model tester, and what QML alone cannot do to its editor.

#include "testtree.h"

#include <gesture_api/gesture.h>

#include <QAbstractItemModel>
#include <QAbstractItemModelTester>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPointer>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QtTest>

#include <malloc.h>

#include <memory>

class TestKit : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void destroySender() { delete sender(); }

private Q_SLOTS:
    void initTestCase();
    void init();

    void modelsKeepTheirContract();
    void filter_data();
    void filter();
    void filterOfAService();
    void pages_data();
    void pages();
    void pageKeepsItsRow();
    void stepsEndAtTheEnds();
    void firstLetters();
    void menu();
    void menuHidesWhatTheDeviceLacks();
    void menuOfManyLevels();
    void menuOfADestroyedGesture();
    void editorInANestedEventLoop();
    void editorDestroyedByAListener_data();
    void editorDestroyedByAListener();
    void zonesHaveDifferentNames();
    void memoryOf500Openings();

private:
    std::unique_ptr<QObject> create(const QByteArray &type, const QVariantMap &properties = {});
    std::unique_ptr<QObject> editor();

    QQmlEngine m_engine;
    TestTree m_tree;
};

using Model = QAbstractItemModel;
using FailureReportingMode = QAbstractItemModelTester::FailureReportingMode;

static const QString tapRight = QStringLiteral("ReadingTapRightNoDirection");

static Model *modelOf(QObject *editor)
{
    return editor->property("model").value<Model *>();
}

static int role(const Model &model, const QByteArray &name)
{
    return model.roleNames().key(name, -1);
}

static QStringList column(const Model &model, const QByteArray &name)
{
    QStringList values;
    for (int row = 0; row < model.rowCount(); ++row)
        values.append(model.index(row, 0).data(role(model, name)).toString());
    return values;
}

static bool choose(QObject *editor, const QString &id, const QString &path)
{
    bool chosen = false;
    QMetaObject::invokeMethod(editor, "choose", Q_RETURN_ARG(bool, chosen), Q_ARG(QString, id), Q_ARG(QString, path));
    return chosen;
}

static QObject *gesture(QObject *editor, const QString &id)
{
    vellix::gesture::Gesture *found = nullptr;
    QMetaObject::invokeMethod(editor, "gesture", Q_RETURN_ARG(vellix::gesture::Gesture *, found), Q_ARG(QString, id));
    return found;
}

void TestKit::initTestCase()
{
    TestTree::useForThisProcess();
    m_engine.addImportPath(QStringLiteral(QML_IMPORT_PATH));
}

void TestKit::init()
{
    m_tree.reset();
}

std::unique_ptr<QObject> TestKit::create(const QByteArray &type, const QVariantMap &properties)
{
    QQmlComponent component(&m_engine);
    component.setData("import Vellix.Gesture 1.0\n" + type + " {}", QUrl());
    std::unique_ptr<QObject> object(component.createWithInitialProperties(properties));
    if (!object)
        qFatal("%s", qPrintable(component.errorString()));
    return object;
}

std::unique_ptr<QObject> TestKit::editor()
{
    return create("GestureEditor", {{"appId", "reader"}});
}

void TestKit::modelsKeepTheirContract()
{
    const auto edited = editor();
    const auto filter = create("GestureFilterModel");
    const auto pages = create("PageModel",
                              {{"headingRole", "sectionTitle"},
                               {"keyRole", "gestureId"},
                               {"height", 300},
                               {"rowHeight", 80},
                               {"headingHeight", 40}});
    const auto menu = create("ActionMenuModel");
    std::vector<std::unique_ptr<QAbstractItemModelTester>> testers;
    for (QObject *model : {static_cast<QObject *>(modelOf(edited.get())), filter.get(), pages.get(), menu.get()})
        testers.push_back(
                std::make_unique<QAbstractItemModelTester>(qobject_cast<Model *>(model), FailureReportingMode::QtTest));

    filter->setProperty("sourceModel", QVariant::fromValue(modelOf(edited.get())));
    pages->setProperty("source", QVariant::fromValue(qobject_cast<Model *>(filter.get())));
    QVERIFY(pages->property("pageCount").toInt() > 2);
    QVERIFY(choose(edited.get(), tapRight, "view/menu"));
    filter->setProperty("changedOnly", true);
    QCOMPARE(pages->property("rows").toInt(), 1);
    QVERIFY(QMetaObject::invokeMethod(edited.get(), "revert"));
    QCOMPARE(pages->property("rows").toInt(), 0);
    filter->setProperty("changedOnly", false);
    filter->setProperty("searchText", "menu");
    QVERIFY(pages->property("rows").toInt() > 0);
    filter->setProperty("searchText", "");
    for (int page = 0; page < pages->property("pageCount").toInt(); ++page)
        pages->setProperty("page", page);
    m_tree.setConfiguration("reader", m_tree.configuration("notes"));
    QSignalSpy changed(edited.get(), SIGNAL(configurationChangedElsewhere()));
    QTRY_COMPARE_WITH_TIMEOUT(changed.count(), 1, 60000);
    QVERIFY(pages->property("rows").toInt() > 0);
    edited->setProperty("appId", "none");
    QCOMPARE(pages->property("rows").toInt(), 0);
}

void TestKit::filter_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("count"); // of the 20 that offer actions

    QTest::newRow("taps") << QByteArray("kinds") << QVariant::fromValue(QList<int>{0}) << 6;
    QTest::newRow("holds and drags") << QByteArray("kinds") << QVariant::fromValue(QList<int>{1, 3}) << 7;
    QTest::newRow("no such kind") << QByteArray("kinds") << QVariant::fromValue(QList<int>{9}) << 0;
    QTest::newRow("a mode and all modes") << QByteArray("modes") << QVariant(QStringList{"menu"}) << 2;
    QTest::newRow("no such mode") << QByteArray("modes") << QVariant(QStringList{"none"}) << 1;
    QTest::newRow("title of the gesture") << QByteArray("searchText") << QVariant("ON THE RIGHT") << 1;
    QTest::newRow("title of the action") << QByteArray("searchText") << QVariant("next pa") << 2;
    QTest::newRow("path of the action") << QByteArray("searchText") << QVariant("page/next") << 2;
    QTest::newRow("id") << QByteArray("searchText") << QVariant("scrubb") << 2;
    QTest::newRow("blanks") << QByteArray("searchText") << QVariant("  ") << 20;
    QTest::newRow("nothing is found") << QByteArray("searchText") << QVariant("xyzzy") << 0;
    QTest::newRow("without a choice") << QByteArray("withoutChoice") << QVariant(true) << 22;
    QTest::newRow("changed only") << QByteArray("changedOnly") << QVariant(true) << 0;
}

// Works in any order: the source first or the property first.
void TestKit::filter()
{
    QFETCH(QByteArray, property);
    QFETCH(QVariant, value);
    QFETCH(int, count);

    // Without features, every device shows the same.
    m_tree.setConfiguration("reader", m_tree.configuration("reader").replace("\"features\"", "\"ignored\""));
    const auto edited = editor();
    const auto before = create("GestureFilterModel");
    before->setProperty(property, value);
    before->setProperty("sourceModel", QVariant::fromValue(modelOf(edited.get())));
    const auto after = create("GestureFilterModel");
    after->setProperty("sourceModel", QVariant::fromValue(modelOf(edited.get())));
    QSignalSpy counts(after.get(), SIGNAL(countChanged()));
    const int all = after->property("count").toInt();
    after->setProperty(property, value);

    QCOMPARE(before->property("count").toInt(), count);
    QCOMPARE(after->property("count").toInt(), count);
    QCOMPARE(counts.count() > 0, all != count);
}

void TestKit::filterOfAService()
{
    const auto provider = create("GestureServiceProvider", {{"appId", "reader"}});
    QTRY_VERIFY(provider->property("service").value<QObject *>());
    auto *gestures = provider->property("service").value<QObject *>()->property("gestures").value<Model *>();
    const auto filter = create("GestureFilterModel");
    filter->setProperty("sourceModel", QVariant::fromValue(gestures));
    filter->setProperty("searchText", "on the right");
    QCOMPARE(filter->property("count").toInt(), 1);
    filter->setProperty("searchText", "");
    filter->setProperty("changedOnly", true);
    QCOMPARE(filter->property("count").toInt(), 0);
}

void TestKit::pages_data()
{
    QTest::addColumn<qreal>("height");
    QTest::addColumn<QList<int>>("sizes"); // rows and headings of each page

    // 10 per row, 5 per heading; two sections, of 4 rows and of 1 row
    QTest::newRow("no room") << qreal(0) << QList<int>{2, 2, 2, 2, 2};
    QTest::newRow("less than a row with its heading") << qreal(14) << QList<int>{2, 2, 2, 2, 2};
    QTest::newRow("one row") << qreal(15) << QList<int>{2, 2, 2, 2, 2};
    QTest::newRow("nearly two") << qreal(24.9) << QList<int>{2, 2, 2, 2, 2};
    QTest::newRow("two") << qreal(25) << QList<int>{3, 3, 2};
    QTest::newRow("a second heading does not fit") << qreal(45) << QList<int>{5, 2};
    QTest::newRow("all but one unit") << qreal(59) << QList<int>{5, 2};
    QTest::newRow("all") << qreal(60) << QList<int>{7};
}

void TestKit::pages()
{
    QFETCH(qreal, height);
    QFETCH(QList<int>, sizes);

    m_tree.setConfiguration("reader", R"({"actions": [{"path": "a", "title": "A"}], "gestures": [
        {"kind": "tap", "zone": "left", "defaultAction": "a"}, {"kind": "tap", "zone": "right", "defaultAction": "a"},
        {"kind": "tap", "zone": "top", "defaultAction": "a"}, {"kind": "tap", "zone": "bottom", "defaultAction": "a"},
        {"kind": "hold", "zone": "left", "defaultAction": "a"}]})");
    const auto edited = editor();
    const auto pages =
            create("PageModel",
                   {{"headingRole", "sectionTitle"}, {"height", height}, {"rowHeight", 10}, {"headingHeight", 5}});
    pages->setProperty("source", QVariant::fromValue(modelOf(edited.get())));
    auto *model = qobject_cast<Model *>(pages.get());
    QCOMPARE(pages->property("pageCount").toInt(), sizes.size());
    QStringList shown;
    for (int page = 0; page < sizes.size(); ++page) {
        pages->setProperty("page", page);
        QCOMPARE(model->rowCount(), sizes.at(page));
        QCOMPARE(model->index(0, 0).data(role(*model, "isHeading")).toBool(), true);
        QVERIFY(!column(*model, "heading").first().isEmpty());
        for (int row = 0; row < model->rowCount(); ++row) {
            const int source = model->index(row, 0).data(role(*model, "sourceRow")).toInt();
            if (source >= 0)
                shown.append(QString::number(source));
        }
    }
    QCOMPARE(shown.join(' '), QString("0 1 2 3 4"));
}

void TestKit::pageKeepsItsRow()
{
    const auto edited = editor();
    const auto pages = create("PageModel",
                              {{"headingRole", "sectionTitle"},
                               {"keyRole", "gestureId"},
                               {"height", 40},
                               {"rowHeight", 10},
                               {"headingHeight", 5}});
    pages->setProperty("source", QVariant::fromValue(modelOf(edited.get())));
    const int row = column(*modelOf(edited.get()), "gestureId").indexOf("Thumb");
    QVERIFY(row > 0);
    pages->setProperty("currentRow", row);
    const int page = pages->property("page").toInt();
    QVERIFY(page > 0);
    QVERIFY(choose(edited.get(), tapRight, "view/menu"));
    QCOMPARE(pages->property("page").toInt(), page);

    // The first gesture is removed: the current one keeps its identity, not its number.
    QJsonObject root = QJsonDocument::fromJson(m_tree.configuration("reader").toUtf8()).object();
    QJsonArray gestures = root["gestures"].toArray();
    gestures.removeFirst();
    root["gestures"] = gestures;
    QSignalSpy changed(edited.get(), SIGNAL(configurationChangedElsewhere()));
    m_tree.setConfiguration("reader", QJsonDocument(root).toJson());
    QTRY_COMPARE_WITH_TIMEOUT(changed.count(), 1, 60000);
    QCOMPARE(pages->property("currentRow").toInt(), row - 1);
    QVERIFY(column(*qobject_cast<Model *>(pages.get()), "gestureId").contains("Thumb"));

    // More room, or less: its page is shown.
    for (const qreal height : {400.0, 15.0, 100.0}) {
        pages->setProperty("height", height);
        QVERIFY(column(*qobject_cast<Model *>(pages.get()), "gestureId").contains("Thumb"));
    }
}

void TestKit::stepsEndAtTheEnds()
{
    const auto edited = editor();
    const auto pages = create("PageModel", {{"height", 25}, {"rowHeight", 10}});
    const auto step = [&pages](int by) {
        bool stepped = false;
        QMetaObject::invokeMethod(pages.get(), "step", Q_RETURN_ARG(bool, stepped), Q_ARG(int, by));
        return stepped;
    };
    QVERIFY(!step(1));
    pages->setProperty("source", QVariant::fromValue(modelOf(edited.get())));
    QCOMPARE(pages->property("currentRow").toInt(), 0);
    QVERIFY(!step(-1));
    QVERIFY(step(1));
    QVERIFY(step(1));
    QCOMPARE(pages->property("page").toInt(), 1);
    pages->setProperty("currentRow", 1000);
    QCOMPARE(pages->property("currentRow").toInt(), 21);
    QVERIFY(!step(1));
    pages->setProperty("page", -7);
    QCOMPARE(pages->property("currentRow").toInt(), 0);
}

void TestKit::firstLetters()
{
    const auto edited = editor();
    const auto pages = create("PageModel", {{"height", 25}, {"rowHeight", 10}});
    pages->setProperty("source", QVariant::fromValue(modelOf(edited.get())));
    const QStringList titles = column(*modelOf(edited.get()), "gestureTitle");
    const auto find = [&pages](const QString &start) {
        int row = -2;
        QMetaObject::invokeMethod(pages.get(), "find", Q_RETURN_ARG(int, row), Q_ARG(QString, start),
                                  Q_ARG(QString, "gestureTitle"));
        return row;
    };
    const int hold = find("h");
    QVERIFY(titles.at(hold).startsWith("Hold"));
    pages->setProperty("currentRow", hold);
    QVERIFY(find("H") != hold);
    QVERIFY(titles.at(find("t")).startsWith("Tap"));
    QCOMPARE(find("zz"), -1);
}

static QString open(QObject *menu, int row)
{
    QString path;
    QMetaObject::invokeMethod(menu, "open", Q_RETURN_ARG(QString, path), Q_ARG(int, row));
    return path;
}

static int back(QObject *menu)
{
    int row = -2;
    QMetaObject::invokeMethod(menu, "back", Q_RETURN_ARG(int, row));
    return row;
}

void TestKit::menu()
{
    const auto edited = editor();
    const auto menu = create("ActionMenuModel");
    auto *model = qobject_cast<Model *>(menu.get());
    QCOMPARE(model->rowCount(), 0);
    menu->setProperty("gesture", QVariant::fromValue(gesture(edited.get(), tapRight)));
    // It opens where the current action is.
    QCOMPARE(menu->property("trail").toStringList(), QStringList{"Page"});
    QCOMPARE(menu->property("currentRow").toInt(), 0);
    QCOMPARE(column(*model, "entryTitle"),
             QStringList({"Next page", "Previous page", "Ten pages on", "Ten pages back"}));
    QCOMPARE(open(menu.get(), 1), QString("page/previous"));
    QCOMPARE(back(menu.get()), 0);
    QCOMPARE(menu->property("nested").toBool(), false);
    QCOMPARE(back(menu.get()), -1);
    QCOMPARE(menu->property("currentRow").toInt(), 0);
    const int view = column(*model, "entryTitle").indexOf("View");
    QVERIFY(view > 0);
    QCOMPARE(open(menu.get(), view), QString());
    QCOMPARE(menu->property("trail").toStringList(), QStringList{"View"});
    QCOMPARE(menu->property("currentRow").toInt(), -1);
    QCOMPARE(back(menu.get()), view);
    for (const int none : {-1, 1000})
        QCOMPARE(open(menu.get(), none), QString());
    menu->setProperty("gesture", QVariant::fromValue<QObject *>(nullptr));
    QCOMPARE(model->rowCount(), 0);
}

void TestKit::menuHidesWhatTheDeviceLacks()
{
    QJsonObject root = QJsonDocument::fromJson(m_tree.configuration("reader").toUtf8()).object();
    root["gestures"] = QJsonArray{
            QJsonObject{{"id", "all"},
                        {"kind", "tap"},
                        {"zone", "left"},
                        {"defaultAction", "page/next"},
                        {"availableActions", QJsonArray{"page/next", "light/warmer", "light/colder", "text/larger"}}}};
    m_tree.setConfiguration("reader", QJsonDocument(root).toJson());
    const auto edited = editor();
    const auto menu = create("ActionMenuModel");
    menu->setProperty("gesture", QVariant::fromValue(gesture(edited.get(), "all")));
    back(menu.get());
    // The expectation follows the machine: few have a light of two colours.
    const auto actions =
            gesture(edited.get(), "all")->property("availableActions").value<QList<vellix::gesture::Action *>>();
    const bool hasLight = actions.at(1)->property("supported").toBool();
    QCOMPARE(column(*qobject_cast<Model *>(menu.get()), "entryTitle"),
             hasLight ? QStringList({"Page", "Light", "Text"}) : QStringList({"Page", "Text"}));
}

// Deeper than the stack is.
void TestKit::menuOfManyLevels()
{
    const QString deep = QString("a/").repeated(20000) + "b";
    m_tree.setConfiguration("reader",
                            QString(R"({"actions": [{"path": "%1", "title": "Deep"}], "gestures": [
        {"id": "deep", "kind": "tap", "zone": "left", "defaultAction": "%1", "availableActions": ["%1"]}]})")
                                    .arg(deep));
    const auto edited = editor();
    const auto menu = create("ActionMenuModel");
    menu->setProperty("gesture", QVariant::fromValue(gesture(edited.get(), "deep")));
    QCOMPARE(qobject_cast<Model *>(menu.get())->rowCount(), 1);
    back(menu.get());
    QCOMPARE(qobject_cast<Model *>(menu.get())->rowCount(), 1);
}

void TestKit::menuOfADestroyedGesture()
{
    auto edited = editor();
    const auto menu = create("ActionMenuModel");
    menu->setProperty("gesture", QVariant::fromValue(gesture(edited.get(), tapRight)));
    edited.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const auto *model = qobject_cast<Model *>(menu.get());
    for (int row = 0; row < model->rowCount(); ++row) {
        for (const int each : model->roleNames().keys())
            model->index(row, 0).data(each);
        QCOMPARE(open(menu.get(), row), QString());
    }
    back(menu.get());
    QCOMPARE(model->rowCount(), 0);
}

void TestKit::editorInANestedEventLoop()
{
    const auto edited = editor();
    Model *model = modelOf(edited.get());
    QSignalSpy changed(edited.get(), SIGNAL(choicesChangedElsewhere()));
    bool isNested = false;
    connect(model, &Model::dataChanged, this, [&] {
        if (isNested)
            return;
        isNested = true;
        m_tree.setChoices("reader", R"({"version": 1, "actions": {"ReadingTapLeftNoDirection": "view/search"}})");
        QTRY_VERIFY_WITH_TIMEOUT(changed.count() > 0, 60000);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    });
    QVERIFY(QMetaObject::invokeMethod(edited.get(), "revert"));
    QVERIFY(isNested);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(gesture(edited.get(), "ReadingTapLeftNoDirection")
                     ->property("currentAction")
                     .value<QObject *>()
                     ->property("path")
                     .toString(),
             QString("view/search"));
    QVERIFY(column(*model, "actionTitle").contains("Search"));
}

void TestKit::editorDestroyedByAListener_data()
{
    QTest::addColumn<QByteArray>("signal");
    QTest::addColumn<QByteArray>("step");

    for (const char *signal : {SIGNAL(changed()), SIGNAL(saved()), SIGNAL(appIdChanged()),
                               SIGNAL(choicesChangedElsewhere()), SIGNAL(configurationChangedElsewhere())}) {
        for (const char *step : {"choose", "refused", "save", "appId", "foreign", "configuration"})
            QTest::addRow("%s at %s", signal + 1, step) << QByteArray(signal) << QByteArray(step);
    }
}

void TestKit::editorDestroyedByAListener()
{
    QFETCH(QByteArray, signal);
    QFETCH(QByteArray, step);

    QPointer<QObject> edited(editor().release());
    QVERIFY(step != "save" || choose(edited, tapRight, "view/menu"));
    QSignalSpy changed(edited, SIGNAL(changed()));
    const QByteArray method = signal.mid(1);
    const QMetaObject *type = edited->metaObject();
    connect(edited, type->method(type->indexOfMethod(method)), this,
            metaObject()->method(metaObject()->indexOfMethod("destroySender()")));
    if (step == "choose")
        choose(edited, tapRight, "view/menu");
    else if (step == "refused")
        choose(edited, tapRight, "no/such");
    else if (step == "save")
        QMetaObject::invokeMethod(edited, "save");
    else if (step == "appId")
        edited->setProperty("appId", "notes");
    else if (step == "foreign")
        m_tree.setChoices("reader", R"({"version": 1, "actions": {"ReadingTapLeftNoDirection": "view/search"}})");
    else
        m_tree.setConfiguration("reader", m_tree.configuration("notes"));
    QTRY_VERIFY_WITH_TIMEOUT(!edited || changed.count() > 0, 60000);
    delete edited;
}

// Two of them differ by a thousandth of the screen.
void TestKit::zonesHaveDifferentNames()
{
    QStringList gestures;
    for (const char *zone :
         {R"("left")", R"("leftVerticalLine")", R"("whole")", R"({"x": 0, "y": 0, "w": 0.5, "h": 0.5})",
          R"({"x": 0, "y": 0, "w": 0.501, "h": 0.5})", R"({"x": 0.2, "y": 0, "w": 0.5, "h": 0.5})"})
        gestures.append(QString(R"({"id": "%1", "kind": "tap", "zone": %2, "defaultAction": "a"})")
                                .arg(gestures.size())
                                .arg(QLatin1String(zone)));
    m_tree.setConfiguration("reader",
                            R"({"actions": [{"path": "a", "title": "A"}], "gestures": [)" + gestures.join(", ") + "]}");
    const auto edited = editor();
    QCOMPARE(column(*modelOf(edited.get()), "gestureTitle"),
             QStringList({"Tap, on the left", "Tap, along the left edge", "Tap anywhere",
                          "Tap, in the top left corner (x 0–50 %, y 0–50 %)",
                          "Tap, in the top left corner (x 0–50.1 %, y 0–50 %)",
                          "Tap, at the top (x 20–70 %, y 0–50 %)"}));
}

void TestKit::memoryOf500Openings()
{
    QQmlComponent component(&m_engine);
    component.setData("import Vellix.Gesture 1.0\nGestureEditor { appId: 'reader' }", QUrl());
    const auto open = [&component](int times) {
        for (int i = 0; i < times; ++i) {
            const std::unique_ptr<QObject> edited(component.create());
            QVERIFY(choose(edited.get(), tapRight, "view/menu"));
            QVERIFY(QMetaObject::invokeMethod(edited.get(), "revert"));
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    };
    open(100);
    m_engine.collectGarbage();
    const auto before = mallinfo2().uordblks;
    open(400);
    m_engine.collectGarbage();
    const auto after = mallinfo2().uordblks;
    // 400 editors of 22 gestures each: a leak of one gesture's list would be more.
    QVERIFY2(after < before + 200000, qPrintable(QString::number(after - before)));
}

QTEST_MAIN(TestKit)
#include "tst_kit.moc"
