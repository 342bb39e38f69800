#include "testing.h"

#include <gesture_api/configuration.h>
#include <gesture_api/gestureservice.h>

#include <vellix/platform/vxcomponents.h>

using namespace vellix;
using namespace vellix::gesture;
using testing::failure;
using testing::failureFile;
using testing::json;

using Bindings = QMap<QString, QString>;
using Result = Either<Error, QList<Gesture *>>;

namespace {
struct Load
{
    testing::Features features{{"lamp", true}};
    QObject parent;
    QMap<QString, QRectF> zones = GestureService::predefinedZones;
    Bindings bindings;

    Result variant(const QVariant &document)
    {
        return Configuration::fromVariant(document, &features, zones, bindings, &parent);
    }
    Result file(const QString &name) { return Configuration::loadJson(name, &features, zones, bindings, &parent); }
};
}

static QString location(const Error &error)
{
    const CodeLocation &place = error.records.front().location;
    return QString::fromStdString(CodeLocation::toString(place.file, place.line));
}

/// "ID CURRENT X,Y,W,H" of every gesture, or the message of the failure.
static QString outcome(const Result &result)
{
    if (result.isLeft())
        return failure(result);
    QStringList shown;
    for (const Gesture *gesture : result.right()) {
        const QRectF zone = gesture->zone();
        shown.append(QStringLiteral("%1 %2 %3,%4,%5,%6")
                             .arg(gesture->id(), gesture->currentAction()->path())
                             .arg(zone.x())
                             .arg(zone.y())
                             .arg(zone.width())
                             .arg(zone.height()));
    }
    return shown.join(QStringLiteral("; "));
}

/// A document whose gestures have these ids, separated by blanks.
static QByteArray withIds(const QString &ids)
{
    QByteArray entries;
    for (const QString &id : ids.split(QLatin1Char(' '))) {
        const QByteArray entry = R"(, {"id": "@", "kind": "tap", "zone": "left", "defaultAction": "x"})";
        entries += QByteArray(entry).replace('@', id.toUtf8());
    }
    return R"({"actions": [{"path": "x", "title": "X"}], "gestures": [)" + entries.mid(1) + "]}";
}

class tst_Configuration : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fault_data()
    {
        QTest::addColumn<QString>("document");
        QTest::addColumn<int>("line");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *name, int line, const char *document, const char *expected) {
            QTest::newRow(name) << document << line << expected;
        };
        const char *const noGestures = "'gestures' is obligatory field";
        row("null", 22, R"(null)", "null variant");
        row("empty", 76, R"({})", noGestures);
        row("array root", 76, R"([{"gestures": []}])", noGestures);
        row("text root", 76, R"("gestures")", noGestures);
        row("number root", 76, R"(5)", noGestures);
        row("keys are case-sensitive", 76, R"({"Gestures": []})", noGestures);

        row("zones an array", 37, R"({"zones": [], "gestures": []})", "'zones' field must be 'map'");
        row("zones null", 37, R"({"zones": null, "gestures": []})", "'zones' field must be 'map'");
        row("zones before actions", 37, R"({"zones": "z", "actions": {}, "gestures": []})",
            "'zones' field must be 'map'");
        row("zones before missing gestures", 37, R"({"zones": 5})", "'zones' field must be 'map'");
        row("actions an object", 46, R"({"actions": {}, "gestures": []})", "'actions' field must be 'list'");
        row("actions null", 46, R"({"actions": null, "gestures": []})", "'actions' field must be 'list'");
        row("actions a text", 46, R"({"actions": "a", "gestures": []})", "'actions' field must be 'list'");
        row("actions before actionGroups", 46, R"({"actions": 5, "actionGroups": []})",
            "'actions' field must be 'list'");
        row("actionGroups an array", 55, R"({"actionGroups": [], "gestures": []})",
            "'actionGroups' field must be 'map'");
        row("actionGroups null", 55, R"({"actionGroups": null, "gestures": []})", "'actionGroups' field must be 'map'");
        row("actionGroups before missing gestures", 55, R"({"actionGroups": 5})", "'actionGroups' field must be 'map'");
        row("actionGroups before the gestures' type", 55, R"({"actionGroups": 5, "gestures": {}})",
            "'actionGroups' field must be 'map'");
        row("gestures an object", 73, R"({"gestures": {}})", "'gestures' field must be 'list'");
        row("gestures null", 73, R"({"gestures": null})", "'gestures' field must be 'list'");
        row("gestures a text", 73, R"({"gestures": "g"})", "'gestures' field must be 'list'");
    }

    void fault()
    {
        QFETCH(QString, document);
        QFETCH(int, line);
        Load load;
        const Result result = load.variant(json(document.toUtf8()));
        QTEST(failure(result), "expected");
        QCOMPARE(location(result.left()), QStringLiteral("../../../gesture_api/src/configuration:%1").arg(line));
    }

    void noDocument()
    {
        Load load;
        const Result invalid = load.variant(QVariant());
        QCOMPARE(failure(invalid), QStringLiteral("invalid variant"));
        QCOMPARE(location(invalid.left()), QStringLiteral("../../../gesture_api/src/configuration:19"));
        for (const QVariant &null : {QVariant(QString()), QVariant(QVariant::Map)}) {
            const Result result = load.variant(null);
            QCOMPARE(failure(result), QStringLiteral("null variant"));
            QCOMPARE(location(result.left()), QStringLiteral("../../../gesture_api/src/configuration:22"));
        }
    }

    void stringListsAreNoLists_data()
    {
        QTest::addColumn<QString>("key");
        QTest::newRow("actions") << "actions";
        QTest::newRow("gestures") << "gestures";
    }

    void stringListsAreNoLists()
    {
        QFETCH(QString, key);
        Load load;
        QVariantMap document = testing::jsonMap(R"({"gestures": []})");
        document.insert(key, QStringList());
        QCOMPARE(failure(load.variant(document)), QStringLiteral("'%1' field must be 'list'").arg(key));
    }

    void faultOfAReader_data()
    {
        QTest::addColumn<QString>("document");
        QTest::addColumn<QString>("family");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *name, const char *document, const char *family, const char *expected) {
            QTest::newRow(name) << document << family << expected;
        };
        row("zone", R"({"zones": {"a": 5}, "gestures": []})", "gesture", "zone must be either 'str' or 'map'");
        row("a zone's content before the actions' type", R"({"zones": {"a": {}}, "actions": {}})", "gesture",
            "field 'x' must be set");
        row("a file zone is no alias of another", R"({"zones": {"a": "whole", "b": "a"}, "gestures": []})", "gesture",
            "zone 'a' not defined");
        row("an action can not name one", R"({"actions": ["x"], "gestures": []})", "action", "action 'x' not defined");
        row("an action can not name an earlier one",
            R"({"actions": [{"path": "x", "title": "X"}, "x"], "gestures": []})", "action", "action 'x' not defined");
        row("action", R"({"actions": [{"path": "x"}], "gestures": []})", "action",
            "one of fields 'title' or 'titles' must be set");
        row("an action's feature",
            R"({"actions": [{"path": "x", "title": "X", "features": ["wings"]}], "gestures": []})", "feature",
            "unknown feature: `wings`");
        row("an action's content before the groups' type", R"({"actions": [5], "actionGroups": []})", "action",
            "'Action' must be either 'str' or 'map'");
        row("a group without actions to name", R"({"actionGroups": {"g": ["x"]}, "gestures": []})", "action",
            "action 'x' not defined");
        row("groups do not nest", R"({"actionGroups": {"a": [], "b": "a"}, "gestures": []})", "action",
            "action group 'a' not defined");
        row("groups are read without features",
            R"({"actionGroups": {"g": {"path": "x", "title": "X", "features": ["lamp"]}}, "gestures": []})", "feature",
            "unknown feature: `lamp`");
        row("a group's content before missing gestures", R"({"actionGroups": {"g": 5}})", "action",
            "action list must be one of types: 'str', 'list', 'map'");
        row("gesture no map", R"({"gestures": ["a"]})", "gesture", "list of gestures must must contain maps");
        row("gesture", R"({"gestures": [{}]})", "gesture", "'kind' is obligatory field");
        row("a gesture's fault before duplicates",
            R"({"actions": [{"path": "x", "title": "X"}],
                "gestures": [{"id": "a", "kind": "tap", "zone": "left", "defaultAction": "x"},
                             {"id": "a", "kind": "tap", "zone": "left", "defaultAction": "x"}, {"kind": "tap"}]})",
            "gesture", "either 'zone' or 'direction' fields must be set");
    }

    void faultOfAReader()
    {
        QFETCH(QString, document);
        QFETCH(QString, family);
        Load load;
        const Result result = load.variant(json(document.toUtf8()));
        QTEST(failure(result), "expected");
        QCOMPARE(failureFile(result), QStringLiteral("../../../gesture_api/src/") + family);
    }

    void document_data()
    {
        QTest::addColumn<QString>("document");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *name, const char *document, const char *expected) {
            QTest::newRow(name) << document << expected;
        };
        row("no gestures", R"({"gestures": []})", "");
        row("other keys are ignored", R"({"gestures": [], "Zones": 5, "version": null})", "");
        row("empty sections", R"({"zones": {}, "actions": [], "actionGroups": {}, "gestures": []})", "");
        row("groups without actions", R"({"actionGroups": {"g": [], "h": {"path": "p", "title": "P"}}, "gestures": [
                {"id": "i", "kind": "tap", "zone": "whole", "availableActions": "h",
                   "currentAction": {"path": "q", "title": "Q"}}]})",
            "i q 0,0,1,1");
        row("groups name actions",
            R"({"actions": [{"path": "x", "title": "X"}], "actionGroups": {"g": ["x"]}, "gestures": [
                {"id": "i", "kind": "tap", "zone": "whole", "availableActions": "g", "defaultAction": "x"}]})",
            "i x 0,0,1,1");
        row("predefined zone without own ones", R"({"actions": [{"path": "x", "title": "X"}],
                "gestures": [{"id": "i", "kind": "tap", "zone": "left", "defaultAction": "x"}]})",
            "i x 0,0.2,0.25,0.6");
        row("predefined zone beside own ones", R"({"zones": {"mine": {"x": 0, "y": 0, "w": 1, "h": 0.1}},
                "actions": [{"path": "x", "title": "X"}],
                "gestures": [{"id": "i", "kind": "tap", "zone": "left", "defaultAction": "x"},
                             {"id": "j", "kind": "tap", "zone": "mine", "defaultAction": "x"}]})",
            "i x 0,0.2,0.25,0.6; j x 0,0,1,0.1");
        row("predefined zones can not be redefined", R"({"zones": {"left": {"x": 0, "y": 0, "w": 1, "h": 0.1}},
                "actions": [{"path": "x", "title": "X"}],
                "gestures": [{"id": "i", "kind": "tap", "zone": "left", "defaultAction": "x"}]})",
            "i x 0,0.2,0.25,0.6");
        row("own zone by a predefined name", R"({"zones": {"mine": "left"}, "actions": [{"path": "x", "title": "X"}],
                "gestures": [{"id": "i", "kind": "tap", "zone": "mine", "defaultAction": "x"}]})",
            "i x 0,0.2,0.25,0.6");
        row("features", R"({"actions": [{"path": "x", "title": "X", "features": ["lamp"]}],
                "gestures": [{"id": "i", "kind": "tap", "zone": "whole",
                   "defaultAction": ["x"], "features": ["lamp"]}]})",
            "i x 0,0,1,1");
        row("formed ids", R"({"actions": [{"path": "x", "title": "X"}],
                "gestures": [{"kind": "tap", "zone": "left", "defaultAction": "x"},
                             {"modes": ["pdf"], "kind": "tap", "zone": "left", "defaultAction": "x"}]})",
            "TapLeftNoDirection x 0,0.2,0.25,0.6; PdfTapLeftNoDirection x 0,0.2,0.25,0.6");
        row("equal formed ids", R"({"actions": [{"path": "x", "title": "X"}],
                "gestures": [{"kind": "tap", "zone": "left", "defaultAction": "x"},
                             {"kind": "TAP", "zone": "left", "direction": "no", "currentAction": "x"}]})",
            "gesture id must be unique but dublicate found: `TapLeftNoDirection`");
    }

    void document()
    {
        QFETCH(QString, document);
        Load load;
        const Result result = load.variant(json(document.toUtf8()));
        QTEST(outcome(result), "expected");
        if (result.isRight()) {
            for (const Gesture *gesture : result.right())
                QCOMPARE(gesture->parent(), &load.parent);
        }
    }

    void neighboursWithOneId_data()
    {
        QTest::addColumn<QString>("ids");
        QTest::addColumn<QString>("named");
        QTest::newRow("one") << "a"
                             << "";
        QTest::newRow("all different") << "a b c"
                                       << "";
        QTest::newRow("separated") << "a b a"
                                   << "";
        QTest::newRow("case counts") << "a A"
                                     << "";
        QTest::newRow("two") << "a a"
                             << "a";
        QTest::newRow("three") << "a a a"
                               << "a";
        QTest::newRow("pair at the end") << "a b b"
                                         << "b";
        QTest::newRow("pair at the start: another is named") << "a a b"
                                                             << "b";
        QTest::newRow("pair in the middle") << "a b b c"
                                            << "c";
        QTest::newRow("the last slot keeps its gesture") << "a a b c"
                                                         << "c";
        QTest::newRow("two pairs") << "a a b b"
                                   << "b";
        QTest::newRow("two pairs and one more") << "a a b b c"
                                                << "b";
        QTest::newRow("first slot behind the kept part") << "a a b c c d"
                                                         << "c";
        QTest::newRow("separated by a pair") << "a b b a"
                                             << "a";
        QTest::newRow("placeholder") << "%1 %1"
                                     << "%1";
        QTest::newRow("empty ids") << " "
                                   << "(empty)";
    }

    void neighboursWithOneId()
    {
        QFETCH(QString, ids);
        QFETCH(QString, named);
        Load load;
        const Result result = load.variant(json(withIds(ids)));
        QCOMPARE(result.isRight(), named.isEmpty());
        if (result.isRight()) {
            QStringList read;
            for (const Gesture *gesture : result.right())
                read.append(gesture->id());
            QCOMPARE(read.join(QLatin1Char(' ')), ids);
            return;
        }
        if (named == QStringLiteral("(empty)"))
            named.clear();
        QCOMPARE(failure(result),
                 QStringLiteral("gesture id must be unique but dublicate found: `") + named + QLatin1Char('`'));
        QCOMPARE(location(result.left()), QStringLiteral("../../../gesture_api/src/configuration:69"));
        // The gestures were made, and stay with their parent.
        QCOMPARE(load.parent.findChildren<Gesture *>().size(), ids.count(QLatin1Char(' ')) + 1);
    }

    // The gestures made before have no owner: they are freed.
    void failureWithoutAParent()
    {
        Load load;
        const Result result = Configuration::fromVariant(json(withIds(QStringLiteral("a a"))), &load.features,
                                                         load.zones, load.bindings, nullptr);
        QCOMPARE(failure(result), QStringLiteral("gesture id must be unique but dublicate found: `a`"));
    }

    void bindings_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("expected");
        QTest::newRow("in place of the default") << R"("defaultAction": "x")"
                                                 << "y"
                                                 << "i y 0,0,1,1";
        QTest::newRow("not in place of the current one") << R"("currentAction": "x")"
                                                         << "y"
                                                         << "i x 0,0,1,1";
        QTest::newRow("an unknown action") << R"("defaultAction": "x")"
                                           << "z"
                                           << "action 'z' not defined";
    }

    void bindings()
    {
        QFETCH(QString, entry);
        QFETCH(QString, path);
        Load load;
        load.bindings = {{QStringLiteral("i"), path}, {QStringLiteral("j"), QStringLiteral("nowhere")}};
        const QByteArray text = R"({"actions": [{"path": "x", "title": "X"}, {"path": "y", "title": "Y"}], "gestures": [
                {"id": "i", "kind": "tap", "zone": "whole", )"
                + entry.toUtf8() + "}]}";
        QTEST(outcome(load.variant(json(text))), "expected");
    }

    void untakenActionsAreFreed_data()
    {
        QTest::addColumn<QString>("section");
        QTest::addColumn<QString>("gesture");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<bool>("taken");
        const auto row = [](const char *name, const char *section, const char *gesture, const char *expected,
                            bool taken) { QTest::newRow(name) << section << gesture << expected << taken; };
        const char *const current = R"({"id": "i", "kind": "tap", "zone": "whole",
            "currentAction": {"path": "q", "title": "Q"}})";
        const char *const group =
                R"({"id": "i", "kind": "tap", "zone": "whole", "availableActions": "g",
                    "currentAction": {"path": "q", "title": "Q"}})";
        const char *const named = R"({"id": "i", "kind": "tap", "zone": "whole", "defaultAction": "watched"})";
        row("action, nobody names it", "actions", current, "i q 0,0,1,1", false);
        row("action, a gesture names it", "actions", named, "i watched 0,0,1,1", true);
        row("action, the load fails", "actions", R"({})", "'kind' is obligatory field", false);
        row("group, nobody names it", "actionGroups", current, "i q 0,0,1,1", false);
        row("group, a gesture names it", "actionGroups", group, "i q 0,0,1,1", true);
        row("group, the load fails", "actionGroups", R"({})", "'kind' is obligatory field", false);
    }

    void untakenActionsAreFreed()
    {
        QFETCH(QString, section);
        QFETCH(QString, gesture);
        QFETCH(bool, taken);
        // An action shares the text of its path: the text has no other user once the action is destroyed.
        const QString path = QString::fromLatin1("watched");
        {
            Load load;
            {
                const QVariant action = QVariantMap{{QStringLiteral("path"), path}, {QStringLiteral("title"), path}};
                QVariantMap document{{QStringLiteral("gestures"), QVariantList{json(gesture.toUtf8())}}};
                if (section == QStringLiteral("actions"))
                    document.insert(section, QVariantList{action});
                else
                    document.insert(section, QVariantMap{{QStringLiteral("g"), action}});
                QTEST(outcome(load.variant(document)), "expected");
            }
            QCOMPARE(path.isDetached(), !taken);
        }
        QVERIFY(path.isDetached());
    }

    void unreadableFile_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("reason");
        const QByteArray good = R"({"gestures": [], "title": "ä"})";
        const QString text = QString::fromUtf8(good);
        const QByteArray utf16(reinterpret_cast<const char *>(text.utf16()), 2 * text.size());
        const QByteArray nested = QByteArray(10000, '[') + QByteArray(10000, ']');
        QTest::newRow("empty") << QByteArray() << "illegal value";
        QTest::newRow("blanks only") << QByteArray(" \n ") << "illegal value";
        QTest::newRow("truncated") << good.left(15) << "unterminated object";
        QTest::newRow("truncated in a list") << good.left(14) << "unterminated array";
        QTest::newRow("two documents") << good + '\n' + good << "garbage at the end of the document";
        QTest::newRow("UTF-16") << utf16 << "unterminated object";
        QTest::newRow("UTF-16 with its mark") << "\xff\xfe" + utf16 << "illegal value";
        QTest::newRow("Latin-1") << text.toLatin1() << "invalid UTF8 string";
        QTest::newRow("nested 10000 deep") << R"({"gestures": )" + nested + '}' << "too deeply nested document";
    }

    void unreadableFile()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, reason);
        const testing::DataTree tree;
        const QString path = tree.defaultFile(QStringLiteral("app"));
        testing::writeFile(path, bytes);
        Load load;
        const Result result = load.file(path);
        QVERIFY2(failure(result).startsWith(path + QLatin1Char(':')), qPrintable(failure(result)));
        QVERIFY2(failure(result).endsWith(QStringLiteral(": ") + reason), qPrintable(failure(result)));
        // The loader's error is passed on unchanged, with its place.
        const auto loaded = components::VariantLoader::loadJson(path);
        QCOMPARE(failure(result), failure(loaded));
        QCOMPARE(location(result.left()), location(loaded.left()));
    }

    void fileThatCanNotBeOpened_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("expected"); // %1 is the root of both data directories
        QTest::newRow("missing") << "%1/a.json"
                                 << "%1/a.json: No such file or directory";
        QTest::newRow("missing, system's directory") << "${SYSTEMDATA}/a.json"
                                                     << "%1/system/vellix/a.json: No such file or directory";
        QTest::newRow("a directory") << "%1"
                                     << "%1: Is a directory";
    }

    void fileThatCanNotBeOpened()
    {
        QFETCH(QString, name);
        QFETCH(QString, expected);
        const testing::DataTree tree;
        Load load;
        const Result result = load.file(name.replace(QStringLiteral("%1"), tree.root()));
        QCOMPARE(failure(result), expected.replace(QStringLiteral("%1"), tree.root()));
    }

    void readFile_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("expected");
        const QByteArray good = R"({"gestures": [{"id": "ä", "kind": "tap", "zone": "mine",
                                   "currentAction": {"path": "p", "title": "P"}}],
                                    "zones": {"mine": {"x": 0, "y": 0, "w": 1, "h": 0.5}}})";
        QTest::newRow("plain") << good << "ä p 0,0,1,0.5";
        QTest::newRow("UTF-8 byte order mark") << "\xef\xbb\xbf" + good << "ä p 0,0,1,0.5";
        QTest::newRow("array root") << '[' + good + ']' << "'gestures' is obligatory field";
        QTest::newRow("duplicates") << withIds(QStringLiteral("a a"))
                                    << "gesture id must be unique but dublicate found: `a`";
    }

    void readFile()
    {
        QFETCH(QByteArray, bytes);
        const testing::DataTree tree;
        testing::writeFile(tree.defaultFile(QStringLiteral("app")), bytes);
        Load load;
        const Result result = load.file(QStringLiteral("${SYSTEMDATA}/config/gestures/apps/default/app/cfg.json"));
        QTEST(outcome(result), "expected");
        if (result.isLeft()) {
            QCOMPARE(failureFile(result), QStringLiteral("../../../gesture_api/src/configuration"));
            return;
        }
        for (const Gesture *gesture : result.right())
            QCOMPARE(gesture->parent(), &load.parent);
    }

    void bindingsReachTheGesturesOfAFile()
    {
        const testing::DataTree tree;
        const QString path = tree.user(QStringLiteral("a.json"));
        testing::writeFile(path, R"({"actions": [{"path": "x", "title": "X"}, {"path": "y", "title": "Y"}],
                "gestures": [{"id": "i", "kind": "tap", "zone": "whole", "defaultAction": "x"}]})");
        Load load;
        load.bindings = {{QStringLiteral("i"), QStringLiteral("y")}};
        QCOMPARE(outcome(load.file(path)), QStringLiteral("i y 0,0,1,1"));
    }

    void aFileOfTenMegabytes()
    {
        const int count = 80000;
        QByteArray bytes = R"({"actions": [{"path": "x", "title": "X"}, {"path": "y", "title": "Y"}], "gestures": [)";
        for (int i = 0; i < count; ++i) {
            bytes += QByteArray(i ? ",\n" : "\n") + R"({"modes": ["reading", "pdf"], "kind": "swipe", "zone": "left", )"
                    + R"("direction": "toLeft", "availableActions": ["x", "y"], "defaultAction": "x", "id": )"
                    + QByteArray::number(i) + '}';
        }
        bytes += "]}";
        QVERIFY(bytes.size() > 10 * 1000 * 1000);

        const testing::DataTree tree;
        testing::writeFile(tree.user(QStringLiteral("a.json")), bytes);
        Load load;
        const Result result = load.file(QStringLiteral("${USERDATA}/a.json"));
        VERIFY_RIGHT(result);
        QCOMPARE(result.right().size(), count);
        QCOMPARE(result.right().last()->id(), QStringLiteral("79999"));
        QCOMPARE(result.right().last()->availableActions(), result.right().first()->availableActions());
    }
};

QTEST_GUILESS_MAIN(tst_Configuration)
#include "tst_configuration.moc"
