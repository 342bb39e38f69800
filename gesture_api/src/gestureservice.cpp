#include <gesture_api/gestureservice.h>

#include "dump.h"
#include "gestureindex.h"
#include "userfile.h"

#include <gesture_api/configuration.h>
#include <gesture_api/zones.h>

#include <vellix/exitnotifier.h>

#include <algorithm>

namespace vellix {
namespace gesture {

using ActionBindings = Configuration::ActionBindings;
using components::ReadonlyLazyListModel;

static QMap<QString, QRectF> makePredefinedZones()
{
    const QMap<QString, QRectF> none;
    QMap<QString, QRectF> zones = Zones::generate3x3Model(QPointF(4.0, 5.0)).getOrErr(none);
    for (const QMap<QString, QRectF> &more : {Zones::generateV3Model(8.0).getOrErr(none), Zones::wholeZone()}) {
        for (auto zone = more.cbegin(); zone != more.cend(); ++zone)
            zones.insert(zone.key(), *zone);
    }
    return zones;
}

QMap<QString, QRectF> GestureService::predefinedZones = makePredefinedZones();

GestureService::GestureService(const ApplicationPaths &paths, const FeaturesProvider *featuresProvider, bool readonly,
                               QObject *parent)
    : QObject(parent), m_paths(paths), m_featuresProvider(featuresProvider), m_wantsFeatures(featuresProvider),
      m_readonly(readonly), m_userFile(std::make_shared<UserFile>(paths.currentPath())),
      m_gestures([this] { return load(); })
{
    connect(ExitNotifier::instance(), &ExitNotifier::prepareExit, this, &GestureService::saveAtExit);
}

GestureService::GestureService(const ApplicationPaths &paths, const FeaturesProvider *featuresProvider, bool readonly,
                               const GestureList &gestures, bool pruned, QObject *parent)
    : QObject(parent), m_paths(paths), m_featuresProvider(featuresProvider), m_wantsFeatures(featuresProvider),
      m_readonly(readonly), m_pruned(pruned), m_state(Loaded),
      m_userFile(std::make_shared<UserFile>(paths.currentPath())),
      m_gestures([clones = Gesture::cloneList(gestures.get(), this)] { return clones; })
{
}

GestureService::~GestureService()
{
    // The model reads the list, and the list is destroyed before the children.
    delete m_gesturesModel;
    Gesture::leaveTogether(findChildren<Gesture *>(QString(), Qt::FindDirectChildrenOnly));
}

ReadonlyLazyListModel *GestureService::gestures() const
{
    if (!m_gesturesModel)
        m_gesturesModel = m_gestures.acquireModel(const_cast<GestureService *>(this));
    return m_gesturesModel;
}

const GestureIndex &GestureService::index() const
{
    const QList<Gesture *> &gestures = gestureList();
    if (!m_index)
        m_index = std::make_unique<GestureIndex>(gestures);
    return *m_index;
}

Gesture *GestureService::findGesture(const QString &mode, const Gesture::Kind &kind,
                                     const Gesture::Direction &direction, const QPointF &position) const
{
    return index().find(mode, kind, direction, position);
}

Gesture *GestureService::findGestureByZone(const QString &mode, const Gesture::Kind &kind,
                                           const Gesture::Direction &direction, const QRectF &zone) const
{
    return index().findByZone(mode, kind, direction,
                              [&zone](const QRectF &outer) { return outer == zone || Zones::contains(outer, zone); });
}

GestureService *GestureService::clone(QObject *parent) const
{
    auto *copy = new GestureService(m_paths, m_featuresProvider, m_readonly, m_gestures, m_pruned, parent);
    copy->m_userFile = std::make_shared<UserFile>(*m_userFile);
    return copy;
}

static QVector<QPointer<Gesture>> guarded(const QList<Gesture *> &gestures)
{
    return {gestures.cbegin(), gestures.cend()};
}

bool GestureService::fastMerge(const GestureService *other)
{
    if (!other)
        return false;
    // A listener of one gesture may destroy others, or the services with them.
    const QPointer<GestureService> self(this);
    const QPointer<const GestureService> source(other);
    const QVector<QPointer<Gesture>> mine = guarded(gestureList());
    const QVector<QPointer<Gesture>> theirs = guarded(other->gestureList());
    for (int i = 0; i < std::min(mine.size(), theirs.size()); ++i) {
        if (mine.at(i) && theirs.at(i) && !mine.at(i)->merge(theirs.at(i)))
            return false;
        if (!self || !source)
            return false;
    }
    Q_EMIT gesturesChanged(gestures());
    return true;
}

QDebug &GestureService::dump(QDebug &debug, int indent) const
{
    debug << indentText(indent).constData() << "gestures:\n";
    for (const Gesture *gesture : gestureList()) {
        if (gesture)
            gesture->dump(debug, indent + 1);
        else
            debug << indentText(indent + 1).constData() << "  null\n";
    }
    return debug;
}

// The meta-object has this signature. NOLINTNEXTLINE(performance-unnecessary-value-param)
QObject *GestureService::findGestureByZoneAsQObject(QString mode, int kind, int direction, QRectF zone) const
{
    return findGestureByZone(mode, static_cast<Gesture::Kind>(kind), static_cast<Gesture::Direction>(direction), zone);
}

// The meta-object has this signature. NOLINTNEXTLINE(performance-unnecessary-value-param)
QObject *GestureService::findGestureAsQObject(QString mode, int kind, int direction, QPointF position) const
{
    return findGesture(mode, static_cast<Gesture::Kind>(kind), static_cast<Gesture::Direction>(direction), position);
}

bool GestureService::containsGestureKind(int kind) const
{
    const QList<Gesture *> &gestures = gestureList();
    return std::any_of(gestures.cbegin(), gestures.cend(),
                       [kind](const Gesture *gesture) { return gesture && gesture->kind() == kind; });
}

QObject *GestureService::cloneAsQObject(QObject *parent) const
{
    return clone(parent);
}

bool GestureService::fastMergeWithQObject(QObject *other)
{
    return fastMerge(qobject_cast<GestureService *>(other));
}

// If the file cannot be opened, the process ends wherever unhandled errors end it.
static void report(const SaveFailure &failure, const QString &path)
{
    if (failure.step == SaveFailure::Opening)
        Either<QString, qint64>(Left(failure.message(path))).qGetOrErr(0);
    else
        qCritical() << "[error] not saved:" << failure.message(path);
}

bool GestureService::save()
{
    m_saved = true;
    if (m_readonly || m_pruned)
        return false;
    const auto saved = saveChoices();
    if (saved.isLeft())
        report(saved.left(), m_userFile->path());
    return true;
}

Either<QString, qint64> GestureService::trySave()
{
    m_saved = true;
    if (m_readonly)
        return Left(QStringLiteral("the service is read-only"));
    if (m_pruned)
        return Left(QStringLiteral("the service is pruned"));
    return saveChoices().mapLeft([this](const SaveFailure &failure) { return failure.message(m_userFile->path()); });
}

QString GestureService::trySaveAsString()
{
    const auto saved = trySave();
    if (saved.isRight())
        return QString();
    qCritical() << "[error] not saved:" << saved.left();
    return saved.left();
}

Either<SaveFailure, qint64> GestureService::saveChoices()
{
    if (!mayLoad())
        return Left(SaveFailure{SaveFailure::Other, QStringLiteral("the gestures are not loaded")});
    const auto saved = m_userFile->save(bindingsOf(gestureList()));
    if (saved.isRight())
        markSaved();
    return saved;
}

void GestureService::markSaved()
{
    for (Gesture *gesture : gestureList()) {
        if (gesture)
            gesture->m_chosen = false;
    }
}

// Other programs, or other services of this one, may have saved since: keep their choices.
void GestureService::saveAtExit()
{
    m_saved = true;
    if (m_readonly || m_pruned || !m_userFile->isOwn() || !mayLoad())
        return;
    UserFile::Choices choices;
    for (const Gesture *gesture : gestureList()) {
        if (!gesture || !gesture->m_chosen)
            continue;
        const Action *action = gesture->currentAction();
        choices.insert(gesture->id(), action ? std::make_optional(action->path()) : std::nullopt);
    }
    const auto saved = m_userFile->saveUnlessChanged(bindingsOf(gestureList()), choices);
    if (saved.isLeft())
        report(saved.left(), m_userFile->path());
    else
        markSaved();
}

bool GestureService::prune()
{
    m_pruned = true;
    return PathResolver::newDefault().remove(m_paths.currentPath().toStdString());
}

// Returns false during a load, which may end the process, and after the features provider was destroyed: the
// configuration could not be read then, and a save would lose the choices.
bool GestureService::mayLoad() const
{
    return m_state == Loaded || (m_state == NotLoaded && (m_featuresProvider || !m_wantsFeatures));
}

QList<Gesture *> GestureService::load()
{
    m_state = Loading;
    const Bindings bindings = loadBindings();
    const auto gestures =
            Configuration::loadJson(m_paths.defaultPath(), m_featuresProvider, predefinedZones, bindings, this);
    if (gestures.isLeft() && !bindings.isEmpty())
        m_userFile->refuse();
    const QList<Gesture *> list = gestures.getOrErr({});
    m_index.reset(); // made for the list by a lookup during this load
    m_state = Loaded;
    return list;
}

QMap<QString, QString> GestureService::loadBindings()
{
    const Bindings none;
    const auto bindings = m_userFile->load(!m_readonly);
    if (bindings.isRight())
        return bindings.right();
    const auto *mismatch = boost::get<ActionBindings::ParsingError::VersionNotMatch>(&bindings.left().value);
    if (!mismatch)
        return bindings.getOrErr(none);
    qWarning() << "[warn] version not match: found:" << mismatch->version << "needed:" << ActionBindings::version;
    return none;
}

}
}
