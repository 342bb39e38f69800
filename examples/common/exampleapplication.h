#pragma once

#include <QUrl>

/// Registers ConfigurationState and Touches for QML as Vellix.Examples 1.0.
void registerExampleTypes();

/// Runs a program `PROGRAM [APP]` whose root is this QML: a window with the property `appId`, "reader" if no
/// application is given. Returns the exit status: 2 for a usage error, 1 if the QML does not load.
int runExample(int argc, char *argv[], const QUrl &root);
