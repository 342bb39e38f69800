#pragma once

#include <gesturectl/application.h>

#include <QString>
#include <QStringList>

// Drops the bindings that an update makes invalid.

namespace gesturectl {

/// The result of a repair.
struct Repair
{
    QStringList dropped;
    QString keptAs; // a copy of the old file
};

/// Writes the bindings without `dropped`, once the new configuration accepts the rest.
Result<Repair> repaired(const vellix::gesture::ApplicationPaths &paths, const Bindings &bindings,
                        const QStringList &dropped, const vellix::gesture::FeaturesProvider *features);

}
