#include "words.h"

#include <gesture_api/gestureservice.h>

#include <QCoreApplication>
#include <QLocale>
#include <QRegularExpression>
#include <QSet>

namespace vellix {
namespace gesture {
namespace words {

// The texts of the singleton.
struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Gestures)
};

QString kind(int kind)
{
    switch (kind) {
    case Gesture::Tap: return Text::tr("Tap");
    case Gesture::Hold: return Text::tr("Hold");
    case Gesture::Swipe: return Text::tr("Swipe");
    case Gesture::Drag: return Text::tr("Drag");
    default: return Text::tr("Gesture");
    }
}

static QString swipe(int direction)
{
    switch (direction) {
    case Gesture::ToLeft: return Text::tr("Swipe to the left");
    case Gesture::ToRight: return Text::tr("Swipe to the right");
    case Gesture::ToTop: return Text::tr("Swipe upwards");
    case Gesture::ToBottom: return Text::tr("Swipe downwards");
    default: return kind(Gesture::Swipe);
    }
}

static QString drag(int direction)
{
    switch (direction) {
    case Gesture::ToLeft: return Text::tr("Drag to the left");
    case Gesture::ToRight: return Text::tr("Drag to the right");
    case Gesture::ToTop: return Text::tr("Drag upwards");
    case Gesture::ToBottom: return Text::tr("Drag downwards");
    default: return kind(Gesture::Drag);
    }
}

QString touch(int kind, int direction)
{
    if (kind == Gesture::Swipe)
        return swipe(direction);
    return kind == Gesture::Drag ? drag(direction) : words::kind(kind);
}

// "textSelection" and "text_selection" are "Text selection".
static QString capitalised(const QString &mode)
{
    static const QRegularExpression border(QStringLiteral("(?<=\\p{Ll})(\\p{Lu})(?=\\p{Ll}|$)"));
    QString words = mode;
    words.replace(QLatin1Char('_'), QLatin1Char(' ')).replace(QLatin1Char('-'), QLatin1Char(' '));
    for (int at = words.indexOf(border); at >= 0; at = words.indexOf(border, at + 1))
        words.replace(at, 1, QLatin1Char(' ') + words.mid(at, 1).toLower());
    words = words.simplified();
    return words.isEmpty() ? mode : QLocale().toUpper(words.at(0)) + words.mid(1);
}

static QString modeTitle(const QString &mode)
{
    const QString translated = QCoreApplication::translate("GestureModes", mode.toUtf8());
    return translated == mode ? capitalised(mode) : translated;
}

QString modes(const QStringList &modes)
{
    if (modes.isEmpty())
        return Text::tr("Everywhere");
    QStringList names;
    for (const QString &mode : modes)
        names.append(modeTitle(mode));
    return QLocale().createSeparatedList(names);
}

QString section(const QStringList &modes, int kind)
{
    const QString where = words::modes(modes);
    switch (kind) {
    case Gesture::Tap: return Text::tr("%1: tap", "modes of the application").arg(where);
    case Gesture::Hold: return Text::tr("%1: hold", "modes of the application").arg(where);
    case Gesture::Swipe: return Text::tr("%1: swipe", "modes of the application").arg(where);
    case Gesture::Drag: return Text::tr("%1: drag", "modes of the application").arg(where);
    default: return where;
    }
}

// Of the predefined zones, the name that a file uses is never shown.
static QString predefined(const QString &name)
{
    static const QMap<QString, const char *> titles{
            {QStringLiteral("leftTop"), QT_TRANSLATE_NOOP("Gestures", "in the top left corner")},
            {QStringLiteral("top"), QT_TRANSLATE_NOOP("Gestures", "at the top")},
            {QStringLiteral("rightTop"), QT_TRANSLATE_NOOP("Gestures", "in the top right corner")},
            {QStringLiteral("left"), QT_TRANSLATE_NOOP("Gestures", "on the left")},
            {QStringLiteral("center"), QT_TRANSLATE_NOOP("Gestures", "in the middle")},
            {QStringLiteral("right"), QT_TRANSLATE_NOOP("Gestures", "on the right")},
            {QStringLiteral("leftBottom"), QT_TRANSLATE_NOOP("Gestures", "in the bottom left corner")},
            {QStringLiteral("bottom"), QT_TRANSLATE_NOOP("Gestures", "at the bottom")},
            {QStringLiteral("rightBottom"), QT_TRANSLATE_NOOP("Gestures", "in the bottom right corner")},
            {QStringLiteral("leftVerticalLine"), QT_TRANSLATE_NOOP("Gestures", "along the left edge")},
            {QStringLiteral("centerVerticalLine"), QT_TRANSLATE_NOOP("Gestures", "between the edges")},
            {QStringLiteral("rightVerticalLine"), QT_TRANSLATE_NOOP("Gestures", "along the right edge")},
    };
    const char *title = titles.value(name);
    return title ? Text::tr(title) : QString();
}

// The ninth of the screen in which the middle of a zone lies.
static QString place(const QPointF &middle)
{
    static const char *const names[3][3] = {
            {"leftTop", "top", "rightTop"}, {"left", "center", "right"}, {"leftBottom", "bottom", "rightBottom"}};
    const auto third = [](double position) { return position < 0.34 ? 0 : position > 0.66 ? 2 : 1; };
    return predefined(QString::fromLatin1(names[third(middle.y())][third(middle.x())]));
}

static QString percent(double part, int decimals)
{
    QString text = QLocale().toString(part * 100, 'f', decimals);
    const QString point = QLocale().decimalPoint();
    while (text.contains(point) && (text.endsWith(QLocale().zeroDigit()) || text.endsWith(point)))
        text.chop(1);
    return text;
}

QString zone(const QRectF &zone, int decimals)
{
    if (zone == Gesture::wholeZone)
        return QString();
    const QString known = predefined(GestureService::predefinedZones.key(zone));
    if (!known.isEmpty())
        return known;
    return Text::tr("%1 (x %2–%3 %, y %4–%5 %)", "a place, such as: at the top; then the edges of the zone")
            .arg(place(zone.center()), percent(zone.left(), decimals), percent(zone.right(), decimals),
                 percent(zone.top(), decimals), percent(zone.bottom(), decimals));
}

QString gesture(const Gesture &gesture, int decimals)
{
    const QString where = zone(gesture.zone(), decimals);
    if (!where.isEmpty())
        return Text::tr("%1, %2", "a touch, and a place on the screen")
                .arg(touch(gesture.kind(), gesture.direction()), where);
    if (gesture.kind() == Gesture::Tap)
        return Text::tr("Tap anywhere");
    return gesture.kind() == Gesture::Hold ? Text::tr("Hold anywhere") : touch(gesture.kind(), gesture.direction());
}

QString action(const Action *action)
{
    if (!action)
        return Text::tr("Nothing", "instead of an action");
    const QString title = action->lastTitle();
    return title.isEmpty() ? action->path() : title;
}

QString error(const Error &error)
{
    return error.records.empty() ? QString() : QString::fromStdString(error.records.back().message);
}

int decimalsFor(const QList<Gesture *> &gestures)
{
    QList<QRectF> zones;
    for (const Gesture *gesture : gestures) {
        if (gesture && !zones.contains(gesture->zone()))
            zones.append(gesture->zone());
    }
    for (int decimals = 0; decimals < 6; ++decimals) {
        QSet<QString> names;
        for (const QRectF &each : qAsConst(zones))
            names.insert(zone(each, decimals));
        if (names.size() == zones.size())
            return decimals;
    }
    return 6;
}

}
}
}
