#include "testing.h"

#include <gesture_api/action.h>

using namespace vellix::gesture;
using testing::debugText;
using testing::failure;
using testing::json;

static QStringList featureNames(const Action *action)
{
    QStringList names;
    for (const Feature *feature : action->featureList())
        names.append(feature->name());
    names.sort();
    return names;
}

static const QStringList a{QStringLiteral("a")};
static const QStringList ab{QStringLiteral("a"), QStringLiteral("b")};

static const char neither[] = "one of fields 'title' or 'titles' must be set";
static const char both[] = "fields 'title' or 'titles' can not be set simultaneously";
static const char titleType[] = "'title' must be string. for type list<str> use 'titles'";
static const char titlesType[] = "'titles' must be list<str>. for type 'str' use 'title'";
static const char featuresType[] = "'features' must be list<str>.";
static const char noPath[] = "'path' is obligatory field";
static const char entryType[] = "'Action' must be either 'str' or 'map'";

class tst_Action : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void refused_data()
    {
        QTest::addColumn<QVariant>("entry");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *rule, const char *entry, const char *expected) {
            QTest::newRow(rule) << json(entry) << expected;
        };
        const auto variantRow = [](const char *rule, const QVariant &entry, const char *expected) {
            QTest::newRow(rule) << entry << expected;
        };
        const auto field = [](const char *name, const QVariant &value, QVariantMap entry = {}) -> QVariant {
            entry.insert(QString::fromLatin1(name), value);
            return entry;
        };

        row("entry: number", R"(5)", entryType);
        row("entry: boolean", R"(true)", entryType);
        row("entry: null", R"(null)", entryType);
        row("entry: list", R"(["known"])", entryType);
        variantRow("entry: invalid variant", QVariant(), entryType);
        variantRow("entry: string list", QStringList(QStringLiteral("known")), entryType);
        variantRow("entry: bytes", QByteArray("known"), entryType);
        variantRow("entry: hash", QVariantHash{{QStringLiteral("title"), QStringLiteral("t")}}, entryType);

        row("reference: unknown", R"("nobody")", "action 'nobody' not defined");
        row("reference: case counts", R"("Known")", "action 'Known' not defined");
        row("reference: the whole path counts", R"("known/")", "action 'known/' not defined");
        row("reference: empty", R"("")", "action '' not defined");
        row("reference: a placeholder", R"("%1")", "action '%1' not defined");
        row("reference: beyond ASCII", R"("Öffnen")", "action 'Öffnen' not defined");
        row("reference: known as null", R"("null")", "action 'null' not defined");

        row("neither title nor titles", R"({"path": "p"})", neither);
        row("neither, before the type of features", R"({"path": "p", "features": "on"})", neither);
        row("neither, before an unknown feature", R"({"path": "p", "features": ["none"]})", neither);
        row("neither, before path", R"({})", neither);
        row("neither: case counts", R"({"path": "p", "Title": "t", "TITLES": ["t"]})", neither);

        row("both", R"({"path": "p", "title": "t", "titles": ["t"]})", both);
        row("both: null is there", R"({"path": "p", "title": null, "titles": null})", both);
        row("both, before the type of title", R"({"path": "p", "title": 5, "titles": ["t"]})", both);
        row("both, before the type of titles", R"({"path": "p", "title": "t", "titles": 5})", both);
        row("both, before the type of features", R"({"path": "p", "title": "t", "titles": [], "features": 5})", both);
        row("both, before path", R"({"title": "t", "titles": ["t"]})", both);

        row("title: list", R"({"path": "p", "title": ["t"]})", titleType);
        row("title: number", R"({"path": "p", "title": 5})", titleType);
        row("title: boolean", R"({"path": "p", "title": true})", titleType);
        row("title: null", R"({"path": "p", "title": null})", titleType);
        row("title: map", R"({"path": "p", "title": {}})", titleType);
        variantRow("title: string list", field("title", a, testing::jsonMap(R"({"path": "p"})")), titleType);
        row("title, before the type of features", R"({"path": "p", "title": 5, "features": "on"})", titleType);
        row("title, before an unknown feature", R"({"path": "p", "title": 5, "features": ["none"]})", titleType);
        row("title, before path", R"({"title": 5})", titleType);

        row("titles: string", R"({"path": "p", "titles": "t"})", titlesType);
        row("titles: number", R"({"path": "p", "titles": 5})", titlesType);
        row("titles: boolean", R"({"path": "p", "titles": false})", titlesType);
        row("titles: null", R"({"path": "p", "titles": null})", titlesType);
        row("titles: map", R"({"path": "p", "titles": {}})", titlesType);
        variantRow("titles: string list", field("titles", a, testing::jsonMap(R"({"path": "p"})")), titlesType);
        row("titles, before the type of features", R"({"path": "p", "titles": "t", "features": "on"})", titlesType);
        row("titles, before an unknown feature", R"({"path": "p", "titles": "t", "features": ["none"]})", titlesType);
        row("titles, before path", R"({"titles": "t"})", titlesType);

        row("features: string", R"({"path": "p", "title": "t", "features": "on"})", featuresType);
        row("features: number", R"({"path": "p", "title": "t", "features": 5})", featuresType);
        row("features: null", R"({"path": "p", "title": "t", "features": null})", featuresType);
        row("features: map", R"({"path": "p", "title": "t", "features": {"on": true}})", featuresType);
        row("features: beside titles", R"({"path": "p", "titles": ["t"], "features": "on"})", featuresType);
        variantRow("features: string list",
                   field("features", QStringList(QStringLiteral("on")),
                         testing::jsonMap(R"({"path": "p", "title": "t"})")),
                   featuresType);
        row("features, before path", R"({"title": "t", "features": "on"})", featuresType);

        row("no path", R"({"title": "t"})", noPath);
        row("no path, with titles", R"({"titles": ["t"]})", noPath);
        row("no path, with features", R"({"title": "t", "features": ["on"]})", noPath);
        row("no path: case counts", R"({"title": "t", "Path": "p"})", noPath);
    }

    void refused()
    {
        const testing::Features provider{{"on", true}, {"off", false}};
        QObject parent;
        const Action known(QStringLiteral("known"), a, {});
        const QMap<QString, Action *> actions{{known.path(), const_cast<Action *>(&known)},
                                              {QStringLiteral("null"), nullptr}};
        QFETCH(QVariant, entry);
        const auto result = Action::fromVariant(entry, &provider, actions, &parent);
        QTEST(failure(result), "expected");
        QCOMPARE(testing::failureFile(result), QStringLiteral("../../../gesture_api/src/action"));
        QCOMPARE(parent.children(), QObjectList());
    }

    void unknownFeature_data()
    {
        QTest::addColumn<QVariant>("entry");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *rule, const char *entry, const char *expected) {
            QTest::newRow(rule) << json(entry) << expected;
        };
        row("alone", R"({"path": "p", "title": "t", "features": ["none"]})", "unknown feature: `none`");
        row("beside known ones", R"({"path": "p", "titles": ["t"], "features": ["on", "On"]})",
            "unknown feature: `On`");
        row("before path", R"({"title": "t", "features": ["none"]})", "unknown feature: `none`");
        row("a number becomes its text", R"({"path": "p", "title": "t", "features": [5]})", "unknown feature: `5`");
        row("an object becomes empty", R"({"path": "p", "title": "t", "features": [{}]})", "unknown feature: ``");
    }

    void unknownFeature()
    {
        const testing::Features provider{{"on", true}, {"off", false}};
        QObject parent;
        QFETCH(QVariant, entry);
        const auto result = Action::fromVariant(entry, &provider, QMap<QString, Action *>(), &parent);
        QTEST(failure(result), "expected");
        // The place of the failure, not the one that returned it.
        QCOMPARE(testing::failureFile(result), QStringLiteral("../../../gesture_api/src/feature"));
        QCOMPARE(parent.children(), QObjectList());
    }

    void defined_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("path");
        QTest::addColumn<QStringList>("titles");
        QTest::addColumn<QStringList>("features");
        QTest::addColumn<bool>("supported");
        const QStringList none;
        const auto texts = [](const char *joined) { return QString::fromUtf8(joined).split(QLatin1Char('|')); };

        QTest::newRow("title") << R"({"path": "p", "title": "a"})"
                               << "p" << a << none << true;
        QTest::newRow("empty title") << R"({"path": "p", "title": ""})"
                                     << "p" << texts("") << none << true;
        QTest::newRow("titles") << R"({"path": "p", "titles": ["a", "b"]})"
                                << "p" << ab << none << true;
        QTest::newRow("titles: empty") << R"({"path": "p", "titles": []})"
                                       << "p" << none << none << true;
        QTest::newRow("titles: numbers become texts") << R"({"path": "p", "titles": ["a", 5, -1.5]})"
                                                      << "p" << texts("a|5|-1.5") << none << true;
        QTest::newRow("titles: booleans become texts") << R"({"path": "p", "titles": [true, false]})"
                                                       << "p" << texts("true|false") << none << true;
        QTest::newRow("titles: objects, lists and nulls become empty")
                << R"({"path": "p", "titles": [{"a": "b"}, ["a"], null, "c"]})"
                << "p" << texts("|||c") << none << true;
        QTest::newRow("titles: order and repetition stay") << R"({"path": "p", "titles": ["b", "a", "b"]})"
                                                           << "p" << texts("b|a|b") << none << true;

        QTest::newRow("path: a number becomes its text") << R"({"path": 7, "title": "a"})"
                                                         << "7" << a << none << true;
        QTest::newRow("path: a boolean becomes its text") << R"({"path": true, "title": "a"})"
                                                          << "true" << a << none << true;
        QTest::newRow("path: null becomes empty") << R"({"path": null, "title": "a"})"
                                                  << "" << a << none << true;
        QTest::newRow("path: an object becomes empty") << R"({"path": {}, "title": "a"})"
                                                       << "" << a << none << true;
        QTest::newRow("path: a list becomes empty") << R"({"path": ["p"], "title": "a"})"
                                                    << "" << a << none << true;

        QTest::newRow("features: empty") << R"({"path": "p", "title": "a", "features": []})"
                                         << "p" << a << none << true;
        QTest::newRow("features: supported") << R"({"path": "p", "title": "a", "features": ["on"]})"
                                             << "p" << a << texts("on") << true;
        QTest::newRow("features: one unsupported") << R"({"path": "p", "title": "a", "features": ["on", "off"]})"
                                                   << "p" << a << texts("off|on") << false;
        QTest::newRow("features: once each") << R"({"path": "p", "title": "a", "features": ["on", "on"]})"
                                             << "p" << a << texts("on") << true;
        QTest::newRow("other keys are ignored")
                << R"({"path": "p", "title": "a", "supported": false, "id": 1, "Features": ["none"]})"
                << "p" << a << none << true;
        QTest::newRow("a known path is defined anew") << R"({"path": "known", "title": "a"})"
                                                      << "known" << a << none << true;
    }

    void defined()
    {
        const testing::Features provider{{"on", true}, {"off", false}};
        QObject parent;
        Action known(QStringLiteral("known"), ab, {});
        QFETCH(QString, entry);
        const auto result =
                Action::fromVariant(json(entry.toUtf8()), &provider, {{QStringLiteral("known"), &known}}, &parent);
        VERIFY_RIGHT(result);
        const Action *action = result.right();
        QVERIFY(action != &known);
        QCOMPARE(parent.children(), QObjectList{const_cast<Action *>(action)});
        QTEST(action->path(), "path");
        QTEST(action->titles(), "titles");
        QTEST(featureNames(action), "features");
        QCOMPARE(provider.evaluated, 0); // not before the first query
        QTEST(action->supported(), "supported");
    }

    void aReferenceIsTheVeryAction()
    {
        const testing::Features provider{{"on", true}, {"off", false}};
        QObject owner;
        QObject parent;
        auto *known = new Action(QStringLiteral("known"), a, {}, &owner);
        const QMap<QString, Action *> actions{{QStringLiteral("key"), known}};
        const auto result = Action::fromVariant(QStringLiteral("key"), &provider, actions, &parent);
        VERIFY_RIGHT(result);
        QCOMPARE(result.right(), known);
        QCOMPARE(known->parent(), &owner);
        QCOMPARE(parent.children(), QObjectList());
        QCOMPARE(failure(Action::fromVariant(QStringLiteral("known"), &provider, actions, &parent)),
                 QStringLiteral("action 'known' not defined"));
    }

    void theProviderIsAskedForGivenFeaturesOnly_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<int>("asked");
        QTest::newRow("features absent") << R"({"path": "p", "title": "t"})" << 0;
        QTest::newRow("features given") << R"({"path": "p", "title": "t", "features": ["on", "on"]})" << 1;
        QTest::newRow("reference") << R"("known")" << 0;
        QTest::newRow("title refused") << R"({"path": "p", "title": 5, "features": ["on"]})" << 0;
    }

    void theProviderIsAskedForGivenFeaturesOnly()
    {
        const testing::Features provider{{"on", true}, {"off", false}};
        QObject parent;
        Action known;
        QFETCH(QString, entry);
        (void)Action::fromVariant(json(entry.toUtf8()), &provider, {{QStringLiteral("known"), &known}}, &parent);
        QTEST(provider.asked, "asked");
    }

    void withoutAProviderNoFeatureIsKnown_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("expected");
        QTest::newRow("a name") << R"({"path": "p", "title": "t", "features": ["on"]})"
                                << "unknown feature: `on`";
        QTest::newRow("a name, before path") << R"({"title": "t", "features": ["on"]})"
                                             << "unknown feature: `on`";
        QTest::newRow("no list") << R"({"path": "p", "title": "t", "features": "on"})" << featuresType;
        QTest::newRow("an empty list") << R"({"path": "p", "title": "t", "features": []})"
                                       << "no failure";
        QTest::newRow("absent") << R"({"path": "p", "title": "t"})"
                                << "no failure";
    }

    void withoutAProviderNoFeatureIsKnown()
    {
        QObject parent;
        QFETCH(QString, entry);
        const auto result = Action::fromVariant(json(entry.toUtf8()), nullptr, QMap<QString, Action *>(), &parent);
        QTEST(failure(result), "expected");
        if (result.isRight()) {
            QCOMPARE(result.right()->featureList(), QList<Feature *>());
            QVERIFY(result.right()->supported());
        }
    }

    void withoutArgumentsItIsEmpty()
    {
        const Action action;
        QCOMPARE(action.path(), QString());
        QCOMPARE(action.titles(), QStringList());
        QCOMPARE(action.featureList(), QList<Feature *>());
        QVERIFY(action.lastTitle().isNull());
        QVERIFY(action.supported());
        QVERIFY(!action.parent());
        QObject parent;
        QCOMPARE((new Action(&parent))->parent(), &parent);
    }

    void supportedIsWorkedOutOnce()
    {
        QList<int> asked;
        bool answer = true;
        const Feature first(QStringLiteral("first"), [&] {
            asked.append(1);
            return true;
        });
        const Feature second(QStringLiteral("second"), [&] {
            asked.append(2);
            return answer;
        });
        const Action action(QString(), {}, {const_cast<Feature *>(&first), const_cast<Feature *>(&second)});
        QCOMPARE(asked, QList<int>());
        QVERIFY(action.supported());
        answer = false;
        QVERIFY(action.supported());
        QCOMPARE(asked, QList<int>({1, 2}));
    }

    void lastTitle_data()
    {
        QTest::addColumn<QStringList>("titles");
        QTest::addColumn<QString>("lastTitle");
        QTest::newRow("none") << QStringList() << QString();
        QTest::newRow("one") << a << "a";
        QTest::newRow("the last of two") << ab << "b";
    }

    void lastTitle()
    {
        QFETCH(QStringList, titles);
        const Action action(QStringLiteral("p"), titles, {});
        QTEST(action.lastTitle(), "lastTitle");
        QCOMPARE(action.lastTitle().isNull(), titles.isEmpty());
    }

    void titlesChangedBringsLastTitle()
    {
        Action empty;
        Action titled(QStringLiteral("p"), ab, {});
        for (Action *action : {&empty, &titled}) {
            QSignalSpy lastTitleChanged(action, &Action::lastTitleChanged);
            Q_EMIT action->titlesChanged({QStringLiteral("other")});
            // The last title, whatever the signal carried.
            QCOMPARE(lastTitleChanged, QList<QVariantList>{{action->lastTitle()}});
        }
    }

    // However and how often it is listened to.
    void everyListenerHearsOfTheLastTitleOnce()
    {
        Action action(QStringLiteral("p"), ab, {});
        int heard = 0;
        connect(&action, &Action::lastTitleChanged, [&heard] { ++heard; });
        connect(&action, &Action::lastTitleChanged, [&heard] { ++heard; });
        Action other;
        connect(&action, SIGNAL(lastTitleChanged(QString)), &other, SIGNAL(lastTitleChanged(QString)));
        connect(&other, &Action::lastTitleChanged, [&heard] { ++heard; });
        Q_EMIT action.titlesChanged(ab);
        QCOMPARE(heard, 3);
    }

    void featuresCanBeReadOnly()
    {
        Feature on(QStringLiteral("on"), {});
        Feature off(QStringLiteral("off"), {});
        const Action action(QString(), {}, {&on, &off});
        QQmlListProperty<Feature> features = action.features();
        QCOMPARE(features.object, &action);
        QCOMPARE(features.count(&features), 2);
        QCOMPARE(features.at(&features, 0), &on);
        QCOMPARE(features.at(&features, 1), &off);
        QVERIFY(!features.append && !features.clear && !features.replace && !features.removeLast);
    }

    void propertiesAreReadOnly_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("path") << QVariant(QStringLiteral("p"));
        QTest::newRow("titles") << QVariant(ab);
        QTest::newRow("lastTitle") << QVariant(QStringLiteral("b"));
        QTest::newRow("supported") << QVariant(true);
    }

    void propertiesAreReadOnly()
    {
        Action action(QStringLiteral("p"), ab, {});
        QTEST(action.property(QTest::currentDataTag()), "value");
        QVERIFY(!action.setProperty(QTest::currentDataTag(), QVariant()));
        QTEST(action.property(QTest::currentDataTag()), "value");
    }

    void travelsInAVariant()
    {
        Action action;
        const QVariant variant = QVariant::fromValue(&action);
        QCOMPARE(variant.typeName(), "vellix::gesture::Action*");
        QCOMPARE(variant.value<QObject *>(), &action);
    }

    void toVariant_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QStringList>("titles");
        QTest::newRow("from title: one titles element") << R"({"path": "p", "title": "a"})" << a;
        QTest::newRow("from titles") << R"({"path": "p", "titles": ["a", "b"]})" << ab;
        QTest::newRow("without titles") << R"({"path": "p", "titles": []})" << QStringList();
        QTest::newRow("features are not written") << R"({"path": "p", "title": "a", "features": ["on"]})" << a;
    }

    void toVariant()
    {
        const testing::Features provider{{"on", true}, {"off", false}};
        QObject parent;
        QFETCH(QString, entry);
        QFETCH(QStringList, titles);
        const auto action = Action::fromVariant(json(entry.toUtf8()), &provider, QMap<QString, Action *>(), &parent);
        VERIFY_RIGHT(action);
        const QVariant variant = action.right()->toVariant();
        QCOMPARE(variant.userType(), int(QMetaType::QVariantMap));
        QCOMPARE(variant.toMap(),
                 QVariantMap({{QStringLiteral("path"), QStringLiteral("p")}, {QStringLiteral("titles"), titles}}));
        QCOMPARE(variant.toMap().value(QStringLiteral("titles")).userType(), int(QMetaType::QStringList));
    }

    void dump_data()
    {
        QTest::addColumn<QStringList>("titles");
        QTest::addColumn<int>("indent");
        QTest::addColumn<QString>("text");
        QTest::newRow("no indent") << a << 0 << " action:  \"p/q\" : (\"a\") \n ";
        QTest::newRow("two blanks per level") << ab << 2 << "     action:  \"p/q\" : (\"a\", \"b\") \n ";
        QTest::newRow("without titles") << QStringList() << 1 << "   action:  \"p/q\" : () \n ";
        QTest::newRow("quotes are escaped")
                << QStringList(QStringLiteral("\"")) << 0 << " action:  \"p/q\" : (\"\\\"\") \n ";
    }

    void dump()
    {
        QFETCH(QStringList, titles);
        QFETCH(int, indent);
        const Action action(QStringLiteral("p/q"), titles, {});
        QTEST(debugText([&](QDebug &out) { action.dump(out, indent); }), "text");
    }
};

QTEST_GUILESS_MAIN(tst_Action)
#include "tst_action.moc"
