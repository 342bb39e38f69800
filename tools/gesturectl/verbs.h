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

/// An empty `kind` or `mode` shows all.
Result<ExitStatus> list(const QString &appId, const QString &kind, const QString &mode, bool json);
Result<ExitStatus> find(const QString &appId, const Touch &touch, bool json);
/// Why each gesture matches a touch or does not, and where the action comes from.
Result<ExitStatus> explain(const QString &appId, const Touch &touch, bool json);
/// An empty `appId` shows the predefined zones only.
Result<ExitStatus> zones(const QString &appId, bool json);
Result<ExitStatus> actions(const QString &appId, const QString &gestureId, bool json);
Result<ExitStatus> bind(const QString &appId, const QString &gestureId, const QString &actionPath);
Result<ExitStatus> reset(const QString &appId);
/// Ends after `count` changes, or never when that is 0.
Result<ExitStatus> watch(const QString &appId, int count, bool json);

void print(const QString &line);
void printError(const QString &message);

}
