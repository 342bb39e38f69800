#include "exampleapplication.h"

#include "configurationstate.h"
#include "touches.h"

#include <QDir>
#include <QGuiApplication>
#include <QQmlApplicationEngine>

#include <cstdio>

void registerExampleTypes()
{
    qmlRegisterType<ConfigurationState>("Vellix.Examples", 1, 0, "ConfigurationState");
    qmlRegisterType<Touches>("Vellix.Examples", 1, 0, "Touches");
}

int runExample(int argc, char *argv[], const QUrl &root)
{
    if (argc > 2 || (argc == 2 && argv[1][0] == '-')) {
        std::fprintf(stderr, "usage: %s [APP]\n", argv[0]);
        return 2;
    }
    const QString appId = argc == 2 ? QString::fromLocal8Bit(argv[1]) : QString("reader");

    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND"))
        qputenv("QT_QUICK_BACKEND", "software"); // neither the device nor a machine without a display has OpenGL
    QGuiApplication app(argc, argv);
    registerExampleTypes();
    QQmlApplicationEngine engine;
    // Prefer the module that was built or installed with this program to the one in Qt's own path.
    const QDir here(QCoreApplication::applicationDirPath());
    for (const char *module : {INSTALLED_MODULE, BUILT_MODULE})
        engine.addImportPath(here.filePath(module));
    engine.setInitialProperties({{"appId", appId}});
    engine.load(root);
    return engine.rootObjects().isEmpty() ? 1 : QGuiApplication::exec();
}
