#include "refusal.h"

#include <algorithm>

namespace analysis {

using Tell = std::function<void(const Place &, const QString &)>;

// With sound values for all members that are there, what is left are members that are missing or exclude each other.
static Mended tellMembers(const QVariantMap &object, const Place &place, const QVector<Field> &fields,
                          const Reader &reader, const Tell &tell)
{
    QVariantMap tried = object;
    for (const Field &field : fields) {
        if (tried.contains(field.name))
            tried.insert(field.name, field.sound);
    }
    Mended mended{object, {}};
    for (QString words = reader(tried); !words.isNull(); words = reader(tried)) {
        const auto helps = [&](const Field &field) {
            QVariantMap other = tried;
            if (other.remove(field.name) == 0)
                other.insert(field.name, field.sound);
            return !mended.changed.contains(field.name) && reader(other) != words;
        };
        // The last of two that exclude each other is the one too many.
        const auto cure = std::find_if(fields.crbegin(), fields.crend(), helps);
        if (cure == fields.crend()) {
            tell(place, words);
            mended.changed.append(QString());
            break;
        }
        const bool isTooMany = object.contains(cure->name);
        tell(isTooMany ? place[cure->name].name() : place, words);
        mended.changed.append(cure->name);
        for (QVariantMap *map : {&tried, &mended.map}) {
            if (map->remove(cure->name) == 0)
                map->insert(cure->name, cure->sound);
        }
    }
    return mended;
}

Mended tellRefusals(const QVariantMap &object, const Place &place, const QVector<Field> &fields,
                    const QVariantMap &sound, const QMap<QString, QString> &instead, const Reader &reader,
                    const Tell &tell)
{
    Mended mended = tellMembers(object, place, fields, reader, tell);
    for (const Field &field : fields) {
        const auto value = object.constFind(field.name);
        if (value == object.constEnd())
            continue;
        // The rest of this object is sound: what the reader says of it is the value's fault.
        QVariantMap tried = sound;
        tried.remove(instead.value(field.name));
        tried.insert(field.name, *value);
        const QString words = reader(tried);
        if (words.isNull())
            continue;
        const Place where = place[field.name];
        if (!field.within || !field.within(*value, where))
            tell(where, words);
        if (mended.map.contains(field.name))
            mended.map.insert(field.name, field.sound);
        mended.changed.append(field.name);
    }
    return mended;
}

}
