#pragma once

#include <QByteArray>
#include <QVariant>

namespace vellix {
namespace components {

/// Reads a JSON document into the same variants as Qt's parser, with fewer steps and allocations. `text` must end with
/// a NUL, as the bytes that a QByteArray owns do. Returns false if the document is invalid, or has a part whose meaning
/// only Qt's parser knows: then it must read the same bytes.
bool readJson(const QByteArray &text, QVariant *document);

}
}
