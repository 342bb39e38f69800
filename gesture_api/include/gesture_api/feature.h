#pragma once

#include <vellix/either.h>
#include <vellix/export.h>

#include <QList>
#include <QObject>
#include <QSet>
#include <QString>

#include <functional>
#include <iosfwd>

namespace vellix {
namespace gesture {

/// A named capability of the device, such as "frontlight". Belongs to the provider that made it.
class GESTURE_API_EXPORT Feature : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString name READ name NOTIFY nameChanged)
    Q_PROPERTY(bool supported READ supported NOTIFY supportedChanged)

public:
    /// `supported` is asked once, at the first read; an empty one means no.
    Feature(const QString &name, const std::function<bool()> &supported, QObject *parent = nullptr);

    QString name() const;
    bool supported() const;

    /// Whether every feature is supported, asked in list order up to the first that is not.
    static bool allSupported(const QList<Feature *> &features);
    /// Lists the features and whether they are supported, in colour, for a terminal.
    static void prettyPrintListMultiline(std::ostream &out, const QList<Feature *> &features);

Q_SIGNALS:
    void nameChanged(QString value);
    void supportedChanged(bool value);

private:
    const QString m_name;
    const std::function<bool()> m_predicate;
    mutable bool m_evaluated = false;
    mutable bool m_supported = false;
};

/// Knows the features there are. Owns them, and outlives every action and gesture that holds one.
class GESTURE_API_EXPORT FeaturesProvider : public QObject
{
    Q_OBJECT

public:
    explicit FeaturesProvider(QObject *parent = nullptr);

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
    explicit DefaultFeaturesProvider(QObject *parent = nullptr);

    QList<Feature *> allFeatures() const override;

private:
    QList<Feature *> m_features;
};

}
}

Q_DECLARE_METATYPE(const vellix::gesture::FeaturesProvider *)
