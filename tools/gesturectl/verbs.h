#pragma once

#include "application.h"

#include <QString>
#include <QStringList>

#include <optional>

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
/// Why each gesture matches a touch or does not, and where the action comes from.
Result<ExitStatus> explain(const QString &appId, const Touch &touch, bool json);
/// An empty `appId` shows the predefined zones only.
Result<ExitStatus> zones(const QString &appId, bool json);
Result<ExitStatus> actions(const QString &appId, const QString &gestureId, bool json);
Result<ExitStatus> bind(const QString &appId, const QString &gestureId, const QString &actionPath);
Result<ExitStatus> reset(const QString &appId);
/// Ends after `count` changes, or never when that is 0.
Result<ExitStatus> watch(const QString &appId, int count, bool json);
/// What the update of a default configuration does to a user's bindings: those of `bindingsFile`, or when that is
/// empty the user's own of `appId`. With `isWriting` what would not load with the new one is dropped.
Result<ExitStatus> doctor(const QString &oldFile, const QString &newFile, const QString &bindingsFile,
                          const QString &appId, bool isWriting, bool json);
Result<ExitStatus> exportBindings(const QString &appId);
Result<ExitStatus> importBindings(const QString &appId, const QString &file, bool isDryRun);

struct CheckRequest
{
    enum Format { Text, Json, Sarif };

    QString paths; // files; those that are empty are not asked for
    QString config;
    QString bindings;
    QString appId;
    bool allApps = false;
    std::optional<QStringList> with; // the features of the device
    bool everyDevice = false;
    bool strict = false; // warnings are findings, too
    QStringList ignored; // rules
    Format format = Text;
};
Result<ExitStatus> check(const CheckRequest &request);

/// "gesture-config", "bindings" or "application-paths".
Result<ExitStatus> schema(const QString &name);
/// Draws to an .svg or .png file, or in characters to standard output when `file` is empty.
Result<ExitStatus> map(const QString &appId, const MapFilter &filter, const QString &file);

}
