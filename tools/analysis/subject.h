#pragma once

#include "finding.h"

#include <gesture_api/action.h>
#include <gesture_api/feature.h>
#include <gesture_api/gesture.h>

#include <QMap>
#include <QSet>
#include <QVariant>

// A gesture configuration entry by entry, as the library reads it on one device.

namespace analysis {

/// A gesture, and the entry that it comes from. When the library refuses the entry, it is the gesture of what is left
/// of it with valid values in place of the refused ones.
struct Entry
{
    int index; // among "gestures"
    QVariantMap map;
    Place place;
    vellix::gesture::Gesture *gesture;
    QStringList refused; // members

    /// Whether the library takes what the gesture matches.
    bool hasTouches() const;
    /// Whether it is this id that the gesture has.
    bool hasId() const;
    /// Whether the library takes what the gesture does.
    bool hasActions() const;
};

/// Where an action may stand.
enum class Role { Defined, InGroup, Available, Default, Current };

/// A name or a definition of an action, wherever it stands.
struct ActionValue
{
    Role role;
    QVariant value; // a path or an object
    Place place;
    QString group;  // of a group
    int entry = -1; // of a gesture: its index among "gestures"

    bool isName() const { return value.userType() == QMetaType::QString; }
    QString path() const;
};

struct Subject
{
    const JsonText *text;
    QVariantMap root;
    QMap<QString, QRectF> zones;                     // in force
    QList<vellix::gesture::Action *> actions;        // those of "actions"
    QList<vellix::gesture::Action *> refusedActions; // that stand for themselves among those
    QSet<QString> definedPaths;                      // of those
    QMap<QString, QList<vellix::gesture::Action *>> groups;
    QVector<Entry> entries;            // those that are objects
    QVector<ActionValue> actionValues; // in the order of the sections

    Place place() const { return text->place(); }
    /// What a gesture offers, on whatever device.
    QStringList offeredPaths(const Entry &entry) const;
    bool isDefined(const QString &path) const { return definedPaths.contains(path); }
};

/// Reads each entry by itself, so that the faults of all are found, each in the library's own words and at the value
/// that it refuses. What it refuses is left out, or stands for itself where others name it. The objects belong to
/// `owner`.
Subject readSubject(const JsonText &text, const QVariant &document, const vellix::gesture::FeaturesProvider *features,
                    QObject *owner, Findings *findings);

}
