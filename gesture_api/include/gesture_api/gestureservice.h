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

/// The gestures of an application: its configuration with the user's bindings applied. The files are read once, when
/// the gestures are first needed. The gestures and their model are children of the service. A failed load is logged and
/// yields no gestures.
class GESTURE_API_EXPORT GestureService : public QObject
{
    Q_OBJECT
    ///@{
    /// The functions of the same names, for QML. Only the signal of `gestures` is ever emitted.
    Q_PROPERTY(const vellix::gesture::FeaturesProvider *featuresProvider READ featuresProvider NOTIFY
                       featuresProviderChanged)
    Q_PROPERTY(bool readonly READ readonly NOTIFY readonlyChanged)
    Q_PROPERTY(vellix::components::ReadonlyLazyListModel *gestures READ gestures NOTIFY gesturesChanged)
    ///@}

public:
    /// The gestures in file order, loaded when first needed.
    using GestureList = components::ReadonlyLazyList<Gesture *>;

    /// The zones that every configuration can name: a 3 by 3 grid, three vertical stripes and the whole screen.
    static QMap<QString, QRectF> predefinedZones;

    /// Unless `readonly`, the service saves when the process ends: when main() returns, when exit() is called, or
    /// earlier when the application object is destroyed. The service must still exist then, belong to the thread that
    /// ends the process, and have been created in this process, not before a fork. If the bindings
    /// file has changed since this service's load or last save, this save adds only the choices made on this service
    /// since then. To save when the event loop ends, while all services still exist:
    ///
    ///     QObject::connect(&app, &QCoreApplication::aboutToQuit, &vellix::ExitNotifier::notify);
    ///
    /// The features provider may be null. It is not owned and must outlive the service.
    GestureService(const ApplicationPaths &paths, const FeaturesProvider *featuresProvider, bool readonly,
                   QObject *parent = nullptr);
    /// A service with clones of the given gestures, which are loaded if necessary. It does not save at exit. If
    /// `pruned`, it never saves.
    GestureService(const ApplicationPaths &paths, const FeaturesProvider *featuresProvider, bool readonly,
                   const GestureList &gestures, bool pruned, QObject *parent = nullptr);
    ~GestureService() override;

    /// The paths of the files that the service reads and writes.
    const ApplicationPaths &paths() const { return m_paths; }
    /// The features provider. Null if there is none, and once it is destroyed.
    const FeaturesProvider *featuresProvider() const { return m_featuresProvider; }
    /// Whether save() refuses to write.
    bool readonly() const { return m_readonly; }
    /// Whether a save was ever requested, successful or not.
    bool saved() const { return m_saved; }
    /// The model of the gestures; the display role holds a `Gesture *`.
    components::ReadonlyLazyListModel *gestures() const;
    /// The gestures in file order. They belong to the service.
    const QList<Gesture *> &gestureList() const { return m_gestures.get(); }

    /// The first gesture in file order that matches a touch, or null. A gesture matches if its modes contain `mode` or
    /// are empty, kind and direction are equal, and its zone contains `position` (relative to the screen), edges
    /// included. Gestures that the device does not support match, too.
    Gesture *findGesture(const QString &mode, const Gesture::Kind &kind, const Gesture::Direction &direction,
                         const QPointF &position) const;
    /// The first gesture whose zone equals or contains the given zone, or null. Otherwise like findGesture().
    Gesture *findGestureByZone(const QString &mode, const Gesture::Kind &kind, const Gesture::Direction &direction,
                               const QRectF &zone) const;
    /// A copy with its own gestures, which share the actions of this service's gestures and become their owners. It
    /// does not save at exit. It belongs to `parent`, or to the caller if there is none.
    GestureService *clone(QObject *parent = nullptr) const;
    /// Takes over the current actions of another service's gestures, paired in file order. Ignores surplus gestures of
    /// the longer list. Returns false at the first pair that does not match (see Gesture::merge()); the pairs before it
    /// stay merged. Also returns false for null, and if a listener destroys one of the services.
    bool fastMerge(const GestureService *other);
    /// Writes all gestures, indented by `indent` steps of two spaces, and returns the stream.
    QDebug &dump(QDebug &debug, int indent) const;

    /// findGestureByZone() for QML. `kind` and `direction` are values of Gesture::Kind and Gesture::Direction.
    Q_INVOKABLE QObject *findGestureByZoneAsQObject(QString mode, int kind, int direction, QRectF zone) const;
    /// findGesture() for QML, with the same enums.
    Q_INVOKABLE QObject *findGestureAsQObject(QString mode, int kind, int direction, QPointF position) const;
    /// Whether any gesture has this Gesture::Kind.
    Q_INVOKABLE bool containsGestureKind(int kind) const;
    /// clone() for QML. The engine collects a clone without a parent once nothing refers to it.
    Q_INVOKABLE QObject *cloneAsQObject(QObject *parent = nullptr) const;
    /// fastMerge() for QML. Also returns false if `other` is not a service.
    Q_INVOKABLE bool fastMergeWithQObject(QObject *other);
    /// Writes the current action of every gesture to the bindings file and overwrites the choices of other programs.
    /// Returns false if the service is read-only or pruned. True means that a save was attempted; a failure is logged
    /// as one error line. If EitherPrivate::shouldExitOnError(), a file that cannot be opened ends
    /// the process.
    ///
    /// A bindings file that could not be loaded is first copied to "<file name>.rejected", or ".rejected.2" to
    /// ".rejected.8". If the copy fails, or all eight exist, nothing is written.
    Q_INVOKABLE bool save();
    /// Deletes the bindings file. From now on this service and clones made of it never save. A provider then creates a
    /// new service; if the provider is writable, that one saves at exit. Returns false if no file was deleted.
    Q_INVOKABLE bool prune();
    /// save() with a result: the number of bytes written, or the reason for the failure. Also fails if the service is
    /// read-only or pruned. Does not log the failure.
    Either<QString, qint64> trySave();
    /// trySave() for QML: returns an empty string, or the reason. Also logs the reason.
    Q_INVOKABLE QString trySaveAsString();

Q_SIGNALS:
    ///@{
    /// Never emitted. QML requires a signal for every property.
    void featuresProviderChanged(const vellix::gesture::FeaturesProvider *value);
    void readonlyChanged(bool value);
    ///@}
    /// Emitted after a successful merge. Current actions may have changed; the model has not.
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
    mutable std::unique_ptr<GestureIndex> m_index; // of m_gestures, created at the first lookup
    mutable QPointer<components::ReadonlyLazyListModel> m_gesturesModel;
};

}
}
