#include "gesturelist.h"

#include "words.h"

#include <algorithm>

namespace vellix {
namespace gesture {

// Sections in the order of their first gestures.
static QList<Gesture *> grouped(const QList<Gesture *> &gestures)
{
    QStringList order;
    QHash<QString, QList<Gesture *>> sections;
    for (Gesture *gesture : gestures) {
        QList<Gesture *> &section = sections[gesture->section()];
        if (section.isEmpty())
            order.append(gesture->section());
        section.append(gesture);
    }
    QList<Gesture *> all;
    for (const QString &section : qAsConst(order))
        all.append(sections.value(section));
    return all;
}

static bool sameIds(const QList<Gesture *> &before, const QStringList &ids)
{
    return std::equal(before.cbegin(), before.cend(), ids.cbegin(), ids.cend(),
                      [](const Gesture *gesture, const QString &id) { return gesture->id() == id; });
}

void GestureList::setGestures(const QList<Gesture *> &gestures)
{
    const QList<Gesture *> next = grouped(gestures);
    QStringList ids;
    for (const Gesture *gesture : next)
        ids.append(gesture->id());
    const bool stays = sameIds(m_gestures, ids);
    if (!stays)
        beginResetModel();
    const int before = count();
    m_gestures = next;
    m_decimals = words::decimalsFor(next);
    if (!stays)
        endResetModel();
    else if (!next.isEmpty())
        Q_EMIT dataChanged(index(0), index(count() - 1));
    if (count() != before)
        Q_EMIT countChanged();
}

void GestureList::setMarks(const Marks &marks)
{
    m_marks = marks;
    if (count() > 0)
        Q_EMIT dataChanged(index(0), index(count() - 1));
}

Gesture *GestureList::gesture(const QString &id) const
{
    const auto found = std::find_if(m_gestures.cbegin(), m_gestures.cend(),
                                    [&id](const Gesture *gesture) { return gesture->id() == id; });
    return found == m_gestures.cend() ? nullptr : *found;
}

int GestureList::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant GestureList::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return QVariant();
    Gesture *gesture = m_gestures.at(index.row());
    const QString &id = gesture->id();
    switch (role) {
    case GestureRole: return QVariant::fromValue(gesture);
    case GestureIdRole: return id;
    case Qt::DisplayRole:
    case GestureTitleRole: return words::gesture(*gesture, m_decimals);
    case SectionRole: return gesture->section();
    case SectionTitleRole: return words::section(gesture->modes(), gesture->kind());
    case ActionTitleRole: return words::action(gesture->currentAction());
    case DefaultTitleRole: return m_marks.defaultTitles.value(id, words::action(nullptr));
    case IsDefaultRole: return !m_marks.chosen.contains(id);
    case IsEditedRole: return m_marks.edited.contains(id);
    case IsConflictingRole: return m_marks.conflicting.contains(id);
    case IsSupportedRole: return gesture->supported();
    case IsChangeableRole: return !gesture->availableActions().isEmpty();
    default: return QVariant();
    }
}

QHash<int, QByteArray> GestureList::roleNames() const
{
    return {{GestureRole, "gesture"},           {GestureIdRole, "gestureId"},
            {GestureTitleRole, "gestureTitle"}, {SectionRole, "section"},
            {SectionTitleRole, "sectionTitle"}, {ActionTitleRole, "actionTitle"},
            {DefaultTitleRole, "defaultTitle"}, {IsDefaultRole, "isDefault"},
            {IsEditedRole, "isEdited"},         {IsConflictingRole, "isConflicting"},
            {IsSupportedRole, "isSupported"},   {IsChangeableRole, "isChangeable"}};
}

}
}
