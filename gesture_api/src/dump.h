#pragma once

#include <QByteArray>

namespace vellix {
namespace gesture {

/// The indent of a dump. Bytes, since a debug stream would quote a string.
inline QByteArray indentText(int indent)
{
    return QByteArray("  ").repeated(indent);
}

}
}
