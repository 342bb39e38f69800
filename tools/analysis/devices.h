#pragma once

#include "finding.h"

#include <gesture_api/feature.h>

#include <QStringList>
#include <QVector>

namespace analysis {

/// The features that a device may have.
QStringList knownFeatures();

/// A device with exactly these features.
class Device : public vellix::gesture::FeaturesProvider
{
public:
    explicit Device(const QStringList &features);
    QList<vellix::gesture::Feature *> allFeatures() const override { return m_all; }
    const QStringList &features() const { return m_features; }

private:
    const QStringList m_features;
    QList<vellix::gesture::Feature *> m_all;
};

/// Every combination of the known features.
QVector<QStringList> allDevices();

/// The findings of several devices as one list. A finding on only some of them names those.
Findings merged(const QVector<Findings> &found, const QVector<QStringList> &devices);

}
