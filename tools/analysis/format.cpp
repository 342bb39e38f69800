#include "format.h"

#include <gesture_api/configuration.h>

#include <algorithm>
#include <iterator>

using vellix::gesture::Configuration;

namespace analysis {
namespace format {

const char *const validAction = "\001sound";

// The tables of whole documents end with the key that editors read.
static const QString schema = QStringLiteral("$schema");

const Fields &configuration()
{
    static const Fields fields{
            {QStringLiteral("zones"), 1, QVariantMap(), false},
            {QStringLiteral("actions"), 2, QVariantList(), false},
            {QStringLiteral("actionGroups"), 3, QVariantMap(), false},
            {QStringLiteral("gestures"), 4, QVariantList(), true},
            {schema, 0, {}, false},
    };
    return fields;
}

const Fields &rectangle()
{
    static const Fields fields{
            {QStringLiteral("x"), 1, 0.0, true, Conversion::Number},
            {QStringLiteral("y"), 2, 0.0, true, Conversion::Number},
            {QStringLiteral("w"), 3, 0.0, true, Conversion::Number},
            {QStringLiteral("h"), 4, 0.0, true, Conversion::Number},
    };
    return fields;
}

const Fields &action()
{
    static const Fields fields{
            {QStringLiteral("path"), 4, QStringLiteral("p"), true, Conversion::Text},
            {QStringLiteral("title"), 1, QStringLiteral("t"), true},
            {QStringLiteral("titles"), 2, QVariantList{QStringLiteral("t")}, false, Conversion::Texts,
             QStringLiteral("title")},
            {QStringLiteral("features"), 3, QVariantList(), false, Conversion::Texts},
    };
    return fields;
}

const Fields &gesture()
{
    static const Fields fields{
            {QStringLiteral("id"), 0, QStringLiteral("t"), false, Conversion::Text},
            {QStringLiteral("modes"), 4, QVariantList(), false, Conversion::Texts},
            {QStringLiteral("kind"), 1, QStringLiteral("tap"), true},
            {QStringLiteral("zone"), 2, QStringLiteral("whole"), true},
            {QStringLiteral("direction"), 3, QStringLiteral("no"), false},
            {QStringLiteral("availableActions"), 5, QVariantList(), false},
            {QStringLiteral("defaultAction"), 6, QLatin1String(validAction), true},
            {QStringLiteral("currentAction"), 7, QLatin1String(validAction), false},
            {QStringLiteral("features"), 8, QVariantList(), false, Conversion::Texts},
    };
    return fields;
}

const Fields &bindings()
{
    static const Fields fields{
            {QStringLiteral("actions"), 2, QVariantMap(), true},
            {QStringLiteral("version"), 1, Configuration::ActionBindings::version, true},
            {schema, 0, {}, false},
    };
    return fields;
}

const Fields &paths()
{
    static const Fields fields{
            {QStringLiteral("prohibitedApps"), 4, QVariantList(), false, Conversion::Texts},
            {QStringLiteral("filename"), 3, QStringLiteral("t"), true},
            {QStringLiteral("default"), 2, QStringLiteral("t"), true},
            {QStringLiteral("current"), 1, QStringLiteral("t"), true},
            {schema, 0, {}, false},
    };
    return fields;
}

}

QStringList namesOf(const Fields &fields)
{
    QStringList names;
    for (const Field &field : fields)
        names.append(field.name);
    return names;
}

Fields checkedOf(const Fields &fields)
{
    Fields checked;
    std::copy_if(fields.cbegin(), fields.cend(), std::back_inserter(checked),
                 [](const Field &field) { return field.check > 0; });
    std::sort(checked.begin(), checked.end(), [](const Field &a, const Field &b) { return a.check < b.check; });
    return checked;
}

QVariantMap validObject(const Fields &fields)
{
    QVariantMap valid;
    for (const Field &field : fields) {
        if (field.isNeeded)
            valid.insert(field.name, field.valid);
    }
    return valid;
}

}
