#include "verbs.h"

#include <analysis/lookup.h>

#include <gesturectl/gesturetext.h>
#include <gesturectl/output.h>
#include <gesturectl/touch.h>

#include <gesture_api/action.h>

#include <vellix/platform/vxcomponents.h>

#include <QJsonArray>
#include <QJsonObject>
#include <QLocale>

using namespace vellix;
using namespace vellix::gesture;

namespace gesturectl {

namespace {
struct Request
{
    QString appId;
    Touch touch;
    bool json = false;
};

// An alternative of a fallback list that the device does not support.
struct Skipped
{
    QString path;
    QStringList missing;
};

// The default action of a gesture in the file, or why there is none.
struct FileDefault
{
    bool isList = false;
    QString path;
    QString fault;
    QList<Skipped> skipped;
};

// The source of a gesture's action.
struct Origin
{
    QString from;
    FileDefault fileDefault;
    QString binding; // empty without one
};

struct Row
{
    const Gesture *gesture;
    QString failed; // the first test of the lookup that it fails; empty if it matches
    QString zone;   // its name, or its numbers alone
};

struct Explanation
{
    Touch touch;
    QList<Row> rows;
    const Gesture *winner = nullptr;
    QStringList hidden; // later gestures that also match
    Origin origin;
};
}

static void declare(Options *options, Request *request)
{
    options->app(&request->appId).required();
    declareTouch(options, &request->touch);
    options->json(&request->json);
}

static QString failedTest(const Gesture *gesture, const Touch &touch)
{
    const auto failed = analysis::firstFailed(gesture, {touch.mode, touch.kind, touch.direction, touch.position});
    return failed ? analysis::nameOf(*failed) : QString();
}

// The shortest exact form: rounding could move a touch across an edge.
static QString number(double value)
{
    return QString::number(value, 'g', QLocale::FloatingPointShortest);
}

static QString zoneText(const QRectF &zone, const QVariant &name)
{
    const QString numbers = numbersOf(zone, QLocale::FloatingPointShortest);
    return name.userType() == QMetaType::QString ? name.toString() + QLatin1Char(' ') + numbers : numbers;
}

// Sorted: a gesture's features come from a set.
static QStringList missingOf(const QList<Feature *> &features)
{
    QStringList names;
    for (const Feature *feature : features) {
        if (!feature->supported())
            names.append(feature->name());
    }
    names.sort();
    return names;
}

static FileDefault fileDefaultOf(const QVariant &value, const QList<Action *> &actions,
                                 const FeaturesProvider *features, QObject *owner)
{
    FileDefault found;
    found.isList = value.userType() == QMetaType::QVariantList;
    if (!value.isValid())
        return found;
    const QVariantList alternatives = found.isList ? value.toList() : QVariantList{value};
    for (const QVariant &alternative : alternatives) {
        const auto action = Action::fromVariant(alternative, features, actions, owner);
        if (action.isLeft()) {
            found.fault = messageOf(action.left());
            return found;
        }
        found.path = action.right()->path();
        if (!found.isList || action.right()->supported())
            return found;
        found.skipped.append({found.path, missingOf(action.right()->featureList())});
    }
    found.path.clear();
    found.fault = QStringLiteral("the device supports no action of its list");
    return found;
}

static Origin originOf(const Gesture *gesture, const QVariantMap &entry, const QVariantMap &root,
                       const FeaturesProvider *features, const Bindings &bindings)
{
    QObject owner;
    const auto actions =
            Action::listFromVariant(root.value(QStringLiteral("actions"), QVariantList()), features, {}, {}, &owner);
    Origin origin;
    origin.fileDefault = fileDefaultOf(entry.value(QStringLiteral("defaultAction")),
                                       actions.isRight() ? actions.right() : QList<Action *>(), features, &owner);
    origin.binding = bindings.value(gesture->id());
    if (entry.contains(QStringLiteral("currentAction")))
        origin.from = QStringLiteral("currentAction");
    else if (bindings.contains(gesture->id()))
        origin.from = QStringLiteral("binding");
    else
        origin.from = origin.fileDefault.isList ? QStringLiteral("fallback") : QStringLiteral("defaultAction");
    return origin;
}

static Explanation explanationOf(const Gestures &gestures, const QVariantMap &root, const Touch &touch,
                                 const FeaturesProvider *features, const Bindings &bindings)
{
    Explanation explanation{touch, {}, nullptr, {}, {}};
    const QVariantList entries = root.value(QStringLiteral("gestures")).toList();
    for (int i = 0; i < gestures.size(); ++i) {
        const Gesture *gesture = gestures.at(i);
        const QVariantMap entry = entries.value(i).toMap();
        const QString failed = failedTest(gesture, touch);
        explanation.rows.append({gesture, failed, zoneText(gesture->zone(), entry.value(QStringLiteral("zone")))});
        if (!failed.isEmpty())
            continue;
        if (explanation.winner) {
            explanation.hidden.append(gesture->id());
        } else {
            explanation.winner = gesture;
            explanation.origin = originOf(gesture, entry, root, features, bindings);
        }
    }
    return explanation;
}

// A zone without an area contains no point, not even of its edges.
static bool hasArea(const QRectF &zone)
{
    return zone.width() != 0 && zone.height() != 0;
}

// Both sides of the failed test: the gesture's value and the touch's.
static QString outcomeOf(const Row &row, const Explanation &explanation)
{
    const Touch &touch = explanation.touch;
    const auto wants = [&row](const QString &wanted, const QString &got) {
        return QStringLiteral("%1: expected %2, got %3").arg(row.failed, wanted, got);
    };
    if (row.failed == QLatin1String("mode"))
        return wants(row.gesture->modes().join(QStringLiteral(" or ")), touch.mode);
    if (row.failed == QLatin1String("kind"))
        return wants(kindText(row.gesture->kind()), kindText(touch.kind));
    if (row.failed == QLatin1String("direction"))
        return wants(directionText(row.gesture->direction()), directionText(touch.direction));
    if (row.failed == QLatin1String("zone"))
        return QStringLiteral("zone %1 %2does not contain %3,%4")
                .arg(row.zone, hasArea(row.gesture->zone()) ? QString() : QStringLiteral("has no area and "),
                     number(touch.position.x()), number(touch.position.y()));
    if (row.gesture == explanation.winner)
        return QStringLiteral("matches: wins");
    return QStringLiteral("matches: hidden by ") + explanation.winner->id();
}

static void printRows(const Explanation &explanation)
{
    QList<QStringList> rows;
    for (const Row &row : explanation.rows)
        rows.append({row.gesture->id(), outcomeOf(row, explanation)});
    printTable(rows);
    if (!rows.isEmpty())
        print(QString());
}

static QString unsupported(const QStringList &missing)
{
    return missing.isEmpty()
            ? QString()
            : QStringLiteral("  [not on this device: no %1]").arg(missing.join(QStringLiteral(", no ")));
}

static QString originText(const Origin &origin)
{
    const FileDefault &fileDefault = origin.fileDefault;
    if (origin.from == QLatin1String("fallback"))
        return QStringLiteral("the fallback list in the file's 'defaultAction'");
    if (origin.from == QLatin1String("defaultAction"))
        return QStringLiteral("the file's 'defaultAction'");
    if (origin.from == QLatin1String("currentAction"))
        return QStringLiteral("the file's 'currentAction'")
                + (origin.binding.isEmpty() ? QString()
                                            : QStringLiteral("; it hides the user's binding to ") + origin.binding);
    if (!fileDefault.fault.isEmpty())
        return QStringLiteral("the user's binding; the file has no default for it: ") + fileDefault.fault;
    if (fileDefault.path == origin.binding)
        return QStringLiteral("the user's binding; the file's default is the same");
    return QStringLiteral("the user's binding; it replaces the file's default ") + fileDefault.path;
}

static void printText(const Explanation &explanation)
{
    printRows(explanation);
    if (!explanation.winner) {
        print(QStringLiteral("no gesture matches"));
        return;
    }
    const Action *action = explanation.winner->currentAction();
    print(QStringLiteral("gesture  ") + explanation.winner->id()
          + unsupported(missingOf(explanation.winner->featureList())));
    print(QStringLiteral("action   ") + action->path() + unsupported(missingOf(action->featureList())));
    print(QStringLiteral("from     ") + originText(explanation.origin));
    if (explanation.origin.from == QLatin1String("fallback")) {
        for (const Skipped &skipped : explanation.origin.fileDefault.skipped)
            print(QStringLiteral("skipped  ") + skipped.path + unsupported(skipped.missing));
    }
    if (!explanation.hidden.isEmpty())
        print(QStringLiteral("hides    ") + explanation.hidden.join(QStringLiteral(", ")));
}

static QJsonValue wantedOf(const Row &row)
{
    if (row.failed == QLatin1String("mode"))
        return QJsonArray::fromStringList(row.gesture->modes());
    if (row.failed == QLatin1String("kind"))
        return kindText(row.gesture->kind());
    if (row.failed == QLatin1String("direction"))
        return directionText(row.gesture->direction());
    if (row.failed == QLatin1String("zone"))
        return toJson(row.gesture->zone());
    return {};
}

static QJsonValue textOrNull(const QString &text)
{
    return text.isEmpty() ? QJsonValue() : QJsonValue(text);
}

static QJsonObject toJson(const Touch &touch)
{
    return {{QStringLiteral("mode"), touch.mode},
            {QStringLiteral("kind"), kindText(touch.kind)},
            {QStringLiteral("direction"), directionText(touch.direction)},
            {QStringLiteral("at"),
             QJsonObject{{QStringLiteral("x"), touch.position.x()}, {QStringLiteral("y"), touch.position.y()}}}};
}

static QJsonObject toJson(const Origin &origin)
{
    QJsonArray skipped;
    if (origin.from == QLatin1String("fallback")) {
        for (const Skipped &one : origin.fileDefault.skipped)
            skipped.append(QJsonObject{{QStringLiteral("path"), one.path},
                                       {QStringLiteral("missing"), QJsonArray::fromStringList(one.missing)}});
    }
    return {{QStringLiteral("from"), origin.from},
            {QStringLiteral("skipped"), skipped},
            {QStringLiteral("default"), textOrNull(origin.fileDefault.path)},
            {QStringLiteral("binding"), textOrNull(origin.binding)}};
}

static QJsonObject toJson(const Explanation &explanation)
{
    QJsonArray rows;
    for (const Row &row : explanation.rows)
        rows.append(QJsonObject{{QStringLiteral("id"), row.gesture->id()},
                                {QStringLiteral("failed"), textOrNull(row.failed)},
                                {QStringLiteral("wanted"), wantedOf(row)}});
    QJsonObject object{{QStringLiteral("touch"), toJson(explanation.touch)},
                       {QStringLiteral("gestures"), rows},
                       {QStringLiteral("gesture"), QJsonValue()},
                       {QStringLiteral("action"), QJsonValue()},
                       {QStringLiteral("origin"), QJsonValue()},
                       {QStringLiteral("missing"), QJsonValue()},
                       {QStringLiteral("hides"), QJsonArray::fromStringList(explanation.hidden)}};
    if (const Gesture *winner = explanation.winner) {
        object[QStringLiteral("gesture")] = winner->id();
        object[QStringLiteral("action")] = winner->currentAction()->path();
        object[QStringLiteral("origin")] = toJson(explanation.origin);
        object[QStringLiteral("missing")] =
                QJsonObject{{QStringLiteral("gesture"), QJsonArray::fromStringList(missingOf(winner->featureList()))},
                            {QStringLiteral("action"),
                             QJsonArray::fromStringList(missingOf(winner->currentAction()->featureList()))}};
    }
    return object;
}

static Result<ExitStatus> explain(const Request &request)
{
    const DefaultFeaturesProvider features;
    QObject owner;
    const auto loaded = load(request.appId, &features, &owner);
    if (loaded.isLeft())
        return Left(loaded.left());
    // Also as written: a gesture does not know the source of its action.
    const auto document = components::VariantLoader::loadJson(loaded.right().paths.defaultPath());
    const QVariantMap root = document.isRight() ? document.right().toMap() : QVariantMap();

    const Explanation explanation =
            explanationOf(loaded.right().gestures, root, request.touch, &features, loaded.right().bindings);
    if (request.json)
        print(QJsonDocument(toJson(explanation)));
    else
        printText(explanation);
    return Right(explanation.winner ? Success : NoneMatches);
}

Verb explainVerb()
{
    return verb("explain", "Show why a touch matches a gesture, and where its action comes from",
                "Example: gesturectl explain --app reader --mode reading --kind hold --at 0.5,0.1", declare, explain);
}

}
