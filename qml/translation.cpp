#include "translation.h"

#include <QGuiApplication>
#include <QLocale>
#include <QPointer>
#include <QTranslator>

void installTranslation()
{
    static QPointer<QTranslator> installed; // the application object destroys it
    if (installed || !QCoreApplication::instance())
        return;
    installed = new QTranslator(QCoreApplication::instance());
    const QString name = QStringLiteral("vellix_gesture");
    const QString directory = QStringLiteral(":/vellix_gesture/translations");
    // English has plural forms of its own.
    if (!installed->load(QLocale(), name, QStringLiteral("_"), directory))
        installed->load(name + QStringLiteral("_en"), directory);
    // Qt then sets a direction by a translation of its own, but the direction belongs to the program.
    const Qt::LayoutDirection direction = QGuiApplication::layoutDirection();
    QCoreApplication::installTranslator(installed);
    if (qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        QGuiApplication::setLayoutDirection(direction);
}
