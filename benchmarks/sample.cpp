#include "sample.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>

#include <algorithm>

using namespace vellix::gesture;

static const QStringList modes{"menu", "reading", "selecting"};
static const QStringList kinds{"tap", "hold", "swipe", "drag"};
static const QStringList directions{"toLeft", "toRight", "toTop", "toBottom"};
static const QStringList named{"left", "right", "center", "top", "bottom", "leftTop", "rightBottom"};

static QString actionPath(int i)
{
    return QString("group%1/action%2").arg(i / 8).arg(i);
}

static QJsonObject action(int i)
{
    QJsonObject entry{{"path", actionPath(i)},
                      {"titles",
                       QJsonArray{QString("The group number %1").arg(i / 8),
                                  QString("What the action number %1 is called").arg(i)}}};
    if (i % 6 == 5)
        entry.insert("features", QJsonArray{"frontlight"});
    return entry;
}

// A field of ten by ten cells.
static QJsonObject cell(int i)
{
    return {{"x", i % 10 * 0.1}, {"y", i / 10 % 10 * 0.1}, {"w", 0.1}, {"h", 0.1}};
}

static int ownZones(const Size &size)
{
    return std::max(6, size.gestures / 10);
}

static QJsonValue zoneOf(int i, const Size &size)
{
    switch (i % 3) {
    case 0: return named.at(i / 3 % named.size());
    case 1: return cell(i / 3);
    default: return QString("cell%1").arg(i / 3 % ownZones(size));
    }
}

static QJsonValue availableOf(int i, const Size &size)
{
    if (i % 7 == 0)
        return QJsonArray{actionPath(i % size.actions), actionPath((i + 1) % size.actions)};
    if (i % 11 == 0)
        return QJsonArray{actionPath(1), QJsonObject{{"path", QString("inline/%1").arg(i)}, {"title", "Inline"}}};
    return QString("group%1").arg(i % (size.actions / 10));
}

static QJsonObject gesture(int i, const Size &size)
{
    const bool moves = i % 4 >= 2;
    QJsonObject entry{{"kind", kinds.at(i % 4)}, {"availableActions", availableOf(i, size)}};
    if (i % 2 || i >= 40) // formed ids would soon repeat
        entry.insert("id", QString("Gesture%1").arg(i));
    if (i % 20 != 19)
        entry.insert("modes", QJsonArray{modes.at(i / 4 % 3)});
    if (moves)
        entry.insert("direction", directions.at(i / 4 % 4));
    // The last gestures catch the remaining touches, on the whole screen.
    if (!moves || i < size.gestures * 24 / 25)
        entry.insert("zone", zoneOf(i, size));
    if (i % 5 == 0)
        entry.insert("defaultAction", QJsonArray{actionPath(5), actionPath(i % size.actions), actionPath(0)});
    else
        entry.insert("defaultAction", actionPath(i % size.actions));
    return entry;
}

static QJsonObject document(const Size &size)
{
    QJsonObject zones;
    for (int i = 0; i < ownZones(size); ++i)
        zones.insert(QString("cell%1").arg(i), cell(i * 7));
    QJsonArray actions;
    for (int i = 0; i < size.actions; ++i)
        actions.append(action(i));
    QJsonObject groups;
    for (int group = 0; group < size.actions / 10; ++group) {
        QJsonArray members;
        for (int i = 0; i < 10; ++i)
            members.append(actionPath(group * 10 + i));
        groups.insert(QString("group%1").arg(group), members);
    }
    QJsonArray gestures;
    for (int i = 0; i < size.gestures; ++i)
        gestures.append(gesture(i, size));
    return {{"zones", zones}, {"actions", actions}, {"actionGroups", groups}, {"gestures", gestures}};
}

QByteArray sampleConfiguration(const Size &size)
{
    return QJsonDocument(document(size)).toJson();
}

static QByteArray iniValue(const QJsonValue &value)
{
    if (value.isDouble())
        return QByteArray::number(value.toDouble());
    if (!value.isArray() && !value.isObject())
        return value.toString().toUtf8();
    QByteArrayList parts;
    const QVariantList list =
            value.isArray() ? value.toArray().toVariantList() : value.toObject().toVariantMap().values();
    for (const QVariant &part : list)
        parts.append(iniValue(QJsonValue::fromVariant(part)));
    return parts.join(',');
}

static QByteArray iniGroups(const QByteArray &name, const QJsonArray &entries)
{
    QByteArray text;
    for (int i = 0; i < entries.size(); ++i) {
        text += '[' + name + QByteArray::number(i) + "]\n";
        const QJsonObject entry = entries.at(i).toObject();
        for (auto field = entry.begin(); field != entry.end(); ++field)
            text += field.key().toUtf8() + '=' + iniValue(field.value()) + '\n';
    }
    return text;
}

QByteArray sampleIni(const Size &size)
{
    const QJsonObject all = document(size);
    QByteArray text;
    for (const char *section : {"zones", "actionGroups"}) {
        text += '[' + QByteArray(section) + "]\n";
        const QJsonObject entries = all.value(QLatin1String(section)).toObject();
        for (auto entry = entries.begin(); entry != entries.end(); ++entry)
            text += entry.key().toUtf8() + '=' + iniValue(entry.value()) + '\n';
    }
    return text + iniGroups("Action ", all.value("actions").toArray())
            + iniGroups("Gesture ", all.value("gestures").toArray());
}

bool matches(const Gesture &gesture, const Touch &touch)
{
    return gesture.kind() == touch.kind && gesture.direction() == touch.direction
            && (gesture.modes().isEmpty() || gesture.modes().contains(touch.mode))
            && gesture.zone().contains(touch.position);
}

static QPointF randomPoint(QRandomGenerator &random, const QRectF &zone)
{
    return {zone.x() + random.generateDouble() * zone.width(), zone.y() + random.generateDouble() * zone.height()};
}

std::vector<Touch> sampleTouches(const QList<Gesture *> &gestures)
{
    QRandomGenerator random(1);
    const auto anyGesture = [&] { return gestures.at(random.bounded(gestures.size())); };
    std::vector<Touch> touches;
    while (touches.size() < 2048) {
        const Gesture *gesture = anyGesture();
        const QString mode = gesture->modes().value(0, modes.at(random.bounded(modes.size())));
        touches.push_back({mode, gesture->kind(), gesture->direction(), randomPoint(random, gesture->zone())});
    }
    const QStringList moreModes = modes + QStringList("elsewhere");
    while (touches.size() < 4096) {
        const Gesture *gesture = anyGesture();
        const Touch touch{moreModes.at(random.bounded(moreModes.size())), gesture->kind(), gesture->direction(),
                          randomPoint(random, Gesture::wholeZone)};
        const auto hit = [&touch](const Gesture *candidate) { return matches(*candidate, touch); };
        if (std::none_of(gestures.cbegin(), gestures.cend(), hit))
            touches.push_back(touch);
    }
    std::shuffle(touches.begin(), touches.end(), random);
    return touches;
}

static QString defaultFileIn(const QString &directory)
{
    return directory + "/system/vellix/config/gestures/apps/default/sample/cfg.json";
}

void writeSampleTree(const QString &directory, const Size &size)
{
    writeFile(defaultFileIn(directory), sampleConfiguration(size));
    writeFile(directory + "/system/vellix/config/gestures/application_paths.json",
              R"({"current": "${USERDATA}/gestures/apps/current",
                  "default": "${SYSTEMDATA}/config/gestures/apps/default",
                  "filename": "cfg.json"})");
}

SampleTree::SampleTree(const Size &size)
{
    qputenv("XDG_DATA_DIRS", QFile::encodeName(m_directory.filePath("system")));
    qputenv("XDG_DATA_HOME", QFile::encodeName(m_directory.filePath("user")));
    writeSampleTree(m_directory.path(), size);
}

QString SampleTree::defaultFile() const
{
    return defaultFileIn(m_directory.path());
}

QString SampleTree::userFile() const
{
    return m_directory.filePath("user/vellix/gestures/apps/current/sample/cfg.json");
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush())
        qFatal("can not write %s", qPrintable(path));
}
