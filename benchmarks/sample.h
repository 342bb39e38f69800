#pragma once

// Configurations of any size, shaped like the sample one: groups, fallback lists, inline actions, named and own zones.
// The same size gives the same bytes everywhere.

#include <gesture_api/gestureservice.h>

#include <QByteArray>
#include <QPointF>
#include <QString>
#include <QTemporaryDir>

#include <vector>

struct Size
{
    const char *name;
    int gestures;
    int actions;
};
constexpr Size sizeS{"S", 50, 60};
constexpr Size sizeM{"M", 500, 300};
constexpr Size sizeL{"L", 5000, 2000};

/// The gesture configuration of this size, as a shipped file.
QByteArray sampleConfiguration(const Size &size);
/// The same fields as groups of an INI file.
QByteArray sampleIni(const Size &size);

struct Touch
{
    QString mode;
    vellix::gesture::Gesture::Kind kind;
    vellix::gesture::Gesture::Direction direction;
    QPointF position;
};

/// A touch that finds the configuration's first gesture, at any size.
inline vellix::gesture::Gesture *findFirst(const vellix::gesture::GestureService &service)
{
    using vellix::gesture::Gesture;
    return service.findGesture("menu", Gesture::Tap, Gesture::NoDirection, QPointF(0.1, 0.5));
}

/// 4,096 touches in random order (always the same); one half of them finds a gesture.
std::vector<Touch> sampleTouches(const QList<vellix::gesture::Gesture *> &gestures);

/// Whether this gesture matches the touch, in the plainest possible code.
bool matches(const vellix::gesture::Gesture &gesture, const Touch &touch);

/// Writes the data directories of a machine with one application, "sample": `system` and `user` in this directory.
void writeSampleTree(const QString &directory, const Size &size);

/// Such directories, for a while; this process uses them from then on.
class SampleTree
{
public:
    explicit SampleTree(const Size &size);

    QString defaultFile() const;
    QString userFile() const;

private:
    QTemporaryDir m_directory;
};

/// A device with a front light and without speech, whatever this machine has.
class SampleFeatures : public vellix::gesture::FeaturesProvider
{
public:
    QList<vellix::gesture::Feature *> allFeatures() const override { return m_features; }

private:
    const QList<vellix::gesture::Feature *> m_features{new vellix::gesture::Feature(
                                                               "frontlight", [] { return true; }, this),
                                                       new vellix::gesture::Feature(
                                                               "tts", [] { return false; }, this)};
};

/// Writes a file or ends the program.
void writeFile(const QString &path, const QByteArray &bytes);
