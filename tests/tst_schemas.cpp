#include "testing.h"

#include <analysis/format.h>

#include <gesture_api/applicationpaths.h>
#include <gesture_api/configuration.h>
#include <gesture_api/gestureservice.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <algorithm>
#include <functional>
#include <sstream>

using namespace vellix;
using namespace vellix::gesture;
using testing::failure;

namespace {

struct Document
{
    QString name;
    QByteArray text;
};
using Corpus = QVector<Document>;

/// A loader's result for a file: null if it accepts it, else the failure.
using Loader = std::function<QString(const QString &file)>;

enum Taker { SchemaTakesIt, LoaderTakesIt };

/// A document on which schema and loader differ, and why that must be.
struct Difference
{
    const char *document;
    Taker taker;
    const char *reason;
};

/// Documents derived from a sample on which they differ, identified by the loader's message.
struct DifferenceOfSamples
{
    const char *message;
    const char *reason;
};

/// A device that has all known features, or none.
class Device : public testing::Features
{
public:
    explicit Device(bool hasAll)
    {
        const DefaultFeaturesProvider known;
        for (const Feature *feature : known.allFeatures())
            add(feature->name(), hasAll);
    }
};

}

// The members of an object as the check knows them.
using FieldsFunction = const analysis::Fields &(*)();
Q_DECLARE_METATYPE(FieldsFunction)

static const char *const examples = SOURCE_DIR "/examples/data/vellix/config/gestures/";

static const char *const undefinedAction = "no schema knows which actions a document defines";
static const char *const undefinedGroup = "no schema knows which groups a document defines";
static const char *const undefinedZone = "no schema knows which zones a document defines";
static const char *const sameId = "no schema compares neighbours, nor forms ids";
static const char *const cutVersion = "the loader cuts a version to 32 bits, no schema does";
static const char *const unsupported = "no schema knows the device";

static void add(Corpus &corpus, const QString &name, const QByteArray &text)
{
    corpus.append({name, text});
}

// Every type, with values that a conversion might accept.
static const QVector<const char *> values{
        "null", "true",         "false", "0",           "1",
        "-3",   "0.5",          "1e300", R"("")",       R"("text")",
        "[]",   R"(["text"])",  "[5]",   "[null]",      "[[]]",
        "[{}]", R"([["tts"]])", "{}",    R"({"a": 1})", R"({"a": "b"})",
};

/// A document for each value, put in the place of '@'.
static void addEach(Corpus &corpus, const QString &place, const QByteArray &document)
{
    for (const char *value : values)
        add(corpus, place + ": " + value, QByteArray(document).replace('@', value));
}

/// A document for each of the texts, put in the place of '@' as a JSON text.
static void addTexts(Corpus &corpus, const QString &place, const QStringList &texts, const QByteArray &document)
{
    for (const QString &text : texts) {
        const QByteArray list = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
        const QByteArray value = list.mid(1, list.size() - 2);
        add(corpus, place + ": " + value, QByteArray(document).replace('@', value));
    }
}

static QJsonValue value(const char *text)
{
    return QJsonDocument::fromJson('[' + QByteArray(text) + ']').array().first();
}

static const QVector<const char *> replacements{"null",      "true", "7",           "0.5",
                                                R"("text")", "[]",   R"(["text"])", R"({"a": 1})"};

using Mutant = QPair<QString, QJsonValue>;

/// Adds a sample and copies of it with one change each: every change at every place that no sample had before. The
/// elements of a list are one place.
class Samples
{
public:
    void add(Corpus &corpus, const QString &name, const QByteArray &sample)
    {
        corpus.append(Document{name, sample});
        const QJsonObject root = QJsonDocument::fromJson(sample).object();
        for (const Mutant &mutant : inside(root, QString()))
            corpus.append(Document{name + mutant.first, QJsonDocument(mutant.second.toObject()).toJson()});
    }

private:
    QVector<Mutant> inside(const QJsonValue &whole, const QString &place)
    {
        return whole.isArray() ? insideList(whole.toArray(), place) : insideMap(whole.toObject(), place);
    }

    QVector<Mutant> insideMap(const QJsonObject &map, const QString &place)
    {
        QVector<Mutant> mutants;
        const QStringList keys = map.keys();
        for (const QString &key : keys) {
            const QString member = place + '/' + key;
            if (isNew(member)) {
                QJsonObject without = map;
                without.remove(key);
                mutants.append({member + " dropped", without});
                without.insert(key.toUpper(), map.value(key));
                mutants.append({member + " renamed", without});
                for (const char *replacement : replacements)
                    mutants.append({member + " replaced by " + replacement, with(map, key, value(replacement))});
            }
            for (const Mutant &mutant : inside(map.value(key), member))
                mutants.append({mutant.first, with(map, key, mutant.second)});
        }
        return mutants;
    }

    QVector<Mutant> insideList(const QJsonArray &list, const QString &place)
    {
        QVector<Mutant> mutants;
        const QString element = place + "/#";
        for (int i = 0; i < list.size(); ++i) {
            if (isNew(element)) {
                QJsonArray changed = list;
                changed.removeAt(i);
                mutants.append({element + " dropped", changed});
                changed = list;
                changed.insert(i, list.at(i));
                mutants.append({element + " twice", changed});
                for (const char *replacement : replacements)
                    mutants.append({element + " replaced by " + replacement, with(list, i, value(replacement))});
            }
            for (const Mutant &mutant : inside(list.at(i), element))
                mutants.append({mutant.first, with(list, i, mutant.second)});
        }
        return mutants;
    }

    static QJsonObject with(QJsonObject map, const QString &key, const QJsonValue &value)
    {
        map.insert(key, value);
        return map;
    }

    static QJsonArray with(QJsonArray list, int i, const QJsonValue &value)
    {
        list.replace(i, value);
        return list;
    }

    bool isNew(const QString &place)
    {
        const bool known = m_places.contains(place);
        m_places.insert(place);
        return !known;
    }

    QSet<QString> m_places;
};

/// The gestures of a document, with actions, a group and a zone for their names.
static QByteArray gestures(const QByteArray &entries)
{
    return R"({"zones": {"own": {"x": 0, "y": 0, "w": 1, "h": 1}},
               "actions": [{"path": "next", "title": "Next"}, {"path": "back", "titles": ["Page", "Back"]},
                           {"path": "lamp", "title": "Lamp", "features": ["frontlight"]}],
               "actionGroups": {"group": ["next", "back"]}, "gestures": [)"
            + entries + "]}";
}

static void addSections(Corpus &corpus)
{
    addEach(corpus, "document", R"({"a": @})");
    add(corpus, "document a list", R"([{"gestures": []}])");
    add(corpus, "document an empty list", "[]");
    add(corpus, "empty document", "{}");
    add(corpus, "gestures alone", R"({"gestures": []})");
    add(corpus, "gestures in capitals", R"({"Gestures": []})");
    add(corpus, "all sections but gestures", R"({"zones": {}, "actions": [], "actionGroups": {}})");
    add(corpus, "unknown sections", R"({"gestures": [], "$schema": "file", "Zones": 5, "": null})");
    addEach(corpus, "gestures", R"({"gestures": @})");
    addEach(corpus, "zones", R"({"zones": @, "gestures": []})");
    addEach(corpus, "actions", R"({"actions": @, "gestures": []})");
    addEach(corpus, "actionGroups", R"({"actionGroups": @, "gestures": []})");
}

static void addZones(Corpus &corpus)
{
    const char *const document = R"({"zones": {"z": @}, "gestures": []})";
    addEach(corpus, "zone", document);
    addEach(corpus, "zone of a predefined name", R"({"zones": {"left": @}, "gestures": []})");
    addTexts(corpus, "zone", GestureService::predefinedZones.keys(), document);
    addTexts(corpus, "zone", {"Left", "left ", "left\n", "own"}, document);
    add(corpus, "zone that names its neighbour",
        R"({"zones": {"a": {"x": 0, "y": 0, "w": 1, "h": 1}, "b": "a"}, "gestures": []})");
}

/// A rectangle at a place of the document, '?'.
static void addRectangles(Corpus &corpus, const QString &place, const QByteArray &document)
{
    const QByteArray rectangle = R"({"x": 0, "y": 0, "w": 1, "h": 1, "more": []})";
    for (const QByteArray key : {"x", "y", "w", "h"}) {
        const QByteArray found = '"' + key + "\": ";
        const QByteArray missing = QByteArray(rectangle).replace(found, "\"_\": ");
        const QByteArray typed = QByteArray(missing).replace("\"more\": []", found + '@');
        const QString name = place + ", " + key;
        addEach(corpus, name, QByteArray(document).replace('?', typed));
        add(corpus, name + " missing", QByteArray(document).replace('?', missing));
    }
}

/// An inline action at a place of the document, '?'.
static void addDefinitions(Corpus &corpus, const QString &place, const QByteArray &document)
{
    const auto at = [&document](const char *text) { return QByteArray(document).replace('?', text); };
    const auto each = [&](const char *what, const char *text) { addEach(corpus, place + what, at(text)); };
    const auto row = [&](const char *what, const char *text) { add(corpus, place + what, at(text)); };
    each(", path", R"({"path": @, "title": "T"})");
    each(", title", R"({"path": "p", "title": @})");
    each(", titles", R"({"path": "p", "titles": @})");
    each(", element of titles", R"({"path": "p", "titles": ["T", @]})");
    each(", features", R"({"path": "p", "title": "T", "features": @})");
    each(", feature", R"({"path": "p", "title": "T", "features": [@]})");
    QStringList names{"TTS", "tts "};
    const Device device(true);
    for (const Feature *feature : device.allFeatures())
        names.append(feature->name());
    addTexts(corpus, place + ", feature", names, at(R"({"path": "p", "title": "T", "features": [@, @]})"));
    row(" without path", R"({"title": "T"})");
    row(" without title", R"({"path": "p"})");
    row(" with title and titles", R"({"path": "p", "title": "T", "titles": ["T"]})");
    row(" with titles null beside a title", R"({"path": "p", "title": "T", "titles": null})");
    row(" with title null beside titles", R"({"path": "p", "title": null, "titles": []})");
    row(" with its keys in capitals", R"({"Path": "p", "Title": "T"})");
    row(" with unknown keys", R"({"path": "p", "title": "T", "Titles": 5, "": null})");
}

static void addActions(Corpus &corpus)
{
    addEach(corpus, "action", R"({"actions": [@], "gestures": []})");
    addDefinitions(corpus, "action", R"({"actions": [?], "gestures": []})");
    add(corpus, "action that names the one before",
        R"({"actions": [{"path": "p", "title": "T"}, "p"], "gestures": []})");
    add(corpus, "action a list of one", R"({"actions": [[{"path": "p", "title": "T"}]], "gestures": []})");
    add(corpus, "actions of one path",
        R"({"actions": [{"path": "p", "title": "T"}, {"path": "p", "title": "U"}], "gestures": []})");

    addEach(corpus, "group", R"({"actionGroups": {"g": @}, "gestures": []})");
    addEach(corpus, "group's action", R"({"actionGroups": {"g": [@]}, "gestures": []})");
    addDefinitions(corpus, "group's action", R"({"actionGroups": {"g": [?]}, "gestures": []})");
    addDefinitions(corpus, "group's only action", R"({"actionGroups": {"g": ?}, "gestures": []})");
    const char *const named = R"({"actions": [{"path": "p", "title": "T"}], "actionGroups": {"a": ["p"], "b": @},
                                  "gestures": []})";
    addTexts(corpus, "group that names", {"a", "p"}, named);
    add(corpus, "group of a defined action twice", QByteArray(named).replace('@', R"(["p", "p"])"));
    add(corpus, "group in a group", QByteArray(named).replace('@', R"([["p"]])"));
}

static void addGestures(Corpus &corpus)
{
    const auto each = [&corpus](const char *place, const char *entry) { addEach(corpus, place, gestures(entry)); };
    const auto row = [&corpus](const char *name, const char *entry) { add(corpus, name, gestures(entry)); };
    each("gesture", "@");
    each("kind", R"({"kind": @, "zone": "left", "defaultAction": "next"})");
    each("zone of a gesture", R"({"kind": "tap", "zone": @, "defaultAction": "next"})");
    each("zone beside a direction", R"({"kind": "tap", "zone": @, "direction": "no", "defaultAction": "next"})");
    each("direction", R"({"kind": "tap", "direction": @, "defaultAction": "next"})");
    each("modes", R"({"kind": "tap", "zone": "left", "defaultAction": "next", "modes": @})");
    each("mode", R"({"kind": "tap", "zone": "left", "defaultAction": "next", "modes": ["reading", @]})");
    each("id", R"({"kind": "tap", "zone": "left", "defaultAction": "next", "id": @})");
    each("availableActions", R"({"kind": "tap", "zone": "left", "defaultAction": "next", "availableActions": @})");
    each("available action",
         R"({"kind": "tap", "zone": "left", "defaultAction": "next", "availableActions": ["next", @]})");
    each("defaultAction", R"({"kind": "tap", "zone": "left", "defaultAction": @})");
    each("defaultAction beside a current one",
         R"({"kind": "tap", "zone": "left", "defaultAction": @, "currentAction": "next"})");
    each("first alternative", R"({"kind": "tap", "zone": "left", "defaultAction": [@, "next"]})");
    each("second alternative", R"({"kind": "tap", "zone": "left", "defaultAction": ["next", @]})");
    each("currentAction", R"({"kind": "tap", "zone": "left", "currentAction": @})");
    each("features of a gesture", R"({"kind": "tap", "zone": "left", "defaultAction": "next", "features": @})");
    each("feature of a gesture", R"({"kind": "tap", "zone": "left", "defaultAction": "next", "features": ["tts", @]})");

    row("gesture without kind", R"({"zone": "left", "defaultAction": "next"})");
    row("gesture without zone and direction", R"({"kind": "tap", "defaultAction": "next"})");
    row("gesture with zone and direction",
        R"({"kind": "tap", "zone": "left", "direction": "no", "defaultAction": "next"})");
    row("gesture without any action", R"({"kind": "tap", "zone": "left"})");
    row("gesture with both actions",
        R"({"kind": "tap", "zone": "left", "defaultAction": "next", "currentAction": "back"})");
    row("gesture with a group alone", R"({"kind": "tap", "zone": "left", "availableActions": "group"})");
    row("gesture with its keys in capitals", R"({"Kind": "tap", "Zone": "left", "DefaultAction": "next"})");
    row("gesture with unknown keys", R"({"kind": "tap", "zone": "left", "defaultAction": "next", "Modes": 5, "": 0})");
    row("defaultAction written out",
        R"({"kind": "tap", "zone": "left", "defaultAction": {"path": "p", "title": "T"}})");
    row("list as currentAction", R"({"kind": "tap", "zone": "left", "currentAction": ["next"]})");
    row("features of a gesture in capitals",
        R"({"kind": "tap", "zone": "left", "defaultAction": "next", "features": ["TTS"]})");
}

static void addNames(Corpus &corpus)
{
    const auto texts = [&corpus](const char *place, const QStringList &names, const char *entry) {
        addTexts(corpus, place, names, gestures(entry));
    };
    texts("kind", {"tap", "hold", "swipe", "drag", "TAP", "Hold", "sWIPE", "drAg"},
          R"({"kind": @, "zone": "left", "defaultAction": "next"})");
    texts("kind", {"taps", " tap", "tap ", "tap\n", "\ntap", "undefined", "pinch", "h\u00f6ld", "\uff54ap"},
          R"({"kind": @, "zone": "left", "defaultAction": "next"})");
    texts("direction", {"toLeft", "toRight", "toTop", "toBottom", "no"},
          R"({"kind": "tap", "direction": @, "defaultAction": "next"})");
    texts("direction", {"ToLeft", "toleft", "NO", "no\n", "toUp", "noDirection"},
          R"({"kind": "tap", "direction": @, "defaultAction": "next"})");
    texts("zone of a gesture",
          GestureService::predefinedZones.keys() << "own"
                                                 << "Left",
          R"({"kind": "tap", "zone": @, "defaultAction": "next"})");
    texts("availableActions", {"group", "Group", "next"},
          R"({"kind": "tap", "zone": "left", "defaultAction": "next", "availableActions": @})");
    texts("available action", {"next", "back", "group"},
          R"({"kind": "tap", "zone": "left", "defaultAction": "next", "availableActions": [@]})");
    texts("defaultAction", {"next", "Next", "group"}, R"({"kind": "tap", "zone": "left", "defaultAction": @})");
    texts("only alternative", {"next", "lamp", "group"}, R"({"kind": "tap", "zone": "left", "defaultAction": [@]})");
    texts("currentAction", {"next", "Next", "group"}, R"({"kind": "tap", "zone": "left", "currentAction": @})");
}

static void addIds(Corpus &corpus)
{
    const auto ids = [&corpus](const char *name, const QStringList &list) {
        QByteArrayList entries;
        for (const QString &id : list)
            entries.append(R"({"kind": "tap", "zone": "left", "defaultAction": "next", "id": ")" + id.toUtf8() + "\"}");
        add(corpus, name, gestures(entries.join(", ")));
    };
    ids("ids that differ", {"a", "b"});
    ids("neighbours of one id", {"a", "a"});
    ids("one id apart", {"a", "b", "a"});
    const char *const formed = R"({"kind": "tap", "zone": "left", "defaultAction": "next"})";
    add(corpus, "neighbours of one formed id", gestures(QByteArray(formed) + ", " + formed));
}

static Corpus configurations()
{
    Corpus corpus;
    addSections(corpus);
    addZones(corpus);
    addRectangles(corpus, "zone", R"({"zones": {"z": ?}, "gestures": []})");
    addActions(corpus);
    addGestures(corpus);
    addNames(corpus);
    addIds(corpus);
    addRectangles(corpus, "zone of a gesture", gestures(R"({"kind": "tap", "zone": ?, "defaultAction": "next"})"));
    addDefinitions(corpus, "available action",
                   gestures(R"({"kind": "tap", "zone": "left", "defaultAction": "next", "availableActions": [?]})"));
    addDefinitions(corpus, "only available action",
                   gestures(R"({"kind": "tap", "zone": "left", "defaultAction": "next", "availableActions": ?})"));
    addDefinitions(corpus, "only alternative", gestures(R"({"kind": "tap", "zone": "left", "defaultAction": [?]})"));
    addDefinitions(corpus, "currentAction", gestures(R"({"kind": "tap", "zone": "left", "currentAction": ?})"));
    Samples samples;
    samples.add(corpus, "sample notes", testing::readFile(QString(examples) + "apps/default/notes/cfg.json"));
    samples.add(corpus, "sample reader", testing::readFile(QString(examples) + "apps/default/reader/cfg.json"));
    return corpus;
}

/// The library's output for the sample.
static QByteArray writtenBindings()
{
    const Device device(true);
    QObject owner;
    const auto loaded = Configuration::loadJson(QString(examples) + "apps/default/reader/cfg.json", &device,
                                                GestureService::predefinedZones, {}, &owner);
    return QJsonDocument::fromVariant(Configuration::ActionBindings::toVariant(loaded.getOrErr({}))).toJson();
}

static Corpus bindings()
{
    Corpus corpus;
    addEach(corpus, "version", R"({"version": @, "actions": {}})");
    for (const char *number : {"1.0", "1e0", "10e-1", "0.49999999999999994", "0.4999999999999999", "1.4999999999999998",
                               "1.5", "-1", "-0.5", "2", "1e19", "4294967297", "4294967297.0", "-4294967295"})
        add(corpus, QStringLiteral("version: %1").arg(number),
            QByteArray(R"({"version": @, "actions": {}})").replace('@', number));
    const char *const text = R"({"version": @, "actions": {"g": "a"}})";
    addTexts(corpus, "version", {"+1", "01", "+001", " 1", "1\n", "\t\r\n\v\f1 ", "\u00a0\u20031\u3000\u0085", " +1 "},
             text);
    addTexts(corpus, "version",
             {"2", "0", "-1", "--1", "+ 1", "1.0", "1e0", "0x1", "1 1", "1,", "one", "1\u200b", "\u001c1", "\ufeff1",
              "\u0661", "4294967297"},
             text);
    addEach(corpus, "actions", R"({"version": 1, "actions": @})");
    addEach(corpus, "action", R"({"version": 1, "actions": {"g": @}})");
    addEach(corpus, "second action", R"({"version": 1, "actions": {"g": "a", "h": @}})");
    add(corpus, "no version", R"({"actions": {}})");
    add(corpus, "no actions", R"({"version": 1})");
    add(corpus, "keys in capitals", R"({"Version": 1, "Actions": {}})");
    add(corpus, "unknown keys", R"({"version": 1, "actions": {}, "Actions": 5, "": null})");
    add(corpus, "empty document", "{}");
    add(corpus, "document a list", R"([{"version": 1, "actions": {}}])");
    add(corpus, "document an empty list", "[]");
    Samples().add(corpus, "sample", writtenBindings());
    return corpus;
}

static Corpus applicationPaths()
{
    Corpus corpus;
    const QByteArray document = R"({"current": "c", "default": "d", "filename": "f", "prohibitedApps": ["a"]})";
    for (const QByteArray key : {"current", "default", "filename", "prohibitedApps"}) {
        const QByteArray without = QByteArray(document).replace('"' + key + '"', "\"_\"");
        add(corpus, "no " + key, without);
        addEach(corpus, key, '{' + ('"' + key + "\": @, ") + without.mid(1));
    }
    addEach(corpus, "prohibited app",
            R"({"current": "c", "default": "d", "filename": "f", "prohibitedApps": ["a", @]})");
    add(corpus, "unknown keys", R"({"current": "", "default": "", "filename": "", "Current": 5, "": null})");
    add(corpus, "keys in capitals", R"({"Current": "c", "Default": "d", "Filename": "f"})");
    add(corpus, "empty document", "{}");
    add(corpus, "document a list", '[' + document + ']');
    add(corpus, "document an empty list", "[]");
    Samples().add(corpus, "sample", testing::readFile(QString(examples) + "application_paths.json"));
    return corpus;
}

/// Null, or the reason of a refusal, for each of the documents.
static QVector<QString> schemaVerdicts(const QString &schema, const Corpus &corpus, QString *error)
{
    QJsonArray texts;
    for (const Document &document : corpus)
        texts.append(QString::fromUtf8(document.text));
    QProcess python;
    python.start("/usr/bin/python3", {SOURCE_DIR "/tests/validate_schemas.py", schema});
    python.write(QJsonDocument(texts).toJson(QJsonDocument::Compact));
    python.closeWriteChannel();
    const bool done = python.waitForFinished(testing::patience) && python.exitStatus() == QProcess::NormalExit
            && python.exitCode() == 0;
    *error = done ? QString() : python.errorString() + ": " + python.readAllStandardError();

    QVector<QString> verdicts;
    const QJsonArray answers = QJsonDocument::fromJson(python.readAllStandardOutput()).array();
    for (const QJsonValue &answer : answers)
        verdicts.append(answer.toString());
    return verdicts;
}

static QVector<QString> loaderVerdicts(const Loader &load, const Corpus &corpus)
{
    QTemporaryDir directory;
    const QString file = directory.filePath("document.json");
    QVector<QString> verdicts;
    for (const Document &document : corpus) {
        testing::writeFile(file, document.text);
        verdicts.append(load(file));
    }
    return verdicts;
}

static Loader configurationLoader(const Device &device)
{
    return [&device](const QString &file) {
        QObject owner;
        const auto result = Configuration::loadJson(file, &device, GestureService::predefinedZones, {}, &owner);
        return result.isRight() ? QString() : failure(result);
    };
}

static QString loadBindings(const QString &file)
{
    const auto result = Configuration::ActionBindings::loadJson(file);
    if (result.isRight())
        return {};
    std::ostringstream reason;
    reason << result.left();
    return QString::fromStdString(reason.str());
}

static QString loadPaths(const QString &file)
{
    const auto result = ApplicationPathsConfiguration::loadJson(file);
    return result.isRight() ? QString() : failure(result);
}

/// The named differences that were met, and all faults.
class Judgement
{
public:
    Judgement(const QVector<Difference> &named, const QVector<DifferenceOfSamples> &ofSamples)
        : m_named(named), m_ofSamples(ofSamples)
    {
    }

    void judge(const Document &document, const QString &schemaSays, const QString &loaderSays)
    {
        if (schemaSays.isNull() == loaderSays.isNull()) {
            ++(loaderSays.isNull() ? accepted : refused);
            return;
        }
        ++differences;
        const Taker taker = schemaSays.isNull() ? SchemaTakesIt : LoaderTakesIt;
        if (isNamed(document.name, taker) || isOfSamples(document.name, taker, loaderSays))
            return;
        faults.append(document.name
                      + (taker == SchemaTakesIt ? ": only the loader refuses it: " + loaderSays
                                                : ": only the schema refuses it: " + schemaSays));
    }

    void findStale()
    {
        for (const Difference &difference : m_named) {
            if (!m_met.contains(difference.document))
                faults.append(QString(difference.document) + ": no difference any more: " + difference.reason);
        }
        for (const DifferenceOfSamples &difference : m_ofSamples) {
            if (!m_met.contains(difference.message))
                faults.append(QString(difference.message) + ": no difference any more: " + difference.reason);
        }
    }

    QStringList faults;
    int accepted = 0;
    int refused = 0;
    int differences = 0;

private:
    bool isNamed(const QString &name, Taker taker)
    {
        return std::any_of(m_named.cbegin(), m_named.cend(), [&](const Difference &difference) {
            const bool found = name == difference.document && taker == difference.taker;
            if (found)
                m_met.insert(name);
            return found;
        });
    }

    bool isOfSamples(const QString &name, Taker taker, const QString &loaderSays)
    {
        if (taker != SchemaTakesIt || !name.startsWith("sample"))
            return false;
        return std::any_of(m_ofSamples.cbegin(), m_ofSamples.cend(), [&](const DifferenceOfSamples &difference) {
            const bool found = QRegularExpression(difference.message).match(loaderSays).hasMatch();
            if (found)
                m_met.insert(difference.message);
            return found;
        });
    }

    const QVector<Difference> m_named;
    const QVector<DifferenceOfSamples> m_ofSamples;
    QSet<QString> m_met;
};

// An editor with the schema and the loader judge a file alike.
class tst_Schemas : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QProcess python;
        python.start("/usr/bin/python3", {"-c", "import jsonschema"});
        QVERIFY2(python.waitForFinished(testing::patience) && python.exitCode() == 0,
                 "install the package python3-jsonschema");
    }

    void configuration()
    {
        const QVector<Difference> named{
                {R"(group: ["text"])", SchemaTakesIt, undefinedAction},
                {R"(group's action: "")", SchemaTakesIt, undefinedAction},
                {R"(group's action: "text")", SchemaTakesIt, undefinedAction},
                {R"(zone of a gesture: "")", SchemaTakesIt, undefinedZone},
                {R"(zone of a gesture: "text")", SchemaTakesIt, undefinedZone},
                {R"(zone beside a direction: "")", SchemaTakesIt, undefinedZone},
                {R"(zone beside a direction: "text")", SchemaTakesIt, undefinedZone},
                {R"(availableActions: "")", SchemaTakesIt, undefinedGroup},
                {R"(availableActions: "text")", SchemaTakesIt, undefinedGroup},
                {R"(availableActions: ["text"])", SchemaTakesIt, undefinedAction},
                {R"(available action: "")", SchemaTakesIt, undefinedAction},
                {R"(available action: "text")", SchemaTakesIt, undefinedAction},
                {R"(defaultAction: "")", SchemaTakesIt, undefinedAction},
                {R"(defaultAction: "text")", SchemaTakesIt, undefinedAction},
                {R"(defaultAction: ["text"])", SchemaTakesIt, undefinedAction},
                {R"(defaultAction beside a current one: "")", SchemaTakesIt, undefinedAction},
                {R"(defaultAction beside a current one: "text")", SchemaTakesIt, undefinedAction},
                {R"(defaultAction beside a current one: ["text"])", SchemaTakesIt, undefinedAction},
                {R"(first alternative: "")", SchemaTakesIt, undefinedAction},
                {R"(first alternative: "text")", SchemaTakesIt, undefinedAction},
                {R"(currentAction: "")", SchemaTakesIt, undefinedAction},
                {R"(currentAction: "text")", SchemaTakesIt, undefinedAction},
                {R"(zone of a gesture: "Left")", SchemaTakesIt, undefinedZone},
                {R"(availableActions: "Group")", SchemaTakesIt, undefinedGroup},
                {R"(availableActions: "next")", SchemaTakesIt, undefinedGroup},
                {R"(available action: "group")", SchemaTakesIt, undefinedAction},
                {R"(defaultAction: "Next")", SchemaTakesIt, undefinedAction},
                {R"(defaultAction: "group")", SchemaTakesIt, undefinedAction},
                {R"(only alternative: "group")", SchemaTakesIt, undefinedAction},
                {R"(currentAction: "Next")", SchemaTakesIt, undefinedAction},
                {R"(currentAction: "group")", SchemaTakesIt, undefinedAction},
                {"neighbours of one id", SchemaTakesIt, sameId},
                {"neighbours of one formed id", SchemaTakesIt, sameId},
        };
        const QVector<DifferenceOfSamples> ofSamples{
                {"^action '.*' not defined$", undefinedAction},
                {"^action group '.*' not defined$", undefinedGroup},
                {"^zone '.*' not defined$", undefinedZone},
                {"^gesture id must be unique", sameId},
        };
        const Device device(true);
        compare("gesture-config", configurations(), configurationLoader(device), named, ofSamples, 300);
    }

    void deviceWithoutFeatures()
    {
        Corpus corpus;
        add(corpus, "no list", gestures(R"({"kind": "tap", "zone": "left", "defaultAction": "lamp"})"));
        const QByteArray entry = R"({"kind": "tap", "zone": "left", "defaultAction": @})";
        add(corpus, "nothing behind it", gestures(QByteArray(entry).replace('@', R"(["lamp"])")));
        add(corpus, "no action behind it", gestures(QByteArray(entry).replace('@', R"(["lamp", 5])")));
        add(corpus, "an action behind it", gestures(QByteArray(entry).replace('@', R"(["lamp", "next"])")));
        add(corpus, "no action behind a supported one", gestures(QByteArray(entry).replace('@', R"(["next", 5])")));
        const Device device(false);
        const QVector<Difference> named{
                {"nothing behind it", SchemaTakesIt, unsupported},
                {"no action behind it", SchemaTakesIt, unsupported},
        };
        compare("gesture-config", corpus, configurationLoader(device), named, {}, 0);
    }

    void actionBindings()
    {
        const QVector<Difference> named{
                {"version: 4294967297", LoaderTakesIt, cutVersion},
                {"version: 4294967297.0", LoaderTakesIt, cutVersion},
                {"version: -4294967295", LoaderTakesIt, cutVersion},
                {R"(version: "4294967297")", LoaderTakesIt, cutVersion},
        };
        compare("bindings", bindings(), loadBindings, named, {}, 30);
    }

    void paths() { compare("application-paths", applicationPaths(), loadPaths, {}, {}, 30); }

    // Names that only the schema knows would be refused as undefined, as many names are.
    void namesAreTheLibrarys()
    {
        const QJsonObject parts = schema("gesture-config").value("$defs").toObject();
        const auto names = [](const QJsonValue &list) {
            QStringList sorted;
            for (const QVariant &name : list.toArray().toVariantList())
                sorted.append(name.toString());
            sorted.sort();
            return sorted;
        };
        QCOMPARE(names(parts["predefinedZone"]["enum"]), GestureService::predefinedZones.keys());
        QStringList features;
        const Device device(true);
        for (const Feature *feature : device.allFeatures())
            features.append(feature->name());
        features.sort();
        QCOMPARE(names(parts["features"]["items"]["enum"]), features);
    }

    void fieldsOfTheCheck_data()
    {
        QTest::addColumn<FieldsFunction>("fields");
        QTest::addColumn<QString>("schemaName");
        QTest::addColumn<QStringList>("parts");   // the parts of the schema that describe it; empty for the document
        QTest::addColumn<QByteArray>("document"); // with such an object in place of '@'
        const QString configuration = "gesture-config";
        const QStringList whole;
        const QByteArray itself = "@";
        namespace format = analysis::format;
        QTest::newRow("configuration") << FieldsFunction(format::configuration) << configuration << whole << itself;
        QTest::newRow("rectangle") << FieldsFunction(format::rectangle) << configuration << QStringList("coordinates")
                                   << QByteArray(R"({"zones": {"z": @}, "gestures": []})");
        QTest::newRow("action") << FieldsFunction(format::action) << configuration
                                << QStringList{"action", "pathAndTitles"}
                                << QByteArray(R"({"actions": [@], "gestures": []})");
        QTest::newRow("gesture") << FieldsFunction(format::gesture) << configuration << QStringList("gesture")
                                 << gestures("@");
        QTest::newRow("bindings") << FieldsFunction(format::bindings) << "bindings" << whole << itself;
        QTest::newRow("paths") << FieldsFunction(format::paths) << "application-paths" << whole << itself;
    }

    // They are the schema's fields, include the required ones, and have values that it accepts.
    void fieldsOfTheCheck()
    {
        QFETCH(FieldsFunction, fields);
        QFETCH(QString, schemaName);
        QFETCH(QStringList, parts);
        QFETCH(QByteArray, document);
        const QJsonObject root = schema(qPrintable(schemaName));
        QStringList described = parts.isEmpty() ? root["properties"].toObject().keys() : QStringList();
        for (const QString &part : qAsConst(parts))
            described += root["$defs"][part]["properties"].toObject().keys();
        QStringList known = namesOf(fields());
        known.removeAll("$schema");
        described.sort();
        known.sort();
        QCOMPARE(known, described);

        Corpus corpus;
        QVector<bool> expected;
        const auto expect = [&](const QString &what, const QVariantMap &object, bool isAccepted) {
            const QByteArray text = QJsonDocument(QJsonObject::fromVariantMap(object)).toJson(QJsonDocument::Compact);
            add(corpus, what, QByteArray(document).replace('@', text));
            expected.append(isAccepted);
        };
        const QVariantMap valid = validObject(fields());
        expect("the smallest", valid, true);
        for (const analysis::Field &field : fields()) {
            QVariantMap object = valid;
            object.remove(field.name);
            expect("without " + field.name, object, !field.isNeeded);
            object = valid;
            object.remove(field.excluded);
            object[field.name] = field.valid;
            expect("a valid " + field.name, object, true);
            const bool isNumber = field.conversion == analysis::Conversion::Number;
            object[field.name] = isNumber ? QVariant("5") : QVariant(5);
            expect("another type of " + field.name, object,
                   field.check == 0 || isNumber || field.conversion == analysis::Conversion::Text);
            object[field.name] = field.valid;
            if (!field.excluded.isEmpty()) {
                object[field.excluded] = valid[field.excluded];
                expect(field.name + " beside " + field.excluded, object, false);
            }
        }
        QString error;
        const QVector<QString> verdicts = schemaVerdicts(schemaFile(qPrintable(schemaName)), corpus, &error);
        QVERIFY2(error.isEmpty(), qPrintable(error));
        QCOMPARE(verdicts.size(), corpus.size());
        for (int i = 0; i < corpus.size(); ++i)
            QVERIFY2(verdicts.at(i).isNull() == expected.at(i),
                     qPrintable(corpus.at(i).name + ": " + corpus.at(i).text + ' ' + verdicts.at(i)));
    }

    void pathsExampleIsTheLibrarysDefault()
    {
        const auto example = ApplicationPathsConfiguration::fromVariant(
                schema("application-paths")["examples"].toArray().first().toVariant());
        VERIFY_RIGHT(example);
        const auto builtIn = ApplicationPathsConfiguration::newDefault();
        QCOMPARE(example.right().currentPath(), builtIn.currentPath());
        QCOMPARE(example.right().defaultPath(), builtIn.defaultPath());
        QCOMPARE(example.right().fileName(), builtIn.fileName());
        QVERIFY(example.right().appPaths("qmlplugindump").isLeft());
    }

private:
    static QString schemaFile(const char *name)
    {
        return QStringLiteral(SOURCE_DIR "/schemas/%1.schema.json").arg(name);
    }

    static QJsonObject schema(const char *name)
    {
        return QJsonDocument::fromJson(testing::readFile(schemaFile(name))).object();
    }

    /// At least this number of documents must be accepted, and as many refused.
    void compare(const char *name, const Corpus &corpus, const Loader &load, const QVector<Difference> &named,
                 const QVector<DifferenceOfSamples> &ofSamples, int atLeast)
    {
        QSet<QString> names;
        for (const Document &document : corpus) {
            names.insert(document.name);
            QVERIFY2(!QJsonDocument::fromJson(document.text).isNull(), qPrintable(document.name + " is no JSON"));
        }
        QCOMPARE(names.size(), corpus.size());

        QString error;
        const QVector<QString> schemaSays = schemaVerdicts(schemaFile(name), corpus, &error);
        QVERIFY2(error.isEmpty(), qPrintable(error));
        QCOMPARE(schemaSays.size(), corpus.size());
        const QVector<QString> loaderSays = loaderVerdicts(load, corpus);

        Judgement judgement(named, ofSamples);
        for (int i = 0; i < corpus.size(); ++i)
            judgement.judge(corpus.at(i), schemaSays.at(i), loaderSays.at(i));
        judgement.findStale();
        qInfo("%s: of %d documents both accept %d and refuse %d; they differ on %d", name, corpus.size(),
              judgement.accepted, judgement.refused, judgement.differences);
        for (const QString &fault : qAsConst(judgement.faults))
            qWarning("%s", qPrintable(fault));
        QCOMPARE(judgement.faults.size(), 0);
        QVERIFY(judgement.accepted >= atLeast && judgement.refused >= atLeast);
    }
};

QTEST_GUILESS_MAIN(tst_Schemas)
#include "tst_schemas.moc"
