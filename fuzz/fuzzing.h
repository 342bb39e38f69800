#pragma once

#include <gesture_api/configuration.h>
#include <gesture_api/gestureservice.h>

#include <QJsonDocument>
#include <QVariant>

#include <cstddef>
#include <cstdint>

// Shared code of the fuzzers.

namespace fuzzing {

inline QVariant document(const std::uint8_t *data, std::size_t size)
{
    const QByteArray text = QByteArray::fromRawData(reinterpret_cast<const char *>(data), static_cast<int>(size));
    return QJsonDocument::fromJson(text).toVariant();
}

/// Every second feature is supported, so that both branches run.
class Features : public vellix::gesture::FeaturesProvider
{
public:
    Features()
    {
        for (const char *name : {"frontlight", "smartlight", "tts"}) {
            const bool there = m_features.size() % 2 == 0;
            m_features.append(new vellix::gesture::Feature(
                    QString::fromLatin1(name), [there] { return there; }, this));
        }
    }
    QList<vellix::gesture::Feature *> allFeatures() const override { return m_features; }

private:
    QList<vellix::gesture::Feature *> m_features;
};

inline void require(bool holds)
{
    if (!holds)
        __builtin_trap();
}

/// Written bindings must be equal when they are read back.
inline void roundTrip(const QList<vellix::gesture::Gesture *> &gestures)
{
    using Bindings = vellix::gesture::Configuration::ActionBindings;
    QMap<QString, QString> expected;
    for (const vellix::gesture::Gesture *gesture : gestures) {
        if (gesture->currentAction())
            expected.insert(gesture->id(), gesture->currentAction()->path());
    }
    const QByteArray text = QJsonDocument::fromVariant(Bindings::toVariant(gestures)).toJson();
    const auto read = Bindings::fromVariant(QJsonDocument::fromJson(text).toVariant().toMap());
    require(read.isRight());
    // Invalid Unicode cannot be written to a file; everything else must come back.
    bool writable = true;
    for (auto binding = expected.cbegin(); binding != expected.cend(); ++binding) {
        const QString both = binding.key() + *binding;
        writable = writable && QString::fromUtf8(both.toUtf8()) == both;
    }
    require(!writable || read.right() == expected);
}

/// Uses loaded gestures in every way that a client can.
inline void use(const QList<vellix::gesture::Gesture *> &gestures)
{
    using namespace vellix::gesture;
    GestureService service(ApplicationPaths({}, {}, {}), nullptr, true,
                           GestureService::GestureList([&gestures] { return gestures; }), false);
    QString text;
    QDebug debug(&text);
    service.dump(debug, 0);
    service.findGesture(QStringLiteral("reading"), Gesture::Tap, Gesture::NoDirection, QPointF(0.5, 0.5));
    service.findGestureByZone(QString(), Gesture::Swipe, Gesture::ToLeft, QRectF(0.1, 0.1, 0.1, 0.1));
    for (const Gesture *gesture : gestures) {
        gesture->section();
        gesture->supported();
        const ActionProxyNode *tree = gesture->actionTree();
        require(!tree == gesture->availableActions().isEmpty());
        delete tree; // no event loop will do it
    }
    for (const Gesture *gesture : service.gestureList())
        delete gesture->actionTree();
    Gesture::listToVariant(gestures);
    roundTrip(gestures);
}

}
