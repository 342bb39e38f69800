#pragma once

#include <gesture_api/applicationpaths.h>
#include <vellix/either.h>

#include <QObject>
#include <QString>
#include <QVariantMap>

#include <boost/optional.hpp>

namespace vellix {
namespace gesture {

/// Explains faults in an application's gestures to the user. A service only logs them.
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
    /// Why there are no gestures; empty if there are.
    QString problem() const { return m_problem; }
    /// A warning about gestures that can be shown; usually empty.
    QString notice() const { return m_notice; }
    /// Whether a bindings file exists, readable or not.
    bool hasChoices() const { return m_hasChoices; }
    /// For each gesture's id, "path" and "title" of the action that it has without any choice. The
    /// gestures of a service do not have it: their default action is the user's choice.
    QVariantMap defaults() const { return m_defaults; }

    /// Reads the files again. Call it after the provider has replaced its service.
    Q_INVOKABLE void refresh();
    /// A sentence about a failed save, for the reason that trySaveAsString() has returned.
    Q_INVOKABLE QString saveProblem(const QString &reason) const;

Q_SIGNALS:
    void changed();

private:
    void examine();
    void examineChoices();
    boost::optional<Error> load(const QMap<QString, QString> &bindings, QVariantMap *actions) const;
    QString unwritablePlace() const;

    QString m_appId;
    QString m_problem;
    QString m_notice;
    bool m_hasChoices = false;
    QVariantMap m_defaults;
    ApplicationPaths m_paths;
};

}
}
