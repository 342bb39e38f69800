#include "devices.h"

#include <QHash>

#include <algorithm>

using namespace vellix::gesture;

namespace analysis {

QStringList knownFeatures()
{
    QStringList names;
    const DefaultFeaturesProvider features;
    const QList<Feature *> all = features.allFeatures();
    for (const Feature *feature : all)
        names.append(feature->name());
    return names;
}

Device::Device(const QStringList &features) : m_features(features)
{
    const QStringList known = knownFeatures();
    for (const QString &name : known)
        m_all.append(new Feature(
                name, [has = features.contains(name)] { return has; }, this));
}

QVector<QStringList> allDevices()
{
    const QStringList known = knownFeatures();
    QVector<QStringList> devices;
    for (int combination = 0; combination < 1 << known.size(); ++combination) {
        QStringList features;
        for (int i = 0; i < known.size(); ++i) {
            if (combination & 1 << i)
                features.append(known.at(i));
        }
        devices.append(features);
    }
    return devices;
}

// "without tts", or the devices one by one if no common feature distinguishes them from the others.
static QString namesOf(const QVector<QStringList> &some, const QVector<QStringList> &all)
{
    QStringList with;
    QStringList without;
    const QStringList known = knownFeatures();
    for (const QString &feature : known) {
        const auto has = [&feature](const QStringList &device) { return device.contains(feature); };
        if (std::all_of(some.cbegin(), some.cend(), has))
            with.append(feature);
        else if (std::none_of(some.cbegin(), some.cend(), has))
            without.append(feature);
    }
    const auto isSuch = [&](const QStringList &device) {
        return std::all_of(with.cbegin(), with.cend(), [&](const QString &name) { return device.contains(name); })
                && std::none_of(without.cbegin(), without.cend(),
                                [&](const QString &name) { return device.contains(name); });
    };
    if (std::count_if(all.cbegin(), all.cend(), isSuch) == some.size()) {
        QStringList parts;
        if (!with.isEmpty())
            parts.append(QStringLiteral("with ") + with.join(QStringLiteral(" and ")));
        if (!without.isEmpty())
            parts.append(QStringLiteral("without ") + without.join(QStringLiteral(" and ")));
        return parts.join(QStringLiteral(" and "));
    }
    QStringList each;
    for (const QStringList &device : some)
        each.append(device.isEmpty() ? QStringLiteral("with none")
                                     : QStringLiteral("with ") + device.join(QLatin1Char('+')));
    return each.join(QStringLiteral(" or "));
}

Findings merged(const QVector<Findings> &found, const QVector<QStringList> &devices)
{
    struct Group
    {
        Finding finding;
        QVector<QStringList> devices;
    };
    QVector<Group> groups;
    QHash<QString, int> known; // text and place to the group
    for (int i = 0; i < found.size(); ++i) {
        for (const Finding &finding : found.at(i).list()) {
            const QString key = QLatin1String(finding.rule->id) + QLatin1Char('\n') + finding.file->path()
                    + QLatin1Char('\n') + QString::number(finding.span.begin) + QLatin1Char('\n') + finding.text;
            const auto group = known.constFind(key);
            if (group == known.constEnd()) {
                known.insert(key, groups.size());
                groups.append({finding, {devices.at(i)}});
            } else if (groups.at(*group).devices.last() != devices.at(i)) {
                groups[*group].devices.append(devices.at(i));
            }
        }
    }
    Findings all;
    for (Group &group : groups) {
        if (group.devices.size() < devices.size())
            group.finding.devices = namesOf(group.devices, devices);
        all.append(group.finding);
    }
    return all;
}

}
