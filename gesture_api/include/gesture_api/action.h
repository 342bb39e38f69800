#pragma once

#include <gesture_api/feature.h>

#include <vellix/either.h>
#include <vellix/export.h>

#include <QDebug>
#include <QList>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QQmlListProperty>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <optional>

namespace vellix {
namespace gesture {

class Gesture;

/// One thing that a gesture can trigger. An action never changes; lists, groups and gestures share it
/// by pointer. It belongs to its parent, which is the last gesture that was made with it; when that
/// gesture dies while another living one uses the action, the action passes to that one.
class GESTURE_API_EXPORT Action : public QObject
{
    Q_OBJECT
    ///@{
    /// What the function of this name returns, for QML. It never changes.
    Q_PROPERTY(QQmlListProperty<vellix::gesture::Feature> features READ features NOTIFY featuresChanged)
    Q_PROPERTY(QString path READ path NOTIFY pathChanged)
    Q_PROPERTY(QStringList titles READ titles NOTIFY titlesChanged)
    Q_PROPERTY(QString lastTitle READ lastTitle NOTIFY lastTitleChanged)
    Q_PROPERTY(bool supported READ supported NOTIFY supportedChanged)
    ///@}

public:
    /// An action without path, titles and features.
    explicit Action(QObject *parent = nullptr);
    /// Nothing is checked. The features stay their provider's, which must outlive the action.
    Action(const QString &path, const QStringList &titles, const QList<Feature *> &features, QObject *parent = nullptr);
    ~Action() override;

    /// What the application dispatches on, and what bindings name; segments are separated by "/".
    QString path() const;
    /// The labels from the outermost menu down to the action's own.
    QStringList titles() const;
    /// The action's own label; a null string without titles.
    QString lastTitle() const;
    /// The features that the action needs, read-only for QML. They belong to their provider.
    QQmlListProperty<Feature> features() const;
    /// The same features for C++.
    const QList<Feature *> &featureList() const;
    /// Whether all features are supported, asked at the first call.
    bool supported() const;

    /// Reads one action: a string names one of `knownActions` (path to action), a map defines a new
    /// one, owned by `parent` (without one, by the caller).
    ///
    /// A definition has "path" and either "title" (a string) or "titles" (a list of strings), and may have
    /// "features" (a list of names). Fails with "action 'PATH' not defined", "'Action' must be either 'str' or
    /// 'map'", with what a definition lacks or has of a wrong type ("'path' is obligatory field" and others),
    /// and as FeaturesProvider::featuresByNames() does; without a provider every feature is unknown.
    static Either<Error, Action *> fromVariant(const QVariant &v, const FeaturesProvider *featuresProvider,
                                               const QMap<QString, Action *> &knownActions, QObject *parent = nullptr);
    /// The same with a plain list; of two actions with one path the later is meant.
    static Either<Error, Action *> fromVariant(const QVariant &v, const FeaturesProvider *featuresProvider,
                                               const QList<Action *> &actions, QObject *parent = nullptr);

    /// Reads an action list: a string names a group, a list holds actions, a map defines one action. Fails with
    /// "action group 'NAME' not defined", "action list must be one of types: 'str', 'list', 'map'", and as
    /// fromVariant() does for the first action that is wrong; those defined before it stay children of `parent`.
    static Either<Error, QList<Action *>> listFromVariant(const QVariant &v, const FeaturesProvider *featuresProvider,
                                                          const QList<Action *> &actions,
                                                          const QMap<QString, QList<Action *>> &actionGroups,
                                                          QObject *parent = nullptr);
    /// Reads named action lists, of which the supported actions are kept. Groups do not nest: a string in
    /// place of a list fails with "action group 'NAME' not defined".
    static Either<Error, QMap<QString, QList<Action *>>>
    actionGroupsFromVariant(const QMap<QString, QVariant> &groups, const QList<Action *> &actions,
                            const FeaturesProvider *featuresProvider, QObject *parent = nullptr);
    /// The first supported action of a list of alternatives. Those defined inline and passed over
    /// stay children of `parent`. Fails with "no one action is supported of list: [ ... ]", and as fromVariant()
    /// does for an alternative that is wrong and stands before the first supported one.
    static Either<Error, Action *> firstSupportedFromVariant(const QList<QVariant> &list,
                                                             const FeaturesProvider *featuresProvider,
                                                             const QList<Action *> &actions, QObject *parent = nullptr);

    /// A map of "path" and "titles". Features are not written.
    QVariant toVariant() const;
    /// A QVariantList of what toVariant() gives for each action; null entries are left out.
    static QVariant listToVariant(const QList<Action *> &actions);

    /// Writes path and titles in one line, `indent` steps of two blanks to the right.
    void dump(QDebug &dbg, int indent) const;

Q_SIGNALS:
    ///@{
    /// Never emitted: QML wants a signal of every property.
    void pathChanged(QString value);
    void titlesChanged(QStringList value);
    void lastTitleChanged(const QString &value);
    void featuresChanged(QQmlListProperty<vellix::gesture::Feature> value);
    void supportedChanged(bool value);
    ///@}

private:
    friend class Gesture;

    const QString m_path;
    const QStringList m_titles;
    const QList<Feature *> m_features;
    mutable std::optional<bool> m_supported;
    bool m_dying = false;
    QList<Gesture *> m_users; // the living gestures that hold this action, in the order they were made
};

/// One node of the menu tree that the paths of actions form: actions that share leading path segments
/// share the nodes for them. A node owns its children.
class GESTURE_API_EXPORT ActionProxyNode : public QObject
{
    Q_OBJECT
    ///@{
    /// What the function of this name returns, for QML. Only a dead action becomes null, which nobody is told.
    Q_PROPERTY(QQmlListProperty<vellix::gesture::ActionProxyNode> childNodes READ childNodes NOTIFY childNodesChanged)
    Q_PROPERTY(int level READ level NOTIFY levelChanged)
    Q_PROPERTY(QString pathSegment READ pathSegment NOTIFY pathSegmentChanged)
    Q_PROPERTY(QString title READ title NOTIFY titleChanged)
    Q_PROPERTY(vellix::gesture::Action *action READ action NOTIFY actionChanged)
    ///@}

public:
    /// A node without children, of an action that may be null and stays its owner's. A `parent`
    /// does not get it among its childNodes(): see findChildNodeOrInsert().
    ActionProxyNode(int level, const QString &pathSegment, const QString &title, Action *action,
                    QObject *parent = nullptr);
    /// A node without an action that becomes the parent of the given nodes; null ones are skipped wherever nodes
    /// are walked.
    ActionProxyNode(int level, const QString &pathSegment, const QString &title,
                    const QList<ActionProxyNode *> &childNodes, QObject *parent = nullptr);
    /// Destroys the nodes below as well, however many levels there are.
    ~ActionProxyNode() override;

    /// The tree of these actions, or null when there are none. The root belongs to `parent`; without
    /// one, to the caller.
    static ActionProxyNode *constructTree(const QList<Action *> &actions, QObject *parent = nullptr);

    /// The index of this node's segment in a path. The root has 0, and so have its children.
    int level() const;
    /// The part of the actions' paths that this node stands for. The root's is ".".
    QString pathSegment() const;
    /// The label of this node, by the action that made it; a null string for a root, and where that action has
    /// too few titles.
    QString title() const;
    /// The action that made this node; null for a root, and once that action is dead.
    Action *action() const;
    /// The children in the order in which the actions name them first, read-only for QML.
    QQmlListProperty<ActionProxyNode> childNodes() const;
    /// The same children for C++.
    const QList<ActionProxyNode *> &childNodeList() const;

    /// The first child of this segment; made when there is none.
    ActionProxyNode *findChildNodeOrInsert(int level, const QString &pathSegment, const QString &title, Action *action);
    /// The first child of this segment, or null.
    ActionProxyNode *findChildNode(const QString &pathSegment) const;

    /// The segments from the root's "." to this node's.
    QStringList path() const;

    /// Whether `ancestorPath` is a proper prefix of `path`.
    static bool isAnsestorOf(const QStringList &ancestorPath, const QVector<QString> &path);
    /// Whether this node stands above the node of the given action; false for null.
    Q_INVOKABLE bool isAnsestorOf(vellix::gesture::Action *other) const;

    /// Writes the tree from here on, a line for each node, `indent` steps of two blanks to the right.
    void dump(QDebug &dbg, int indent) const;

Q_SIGNALS:
    ///@{
    /// Never emitted: QML wants a signal of every property.
    void levelChanged(int value);
    void pathSegmentChanged(QString value);
    void titleChanged(QString value);
    void actionChanged(vellix::gesture::Action *value);
    void childNodesChanged(QQmlListProperty<vellix::gesture::ActionProxyNode> value);
    ///@}

private:
    const int m_level;
    const QString m_pathSegment;
    const QString m_title;
    const QPointer<Action> m_action;
    QList<ActionProxyNode *> m_childNodes;
};

}
}
