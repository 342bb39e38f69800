#pragma once

#include "finding.h"

#include <gesture_api/action.h>
#include <gesture_api/feature.h>
#include <gesture_api/gesture.h>

#include <QMap>
#include <QSet>
#include <QVariant>

#include <functional>
#include <optional>

// A gesture configuration entry by entry, as the library reads it on one device.

namespace analysis {

/// An entry of "gestures" that is an object, whether the library accepts it or not.
struct WrittenEntry
{
    QVariantMap map;
    Place place;
};

/// A gesture and its entry. If the library refuses the entry, the gesture has valid values in place of the refused
/// ones.
struct Entry
{
    int index; // among "gestures"
    QVariantMap map;
    Place place;
    vellix::gesture::Gesture *gesture;
    QStringList refused; // members

    /// Whether the library accepts the part of the entry that decides which touches match.
    bool hasTouches() const;
    /// Whether the gesture has the id that the library would give it.
    bool hasId() const;
    /// Whether the library accepts the actions of the entry.
    bool hasActions() const;
};

/// The places in a file where an action can stand.
enum class Role { Defined, InGroup, Available, Default, Current };

/// A name or a definition of an action, wherever it stands.
struct ActionValue
{
    Role role;
    QVariant value; // a path or an object
    Place place;
    QString group;  // the group that has it as an element
    int entry = -1; // the index among "gestures" of the gesture that has it

    bool isName() const { return value.userType() == QMetaType::QString; }
    QString path() const;
    /// Whether it is an object with a path of its own; an object without one is refused.
    bool definesPath() const { return value.toMap().contains(QStringLiteral("path")); }
};

/// The bindings of a file.
struct Choices
{
    QVariantMap byGesture;
    Place place;
};

struct Subject
{
    const JsonText *text;
    QVariantMap root;
    QVector<WrittenEntry> writtenEntries = {};
    QMap<QString, QRectF> zones = {};                     // in force
    QList<vellix::gesture::Action *> actions = {};        // the actions of "actions"
    QList<vellix::gesture::Action *> refusedActions = {}; // refused ones of these, kept for references to them
    QSet<QString> definedPaths = {};                      // the paths of "actions"
    QMap<QString, QList<vellix::gesture::Action *>> groups = {};
    QVector<Entry> entries = {};            // of the objects among "gestures"
    QVector<ActionValue> actionValues = {}; // in the order of the sections
    std::optional<Choices> choices = {};    // null if no bindings are checked

    Place place() const { return text->place(); }
    /// The paths of the actions that a gesture offers, on any device.
    QStringList offeredPaths(const Entry &entry) const;
    bool isDefined(const QString &path) const { return definedPaths.contains(path); }
    /// The gestures that the lookup knows, in its order.
    QList<vellix::gesture::Gesture *> matchableGestures() const;
    QStringList groupNames() const { return root.value(QStringLiteral("actionGroups")).toMap().keys(); }
    /// Every rectangle of the file, predefined or in a gesture.
    void forEachRectangle(const std::function<void(const QVariantMap &, const Place &)> &function) const;
};

}
