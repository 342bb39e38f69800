#pragma once

#include <vellix/platform/baseutil.h>

#include <QString>

namespace vellix {
namespace gesture {

/// A path with its prefix expanded, for whoever touches the file system now.
inline QString resolvedPath(const QString &path)
{
    return QString::fromStdString(PathResolver::newDefault().resolvePreffix(path.toStdString()));
}

}
}
