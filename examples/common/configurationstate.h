#pragma once

#include <gesture_api/applicationpaths.h>
#include <gesture_api/feature.h>

#include <QObject>
#include <QString>
#include <QVariantMap>

#include <boost/optional.hpp>

/// Says in words that a person understands what is wrong with the gestures of an application. A service only logs it.
class ConfigurationState : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString appId READ appId WRITE setAppId NOTIFY changed)
    Q_PROPERTY(QString problem READ problem NOTIFY changed)
    Q_PROPERTY(QString notice READ notice NOTIFY changed)
    Q_PROPERTY(bool hasChoices READ hasChoices NOTIFY changed)
    Q_PROPERTY(QVariantMap defaults READ defaults NOTIFY changed)

public:
    explicit ConfigurationState(QObject *parent = nullptr);

    QString appId() const { return m_appId; }
    void setAppId(const QString &appId);
    /// Why there are no gestures to show; empty when there are.
    QString problem() const { return m_problem; }
    /// What a person should know though the gestures can be shown; usually empty.
    QString notice() const { return m_notice; }
    /// Whether there is a file of the user's choices, readable or not.
    bool hasChoices() const { return m_hasChoices; }
    /// Of each gesture by its id, a map of "path" and "title" of the action that it has without any choice. The
    /// gestures of a service cannot tell: their default action is the user's.
    QVariantMap defaults() const { return m_defaults; }

    /// Reads the files again; call it when the provider has changed its service.
    Q_INVOKABLE void refresh();
    /// A sentence about a save that failed, for the reason that a service's trySaveAsString() has returned.
    Q_INVOKABLE QString saveProblem(const QString &reason) const;

Q_SIGNALS:
    void changed();

private:
    void examine();
    void examineChoices();
    boost::optional<vellix::Error> load(const QMap<QString, QString> &bindings, QVariantMap *actions) const;
    QString unwritablePlace() const;

    QString m_appId;
    QString m_problem;
    QString m_notice;
    bool m_hasChoices = false;
    QVariantMap m_defaults;
    vellix::gesture::ApplicationPaths m_paths;
    const vellix::gesture::DefaultFeaturesProvider m_features;
};
