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
/// The gestures of applications: what there is, what a user has chosen, and what a touch means.
///
/// Coordinates are relative to the screen: 0 to 1, x to the right and y down. Nothing here is guarded by locks: an
/// object is used in the thread that made it, and services and their providers in the application object's thread,
/// where the exit notifier lives.
namespace gesture {

/// A named capability of the device, such as "frontlight". Belongs to the provider that made it.
class GESTURE_API_EXPORT Feature : public QObject
{
    Q_OBJECT
    ///@{
    /// What the function of this name returns, for QML. It never changes.
    Q_PROPERTY(QString name READ name NOTIFY nameChanged)
    Q_PROPERTY(bool supported READ supported NOTIFY supportedChanged)
    ///@}

public:
    /// `supported` is asked once, at the first read; an empty one means no.
    Feature(const QString &name, const std::function<bool()> &supported, QObject *parent = nullptr);

    /// What configurations call it; letter case counts.
    QString name() const;
    /// Whether the device has it. The first answer is kept.
    bool supported() const;

    /// Whether every feature is supported, asked in list order up to the first that is not. Null entries are
    /// skipped, here and wherever features are listed.
    static bool allSupported(const QList<Feature *> &features);
    /// Lists the features and whether they are supported, in colour, for a terminal.
    static void prettyPrintListMultiline(std::ostream &out, const QList<Feature *> &features);

Q_SIGNALS:
    ///@{
    /// Never emitted: QML wants a signal of every property.
    void nameChanged(QString value);
    void supportedChanged(bool value);
    ///@}

private:
    const QString m_name;
    const std::function<bool()> m_predicate;
    mutable std::optional<bool> m_supported;
};

/// Knows the features there are. Owns them, and outlives every action and gesture that holds one.
class GESTURE_API_EXPORT FeaturesProvider : public QObject
{
    Q_OBJECT

public:
    /// For those who know other features than the device's own.
    explicit FeaturesProvider(QObject *parent = nullptr);

    /// All features, the same objects at every call. They stay the provider's.
    virtual QList<Feature *> allFeatures() const = 0;

    /// The features of these names, each the first of its name, in the set's own order. Fails with
    /// "unknown feature: `NAME`".
    Either<Error, QList<Feature *>> featuresByNames(const QSet<QString> &names) const;
};

/// The features of this device: "frontlight", "smartlight" (its colour can be changed) and "tts"
/// (text to speech). The device is asked when a feature is first read.
class GESTURE_API_EXPORT DefaultFeaturesProvider : public FeaturesProvider
{
    Q_OBJECT

public:
    /// Makes the three features, without asking the device.
    explicit DefaultFeaturesProvider(QObject *parent = nullptr);

    /// The three, in the order named above.
    QList<Feature *> allFeatures() const override;

private:
    QList<Feature *> m_features;
};

}
}

Q_DECLARE_METATYPE(const vellix::gesture::FeaturesProvider *)
