#pragma once

#include "actionreader.h"

#include <gesture_api/gesture.h>

namespace vellix {
namespace gesture {

/// Reads the entries of a file. The gestures become children of `parent`, and take over their actions. If an entry is
/// invalid, those before it stay.
Either<Error, QList<Gesture *>> readGestures(const QVariantList &list, const ActionReader &actions,
                                             const QMap<QString, QRectF> &zones, const QMap<QString, QString> &bindings,
                                             QObject *parent);

}
}
