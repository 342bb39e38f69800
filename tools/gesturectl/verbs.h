#pragma once

#include "application.h"

#include <QString>

// One function for each verb: it prints to standard output and gives the exit status, or the failure
// that ends it.

namespace gesturectl {

struct Touch
{
    QString mode;
    vellix::gesture::Gesture::Kind kind;
    vellix::gesture::Gesture::Direction direction;
    QPointF position;
};

/// What a map shows; all of what is empty.
struct MapFilter
{
    QString mode;
    QString kind;
    QString direction;
};

/// An empty `kind` or `mode` shows all.
Result<ExitStatus> list(const QString &appId, const QString &kind, const QString &mode, bool json);
Result<ExitStatus> find(const QString &appId, const Touch &touch, bool json);
/// An empty `appId` shows the predefined zones only.
Result<ExitStatus> zones(const QString &appId, bool json);
Result<ExitStatus> actions(const QString &appId, const QString &gestureId, bool json);
Result<ExitStatus> bind(const QString &appId, const QString &gestureId, const QString &actionPath);
Result<ExitStatus> reset(const QString &appId);
/// Ends after `count` changes, or never when that is 0.
Result<ExitStatus> watch(const QString &appId, int count, bool json);
/// Draws to an .svg or .png file, or in characters to standard output when `file` is empty.
Result<ExitStatus> map(const QString &appId, const MapFilter &filter, const QString &file);

void print(const QString &line);
void printError(const QString &message);

}
