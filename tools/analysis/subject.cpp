#include "subject.h"

#include "devices.h"
#include "keys.h"
#include "refusal.h"

#include <gesture_api/configuration.h>
#include <gesture_api/gestureservice.h>

#include <QRegularExpression>

#include <algorithm>

using namespace vellix::gesture;

namespace analysis {

QString ActionValue::path() const
{
    return isName() ? value.toString() : value.toMap().value(QStringLiteral("path")).toString();
}

static bool hasAny(const QStringList &members, std::initializer_list<const char *> wanted)
{
    return std::any_of(wanted.begin(), wanted.end(),
                       [&members](const char *name) { return members.contains(QLatin1String(name)); });
}

bool Entry::hasTouches() const
{
    return !hasAny(refused, {"", "kind", "zone", "direction", "modes"});
}

bool Entry::hasId() const
{
    return map.contains(QStringLiteral("id")) || hasTouches();
}

bool Entry::hasActions() const
{
    return !hasAny(refused, {"", "availableActions", "defaultAction", "currentAction"});
}

QStringList Subject::offeredPaths(const Entry &entry) const
{
    const QVariant available = entry.map.value(QStringLiteral("availableActions"));
    const bool isGroup = available.userType() == QMetaType::QString;
    QStringList paths;
    for (const ActionValue &value : actionValues) {
        const bool isOffered = isGroup ? value.role == Role::InGroup && value.group == available.toString()
                                       : value.role == Role::Available && value.entry == entry.index;
        if (isOffered)
            paths.append(value.path());
    }
    return paths;
}

namespace {

bool isOf(const QVariant &value, QMetaType::Type type)
{
    return value.userType() == type;
}

/// Takes one configuration apart.
class SubjectReader
{
public:
    SubjectReader(const SubjectReader &) = delete;
    SubjectReader &operator=(const SubjectReader &) = delete;
    SubjectReader(Subject *subject, const FeaturesProvider *features, QObject *owner, Findings *findings)
        : m_subject(subject), m_features(features), m_owner(owner), m_findings(findings),
          m_validAction(new Action(QStringLiteral("\001sound"), {QStringLiteral("t")}, {}, owner))
    {
    }

    void read(const QVariant &document)
    {
        const Place place = m_subject->place();
        const auto whole = [this](const QVariantMap &root) {
            QObject owner;
            return wordsOf(Configuration::fromVariant(root, m_features, GestureService::predefinedZones, {}, &owner));
        };
        const auto report = [this](const Place &where, const QString &words) { refuse(where, words); };
        if (!isOf(document, QMetaType::QVariantMap)) {
            QObject owner;
            refuse(place,
                   wordsOf(Configuration::fromVariant(document, m_features, GestureService::predefinedZones, {},
                                                      &owner)));
            return;
        }
        // The faults within a section are reported entry by entry below; here only its type counts.
        QVariantMap outline = m_subject->root;
        for (QVariant &section : outline) {
            if (isOf(section, QMetaType::QVariantMap))
                section = QVariantMap();
            else if (isOf(section, QMetaType::QVariantList))
                section = QVariantList();
        }
        reportRefusals(outline, place,
                       {{QStringLiteral("zones"), QVariantMap()},
                        {QStringLiteral("actions"), QVariantList()},
                        {QStringLiteral("actionGroups"), QVariantMap()},
                        {QStringLiteral("gestures"), QVariantList()}},
                       {{QStringLiteral("gestures"), QVariantList()}}, {}, whole, report);
        readZones(section(QStringLiteral("zones")).toMap(), place[QStringLiteral("zones")]);
        readActions(section(QStringLiteral("actions")), place[QStringLiteral("actions")]);
        readGroups(section(QStringLiteral("actionGroups")).toMap(), place[QStringLiteral("actionGroups")]);
        readGestures(section(QStringLiteral("gestures")), place[QStringLiteral("gestures")]);
        reportNeighbours();
    }

private:
    QVariant section(const QString &name) const { return m_subject->root.value(name); }

    void refuse(const Place &place, const QString &words)
    {
        m_findings->add(rules::refused, place, words, hintFor(words));
    }

    // The library's words say what is refused, and not always what would be taken.
    QString hintFor(const QString &words) const
    {
        static const QRegularExpression undefined(
                QStringLiteral("^(zone|action group|action) '(.*)' not defined$|^unknown (feature): `(.*)`$"));
        if (words.startsWith(QLatin1String("kind can be only")))
            return QStringLiteral("It is one of tap, hold, swipe and drag.");
        const auto match = undefined.match(words);
        if (!match.hasMatch())
            return {};
        const QString what = match.captured(1) + match.captured(3);
        const QString name = match.captured(2) + match.captured(4);
        if (what == QLatin1String("action") && section(QStringLiteral("actionGroups")).toMap().contains(name))
            return QStringLiteral("It is a group: only \"availableActions\" names one, and not in a list.");
        const QString meant = nearestTo(name, namesOf(what));
        return meant.isEmpty() ? QString() : QStringLiteral("Did you mean '") + meant + QStringLiteral("'?");
    }

    QStringList namesOf(const QString &what) const
    {
        if (what == QLatin1String("zone"))
            return m_subject->zones.keys() + GestureService::predefinedZones.keys();
        if (what == QLatin1String("action"))
            return m_subject->definedPaths.values();
        if (what == QLatin1String("action group"))
            return section(QStringLiteral("actionGroups")).toMap().keys();
        return knownFeatures();
    }

    void refuse(const Rule &rule, const Place &place, const QString &words) { m_findings->add(rule, place, words); }

    Repaired reportAll(const QVariantMap &object, const Place &place, const QVector<Field> &fields,
                       const QVariantMap &valid, const QMap<QString, QString> &instead, const Reader &reader)
    {
        return reportRefusals(object, place, fields, valid, instead, reader,
                              [this](const Place &where, const QString &words) { refuse(where, words); });
    }

    // A rectangle that lacks a side. A name that is not known is the whole value's fault.
    bool reportZone(const QVariant &value, const Place &place)
    {
        if (!isOf(value, QMetaType::QVariantMap))
            return false;
        QVector<Field> fields;
        QVariantMap valid;
        for (const char *side : {"x", "y", "w", "h"}) {
            fields.append({QLatin1String(side), 0.0});
            valid.insert(QLatin1String(side), 0.0);
        }
        const Reader reader = [](const QVariantMap &map) { return wordsOf(Gesture::rectfFromVariant(map)); };
        return !reportAll(value.toMap(), place, fields, valid, {}, reader).changed.isEmpty();
    }

    void readZones(const QVariantMap &zones, const Place &place)
    {
        for (auto zone = zones.cbegin(); zone != zones.cend(); ++zone) {
            const auto read = Gesture::zoneFromVariant(*zone, GestureService::predefinedZones, nullptr);
            if (read.isLeft() && !reportZone(*zone, place[zone.key()]))
                refuse(place[zone.key()], wordsOf(read));
            // Of a refused one nobody knows where it is: it takes nothing from others.
            m_subject->zones.insert(zone.key(), read.isRight() ? read.right() : QRectF());
        }
        const QMap<QString, QRectF> &predefined = GestureService::predefinedZones;
        for (auto zone = predefined.cbegin(); zone != predefined.cend(); ++zone)
            m_subject->zones.insert(zone.key(), *zone);
    }

    // The names that no device knows, in a list of features.
    bool reportFeatures(const QVariant &value, const Place &place)
    {
        if (!isOf(value, QMetaType::QVariantList))
            return false;
        const QVariantList names = value.toList();
        bool any = false;
        for (int i = 0; i < names.size(); ++i) {
            const auto read = m_features->featuresByNames({names.at(i).toString()});
            if (read.isRight())
                continue;
            any = true;
            refuse(place[i], wordsOf(read));
        }
        return any;
    }

    // Null when it is refused, which is reported.
    Action *readAction(const QVariant &value, const Place &place)
    {
        const auto read = Action::fromVariant(value, m_features, m_byPath, m_owner);
        if (read.isRight())
            return read.right();
        if (!isOf(value, QMetaType::QVariantMap) || !reportAction(value.toMap(), place))
            refuse(place, wordsOf(read));
        return nullptr;
    }

    bool reportAction(const QVariantMap &map, const Place &place)
    {
        const QString title = QStringLiteral("title");
        const QString titles = QStringLiteral("titles");
        const QString path = QStringLiteral("path");
        const Repaired repaired =
                reportAll(map, place,
                          {{title, QStringLiteral("t")},
                           {titles, QVariantList{QStringLiteral("t")}},
                           {QStringLiteral("features"), QVariantList(),
                            [this](const QVariant &value, const Place &where) { return reportFeatures(value, where); }},
                           {path, QStringLiteral("p")}},
                          {{title, QStringLiteral("t")}, {path, QStringLiteral("p")}}, {{titles, title}},
                          [this](const QVariantMap &tried) {
                              QObject owner;
                              return wordsOf(Action::fromVariant(tried, m_features, QList<Action *>(), &owner));
                          });
        return !repaired.changed.isEmpty();
    }

    void readActions(const QVariant &section, const Place &place)
    {
        const QVariantList values = section.toList();
        for (int i = 0; i < values.size(); ++i) {
            const ActionValue value{Role::Defined, values.at(i), place[i], {}};
            Action *action = readAction(value.value, value.place);
            // Keep references to it from being reported as undefined.
            if (!action && !value.isName()) {
                action = new Action(value.path(), {}, {}, m_owner);
                m_subject->refusedActions.append(action);
            }
            if (!action)
                continue;
            m_subject->actions.append(action);
            m_subject->definedPaths.insert(action->path());
            m_subject->actionValues.append(value);
        }
        m_known = m_subject->actions;
        m_known.append(m_validAction);
        for (Action *action : qAsConst(m_known))
            m_byPath.insert(action->path(), action);
    }

    // Reports the elements of an action list one by one; whether there were faults.
    bool readElements(const QVariant &list, const ActionValue &where)
    {
        const bool isList = isOf(list, QMetaType::QVariantList);
        const QVariantList values = isList ? list.toList() : QVariantList{list};
        bool any = false;
        for (int i = 0; i < values.size(); ++i) {
            ActionValue value = where;
            value.value = values.at(i);
            value.place = isList ? where.place[i] : where.place;
            m_subject->actionValues.append(value);
            if (!readAction(value.value, value.place))
                any = true;
        }
        return any;
    }

    // Groups are read without a features provider.
    static bool namesFeatures(const QVariant &value)
    {
        const QVariant features = value.toMap().value(QStringLiteral("features"));
        return isOf(features, QMetaType::QVariantList) && !features.toList().isEmpty();
    }

    void readGroups(const QVariantMap &groups, const Place &place)
    {
        for (auto group = groups.cbegin(); group != groups.cend(); ++group) {
            const Place where = place[group.key()];
            const auto read = Action::actionGroupsFromVariant({{group.key(), *group}}, m_known, nullptr, m_owner);
            m_subject->groups.insert(group.key(), read.isRight() ? read.right().value(group.key()) : QList<Action *>());
            bool isReported = false;
            if (isOf(*group, QMetaType::QVariantList) || isOf(*group, QMetaType::QVariantMap)) {
                const int first = m_subject->actionValues.size();
                isReported = readElements(*group, {Role::InGroup, {}, where, group.key()});
                isReported = reportGroupFeatures(first) || isReported;
            }
            if (read.isLeft() && !isReported)
                refuse(where, wordsOf(read));
        }
    }

    bool reportGroupFeatures(int first)
    {
        bool any = false;
        for (int i = first; i < m_subject->actionValues.size(); ++i) {
            const ActionValue &value = m_subject->actionValues.at(i);
            if (!namesFeatures(value.value))
                continue;
            any = true;
            const QVariant features = value.value.toMap().value(QStringLiteral("features"));
            const QVariantMap valid{{QStringLiteral("title"), QStringLiteral("t")},
                                    {QStringLiteral("path"), QStringLiteral("p")},
                                    {QStringLiteral("features"), features}};
            // An unknown feature was reported already.
            if (Action::fromVariant(valid, m_features, m_byPath, m_owner).isRight())
                refuse(rules::groupFeatures, value.place[QStringLiteral("features")],
                       wordsOf(Action::fromVariant(valid, nullptr, m_byPath, m_owner)));
        }
        return any;
    }

    void readGestures(const QVariant &section, const Place &place)
    {
        const QVariantList values = section.toList();
        for (int i = 0; i < values.size(); ++i) {
            const auto read = Gesture::listFromVariant({values.at(i)}, m_features, m_known, m_subject->groups,
                                                       m_subject->zones, {}, m_owner);
            if (read.isLeft() && !isOf(values.at(i), QMetaType::QVariantMap)) {
                refuse(place[i], wordsOf(read));
                continue;
            }
            const QVariantMap map = values.at(i).toMap();
            noteActions(map, place[i], i);
            if (read.isRight())
                m_subject->entries.append({i, map, place[i], read.right().first(), {}});
            else
                repairGesture(map, place[i], i, wordsOf(read));
        }
    }

    void noteActions(const QVariantMap &map, const Place &place, int index)
    {
        const auto note = [&](const char *key, Role role) {
            const QString name = QLatin1String(key);
            const QVariant value = map.value(name);
            const ActionValue where{role, value, place[name], {}, index};
            if (isOf(value, QMetaType::QVariantList)) {
                const QVariantList values = value.toList();
                for (int i = 0; i < values.size(); ++i)
                    m_subject->actionValues.append({role, values.at(i), place[name][i], {}, index});
            } else if (isOf(value, QMetaType::QVariantMap)
                       || (role != Role::Available && isOf(value, QMetaType::QString))) {
                m_subject->actionValues.append(where);
            }
        };
        note("availableActions", Role::Available);
        note("defaultAction", Role::Default);
        note("currentAction", Role::Current);
    }

    // Each element by itself; a fallback list as a whole can still be refused.
    bool reportElements(const QVariant &value, const Place &place)
    {
        if (isOf(value, QMetaType::QVariantMap))
            return !readAction(value, place);
        if (!isOf(value, QMetaType::QVariantList))
            return false;
        const QVariantList values = value.toList();
        bool any = false;
        for (int i = 0; i < values.size(); ++i) {
            if (!readAction(values.at(i), place[i]))
                any = true;
        }
        return any;
    }

    bool reportDefault(const QVariant &value, const Place &place)
    {
        if (!isOf(value, QMetaType::QVariantList))
            return false;
        if (!reportElements(value, place))
            refuse(rules::noSupportedAction, place,
                   wordsOf(Action::firstSupportedFromVariant(value.toList(), m_features, m_known, m_owner)));
        return true;
    }

    void repairGesture(const QVariantMap &map, const Place &place, int index, const QString &words)
    {
        const auto elements = [this](const QVariant &value, const Place &where) {
            return reportElements(value, where);
        };
        const QString kind = QStringLiteral("kind");
        const QString zone = QStringLiteral("zone");
        const QString defaultAction = QStringLiteral("defaultAction");
        // Gestures own their actions: what one of these takes, the next must still find.
        const auto read = [this](const QVariantMap &tried) {
            return Gesture::fromVariant(tried, m_features, m_known, m_subject->groups, m_subject->zones, {}, m_owner);
        };
        const Repaired repaired = reportAll(
                map, place,
                {{kind, QStringLiteral("tap")},
                 {zone, QStringLiteral("whole"),
                  [this](const QVariant &value, const Place &where) { return reportZone(value, where); }},
                 {QStringLiteral("direction"), QStringLiteral("no")},
                 {QStringLiteral("modes"), QVariantList()},
                 {QStringLiteral("availableActions"), QVariantList(), elements},
                 {defaultAction, m_validAction->path(),
                  [this](const QVariant &value, const Place &where) { return reportDefault(value, where); }},
                 {QStringLiteral("currentAction"), m_validAction->path(),
                  [this](const QVariant &value, const Place &where) {
                      return isOf(value, QMetaType::QVariantMap) && !readAction(value, where);
                  }},
                 {QStringLiteral("features"), QVariantList(),
                  [this](const QVariant &value, const Place &where) { return reportFeatures(value, where); }}},
                {{kind, QStringLiteral("tap")},
                 {zone, QStringLiteral("whole")},
                 {defaultAction, m_validAction->path()}},
                {}, [&read](const QVariantMap &tried) { return wordsOf(read(tried)); });
        if (repaired.changed.isEmpty())
            refuse(place, words);
        const auto gesture = read(repaired.map);
        if (gesture.isRight())
            m_subject->entries.append({index, map, place, gesture.right(), repaired.changed});
    }

    // In the loader's own words, which it says of two gestures as of a whole list.
    static QString wordsOfTwo(const QString &id)
    {
        const QVariantMap one{{QStringLiteral("id"), id},
                              {QStringLiteral("kind"), QStringLiteral("tap")},
                              {QStringLiteral("direction"), QStringLiteral("no")},
                              {QStringLiteral("currentAction"),
                               QVariantMap{{QStringLiteral("path"), id}, {QStringLiteral("title"), id}}}};
        QObject owner;
        return wordsOf(Configuration::fromVariant(QVariantMap{{QStringLiteral("gestures"), QVariantList{one, one}}},
                                                  nullptr, GestureService::predefinedZones, {}, &owner));
    }

    void reportNeighbours()
    {
        for (int i = 1; i < m_subject->entries.size(); ++i) {
            const Entry &entry = m_subject->entries.at(i);
            const Entry &above = m_subject->entries.at(i - 1);
            if (entry.index == above.index + 1 && entry.hasId() && above.hasId()
                && entry.gesture->id() == above.gesture->id())
                refuse(rules::duplicateNeighbours, entry.place[QStringLiteral("id")], wordsOfTwo(entry.gesture->id()));
        }
    }

    Subject *const m_subject;
    const FeaturesProvider *const m_features;
    QObject *const m_owner;
    Findings *const m_findings;
    Action *const m_validAction;      // the action of a valid entry
    QList<Action *> m_known;          // those of "actions", and that one
    QMap<QString, Action *> m_byPath; // of these, once they are read
};

}

Subject readSubject(const JsonText &text, const QVariant &document, const FeaturesProvider *features, QObject *owner,
                    Findings *findings)
{
    Subject subject{&text, document.toMap(), {}, {}, {}, {}, {}, {}, {}};
    SubjectReader(&subject, features, owner, findings).read(document);
    return subject;
}

}
