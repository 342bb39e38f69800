#include "testing.h"

#include <analysis/check.h>
#include <analysis/hint.h>
#include <analysis/report.h>

#include <gesture_api/configuration.h>
#include <gesture_api/gestureservice.h>

#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>

#include <memory>

using namespace analysis;
using namespace vellix::gesture;
using testing::DataTree;

// "LINE:COLUMN RULE: TEXT" of each finding.
static QString shown(const Findings &findings)
{
    QStringList lines;
    for (const Finding &finding : findings.list()) {
        const Position position = finding.file->positionOf(finding.span.begin);
        lines.append(QStringLiteral("%1:%2 %3: %4%5")
                             .arg(QString::number(position.line), QString::number(position.column),
                                  QLatin1String(finding.rule->id), finding.text,
                                  finding.devices.isEmpty() ? QString() : " (" + finding.devices + ")"));
    }
    return lines.join('\n');
}

static bool isOf(const Finding &finding, const char *rule)
{
    return qstrcmp(finding.rule->id, rule) == 0;
}

static bool loads(const QString &file)
{
    QObject owner;
    const DefaultFeaturesProvider features;
    return Configuration::loadJson(file, &features, GestureService::predefinedZones, {}, &owner).isRight();
}

// A valid configuration. A row may replace its one gesture, which has lines of its own.
static QByteArray withGestures(const QByteArray &gestures)
{
    return "{\"actions\": [{\"path\": \"a\", \"title\": \"A\"}, {\"path\": \"b\", \"title\": \"B\"},\n"
           "{\"path\": \"light\", \"title\": \"L\", \"features\": [\"frontlight\"]}],\n"
           "\"actionGroups\": {\"all\": [\"a\", \"b\", \"light\"]}, \"gestures\": [\n"
           "{\"id\": \"base\", \"modes\": [\"base\"], \"kind\": \"drag\", \"zone\": \"whole\", \"availableActions\": "
           "\"all\","
           " \"defaultAction\": \"a\"}"
            + (gestures.isEmpty() ? QByteArray() : ",\n" + gestures) + "]}";
}

class tst_Check : public QObject
{
    Q_OBJECT

    // A row of a rule: an example that triggers it, and a similar one that does not.
    static void row(const char *name, const QByteArray &text, const QByteArray &expected)
    {
        QTest::newRow(name) << text << QString::fromUtf8(expected);
    }

private Q_SLOTS:
    void init() { m_tree.reset(new DataTree); }
    void cleanup() { m_tree.reset(); }

    void refused_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("expected");

        row("nothing to say", withGestures(""), "");
        row("empty", "", "1:1 syntax: illegal value");
        row("binary", QByteArray("\x00\x01\x02\xff", 4), "1:1 syntax: illegal value");
        row("a comma is missing", "{\"gestures\": []\n  \"actions\": []}", "2:3 syntax: unterminated object");
        row("a comma too many", "{\"gestures\": [],\n}", "2:1 syntax: object is missing after a comma");
        row("behind the end", "{\"gestures\": []}\n\n}", "3:1 syntax: garbage at the end of the document");
        row("too deep", QByteArray(10000, '['), "1:1025 syntax: too deeply nested document");
        row("no document", "5", "1:1 syntax: illegal value");
        row("no document behind blank lines", "\n\n 5", "3:2 syntax: illegal value");
        row("behind exactly one kilobyte", QByteArray("{\"gestures\": []").leftJustified(1024, ' '),
            "1:1025 syntax: unterminated object");
        row("behind kilobytes of wide characters",
            "{\"gestures\": [], \"x\": \"" + QByteArray("\u7a93").repeated(700) + "\"}}",
            "1:726 syntax: garbage at the end of the document");
        row("as many levels as the library reads", QByteArray(1024, '[') + QByteArray(1024, ']'),
            "1:1 refused: 'gestures' is obligatory field");
        row("ends of lines with two characters", "{\"zones\": {},\r\n\"gestures\":\r\n[5]}",
            "3:2 refused: list of gestures must must contain maps");
        row("elements behind what is not strict", "{\"gestures\": [\n5,\n1.]}",
            "1:14 refused: list of gestures must must contain maps\n"
            "2:1 refused: list of gestures must must contain maps\n"
            "3:3 not-strict: Miss fraction part in number.");

        row("a list", "[]", "1:1 refused: 'gestures' is obligatory field");
        row("no gestures", "{}", "1:1 refused: 'gestures' is obligatory field");
        row("all sections of a wrong type", "{\"zones\": 1,\n\"actions\": 2,\n\"actionGroups\": 3,\n\"gestures\": 4}",
            "1:11 refused: 'zones' field must be 'map'\n"
            "2:12 refused: 'actions' field must be 'list'\n"
            "3:17 refused: 'actionGroups' field must be 'map'\n"
            "4:13 refused: 'gestures' field must be 'list'");
        row("a wrong section and no gestures", "{\"zones\": null}",
            "1:1 refused: 'gestures' is obligatory field\n"
            "1:11 refused: 'zones' field must be 'map'");
        row("a zone of a wrong type",
            "{\"zones\": {\"z\": 5}, \"gestures\": [\n"
            "{\"kind\": \"drag\", \"zone\": \"z\", \"currentAction\": {\"path\": \"p\"}}]}",
            "1:17 refused: zone must be either 'str' or 'map'\n"
            "2:31 fixed-action: gesture 'DragZNoDirection' always performs this action: a user's choice has no effect\n"
            "2:48 refused: one of fields 'title' or 'titles' must be set\n"
            "2:48 unsaveable-action: after 'p' is saved, the next load fails: action 'p' not "
            "defined");
        row("a zone that aliases another of the file",
            "{\"zones\": {\"y\": \"z\",\n\"z\": \"whole\"}, \"gestures\": []}",
            "1:12 unused-zone: zone 'y' is not used by any gesture\n"
            "1:17 refused: zone 'z' not defined\n"
            "2:1 unused-zone: zone 'z' is not used by any gesture");
        row("every missing side",
            "{\"zones\": {\"z\": {\"y\": 0, \"w\": 1}}, \"gestures\": [\n"
            "{\"kind\": \"drag\", \"zone\": \"z\"}]}",
            "1:17 refused: field 'x' must be set\n"
            "1:17 refused: field 'h' must be set\n"
            "2:1 refused: either 'defaultAction' or 'currentAction' fields must be set");
        row("a name in place of an action", "{\"actions\": [\"a\"], \"gestures\": []}",
            "1:14 refused: action 'a' not defined");
        row("a name in place of an action defines nothing",
            "{\"actions\": [\"a\"], \"gestures\": [\n"
            "{\"kind\": \"drag\", \"direction\": \"no\", \"defaultAction\": \"a\"}]}",
            "1:14 refused: action 'a' not defined\n"
            "2:54 refused: action 'a' not defined");
        row("an action of a wrong type", "{\"actions\": [null], \"gestures\": []}",
            "1:14 refused: 'Action' must be either 'str' or 'map'");
        row("all that an action lacks", "{\"actions\": [{}], \"gestures\": []}",
            "1:14 refused: one of fields 'title' or 'titles' must be set\n"
            "1:14 refused: 'path' is obligatory field");
        row("two kinds of titles",
            "{\"actions\": [{\"path\": \"a\", \"title\": \"A\", \"titles\": [\"A\"]}], \"gestures\": [\n"
            "{\"kind\": \"drag\", \"direction\": \"no\", \"defaultAction\": \"a\"}]}",
            "1:42 refused: fields 'title' or 'titles' can not be set simultaneously");
        row("every value of an action",
            "{\"actions\": [{\"title\": 1,\n\"titles\": 2,\n\"features\": 3}], \"gestures\": []}",
            "1:14 refused: 'path' is obligatory field\n"
            "1:24 refused: 'title' must be string. for type list<str> use 'titles'\n"
            "2:1 refused: fields 'title' or 'titles' can not be set simultaneously\n"
            "2:11 refused: 'titles' must be list<str>. for type 'str' use 'title'\n"
            "3:13 refused: 'features' must be list<str>.");
        row("features that nobody knows",
            "{\"actions\": [{\"path\": \"a\", \"title\": \"A\", \"features\": [\"tts\", \"x\", \"y\"]}], \"gestures\": "
            "[\n"
            "{\"kind\": \"drag\", \"direction\": \"no\", \"defaultAction\": \"a\"}]}",
            "1:62 refused: unknown feature: `x`\n"
            "1:67 refused: unknown feature: `y`");
        row("a refused action is named without more words",
            "{\"actions\": [{\"path\": \"a\"}], \"actionGroups\": {\"g\": [\"a\"]}, \"gestures\": [\n"
            "{\"kind\": \"drag\", \"direction\": \"no\", \"availableActions\": \"g\", \"defaultAction\": \"a\"}]}",
            "1:14 refused: one of fields 'title' or 'titles' must be set");
        row("a group that names a group",
            "{\"actionGroups\": {\"g\": \"h\"}, \"gestures\": [\n"
            "{\"kind\": \"drag\", \"direction\": \"no\", \"availableActions\": \"g\","
            " \"currentAction\": \"c\"}]}",
            "1:24 refused: action group 'h' not defined\n"
            "2:62 fixed-action: gesture 'DragNotSetNoDirection' always performs this action: a user's choice has no "
            "effect\n"
            "2:79 refused: action 'c' not defined");
        row("all elements of a group", "{\"actionGroups\": {\"g\": [\"x\", 5, \"y\"]}, \"gestures\": []}",
            "1:19 unused-group: group 'g' is not used by any gesture\n"
            "1:25 refused: action 'x' not defined\n"
            "1:30 refused: 'Action' must be either 'str' or 'map'\n"
            "1:33 refused: action 'y' not defined");
        row("an inline action with features in a group",
            "{\"actions\": [{\"path\": \"a\", \"title\": \"A\"}], \"gestures\": [{\"kind\": \"drag\", \"direction\": "
            "\"no\","
            " \"availableActions\": \"g\", \"defaultAction\": \"a\"}],\n"
            "\"actionGroups\": {\"g\": [\"a\", {\"path\": \"a\", \"title\": \"A\", \"features\": [\"tts\"]}]}}",
            "2:69 group-features: unknown feature: `tts`");
        row("an inline action with no features in a group",
            "{\"actions\": [{\"path\": \"a\", \"title\": \"A\"}], \"gestures\": [{\"kind\": \"drag\", \"direction\": "
            "\"no\","
            " \"availableActions\": \"g\", \"defaultAction\": \"a\"}],\n"
            "\"actionGroups\": {\"g\": [\"a\", {\"path\": \"a\", \"title\": \"A\", \"features\": []}]}}",
            "");

        row("a gesture that is none", withGestures("5"), "5:1 refused: list of gestures must must contain maps");
        row("all that a gesture lacks", withGestures("{}"),
            "5:1 refused: 'kind' is obligatory field\n"
            "5:1 refused: either 'zone' or 'direction' fields must be set\n"
            "5:1 refused: either 'defaultAction' or 'currentAction' fields must be set");
        row("every value of a gesture",
            withGestures("{\"kind\": \"poke\",\n\"zone\": \"nowhere\",\n\"direction\": \"up\",\n\"modes\": \"m\",\n"
                         "\"availableActions\": 5,\n\"defaultAction\": {},\n\"currentAction\": "
                         "\"none\",\n\"features\": \"tts\"}"),
            "5:10 refused: kind can be only 'tap' or 'swipe' or 'drag'\n"
            "6:9 refused: zone 'nowhere' not defined\n"
            "7:14 refused: direction can be only 'toLeft' or 'toRight' or 'toTop' or 'toBottom' or 'no'\n"
            "8:10 refused: 'modes' must have type `list<str>`\n"
            "9:21 refused: action list must be one of types: 'str', 'list', 'map'\n"
            "10:18 refused: 'defaultAction' must have type `str` or `list<str>`\n"
            "11:18 refused: action 'none' not defined\n"
            "12:13 refused: 'features' must be list<str>.");
        row("every element of a gesture's lists",
            withGestures("{\"kind\": \"hold\", \"zone\": {\"x\": 0},\n"
                         "\"availableActions\": [\"a\", \"x\", {\"title\": \"T\"}],\n"
                         "\"defaultAction\": [\"y\", \"a\", 5],\n\"features\": [\"warp\"]}"),
            "5:26 refused: field 'y' must be set\n"
            "5:26 refused: field 'w' must be set\n"
            "5:26 refused: field 'h' must be set\n"
            "6:27 refused: action 'x' not defined\n"
            "6:32 refused: 'path' is obligatory field\n"
            "7:19 refused: action 'y' not defined\n"
            "7:29 refused: 'Action' must be either 'str' or 'map'\n"
            "7:29 unreachable-fallback: this alternative is never reached: every device supports an earlier one\n"
            "8:14 refused: unknown feature: `warp`");
        row("every value of a current action",
            withGestures("{\"id\": \"x\", \"kind\": \"hold\", \"zone\": \"whole\", \"currentAction\":\n"
                         "{\"path\": \"a\", \"title\": 1,\n\"features\": [\"warp\"]}}"),
            "5:46 fixed-action: gesture 'x' always performs this action: a user's choice has no effect\n"
            "6:24 refused: 'title' must be string. for type list<str> use 'titles'\n"
            "7:14 refused: unknown feature: `warp`");
        row("the same fault twice",
            withGestures("{\"kind\": \"hold\", \"zone\": \"whole\", \"availableActions\": [\"x\"],\n\"defaultAction\": "
                         "\"x\"}"),
            "5:56 refused: action 'x' not defined\n"
            "6:18 refused: action 'x' not defined");
        row("an empty fallback list", withGestures("{\"kind\": \"hold\", \"zone\": \"whole\", \"defaultAction\": []}"),
            "5:52 no-supported-action: no one action is supported of list: [  ]");
        row("an entry that is refused, in all other respects",
            withGestures(
                    "{\"id\": \"base\", \"kind\": \"hold\", \"direction\": \"toTop\", \"availableActions\": [\"b\"],\n"
                    "\"defaultAction\": \"a\", \"features\": 5},\n"
                    "{\"id\": \"x\", \"kind\": \"hold\", \"direction\": \"toTop\", \"defaultAction\": \"a\"}"),
            "5:8 duplicate-neighbours: gesture id must be unique but dublicate found: `base`\n"
            "5:45 directed-tap: a hold has no direction: gesture 'base' never fires\n"
            "6:18 not-available: gesture 'base' does not offer its own action 'a'\n"
            "6:35 refused: 'features' must be list<str>.\n"
            "7:42 shadowed: gesture 'x' never fires: the earlier 'base' (line 5) takes 100 % of its zone\n"
            "7:42 directed-tap: a hold has no direction: gesture 'x' never fires");
        row("what is refused takes nothing from others",
            "{\"zones\": {\"z\": {\"x\": 0}}, \"actions\": [{\"path\": \"t\"}, {\"path\": \"a\", \"title\": \"A\"}],\n"
            "\"gestures\": [{\"kind\": \"tap\", \"zone\": \"z\", \"defaultAction\": \"a\"},\n"
            "{\"kind\": \"tap\", \"zone\": \"nowhere\", \"defaultAction\": \"a\"},\n"
            "{\"kind\": \"tap\", \"zone\": \"right\", \"defaultAction\": [\"t\", \"a\"]}]}",
            "1:17 refused: field 'y' must be set\n"
            "1:17 refused: field 'w' must be set\n"
            "1:17 refused: field 'h' must be set\n"
            "1:40 refused: one of fields 'title' or 'titles' must be set\n"
            "3:25 refused: zone 'nowhere' not defined");
        const QByteArray left = R"({"kind": "tap", "zone": "left", "defaultAction": "a"})";
        row("a gesture of no kind takes nothing from others",
            withGestures(R"({"kind": "poke", "zone": "whole", "defaultAction": "a"},)" + left),
            "5:10 refused: kind can be only 'tap' or 'swipe' or 'drag'");
        row("a gesture of no direction takes nothing from others",
            withGestures(R"({"kind": "tap", "direction": "up", "defaultAction": "a"},)" + left),
            "5:30 refused: direction can be only 'toLeft' or 'toRight' or 'toTop' or 'toBottom' or 'no'");
        row("a gesture of no modes takes nothing from others",
            withGestures(R"({"modes": 5, "kind": "tap", "zone": "whole", "defaultAction": "a"},)" + left),
            "5:11 refused: 'modes' must have type `list<str>`");
        row("all of an inline action with features in a group",
            "{\"actionGroups\": {\"g\": [\n{\"title\": \"T\", \"features\": [\"tts\"]},\n"
            "{\"path\": \"p\", \"title\": \"T\", \"features\": [\"warp\"]}]}, \"gestures\": []}",
            "1:19 unused-group: group 'g' is not used by any gesture\n"
            "2:1 refused: 'path' is obligatory field\n"
            "2:28 group-features: unknown feature: `tts`\n"
            "3:42 refused: unknown feature: `warp`");
        row("neighbours but for one without an id of its own",
            withGestures("{\"kind\": \"tap\", \"zone\": \"nowhere\", \"defaultAction\": \"a\"},\n"
                         "{\"id\": \"base\", \"kind\": \"tap\", \"zone\": \"left\", \"defaultAction\": \"a\"}"),
            "5:25 refused: zone 'nowhere' not defined\n"
            "6:8 duplicate-id: the id 'base' was used before, in line 4");
        const QByteArray nowhere = R"({"kind": "tap", "zone": "nowhere", "defaultAction": "a"})";
        row("neighbours without ids that are known", withGestures(nowhere + ",\n" + nowhere),
            "5:25 refused: zone 'nowhere' not defined\n"
            "6:25 refused: zone 'nowhere' not defined");
        // The id that would be formed from the replacement of the refused zone.
        const QByteArray formed = R"({"id": "TapWholeNoDirection", "kind": "hold", "zone": "left",)"
                                  R"( "defaultAction": "a"})";
        row("a neighbour below one without a known id", withGestures(nowhere + ",\n" + formed),
            "5:25 refused: zone 'nowhere' not defined");
        row("a neighbour above one without a known id", withGestures(formed + ",\n" + nowhere),
            "6:25 refused: zone 'nowhere' not defined");
        row("neighbours but for what is no gesture",
            withGestures("5,\n{\"id\": \"base\", \"kind\": \"tap\", \"zone\": \"left\", \"defaultAction\": \"a\"}"),
            "5:1 refused: list of gestures must must contain maps\n"
            "6:8 duplicate-id: the id 'base' was used before, in line 4");
        row("behind a byte order mark", "\xef\xbb\xbf{\"gestures\":\n[5]}",
            "2:2 refused: list of gestures must must contain maps");
        row("the last of two members counts", "{\"gestures\": [],\n\"gestures\": [5]}",
            "2:1 duplicate-key: 'gestures' was set before: the earlier value is ignored\n"
            "2:14 refused: list of gestures must must contain maps");
        row("neighbours of one id",
            withGestures("{\"id\": \"base\", \"kind\": \"hold\", \"zone\": \"whole\", \"defaultAction\": \"a\"}"),
            "5:8 duplicate-neighbours: gesture id must be unique but dublicate found: `base`");
        row("neighbours of one formed id",
            withGestures("{\"kind\": \"hold\", \"zone\": \"left\", \"defaultAction\": \"a\"},\n"
                         "{\"kind\": \"HOLD\", \"zone\": \"left\", \"defaultAction\": \"a\"}"),
            "6:1 duplicate-neighbours: gesture id must be unique but dublicate found: `HoldLeftNoDirection`\n"
            "6:26 shadowed: gesture 'HoldLeftNoDirection' never fires: the earlier 'HoldLeftNoDirection' (line 5) "
            "takes "
            "100 % of its zone");
    }

    void refused()
    {
        QFETCH(QByteArray, text);
        const QString file = m_tree->root() + "/cfg.json";
        testing::writeFile(file, text);
        Check check;
        check.configuration(file);
        const Findings findings = check.findings();
        QTEST(shown(findings), "expected");
        QCOMPARE(findings.count(Severity::Error) == 0, loads(file));
    }

    void warned_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("expected");
        const auto gesture = [](const char *name, const QByteArray &gestures, const QByteArray &expected) {
            row(name, withGestures(gestures), expected);
        };

        row("not strict", "{\"gestures\": [\n],\n\"x\": 1.}",
            "1:1 unknown-key: unknown key 'x'\n3:8 not-strict: Miss fraction part in number.");
        row("places behind what is not strict",
            "{\"actions\": [{\"path\": \"a\", \"title\": \"A\tA\"}],\n\"gestures\": [{\"kind\": \"tap\", "
            "\"direction\": \"toTop\","
            " \"defaultAction\": \"a\"}]}",
            "1:1 directed-tap: a tap has no direction: gesture 'TapNotSetToTop' never fires\n"
            "1:39 not-strict: A string contains a raw control character.");
        row("a key twice", "{\"gestures\": 5,\n\"gestures\": []}",
            "2:1 duplicate-key: 'gestures' was set before: the earlier value is ignored");
        row("a name twice in other objects", "{\"zones\": {}, \"gestures\": [], \"actionGroups\": {}}", "");
        gesture("a key twice in a gesture, and in one of its values",
                "{\"kind\": \"hold\", \"zone\": \"left\", \"defaultAction\": \"a\",\n\"kind\": \"tap\"},\n"
                "{\"kind\": \"tap\", \"defaultAction\": \"a\", \"zone\":\n"
                "{\"x\": 0.5, \"y\": 0, \"w\": 0.5, \"h\": 1,\n\"x\": 0.6, \"w\": 0.1}}",
                "6:1 duplicate-key: 'kind' was set before: the earlier value is ignored\n"
                "9:1 duplicate-key: 'x' was set before: the earlier value is ignored\n"
                "9:11 duplicate-key: 'w' was set before: the earlier value is ignored");

        row("unknown keys of the root", "{\"$schema\": \"x\", \"gestures\": [],\n\"gesture\": 1}",
            "2:1 unknown-key: unknown key 'gesture'");
        row("unknown keys of a zone",
            "{\"zones\": {\"z\": {\"x\": 0, \"y\": 0, \"w\": 1, \"h\": 1,\n\"height\": 1}}, \"gestures\": ["
            "{\"kind\": \"tap\", \"zone\": \"z\", \"defaultAction\": \"a\"}], \"actions\": [{\"path\": \"a\", "
            "\"title\": \"A\","
            "\n\"label\": \"A\"}]}",
            "2:1 unknown-key: unknown key 'height'\n3:1 unknown-key: unknown key 'label'");
        gesture("unknown keys of a gesture",
                "{\"kind\": \"tap\", \"zone\": \"whole\", \"defaultAction\": \"a\",\n\"mode\": \"m\"}",
                "6:1 unknown-key: unknown key 'mode'");

        gesture("converted values of a gesture",
                "{\"id\": 5, \"modes\": [1, null],\n\"kind\": \"tap\", \"zone\": {\"x\": \"0.5\", \"y\": null, \"w\": "
                "true, \"h\": 0.5},\n"
                "\"defaultAction\": \"a\"}",
                "5:8 converted-value: a number is read as \"5\"\n"
                "5:21 converted-value: a number is read as \"1\"\n"
                "5:24 converted-value: null is read as \"\"\n"
                "6:24 zone-outside: the zone reaches beyond the screen\n"
                "6:30 converted-value: a string is read as 0.5\n"
                "6:42 converted-value: null is read as 0\n"
                "6:53 converted-value: true is read as 1");
        row("converted values of an action",
            "{\"actions\": [{\"path\": 5,\n\"titles\": [[]]}], \"gestures\": [{\"kind\": \"tap\", \"zone\": \"whole\", "
            "\"defaultAction\": \"5\"}]}",
            "1:23 converted-value: a number is read as \"5\"\n2:12 converted-value: a list is read as \"\"");

        gesture("shadowed by one",
                "{\"kind\": \"tap\", \"zone\": \"whole\", \"defaultAction\": \"a\"},\n"
                "{\"kind\": \"tap\", \"zone\": \"left\", \"defaultAction\": \"a\"}",
                "6:25 shadowed: gesture 'TapLeftNoDirection' never fires: the earlier 'TapWholeNoDirection' (line 5) "
                "takes "
                "100 % of its zone");
        gesture("shadowed by two",
                "{\"id\": \"l\", \"kind\": \"tap\", \"zone\": {\"x\": 0, \"y\": 0, \"w\": 0.5, \"h\": 1}, "
                "\"defaultAction\": \"a\"},\n"
                "{\"id\": \"r\", \"kind\": \"tap\", \"zone\": {\"x\": 0.5, \"y\": 0, \"w\": 0.5, \"h\": 1}, "
                "\"defaultAction\": \"a\"},\n"
                "{\"id\": \"c\", \"kind\": \"tap\", \"zone\": \"center\", \"defaultAction\": \"a\"}",
                "7:36 shadowed: gesture 'c' never fires: the earlier 'l' (line 5, 50 %) and 'r' (line 6, 50 %) take "
                "100 % of "
                "its zone");
        gesture("partly shadowed",
                "{\"kind\": \"swipe\", \"zone\": \"left\", \"direction\": \"toTop\", \"defaultAction\": \"a\"},\n"
                "{\"kind\": \"swipe\", \"direction\": \"toTop\", \"defaultAction\": \"a\"}",
                "6:32 partly-shadowed: gesture 'SwipeNotSetToTop' loses 15 % of its zone to the earlier "
                "'SwipeLeftToTop' "
                "(line 5)");
        gesture("shadowed in one of two modes",
                "{\"modes\": [\"m\"], \"kind\": \"tap\", \"zone\": \"whole\", \"defaultAction\": \"a\"},\n"
                "{\"modes\": [\"m\", \"n\"], \"kind\": \"tap\", \"zone\": \"left\", \"defaultAction\": \"a\"}",
                "6:46 shadowed: gesture 'MNTapLeftNoDirection' never fires in mode 'm': the earlier "
                "'MTapWholeNoDirection' "
                "(line 5) takes 100 % of its zone");
        gesture("of every mode, shadowed in two",
                "{\"modes\": [\"m\", \"n\"], \"kind\": \"tap\", \"zone\": \"whole\", \"defaultAction\": \"a\"},\n"
                "{\"kind\": \"tap\", \"zone\": \"left\", \"defaultAction\": \"a\"}",
                "6:25 shadowed: gesture 'TapLeftNoDirection' never fires in modes 'm' and 'n': the earlier "
                "'MNTapWholeNoDirection' (line 5) takes 100 % of its zone");
        gesture("of every mode, differently in some",
                "{\"modes\": [\"m\"], \"kind\": \"tap\", \"zone\": \"whole\", \"defaultAction\": \"a\"},\n"
                "{\"kind\": \"tap\", \"zone\": {\"x\": 0, \"y\": 0, \"w\": 1, \"h\": 0.5}, \"defaultAction\": \"a\"},\n"
                "{\"kind\": \"tap\", \"zone\": \"left\", \"defaultAction\": \"a\"}",
                "6:25 shadowed: gesture 'Tap(0,0,1,0.5)NoDirection' never fires in mode 'm': the earlier "
                "'MTapWholeNoDirection' (line 5) takes 100 % of its zone\n"
                "7:25 partly-shadowed: gesture 'TapLeftNoDirection' loses 50 % of its zone in modes 'base' and all "
                "others to "
                "the earlier 'Tap(0,0,1,0.5)NoDirection' (line 6)\n"
                "7:25 shadowed: gesture 'TapLeftNoDirection' never fires in mode 'm': the earlier "
                "'MTapWholeNoDirection' "
                "(line 5) takes 100 % of its zone");
        gesture("shadowed in every mode, by others in each",
                "{\"modes\": [\"m\"], \"kind\": \"tap\", \"zone\": \"whole\", \"defaultAction\": \"a\"},\n"
                "{\"modes\": [\"n\"], \"kind\": \"tap\", \"zone\": \"whole\", \"defaultAction\": \"a\"},\n"
                "{\"modes\": [\"n\", \"m\"], \"kind\": \"tap\", \"zone\": \"left\", \"defaultAction\": \"a\"}",
                "7:46 shadowed: gesture 'MNTapLeftNoDirection' never fires: the earlier 'MTapWholeNoDirection' (line "
                "5) takes "
                "100 % of its zone in mode 'm'; the earlier 'NTapWholeNoDirection' (line 6) takes 100 % of its zone in "
                "mode "
                "'n'");
        gesture("shadowed but in all modes that are not named",
                "{\"modes\": [\"base\"], \"kind\": \"tap\", \"zone\": \"whole\", \"defaultAction\": \"a\"},\n"
                "{\"kind\": \"tap\", \"zone\": \"top\", \"defaultAction\": \"a\"},\n"
                "{\"kind\": \"tap\", \"zone\": {\"x\": 0.25, \"y\": 0.1, \"w\": 0.5, \"h\": 0.2}, \"defaultAction\": "
                "\"a\"}",
                "6:25 shadowed: gesture 'TapTopNoDirection' never fires in mode 'base': the earlier "
                "'BaseTapWholeNoDirection' "
                "(line 5) takes 100 % of its zone\n"
                "7:25 shadowed: gesture 'Tap(0.25,0.1,0.5,0.2)NoDirection' never fires in mode 'base': the earlier "
                "'BaseTapWholeNoDirection' (line 5) takes 100 % of its zone\n"
                "7:25 partly-shadowed: gesture 'Tap(0.25,0.1,0.5,0.2)NoDirection' loses 50 % of its zone in all other "
                "modes to "
                "the earlier 'TapTopNoDirection' (line 6)");
        gesture("shadowed in a file of one line",
                "{\"kind\": \"tap\", \"zone\": \"whole\", \"defaultAction\": \"a\"}, "
                "{\"kind\": \"tap\", \"zone\": \"left\", \"defaultAction\": \"a\"}",
                "5:81 shadowed: gesture 'TapLeftNoDirection' never fires: the earlier 'TapWholeNoDirection' (column 1) "
                "takes "
                "100 % of its zone");
        gesture("shadowed for the most part, or hardly",
                "{\"kind\": \"tap\", \"zone\": {\"x\": 0, \"y\": 0, \"w\": 1, \"h\": 0.9999}, \"defaultAction\": "
                "\"a\"},\n"
                "{\"kind\": \"tap\", \"zone\": \"whole\", \"defaultAction\": \"a\"},\n"
                "{\"kind\": \"hold\", \"zone\": {\"x\": 0, \"y\": 0, \"w\": 1, \"h\": 0.0001}, \"defaultAction\": "
                "\"a\"},\n"
                "{\"kind\": \"hold\", \"zone\": \"whole\", \"defaultAction\": \"a\"}",
                "6:25 partly-shadowed: gesture 'TapWholeNoDirection' loses more than 99.9 % of its zone to the earlier "
                "'Tap(0,0,1,0.9999)NoDirection' (line 5)\n"
                "8:26 partly-shadowed: gesture 'HoldWholeNoDirection' loses less than 0.1 % of its zone to the earlier "
                "'Hold(0,0,1,0.0001)NoDirection' (line 7)");
        gesture("other modes",
                "{\"modes\": [\"m\"], \"kind\": \"tap\", \"zone\": \"whole\", \"defaultAction\": \"a\"},\n"
                "{\"modes\": [\"n\"], \"kind\": \"tap\", \"zone\": \"whole\", \"defaultAction\": \"a\"}",
                "");
        gesture("another kind and other directions",
                "{\"kind\": \"swipe\", \"direction\": \"toTop\", \"defaultAction\": \"a\"},\n"
                "{\"kind\": \"swipe\", \"direction\": \"toLeft\", \"defaultAction\": \"a\"},\n"
                "{\"kind\": \"drag\", \"direction\": \"toLeft\", \"defaultAction\": \"a\"}",
                "");

        gesture("an id again",
                "{\"id\": \"x\", \"kind\": \"tap\", \"zone\": \"left\", \"defaultAction\": \"a\"},\n"
                "{\"id\": \"base\", \"kind\": \"tap\", \"zone\": \"right\", \"defaultAction\": \"a\"}",
                "6:8 duplicate-id: the id 'base' was used before, in line 4");

        gesture("an id again and again",
                "{\"id\": \"x\", \"kind\": \"tap\", \"zone\": \"left\", \"defaultAction\": \"a\"},\n"
                "{\"id\": \"base\", \"kind\": \"tap\", \"zone\": \"right\", \"defaultAction\": \"a\"},\n"
                "{\"id\": \"y\", \"kind\": \"hold\", \"zone\": \"left\", \"defaultAction\": \"a\"},\n"
                "{\"id\": \"base\", \"kind\": \"hold\", \"zone\": \"right\", \"defaultAction\": \"a\"}",
                "6:8 duplicate-id: the id 'base' was used before, in line 4\n"
                "8:8 duplicate-id: the id 'base' was used before, in line 6");

        const auto zone = [](const char *name, const QByteArray &numbers, const QByteArray &expected) {
            row(name,
                "{\"zones\": {\"z\":\n{" + numbers
                        + "}}, \"gestures\": [{\"kind\": \"tap\", \"zone\": \"z\", \"defaultAction\": \"a\"}],"
                          " \"actions\": [{\"path\": \"a\", \"title\": \"A\"}]}",
                expected);
        };
        zone("a zone on the screen", "\"x\": 0.7, \"y\": 0, \"w\": 0.3, \"h\": 1", "");
        zone("a zone beyond the screen", "\"x\": 0.7, \"y\": 0, \"w\": 0.4, \"h\": 1",
             "2:1 zone-outside: the zone reaches beyond the screen");
        zone("a zone beyond the top", "\"x\": 0, \"y\": -0.1, \"w\": 1, \"h\": 1",
             "2:1 zone-outside: the zone reaches beyond the screen");
        zone("a zone outside", "\"x\": 1, \"y\": 0, \"w\": 1, \"h\": 1",
             "2:1 zone-outside: the zone is outside the screen");
        const QByteArray beyond = "2:1 zone-outside: the zone reaches beyond the screen";
        zone("a zone beyond the left", R"("x": -0.1, "y": 0, "w": 1, "h": 1)", beyond);
        zone("a zone beyond the bottom", R"("x": 0, "y": 0.1, "w": 1, "h": 1)", beyond);
        zone("a zone that is rounded beyond the left", R"("x": -1e-9, "y": 0, "w": 1, "h": 1)", "");
        zone("a zone that is rounded beyond the top", R"("x": 0, "y": -1e-9, "w": 1, "h": 1)", "");
        zone("a zone that is rounded beyond the right", R"("x": 1e-9, "y": 0, "w": 1, "h": 1)", "");
        zone("a zone that is rounded beyond the bottom", R"("x": 0, "y": 1e-9, "w": 1, "h": 1)", "");
        zone("a zone hardly beyond the left", R"("x": -2e-9, "y": 0, "w": 1, "h": 1)", beyond);
        zone("a zone a little beyond the screen", "\"x\": 0.7, \"y\": 0, \"w\": 0.301, \"h\": 1",
             "2:1 zone-outside: the zone reaches beyond the screen");
        zone("a zone that is no number", "\"x\": \"nan\", \"y\": 0, \"w\": 1, \"h\": 1",
             "2:1 zone-outside: the zone is outside the screen\n"
             "2:7 converted-value: a string is read as nan");
        zone("an empty zone", "\"x\": 0, \"y\": 0, \"w\": 0, \"h\": 1",
             "2:1 zone-empty: the zone has no area: no touch can hit it");
        zone("a zone too thin for any touch", "\"x\": 0.5, \"y\": 0, \"w\": 1e-13, \"h\": 1",
             "2:1 zone-empty: the zone has no area: no touch can hit it");
        zone("a zone of no height", R"("x": 0, "y": 0, "w": 1, "h": 0)",
             "2:1 zone-empty: the zone has no area: no touch can hit it");
        zone("a zone too low for any touch", R"("x": 0, "y": 0.5, "w": 1, "h": 1e-13)",
             "2:1 zone-empty: the zone has no area: no touch can hit it");
        zone("a zone as thin as a sliver", R"("x": 0, "y": 0, "w": 1e-12, "h": 1)",
             "2:1 zone-empty: the zone has no area: no touch can hit it");
        zone("a zone as low as a sliver", R"("x": 0, "y": 0, "w": 1, "h": 1e-12)",
             "2:1 zone-empty: the zone has no area: no touch can hit it");
        zone("a zone of a negative width", R"("x": 1, "y": 0, "w": -0.5, "h": 1)",
             "2:1 zone-negative: the zone has a negative side and goes from (0.5, 0) to (1, 1)");
        zone("a zone of a negative height", R"("x": 0, "y": 1, "w": 1, "h": -0.5)",
             "2:1 zone-negative: the zone has a negative side and goes from (0, 0.5) to (1, 1)");
        zone("a negative zone beyond the screen", R"("x": 0.5, "y": 0, "w": -1, "h": 1)",
             "2:1 zone-negative: the zone has a negative side and goes from (-0.5, 0) to (0.5, 1)\n" + beyond);
        zone("a negative zone", "\"x\": 1, \"y\": 1, \"w\": -1, \"h\": -0.5",
             "2:1 zone-negative: the zone has a negative side and goes from (0, 0.5) to (1, 1)");
        gesture("an odd zone of a gesture",
                "{\"kind\": \"tap\", \"zone\": {\"x\": 0, \"y\": 0, \"w\": 0, \"h\": 1}, \"defaultAction\": \"a\"}",
                "5:25 zone-empty: the zone has no area: no touch can hit it");
        row("an overridden zone",
            "{\"zones\": {\"left\":\n\"whole\"}, \"gestures\": [{\"kind\": \"tap\", \"zone\": \"left\", "
            "\"defaultAction\": \"a\"}],"
            " \"actions\": [{\"path\": \"a\", \"title\": \"A\"}]}",
            "1:12 overridden-zone: the predefined zone 'left' is used instead of this one");
        row("an unused zone", "{\"zones\": {\"z\": \"left\"}, \"gestures\": []}",
            "1:12 unused-zone: zone 'z' is not used by any gesture");

        row("an action defined twice",
            "{\"actions\": [{\"path\": \"a\", \"title\": \"A\"},\n{\"path\": \"a\", \"title\": \"B\"}], \"gestures\": ["
            "{\"kind\": \"tap\", \"zone\": \"whole\", \"defaultAction\": \"a\"}]}",
            "2:10 duplicate-action: action 'a' was defined before, in line 1: that definition is ignored");
        row("an unused action", "{\"actions\": [{\"path\": \"a\", \"title\": \"A\"}], \"gestures\": []}",
            "1:23 unused-action: action 'a' is not used by any gesture or group");
        row("an unused group uses its actions",
            "{\"actions\": [{\"path\": \"a\", \"title\": \"A\"}], \"actionGroups\": {\"g\": [\"a\"]}, \"gestures\": "
            "[]}",
            "1:61 unused-group: group 'g' is not used by any gesture");
        row("a list of actions is no group",
            "{\"actions\": [{\"path\": \"a\", \"title\": \"A\"}], \"actionGroups\": {\"\": [\"a\"]}, \"gestures\": [\n"
            "{\"kind\": \"tap\", \"zone\": \"left\", \"availableActions\": [\"a\"], \"defaultAction\": \"a\"}]}",
            "1:61 unused-group: group '' is not used by any gesture");
        row("a group of an action's name does not use it",
            "{\"actions\": [{\"path\": \"a\", \"title\": \"A\"},\n{\"path\": \"b\", \"title\": \"B\"}],\n"
            "\"actionGroups\": {\"b\": [\"a\"]}, \"gestures\": [\n"
            "{\"kind\": \"tap\", \"zone\": \"left\", \"availableActions\": \"b\", \"defaultAction\": \"a\"}]}",
            "2:10 unused-action: action 'b' is not used by any gesture or group");
        row("actions that gestures do or offer are used",
            "{\"actions\": [{\"path\": \"a\", \"title\": \"A\"}, {\"path\": \"b\", \"title\": \"B\"},"
            " {\"path\": \"c\", \"title\": \"C\"}, {\"path\": \"d\", \"title\": \"D\"}], \"gestures\": [\n"
            "{\"kind\": \"tap\", \"zone\": \"left\", \"availableActions\": [\"a\", \"c\"], \"defaultAction\": \"a\"},\n"
            "{\"kind\": \"tap\", \"zone\": \"right\", \"defaultAction\": \"b\"},\n"
            "{\"kind\": \"tap\", \"zone\": \"top\", \"currentAction\": \"d\"}]}",
            "4:32 fixed-action: gesture 'TapTopNoDirection' always performs this action: a user's choice has no "
            "effect");
        row("an action without titles",
            "{\"actions\": [{\"path\": \"a\", \"titles\": []}], \"gestures\": [\n"
            "{\"kind\": \"tap\", \"zone\": \"left\", \"defaultAction\": \"a\"}]}",
            "1:38 short-titles: the path 'a' has one segment but no title");
        row("titles shorter than the path",
            "{\"actions\": [{\"path\": \"a/b/c\", \"titles\": [\"A\", \"B\"]},\n{\"path\": \"a/b\", \"title\": "
            "\"A\"},\n"
            "{\"path\": \"a/d\", \"titles\": [\"A\", \"D\", \"more\"]}],\n\"gestures\": [{\"kind\": \"tap\", \"zone\": "
            "\"whole\","
            " \"availableActions\": [\"a/b/c\", \"a/b\", \"a/d\"], \"defaultAction\": \"a/b\"}]}",
            "1:42 short-titles: the path 'a/b/c' has 3 segments but only 2 titles\n"
            "2:26 short-titles: the path 'a/b' has 2 segments but only one title");
        const auto ofSegments = [](int count) {
            return "{\"titles\": [" + QByteArray("\"A\",").repeated(count - 1) + "\"A\"],\n\"path\": \""
                    + QByteArray("a/").repeated(count - 1) + "a\"}";
        };
        row("a path of very many segments",
            "{\"actions\": [" + ofSegments(64) + ",\n" + ofSegments(65) + "],\n\"actionGroups\": {\"g\": [\""
                    + QByteArray("a/").repeated(63) + "a\", \"" + QByteArray("a/").repeated(64)
                    + "a\"]}, \"gestures\": [{\"kind\": \"tap\", \"zone\": \"whole\","
                      " \"availableActions\": \"g\", \"defaultAction\": \""
                    + QByteArray("a/").repeated(63) + "a\"}]}",
            "4:9 deep-path: the path has 65 segments");

        const QByteArray inlined = "{\"path\": \"i\", \"title\": \"I\"}";
        const QByteArray unsaveable =
                " unsaveable-action: after 'i' is saved, the next load fails: action 'i' not defined";
        gesture("an inline action to choose",
                "{\"kind\": \"tap\", \"zone\": \"whole\", \"availableActions\": [\"a\",\n" + inlined
                        + "], \"defaultAction\": \"a\"}",
                "6:1" + unsaveable);
        gesture("an inline action alone to choose",
                "{\"kind\": \"tap\", \"zone\": \"whole\", \"availableActions\":\n" + inlined
                        + ", \"defaultAction\": \"a\"}",
                "6:1" + unsaveable
                        + "\n6:47 not-available: gesture 'TapWholeNoDirection' does not offer its own action 'a'");
        gesture("an inline default in a fallback list",
                "{\"kind\": \"tap\", \"zone\": \"whole\", \"defaultAction\": [\n" + inlined + "]}", "6:1" + unsaveable);
        gesture("an inline current action",
                "{\"kind\": \"tap\", \"zone\": \"whole\", \"currentAction\":\n" + inlined + "}",
                "5:34 fixed-action: gesture 'TapWholeNoDirection' always performs this action: a user's choice has no "
                "effect\n6:1"
                        + unsaveable);
        gesture("an inline current action that is not offered",
                "{\"kind\": \"tap\", \"zone\": \"whole\", \"availableActions\": [\"a\"], \"currentAction\":\n" + inlined
                        + "}",
                "5:61 fixed-action: gesture 'TapWholeNoDirection' always performs this action: a user's choice has no "
                "effect\n6:1"
                        + unsaveable
                        + "\n6:1 not-available: gesture 'TapWholeNoDirection' does not offer its own action 'i'");
        gesture("an inline action of a defined path",
                "{\"kind\": \"tap\", \"zone\": \"whole\", \"availableActions\": [{\"path\": \"a\", \"title\": \"I\"}],"
                " \"defaultAction\": \"a\"}",
                "");
        row("an inline action of a group that is used",
            "{\"actionGroups\": {\"g\": [\n" + inlined
                    + "]}, \"actions\": [{\"path\": \"a\", \"title\": \"A\"}], \"gestures\": [\n"
                      "{\"kind\": \"tap\", \"zone\": \"whole\", \"availableActions\": \"g\", \"defaultAction\": "
                      "\"a\"}]}",
            "2:1" + unsaveable
                    + "\n3:76 not-available: gesture 'TapWholeNoDirection' does not offer its own action 'a'");
        row("an inline action of a group that is not used",
            "{\"actionGroups\": {\"g\": [\n" + inlined + "]}, \"gestures\": []}",
            "1:19 unused-group: group 'g' is not used by any gesture");

        gesture("an alternative behind the end of a fallback list",
                "{\"kind\": \"tap\", \"zone\": \"whole\", \"defaultAction\": [\"light\", \"a\", \"b\"]}",
                "5:66 unreachable-fallback: this alternative is never reached: every device supports an earlier one");
        gesture("a fallback list with an end",
                "{\"kind\": \"tap\", \"zone\": \"whole\", \"defaultAction\": [\"light\", \"a\"]}", "");

        gesture("an undefined alternative behind one that always works",
                "{\"id\": \"u\", \"kind\": \"tap\", \"zone\": \"left\", \"defaultAction\": [\"a\", \"typo\", \"b\"]}",
                "5:67 unreachable-fallback: this alternative is never reached: every device supports an earlier one\n"
                "5:75 unreachable-fallback: this alternative is never reached: every device supports an earlier one");
        gesture("a default that is not offered",
                "{\"kind\": \"tap\", \"zone\": \"whole\", \"availableActions\": [\"a\"], \"defaultAction\": \"b\"}",
                "5:78 not-available: gesture 'TapWholeNoDirection' does not offer its own action 'b'");
        gesture("a current action that is not offered",
                "{\"kind\": \"tap\", \"zone\": \"whole\", \"availableActions\": [\"a\"], \"currentAction\": \"b\"}",
                "5:61 fixed-action: gesture 'TapWholeNoDirection' always performs this action: a user's choice has no "
                "effect\n"
                "5:78 not-available: gesture 'TapWholeNoDirection' does not offer its own action 'b'");
        gesture("an alternative that is not offered",
                "{\"kind\": \"tap\", \"zone\": \"whole\", \"availableActions\": [\"a\"], \"defaultAction\": "
                "[\"light\", \"a\"]}",
                "5:79 not-available: gesture 'TapWholeNoDirection' does not offer its own action 'light'");
        gesture("a default that only others offer",
                "{\"kind\": \"tap\", \"zone\": \"left\", \"availableActions\": [\"b\"], \"defaultAction\": \"b\"},\n"
                "{\"kind\": \"tap\", \"zone\": \"right\", \"availableActions\": [\"a\"], \"defaultAction\": \"b\"}",
                "6:78 not-available: gesture 'TapRightNoDirection' does not offer its own action 'b'");
        row("a default that only another group has",
            "{\"actions\": [{\"path\": \"a\", \"title\": \"A\"}, {\"path\": \"b\", \"title\": \"B\"}],"
            " \"actionGroups\": {\"one\": [\"a\"], \"two\": [\"b\"]}, \"gestures\": [\n"
            "{\"kind\": \"tap\", \"zone\": \"left\", \"availableActions\": \"one\", \"defaultAction\": \"b\"},\n"
            "{\"kind\": \"tap\", \"zone\": \"right\", \"availableActions\": \"two\", \"defaultAction\": \"b\"}]}",
            "2:77 not-available: gesture 'TapLeftNoDirection' does not offer its own action 'b'");
        row("a default that a group without a name does not have",
            "{\"actions\": [{\"path\": \"a\", \"title\": \"A\"}, {\"path\": \"b\", \"title\": \"B\"}],"
            " \"actionGroups\": {\"\": [\"a\"]}, \"gestures\": [\n"
            "{\"kind\": \"tap\", \"zone\": \"left\", \"availableActions\": \"\", \"defaultAction\": \"b\"}]}",
            "2:74 not-available: gesture 'TapLeftNoDirection' does not offer its own action 'b'");
        gesture("nothing is offered", "{\"kind\": \"tap\", \"zone\": \"whole\", \"defaultAction\": \"b\"}", "");

        gesture("a tap with a direction",
                "{\"kind\": \"tap\", \"zone\": \"left\", \"direction\": \"toTop\", \"defaultAction\": \"a\"},\n"
                "{\"kind\": \"hold\", \"zone\": \"left\", \"direction\": \"toLeft\", \"defaultAction\": \"a\"},\n"
                "{\"kind\": \"tap\", \"zone\": \"right\", \"direction\": \"no\", \"defaultAction\": \"a\"},\n"
                "{\"kind\": \"swipe\", \"zone\": \"right\", \"direction\": \"toLeft\", \"defaultAction\": \"a\"}",
                "5:46 directed-tap: a tap has no direction: gesture 'TapLeftToTop' never fires\n"
                "6:47 directed-tap: a hold has no direction: gesture 'HoldLeftToLeft' never fires");

        gesture("a swipe without a direction",
                "{\"kind\": \"swipe\", \"zone\": \"left\", \"defaultAction\": \"a\"},\n"
                "{\"kind\": \"swipe\", \"zone\": \"right\", \"direction\": \"no\", \"defaultAction\": \"a\"},\n"
                "{\"kind\": \"swipe\", \"zone\": \"right\", \"direction\": \"toTop\", \"defaultAction\": \"a\"}",
                "5:10 undirected-swipe: a swipe needs a direction: gesture 'SwipeLeftNoDirection' has none\n"
                "6:49 undirected-swipe: a swipe needs a direction: gesture 'SwipeRightNoDirection' has none");
        gesture("modes that differ in case",
                "{\"modes\": [\"other\", \"Base\", \"Base\"], \"kind\": \"tap\", \"zone\": \"whole\", "
                "\"defaultAction\": \"a\"}",
                "5:21 modes-case: mode 'Base' and mode 'base' of line 4 differ only in case");
    }

    void warned()
    {
        QFETCH(QByteArray, text);
        const QString file = m_tree->root() + "/cfg.json";
        testing::writeFile(file, text);
        Check check;
        check.configuration(file);
        QTEST(shown(check.findings()), "expected");
        QVERIFY(loads(file));
    }

    void bindings_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("expected");
        row("none", R"({"version": 1, "actions": {}})", "");
        row("a choice", R"({"version": 1, "actions": {"base": "b"}})", "");
        row("not JSON", "{", "1:2 syntax: unterminated object");
        row("a list", "[]", "1:1 refused: `FILE` root bust be map<>");
        row("nothing of it", "{}",
            "1:1 refused: `version` is obligatory field\n1:1 refused: `actions` is obligatory field");
        row("another version", "{\"version\": 2,\n\"actions\": 5}",
            "1:13 version: version not match: found: 2 needed: 1");
        row("a version that is no number", R"({"version": "one", "actions": {}})",
            "1:13 refused: `version` type must be `int`");
        row("a version that is rounded", R"({"version": 1.4, "actions": {}})",
            "1:13 converted-value: a number is read as 1");
        row("a version as a string", R"({"version": "1", "actions": {}})",
            "1:13 converted-value: a string is read as 1");
        row("choices that are no paths", R"({"version": 1, "actions": {"base": 5, "x": null}})",
            "1:36 refused: `actions` value type must be `str`\n1:44 refused: `actions` value type must be `str`");
        row("choices that are no object", R"({"version": 1, "actions": 5})",
            "1:27 refused: `actions` type must be `map<str, str>`");
        row("one of two choices is no path", R"({"version": 1, "actions": {"base": 5, "few": "a"}})",
            "1:36 refused: `actions` value type must be `str`\n"
            "1:46 repeated-default: 'a' is already the default of gesture 'few'");
        row("unknown keys", R"({"version": 1, "actions": {}, "action": {}})", "1:31 unknown-key: unknown key 'action'");
        row("an unknown gesture", R"({"version": 1, "actions": {"bas": "b"}})",
            "1:28 unknown-gesture: unknown gesture 'bas'");
        row("an unknown gesture and action", R"({"version": 1, "actions": {"bas": "z"}})",
            "1:28 unknown-gesture: unknown gesture 'bas'");
        row("an undefined action", R"({"version": 1, "actions": {"base": "z"}})",
            "1:36 undefined-binding: action 'z' not defined");
        row("an action that the device does not support", R"({"version": 1, "actions": {"base": "light"}})",
            "1:36 unsupported-binding: the device does not support the action 'light'");
        row("an action that is not offered", R"({"version": 1, "actions": {"few": "b"}})",
            "1:35 not-available: gesture 'few' does not offer the action 'b'");
        row("a gesture with a current action", R"({"version": 1, "actions": {"fixed": "b"}})",
            "1:37 hidden-binding: gesture 'fixed' always performs 'a'");
        row("two fixed gestures of an id", R"({"version": 1, "actions": {"both": "b"}})",
            "1:36 hidden-binding: gesture 'both' always performs 'a'");
        row("what a fixed gesture does", R"({"version": 1, "actions": {"fixed": "a"}})", "");
        row("an action for a gesture that the device does not have", R"({"version": 1, "actions": {"lamp": "light"}})",
            "");
        row("an action of a gesture that offers none", R"({"version": 1, "actions": {"plain": "b"}})", "");
        row("one of two gestures of an id is fixed", R"({"version": 1, "actions": {"twice": "b"}})", "");
        row("what a fallback list may do", R"({"version": 1, "actions": {"list": "b"}})", "");
        row("the default again", R"({"version": 1, "actions": {"base": "a"}})",
            "1:36 repeated-default: 'a' is already the default of gesture 'base'");
    }

    void bindings()
    {
        QFETCH(QByteArray, text);
        const QString config = m_tree->root() + "/cfg.json";
        testing::writeFile(config,
                           withGestures("{\"id\": \"few\", \"kind\": \"tap\", \"zone\": \"left\","
                                        " \"availableActions\": [\"a\"], \"defaultAction\": \"a\"},\n"
                                        "{\"id\": \"fixed\", \"kind\": \"tap\", \"zone\": \"right\","
                                        " \"currentAction\": \"a\"},\n"
                                        "{\"id\": \"twice\", \"kind\": \"tap\", \"zone\": \"top\","
                                        " \"currentAction\": \"a\"},\n"
                                        "{\"id\": \"lamp\", \"kind\": \"tap\", \"zone\": \"bottom\","
                                        " \"features\": [\"frontlight\"], \"defaultAction\": \"a\"},\n"
                                        "{\"id\": \"twice\", \"kind\": \"hold\", \"zone\": \"top\","
                                        " \"defaultAction\": \"a\"},\n"
                                        "{\"id\": \"plain\", \"kind\": \"hold\", \"zone\": \"left\","
                                        " \"defaultAction\": \"a\"},\n"
                                        "{\"id\": \"list\", \"kind\": \"hold\", \"zone\": \"right\","
                                        " \"defaultAction\": [\"light\", \"b\"]},\n"
                                        "{\"id\": \"both\", \"kind\": \"swipe\", \"direction\": \"toLeft\","
                                        " \"currentAction\": \"a\"},\n"
                                        "{\"id\": \"other\", \"kind\": \"swipe\", \"direction\": \"toRight\","
                                        " \"defaultAction\": \"a\"},\n"
                                        "{\"id\": \"both\", \"kind\": \"swipe\", \"direction\": \"toTop\","
                                        " \"currentAction\": \"b\"}"));
        const QString file = m_tree->root() + "/user.json";
        testing::writeFile(file, text);
        Check check({QStringList()});
        check.configuration(config, file);
        Findings findings = check.findings();
        findings.drop({"fixed-action", "duplicate-id"});
        QTEST(shown(findings).replace(file, "FILE"), "expected");

        // An error is a file that a service refuses, alone or with the configuration.
        const auto read = Configuration::ActionBindings::loadJson(file);
        QObject owner;
        const Device device({});
        const bool isTaken = read.isRight()
                && Configuration::loadJson(config, &device, GestureService::predefinedZones, read.right(), &owner)
                           .isRight();
        QCOMPARE(findings.count(Severity::Error) == 0, isTaken);
    }

    void hintsOfBindings()
    {
        const QString config = m_tree->root() + "/cfg.json";
        testing::writeFile(config,
                           withGestures(R"({"id": "UPPER", "kind": "tap", "zone": "left", "defaultAction": "a"})"));
        const QString file = m_tree->root() + "/user.json";
        testing::writeFile(file, R"({"version": 1, "actions": {"bass": "b", "other": "b", "upper": "b"}})");
        Check check;
        check.configuration(config, file);
        const Findings findings = check.findings();
        QCOMPARE(shown(findings),
                 QString("1:28 unknown-gesture: unknown gesture 'bass'\n"
                         "1:41 unknown-gesture: unknown gesture 'other'\n"
                         "1:55 unknown-gesture: unknown gesture 'upper'"));
        QCOMPARE(findings.list().first().hint, QString("Did you mean 'base'?"));
        QCOMPARE(findings.list().at(1).hint,
                 QString("Remove the binding. It has no effect, and the next save drops it."));
        QCOMPARE(findings.list().at(2).hint, QString("Did you mean 'UPPER'?"));
    }

    // In addition to the configuration's own faults.
    void bindingsOfRefusedGestures_data()
    {
        QTest::addColumn<QByteArray>("gesture");
        QTest::addColumn<QString>("expected");
        row("its id is known", R"({"id": "odd", "kind": "poke", "zone": "left", "defaultAction": "b"})",
            "1:28 unknown-gesture: unknown gesture 'bas'\n"
            "1:47 repeated-default: 'b' is already the default of gesture 'odd'");
        row("its id may be any", R"({"kind": "poke", "zone": "left", "defaultAction": "b"})", "");
        row("what it does is not known",
            R"({"id": "odd", "kind": "tap", "zone": "left", "availableActions": [5], "defaultAction": "b"})",
            "5:88 not-available: gesture 'odd' does not offer its own action 'b'\n"
            "1:28 unknown-gesture: unknown gesture 'bas'\n"
            "1:47 not-available: gesture 'odd' does not offer the action 'b'");
        row("its fixed action is not known", R"({"id": "odd", "kind": "tap", "zone": "left", "currentAction": 5})",
            "5:46 fixed-action: gesture 'odd' always performs this action: a user's choice has no effect\n"
            "1:28 unknown-gesture: unknown gesture 'bas'");
    }

    void bindingsOfRefusedGestures()
    {
        QFETCH(QByteArray, gesture);
        const QString config = m_tree->root() + "/cfg.json";
        testing::writeFile(config, withGestures(gesture));
        const QString file = m_tree->root() + "/user.json";
        testing::writeFile(file, R"({"version": 1, "actions": {"bas": "b", "odd": "b"}})");
        Check check;
        check.configuration(config, file);
        Findings findings = check.findings();
        QVERIFY(findings.count(Severity::Error) > 0);
        findings.drop({"refused"});
        QTEST(shown(findings), "expected");
    }

    // By file first, not by the place in it; errors first at one place.
    void order()
    {
        const QString config = m_tree->root() + "/one.json";
        const QString file = m_tree->root() + "/another.json";
        testing::writeFile(config,
                           "{\"gestures\": [{\"id\": 5,\n\"kind\": \"tap\", \"zone\": {\"x\": 1}, \"zoon\": 1}],"
                           " \"zones\": {\"z\": {\"x\": 0, \"y\": 0, \"w\": 0, \"h\": 1}}}");
        testing::writeFile(file, R"({"version": "1", "actions": {"x": "y"}})");
        Check check;
        check.configuration(config, file);
        QStringList found;
        const Findings findings = check.findings();
        for (const Finding &finding : findings.list()) {
            found.append(QFileInfo(finding.file->path()).fileName() + ' ' + finding.rule->id);
        }
        QCOMPARE(found,
                 (QStringList{"one.json refused", "one.json converted-value", "one.json refused", "one.json refused",
                              "one.json refused", "one.json unknown-key", "one.json unused-zone", "one.json zone-empty",
                              "another.json converted-value", "another.json unknown-gesture"}));
    }

    void paths_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("expected");
        row("sound", R"({"current": "c", "default": "d", "filename": "f", "$schema": "s"})", "");
        row("not JSON", "{\"current\": }", "1:13 syntax: object is missing after a comma");
        row("a list", "[]", "1:1 refused: expected map<>");
        row("nothing of it", "{}",
            "1:1 refused: field `current` must be set\n1:1 refused: field `default` must be set\n"
            "1:1 refused: field `filename` must be set");
        row("all of a wrong type", "{\"current\": 1,\n\"default\": 2,\n\"filename\": 3,\n\"prohibitedApps\": \"x\"}",
            "1:13 refused: field `current` must have type `string`\n2:12 refused: field `default` must have type "
            "`string`\n"
            "3:13 refused: field `filename` must have type `string`\n"
            "4:19 refused: field 'prohibitedApps' must have type list<str>");
        row("a misspelt key", R"({"current": "c", "default": "d", "filename": "f", "prohibitedapps": ["x"]})",
            "1:51 unknown-key: unknown key 'prohibitedapps'");
        row("an application that is no name",
            R"({"current": "c", "default": "d", "filename": "f", "prohibitedApps": [5]})",
            "1:70 converted-value: a number is read as \"5\"");
    }

    void paths()
    {
        QFETCH(QByteArray, text);
        const QString file = m_tree->root() + "/paths.json";
        testing::writeFile(file, text);
        Check check;
        const ApplicationPathsConfiguration paths = check.paths(file);
        QTEST(shown(check.findings()), "expected");
        const auto read = ApplicationPathsConfiguration::loadJson(file);
        QCOMPARE(check.findings().count(Severity::Error) == 0, read.isRight());
        const ApplicationPathsConfiguration used =
                read.isRight() ? read.right() : ApplicationPathsConfiguration::newDefault();
        QCOMPARE(paths.defaultPath(), used.defaultPath());
    }

    void hints()
    {
        const QString file = m_tree->root() + "/cfg.json";
        testing::writeFile(file, R"({"gestures": [], "zone": {}, "actiongroups": {}, "comment": 1})");
        Check check;
        check.configuration(file);
        const Findings findings = check.findings();
        QStringList hints;
        for (const Finding &finding : findings.list())
            hints.append(finding.hint);
        QCOMPARE(hints,
                 (QStringList{"Did you mean 'zones'?", "Did you mean 'actionGroups'?",
                              "Known keys: zones, actions, actionGroups, gestures, $schema"}));
    }

    void hintsOfKeys_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("hint");
        const QString known = "Known keys: id, modes, kind, zone, direction, availableActions, defaultAction,"
                              " currentAction, features";
        const auto row = [](const char *name, const char *key, const QString &hint) {
            QTest::newRow(name) << QString(key) << hint;
        };
        row("one character replaced", "zohe", "Did you mean 'zone'?");
        row("one character too many", "zonne", "Did you mean 'zone'?");
        row("one character less", "zne", "Did you mean 'zone'?");
        row("half of the characters", "koid", "Did you mean 'kind'?");
        row("half of two characters", "ie", "Did you mean 'id'?");
        row("more than half of the characters", "x", known);
        row("three of many characters", "avlableActons", known);
        row("capital letters", "DIRECTION", "Did you mean 'direction'?");
        row("the nearest", "node", "Did you mean 'modes'?");
        row("the first of two that are as near", "mone", "Did you mean 'zone'?");
    }

    void hintsOfKeys()
    {
        QFETCH(QString, key);
        const QString file = m_tree->root() + "/cfg.json";
        testing::writeFile(file,
                           withGestures("{\"kind\": \"tap\", \"zone\": \"left\", \"defaultAction\": \"a\", \""
                                        + key.toUtf8() + "\": 1}"));
        Check check;
        check.configuration(file);
        const Findings findings = check.findings();
        QCOMPARE(shown(findings), "5:55 unknown-key: unknown key '" + key + "'");
        QTEST(findings.list().first().hint, "hint");
    }

    void hintsOfPaths()
    {
        const QString file = m_tree->root() + "/paths.json";
        testing::writeFile(file, R"({"current": "c", "default": "d", "filename": "f", "comment": 1})");
        Check check;
        check.paths(file);
        const Findings findings = check.findings();
        QCOMPARE(shown(findings), QString("1:51 unknown-key: unknown key 'comment'"));
        QCOMPARE(findings.list().first().hint,
                 QString("Known keys: prohibitedApps, filename, default, current, $schema"));
    }

    // The fault where the strict parser stops: in the hint for a file that is not JSON, in the warning for a file that
    // the library still reads.
    void reasons_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *name, const QByteArray &text, const char *expected) {
            QTest::newRow(name) << text << expected;
        };
        row("a comma before a brace", "{\"gestures\": [],\n}", "2:1 Unexpected comma.");
        row("a comma before a bracket", "{\"gestures\": [5,\n]}", "2:1 Unexpected comma.");
        row("a comma alone in a list", "[,]", "1:2 Invalid value.");
        row("a comma alone in an object", "{,}", "1:2 Missing a name for object member.");
        row("a word that is no name", "{\"gestures\": [], x}", "1:18 Missing a name for object member.");
        row("a brace for a bracket", "{\"gestures\": [5,\n}", "2:1 Invalid value.");
        row("a bracket for a brace", "{\"gestures\": [],\n]", "2:1 Missing a name for object member.");
        row("no value", "{\"gestures\": }", "1:14 Invalid value.");
        row("too many levels", QByteArray(1025, '['), "1:1025 Too many levels.");
        row("a tab in a string", "{\"gestures\": [], \"\t\": 5}", "1:19 A string contains a raw control character.");
        row("the last control character", "{\"gestures\": [], \"$schema\": \"\x1f\"}",
            "1:30 A string contains a raw control character.");
        row("a byte of zero in a string", QByteArray("[\"a\0\"]", 6), "1:2 A string contains a raw control character.");
        row("a control character in no string", "[\x1f]", "1:2 Invalid value.");
        row("an escape that there is none of", "[\"\\q\"]", "1:3 Invalid escape character in string.");
        row("a string without an end", "[5,\n\"a]", "2:1 Missing a closing quotation mark in string.");
        row("bytes that are no characters", "{\"gestures\":\n\"\xff\"}", "2:2 Invalid encoding in string.");
    }

    void reasons()
    {
        QFETCH(QByteArray, text);
        const QString file = m_tree->root() + "/cfg.json";
        testing::writeFile(file, text);
        Check check;
        check.configuration(file);
        const Findings findings = check.findings();
        const auto fault = std::find_if(findings.list().cbegin(), findings.list().cend(), [](const Finding &one) {
            return isOf(one, "not-strict") || isOf(one, "syntax");
        });
        QVERIFY(fault != findings.list().cend());
        const Position position = fault->file->positionOf(fault->span.begin);
        const QString consequence = " The application has no gestures then.";
        QString reason = fault->text;
        if (isOf(*fault, "syntax")) {
            QVERIFY2(fault->hint.endsWith(consequence), qPrintable(fault->hint));
            reason = fault->hint.chopped(consequence.size());
        }
        QTEST(QStringLiteral("%1:%2 %3").arg(QString::number(position.line), QString::number(position.column), reason),
              "expected");
    }

    void hintsOfRefusals_data()
    {
        QTest::addColumn<QByteArray>("gesture");
        QTest::addColumn<QString>("hint");
        const auto row = [](const char *name, const QByteArray &members, const char *hint) {
            QJsonObject gesture{{"kind", "tap"},
                                {"direction", "no"},
                                {"availableActions", QJsonArray{"a", "b", "light"}},
                                {"defaultAction", "a"}};
            const QJsonObject changed = QJsonDocument::fromJson('{' + members + '}').object();
            for (auto member = changed.begin(); member != changed.end(); ++member)
                gesture.insert(member.key(), *member);
            QTest::newRow(name) << QJsonDocument(gesture).toJson(QJsonDocument::Compact) << hint;
        };
        const char *const general = "A single error of this kind makes the library reject the whole file.";
        row("kind", R"("kind": "pinch")", "Use tap, hold, swipe or drag.");
        row("zone", R"("zone": "Left")", "Did you mean 'left'?");
        row("action", R"("defaultAction": "ligth")", "Did you mean 'light'?");
        row("group", R"("availableActions": "alle")", "Did you mean 'all'?");
        row("group in a list", R"("availableActions": ["a", "all"])",
            "This is a group. Only \"availableActions\" can name a group, and not in a list.");
        row("feature", R"("features": ["frontlights"])", "Did you mean 'frontlight'?");
        row("zone in capital letters", R"("zone": "BOTTOM")", "Did you mean 'bottom'?");
        row("nothing near", R"("zone": "nowhere")", general);
        row("another fault", R"("modes": 5)", general);
    }

    void hintsOfRefusals()
    {
        QFETCH(QByteArray, gesture);
        const QString file = m_tree->root() + "/cfg.json";
        testing::writeFile(file, withGestures(gesture));
        Check check;
        check.configuration(file);
        const Findings findings = check.findings();
        const auto refused = std::find_if(findings.list().cbegin(), findings.list().cend(),
                                          [](const Finding &one) { return isOf(one, "refused"); });
        QVERIFY(refused != findings.list().cend());
        QTEST(refused->hint, "hint");
    }

    // The known names can come in any order, as from a set.
    void nearestOfSeveral()
    {
        QCOMPARE(nearestHint("pagx", {"pagf", "page"}), QString("Did you mean 'page'?"));
        QCOMPARE(nearestHint("pagx", {"page", "pagf"}), QString("Did you mean 'page'?"));
    }

    void devices()
    {
        const QString file = m_tree->root() + "/cfg.json";
        testing::writeFile(
                file,
                withGestures(
                        "{\"id\": \"lamp\", \"kind\": \"tap\", \"zone\": \"left\", \"defaultAction\": \"light\"},\n"
                        "{\"id\": \"guarded\", \"kind\": \"tap\", \"zone\": \"right\", \"defaultAction\": \"light\","
                        " \"features\": [\"frontlight\"]},\n"
                        "{\"id\": \"endless\", \"kind\": \"tap\", \"zone\": \"top\", \"defaultAction\":\n"
                        "[\"light\", {\"path\": \"a\", \"title\": \"A\", \"features\": [\"tts\"]}]},\n"
                        "{\"id\": \"odd\", \"kind\": \"poke\", \"zone\": \"top\", \"defaultAction\": \"a\"}"));
        const QString lamp = "5:64 no-action: gesture 'lamp' has no action: 'light' needs frontlight";
        const QString end =
                "8:1 fallback-end: every action of the fallback list needs a feature that a device may lack";
        const QString none = "8:1 no-supported-action: no one action is supported of list: [ light,  ]";
        const QString odd = "9:23 refused: kind can be only 'tap' or 'swipe' or 'drag'";
        const auto found = [&file](const QVector<QStringList> &devices) {
            Check check(devices);
            check.configuration(file);
            return shown(check.findings());
        };
        QCOMPARE(found({{"frontlight"}}), QStringList({end, odd}).join('\n'));
        QCOMPARE(found({{"tts"}}), QStringList({lamp, end, odd}).join('\n'));
        QCOMPARE(found({QStringList()}), QStringList({lamp, none, end, odd}).join('\n'));
        QCOMPARE(allDevices().size(), 8);
        QCOMPARE(allDevices().first(), QStringList());
        QCOMPARE(allDevices().last(), knownFeatures());
        QCOMPARE(found(allDevices()),
                 QStringList({lamp + " (without frontlight)", none + " (without frontlight and tts)", end, odd})
                         .join('\n'));
        const auto on = [&file](const QVector<QStringList> &some) {
            const QVector<QStringList> devices{{}, {"tts"}, {"frontlight"}, {"frontlight", "tts"}};
            const JsonText text(file, "{}");
            QVector<Findings> all(devices.size());
            for (int i = 0; i < devices.size(); ++i) {
                if (some.contains(devices.at(i)))
                    all[i].add("refused", text.place(), "x");
            }
            const Findings one = merged(all, devices);
            return one.list().first().devices;
        };
        QCOMPARE(on({{}, {"tts"}, {"frontlight"}, {"frontlight", "tts"}}), QString());
        QCOMPARE(on({{"frontlight"}, {"frontlight", "tts"}}), QString("with frontlight and without smartlight"));
        QCOMPARE(on({{}, {"frontlight", "tts"}}), QString("with none or with frontlight+tts"));
        QCOMPARE(on({{}, {"tts"}, {"frontlight"}}), QString("with none or with tts or with frontlight"));
        QCOMPARE(found({{"frontlight"}, {"smartlight", "tts"}, {}}),
                 QStringList({lamp + " (without frontlight)", none + " (without frontlight and smartlight and tts)",
                              end, odd})
                         .join('\n'));
    }

    void noAction_data()
    {
        QTest::addColumn<QByteArray>("gesture");
        QTest::addColumn<QString>("expected");
        row("what the device does not support", R"("defaultAction": "light")",
            "6:18 no-action: gesture 'g' has no action: 'light' needs frontlight");
        row("what the device supports", R"("defaultAction": "speech")", "");
        row("one feature of all that it needs", R"("defaultAction": "both")",
            "6:18 no-action: gesture 'g' has no action: 'both' needs frontlight");
        row("features by their names", "\"defaultAction\": \"rest\"",
            "6:18 no-action: gesture 'g' has no action: 'rest' needs frontlight and smartlight");
        row("a current action", R"("currentAction": "light")",
            "6:18 no-action: gesture 'g' has no action: 'light' needs frontlight");
        row("a gesture that the device does not support", R"("defaultAction": "light", "features": ["frontlight"])",
            "");
        row("a gesture whose actions are refused", R"("defaultAction": "light", "availableActions": 5)", "");
    }

    void noAction()
    {
        QFETCH(QByteArray, gesture);
        const QString file = m_tree->root() + "/cfg.json";
        testing::writeFile(file,
                           R"({"actions": [{"path": "light", "title": "L", "features": ["frontlight"]},
                              {"path": "speech", "title": "S", "features": ["tts"]},
                              {"path": "both", "title": "B", "features": ["tts", "frontlight"]},
                              {"path": "rest", "title": "R", "features": ["smartlight", "tts", "frontlight"]}],
                              "gestures": [{"id": "g", "kind": "tap", "zone": "left",)"
                           "\n" + gesture
                                   + "}]}");
        Check check({{"tts"}});
        check.configuration(file);
        Findings findings = check.findings();
        findings.drop({"refused", "unused-action", "fixed-action"});
        QTEST(shown(findings), "expected");
    }

    // In any order of the set.
    void missingFeaturesAreSorted()
    {
        const QString file = m_tree->root() + "/cfg.json";
        testing::writeFile(file,
                           R"({"gestures": [{"id": "g", "kind": "tap", "zone": "left", "defaultAction": "all"}],)"
                           R"( "actions": [{"path": "all", "title": "A",)"
                           R"( "features": ["tts", "smartlight", "frontlight"]}]})");
        QStringList found;
        for (int i = 0; i < 30; ++i) {
            qSetGlobalQHashSeed(-1); // a random seed; Qt Test begins with 0
            Check check({QStringList()});
            check.configuration(file);
            found.append(shown(check.findings()));
        }
        qSetGlobalQHashSeed(0);
        found.removeDuplicates();
        QCOMPARE(found,
                 QStringList("1:75 no-action: gesture 'g' has no action: 'all' needs frontlight, smartlight and tts"));
    }

    // A finding on every device is reported once; similar findings are all reported.
    void everyDevice_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("several faults at one place") << withGestures("{}");
        QTest::newRow("one fault at several places") << withGestures(
                R"({"kind": "tap", "zone": "left", "availableActions": ["x", "x"], "defaultAction": "x"})");
        QTest::newRow("several rules at one place") << QByteArray(R"({"gestures": [], "zones": {"left": "right"}})");
    }

    void everyDevice()
    {
        QFETCH(QByteArray, text);
        const QString file = m_tree->root() + "/cfg.json";
        testing::writeFile(file, text);
        Check here;
        here.configuration(file);
        QVERIFY(shown(here.findings()).contains('\n'));
        Check everywhere(allDevices());
        everywhere.configuration(file);
        QCOMPARE(shown(everywhere.findings()), shown(here.findings()));
    }

    void deadTouches()
    {
        const QString file = m_tree->root() + "/cfg.json";
        testing::writeFile(
                file,
                withGestures("{\"id\": \"lamp\", \"kind\": \"tap\", \"zone\": \"left\", \"defaultAction\": \"light\",\n"
                             "\"features\": [\"frontlight\"]},\n"
                             "{\"id\": \"apart\", \"kind\": \"tap\", \"zone\": \"right\", \"defaultAction\": \"light\","
                             " \"features\": [\"frontlight\"]},\n"
                             "{\"id\": \"two\", \"kind\": \"tap\", \"zone\": \"leftVerticalLine\", \"defaultAction\": "
                             "\"light\","
                             " \"features\": [\"frontlight\"]},\n"
                             "{\"id\": \"line\", \"kind\": \"tap\", \"zone\": \"leftVerticalLine\", \"defaultAction\": "
                             "\"a\"}"));
        const auto found = [&file](const QStringList &device) {
            Check check({device});
            check.configuration(file);
            Findings findings = check.findings();
            findings.drop({"partly-shadowed", "shadowed"});
            return shown(findings);
        };
        QCOMPARE(found({"frontlight"}), QString());
        QCOMPARE(found({}),
                 QString("6:13 dead-touches: the device does not support gesture 'lamp', which still takes touches "
                         "from 'line'\n"
                         "8:96 dead-touches: the device does not support gesture 'two', which still takes touches from "
                         "'line'"));
    }

    // This device needs no alternative after its action, another one does.
    void undefinedFallback()
    {
        const QString file = m_tree->root() + "/cfg.json";
        testing::writeFile(file,
                           withGestures("{\"kind\": \"tap\", \"zone\": \"left\", \"availableActions\": [\"light\"],"
                                        " \"defaultAction\":\n[\"light\", \"typo\"]}"));
        Check check({{"frontlight"}});
        check.configuration(file);
        QCOMPARE(shown(check.findings()), QString("6:11 undefined-fallback: action 'typo' is not defined"));
        Check other({{"tts"}});
        other.configuration(file);
        QCOMPARE(shown(other.findings()), QString("6:11 refused: action 'typo' not defined"));

        // An error at the same place of another file is a different one.
        const QByteArray config =
                withGestures("{\"kind\": \"tap\", \"zone\": \"left\", \"defaultAction\": [\"light\", \"typo\"]}");
        const QByteArray before = "{\"current\": \"c\", \"default\": \"d\", \"filename\": ";
        testing::writeFile(file, config);
        const QString paths = m_tree->root() + "/paths.json";
        testing::writeFile(paths, before + QByteArray(config.indexOf("\"typo\"") - before.size(), ' ') + "5}");
        Check two({{"frontlight"}});
        two.paths(paths);
        two.configuration(file);
        const Findings both = two.findings();
        QCOMPARE(both.list().first().span.begin, both.list().last().span.begin);
        QVERIFY2(shown(both).endsWith("undefined-fallback: action 'typo' is not defined"), qPrintable(shown(both)));

        // Even with other faults elsewhere, or with warnings here: after a strict fault, all is at one place.
        testing::writeFile(file,
                           withGestures("{\"kind\": \"poke\", \"zone\": \"left\", \"defaultAction\": [\"light\", "
                                        "\"typo\"]}"));
        Check beside({{"frontlight"}});
        beside.configuration(file);
        QCOMPARE(shown(beside.findings()),
                 QString("5:10 refused: kind can be only 'tap' or 'swipe' or 'drag'\n"
                         "5:61 undefined-fallback: action 'typo' is not defined"));
        testing::writeFile(file,
                           "{\"$schema\": 1.,\n"
                                   + withGestures("{\"kind\": \"tap\", \"zone\": \"left\", \"mode\": 0,"
                                                  " \"defaultAction\": [\"light\", \"typo\"]}")
                                             .mid(1));
        Check behind({{"frontlight"}});
        behind.configuration(file);
        QCOMPARE(shown(behind.findings()),
                 QString("1:1 unknown-key: unknown key 'mode'\n"
                         "1:1 undefined-fallback: action 'typo' is not defined\n"
                         "1:15 not-strict: Miss fraction part in number."));
    }

    void report_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("expected");
        row("the value is marked", "{\"gestures\":\n  [ \"x\" ]}",
            "FILE:2:5: error: list of gestures must must contain maps [refused]\n"
            "      [ \"x\" ]}\n"
            "        ^~~\n"
            "    hint: A single error of this kind makes the library reject the whole file.\n");
        row("of what is no JSON one character", "{\"gestures\": [5 6]}",
            "FILE:1:17: error: missing value separator [syntax]\n"
            "    {\"gestures\": [5 6]}\n"
            "                    ^\n"
            "    hint: Missing a comma or ']' after an array element. The application has no gestures then.\n");
        row("of several lines the first", "{\"zones\": {},\r\n\"gesture\": []\r\n}",
            "FILE:1:1: error: 'gestures' is obligatory field [refused]\n"
            "    {\"zones\": {},\n"
            "    ^~~~~~~~~~~~~\n"
            "    hint: A single error of this kind makes the library reject the whole file.\n");
        row("tabs, wide and combining characters", "{\"gestures\": [],\t\"\u7a93\": 0, \"e\u0301\": 0, \"x\": 0}",
            "FILE:1:18: warning: unknown key '\u7a93' [unknown-key]\n"
            "    {\"gestures\": [], \"\u7a93\": 0, \"e\u0301\": 0, \"x\": 0}\n"
            "                     ^~~~\n"
            "    hint: Known keys: zones, actions, actionGroups, gestures, $schema\n");
        row("control characters", "{\"gestures\": [], \"\\u001b[31m\x1b[31m\": 0}",
            "FILE:1:1: warning: unknown key '\\x1b[31m\\x1b[31m' [unknown-key]\n"
            "    {\"gestures\": [], \"\\u001b[31m\\x1b[31m\": 0}\n"
            "    ^\n"
            "    hint: Known keys: zones, actions, actionGroups, gestures, $schema\n");
        row("characters that turn the text", "{\"gestures\": [], \"\u202e\": 0}",
            "FILE:1:18: warning: unknown key '\\u202e' [unknown-key]\n"
            "    {\"gestures\": [], \"\\u202e\": 0}\n"
            "                     ^~~~~~~~\n"
            "    hint: Known keys: zones, actions, actionGroups, gestures, $schema\n");
        row("a long line of wide characters",
            "{\"gestures\": [], \"\u7a93\": \"" + QByteArray("\u7a93").repeated(200) + "\"}",
            "FILE:1:18: warning: unknown key '\u7a93' [unknown-key]\n"
            "    {\"gestures\": [], \"\u7a93\": \""
                    + QByteArray("\u7a93").repeated(57)
                    + "…\n"
                      "                     ^~~~\n"
                      "    hint: Known keys: zones, actions, actionGroups, gestures, $schema\n");
        const QByteArray hint = "\n    hint: A single error of this kind makes the library reject the whole file.\n";
        const QByteArray noGesture = "error: list of gestures must must contain maps [refused]\n";
        row("an object is marked with its end", "{\"gestures\": [\n[ {} ], 5]}",
            "FILE:2:1: " + noGesture + "    [ {} ], 5]}\n    ^~~~~~" + hint);
        row("a line is shown whole", "{\"gestures\": [\n5,\n6]}", "FILE:2:1: " + noGesture + "    5,\n    ^" + hint);
        row("one character is marked", "{\"gestures\": [\n5]}", "FILE:2:1: " + noGesture + "    5]}\n    ^" + hint);
        row("the end of a file is marked", "{\"gestures\": []",
            "FILE:1:16: error: unterminated object [syntax]\n    {\"gestures\": []\n                   ^\n"
            "    hint: Missing a comma or '}' after an object member. The application has no gestures then.\n");
        const auto dots = [](int count) { return QByteArray(count, '.'); };
        const auto blanks = [](int count) { return QByteArray(count, ' '); };
        // A gesture that is a string of this number of dots, between this number of blanks.
        const auto longLine = [&](const char *name, int before, int length, int behind, const QByteArray &expected) {
            row(name, "{\"gestures\": [\n" + blanks(before) + '"' + dots(length - 2) + "\"]}" + blanks(behind - 2),
                "FILE:2:" + QByteArray::number(before + 1) + ": " + noGesture + expected + hint);
        };
        longLine("as much as is shown", 100, 100, 60,
                 "    " + blanks(100) + '"' + dots(98) + "\"]}" + blanks(58) + "\n    " + blanks(100) + '^'
                         + QByteArray(99, '~'));
        longLine("one character more before", 101, 100, 60,
                 "    …" + blanks(100) + '"' + dots(98) + "\"]}" + blanks(58) + "\n    " + blanks(101) + '^'
                         + QByteArray(99, '~'));
        longLine("one character more to mark", 100, 101, 59,
                 "    " + blanks(100) + '"' + dots(99) + "\"]}" + blanks(57) + "\n    " + blanks(100) + '^'
                         + QByteArray(99, '~'));
        longLine("one character more behind", 100, 100, 61,
                 "    " + blanks(100) + '"' + dots(98) + "\"]}" + blanks(58) + "…\n    " + blanks(100) + '^'
                         + QByteArray(99, '~'));
        row("wide characters before",
            "{\"gestures\": [], \"$schema\": \"" + QByteArray("\u7a93").repeated(150) + "\", \"y\": 0}",
            "FILE:1:183: warning: unknown key 'y' [unknown-key]\n    …" + QByteArray("\u7a93").repeated(97)
                    + "\", \"y\": 0}\n    " + blanks(198)
                    + "^~~\n    hint: Known keys: zones, actions, actionGroups, gestures, $schema\n");
        row("wide characters to mark",
            "{\"gestures\": [\n{\"" + QByteArray("\u7a93").repeated(150) + "\": 5}, 5], \""
                    + QByteArray("\u7a93").repeated(150) + "\": 0}",
            "FILE:2:1: error: 'kind' is obligatory field [refused]\n    {\"" + QByteArray("\u7a93").repeated(98)
                    + QByteArray("\u7a93").repeated(52) + "\": 5}, 5…\n    ^" + QByteArray(197, '~') + hint);
        // Each is two of Qt's characters: half of one is neither shown nor escaped.
        const QByteArray smile = "\U0001f600";
        const QByteArray known = "\n    hint: Known keys: zones, actions, actionGroups, gestures, $schema\n";
        row("half a character before", "{\"gestures\": [], \"$schema\": \"" + smile.repeated(100) + "\", \"y\": 0}",
            "FILE:1:133: warning: unknown key 'y' [unknown-key]\n    …" + smile.repeated(48) + "\", \"y\": 0}\n    "
                    + blanks(100) + "^~~" + known);
        row("a whole character before", "{\"gestures\": [], \"$schema\":  \"" + smile.repeated(100) + "\",  \"y\": 0}",
            "FILE:1:135: warning: unknown key 'y' [unknown-key]\n    …" + smile.repeated(48) + "\",  \"y\": 0}\n    "
                    + blanks(101) + "^~~" + known);
        row("half a character behind", "{\"gestures\": [], \"y\": \"" + smile.repeated(100) + "\"}",
            "FILE:1:18: warning: unknown key 'y' [unknown-key]\n    {\"gestures\": [], \"y\": \"" + smile.repeated(28)
                    + "…\n    " + blanks(17) + "^~~" + known);
        row("a whole character behind", "{\"gestures\": [], \"y\":  \"" + smile.repeated(100) + "\"}",
            "FILE:1:18: warning: unknown key 'y' [unknown-key]\n    {\"gestures\": [], \"y\":  \"" + smile.repeated(28)
                    + "…\n    " + blanks(17) + "^~~" + known);
        row("half a character to mark", "{\"gestures\": [\n\"" + smile.repeated(60) + "\"]}",
            "FILE:2:1: " + noGesture + "    \"" + smile.repeated(60) + "\"]}\n    ^" + QByteArray(98, '~') + hint);
        row("a name in the hint",
            "{\"gestures\": [{\"kind\": \"tap\", \"zone\":\n\"lamp\", \"defaultAction\": {\"path\": \"a\", \"title\": "
            "\"A\"}}],"
            " \"zones\": {\"lam\\u001bp\": \"left\"}}",
            "FILE:2:1: error: zone 'lamp' not defined [refused]\n"
            "    \"lamp\", \"defaultAction\": {\"path\": \"a\", \"title\": \"A\"}}], \"zones\": {…\n"
            "    ^~~~~~\n"
            "    hint: Did you mean 'lam\\x1bp'?\n");
        row("an empty file", "",
            "FILE:1:1: error: illegal value [syntax]\n    hint: The document is empty. The application has no gestures "
            "then.\n");
        row("a long line",
            "{\"gestures\": [], \"x\": \"" + QByteArray(1000, '.') + "\", \"y\": [" + QByteArray(1000, ' ') + "]}",
            "FILE:1:18: warning: unknown key 'x' [unknown-key]\n"
            "    {\"gestures\": [], \"x\": \""
                    + QByteArray(57, '.')
                    + "…\n"
                      "                     ^~~\n"
                      "    hint: Known keys: zones, actions, actionGroups, gestures, $schema\n");
    }

    void report()
    {
        QFETCH(QByteArray, text);
        const QString file = m_tree->root() + "/cfg.json";
        testing::writeFile(file, text);
        Check check;
        check.configuration(file);
        const Findings findings = check.findings();
        const auto first = std::find_if(findings.list().cbegin(), findings.list().cend(),
                                        [](const Finding &one) { return !isOf(one, "not-strict"); });
        QTEST(toText(*first).replace(file, "FILE"), "expected");
    }

    // Only ids identify rules: each reported id is a rule's, and each rule is reported somewhere.
    void rules()
    {
        QStringList ids;
        QSet<int> numbers;
        for (const Rule *rule : allRules()) {
            ids.append(rule->id);
            numbers.insert(rule->number);
            QCOMPARE(&ruleOf(rule->id), rule);
        }
        QCOMPARE(numbers.size(), ids.size());
        QCOMPARE(*std::min_element(numbers.cbegin(), numbers.cend()), 1);
        QCOMPARE(*std::max_element(numbers.cbegin(), numbers.cend()), ids.size());

        const QRegularExpression report("\\badd\\(\\s*\"([^\"]*)\"");
        QSet<QString> reported;
        QDirIterator sources(SOURCE_DIR "/tools/analysis", {"*.cpp"}, QDir::Files, QDirIterator::Subdirectories);
        while (sources.hasNext()) {
            const QString text = QString::fromUtf8(testing::readFile(sources.next()));
            auto reports = report.globalMatch(text);
            while (reports.hasNext())
                reported.insert(reports.next().captured(1));
        }
        QStringList found = reported.values();
        found.sort();
        ids.sort();
        QCOMPARE(found, ids);
    }

    // The manual's table lists exactly the rules.
    void manual()
    {
        const QString manual = QString::fromUtf8(testing::readFile(SOURCE_DIR "/docs/gesturectl.md"));
        QString table = "| rule | | what is found | what to do |\n|---|---|---|---|\n";
        for (const Rule *rule : allRules())
            table += QStringLiteral("| `%1` | %2 | %3 | %4 |\n")
                             .arg(rule->id, rule->severity == Severity::Error ? "error" : "warning", rule->meaning,
                                  rule->hint);
        QVERIFY2(manual.contains(table), qPrintable(table));
    }

    // For any fault in a file, an error is found exactly when the library refuses it.
    void agreesWithTheLibrary()
    {
        const QByteArray sample =
                testing::readFile(SOURCE_DIR "/examples/data/vellix/config/gestures/apps/default/reader/cfg.json");
        const QJsonObject root = QJsonDocument::fromJson(sample).object();
        const QVector<QJsonValue> values{QJsonValue::Null,
                                         true,
                                         2.5,
                                         "x",
                                         "whole",
                                         QJsonArray(),
                                         QJsonObject(),
                                         QJsonArray{"page/next"},
                                         QJsonObject{{"path", "view/close"}, {"title", "T"}}};
        const QString file = m_tree->root() + "/cfg.json";
        int refused = 0;
        int taken = 0;
        int count = 0;
        const auto compare = [&](const QJsonObject &changed) {
            if (++count % 13) // a sample
                return;
            testing::writeFile(file, QJsonDocument(changed).toJson());
            Check check({QStringList()});
            check.configuration(file);
            Findings findings = check.findings();
            findings.drop({"unsaveable-action"}); // only the next load refuses it
            QObject owner;
            const Device device({});
            const auto read = Configuration::loadJson(file, &device, GestureService::predefinedZones, {}, &owner);
            ++(read.isRight() ? taken : refused);
            if ((findings.count(Severity::Error) == 0) != read.isRight())
                QFAIL(qPrintable(testing::failure(read) + '\n' + shown(findings) + '\n'
                                 + QJsonDocument(changed).toJson()));
            // The findings contain the loader's message, unless it names another id than the duplicate one because it
            // only compares neighbours.
            const QString words = testing::failure(read);
            if (read.isLeft() && !words.contains("dublicate") && !shown(findings).contains(words))
                QFAIL(qPrintable(words + '\n' + shown(findings)));
        };
        const std::function<void(const QJsonValue &, const std::function<void(const QJsonValue &)> &)> change =
                [&](const QJsonValue &value, const std::function<void(const QJsonValue &)> &with) {
                    for (const QJsonValue &other : values)
                        with(other);
                    if (value.isObject()) {
                        const QJsonObject object = value.toObject();
                        for (const QString &key : object.keys()) {
                            QJsonObject less = object;
                            less.remove(key);
                            with(less);
                            change(object.value(key), [&](const QJsonValue &inner) {
                                QJsonObject changed = object;
                                changed.insert(key, inner);
                                with(changed);
                            });
                        }
                    }
                    if (value.isArray()) {
                        const QJsonArray array = value.toArray();
                        for (int i = 0; i < array.size(); ++i) {
                            QJsonArray more = array;
                            more.insert(i, array.at(i));
                            with(more);
                            change(array.at(i), [&](const QJsonValue &inner) {
                                QJsonArray changed = array;
                                changed.replace(i, inner);
                                with(changed);
                            });
                        }
                    }
                };
        change(root, [&](const QJsonValue &changed) {
            if (changed.isObject() && !QTest::currentTestFailed())
                compare(changed.toObject());
        });
        qInfo("%d refused, %d taken", refused, taken);
        QVERIFY(refused > 50 && taken > 50);
    }

private:
    std::unique_ptr<DataTree> m_tree;
};

QTEST_GUILESS_MAIN(tst_Check)
#include "tst_check.moc"
