#include "refusal.h"

#include <algorithm>

namespace analysis {

// A sound object is as good as this value: what the reader says of it is the value's fault.
static bool tellValues(const QVariantMap &object, const Place &place, const QVector<Field> &fields,
                       const QVariantMap &sound, const QMap<QString, QString> &instead, const Reader &reader,
                       const std::function<void(const Place &, const QString &)> &tell)
{
    bool any = false;
    for (const Field &field : fields) {
        const auto value = object.constFind(field.name);
        if (value == object.constEnd())
            continue;
        QVariantMap tried = sound;
        tried.remove(instead.value(field.name));
        tried.insert(field.name, *value);
        const QString words = reader(tried);
        if (words.isNull())
            continue;
        any = true;
        const Place where = place[field.name];
        if (!field.within || !field.within(*value, where))
            tell(where, words);
    }
    return any;
}

// With sound values for all members that are there, what is left are members that are missing or exclude each other.
static bool tellMembers(const QVariantMap &object, const Place &place, const QVector<Field> &fields,
                        const Reader &reader, const std::function<void(const Place &, const QString &)> &tell)
{
    QVariantMap tried = object;
    for (const Field &field : fields) {
        if (tried.contains(field.name))
            tried.insert(field.name, field.sound);
    }
    int count = 0;
    for (QString words = reader(tried); !words.isNull() && count <= fields.size(); words = reader(tried)) {
        ++count;
        const auto helps = [&](const Field &field) {
            QVariantMap changed = tried;
            if (changed.remove(field.name) == 0)
                changed.insert(field.name, field.sound);
            return reader(changed) != words;
        };
        // The last of two that exclude each other is the one too many.
        const auto cure = std::find_if(fields.crbegin(), fields.crend(), helps);
        const bool tooMany = cure != fields.crend() && object.contains(cure->name);
        tell(tooMany ? place[cure->name].name() : place, words);
        if (cure == fields.crend())
            break;
        if (tried.remove(cure->name) == 0)
            tried.insert(cure->name, cure->sound);
    }
    return count > 0;
}

bool tellRefusals(const QVariantMap &object, const Place &place, const QVector<Field> &fields, const QVariantMap &sound,
                  const QMap<QString, QString> &instead, const Reader &reader,
                  const std::function<void(const Place &, const QString &)> &tell)
{
    const bool members = tellMembers(object, place, fields, reader, tell);
    const bool values = tellValues(object, place, fields, sound, instead, reader, tell);
    return members || values;
}

}
