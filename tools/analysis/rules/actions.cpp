#include "families.h"

#include <analysis/subject.h>
#include <analysis/values.h>

#include <QSet>

namespace analysis {

static void findDuplicateActions(const Subject &subject, Findings *findings)
{
    QMap<QString, int> lines;
    for (const ActionValue &value : subject.actionValues) {
        if (value.role != Role::Defined)
            continue;
        const auto known = lines.constFind(value.path());
        if (known != lines.constEnd())
            findings->add("duplicate-action", value.place[QStringLiteral("path")],
                          QStringLiteral("action %1 was defined before, in line %2: that definition is ignored")
                                  .arg(quoted(value.path()), QString::number(*known)));
        lines.insert(value.path(), value.place.position().line);
    }
}

static void findUnusedActions(const Subject &subject, Findings *findings)
{
    QSet<QString> used;
    for (const ActionValue &value : subject.actionValues) {
        if (value.role != Role::Defined)
            used.insert(value.path());
    }
    for (const ActionValue &value : subject.actionValues) {
        if (value.role == Role::Defined && value.definesPath() && !used.contains(value.path()))
            findings->add("unused-action", value.place[QStringLiteral("path")],
                          QStringLiteral("action %1 is not used by any gesture or group").arg(quoted(value.path())));
    }
}

static QSet<QString> usedGroups(const Subject &subject)
{
    QSet<QString> used;
    for (const WrittenEntry &entry : subject.writtenEntries) {
        const QVariant available = entry.map.value(QStringLiteral("availableActions"));
        if (isString(available))
            used.insert(available.toString());
    }
    return used;
}

static void findUnusedGroups(const Subject &subject, Findings *findings)
{
    const QSet<QString> used = usedGroups(subject);
    const QVariantMap groups = subject.root.value(QStringLiteral("actionGroups")).toMap();
    for (auto group = groups.cbegin(); group != groups.cend(); ++group) {
        if (!used.contains(group.key()))
            findings->add("unused-group", subject.place()[QStringLiteral("actionGroups")][group.key()].name(),
                          QStringLiteral("group %1 is not used by any gesture").arg(quoted(group.key())));
    }
}

static void findDeepPaths(const Subject &subject, Findings *findings)
{
    for (const ActionValue &value : subject.actionValues) {
        const int segments = value.path().count(QLatin1Char('/')) + 1;
        if (segments > 64 && value.definesPath())
            findings->add("deep-path", value.place[QStringLiteral("path")],
                          QStringLiteral("the path has %1 segments").arg(segments));
    }
}

// "no title", "one title" or "2 titles".
static QString counted(int count, const QString &noun)
{
    if (count == 1)
        return QStringLiteral("one ") + noun;
    return (count == 0 ? QStringLiteral("no ") + noun : QStringLiteral("%1 %2s").arg(QString::number(count), noun));
}

static void findShortTitles(const Subject &subject, Findings *findings)
{
    for (const ActionValue &value : subject.actionValues) {
        const QVariantMap map = value.value.toMap();
        const bool isMany = map.contains(QStringLiteral("titles"));
        const QVariant titles = map.value(isMany ? QStringLiteral("titles") : QStringLiteral("title"));
        const int count = isMany ? titles.toList().size() : 1;
        const int segments = value.path().split(QLatin1Char('/')).size();
        if (!titles.isValid() || !value.definesPath() || count >= segments)
            continue;
        findings->add("short-titles", value.place[isMany ? QStringLiteral("titles") : QStringLiteral("title")],
                      QStringLiteral("the path %1 has %2 but %3%4")
                              .arg(quoted(value.path()), counted(segments, QStringLiteral("segment")),
                                   count == 0 ? QString() : QStringLiteral("only "),
                                   counted(count, QStringLiteral("title"))));
    }
}

static void findUnsaveableActions(const Subject &subject, Findings *findings)
{
    const QSet<QString> groups = usedGroups(subject);
    for (const ActionValue &value : subject.actionValues) {
        const bool isChoosable =
                value.role != Role::Defined && (value.role != Role::InGroup || groups.contains(value.group));
        if (!isChoosable || !value.definesPath() || subject.isDefined(value.path()))
            continue;
        findings->add("unsaveable-action", value.place,
                      QStringLiteral("after %1 is saved, the next load fails: action %1 not defined")
                              .arg(quoted(value.path())));
    }
}

Rules actionRules()
{
    const Severity warning = Severity::Warning;
    return {
            {24, "duplicate-action", warning, "Two actions have the same path.",
             "Remove one of them. References find the last one.", findDuplicateActions},
            {22, "unused-action", warning, "No gesture or group uses an action.", "Use the action, or remove it.",
             findUnusedActions},
            {23, "unused-group", warning, "No gesture uses a group.", "Use the group, or remove it.", findUnusedGroups},
            {25, "short-titles", warning, "An action has fewer titles than its path has segments.",
             "Write a title for each segment, from the outermost menu to the action itself.", findShortTitles},
            {26, "deep-path", warning, "The path of an action has more than 64 segments.",
             "Shorten the path. Each segment but the last is a menu within the one before.", findDeepPaths},
            {9, "unsaveable-action", Severity::Error, "An action that a user can choose is not among \"actions\".",
             "Define it in \"actions\" and name its path here. A save writes the current action of every gesture, and "
             "if a saved action is not defined, the application has no gestures.",
             findUnsaveableActions},
    };
}

}
