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
/// The readers of whole files, and the writer of the user's.

namespace vellix {
namespace gesture {

/// Loads the gesture configuration of one application: zones, actions, action groups and gestures.
class GESTURE_API_EXPORT Configuration
{
public:
    class ActionBindings;

    /// Reads a file; path prefixes are expanded. `zones` are there for the file to name and win over
    /// its own; `bindings` (gesture id to action path) replace default actions; the gestures become
    /// children of `parent` (without one, the caller's).
    ///
    /// Fails with the first error met: that of the file (see components::VariantLoader::loadJson()) or of its
    /// content. Gestures made before an error stay children of `parent`; without one they are freed.
    static Either<Error, QList<Gesture *>> loadJson(const QString &fileName, const FeaturesProvider *featuresProvider,
                                                    const QMap<QString, QRectF> &zones,
                                                    const QMap<QString, QString> &bindings, QObject *parent = nullptr);
    /// The same from a document that is loaded already: a QVariantMap of "gestures" (a list) and, where there are
    /// any, "zones" and "actionGroups" (maps) and "actions" (a list), as loadJson() of the file would give it.
    ///
    /// Fails with "invalid variant", "null variant", "'gestures' is obligatory field", "'NAME' field must be 'map'"
    /// (or "'list'"), "gesture id must be unique but dublicate found: `ID`" for neighbours of one id, and as the
    /// readers of the parts do: Gesture::zoneMapFromVariant(), Action::listFromVariant(),
    /// Action::actionGroupsFromVariant() and Gesture::listFromVariant(). The line numbers of the document's own errors
    /// are fixed, so that log readers may key on them.
    static Either<Error, QList<Gesture *>>
    fromVariant(const QVariant &document, const FeaturesProvider *featuresProvider, const QMap<QString, QRectF> &zones,
                const QMap<QString, QString> &bindings, QObject *parent = nullptr);
};

/// A user's own choices: gesture id to action path, in a small file of a known version.
class GESTURE_API_EXPORT Configuration::ActionBindings
{
public:
    /// Why bindings could not be read.
    struct GESTURE_API_EXPORT ParsingError
    {
        /// The file is of another format version.
        struct VersionNotMatch
        {
            /// The version that the file says it has.
            qint32 version;
        };

        /// Made of either cause, implicitly.
        ParsingError(const VersionNotMatch &versionNotMatch) : value(versionNotMatch) {}
        /// Likewise.
        ParsingError(const Error &error) : value(error) {}

        /// The cause: `boost::get` with a pointer to this tells which of the two it is.
        boost::variant<VersionNotMatch, Error> value;
    };

    /// The format version, written into every file and compared with every file read.
    static qint32 version;

    /// Reads a file; a path prefix is expanded. Fails as components::VariantLoader::loadJson() does, with
    /// "`PATH` root bust be map<>", and as fromVariant() does.
    static Either<ParsingError, QMap<QString, QString>> loadJson(const QString &fileName);
    /// Reads "version" (a whole number) and "actions" (a map of strings). Whether gestures and actions of these names
    /// exist is not asked.
    ///
    /// Fails with VersionNotMatch, or with an Error: "`NAME` is obligatory field", "`version` type must be `int`",
    /// "`actions` type must be `map<str, str>`" or "`actions` value type must be `str`".
    static Either<ParsingError, QMap<QString, QString>> fromVariant(const QVariantMap &root);

    /// The document for the current actions of these gestures, a QVariantMap as fromVariant() reads it. Null
    /// gestures and those without a current action are left out; of two with one id the last counts.
    static QVariant toVariant(const QList<Gesture *> &gestures);
    /// Writes that document in one step: whatever happens, the file holds the old document or the new
    /// one. Directories are made, links followed, permissions kept. Right is the number of bytes
    /// written, -1 when a step after opening failed; left is "can not open file: REASON (path: PATH)".
    static Either<QString, qint64> saveJson(const QString &fileName, const QList<Gesture *> &gestures);
};

/// "VersionNotMatch(N)" or "OtherError(...)".
GESTURE_API_EXPORT std::ostream &operator<<(std::ostream &out,
                                            const Configuration::ActionBindings::ParsingError &error);

}
}
