#include "refusal.h"

#include <algorithm>

namespace analysis {

using Report = std::function<void(const Place &, const QString &)>;

// With valid values in place of all members, only missing ones and those that exclude each other remain.
static Repaired reportMembers(const QVariantMap &object, const Place &place, const QVector<Field> &fields,
                              const Reader &reader, const Report &report)
{
    QVariantMap tried = object;
    for (const Field &field : fields) {
        if (tried.contains(field.name))
            tried.insert(field.name, field.valid);
    }
    Repaired repaired{object, {}};
    for (QString words = reader(tried); !words.isNull(); words = reader(tried)) {
        const auto helps = [&](const Field &field) {
            QVariantMap other = tried;
            if (other.remove(field.name) == 0)
                other.insert(field.name, field.valid);
            return !repaired.changed.contains(field.name) && reader(other) != words;
        };
        // Of two members that exclude each other, report the later.
        const auto cure = std::find_if(fields.crbegin(), fields.crend(), helps);
        if (cure == fields.crend()) {
            report(place, words);
            repaired.changed.append(QString());
            break;
        }
        const bool isTooMany = object.contains(cure->name);
        report(isTooMany ? place[cure->name].name() : place, words);
        repaired.changed.append(cure->name);
        for (QVariantMap *map : {&tried, &repaired.map}) {
            if (map->remove(cure->name) == 0)
                map->insert(cure->name, cure->valid);
        }
    }
    return repaired;
}

Repaired reportRefusals(const QVariantMap &object, const Place &place, const QVector<Field> &fields,
                        const QVariantMap &valid, const QMap<QString, QString> &instead, const Reader &reader,
                        const Report &report)
{
    Repaired repaired = reportMembers(object, place, fields, reader, report);
    for (const Field &field : fields) {
        const auto value = object.constFind(field.name);
        if (value == object.constEnd())
            continue;
        // The rest of this object is valid: a failure is the fault of this value.
        QVariantMap tried = valid;
        tried.remove(instead.value(field.name));
        tried.insert(field.name, *value);
        const QString words = reader(tried);
        if (words.isNull())
            continue;
        const Place where = place[field.name];
        if (!field.within || !field.within(*value, where))
            report(where, words);
        if (repaired.map.contains(field.name))
            repaired.map.insert(field.name, field.valid);
        repaired.changed.append(field.name);
    }
    return repaired;
}

}
