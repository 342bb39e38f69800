#pragma once

#include <gesture_api/gesture.h>

#include <QList>
#include <QRectF>
#include <QString>
#include <QStringList>

namespace vellix {
namespace gesture {

/// The names of gestures and of their parts, in the language of the program.
namespace words {

/// "Tap".
QString kind(int kind);
/// "Swipe to the left"; "Swipe" without a direction. A tap and a hold have none.
QString touch(int kind, int direction);
/// "Reading", "Menu and Text selection", "Everywhere": the program's translations of modes, in the context
/// "GestureModes", else the configuration's own names of them, as words.
QString modes(const QStringList &modes);
/// "Reading: tap".
QString section(const QStringList &modes, int kind);
/// "on the right"; "on the right (x 70–100 %, y 0–50 %)" for a zone that is none of the predefined ones;
/// empty for the whole screen. The numbers are rounded to `decimals` places.
QString zone(const QRectF &zone, int decimals = 0);
/// "Tap, on the right", "Tap anywhere".
QString gesture(const Gesture &gesture, int decimals = 0);
/// The last title of an action, else its path; a word for null.
QString action(const Action *action);

/// The last message of an error, for the end of a sentence.
QString error(const Error &error);

/// The fewest decimals with which zone() names each of these zones differently.
int decimalsFor(const QList<Gesture *> &gestures);

}

}
}
