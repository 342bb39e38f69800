#pragma once

#include <gesture_api/applicationpaths.h>
#include <gesture_api/configuration.h>
#include <gesture_api/feature.h>
#include <gesture_api/gesture.h>

#include <vellix/either.h>

#include <QList>
#include <QMap>
#include <QString>

// The files of an application, read so that every failure names its place. The library's service reads the same files
// but only logs their faults.

namespace gesturectl {

enum ExitStatus { Success = 0, NoneMatches = 1, WrongUse = 2, BadFiles = 3 };

/// The failure of a verb: its exit status and one line for the user.
struct Failure
{
    ExitStatus status;
    QString message;
};

template <class T>
using Result = vellix::Either<Failure, T>;

using Bindings = QMap<QString, QString>;
using Gestures = QList<vellix::gesture::Gesture *>;

/// With the paths of all applications of the whole system.
extern const QString pathsFile;

Result<vellix::gesture::ApplicationPaths> pathsOf(const QString &appId);

/// The user's bindings; none if there is no file.
Result<Bindings> bindingsOf(const vellix::gesture::ApplicationPaths &paths);

/// The gestures with these bindings applied, as children of `parent`.
Result<Gestures> gesturesOf(const vellix::gesture::ApplicationPaths &paths,
                            const vellix::gesture::FeaturesProvider *features, const Bindings &bindings,
                            QObject *parent);

/// An application with the user's bindings applied, as its programs see it.
struct Loaded
{
    vellix::gesture::ApplicationPaths paths;
    Bindings bindings;
    Gestures gestures; // children of `parent`
};
Result<Loaded> load(const QString &appId, const vellix::gesture::FeaturesProvider *features, QObject *parent);

/// The first gesture of this id, or null.
vellix::gesture::Gesture *gestureById(const Gestures &gestures, const QString &id);

/// The same, or a failure that names the application.
Result<vellix::gesture::Gesture *> gestureOf(const Gestures &gestures, const QString &appId, const QString &id);

/// Whether the user may choose this action.
bool offers(const vellix::gesture::Gesture *gesture, const QString &actionPath);

/// The predefined zones and those of an application's configuration.
Result<QMap<QString, QRectF>> zonesOf(const vellix::gesture::ApplicationPaths &paths);

/// The path that the library opens.
QString resolved(const QString &path);

}
