#pragma once

#include <vellix/either.h>
#include <vellix/export.h>

#include <QList>
#include <QObject>
#include <QSet>
#include <QString>

#include <functional>
#include <iosfwd>
#include <optional>

namespace vellix {
/// The gestures of applications, the users' choices, and the lookup of a touch.
///
/// Coordinates are relative to the screen: 0 to 1, x to the right and y down. There are no locks: use an object only in
/// the thread that created it, and services and their providers only in the thread of the application object, where
/// the exit notifier lives.
namespace gesture {

/// A named capability of the device, such as "frontlight". It belongs to the provider that created it.
class GESTURE_API_EXPORT Feature : public QObject
{
    Q_OBJECT
    ///@{
    /// The functions of the same names, for QML. The values never change.
    Q_PROPERTY(QString name READ name NOTIFY nameChanged)
    Q_PROPERTY(bool supported READ supported NOTIFY supportedChanged)
    ///@}

public:
    /// Calls `supported` once, at the first call of supported(). An empty function means false.
    Feature(const QString &name, const std::function<bool()> &supported, QObject *parent = nullptr);

    /// The name in configurations, case-sensitive.
    QString name() const;
    /// Whether the device has it. Determined at the first call.
    bool supported() const;

    /// Whether every feature is supported. Stops at the first one that is not. Skips null entries, as all functions
    /// with lists of features do.
    static bool allSupported(const QList<Feature *> &features);
    /// Writes the features and whether they are supported, in colour, for a terminal.
    static void prettyPrintListMultiline(std::ostream &out, const QList<Feature *> &features);

Q_SIGNALS:
    ///@{
    /// Never emitted. QML requires a signal for every property.
    void nameChanged(QString value);
    void supportedChanged(bool value);
    ///@}

private:
    const QString m_name;
    const std::function<bool()> m_predicate;
    mutable std::optional<bool> m_supported;
};

/// Provides and owns the features. It must outlive every action and gesture that uses one.
class GESTURE_API_EXPORT FeaturesProvider : public QObject
{
    Q_OBJECT

public:
    /// For subclasses, which provide their own features.
    explicit FeaturesProvider(QObject *parent = nullptr);

    /// All features, the same objects at every call. They belong to the provider.
    virtual QList<Feature *> allFeatures() const = 0;

    /// The features with these names, in the order of the set. If several have the same name, the first one is used.
    /// Fails with "unknown feature: `NAME`".
    Either<Error, QList<Feature *>> featuresByNames(const QSet<QString> &names) const;
};

/// The features of this device: "frontlight", "smartlight" (its colour can be changed) and "tts"
/// (text to speech). Queries the device at the first Feature::supported() of each.
class GESTURE_API_EXPORT DefaultFeaturesProvider : public FeaturesProvider
{
    Q_OBJECT

public:
    /// Creates the three features. Does not query the device yet.
    explicit DefaultFeaturesProvider(QObject *parent = nullptr);

    /// The three features, in the order above.
    QList<Feature *> allFeatures() const override;

private:
    QList<Feature *> m_features;
};

}
}

Q_DECLARE_METATYPE(const vellix::gesture::FeaturesProvider *)
