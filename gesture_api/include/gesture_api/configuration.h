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

namespace vellix {
namespace gesture {

/// Loads the gesture configuration of one application: zones, actions, action groups and gestures.
class GESTURE_API_EXPORT Configuration
{
public:
    class ActionBindings;

    /// Reads a file; path prefixes are expanded. `zones` are there for the file to name and win over
    /// its own; `bindings` (gesture id to action path) replace default actions; the gestures become
    /// children of `parent`. Fails with the first error met.
    static Either<Error, QList<Gesture *>> loadJson(const QString &fileName, const FeaturesProvider *featuresProvider,
                                                    const QMap<QString, QRectF> &zones,
                                                    const QMap<QString, QString> &bindings, QObject *parent = nullptr);
    /// The same from a document that is loaded already.
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
            qint32 version;
        };

        ParsingError(const VersionNotMatch &versionNotMatch) : value(versionNotMatch) {}
        ParsingError(const Error &error) : value(error) {}

        boost::variant<VersionNotMatch, Error> value;
    };

    /// The format version, written into every file and compared with every file read.
    static qint32 version;

    static Either<ParsingError, QMap<QString, QString>> loadJson(const QString &fileName);
    static Either<ParsingError, QMap<QString, QString>> fromVariant(const QVariantMap &root);

    /// The document for the current actions of these gestures.
    static QVariant toVariant(const QList<Gesture *> &gestures);
    /// Writes that document in one step: whatever happens, the file holds the old document or the new
    /// one. Directories are made, links followed, permissions kept. Right is the number of bytes
    /// written, -1 when a step after opening failed; left says why the file cannot be opened.
    static Either<QString, qint64> saveJson(const QString &fileName, const QList<Gesture *> &gestures);
};

/// "VersionNotMatch(N)" or "OtherError(...)".
GESTURE_API_EXPORT std::ostream &operator<<(std::ostream &out,
                                            const Configuration::ActionBindings::ParsingError &error);

}
}
