#pragma once

#include <QUrl>

/// Shows the texts of the programs in the language of QLocale(), in its direction.
void installExampleTranslation();

/// Runs a program `PROGRAM [APP]` whose root is this QML: a window with the property `appId`, "reader" if no
/// application is given. Returns the exit status: 2 for a usage error, 1 if the QML does not load.
int runExample(int argc, char *argv[], const QUrl &root);
