#include <gesture_api/action.h>

#include "dump.h"
#include "qmllistproperty.h"

#include <QMetaMethod>

namespace vellix {
namespace gesture {

Action::Action(QObject *parent) : Action(QString(), QStringList(), QList<Feature *>(), parent) {}

Action::Action(const QString &path, const QStringList &titles, const QList<Feature *> &features, QObject *parent)
    : QObject(parent), m_path(path), m_titles(titles), m_features(features)
{
}

// A file has thousands of actions, and few have listeners: a connection for each would cost more than the action.
void Action::connectNotify(const QMetaMethod &signal)
{
    static const QMetaMethod lastTitle = QMetaMethod::fromSignal(&Action::lastTitleChanged);
    if (signal == lastTitle)
        connect(this, &Action::titlesChanged, this, &Action::announceLastTitle, Qt::UniqueConnection);
}

void Action::announceLastTitle()
{
    Q_EMIT lastTitleChanged(lastTitle());
}

QString Action::path() const
{
    return m_path;
}

QStringList Action::titles() const
{
    return m_titles;
}

QString Action::lastTitle() const
{
    return m_titles.isEmpty() ? QString() : m_titles.last();
}

QQmlListProperty<Feature> Action::features() const
{
    return kMakeReadonlyProxyQmlListProperty(this, m_features);
}

const QList<Feature *> &Action::featureList() const
{
    return m_features;
}

bool Action::supported() const
{
    if (!m_supported)
        m_supported = Feature::allSupported(m_features);
    return *m_supported;
}

QVariant Action::toVariant() const
{
    return QVariantMap{{QStringLiteral("path"), m_path}, {QStringLiteral("titles"), m_titles}};
}

QVariant Action::listToVariant(const QList<Action *> &actions)
{
    QVariantList list;
    for (const Action *action : actions) {
        if (action)
            list.append(action->toVariant());
    }
    return list;
}

void Action::dump(QDebug &dbg, int indent) const
{
    dbg << indentText(indent).constData() << "action: " << m_path << ":" << m_titles << "\n";
}

}
}
