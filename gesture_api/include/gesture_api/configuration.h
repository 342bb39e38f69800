#pragma once

#include <gesture_api/feature.h>
#include <gesture_api/gesture.h>

#include <vellix/either.h>
#include <vellix/export.h>

#include <QList>
#include <QMap>
#include <QRectF>
#include <QString>
#include <QVariant>

#include <boost/variant.hpp>

#include <iosfwd>

/// @file
/// The readers of configurations and bindings files, and the writer of bindings files.

namespace vellix {
namespace gesture {

/// Reads the configuration of an application: zones, actions, action groups and gestures.
class GESTURE_API_EXPORT Configuration
{
public:
    class ActionBindings;

    /// Reads a file; expands a path prefix. The file can name the given `zones`, which take precedence over its own.
    /// `bindings` (gesture id to action path) replace default actions. The gestures belong to `parent`, or to the
    /// caller if there is none.
    ///
    /// Fails with the first error, of the file (see components::VariantLoader::loadJson()) or of its content. Gestures
    /// created before an error stay children of `parent`; without a parent they are freed.
    static Either<Error, QList<Gesture *>> loadJson(const QString &fileName, const FeaturesProvider *featuresProvider,
                                                    const QMap<QString, QRectF> &zones,
                                                    const QMap<QString, QString> &bindings, QObject *parent = nullptr);
    /// The same for a document that is already loaded: a QVariantMap of "gestures" (a list) and optionally "zones" and
    /// "actionGroups" (objects) and "actions" (a list), as components::VariantLoader::loadJson() returns it.
    ///
    /// Fails with "invalid variant", "null variant", "'gestures' is obligatory field", "'NAME' field must be 'map'" (or
    /// "'list'"), "gesture id must be unique but dublicate found: `ID`" for neighbours with the same id, or an error of
    /// the readers of the parts: Gesture::zoneMapFromVariant(), Action::listFromVariant(),
    /// Action::actionGroupsFromVariant() and Gesture::listFromVariant(). The line numbers of the document's own errors
    /// are fixed, so that programs that read logs can match them.
    static Either<Error, QList<Gesture *>>
    fromVariant(const QVariant &document, const FeaturesProvider *featuresProvider, const QMap<QString, QRectF> &zones,
                const QMap<QString, QString> &bindings, QObject *parent = nullptr);
};

/// A user's bindings: gesture id to action path, in a file with a format version.
class GESTURE_API_EXPORT Configuration::ActionBindings
{
public:
    /// The error of a bindings file.
    struct GESTURE_API_EXPORT ParsingError
    {
        /// The file has another format version.
        struct VersionNotMatch
        {
            /// The version of the file.
            qint32 version;
        };

        /// Implicit, so that a function can return the cause.
        ParsingError(const VersionNotMatch &versionNotMatch) : value(versionNotMatch) {}
        /// Implicit, for the same reason.
        ParsingError(const Error &error) : value(error) {}

        /// The cause. `boost::get` on a pointer to it returns null for the other type.
        boost::variant<VersionNotMatch, Error> value;
    };

    /// The format version that is written to every file and required of every file.
    static qint32 version;

    /// Reads a file; expands a path prefix. Fails like components::VariantLoader::loadJson(), with "`PATH` root bust be
    /// map<>", or like fromVariant().
    static Either<ParsingError, QMap<QString, QString>> loadJson(const QString &fileName);
    /// Reads "version" (converted to an integer) and "actions" (an object of strings). Does not check that gestures and
    /// actions with these names exist.
    ///
    /// Fails with VersionNotMatch, or with an Error: "`NAME` is obligatory field", "`version` type must be `int`",
    /// "`actions` type must be `map<str, str>`" or "`actions` value type must be `str`".
    static Either<ParsingError, QMap<QString, QString>> fromVariant(const QVariantMap &root);

    /// The document of the current actions of these gestures, a QVariantMap for fromVariant(). Skips null gestures and
    /// gestures without a current action. If two of the others have the same id, the last one is written.
    static QVariant toVariant(const QList<Gesture *> &gestures);
    /// Writes that document; expands a path prefix. The new file replaces the old one in one step where the system
    /// allows it. Creates missing directories, follows links and keeps permissions. Right is the number of bytes
    /// written, or -1 if a step after opening failed. Left is "can not open file: REASON (path: PATH)".
    static Either<QString, qint64> saveJson(const QString &fileName, const QList<Gesture *> &gestures);
};

/// "VersionNotMatch(N)" or "OtherError(...)".
GESTURE_API_EXPORT std::ostream &operator<<(std::ostream &out,
                                            const Configuration::ActionBindings::ParsingError &error);

}
}
