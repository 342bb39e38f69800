#pragma once

#include <gesture_api/applicationpaths.h>
#include <gesture_api/feature.h>
#include <gesture_api/gesture.h>

#include <vellix/either.h>
#include <vellix/export.h>
#include <vellix/platform/vxcomponents.h>

#include <QDebug>
#include <QList>
#include <QMap>
#include <QObject>
#include <QPointF>
#include <QPointer>
#include <QRectF>
#include <QString>

#include <memory>

namespace vellix {
namespace gesture {

class GestureIndex;
class UserFile;
struct SaveFailure;

/// The gestures of one application: the system's configuration with the user's bindings applied.
/// Nothing is read before the gestures are first needed, and the files are read once. The gestures
/// and their model are children of the service. A failed load is told on the log and gives no gestures.
class GESTURE_API_EXPORT GestureService : public QObject
{
    Q_OBJECT
    ///@{
    /// What the function of this name returns, for QML. Only the signal of `gestures` is ever emitted.
    Q_PROPERTY(const vellix::gesture::FeaturesProvider *featuresProvider READ featuresProvider NOTIFY
                       featuresProviderChanged)
    Q_PROPERTY(bool readonly READ readonly NOTIFY readonlyChanged)
    Q_PROPERTY(vellix::components::ReadonlyLazyListModel *gestures READ gestures NOTIFY gesturesChanged)
    ///@}

public:
    /// The gestures in file order, loaded when they are first asked for.
    using GestureList = components::ReadonlyLazyList<Gesture *>;

    /// The zones that every configuration may name: a 3 by 3 grid, three vertical stripes, the whole screen.
    static QMap<QString, QRectF> predefinedZones;

    /// Saves when the process ends, unless `readonly`: at the return from main() or exit(), or before that when the
    /// application object is destroyed. It must then still exist, belong to the thread that ends the process, and have
    /// been made in this process and not before a fork. What other programs have saved meanwhile stays: only the
    /// choices made on this service since it was loaded or saved go on top of it. To save when the event loop ends,
    /// while all services still exist:
    ///
    ///     QObject::connect(&app, &QCoreApplication::aboutToQuit, &vellix::ExitNotifier::notify);
    ///
    /// The features provider is not owned, outlives the service and may be null.
    GestureService(const ApplicationPaths &paths, const FeaturesProvider *featuresProvider, bool readonly,
                   QObject *parent = nullptr);
    /// A service of clones of the given gestures, which are loaded for that if they were not. It does not save at
    /// exit, and never when it is `pruned`.
    GestureService(const ApplicationPaths &paths, const FeaturesProvider *featuresProvider, bool readonly,
                   const GestureList &gestures, bool pruned, QObject *parent = nullptr);
    ~GestureService() override;

    /// The files that the service reads, and the one that it writes.
    const ApplicationPaths &paths() const { return m_paths; }
    /// What knows the features; null without one, and once it is dead.
    const FeaturesProvider *featuresProvider() const { return m_featuresProvider; }
    /// Whether save() refuses to write.
    bool readonly() const { return m_readonly; }
    /// Whether save() was ever called.
    bool saved() const { return m_saved; }
    /// The model of the gestures; the display role holds a `Gesture *`.
    components::ReadonlyLazyListModel *gestures() const;
    /// The gestures in file order. They belong to the service.
    const QList<Gesture *> &gestureList() const { return m_gestures.get(); }

    /// The first gesture in file order that a touch matches, or null: its modes hold `mode` or are none, kind and
    /// direction are these, and its zone contains `position` (relative to the screen), edges included. Whether the
    /// device supports the gesture is not asked.
    Gesture *findGesture(const QString &mode, const Gesture::Kind &kind, const Gesture::Direction &direction,
                         const QPointF &position) const;
    /// The first gesture whose zone is or contains the given zone, or null; all else as in findGesture().
    Gesture *findGestureByZone(const QString &mode, const Gesture::Kind &kind, const Gesture::Direction &direction,
                               const QRectF &zone) const;
    /// A copy with its own gestures, which share their actions with these. It does not save at exit. It belongs to
    /// `parent`; without one, to the caller.
    GestureService *clone(QObject *parent = nullptr) const;
    /// Takes over the current actions of another service's gestures, paired by position. False at the
    /// first pair that does not match (see Gesture::merge()); the pairs before it stay merged. False for null, too, and
    /// when a listener destroys one of the services.
    bool fastMerge(const GestureService *other);
    /// Writes all gestures, `indent` steps of two blanks to the right, and returns the stream.
    QDebug &dump(QDebug &debug, int indent) const;

    /// findGestureByZone() for QML, with values of the enums Gesture::Kind and Gesture::Direction.
    Q_INVOKABLE QObject *findGestureByZoneAsQObject(QString mode, int kind, int direction, QRectF zone) const;
    /// findGesture() for QML, likewise.
    Q_INVOKABLE QObject *findGestureAsQObject(QString mode, int kind, int direction, QPointF position) const;
    /// Whether any gesture is of this Gesture::Kind.
    Q_INVOKABLE bool containsGestureKind(int kind) const;
    /// clone() for QML, whose engine collects a clone without a parent when nobody refers to it any more.
    Q_INVOKABLE QObject *cloneAsQObject(QObject *parent = nullptr) const;
    /// fastMerge() for QML; false as well for what is no service.
    Q_INVOKABLE bool fastMergeWithQObject(QObject *other);
    /// Writes the current action of every gesture to the user's file, whatever another program has written there.
    /// Returns false if the service is read-only or pruned. True only means that a save was attempted: a failure is
    /// one error line on the log.
    ///
    /// A user file that could not be loaded is first copied to "<file name>.rejected", or ".rejected.2" to
    /// ".rejected.8". If the copy fails, or all eight exist, nothing is written.
    Q_INVOKABLE bool save();
    /// Deletes the user's file; from now on this service and the clones made of it never save. The
    /// service that a provider then builds is a new one: if the provider is writable, it saves at exit. False when
    /// no file was deleted.
    Q_INVOKABLE bool prune();
    /// save() that returns how it went: the number of bytes that are now on disk, or the reason for a failure, in
    /// words. A read-only or pruned service fails, too. Nothing is logged.
    Either<QString, qint64> trySave();
    /// trySave() for QML: an empty string, or the reason. The reason is also logged.
    Q_INVOKABLE QString trySaveAsString();

Q_SIGNALS:
    ///@{
    /// Never emitted: QML wants a signal of every property.
    void featuresProviderChanged(const vellix::gesture::FeaturesProvider *value);
    void readonlyChanged(bool value);
    ///@}
    /// A merge has gone through: current actions may be others, the model is still the same one.
    void gesturesChanged(vellix::components::ReadonlyLazyListModel *value);

private:
    const GestureIndex &index() const;
    QList<Gesture *> load();
    QMap<QString, QString> loadBindings();
    bool mayLoad() const;
    Either<SaveFailure, qint64> saveChoices();
    void saveAtExit();
    void markSaved();

    const ApplicationPaths m_paths;
    const QPointer<const FeaturesProvider> m_featuresProvider;
    const bool m_wantsFeatures;
    bool m_saved = false;
    const bool m_readonly;
    bool m_pruned = false;
    enum { NotLoaded, Loading, Loaded } m_state = NotLoaded;
    std::shared_ptr<UserFile> m_userFile;
    const GestureList m_gestures;
    mutable std::unique_ptr<GestureIndex> m_index; // of m_gestures, made at the first lookup
    mutable QPointer<components::ReadonlyLazyListModel> m_gesturesModel;
};

}
}
