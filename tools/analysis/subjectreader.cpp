#include "subjectreader.h"

#include "format.h"
#include "hint.h"
#include "refusal.h"
#include "values.h"

#include <gesture_api/configuration.h>
#include <gesture_api/gestureservice.h>

#include <algorithm>

using namespace vellix::gesture;

namespace analysis {
namespace {

/// Reads one configuration.
class SubjectReader
{
public:
    SubjectReader(const SubjectReader &) = delete;
    SubjectReader &operator=(const SubjectReader &) = delete;
    SubjectReader(Subject *subject, const FeaturesProvider *features, QObject *owner, Findings *findings)
        : m_subject(subject), m_features(features), m_owner(owner), m_findings(findings),
          m_validAction(new Action(QLatin1String(format::validAction), {QStringLiteral("t")}, {}, owner))
    {
    }

    void read(const QVariant &document)
    {
        const Place place = m_subject->place();
        if (!isObject(document)) {
            refuse(place, wordsOfDocument(document));
            return;
        }
        reportOutline();
        noteEntries(place[QStringLiteral("gestures")]);
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
        m_findings->add("refused", place, words, hintFor(words, *m_subject));
    }

    Repaired reportAll(const QVariantMap &object, const Place &place, const Fields &fields, const WithinMembers &within,
                       const Reader &reader)
    {
        return reportRefusals(object, place, fields, within, reader,
                              [this](const Place &where, const QString &words) { refuse(where, words); });
    }

    QString wordsOfDocument(const QVariant &document) const
    {
        QObject owner;
        return wordsOf(Configuration::fromVariant(document, m_features, GestureService::predefinedZones, {}, &owner));
    }

    // The faults within a section are reported later, entry by entry; here only its type counts.
    void reportOutline()
    {
        QVariantMap outline = m_subject->root;
        for (QVariant &section : outline) {
            if (isObject(section))
                section = QVariantMap();
            else if (isList(section))
                section = QVariantList();
        }
        reportAll(outline, m_subject->place(), format::configuration(), {},
                  [this](const QVariantMap &root) { return wordsOfDocument(root); });
    }

    void noteEntries(const Place &place)
    {
        const QVariantList values = section(QStringLiteral("gestures")).toList();
        for (int i = 0; i < values.size(); ++i) {
            if (isObject(values.at(i)))
                m_subject->writtenEntries.append({values.at(i).toMap(), place[i]});
        }
    }

    // Reports the missing sides of a rectangle. An unknown name is the fault of the whole value.
    bool reportZone(const QVariant &value, const Place &place)
    {
        if (!isObject(value))
            return false;
        const Reader reader = [](const QVariantMap &map) { return wordsOf(Gesture::rectfFromVariant(map)); };
        return !reportAll(value.toMap(), place, format::rectangle(), {}, reader).changed.isEmpty();
    }

    void readZones(const QVariantMap &zones, const Place &place)
    {
        for (auto zone = zones.cbegin(); zone != zones.cend(); ++zone) {
            const auto read = Gesture::zoneFromVariant(*zone, GestureService::predefinedZones, nullptr);
            if (read.isLeft() && !reportZone(*zone, place[zone.key()]))
                refuse(place[zone.key()], wordsOf(read));
            // The place of a refused zone is unknown: it takes nothing from others.
            m_subject->zones.insert(zone.key(), read.isRight() ? read.right() : QRectF());
        }
        const QMap<QString, QRectF> &predefined = GestureService::predefinedZones;
        for (auto zone = predefined.cbegin(); zone != predefined.cend(); ++zone)
            m_subject->zones.insert(zone.key(), *zone);
    }

    // Reports the unknown names in a list of features.
    bool reportFeatures(const QVariant &value, const Place &place)
    {
        if (!isList(value))
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

    // Null if it is refused; the refusal is reported.
    Action *readAction(const QVariant &value, const Place &place)
    {
        const auto read = Action::fromVariant(value, m_features, m_byPath, m_owner);
        if (read.isRight())
            return read.right();
        if (!isObject(value) || !reportAction(value.toMap(), place))
            refuse(place, wordsOf(read));
        return nullptr;
    }

    bool reportAction(const QVariantMap &map, const Place &place)
    {
        const WithinMembers within{{QStringLiteral("features"), [this](const QVariant &value, const Place &where) {
                                        return reportFeatures(value, where);
                                    }}};
        const Reader reader = [this](const QVariantMap &tried) {
            QObject owner;
            return wordsOf(Action::fromVariant(tried, m_features, QList<Action *>(), &owner));
        };
        return !reportAll(map, place, format::action(), within, reader).changed.isEmpty();
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

    // Reports the elements of an action list one by one. Returns whether there were faults.
    bool readElements(const QVariant &elements, const ActionValue &where)
    {
        const QVariantList values = isList(elements) ? elements.toList() : QVariantList{elements};
        bool any = false;
        for (int i = 0; i < values.size(); ++i) {
            ActionValue value = where;
            value.value = values.at(i);
            value.place = isList(elements) ? where.place[i] : where.place;
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
        return isList(features) && !features.toList().isEmpty();
    }

    void readGroups(const QVariantMap &groups, const Place &place)
    {
        for (auto group = groups.cbegin(); group != groups.cend(); ++group) {
            const Place where = place[group.key()];
            const auto read = Action::actionGroupsFromVariant({{group.key(), *group}}, m_known, nullptr, m_owner);
            m_subject->groups.insert(group.key(), read.isRight() ? read.right().value(group.key()) : QList<Action *>());
            bool isReported = false;
            if (isList(*group) || isObject(*group)) {
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
            QVariantMap valid = validObject(format::action());
            valid.insert(QStringLiteral("features"), features);
            // An unknown feature was reported already.
            if (Action::fromVariant(valid, m_features, m_byPath, m_owner).isRight())
                m_findings->add("group-features", value.place[QStringLiteral("features")],
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
            if (read.isLeft() && !isObject(values.at(i))) {
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
            if (isList(value)) {
                const QVariantList values = value.toList();
                for (int i = 0; i < values.size(); ++i)
                    m_subject->actionValues.append({role, values.at(i), place[name][i], {}, index});
            } else if (isObject(value) || (role != Role::Available && isString(value))) {
                m_subject->actionValues.append(where);
            }
        };
        note("availableActions", Role::Available);
        note("defaultAction", Role::Default);
        note("currentAction", Role::Current);
    }

    // Reports each element by itself. Returns whether there were faults. A fallback list can still be refused as a
    // whole.
    bool reportElements(const QVariant &value, const Place &place)
    {
        if (isObject(value))
            return !readAction(value, place);
        if (!isList(value))
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
        if (!isList(value))
            return false;
        if (!reportElements(value, place))
            m_findings->add("no-supported-action", place,
                            wordsOf(Action::firstSupportedFromVariant(value.toList(), m_features, m_known, m_owner)));
        return true;
    }

    WithinMembers withinGesture()
    {
        return {{QStringLiteral("zone"),
                 [this](const QVariant &value, const Place &where) { return reportZone(value, where); }},
                {QStringLiteral("availableActions"),
                 [this](const QVariant &value, const Place &where) { return reportElements(value, where); }},
                {QStringLiteral("defaultAction"),
                 [this](const QVariant &value, const Place &where) { return reportDefault(value, where); }},
                {QStringLiteral("currentAction"),
                 [this](const QVariant &value, const Place &where) {
                     return isObject(value) && !readAction(value, where);
                 }},
                {QStringLiteral("features"),
                 [this](const QVariant &value, const Place &where) { return reportFeatures(value, where); }}};
    }

    void repairGesture(const QVariantMap &map, const Place &place, int index, const QString &words)
    {
        // Gestures own their actions: the next gesture must still find the actions of this one.
        const auto read = [this](const QVariantMap &tried) {
            return Gesture::fromVariant(tried, m_features, m_known, m_subject->groups, m_subject->zones, {}, m_owner);
        };
        const Repaired repaired = reportAll(map, place, format::gesture(), withinGesture(),
                                            [&read](const QVariantMap &tried) { return wordsOf(read(tried)); });
        if (repaired.changed.isEmpty())
            refuse(place, words);
        const auto gesture = read(repaired.map);
        if (gesture.isRight())
            m_subject->entries.append({index, map, place, gesture.right(), repaired.changed});
    }

    // The loader's own message: it is the same for two gestures as for a whole list.
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
                m_findings->add("duplicate-neighbours", entry.place[QStringLiteral("id")],
                                wordsOfTwo(entry.gesture->id()));
        }
    }

    Subject *const m_subject;
    const FeaturesProvider *const m_features;
    QObject *const m_owner;
    Findings *const m_findings;
    Action *const m_validAction;      // the action of a valid entry
    QList<Action *> m_known;          // the actions of "actions", and m_validAction
    QMap<QString, Action *> m_byPath; // once they are read
};

}

Subject readSubject(const JsonText &text, const QVariant &document, const FeaturesProvider *features, QObject *owner,
                    Findings *findings)
{
    Subject subject{&text, document.toMap()};
    SubjectReader(&subject, features, owner, findings).read(document);
    return subject;
}

}
