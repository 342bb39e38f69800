#include "testing.h"

#include <gesture_api/gesture.h>

#include <QJsonDocument>
#include <QMetaEnum>
#include <QRandomGenerator>

#include <cstring>
#include <limits>

using namespace vellix;
using namespace vellix::gesture;
using testing::failure;
using testing::failureFile;
using testing::json;
using testing::jsonMap;

using Bindings = QMap<QString, QString>;
using ZoneMap = QMap<QString, QRectF>;

namespace {
/// Names for entries: actions x and y, an unsupported action u, a group g of x and y, a zone left.
struct Known
{
    testing::Features features{{"lamp", true}, {"wings", false}};
    QObject owner;
    QList<Action *> actions{action("x"), action("y"), action("u", features.allFeatures())};
    QMap<QString, QList<Action *>> groups{{QStringLiteral("g"), actions.mid(0, 2)}};
    ZoneMap zones{{QStringLiteral("left"), QRectF(0, 0.2, 0.25, 0.6)}};
    QObject parent;

    Action *action(const char *path, const QList<Feature *> &needs = {})
    {
        return new Action(QString::fromLatin1(path), {}, needs, &owner);
    }
    Either<Error, Gesture *> read(const QVariantMap &entry, const Bindings &bindings = {})
    {
        return Gesture::fromVariant(entry, &features, actions, groups, zones, bindings, &parent);
    }
    Either<Error, QList<Gesture *>> readList(const QVariantList &list, const Bindings &bindings = {})
    {
        return Gesture::listFromVariant(list, &features, actions, groups, zones, bindings, &parent);
    }
    QList<Gesture *> gestures() const { return parent.findChildren<Gesture *>(); }
};
}

static QString text(const QRectF &zone)
{
    QStringList numbers;
    for (double number : {zone.x(), zone.y(), zone.width(), zone.height()})
        numbers.append(QString::number(number, 'g', QLocale::FloatingPointShortest));
    return numbers.join(QLatin1Char(' '));
}

template <class Enum>
static QString key(Enum value)
{
    return QString::fromLatin1(QMetaEnum::fromType<Enum>().valueToKey(value));
}

static QString pathOf(const Action *action)
{
    return action ? action->path() : QStringLiteral("none");
}

/// "ID [MODES] KIND ZONE DIRECTION, AVAILABLE, DEFAULT, CURRENT, FEATURES"
static QString picture(const Gesture &gesture)
{
    QStringList available;
    for (const Action *action : gesture.availableActions())
        available.append(pathOf(action));
    QStringList features;
    for (const Feature *feature : gesture.featureList())
        features.append(feature->name());
    features.sort();
    const QStringList identity{gesture.id(),
                               QLatin1Char('[') + gesture.modes().join(QLatin1Char('|')) + QLatin1Char(']'),
                               key(gesture.kind()), text(gesture.zone()), key(gesture.direction())};
    return QStringList{identity.join(QLatin1Char(' ')), available.join(QLatin1Char('|')),
                       pathOf(gesture.defaultAction()), pathOf(gesture.currentAction()),
                       features.join(QLatin1Char('|'))}
            .join(QStringLiteral(", "));
}

static QString outcome(const Either<Error, Gesture *> &result)
{
    return result.isRight() ? picture(*result.right()) : failure(result);
}

static QString sourceFile(const QString &family)
{
    return QStringLiteral("../../../gesture_api/src/") + family;
}

static QByteArray compact(const QVariant &value)
{
    return QJsonDocument::fromVariant(value).toJson(QJsonDocument::Compact);
}

/// The value with `path` in place of every "@", sharing its bytes.
static QVariant planted(const QVariant &value, const QString &path)
{
    if (value.type() == QVariant::String)
        return value == QStringLiteral("@") ? path : value;
    if (value.type() == QVariant::List) {
        QVariantList list;
        for (const QVariant &element : value.toList())
            list.append(planted(element, path));
        return list;
    }
    QVariantMap map = value.toMap();
    for (QVariant &element : map)
        element = planted(element, path);
    return value.type() == QVariant::Map ? map : value;
}

class tst_GestureCodec : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void entry_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *name, const char *entry, const char *expected) {
            QTest::newRow(name) << entry << expected;
        };
        row("zone by name", R"({"kind": "tap", "zone": "left", "defaultAction": "x"})",
            "TapLeftNoDirection [] Tap 0 0.2 0.25 0.6 NoDirection, , x, x, ");
        row("direction only", R"({"kind": "Swipe", "direction": "toLeft", "currentAction": "x"})",
            "SwipeNotSetToLeft [] Swipe 0 0 1 1 ToLeft, , none, x, ");
        row("zone and direction", R"({"kind": "drag", "zone": "left", "direction": "toTop", "currentAction": "x"})",
            "DragLeftToTop [] Drag 0 0.2 0.25 0.6 ToTop, , none, x, ");
        row("zone by rectangle",
            R"({"kind": "hold", "zone": {"x": 0.1, "y": 0.2, "w": 0.3, "h": 0.4}, "currentAction": "x"})",
            "Hold(0.1,0.2,0.3,0.4)NoDirection [] Hold 0.1 0.2 0.3 0.4 NoDirection, , none, x, ");
        row("a rectangle's name has six digits, its numbers have all",
            R"({"kind": "tap", "zone": {"x": 0.123456789, "y": 1e-7, "w": 1234567, "h": -2}, "currentAction": "x"})",
            "Tap(0.123457,1e-07,1.23457e+06,-2)NoDirection [] Tap 0.123456789 1e-07 1234567 -2 NoDirection, "
            ", none, x, ");
        row("direction said to be no", R"({"kind": "tap", "direction": "no", "currentAction": "x"})",
            "TapNotSetNoDirection [] Tap 0 0 1 1 NoDirection, , none, x, ");
        row("other keys are ignored",
            R"({"kind": "tap", "zone": "left", "defaultAction": "x", "Modes": 5, "supported": false})",
            "TapLeftNoDirection [] Tap 0 0.2 0.25 0.6 NoDirection, , x, x, ");

        row("modes are sorted, each once",
            R"({"modes": ["b", "a", "b"], "kind": "tap", "zone": "left", "defaultAction": "x"})",
            "ABTapLeftNoDirection [a|b] Tap 0 0.2 0.25 0.6 NoDirection, , x, x, ");
        row("modes in capitals come first",
            R"({"modes": ["a", "B"], "kind": "tap", "zone": "left", "defaultAction": "x"})",
            "BATapLeftNoDirection [B|a] Tap 0 0.2 0.25 0.6 NoDirection, , x, x, ");
        row("modes become texts", R"({"modes": [2, 1.5, true], "kind": "tap", "zone": "left", "defaultAction": "x"})",
            "1.52TrueTapLeftNoDirection [1.5|2|true] Tap 0 0.2 0.25 0.6 NoDirection, , x, x, ");
        row("no modes", R"({"modes": [], "kind": "tap", "zone": "left", "defaultAction": "x"})",
            "TapLeftNoDirection [] Tap 0 0.2 0.25 0.6 NoDirection, , x, x, ");

        row("id as told", R"({"id": "Mine", "kind": "tap", "zone": "left", "defaultAction": "x"})",
            "Mine [] Tap 0 0.2 0.25 0.6 NoDirection, , x, x, ");
        row("id becomes a text", R"({"id": 5, "kind": "tap", "zone": "left", "defaultAction": "x"})",
            "5 [] Tap 0 0.2 0.25 0.6 NoDirection, , x, x, ");
        row("empty id is an id", R"({"id": "", "kind": "tap", "zone": "left", "defaultAction": "x"})",
            " [] Tap 0 0.2 0.25 0.6 NoDirection, , x, x, ");
        row("null id is there and empty", R"({"id": null, "kind": "tap", "zone": "left", "defaultAction": "x"})",
            " [] Tap 0 0.2 0.25 0.6 NoDirection, , x, x, ");

        row("available: group",
            R"({"id": "i", "kind": "tap", "zone": "left", "availableActions": "g", "currentAction": "y"})",
            "i [] Tap 0 0.2 0.25 0.6 NoDirection, x|y, none, y, ");
        row("available: paths, repeated and unsupported ones too",
            R"({"id": "i", "kind": "tap", "zone": "left", "availableActions": ["y", "u", "y"], "currentAction": "y"})",
            "i [] Tap 0 0.2 0.25 0.6 NoDirection, y|u|y, none, y, ");
        row("available: inline",
            R"({"id": "i", "kind": "tap", "zone": "left", "availableActions": {"path": "p", "title": "P"},
                "currentAction": "y"})",
            "i [] Tap 0 0.2 0.25 0.6 NoDirection, p, none, y, ");
        row("available: mixed list",
            R"({"id": "i", "kind": "tap", "zone": "left", "availableActions": ["x", {"path": "p", "title": "P"}],
                "currentAction": "y"})",
            "i [] Tap 0 0.2 0.25 0.6 NoDirection, x|p, none, y, ");
        row("available: none",
            R"({"id": "i", "kind": "tap", "zone": "left", "availableActions": [], "currentAction": "y"})",
            "i [] Tap 0 0.2 0.25 0.6 NoDirection, , none, y, ");

        row("default and current",
            R"({"id": "i", "kind": "tap", "zone": "left", "defaultAction": "x", "currentAction": "y"})",
            "i [] Tap 0 0.2 0.25 0.6 NoDirection, , x, y, ");
        row("default: one path need not be supported",
            R"({"id": "i", "kind": "tap", "zone": "left", "defaultAction": "u"})",
            "i [] Tap 0 0.2 0.25 0.6 NoDirection, , u, u, ");
        row("default: first supported",
            R"({"id": "i", "kind": "tap", "zone": "left", "defaultAction": ["u", "y", "x"]})",
            "i [] Tap 0 0.2 0.25 0.6 NoDirection, , y, y, ");
        row("default: nothing is read behind the first supported",
            R"({"id": "i", "kind": "tap", "zone": "left", "defaultAction": ["x", "nowhere"]})",
            "i [] Tap 0 0.2 0.25 0.6 NoDirection, , x, x, ");
        row("default: inline among the alternatives",
            R"({"id": "i", "kind": "tap", "zone": "left", "defaultAction": [{"path": "p", "title": "P"}]})",
            "i [] Tap 0 0.2 0.25 0.6 NoDirection, , p, p, ");
        row("current: inline",
            R"({"id": "i", "kind": "tap", "zone": "left", "currentAction": {"path": "p", "titles": ["P"]}})",
            "i [] Tap 0 0.2 0.25 0.6 NoDirection, , none, p, ");
        row("current: need not be supported", R"({"id": "i", "kind": "tap", "zone": "left", "currentAction": "u"})",
            "i [] Tap 0 0.2 0.25 0.6 NoDirection, , none, u, ");

        row("features",
            R"({"id": "i", "kind": "tap", "zone": "left", "defaultAction": "x", "features": ["wings", "lamp"]})",
            "i [] Tap 0 0.2 0.25 0.6 NoDirection, , x, x, lamp|wings");
        row("features, each once",
            R"({"id": "i", "kind": "tap", "zone": "left", "defaultAction": "x", "features": ["lamp", "lamp"]})",
            "i [] Tap 0 0.2 0.25 0.6 NoDirection, , x, x, lamp");
        row("no features", R"({"id": "i", "kind": "tap", "zone": "left", "defaultAction": "x", "features": []})",
            "i [] Tap 0 0.2 0.25 0.6 NoDirection, , x, x, ");
    }

    void entry()
    {
        QFETCH(QString, entry);
        Known known;
        const auto result = known.read(jsonMap(entry.toUtf8()));
        QTEST(outcome(result), "expected");
        VERIFY_RIGHT(result);
        QCOMPARE(result.right()->parent(), &known.parent);
    }

    void namedActionsAreShared()
    {
        Known known;
        const auto entry = jsonMap(
                R"({"kind": "tap", "zone": "left", "availableActions": "g", "defaultAction": ["x"],
                    "currentAction": "y"})");
        const auto first = known.read(entry);
        const auto second = known.read(entry);
        VERIFY_RIGHT(first);
        VERIFY_RIGHT(second);
        for (const Gesture *gesture : {first.right(), second.right()}) {
            QCOMPARE(gesture->availableActions(), known.actions.mid(0, 2));
            QCOMPARE(gesture->defaultAction(), known.actions[0]);
            QCOMPARE(gesture->currentAction(), known.actions[1]);
        }
        QCOMPARE(known.actions[0]->parent(), second.right());
        QCOMPARE(known.actions[2]->parent(), &known.owner);
    }

    void fault_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("family");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *name, const char *entry, const char *expected, const char *family = "gesture") {
            QTest::newRow(name) << entry << family << expected;
        };
        const char *const zoneOrDirection = "either 'zone' or 'direction' fields must be set";
        const char *const anyAction = "either 'defaultAction' or 'currentAction' fields must be set";
        const char *const defaultType = "'defaultAction' must have type `str` or `list<str>`";
        const char *const modesType = "'modes' must have type `list<str>`";
        const char *const kindText = "kind can be only 'tap' or 'swipe' or 'drag'";
        const char *const zoneType = "zone must be either 'str' or 'map'";
        const char *const directionText =
                "direction can be only 'toLeft' or 'toRight' or 'toTop' or 'toBottom' or 'no'";
        const char *const featuresType = "'features' must be list<str>.";

        row("kind missing", R"({"zone": "left", "defaultAction": "x"})", "'kind' is obligatory field");
        row("empty: kind is told", R"({})", "'kind' is obligatory field");
        row("kind before zone and direction", R"({"defaultAction": "x"})", "'kind' is obligatory field");
        row("neither zone nor direction", R"({"kind": "tap", "defaultAction": "x"})", zoneOrDirection);
        row("zone and direction before the kind's text", R"({"kind": "blink", "defaultAction": "x"})", zoneOrDirection);
        row("zone and direction before the actions", R"({"kind": "tap"})", zoneOrDirection);
        row("zone and direction before the default's type", R"({"kind": "tap", "defaultAction": {}})", zoneOrDirection);
        row("neither default nor current", R"({"kind": "tap", "zone": "left"})", anyAction);
        row("available actions are no choice", R"({"kind": "tap", "zone": "left", "availableActions": "g"})",
            anyAction);
        row("actions before the modes' type", R"({"kind": "tap", "zone": "left", "modes": "a"})", anyAction);
        row("actions before the kind's text", R"({"kind": "blink", "zone": "left"})", anyAction);

        row("default an object", R"({"kind": "tap", "zone": "left", "defaultAction": {"path": "x", "title": "X"}})",
            defaultType);
        row("default a number", R"({"kind": "tap", "zone": "left", "defaultAction": 5})", defaultType);
        row("default null, with a current action",
            R"({"kind": "tap", "zone": "left", "defaultAction": null, "currentAction": "x"})", defaultType);
        row("default's type before the modes' type",
            R"({"kind": "tap", "zone": "left", "defaultAction": {}, "modes": "a"})", defaultType);
        row("modes a text", R"({"kind": "tap", "zone": "left", "defaultAction": "x", "modes": "a"})", modesType);
        row("modes null", R"({"kind": "tap", "zone": "left", "defaultAction": "x", "modes": null})", modesType);
        row("modes an object", R"({"kind": "tap", "zone": "left", "defaultAction": "x", "modes": {}})", modesType);
        row("modes' type before the kind's text",
            R"({"kind": "blink", "zone": "left", "defaultAction": "x", "modes": "a"})", modesType);
        row("kind unknown", R"({"kind": "blink", "zone": "left", "defaultAction": "x"})", kindText);
        row("kind null", R"({"kind": null, "zone": "left", "defaultAction": "x"})", kindText);
        row("kind before zone", R"({"kind": "undefined", "zone": 5, "defaultAction": "x"})", kindText);

        row("zone a number", R"({"kind": "tap", "zone": 5, "defaultAction": "x"})", zoneType);
        row("zone null", R"({"kind": "tap", "zone": null, "defaultAction": "x"})", zoneType);
        row("zone null beside a direction", R"({"kind": "tap", "zone": null, "direction": "no", "defaultAction": "x"})",
            zoneType);
        row("zone a list", R"({"kind": "tap", "zone": [0, 0, 1, 1], "defaultAction": "x"})", zoneType);
        row("zone unknown", R"({"kind": "tap", "zone": "right", "defaultAction": "x"})", "zone 'right' not defined");
        row("zone names are case-sensitive", R"({"kind": "tap", "zone": "Left", "defaultAction": "x"})",
            "zone 'Left' not defined");
        row("zone name with a placeholder", R"({"kind": "tap", "zone": "%1", "defaultAction": "x"})",
            "zone '%1' not defined");
        row("rectangle without height", R"({"kind": "tap", "zone": {"x": 0, "y": 0, "w": 1}, "defaultAction": "x"})",
            "field 'h' must be set");
        row("zone before direction", R"({"kind": "tap", "zone": "right", "direction": 5, "defaultAction": "x"})",
            "zone 'right' not defined");
        row("direction in another case", R"({"kind": "swipe", "direction": "ToLeft", "defaultAction": "x"})",
            directionText);
        row("direction null", R"({"kind": "swipe", "direction": null, "defaultAction": "x"})", directionText);
        row("direction before available actions",
            R"({"kind": "swipe", "direction": "up", "availableActions": 5, "defaultAction": "x"})", directionText);

        row("available a number", R"({"kind": "tap", "zone": "left", "availableActions": 5, "defaultAction": "x"})",
            "action list must be one of types: 'str', 'list', 'map'", "action");
        row("available null", R"({"kind": "tap", "zone": "left", "availableActions": null, "defaultAction": "x"})",
            "action list must be one of types: 'str', 'list', 'map'", "action");
        row("available: a text is a group",
            R"({"kind": "tap", "zone": "left", "availableActions": "x", "defaultAction": "x"})",
            "action group 'x' not defined", "action");
        row("available: a text in a list is an action",
            R"({"kind": "tap", "zone": "left", "availableActions": ["x", "g"], "defaultAction": "x"})",
            "action 'g' not defined", "action");
        row("available before default",
            R"({"kind": "tap", "zone": "left", "availableActions": "h", "defaultAction": "nowhere"})",
            "action group 'h' not defined", "action");
        row("default unknown", R"({"kind": "tap", "zone": "left", "defaultAction": "nowhere"})",
            "action 'nowhere' not defined", "action");
        row("default: an unknown alternative", R"({"kind": "tap", "zone": "left", "defaultAction": ["nowhere", "x"]})",
            "action 'nowhere' not defined", "action");
        row("default: a wrong alternative", R"({"kind": "tap", "zone": "left", "defaultAction": [5, "x"]})",
            "'Action' must be either 'str' or 'map'", "action");
        row("default: none supported", R"({"kind": "tap", "zone": "left", "defaultAction": ["u", "u"]})",
            "no one action is supported of list: [ u, u ]", "action");
        row("default: no alternatives", R"({"kind": "tap", "zone": "left", "defaultAction": [], "currentAction": "x"})",
            "no one action is supported of list: [  ]", "action");
        row("default before current",
            R"({"kind": "tap", "zone": "left", "defaultAction": "nowhere", "currentAction": "never"})",
            "action 'nowhere' not defined", "action");
        row("current unknown", R"({"kind": "tap", "zone": "left", "defaultAction": "x", "currentAction": "never"})",
            "action 'never' not defined", "action");
        row("current a list", R"({"kind": "tap", "zone": "left", "currentAction": ["x"]})",
            "'Action' must be either 'str' or 'map'", "action");
        row("current null", R"({"kind": "tap", "zone": "left", "defaultAction": "x", "currentAction": null})",
            "'Action' must be either 'str' or 'map'", "action");
        row("current before features",
            R"({"kind": "tap", "zone": "left", "currentAction": "never", "features": "lamp"})",
            "action 'never' not defined", "action");
        row("features a text", R"({"kind": "tap", "zone": "left", "defaultAction": "x", "features": "lamp"})",
            featuresType);
        row("features null", R"({"kind": "tap", "zone": "left", "defaultAction": "x", "features": null})",
            featuresType);
        row("feature unknown", R"({"kind": "tap", "zone": "left", "defaultAction": "x", "features": ["Lamp"]})",
            "unknown feature: `Lamp`", "feature");
        row("features of an inline action",
            R"({"kind": "tap", "zone": "left", "currentAction": {"path": "p", "title": "P", "features": ["tail"]}})",
            "unknown feature: `tail`", "feature");
    }

    void fault()
    {
        QFETCH(QString, entry);
        QFETCH(QString, family);
        Known known;
        const auto result = known.read(jsonMap(entry.toUtf8()));
        QTEST(outcome(result), "expected");
        QCOMPARE(failureFile(result), sourceFile(family));
        QVERIFY(known.gestures().isEmpty());
        for (const Action *action : qAsConst(known.actions))
            QCOMPARE(action->parent(), &known.owner);
    }

    void stringLists_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QStringList>("value");
        QTest::addColumn<QString>("expected");
        const QString pictured = QStringLiteral("TapLeftNoDirection [] Tap 0 0.2 0.25 0.6 NoDirection, , %1, %1, ");
        QTest::newRow("default") << "defaultAction" << QStringList{QStringLiteral("u"), QStringLiteral("y")}
                                 << pictured.arg(QStringLiteral("y"));
        QTest::newRow("default, none supported")
                << "defaultAction" << QStringList{QStringLiteral("u")} << "no one action is supported of list: [ u ]";
        QTest::newRow("default, empty") << "defaultAction" << QStringList()
                                        << "no one action is supported of list: [  ]";
        QTest::newRow("modes") << "modes" << QStringList{QStringLiteral("a")} << "'modes' must have type `list<str>`";
        QTest::newRow("features") << "features" << QStringList{QStringLiteral("lamp")}
                                  << "'features' must be list<str>.";
        QTest::newRow("available") << "availableActions" << QStringList{QStringLiteral("x")}
                                   << "action list must be one of types: 'str', 'list', 'map'";
        QTest::newRow("current") << "currentAction" << QStringList{QStringLiteral("x")}
                                 << "'Action' must be either 'str' or 'map'";
        QTest::newRow("zone") << "zone" << QStringList{QStringLiteral("left")} << "zone must be either 'str' or 'map'";
    }

    void stringLists()
    {
        QFETCH(QString, field);
        QFETCH(QStringList, value);
        Known known;
        QVariantMap entry = jsonMap(R"({"kind": "tap", "zone": "left", "defaultAction": "x"})");
        entry.insert(field, value);
        QTEST(outcome(known.read(entry)), "expected");
    }

    void bindings_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<Bindings>("bindings");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *name, const char *entry, const char *id, const char *path,
                            const char *expected) {
            QTest::newRow(name) << entry << Bindings{{QString::fromLatin1(id), QString::fromLatin1(path)}} << expected;
        };
        const char *const plain = R"({"kind": "tap", "zone": "left", "defaultAction": "x"})";
        row("formed id", plain, "TapLeftNoDirection", "y",
            "TapLeftNoDirection [] Tap 0 0.2 0.25 0.6 NoDirection, , y, y, ");
        row("told id", R"({"id": "i", "kind": "tap", "zone": "left", "defaultAction": "x"})", "i", "y",
            "i [] Tap 0 0.2 0.25 0.6 NoDirection, , y, y, ");
        row("empty id", R"({"id": "", "kind": "tap", "zone": "left", "defaultAction": "x"})", "", "y",
            " [] Tap 0 0.2 0.25 0.6 NoDirection, , y, y, ");
        row("another id", plain, "tapLeftNoDirection", "y",
            "TapLeftNoDirection [] Tap 0 0.2 0.25 0.6 NoDirection, , x, x, ");
        row("the entry's current action stays",
            R"({"id": "i", "kind": "tap", "zone": "left", "defaultAction": "u", "currentAction": "x"})", "i", "y",
            "i [] Tap 0 0.2 0.25 0.6 NoDirection, , y, x, ");
        row("a default where the entry has none", R"({"id": "i", "kind": "tap", "zone": "left", "currentAction": "x"})",
            "i", "y", "i [] Tap 0 0.2 0.25 0.6 NoDirection, , y, x, ");
        row("the bound action need not be supported", plain, "TapLeftNoDirection", "u",
            "TapLeftNoDirection [] Tap 0 0.2 0.25 0.6 NoDirection, , u, u, ");
        row("the entry's default is not read",
            R"({"id": "i", "kind": "tap", "zone": "left", "defaultAction": "nowhere"})", "i", "y",
            "i [] Tap 0 0.2 0.25 0.6 NoDirection, , y, y, ");
        row("nor its alternatives", R"({"id": "i", "kind": "tap", "zone": "left", "defaultAction": [5]})", "i", "y",
            "i [] Tap 0 0.2 0.25 0.6 NoDirection, , y, y, ");
        row("but its type is", R"({"id": "i", "kind": "tap", "zone": "left", "defaultAction": {}})", "i", "y",
            "'defaultAction' must have type `str` or `list<str>`");
        row("no binding makes up for no action", R"({"id": "i", "kind": "tap", "zone": "left"})", "i", "y",
            "either 'defaultAction' or 'currentAction' fields must be set");
        row("unknown path: the entry's default is no fallback", plain, "TapLeftNoDirection", "nowhere",
            "action 'nowhere' not defined");
        row("a path is never a group", plain, "TapLeftNoDirection", "g", "action 'g' not defined");
        row("empty path", plain, "TapLeftNoDirection", "", "action '' not defined");
        row("bound action before current", R"({"id": "i", "kind": "tap", "zone": "left", "currentAction": "never"})",
            "i", "nowhere", "action 'nowhere' not defined");
        row("available before bound action",
            R"({"id": "i", "kind": "tap", "zone": "left", "availableActions": "h", "currentAction": "x"})", "i",
            "nowhere", "action group 'h' not defined");
    }

    void bindings()
    {
        QFETCH(QString, entry);
        QFETCH(Bindings, bindings);
        Known known;
        QTEST(outcome(known.read(jsonMap(entry.toUtf8()), bindings)), "expected");
    }

    void ofTwoActionsWithOnePathTheLaterIsMeant()
    {
        Known known;
        Action *later = known.action("x");
        known.actions.append(later);
        const QVariantMap entry = jsonMap(R"({"kind": "tap", "zone": "left", "defaultAction": "x"})");
        const auto one = known.read(entry);
        VERIFY_RIGHT(one);
        QCOMPARE(one.right()->defaultAction(), later);
        const auto listed = known.readList({entry}, {{QStringLiteral("TapLeftNoDirection"), QStringLiteral("x")}});
        VERIFY_RIGHT(listed);
        QCOMPARE(listed.right().first()->defaultAction(), later);
    }

    void withoutAFeaturesProvider()
    {
        Known known;
        QVariantMap entry = jsonMap(R"({"kind": "tap", "zone": "left", "defaultAction": "x", "features": []})");
        const auto read = [&] {
            return Gesture::fromVariant(entry, nullptr, known.actions, {}, known.zones, {}, &known.parent);
        };
        VERIFY_RIGHT(read());
        entry.insert(QStringLiteral("features"), QVariantList{QStringLiteral("lamp")});
        QCOMPARE(failure(read()), QStringLiteral("unknown feature: `lamp`"));
    }

    void list_data()
    {
        QTest::addColumn<QString>("list");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<QString>("made");
        const auto row = [](const char *name, const char *list, const char *expected, const char *made) {
            QTest::newRow(name) << list << expected << made;
        };
        row("empty", R"([])", "", "");
        row("input order, no sorting",
            R"([{"id": "b", "kind": "tap", "zone": "left", "defaultAction": "x"},
                {"id": "a", "kind": "tap", "zone": "left", "defaultAction": "x"},
                {"id": "b", "kind": "tap", "zone": "left", "defaultAction": "x"}])",
            "b a b", "b a b");
        row("a text", R"(["a"])", "list of gestures must must contain maps", "");
        row("null", R"([null])", "list of gestures must must contain maps", "");
        row("a list", R"([[]])", "list of gestures must must contain maps", "");
        row("an entry's fault before a later element's type", R"([{}, "a"])", "'kind' is obligatory field", "");
        row("an element's type before a later entry's fault", R"(["a", {}])", "list of gestures must must contain maps",
            "");
        row("gestures made before a fault stay with the parent",
            R"([{"id": "a", "kind": "tap", "zone": "left", "defaultAction": "x"},
                {"id": "b", "kind": "tap", "zone": "left", "defaultAction": "y"}, {"kind": "tap"},
                {"id": "c", "kind": "tap", "zone": "left", "defaultAction": "x"}])",
            "either 'zone' or 'direction' fields must be set", "a b");
    }

    void list()
    {
        QFETCH(QString, list);
        Known known;
        const auto result = known.readList(json(list.toUtf8()).toList());
        const auto ids = [](const QList<Gesture *> &gestures) {
            QStringList names;
            for (const Gesture *gesture : gestures)
                names.append(gesture->id());
            return names.join(QLatin1Char(' '));
        };
        QTEST(result.isRight() ? ids(result.right()) : failure(result), "expected");
        QTEST(ids(known.gestures()), "made");
        if (result.isLeft())
            QCOMPARE(failureFile(result), sourceFile(QStringLiteral("gesture")));
    }

    void untakenActionsAreFreed_data()
    {
        QTest::addColumn<QString>("entry"); // "@" stands for the path of the watched action
        QTest::addColumn<QString>("expected");
        QTest::addColumn<bool>("taken");
        const auto row = [](const char *name, const char *entry, const char *expected, bool taken = false) {
            QTest::newRow(name) << entry << expected << taken;
        };
        row("available, then the default fails",
            R"({"id": "i", "kind": "tap", "zone": "left", "availableActions": {"path": "@", "title": "P"},
                "defaultAction": "nowhere"})",
            "action 'nowhere' not defined");
        row("available, then the next of the list fails",
            R"({"id": "i", "kind": "tap", "zone": "left", "availableActions": [{"path": "@", "title": "P"}, 5],
                "defaultAction": "x"})",
            "'Action' must be either 'str' or 'map'");
        row("default, then current fails",
            R"({"id": "i", "kind": "tap", "zone": "left", "defaultAction": [{"path": "@", "title": "P"}],
                "currentAction": "never"})",
            "action 'never' not defined");
        row("current, then features fail",
            R"({"id": "i", "kind": "tap", "zone": "left",
                "currentAction": {"path": "@", "title": "P"}, "features": 5})",
            "'features' must be list<str>.");
        row("an alternative passed over",
            R"({"id": "i", "kind": "tap", "zone": "left",
                "defaultAction": [{"path": "@", "title": "P", "features": ["wings"]}, "x"]})",
            "i [] Tap 0 0.2 0.25 0.6 NoDirection, , x, x, ");
        row("available, taken",
            R"({"id": "i", "kind": "tap", "zone": "left", "availableActions": {"path": "@", "title": "P"},
                "defaultAction": "x"})",
            "i [] Tap 0 0.2 0.25 0.6 NoDirection, inline, x, x, ", true);
        row("default, taken",
            R"({"id": "i", "kind": "tap", "zone": "left", "defaultAction": [{"path": "@", "title": "P"}],
                "currentAction": "x"})",
            "i [] Tap 0 0.2 0.25 0.6 NoDirection, , inline, x, ", true);
        row("current, taken",
            R"({"id": "i", "kind": "tap", "zone": "left", "currentAction": {"path": "@", "title": "P"}})",
            "i [] Tap 0 0.2 0.25 0.6 NoDirection, , none, inline, ", true);
    }

    void untakenActionsAreFreed()
    {
        QFETCH(QString, entry);
        QFETCH(bool, taken);
        // An action shares the text of its path: the text has no other user once the action is destroyed.
        const QString path = QString::fromLatin1("inline");
        QVariant watched = planted(jsonMap(entry.toUtf8()), path);
        QVERIFY(!path.isDetached());
        {
            Known known;
            QTEST(outcome(known.read(watched.toMap())), "expected");
            const auto listed = known.readList({watched});
            QCOMPARE(listed.isRight(), known.gestures().size() == 2);
            watched.clear();
            QCOMPARE(path.isDetached(), !taken);
        }
        QVERIFY(path.isDetached());
    }

    void kind_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("expected");
        const QString refused = QStringLiteral("kind can be only 'tap' or 'swipe' or 'drag'");
        for (const char *name : {"tap", "TAP", "Tap", "tAp"})
            QTest::newRow(name) << json('"' + QByteArray(name) + '"') << "Tap";
        QTest::newRow("hold is accepted") << json(R"("Hold")") << "Hold";
        QTest::newRow("swipe") << json(R"("sWIPE")") << "Swipe";
        QTest::newRow("drag") << json(R"("drag")") << "Drag";
        QTest::newRow("byte array becomes text") << QVariant(QByteArray("tap")) << "Tap";
        QTest::newRow("undefined is no kind") << json(R"("undefined")") << refused;
        QTest::newRow("empty") << json(R"("")") << refused;
        QTest::newRow("blank behind") << json(R"("tap ")") << refused;
        QTest::newRow("number") << json("0") << refused;
        QTest::newRow("list") << json(R"(["tap"])") << refused;
        QTest::newRow("invalid") << QVariant() << refused;
    }

    void kind()
    {
        QFETCH(QVariant, value);
        const auto result = Gesture::kindFromVariant(value);
        QTEST(result.isRight() ? key(result.right()) : failure(result), "expected");
        if (result.isLeft())
            QCOMPARE(failureFile(result), sourceFile(QStringLiteral("gesture")));
    }

    void direction_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("expected");
        const QString refused =
                QStringLiteral("direction can be only 'toLeft' or 'toRight' or 'toTop' or 'toBottom' or 'no'");
        QTest::newRow("toLeft") << json(R"("toLeft")") << "ToLeft";
        QTest::newRow("toRight") << json(R"("toRight")") << "ToRight";
        QTest::newRow("toTop") << json(R"("toTop")") << "ToTop";
        QTest::newRow("toBottom") << json(R"("toBottom")") << "ToBottom";
        QTest::newRow("no") << json(R"("no")") << "NoDirection";
        QTest::newRow("ToLeft: case counts") << json(R"("ToLeft")") << refused;
        QTest::newRow("toleft: case counts") << json(R"("toleft")") << refused;
        QTest::newRow("No: case counts") << json(R"("No")") << refused;
        QTest::newRow("NoDirection") << json(R"("NoDirection")") << refused;
        QTest::newRow("empty") << json(R"("")") << refused;
        QTest::newRow("number") << json("0") << refused;
        QTest::newRow("invalid") << QVariant() << refused;
    }

    void direction()
    {
        QFETCH(QVariant, value);
        const auto result = Gesture::directionFromVariant(value);
        QTEST(result.isRight() ? key(result.right()) : failure(result), "expected");
        if (result.isLeft())
            QCOMPARE(failureFile(result), sourceFile(QStringLiteral("gesture")));
    }

    void written_data()
    {
        QTest::addColumn<int>("value");
        QTest::addColumn<QVariant>("kind");
        QTest::addColumn<QVariant>("direction");
        const auto row = [](const char *name, int value, const QVariant &kind, const char *direction) {
            QTest::newRow(name) << value << kind << QVariant(QString::fromLatin1(direction));
        };
        row("first", 0, QStringLiteral("tap"), "toLeft");
        row("second", 1, QStringLiteral("hold"), "toRight");
        row("third", 2, QStringLiteral("swipe"), "toTop");
        row("fourth", 3, QStringLiteral("drag"), "toBottom");
        row("none", 4, QVariant(), "no");
        row("outside the enums", 7, QVariant(), "no");
    }

    void written()
    {
        QFETCH(int, value);
        QFETCH(QVariant, kind);
        QFETCH(QVariant, direction);
        const auto asKind = static_cast<Gesture::Kind>(value);
        const auto asDirection = static_cast<Gesture::Direction>(value);
        QCOMPARE(Gesture::kindToVariant(asKind), kind);
        QCOMPARE(Gesture::kindToVariant(asKind).isValid(), kind.isValid());
        QCOMPARE(Gesture::directionToVariant(asDirection), direction);
        if (value < 4)
            QCOMPARE(Gesture::kindFromVariant(kind).right(), asKind);
        if (value <= 4)
            QCOMPARE(Gesture::directionFromVariant(direction).right(), asDirection);
    }

    void rectangle_data()
    {
        QTest::addColumn<QString>("map");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *name, const char *map, const char *expected) {
            QTest::newRow(name) << map << expected;
        };
        row("plain", R"({"x": 0.1, "y": 0.2, "w": 0.3, "h": 0.4})", "0.1 0.2 0.3 0.4");
        row("other keys are ignored", R"({"x": 0, "y": 0, "w": 1, "h": 1, "width": 5})", "0 0 1 1");
        row("no range and no sign", R"({"x": -5, "y": 7, "w": -1, "h": 1e300})", "-5 7 -1 1e+300");
        row("texts become numbers", R"({"x": "0.5", "y": "1e-1", "w": true, "h": "wide"})", "0.5 0.1 1 0");
        row("what is no number is 0", R"({"x": null, "y": {}, "w": [1], "h": ""})", "0 0 0 0");
        row("no key: x is told", R"({})", "field 'x' must be set");
        row("x before y", R"({"w": 1, "h": 1})", "field 'x' must be set");
        row("y before w", R"({"x": 0, "h": 1})", "field 'y' must be set");
        row("w before h", R"({"x": 0, "y": 0})", "field 'w' must be set");
        row("only x missing", R"({"y": 0, "w": 1, "h": 1})", "field 'x' must be set");
        row("only y missing", R"({"x": 0, "w": 1, "h": 1})", "field 'y' must be set");
        row("only w missing", R"({"x": 0, "y": 0, "h": 1})", "field 'w' must be set");
        row("only h missing", R"({"x": 0, "y": 0, "w": 1})", "field 'h' must be set");
        row("keys are case-sensitive", R"({"X": 0, "y": 0, "w": 1, "h": 1})", "field 'x' must be set");
    }

    void rectangle()
    {
        QFETCH(QString, map);
        const auto result = Gesture::rectfFromVariant(jsonMap(map.toUtf8()));
        QTEST(result.isRight() ? text(result.right()) : failure(result), "expected");
        if (result.isLeft())
            QCOMPARE(failureFile(result), sourceFile(QStringLiteral("gesture")));
    }

    void rectangleIsWrittenAsDoubles()
    {
        const QVariantMap map = Gesture::rectfToVariant(QRectF(0.1, -2, 3, 0)).toMap();
        QCOMPARE(map,
                 (QVariantMap{{QStringLiteral("x"), 0.1},
                              {QStringLiteral("y"), -2.0},
                              {QStringLiteral("w"), 3.0},
                              {QStringLiteral("h"), 0.0}}));
        for (const QVariant &number : map)
            QCOMPARE(number.userType(), int(QMetaType::Double));
        QCOMPARE(text(Gesture::rectfFromVariant(map).right()), QStringLiteral("0.1 -2 3 0"));
    }

    void zone_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<QString>("name");
        const auto row = [](const char *title, const QVariant &value, const char *expected, const char *name) {
            QTest::newRow(title) << value << expected << name;
        };
        row("name", json(R"("left")"), "0 0.2 0.25 0.6", "left");
        row("unknown name is told too", json(R"("right")"), "zone 'right' not defined", "right");
        row("empty name", json(R"("")"), "zone '' not defined", "");
        row("rectangle", json(R"({"x": 0.1, "y": 0.2, "w": 0.3, "h": 0.4})"), "0.1 0.2 0.3 0.4", "(0.1,0.2,0.3,0.4)");
        row("whole numbers", json(R"({"x": 0, "y": 0.0, "w": 1, "h": 100000})"), "0 0 1 100000", "(0,0,1,100000)");
        row("six digits", json(R"({"x": 0.3333333333333333, "y": 0.6666666666666666, "w": 999999.5, "h": 1e-5})"),
            "0.3333333333333333 0.6666666666666666 999999.5 1e-05", "(0.333333,0.666667,1e+06,1e-05)");
        row("a failed rectangle has no name", json(R"({"x": 0})"), "field 'y' must be set", "before");
        row("number", json("5"), "zone must be either 'str' or 'map'", "UndefinedZone");
        row("null", json("null"), "zone must be either 'str' or 'map'", "UndefinedZone");
        row("list", json("[]"), "zone must be either 'str' or 'map'", "UndefinedZone");
        row("invalid", QVariant(), "zone must be either 'str' or 'map'", "UndefinedZone");
        row("hash", QVariantHash(), "zone must be either 'str' or 'map'", "UndefinedZone");
        row("rectangle as such", QRectF(0, 0, 1, 1), "zone must be either 'str' or 'map'", "UndefinedZone");
    }

    // Names are written as QString::number() writes their numbers.
    void numbersOfNames()
    {
        QRandomGenerator random(1);
        for (int i = 0; i < 50000; ++i) {
            const quint64 bits = random.generate64();
            double any;
            std::memcpy(&any, &bits, sizeof any);
            const double near = random.bounded(3000001) / 1e6 - 1;
            const QString infinite = QStringList{"nan", "inf", "-inf", "-0"}.at(i % 4);
            const QVariantMap map{{"x", any}, {"y", near}, {"w", infinite}, {"h", near * random.bounded(1000000)}};
            QString name;
            const auto zone = Gesture::zoneFromVariant(map, {}, &name);
            const auto number = [](double value) { return QString::number(value, 'g', 6); };
            const QRectF &r = zone.right();
            QCOMPARE(name,
                     QString("(%1,%2,%3,%4)").arg(number(r.x()), number(r.y()), number(r.width()), number(r.height())));
        }
    }

    void zone()
    {
        QFETCH(QVariant, value);
        const ZoneMap zones = Known().zones;
        QString name = QStringLiteral("before");
        const auto result = Gesture::zoneFromVariant(value, zones, &name);
        QTEST(result.isRight() ? text(result.right()) : failure(result), "expected");
        QTEST(name, "name");
        const auto unnamed = Gesture::zoneFromVariant(value, zones, nullptr);
        QCOMPARE(failure(unnamed), failure(result));
        if (result.isLeft())
            QCOMPARE(failureFile(result), sourceFile(QStringLiteral("gesture")));
    }

    void zoneMap_data()
    {
        QTest::addColumn<QString>("section");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *name, const char *section, const char *expected) {
            QTest::newRow(name) << section << expected;
        };
        row("empty", R"({})", "");
        row("own zones only", R"({"b": {"x": 0, "y": 0, "w": 1, "h": 0.5}, "a": "left"})",
            "a: 0 0.2 0.25 0.6; b: 0 0 1 0.5");
        row("a known name may be another's", R"({"left": {"x": 0, "y": 0, "w": 1, "h": 1}, "z": "left"})",
            "left: 0 0 1 1; z: 0 0.2 0.25 0.6");
        row("no alias of an own zone", R"({"a": {"x": 0, "y": 0, "w": 1, "h": 1}, "b": "a"})", "zone 'a' not defined");
        row("no alias of itself", R"({"a": "a"})", "zone 'a' not defined");
        row("first fault in key order", R"({"b": 5, "a": {"x": 0}})", "field 'y' must be set");
        row("wrong type", R"({"a": "left", "b": null})", "zone must be either 'str' or 'map'");
    }

    void zoneMap()
    {
        QFETCH(QString, section);
        const auto result = Gesture::zoneMapFromVariant(jsonMap(section.toUtf8()), Known().zones);
        QStringList shown;
        if (result.isRight()) {
            for (auto entry = result.right().cbegin(); entry != result.right().cend(); ++entry)
                shown.append(entry.key() + QStringLiteral(": ") + text(*entry));
        }
        QTEST(result.isRight() ? shown.join(QStringLiteral("; ")) : failure(result), "expected");
    }

    void toVariant_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *name, const char *entry, const char *expected) {
            QTest::newRow(name) << entry << expected;
        };
        row("everything",
            R"({"id": "i", "modes": ["m"], "kind": "TAP", "zone": "left", "direction": "toTop", "features": ["lamp"],
                "availableActions": ["y", {"path": "p", "titles": ["P", 5]}], "defaultAction": "x",
                   "currentAction": "y"})",
            R"({"availableActions":[{"path":"y","titles":[]},{"path":"p","titles":["P","5"]}],)"
            R"("currentAction":{"path":"y","titles":[]},"defaultAction":{"path":"x","titles":[]},)"
            R"("direction":"toTop","kind":"tap","zone":{"h":0.6,"w":0.25,"x":0,"y":0.2}})");
        row("no default", R"({"kind": "swipe", "direction": "toLeft", "currentAction": "x"})",
            R"({"availableActions":[],"currentAction":{"path":"x","titles":[]},"direction":"toLeft","kind":"swipe",)"
            R"("zone":{"h":1,"w":1,"x":0,"y":0}})");
    }

    void toVariant()
    {
        QFETCH(QString, entry);
        Known known;
        const auto gesture = known.read(jsonMap(entry.toUtf8()));
        VERIFY_RIGHT(gesture);
        const QVariant written = gesture.right()->toVariant();
        QCOMPARE(written.userType(), int(QMetaType::QVariantMap));
        QTEST(QString::fromUtf8(compact(written)), "expected");
    }

    void toVariantOfNoActionsAndNoKind()
    {
        const Gesture gesture(QStringLiteral("i"), {}, Gesture::Undefined, QRectF(0, 0, 1, 1), Gesture::NoDirection,
                              {nullptr}, nullptr, nullptr, {});
        const QVariantMap map = gesture.toVariant().toMap();
        QCOMPARE(map.keys(),
                 (QStringList{QStringLiteral("availableActions"), QStringLiteral("direction"), QStringLiteral("kind"),
                              QStringLiteral("zone")}));
        QVERIFY(!map.value(QStringLiteral("kind")).isValid());
        QCOMPARE(map.value(QStringLiteral("direction")), QVariant(QStringLiteral("no")));
        QCOMPARE(map.value(QStringLiteral("availableActions")), QVariant(QVariantList()));
    }

    void listToVariant()
    {
        Known known;
        const auto list = known.readList(json(R"([{"kind": "tap", "zone": "left", "currentAction": "x"},
                                                  {"kind": "hold", "zone": "left", "currentAction": "y"}])")
                                                 .toList());
        VERIFY_RIGHT(list);
        const QVariant written = Gesture::listToVariant({list.right()[1], nullptr, list.right()[0]});
        QCOMPARE(written.userType(), int(QMetaType::QVariantList));
        QCOMPARE(written.toList(), (QVariantList{list.right()[1]->toVariant(), list.right()[0]->toVariant()}));
        QCOMPARE(Gesture::listToVariant({}), QVariant(QVariantList()));
    }

    void whatIsWrittenIsReadBackWithAFormedId()
    {
        Known known;
        const auto before = known.read(
                jsonMap(R"({"id": "i", "modes": ["m"], "kind": "drag", "zone": "left", "availableActions": "g",
                            "currentAction": {"path": "p", "title": "P"}})"));
        VERIFY_RIGHT(before);
        const auto after = known.readList(json(compact(Gesture::listToVariant({before.right()}))).toList());
        VERIFY_RIGHT(after);
        QCOMPARE(picture(*after.right().first()),
                 QStringLiteral("Drag(0,0.2,0.25,0.6)NoDirection [] Drag 0 0.2 0.25 0.6 NoDirection, x|y, none, p, "));
    }

    void aWrittenDefaultActionIsNotReadBack()
    {
        Known known;
        const auto before = known.read(jsonMap(R"({"kind": "tap", "zone": "left", "defaultAction": "x"})"));
        VERIFY_RIGHT(before);
        QCOMPARE(failure(known.read(jsonMap(compact(before.right()->toVariant())))),
                 QStringLiteral("'defaultAction' must have type `str` or `list<str>`"));
    }
};

QTEST_GUILESS_MAIN(tst_GestureCodec)
#include "tst_gesturecodec.moc"
