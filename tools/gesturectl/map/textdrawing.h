#pragma once

#include "panel.h"

#include <QStringList>

// The map of an application's zones in characters.

namespace gesturectl {

/// The lines of a panel: title, screen and legend.
QStringList textDrawing(const Panel &panel);

}
