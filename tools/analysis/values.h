#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>

// JSON's values and names.

namespace analysis {

inline bool isObject(const QVariant &value)
{
    return value.userType() == QMetaType::QVariantMap;
}

inline bool isList(const QVariant &value)
{
    return value.userType() == QMetaType::QVariantList;
}

inline bool isString(const QVariant &value)
{
    return value.userType() == QMetaType::QString;
}

/// "null", "a number" and so on.
QString typeNameOf(const QVariant &value);

/// The nearest known name, probably the meant one; empty if none is near.
QString nearestTo(const QString &name, const QStringList &known);

}
