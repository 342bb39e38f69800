#pragma once

#include "panel.h"

#include <gesturectl/application.h>

#include <QByteArray>
#include <QString>
#include <QVector>

// The map of an application's zones as a picture in black and white.

namespace gesturectl {

struct Page
{
    QString application;
    QString file;
    QVector<Panel> panels;
};

QByteArray svg(const Page &page);
/// Fails if the picture would be too large.
Result<QByteArray> png(const Page &page);

}
