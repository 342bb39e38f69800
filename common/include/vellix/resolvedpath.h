#pragma once

#include <vellix/platform/baseutil.h>

#include <QString>

namespace vellix {

/// The path with its prefix expanded, for immediate use. A path without a prefix is returned as it is.
inline QString resolvedPath(const QString &path)
{
    return QString::fromStdString(PathResolver::newDefault().resolvePreffix(path.toStdString()));
}

}
