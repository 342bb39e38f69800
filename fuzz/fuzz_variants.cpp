// Variants that no JSON text could produce: any type anywhere, built from the fuzzer's bytes.

#include "fuzzing.h"

#include <gesture_api/applicationpaths.h>

#include <fuzzer/FuzzedDataProvider.h>

using namespace vellix::gesture;

static const char *const words[] = {"zones",
                                    "actions",
                                    "actionGroups",
                                    "gestures",
                                    "path",
                                    "title",
                                    "titles",
                                    "features",
                                    "id",
                                    "modes",
                                    "kind",
                                    "zone",
                                    "direction",
                                    "availableActions",
                                    "defaultAction",
                                    "currentAction",
                                    "version",
                                    "current",
                                    "default",
                                    "filename",
                                    "prohibitedApps",
                                    "x",
                                    "y",
                                    "w",
                                    "h",
                                    "tap",
                                    "swipe",
                                    "left",
                                    "whole",
                                    "toLeft",
                                    "no",
                                    "a",
                                    "b",
                                    "a/b",
                                    "frontlight",
                                    "smartlight",
                                    "1",
                                    ""};

static QString word(FuzzedDataProvider &bytes)
{
    return QString::fromLatin1(bytes.PickValueInArray(words));
}

static QVariant variant(FuzzedDataProvider &bytes, int depth)
{
    switch (bytes.ConsumeIntegralInRange(0, depth > 0 ? 10 : 6)) {
    case 0: return {};
    case 1: return QVariant::fromValue(nullptr);
    case 2: return bytes.ConsumeBool();
    case 3: return bytes.ConsumeIntegralInRange(-2, 2);
    case 4: return bytes.ConsumeFloatingPoint<double>();
    case 5: return QStringList{word(bytes), word(bytes)};
    case 6: return word(bytes);
    case 7: {
        QVariantList list;
        for (int i = bytes.ConsumeIntegralInRange(0, 4); i > 0; --i)
            list.append(variant(bytes, depth - 1));
        return list;
    }
    default: {
        QVariantMap map;
        for (int i = bytes.ConsumeIntegralInRange(0, 8); i > 0; --i) {
            const QString key = word(bytes);
            map.insert(key, variant(bytes, depth - 1));
        }
        return map;
    }
    }
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const fuzzing::Features features;
    FuzzedDataProvider bytes(data, size);
    QVariantMap root = variant(bytes, 4).toMap();
    // By chance, a whole document would be rare.
    if (bytes.ConsumeBool()) {
        root.insert(QStringLiteral("actions"),
                    QVariantList{QVariantMap{{QStringLiteral("path"), QStringLiteral("a")},
                                             {QStringLiteral("title"), QStringLiteral("A")}}});
        root.insert(QStringLiteral("gestures"),
                    QVariantList{QVariantMap{{QStringLiteral("kind"), QStringLiteral("tap")},
                                             {QStringLiteral("zone"), variant(bytes, 2)},
                                             {QStringLiteral("availableActions"), variant(bytes, 3)},
                                             {QStringLiteral("defaultAction"), QStringLiteral("a")}},
                                 variant(bytes, 3)});
    }
    QObject owner;
    const auto gestures = Configuration::fromVariant(root, bytes.ConsumeBool() ? &features : nullptr,
                                                     GestureService::predefinedZones, {}, &owner);
    if (gestures.isRight())
        fuzzing::use(gestures.right());
    Configuration::ActionBindings::fromVariant(root);
    ApplicationPathsConfiguration::fromVariant(root);
    // Without a parent the gestures are the caller's.
    const auto orphans = Configuration::fromVariant(root, &features, GestureService::predefinedZones, {});
    if (orphans.isRight())
        qDeleteAll(orphans.right());
    return 0;
}
