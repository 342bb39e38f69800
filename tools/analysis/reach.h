#pragma once

#include "lookup.h"

#include <QList>
#include <QRectF>
#include <QVector>

// The part of its zone in which a gesture is found. The lookup takes the first gesture that matches, so earlier
// gestures take touches away.

namespace analysis {

/// Anything thinner cannot be touched. Edges such as 0.1 + 0.2 and 0.3 leave such slivers between them.
constexpr double sliver = 1e-12;

/// Where touches of a zone can start: its sides turned to positive ones, cut to the screen. Null when that has no area.
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
    QVector<QRectF> left; // disjoint: where the gesture is the first to match
    QVector<Loss> losses; // in the order of the lookup, each with what that gesture is the first to match
    bool none = false;    // what is left is too small for a finger and a screen's rounding

    double lostShare() const;
};

/// `gestures` in the order of the lookup; `gesture` is one of them. Shares below a billionth are no loss.
Reach reachOf(const vellix::gesture::Gesture *gesture, const QList<vellix::gesture::Gesture *> &gestures,
              const Mode &mode);

/// The modes that these gestures name, sorted, and the unnamed one last when a gesture applies in every mode.
QVector<Mode> modesOf(const QList<vellix::gesture::Gesture *> &gestures);

/// Those of the modes in which the lookup considers a gesture.
QVector<Mode> modesOf(const vellix::gesture::Gesture *gesture, const QVector<Mode> &modes);

}
