#include "testing.h"

#include <gesture_api/action.h>

using namespace vellix::gesture;
using testing::failure;
using testing::json;
using testing::jsonMap;

using ActionGroups = QMap<QString, QList<Action *>>;

// Every list is read with actions "one", "two" and the unsupported "dark" and "%1", and with the group "group" of "one"
// and "dark".
struct Known
{
    testing::Features provider{{"on", true}, {"off", false}};
    QObject owner;
    Action *one = new Action(QStringLiteral("one"), {QStringLiteral("One")}, {}, &owner);
    Action *two = new Action(QStringLiteral("two"), {QStringLiteral("Menu"), QStringLiteral("Two")},
                             {provider.features.at(0)}, &owner);
    Action *dark = new Action(QStringLiteral("dark"), {QStringLiteral("Dark")}, {provider.features.at(1)}, &owner);
    Action *placeholder = new Action(QStringLiteral("%1"), {}, {provider.features.at(1)}, &owner);
    QList<Action *> actions{one, two, nullptr, dark, placeholder};
    ActionGroups groups{{QStringLiteral("group"), {one, dark}}, {QStringLiteral("empty"), {}}};
    QObject parent; // of inline actions
};

static QStringList pathsOf(const QList<Action *> &actions)
{
    QStringList paths;
    for (const Action *action : actions)
        paths.append(action->path());
    return paths;
}

static QStringList childPaths(const QObject &parent)
{
    return pathsOf(parent.findChildren<Action *>(QString(), Qt::FindDirectChildrenOnly));
}

static const char actionFile[] = "../../../gesture_api/src/action";
static const char featureFile[] = "../../../gesture_api/src/feature";
static const char listType[] = "action list must be one of types: 'str', 'list', 'map'";
static const char entryType[] = "'Action' must be either 'str' or 'map'";

class tst_ActionLists : public QObject
{
    Q_OBJECT

    static void addFaultColumns()
    {
        QTest::addColumn<QVariant>("fault");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<QString>("file");
    }

    static void faultRow(const char *rule, const char *fault, const char *expected, const char *file = actionFile)
    {
        QTest::newRow(rule) << json(fault) << expected << file;
    }

    // The words of a row; empty for an empty text.
    static QStringList words(const char *text)
    {
        return QString::fromUtf8(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    }

private Q_SLOTS:
    void listRefused_data()
    {
        addFaultColumns();
        faultRow("the path of an action is no group", R"("one")", "action group 'one' not defined");
        faultRow("unknown group", R"("nobody")", "action group 'nobody' not defined");
        faultRow("group: case counts", R"("Group")", "action group 'Group' not defined");
        faultRow("group: empty name", R"("")", "action group '' not defined");
        faultRow("group: a placeholder", R"("%1")", "action group '%1' not defined");

        faultRow("number", R"(5)", listType);
        faultRow("boolean", R"(false)", listType);
        faultRow("null", R"(null)", listType);
        QTest::newRow("invalid variant") << QVariant() << listType << actionFile;
        QTest::newRow("string list") << QVariant(QStringList(QStringLiteral("one"))) << listType << actionFile;
        QTest::newRow("bytes") << QVariant(QByteArray("group")) << listType << actionFile;

        faultRow("element: unknown path", R"(["one", "nobody"])", "action 'nobody' not defined");
        faultRow("element: never a group", R"(["group"])", "action 'group' not defined");
        faultRow("element: list", R"([["one"]])", entryType);
        faultRow("element: null", R"(["one", null])", entryType);
        faultRow("element: broken definition", R"([{"path": "p"}])", "one of fields 'title' or 'titles' must be set");
        faultRow("element: not known by an earlier element", R"([{"path": "p", "title": "t"}, "p"])",
                 "action 'p' not defined");
        faultRow("the first failing element is told", R"(["one", "nobody", 5])", "action 'nobody' not defined");
        faultRow("the first failing element is told, the other way round", R"(["one", 5, "nobody"])", entryType);
        faultRow("element: unknown feature", R"([{"path": "p", "title": "t", "features": ["none"]}])",
                 "unknown feature: `none`", featureFile);

        faultRow("map: broken definition", R"({"title": "t"})", "'path' is obligatory field");
        faultRow("map: never groups", R"({"group": ["one"]})", "one of fields 'title' or 'titles' must be set");
        faultRow("map: unknown feature", R"({"path": "p", "title": "t", "features": ["none"]})",
                 "unknown feature: `none`", featureFile);
    }

    void listRefused()
    {
        Known known;
        QFETCH(QVariant, fault);
        const auto list = Action::listFromVariant(fault, &known.provider, known.actions, known.groups, &known.parent);
        QTEST(failure(list), "expected");
        QTEST(testing::failureFile(list), "file");
    }

    void listRead_data()
    {
        QTest::addColumn<QString>("list");
        QTest::addColumn<QStringList>("paths");
        QTest::addColumn<QStringList>("inlinePaths");
        const QStringList none;
        QTest::newRow("group, unsupported kept") << R"("group")" << words("one dark") << none;
        QTest::newRow("empty group") << R"("empty")" << none << none;
        QTest::newRow("empty list") << R"([])" << none << none;
        QTest::newRow("one-element list") << R"(["one"])" << words("one") << none;
        QTest::newRow("element order") << R"(["two", "one"])" << words("two one") << none;
        QTest::newRow("repetition") << R"(["one", "two", "one"])" << words("one two one") << none;
        QTest::newRow("unsupported kept") << R"(["one", "dark"])" << words("one dark") << none;
        QTest::newRow("inline, unsupported kept")
                << R"(["one", {"path": "p", "title": "t", "features": ["off"]}])" << words("one p") << words("p");
        QTest::newRow("inline with a known path")
                << R"([{"path": "one", "title": "t"}])" << words("one") << words("one");
        QTest::newRow("map") << R"({"path": "p", "title": "t"})" << words("p") << words("p");
        QTest::newRow("map, unsupported kept")
                << R"({"path": "p", "title": "t", "features": ["off"]})" << words("p") << words("p");
    }

    void listRead()
    {
        Known known;
        QFETCH(QString, list);
        const auto actions = Action::listFromVariant(json(list.toUtf8()), &known.provider, known.actions, known.groups,
                                                     &known.parent);
        VERIFY_RIGHT(actions);
        QTEST(pathsOf(actions.right()), "paths");
        QTEST(childPaths(known.parent), "inlinePaths");
        // The read asked no device, and known actions kept their owner.
        QCOMPARE(known.provider.evaluated, 0);
        QCOMPARE(childPaths(known.owner), words("one two dark %1"));
    }

    void repeatedReferencesAreOneObject()
    {
        Known known;
        const auto list =
                Action::listFromVariant(json(R"(["one", "one"])"), &known.provider, known.actions, {}, &known.parent);
        VERIFY_RIGHT(list);
        QCOMPARE(list.right(), QList<Action *>({known.one, known.one}));
        const auto group = Action::listFromVariant(QStringLiteral("group"), &known.provider, known.actions,
                                                   known.groups, &known.parent);
        VERIFY_RIGHT(group);
        QCOMPARE(group.right(), QList<Action *>({known.one, known.dark}));
    }

    void aFailureKeepsWhatWasDefinedWithItsParent()
    {
        Known known;
        const auto list = Action::listFromVariant(json(R"([{"path": "p", "title": "t"}, "nobody"])"), &known.provider,
                                                  known.actions, {}, &known.parent);
        QVERIFY(list.isLeft());
        QCOMPARE(childPaths(known.parent), words("p"));
    }

    void ofOnePathTheLaterIsMeant()
    {
        Known known;
        auto *later = new Action(QStringLiteral("one"), {}, {}, &known.owner);
        known.actions.append({later, nullptr});
        const QVariant one = QStringLiteral("one");
        const auto action = Action::fromVariant(one, &known.provider, known.actions, &known.parent);
        VERIFY_RIGHT(action);
        QCOMPARE(action.right(), later);
        const auto list = Action::listFromVariant(QVariantList{one}, &known.provider, known.actions, {}, &known.parent);
        VERIFY_RIGHT(list);
        QCOMPARE(list.right(), QList<Action *>{later});
        const auto groups = Action::actionGroupsFromVariant(jsonMap(R"({"g": ["one"]})"), known.actions,
                                                            &known.provider, &known.parent);
        VERIFY_RIGHT(groups);
        QCOMPARE(groups.right(), (ActionGroups{{QStringLiteral("g"), {later}}}));
        const auto first = Action::firstSupportedFromVariant({one}, &known.provider, known.actions, &known.parent);
        VERIFY_RIGHT(first);
        QCOMPARE(first.right(), later);
    }

    void entry_data()
    {
        addFaultColumns();
        faultRow("string: the path of an action", R"("two")", "no failure", "");
        faultRow("map: a definition", R"({"path": "p", "title": "t"})", "no failure", "");
        faultRow("string: unknown path", R"("nobody")", "action 'nobody' not defined");
        faultRow("string: never a group", R"("group")", "action 'group' not defined");
        faultRow("list", R"(["one"])", entryType);
        faultRow("null", R"(null)", entryType);
        faultRow("map: broken definition", R"({"titles": ["t"]})", "'path' is obligatory field");
        faultRow("map: unknown feature", R"({"path": "p", "title": "t", "features": ["none"]})",
                 "unknown feature: `none`", featureFile);
    }

    void entry()
    {
        Known known;
        QFETCH(QVariant, fault);
        const auto action = Action::fromVariant(fault, &known.provider, known.actions, &known.parent);
        QTEST(failure(action), "expected");
        QTEST(testing::failureFile(action), "file");
        if (action.isRight() && action.right() != known.two)
            QCOMPARE(action.right()->parent(), &known.parent);
    }

    void groupsRefused_data()
    {
        addFaultColumns();
        faultRow("the name of an earlier group", R"({"a": ["one"], "b": "a"})", "action group 'a' not defined");
        faultRow("its own name", R"({"a": "a"})", "action group 'a' not defined");
        faultRow("the path of an action", R"({"a": "one"})", "action group 'one' not defined");
        faultRow("no group within a list", R"({"a": ["one"], "b": ["a"]})", "action 'a' not defined");
        faultRow("number", R"({"a": 5})", listType);
        faultRow("null", R"({"a": null})", listType);
        faultRow("element: list", R"({"a": [["one"]]})", entryType);
        faultRow("unknown feature", R"({"a": {"path": "p", "title": "t", "features": ["none"]}})",
                 "unknown feature: `none`", featureFile);
        faultRow("the first group by name is told", R"({"b": 5, "a": ["nobody"]})", "action 'nobody' not defined");
        faultRow("the first group by name is told: capitals first", R"({"a": ["nobody"], "B": 5})", listType);
        faultRow("unsupported ones fail too", R"({"a": ["dark", "nobody"]})", "action 'nobody' not defined");
    }

    void groupsRefused()
    {
        Known known;
        QFETCH(QVariant, fault);
        const auto groups =
                Action::actionGroupsFromVariant(fault.toMap(), known.actions, &known.provider, &known.parent);
        QTEST(failure(groups), "expected");
        QTEST(testing::failureFile(groups), "file");
    }

    void groupsRead_data()
    {
        QTest::addColumn<QString>("section");
        QTest::addColumn<QStringList>("groups");
        QTest::addColumn<QStringList>("inlinePaths");
        const QStringList none;
        QTest::newRow("empty section") << R"({})" << none << none;
        QTest::newRow("supported only") << R"({"a": ["dark", "one"]})" << words("a=one") << none;
        QTest::newRow("none supported") << R"({"a": ["dark"], "b": ["two"]})" << words("a= b=two") << none;
        QTest::newRow("empty group") << R"({"a": []})" << words("a=") << none;
        QTest::newRow("empty name") << R"({"": ["one"]})" << words("=one") << none;
        QTest::newRow("order and repetition")
                << R"({"a": ["two", "dark", "one", "two"]})" << words("a=two,one,two") << none;
        QTest::newRow("map") << R"({"a": {"path": "p", "title": "t"}})" << words("a=p") << words("p");
        QTest::newRow("dropped inline actions stay with their parent")
                << R"({"a": ["one", {"path": "p", "title": "t", "features": ["off"]}]})" << words("a=one")
                << words("p");
    }

    void groupsRead()
    {
        Known known;
        QFETCH(QString, section);
        const auto result = Action::actionGroupsFromVariant(jsonMap(section.toUtf8()), known.actions, &known.provider,
                                                            &known.parent);
        VERIFY_RIGHT(result);
        QStringList groups;
        for (auto group = result.right().cbegin(); group != result.right().cend(); ++group)
            groups.append(group.key() + QLatin1Char('=') + pathsOf(*group).join(QLatin1Char(',')));
        QTEST(groups, "groups");
        QTEST(childPaths(known.parent), "inlinePaths");
    }

    void groupsAskTheDeviceAtOnce()
    {
        Known known;
        VERIFY_RIGHT(Action::actionGroupsFromVariant(jsonMap(R"({"a": ["two", "dark"]})"), known.actions,
                                                     &known.provider, &known.parent));
        QCOMPARE(known.provider.evaluated, 2);
    }

    void groupsWithoutAProvider()
    {
        Known known;
        QCOMPARE(failure(Action::actionGroupsFromVariant(
                         jsonMap(R"({"a": {"path": "p", "title": "t", "features": ["on"]}})"), known.actions, nullptr,
                         &known.parent)),
                 QStringLiteral("unknown feature: `on`"));
        VERIFY_RIGHT(Action::actionGroupsFromVariant(jsonMap(R"({"a": {"path": "p", "title": "t", "features": []}})"),
                                                     known.actions, nullptr, &known.parent));
    }

    void aReadGroupGivesItsSupportedActions()
    {
        Known known;
        const auto groups = Action::actionGroupsFromVariant(jsonMap(R"({"a": ["one", "dark"]})"), known.actions,
                                                            &known.provider, &known.parent);
        VERIFY_RIGHT(groups);
        const auto list = Action::listFromVariant(QStringLiteral("a"), &known.provider, known.actions, groups.right(),
                                                  &known.parent);
        VERIFY_RIGHT(list);
        QCOMPARE(list.right(), QList<Action *>{known.one});
    }

    void aFailureKeepsTheInlineActionsOfEarlierGroups()
    {
        Known known;
        const auto groups = Action::actionGroupsFromVariant(jsonMap(R"({"a": {"path": "p", "title": "t"}, "b": 5})"),
                                                            known.actions, &known.provider, &known.parent);
        QVERIFY(groups.isLeft());
        QCOMPARE(childPaths(known.parent), words("p"));
    }

    void noneSupported_data()
    {
        addFaultColumns();
        const auto row = [](const char *rule, const char *fault, const char *alternatives) {
            const QString expected = QStringLiteral("no one action is supported of list: [ ")
                    + QString::fromUtf8(alternatives) + QStringLiteral(" ]");
            QTest::newRow(rule) << json(fault) << expected << actionFile;
        };
        row("empty list: two blanks between the brackets", R"([])", "");
        row("one", R"(["dark"])", "dark");
        row("several", R"(["dark", "%1", "dark"])", "dark, %1, dark");
        row("a map leaves an empty slot", R"(["dark", {"path": "p", "title": "t", "features": ["off"]}, "dark"])",
            "dark, , dark");
        row("a map only", R"([{"path": "p", "title": "t", "features": ["off"]}])", "");

        faultRow("unknown, before a supported one", R"(["nobody", "one"])", "action 'nobody' not defined");
        faultRow("unknown, behind an unsupported one", R"(["dark", "nobody", "one"])", "action 'nobody' not defined");
        faultRow("unknown, at the end", R"(["dark", "nobody"])", "action 'nobody' not defined");
        faultRow("never a group", R"(["group", "one"])", "action 'group' not defined");
        faultRow("number", R"([5, "one"])", entryType);
        faultRow("null", R"(["dark", null])", entryType);
        faultRow("nested list", R"([["one"]])", entryType);
        faultRow("broken definition", R"([{"path": "p"}, "one"])", "one of fields 'title' or 'titles' must be set");
        faultRow("unknown feature", R"([{"path": "p", "title": "t", "features": ["none"]}, "one"])",
                 "unknown feature: `none`", featureFile);
        faultRow("the first failure is told", R"([5, "nobody"])", entryType);
    }

    void noneSupported()
    {
        Known known;
        QFETCH(QVariant, fault);
        const auto action =
                Action::firstSupportedFromVariant(fault.toList(), &known.provider, known.actions, &known.parent);
        QTEST(failure(action), "expected");
        QTEST(testing::failureFile(action), "file");
    }

    void firstSupported_data()
    {
        QTest::addColumn<QString>("list");
        QTest::addColumn<QString>("path");
        QTest::addColumn<QStringList>("inlinePaths");
        const QStringList none;
        QTest::newRow("the first") << R"(["two", "one"])"
                                   << "two" << none;
        QTest::newRow("behind unsupported ones") << R"(["dark", "%1", "one"])"
                                                 << "one" << none;
        QTest::newRow("later ones are not looked at") << R"(["one", "nobody", 5])"
                                                      << "one" << none;
        QTest::newRow("later ones are not made") << R"(["one", {"path": "p", "title": "t"}])"
                                                 << "one" << none;
        QTest::newRow("inline") << R"([{"path": "p", "title": "t"}, "one"])"
                                << "p" << words("p");
        QTest::newRow("skipped inline alternatives stay with their parent")
                << R"([{"path": "p", "title": "t", "features": ["off"]}, {"path": "q", "title": "t"}])"
                << "q" << words("p q");
    }

    void firstSupported()
    {
        Known known;
        QFETCH(QString, list);
        const auto action = Action::firstSupportedFromVariant(json(list.toUtf8()).toList(), &known.provider,
                                                              known.actions, &known.parent);
        VERIFY_RIGHT(action);
        QTEST(action.right()->path(), "path");
        QTEST(childPaths(known.parent), "inlinePaths");
    }

    void aReferenceIsTheVeryAction()
    {
        Known known;
        const auto action = Action::firstSupportedFromVariant(json(R"(["dark", "one"])").toList(), &known.provider,
                                                              known.actions, &known.parent);
        VERIFY_RIGHT(action);
        QCOMPARE(action.right(), known.one);
        QCOMPARE(known.one->parent(), &known.owner);
    }

    void skippedAlternativesStayAfterAFailure()
    {
        Known known;
        const auto action = Action::firstSupportedFromVariant(
                json(R"([{"path": "p", "title": "t", "features": ["off"]}])").toList(), &known.provider, known.actions,
                &known.parent);
        QVERIFY(action.isLeft());
        QCOMPARE(childPaths(known.parent), words("p"));
    }

    void listToVariant()
    {
        Known known;
        QCOMPARE(Action::listToVariant({}), QVariant(QVariantList()));
        QCOMPARE(Action::listToVariant({nullptr}), QVariant(QVariantList()));
        const QVariant written = Action::listToVariant({known.two, nullptr, known.one, known.two});
        QCOMPARE(written.userType(), int(QMetaType::QVariantList));
        const QVariant one = QVariantMap{{QStringLiteral("path"), QStringLiteral("one")},
                                         {QStringLiteral("titles"), QStringList(QStringLiteral("One"))}};
        const QVariant two =
                QVariantMap{{QStringLiteral("path"), QStringLiteral("two")},
                            {QStringLiteral("titles"), QStringList({QStringLiteral("Menu"), QStringLiteral("Two")})}};
        QCOMPARE(written.toList(), QVariantList({two, one, two}));
    }
};

QTEST_GUILESS_MAIN(tst_ActionLists)
#include "tst_actionlists.moc"
