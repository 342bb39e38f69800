#pragma once

#include "configurationstate.h"
#include "gesturelist.h"

#include <gesture_api/applicationpaths.h>
#include <gesture_api/gesture.h>

#include <QMap>
#include <QObject>
#include <QQmlParserStatus>
#include <QSet>
#include <QString>

#include <memory>
#include <optional>

namespace vellix {
namespace gesture {

/// An edit session for the gestures of an application. Choices stay in the session until save(). It follows the
/// files: what other programs write appears at once, with the unsaved choices on top.
class GestureEditor : public QObject, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    /// The application. Initially the file name of the program.
    Q_PROPERTY(QString appId READ appId WRITE setAppId NOTIFY appIdChanged)
    /// The gestures, grouped by section; see GestureList. The same object for the whole session.
    Q_PROPERTY(vellix::gesture::GestureList *model READ model CONSTANT)
    /// Whether there is anything to save.
    Q_PROPERTY(bool edited READ isEdited NOTIFY changed)
    /// Whether the user has chosen anything, saved or not, so that restoreDefaults() has something to do.
    Q_PROPERTY(bool hasChoices READ hasChoices NOTIFY changed)
    /// A sentence: why there are no gestures, or why the last choice was refused. Empty when all is well.
    Q_PROPERTY(QString problem READ problem NOTIFY changed)
    /// A sentence: why the last save failed, until the next change. Empty when all is well.
    Q_PROPERTY(QString saveProblem READ saveProblem NOTIFY changed)
    /// A sentence that warns about files, for example that nothing can be saved. Usually empty.
    Q_PROPERTY(QString notice READ notice NOTIFY changed)
    /// A sentence about the last event: a save, or a change by another program. Empty after the next choice.
    Q_PROPERTY(QString news READ news NOTIFY changed)

public:
    explicit GestureEditor(QObject *parent = nullptr);
    ~GestureEditor() override;

    QString appId() const { return m_appId; }
    void setAppId(const QString &appId);
    GestureList *model() { return &m_list; }
    bool isEdited() const;
    bool hasChoices() const;
    QString problem() const;
    QString saveProblem() const { return m_saveProblem; }
    QString notice() const { return m_state.notice(); }
    QString news() const { return m_news; }

    /// The gesture with this id, or null. It lives until the gestures change.
    Q_INVOKABLE vellix::gesture::Gesture *gesture(const QString &id) const;
    /// Chooses the action with this path for a gesture. Returns false, and sets `problem`, if the gesture does not
    /// offer it, if the device does not support it, or if the application could not be loaded with it any more.
    Q_INVOKABLE bool choose(const QString &id, const QString &path);
    /// Forgets the choice for a gesture, so that it has its default.
    Q_INVOKABLE bool resetGesture(const QString &id);
    /// Drops everything that is not saved.
    Q_INVOKABLE void revert();
    /// Forgets all choices of the user. Like all edits, it is written by save().
    Q_INVOKABLE void restoreDefaults();
    /// Writes the choices of the user, and only these: other gestures keep following their defaults. Choices of other
    /// programs stay, except those that were edited here. Returns false, and sets `saveProblem`, if a failure, a
    /// configuration that would not load again, or a choice that another program has saved for an edited gesture and
    /// that was not shown yet prevents it; then the file is as it was.
    Q_INVOKABLE bool save();

    void classBegin() override {}
    void componentComplete() override;

Q_SIGNALS:
    void appIdChanged();
    /// Any of the sentences, `edited` or `hasChoices` may have changed.
    void changed();
    /// Another program has saved choices. The model already shows them.
    void choicesChangedElsewhere();
    /// The configuration has other gestures or actions. The model already shows them.
    void configurationChangedElsewhere();
    /// save() has written the file.
    void saved();

private:
    /// An action's path, or nothing for the default.
    using Edit = std::optional<QString>;
    using Bindings = QMap<QString, QString>;

    void watch();
    void refresh();
    void show();
    void updateMarks();
    void keep(const QString &id, const Edit &edit);
    bool refuse(const QString &reason);
    void finish();
    Bindings read(bool *readable) const;
    Bindings withEdits(const Bindings &saved) const;
    bool replacesUnseen(const Bindings &now) const;
    QString refusal(const Gesture &gesture, const QString &path) const;
    QString trial(const Bindings &bindings, const QStringList &edited) const;
    QString write(const Bindings &bindings) const;

    QString m_appId;
    bool m_complete = false;
    ConfigurationState m_state;
    std::optional<ApplicationPaths> m_paths; // nothing if the application may not have gestures
    std::unique_ptr<QObject> m_watches;
    std::unique_ptr<QObject> m_owner; // of the gestures in the list
    GestureList m_list;
    Bindings m_saved;       // of the file, as far as this session knows
    bool m_readable = true; // the file, if there is one
    QMap<QString, Edit> m_edits;
    bool m_restoring = false; // the saved choices do not count
    QSet<QString> m_conflicts;
    QString m_refusal;
    QString m_saveProblem;
    QString m_news;
};

}
}
