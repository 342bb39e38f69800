#pragma once

#include <QList>
#include <QQmlListProperty>

namespace vellix {
namespace gesture {

/// A list property over a list of `owner` that QML can count and read but not change.
template <class T>
QQmlListProperty<T> kMakeReadonlyProxyQmlListProperty(const QObject *owner, const QList<T *> &list)
{
    using Property = QQmlListProperty<T>;
    using List = const QList<T *>;
    return Property(
            const_cast<QObject *>(owner), const_cast<QList<T *> *>(&list),
            [](Property *property) { return static_cast<List *>(property->data)->size(); },
            [](Property *property, int index) { return static_cast<List *>(property->data)->at(index); });
}

}
}
