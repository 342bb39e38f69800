#pragma once

#include <QUrl>

/// Makes ConfigurationState and Touches known to QML as Vellix.Examples 1.0.
void registerExampleTypes();

/// Runs a program `PROGRAM [APP]` whose root is this QML: a window with the property `appId`, "reader" if no
/// application is named. The exit status to return: 2 for wrong use, 1 when the QML does not load.
int runExample(int argc, char *argv[], const QUrl &root);
