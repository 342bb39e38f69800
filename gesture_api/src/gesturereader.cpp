#include "gesturereader.h"

#include "fields.h"
#include "varianttype.h"

#include <vellix/stringutils.h>

#include <QScopeGuard>

#include <charconv>
#include <cmath>
#include <cstring>

namespace vellix {
namespace gesture {

static Left<Error> fail(int line, const QString &message)
{
    return Left(Error({"../../../gesture_api/src/gesture", line}, message.toStdString()));
}

namespace {
struct Entry
{
    const QVariant *id = nullptr;
    const QVariant *modes = nullptr;
    const QVariant *kind = nullptr;
    const QVariant *zone = nullptr;
    const QVariant *direction = nullptr;
    const QVariant *availableActions = nullptr;
    const QVariant *defaultAction = nullptr;
    const QVariant *currentAction = nullptr;
    const QVariant *features = nullptr;
};

constexpr Field<Entry> entryFields[] = {{u"id", &Entry::id},
                                        {u"modes", &Entry::modes},
                                        {u"kind", &Entry::kind},
                                        {u"zone", &Entry::zone},
                                        {u"direction", &Entry::direction},
                                        {u"availableActions", &Entry::availableActions},
                                        {u"defaultAction", &Entry::defaultAction},
                                        {u"currentAction", &Entry::currentAction},
                                        {u"features", &Entry::features}};

struct Touch
{
    QString id;
    QStringList modes;
    Gesture::Kind kind;
    QRectF zone;
    Gesture::Direction direction;
};
}

/// Reads the entries of one list. The order of the checks is behaviour: only the first fault is reported.
class GestureReader
{
public:
    GestureReader(const ActionReader &actions, const QMap<QString, QRectF> &zones,
                  const QMap<QString, QString> &bindings, QObject *parent)
        : m_actions(actions), m_zones(zones), m_bindings(bindings), m_parent(parent)
    {
    }

    Either<Error, Gesture *> read(const QVariantMap &entry) const
    {
        return entryOf(entry).flatMap([this](const Entry &members) { return gestureOf(members); });
    }
    Either<Error, QList<Gesture *>> readAll(const QVariantList &list) const;

private:
    static Either<Error, Entry> entryOf(const QVariantMap &map);
    Either<Error, Gesture *> gestureOf(const Entry &entry) const;
    QStringList modesOf(const QVariantList &names) const;
    Either<Error, Touch> touchOf(const Entry &entry) const;
    Either<Error, Action *> defaultActionOf(const Entry &entry, const QString &id) const;
    Either<Error, QList<Feature *>> featuresOf(const QVariant &names) const;

    const ActionReader &m_actions;
    const QMap<QString, QRectF> &m_zones;
    const QMap<QString, QString> &m_bindings;
    QObject *const m_parent;
    mutable QStringList m_modeNames; // of the entry before, as written
    mutable QStringList m_modes;
};

Either<Error, Entry> GestureReader::entryOf(const QVariantMap &map)
{
    const Entry entry = membersOf(map, entryFields);
    if (!entry.kind)
        return fail(__LINE__, QStringLiteral("'kind' is obligatory field"));
    if (!entry.zone && !entry.direction)
        return fail(__LINE__, QStringLiteral("either 'zone' or 'direction' fields must be set"));
    if (!entry.defaultAction && !entry.currentAction)
        return fail(__LINE__, QStringLiteral("either 'defaultAction' or 'currentAction' fields must be set"));
    if (entry.defaultAction && !isType(*entry.defaultAction, QMetaType::QString)
        && !isType(*entry.defaultAction, QMetaType::QStringList)
        && !isType(*entry.defaultAction, QMetaType::QVariantList))
        return fail(__LINE__, QStringLiteral("'defaultAction' must have type `str` or `list<str>`"));
    if (entry.modes && !isType(*entry.modes, QMetaType::QVariantList))
        return fail(__LINE__, QStringLiteral("'modes' must have type `list<str>`"));
    return Right(entry);
}

// Entries in a row often have the same modes, and then share one list.
QStringList GestureReader::modesOf(const QVariantList &names) const
{
    const auto isSame = [](const QVariant &value, const QString &name) {
        return isType(value, QMetaType::QString) && held<QString>(value) == name;
    };
    if (!std::equal(names.cbegin(), names.cend(), m_modeNames.cbegin(), m_modeNames.cend(), isSame)) {
        m_modeNames = textsOf(names);
        m_modes = StringUtils::sortedUnique(QStringList(m_modeNames));
    }
    return m_modes;
}

Either<Error, Touch> GestureReader::touchOf(const Entry &entry) const
{
    const QStringList modes = entry.modes ? modesOf(held<QVariantList>(*entry.modes)) : QStringList();
    const auto kind = Gesture::kindFromVariant(*entry.kind);
    if (kind.isLeft())
        return Left(kind.left());

    QString zoneName = QStringLiteral("notSet");
    const auto zone = entry.zone ? Gesture::zoneFromVariant(*entry.zone, m_zones, entry.id ? nullptr : &zoneName)
                                 : Right(Gesture::wholeZone);
    if (zone.isLeft())
        return Left(zone.left());

    const auto direction = readOptional(entry.direction, Gesture::NoDirection, Gesture::directionFromVariant);
    if (direction.isLeft())
        return Left(direction.left());

    const QString id =
            entry.id ? entry.id->toString() : Gesture::formId(modes, kind.right(), zoneName, direction.right());
    return Right(Touch{id, modes, kind.right(), zone.right(), direction.right()});
}

Either<Error, Action *> GestureReader::defaultActionOf(const Entry &entry, const QString &id) const
{
    const auto bound = m_bindings.constFind(id);
    if (bound != m_bindings.constEnd())
        return m_actions.action(*bound);
    if (!entry.defaultAction)
        return Right<Action *>(nullptr);
    const QVariant &value = *entry.defaultAction;
    return isType(value, QMetaType::QString) ? m_actions.action(value) : m_actions.firstSupported(value.toList());
}

Either<Error, QList<Feature *>> GestureReader::featuresOf(const QVariant &names) const
{
    if (!isType(names, QMetaType::QVariantList))
        return fail(__LINE__, QStringLiteral("'features' must be list<str>."));
    return m_actions.features(names);
}

Either<Error, Gesture *> GestureReader::gestureOf(const Entry &entry) const
{
    const auto touch = touchOf(entry);
    if (touch.isLeft())
        return Left(touch.left());

    const auto available = readOptional(entry.availableActions, QList<Action *>(),
                                        [this](const QVariant &value) { return m_actions.list(value); });
    if (available.isLeft())
        return Left(available.left());

    const auto defaultAction = defaultActionOf(entry, touch.right().id);
    if (defaultAction.isLeft())
        return Left(defaultAction.left());

    const auto currentAction = readOptional<Action *>(
            entry.currentAction, nullptr, [this](const QVariant &value) { return m_actions.action(value); });
    if (currentAction.isLeft())
        return Left(currentAction.left());

    const auto features = readOptional(entry.features, QList<Feature *>(),
                                       [this](const QVariant &names) { return featuresOf(names); });
    if (features.isLeft())
        return Left(features.left());

    const auto &[id, modes, kind, zone, direction] = touch.right();
    return Right(new Gesture(id, modes, kind, zone, direction, available.right(), defaultAction.right(),
                             currentAction.right(), features.right(), m_parent, Gesture::Later));
}

Either<Error, Gesture *> Gesture::fromVariant(const QVariantMap &entry, const FeaturesProvider *featuresProvider,
                                              const QList<Action *> &actions,
                                              const QMap<QString, QList<Action *>> &actionGroups,
                                              const QMap<QString, QRectF> &zones,
                                              const QMap<QString, QString> &bindings, QObject *parent)
{
    NewActions created;
    const ActionReader reader(ActionReader::indexOf(actions), actionGroups, featuresProvider, &created);
    const auto gesture = GestureReader(reader, zones, bindings, parent).read(entry);
    if (gesture.isRight())
        gesture.right()->takeActions();
    return gesture;
}

Either<Error, QList<Gesture *>>
Gesture::listFromVariant(const QVariantList &list, const FeaturesProvider *featuresProvider,
                         const QList<Action *> &actions, const QMap<QString, QList<Action *>> &actionGroups,
                         const QMap<QString, QRectF> &zones, const QMap<QString, QString> &bindings, QObject *parent)
{
    NewActions created;
    const ActionReader reader(ActionReader::indexOf(actions), actionGroups, featuresProvider, &created);
    return readGestures(list, reader, zones, bindings, parent);
}

Either<Error, QList<Gesture *>> readGestures(const QVariantList &list, const ActionReader &actions,
                                             const QMap<QString, QRectF> &zones, const QMap<QString, QString> &bindings,
                                             QObject *parent)
{
    return GestureReader(actions, zones, bindings, parent).readAll(list);
}

Either<Error, QList<Gesture *>> GestureReader::readAll(const QVariantList &list) const
{
    QList<Gesture *> gestures;
    gestures.reserve(list.size());
    const auto settle = qScopeGuard([&gestures] { Gesture::takeActions(gestures); });
    for (const QVariant &entry : list) {
        if (!isType(entry, QMetaType::QVariantMap))
            return fail(__LINE__, QStringLiteral("list of gestures must must contain maps"));
        const auto gesture = read(held<QVariantMap>(entry));
        if (gesture.isLeft())
            return Left(gesture.left());
        gestures.append(gesture.right());
    }
    return Right(gestures);
}

static QVariantMap withActions(QVariantMap map, const Gesture &gesture)
{
    if (gesture.defaultAction())
        map.insert(QStringLiteral("defaultAction"), gesture.defaultAction()->toVariant());
    if (gesture.currentAction())
        map.insert(QStringLiteral("currentAction"), gesture.currentAction()->toVariant());
    return map;
}

QVariant Gesture::toVariant() const
{
    return withActions({{QStringLiteral("kind"), kindToVariant(m_kind)},
                        {QStringLiteral("zone"), rectfToVariant(m_zone)},
                        {QStringLiteral("direction"), directionToVariant(m_direction)},
                        {QStringLiteral("availableActions"), Action::listToVariant(m_availableActions)}},
                       *this);
}

QVariant Gesture::listToVariant(const QList<Gesture *> &gestures)
{
    QVariantList list;
    for (const Gesture *gesture : gestures) {
        if (gesture)
            list.append(gesture->toVariant());
    }
    return list;
}

Either<Error, QMap<QString, QRectF>> Gesture::zoneMapFromVariant(const QVariantMap &section,
                                                                 const QMap<QString, QRectF> &zones)
{
    QMap<QString, QRectF> own;
    for (auto value = section.cbegin(); value != section.cend(); ++value) {
        const auto zone = zoneFromVariant(*value, zones, nullptr);
        if (zone.isLeft())
            return Left(zone.left());
        own.insert(value.key(), zone.right());
    }
    return Right(own);
}

// As QString::number(number, 'g', 6), in a fraction of the time. Returns the end of the text.
static char *write(char *text, double number)
{
    if (!std::isfinite(number))
        return stpcpy(text, QByteArray::number(number).constData());
    const double unsignedZero = number == 0 ? 0 : number;
    return std::to_chars(text, text + 20, unsignedZero, std::chars_format::general, 6).ptr;
}

static QString nameOf(const QRectF &r)
{
    char text[100];
    char *end = text;
    for (const double number : {r.x(), r.y(), r.width(), r.height()}) {
        *end = end == text ? '(' : ',';
        end = write(end + 1, number);
    }
    *end++ = ')';
    return QString::fromLatin1(text, static_cast<int>(end - text));
}

Either<Error, QRectF> Gesture::zoneFromVariant(const QVariant &value, const QMap<QString, QRectF> &zones,
                                               QString *zoneName)
{
    const auto setName = [zoneName](const QString &name) {
        if (zoneName)
            *zoneName = name;
    };
    if (isType(value, QMetaType::QString)) {
        const auto &name = held<QString>(value);
        setName(name);
        const auto zone = zones.constFind(name);
        if (zone == zones.constEnd())
            return fail(__LINE__, QStringLiteral("zone '%1' not defined").arg(name));
        return Right(*zone);
    }
    if (isType(value, QMetaType::QVariantMap)) {
        const auto zone = rectfFromVariant(held<QVariantMap>(value));
        if (zone.isRight() && zoneName)
            setName(nameOf(zone.right()));
        return zone;
    }
    setName(QStringLiteral("UndefinedZone"));
    return fail(__LINE__, QStringLiteral("zone must be either 'str' or 'map'"));
}

namespace {
struct Rect
{
    const QVariant *x = nullptr;
    const QVariant *y = nullptr;
    const QVariant *w = nullptr;
    const QVariant *h = nullptr;
};

constexpr Field<Rect> rectFields[] = {{u"x", &Rect::x}, {u"y", &Rect::y}, {u"w", &Rect::w}, {u"h", &Rect::h}};
}

Either<Error, QRectF> Gesture::rectfFromVariant(const QVariantMap &map)
{
    const auto [x, y, w, h] = membersOf(map, rectFields);
    if (!x)
        return fail(__LINE__, QStringLiteral("field 'x' must be set"));
    if (!y)
        return fail(__LINE__, QStringLiteral("field 'y' must be set"));
    if (!w)
        return fail(__LINE__, QStringLiteral("field 'w' must be set"));
    if (!h)
        return fail(__LINE__, QStringLiteral("field 'h' must be set"));
    return Right(QRectF(x->toDouble(), y->toDouble(), w->toDouble(), h->toDouble()));
}

QVariant Gesture::rectfToVariant(const QRectF &r)
{
    return QVariantMap{{QStringLiteral("x"), r.x()},
                       {QStringLiteral("y"), r.y()},
                       {QStringLiteral("w"), r.width()},
                       {QStringLiteral("h"), r.height()}};
}

static Gesture::Kind kindNamed(const QString &name)
{
    if (name == QLatin1String("tap"))
        return Gesture::Tap;
    if (name == QLatin1String("hold"))
        return Gesture::Hold;
    if (name == QLatin1String("swipe"))
        return Gesture::Swipe;
    if (name == QLatin1String("drag"))
        return Gesture::Drag;
    return Gesture::Undefined;
}

Either<Error, Gesture::Kind> Gesture::kindFromVariant(const QVariant &value)
{
    const QString name = value.toString();
    Kind kind = kindNamed(name);
    if (kind == Undefined)
        kind = kindNamed(name.toLower());
    if (kind == Undefined)
        return fail(__LINE__, QStringLiteral("kind can be only 'tap' or 'swipe' or 'drag'"));
    return Right(kind);
}

QVariant Gesture::kindToVariant(Kind kind)
{
    switch (kind) {
    case Tap: return QStringLiteral("tap");
    case Hold: return QStringLiteral("hold");
    case Swipe: return QStringLiteral("swipe");
    case Drag: return QStringLiteral("drag");
    case Undefined: break;
    }
    return {};
}

Either<Error, Gesture::Direction> Gesture::directionFromVariant(const QVariant &value)
{
    const QString name = value.toString();
    if (name == QLatin1String("toLeft"))
        return Right(ToLeft);
    if (name == QLatin1String("toRight"))
        return Right(ToRight);
    if (name == QLatin1String("toTop"))
        return Right(ToTop);
    if (name == QLatin1String("toBottom"))
        return Right(ToBottom);
    if (name == QLatin1String("no"))
        return Right(NoDirection);
    return fail(__LINE__,
                QStringLiteral("direction can be only 'toLeft' or 'toRight' or 'toTop' or 'toBottom' or 'no'"));
}

QVariant Gesture::directionToVariant(Direction direction)
{
    switch (direction) {
    case ToLeft: return QStringLiteral("toLeft");
    case ToRight: return QStringLiteral("toRight");
    case ToTop: return QStringLiteral("toTop");
    case ToBottom: return QStringLiteral("toBottom");
    case NoDirection: break;
    }
    return QStringLiteral("no");
}

}
}
