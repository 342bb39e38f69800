#include "gestureeditor.h"

#include "provider.h"
#include "words.h"

#include <gesture_api/configuration.h>
#include <gesture_api/gestureservice.h>
#include <gesture_api/gestureserviceprovider.h>

#include <vellix/platform/vxcomponents.h>
#include <vellix/resolvedpath.h>

#include <QPointer>

#include <algorithm>

namespace vellix {
namespace gesture {

using GesturePointers = QList<Gesture *>;

static Either<Error, GesturePointers> load(const ApplicationPaths &paths, const QMap<QString, QString> &bindings,
                                           QObject *owner)
{
    return Configuration::loadJson(paths.defaultPath(), deviceFeatures(), GestureService::predefinedZones, bindings,
                                   owner);
}

static Action *offered(const Gesture &gesture, const QString &path)
{
    const QList<Action *> &actions = gesture.availableActions();
    const auto found = std::find_if(actions.cbegin(), actions.cend(),
                                    [&path](const Action *action) { return action->path() == path; });
    return found == actions.cend() ? nullptr : *found;
}

static QString currentPath(const Gesture &gesture)
{
    return gesture.currentAction() ? gesture.currentAction()->path() : QString();
}

// What a user can see of the gestures without any choice.
static QVector<QStringList> shapeOf(const GesturePointers &gestures)
{
    QVector<QStringList> shape;
    for (const Gesture *gesture : gestures) {
        const QRectF zone = gesture->zone();
        QStringList each{gesture->id(), gesture->section(), QString::number(gesture->direction())};
        for (const qreal number : {zone.x(), zone.y(), zone.width(), zone.height()})
            each.append(QString::number(number));
        for (const Action *action : gesture->availableActions())
            each.append(action->path());
        shape.append(each);
    }
    return shape;
}

GestureEditor::GestureEditor(QObject *parent)
    : QObject(parent), m_appId(ApplicationPathsConfiguration::currentAppId()), m_owner(std::make_unique<QObject>()),
      m_list(this)
{
}

GestureEditor::~GestureEditor() = default;

void GestureEditor::componentComplete()
{
    m_complete = true;
    watch();
    refresh();
}

void GestureEditor::setAppId(const QString &appId)
{
    if (appId == m_appId)
        return;
    m_appId = appId;
    m_edits.clear();
    m_conflicts.clear();
    m_restoring = false;
    m_refusal.clear();
    m_saveProblem.clear();
    m_news.clear();
    m_list.setGestures({});
    const QPointer<GestureEditor> self(this);
    if (m_complete) {
        watch();
        refresh();
    }
    if (self)
        Q_EMIT appIdChanged();
}

void GestureEditor::watch()
{
    m_watches = std::make_unique<QObject>();
    m_paths.reset();
    if (m_appId.isEmpty())
        return;
    const auto paths = GestureServiceProvider::applicationPathsConfiguration().appPaths(m_appId);
    if (paths.isLeft())
        return;
    m_paths = paths.right();
    for (const QString &path : {m_paths->currentPath(), m_paths->defaultPath()})
        components::fs::__watchFileChange(resolvedPath(path), m_watches.get(), [this] { refresh(); });
}

GestureEditor::Bindings GestureEditor::read(bool *readable) const
{
    *readable = true;
    if (!m_paths || !m_paths->currentPathExists())
        return Bindings();
    const auto bindings = Configuration::ActionBindings::loadJson(m_paths->currentPath());
    *readable = bindings.isRight();
    return bindings.isRight() ? bindings.right() : Bindings();
}

// Also after this editor's own save: then nothing is new.
void GestureEditor::refresh()
{
    const bool first = m_list.count() == 0;
    const QVector<QStringList> shape = shapeOf(m_list.gestures());
    const Bindings known = m_saved;
    if (m_state.appId() == m_appId)
        m_state.refresh();
    else
        m_state.setAppId(m_appId);
    m_saved = read(&m_readable);
    for (auto edit = m_edits.cbegin(); edit != m_edits.cend(); ++edit) {
        if (known.value(edit.key()) != m_saved.value(edit.key()))
            m_conflicts.insert(edit.key());
    }
    show();
    const bool reshaped = !first && shapeOf(m_list.gestures()) != shape;
    const bool rebound = !first && known != m_saved;
    if (reshaped)
        m_news = tr("The gestures of the application have changed.");
    else if (rebound && isEdited())
        m_news = tr("Another program has changed the choices. Your unsaved choices are kept.");
    else if (rebound)
        m_news = tr("Another program has changed the choices.");
    const QPointer<GestureEditor> self(this);
    Q_EMIT changed();
    if (reshaped && self)
        Q_EMIT configurationChangedElsewhere();
    if (rebound && self)
        Q_EMIT choicesChangedElsewhere();
}

// Loads the gestures with the saved choices that are not edited, and sets the edited ones. Drops edits that no longer
// fit.
void GestureEditor::show()
{
    Bindings bindings = m_restoring ? Bindings() : m_saved;
    for (auto edit = m_edits.cbegin(); edit != m_edits.cend(); ++edit)
        bindings.remove(edit.key());
    auto owner = std::make_unique<QObject>();
    const auto loaded =
            m_paths ? load(*m_paths, bindings, owner.get()) : Either<Error, GesturePointers>(Right(GesturePointers()));
    const GesturePointers gestures = loaded.isRight() ? loaded.right() : GesturePointers();
    for (auto edit = m_edits.begin(); edit != m_edits.end();) {
        bool fits = false;
        for (Gesture *gesture : gestures) {
            Action *action = gesture->id() == edit.key() && *edit ? offered(*gesture, **edit) : nullptr;
            if (action)
                gesture->setCurrentAction(action);
            fits = fits || action || (gesture->id() == edit.key() && !*edit);
        }
        if (!fits)
            m_conflicts.remove(edit.key());
        edit = fits || loaded.isLeft() ? std::next(edit) : m_edits.erase(edit);
    }
    std::swap(m_owner, owner); // a listener of the list may run an event loop, and get here again
    m_list.setGestures(gestures);
    owner.release()->deleteLater(); // delegates may still show its gestures
    updateMarks();
}

void GestureEditor::updateMarks()
{
    GestureList::Marks marks;
    const QStringList chosen = withEdits(m_saved).keys();
    QStringList edited = m_edits.keys();
    if (m_restoring)
        edited += m_saved.keys();
    marks.chosen = QSet<QString>(chosen.cbegin(), chosen.cend());
    marks.edited = QSet<QString>(edited.cbegin(), edited.cend());
    marks.conflicting = m_conflicts;
    const QVariantMap defaults = m_state.defaults();
    for (auto action = defaults.cbegin(); action != defaults.cend(); ++action) {
        const QVariantMap parts = action->toMap();
        const QString title = parts.value(QStringLiteral("title")).toString();
        marks.defaultTitles.insert(action.key(),
                                   title.isEmpty() ? parts.value(QStringLiteral("path")).toString() : title);
    }
    m_list.setMarks(marks);
}

bool GestureEditor::isEdited() const
{
    return !m_edits.isEmpty() || (m_restoring && (!m_saved.isEmpty() || !m_readable));
}

bool GestureEditor::hasChoices() const
{
    return !withEdits(m_saved).isEmpty() || (!m_readable && !m_restoring);
}

QString GestureEditor::problem() const
{
    return m_list.count() == 0 ? m_state.problem() : m_refusal;
}

Gesture *GestureEditor::gesture(const QString &id) const
{
    return m_list.gesture(id);
}

GestureEditor::Bindings GestureEditor::withEdits(const Bindings &saved) const
{
    Bindings bindings = m_restoring ? Bindings() : saved;
    for (auto edit = m_edits.cbegin(); edit != m_edits.cend(); ++edit) {
        if (*edit)
            bindings.insert(edit.key(), **edit);
        else
            bindings.remove(edit.key());
    }
    return bindings;
}

bool GestureEditor::choose(const QString &id, const QString &path)
{
    const Gesture *gesture = m_list.gesture(id);
    if (!gesture)
        return refuse(tr("There is no gesture “%1”.").arg(id));
    const QString reason = refusal(*gesture, path);
    if (!reason.isEmpty())
        return refuse(reason);
    keep(id, path);
    for (Gesture *each : m_list.gestures()) {
        if (each->id() == id)
            each->setCurrentAction(offered(*each, path));
    }
    updateMarks();
    finish();
    return true;
}

// The reasons in the order in which a user can do something about them.
QString GestureEditor::refusal(const Gesture &gesture, const QString &path) const
{
    const Action *action = offered(gesture, path);
    if (!action)
        return tr("“%1” is not offered for this gesture.").arg(path);
    if (!action->supported())
        return tr("This device does not have what “%1” needs.").arg(words::action(action));
    Bindings bindings = withEdits(m_saved);
    bindings.insert(gesture.id(), path);
    const QString reason = trial(bindings, m_edits.keys() << gesture.id());
    return reason.isEmpty() ? QString() : tr("“%1” cannot be chosen. %2").arg(words::action(action), reason);
}

// Why the application could not use these bindings; empty if it can. A binding that its gesture does not follow is only
// refused here if it is an edit: other programs may have written others.
QString GestureEditor::trial(const Bindings &bindings, const QStringList &edited) const
{
    if (!m_paths)
        return m_state.problem();
    QObject owner;
    const auto loaded = load(*m_paths, bindings, &owner);
    if (loaded.isLeft())
        return tr("The application could not read its gestures any more (%1).").arg(words::error(loaded.left()));
    for (const Gesture *gesture : loaded.right()) {
        const QString path = bindings.value(gesture->id());
        if (!path.isEmpty() && currentPath(*gesture) != path && edited.contains(gesture->id()))
            return tr("The configuration itself decides what this gesture does.");
    }
    return QString();
}

// A choice that the file has already is no edit, nor is the default where the user has chosen nothing.
void GestureEditor::keep(const QString &id, const Edit &edit)
{
    const Bindings saved = m_restoring ? Bindings() : m_saved;
    const QString usual = m_state.defaults().value(id).toMap().value(QStringLiteral("path")).toString();
    const bool isSaved = saved.contains(id) ? edit == saved.value(id) : !edit || *edit == usual;
    if (isSaved)
        m_edits.remove(id);
    else
        m_edits.insert(id, edit);
    m_conflicts.remove(id);
}

bool GestureEditor::resetGesture(const QString &id)
{
    if (!m_list.gesture(id))
        return refuse(tr("There is no gesture “%1”.").arg(id));
    keep(id, std::nullopt);
    show();
    finish();
    return true;
}

void GestureEditor::revert()
{
    m_edits.clear();
    m_conflicts.clear();
    m_restoring = false;
    show();
    finish();
}

void GestureEditor::restoreDefaults()
{
    m_edits.clear();
    m_conflicts.clear();
    m_restoring = true;
    show();
    finish();
}

bool GestureEditor::refuse(const QString &reason)
{
    m_refusal = reason;
    Q_EMIT changed();
    return false;
}

void GestureEditor::finish()
{
    m_refusal.clear();
    m_saveProblem.clear();
    m_news.clear();
    Q_EMIT changed();
}

// Whether a save would replace choices of another program that this session has not shown yet.
bool GestureEditor::replacesUnseen(const Bindings &now) const
{
    if (m_restoring)
        return now != m_saved;
    const QStringList ids = m_edits.keys();
    return std::any_of(ids.cbegin(), ids.cend(), [&](const QString &id) { return now.value(id) != m_saved.value(id); });
}

bool GestureEditor::save()
{
    if (!isEdited())
        return true;
    bool readable = true;
    const Bindings now = read(&readable);
    if (replacesUnseen(now)) {
        const QPointer<GestureEditor> self(this);
        refresh();
        if (!self)
            return false;
        m_saveProblem = tr("Another program has changed a choice that is unsaved here. Check it, then save again.");
        Q_EMIT changed();
        return false;
    }
    const bool isForeign = now != m_saved;
    const Bindings bindings = withEdits(now);
    QString reason = trial(bindings, m_edits.keys());
    if (!reason.isEmpty())
        reason = tr("The choices were not saved. %1").arg(reason);
    else
        reason = write(bindings);
    m_news.clear();
    m_refusal.clear();
    m_saveProblem = reason;
    if (!reason.isEmpty()) {
        Q_EMIT changed();
        return false;
    }
    m_saved = bindings;
    m_readable = true;
    m_edits.clear();
    m_conflicts.clear();
    m_restoring = false;
    m_state.refresh();
    show();
    m_news = isForeign ? tr("Saved. Another program had changed other choices.") : tr("Saved.");
    const QPointer<GestureEditor> self(this);
    Q_EMIT changed();
    if (self)
        Q_EMIT saved();
    if (self && isForeign)
        Q_EMIT choicesChangedElsewhere();
    return true;
}

// A service with only these choices saves as safely as every service. If the old choices prevent its load, its first
// save only puts them aside.
QString GestureEditor::write(const Bindings &bindings) const
{
    for (int attempt = 0; attempt < 2; ++attempt) {
        GestureService service(*m_paths, deviceFeatures(), false);
        for (Gesture *gesture : service.gestureList()) {
            const QString path = bindings.value(gesture->id());
            if (path.isEmpty() || path != currentPath(*gesture))
                gesture->setCurrentAction(path.isEmpty() ? nullptr : offered(*gesture, path));
        }
        const auto saved = service.trySave();
        if (saved.isLeft())
            return m_state.saveProblem(saved.left());
        if (!service.gestureList().isEmpty())
            break;
    }
    return QString();
}

}
}
