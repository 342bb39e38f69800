#include "gestures.h"

#include "words.h"

#include <QAccessible>

namespace vellix {
namespace gesture {

int Gestures::directionFromVec(double dx, double dy) const
{
    return Gesture::directionFromVec(dx, dy);
}

Gesture *Gestures::gestureById(GestureService *service, const QString &id) const
{
    if (!service)
        return nullptr;
    const QList<Gesture *> &gestures = service->gestureList();
    const auto found = std::find_if(gestures.cbegin(), gestures.cend(),
                                    [&id](const Gesture *gesture) { return gesture && gesture->id() == id; });
    return found == gestures.cend() ? nullptr : *found;
}

QString Gestures::gestureTitle(Gesture *gesture) const
{
    return gesture ? words::gesture(*gesture) : QString();
}

QString Gestures::sectionTitle(Gesture *gesture) const
{
    return gesture ? words::section(gesture->modes(), gesture->kind()) : QString();
}

QString Gestures::kindTitle(int kind) const
{
    return words::kind(kind);
}

QString Gestures::touchTitle(int kind, int direction) const
{
    return words::touch(kind, direction);
}

QString Gestures::zoneTitle(const QRectF &zone) const
{
    return words::zone(zone);
}

QString Gestures::modeTitle(const QString &mode) const
{
    return words::modes({mode});
}

QString Gestures::actionTitle(Action *action) const
{
    return words::action(action);
}

void Gestures::announce(QObject *item) const
{
    if (!item)
        return;
    QAccessibleEvent alert(item, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

}
}
