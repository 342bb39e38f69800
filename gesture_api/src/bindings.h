#pragma once

#include <gesture_api/gesture.h>

#include <QByteArray>
#include <QMap>
#include <QString>

namespace vellix {
namespace gesture {

/// Gesture id to action path.
using Bindings = QMap<QString, QString>;

/// The path of every gesture's current action by its id; the last of equal ids counts.
Bindings bindingsOf(const QList<Gesture *> &gestures);

/// The content of a bindings file.
QByteArray bindingsText(const Bindings &bindings);

}
}
