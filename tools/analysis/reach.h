#pragma once

#include "lookup.h"

#include <QList>
#include <QRectF>
#include <QVector>

// The part of its zone where a gesture is found. The lookup returns the first gesture that matches, so earlier gestures
// take touches away.

namespace analysis {

/// Anything thinner cannot be touched. Edges such as 0.1 + 0.2 and 0.3 leave such slivers between them.
constexpr double sliver = 1e-12;

/// The area where touches of a zone can start: with positive sides, cut to the screen. Null if it has no area.
QRectF onScreen(const QRectF &zone);

/// The touches that an earlier gesture takes from a later one.
struct Loss
{
    const vellix::gesture::Gesture *to;
    QVector<QRectF> area; // disjoint
    double share;         // of the later one's zone on the screen
};

/// The zone of one gesture in one mode.
struct Reach
{
    QVector<QRectF> left; // disjoint parts where the gesture is the first to match
    QVector<Loss> losses; // in the order of the lookup, each with the area where that gesture is the first to match
    bool none = false;    // the remaining area is too small for a finger and a screen's rounding

    double lostShare() const;
};

/// `gestures` in the order of the lookup; `gesture` is one of them. Shares below a billionth are not reported.
Reach reachOf(const vellix::gesture::Gesture *gesture, const QList<vellix::gesture::Gesture *> &gestures,
              const Mode &mode);

/// The modes that these gestures name, sorted. The unnamed mode comes last if a gesture applies in every mode.
QVector<Mode> modesOf(const QList<vellix::gesture::Gesture *> &gestures);

/// The modes of these in which the lookup considers a gesture.
QVector<Mode> modesOf(const vellix::gesture::Gesture *gesture, const QVector<Mode> &modes);

}
