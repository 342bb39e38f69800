#include "exampleapplication.h"

#include <QDir>
#include <QGuiApplication>
#include <QLocale>
#include <QQmlApplicationEngine>
#include <QTranslator>

#include <cstdio>

// The modes of the sample. The module finds their translations in this context.
[[maybe_unused]] static const char *const modes[] = {
        QT_TRANSLATE_NOOP("GestureModes", "reading"), QT_TRANSLATE_NOOP("GestureModes", "selecting"),
        QT_TRANSLATE_NOOP("GestureModes", "menu"),    QT_TRANSLATE_NOOP("GestureModes", "viewing"),
        QT_TRANSLATE_NOOP("GestureModes", "drawing"),
};

void installExampleTranslation()
{
    Q_INIT_RESOURCE(examples_translations); // an archive's resources are not linked by themselves
    auto *translator = new QTranslator(QCoreApplication::instance());
    // English has plural forms of its own.
    if (!translator->load(QLocale(), "examples", "_", ":/examples/translations"))
        translator->load("examples_en", ":/examples/translations");
    QCoreApplication::installTranslator(translator);
    QGuiApplication::setLayoutDirection(QLocale().textDirection());
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
    installExampleTranslation();
    QQmlApplicationEngine engine;
    // Prefer the module that was built or installed with this program to the one in Qt's own path.
    const QDir here(QCoreApplication::applicationDirPath());
    for (const char *module : {INSTALLED_MODULE, BUILT_MODULE})
        engine.addImportPath(here.filePath(module));
    engine.setInitialProperties({{"appId", appId}});
    engine.load(root);
    return engine.rootObjects().isEmpty() ? 1 : QGuiApplication::exec();
}
