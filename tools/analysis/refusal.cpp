#include "refusal.h"

#include <algorithm>

namespace analysis {

// Takes the member out of an object that has it; otherwise adds a valid one.
static bool toggle(QVariantMap *map, const Field &field)
{
    const bool isTakenOut = map->remove(field.name) > 0;
    if (!isTakenOut)
        map->insert(field.name, field.valid);
    return isTakenOut;
}

// Reports members that are missing and those that exclude each other.
static Repaired reportMembers(const QVariantMap &object, const Place &place, const Fields &fields, const Reader &reader,
                              const Report &report)
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
            toggle(&other, field);
            return !repaired.changed.contains(field.name) && reader(other) != words;
        };
        // Of two members that exclude each other, report the later.
        const auto cure = std::find_if(fields.crbegin(), fields.crend(), helps);
        if (cure == fields.crend()) {
            report(place, words);
            repaired.changed.append(QString());
            break;
        }
        report(object.contains(cure->name) ? place[cure->name].name() : place, words);
        repaired.changed.append(cure->name);
        toggle(&tried, *cure);
        toggle(&repaired.map, *cure);
    }
    return repaired;
}

// An action as an example:
//
//   {"path": "p", "title": "A", "titles": ["B"], "features": 5}
//
// 1. reportMembers() replaces all values with valid ones, so that only the members themselves can be at fault:
//    {"path": "p", "title": "t", "titles": ["t"], "features": []}. The reader refuses this: "fields 'title' or 'titles'
//    can not be set simultaneously".
// 2. It takes out one member after the other, from the last check to the first, until the reader's message changes.
//    Without "path" and without "features" it stays; without "titles" the reader accepts the object. So the message is
//    reported at the name "titles", and that member is left out from here on. (A missing member is found the same way:
//    it is added, and the message is reported at the whole object.)
// 3. Then each value is tried by itself, in the smallest valid object {"path": "p", "title": "t"}. With "features": 5
//    the reader refuses that: "'features' must be list<str>." The message is reported at the 5, unless `within` finds
//    the fault inside the value. "titles" is tried without "title", which it excludes; ["B"] is accepted.
// 4. The result is {"path": "p", "title": "A", "features": []}, with "titles" and "features" changed.
Repaired reportRefusals(const QVariantMap &object, const Place &place, const Fields &fields,
                        const WithinMembers &within, const Reader &reader, const Report &report)
{
    const Fields checked = checkedOf(fields);
    Repaired repaired = reportMembers(object, place, checked, reader, report);
    for (const Field &field : checked) {
        const auto value = object.constFind(field.name);
        if (value == object.constEnd())
            continue;
        // The rest of this object is valid: a failure is the fault of this value.
        QVariantMap tried = validObject(fields);
        tried.remove(field.excluded);
        tried.insert(field.name, *value);
        const QString words = reader(tried);
        if (words.isNull())
            continue;
        const Place where = place[field.name];
        const auto faultsWithin = within.value(field.name);
        if (!faultsWithin || !faultsWithin(*value, where))
            report(where, words);
        if (repaired.map.contains(field.name))
            repaired.map.insert(field.name, field.valid);
        repaired.changed.append(field.name);
    }
    return repaired;
}

}
