#pragma once

#include <gesture_api/configuration.h>
#include <gesture_api/gesturekindfiltermodel.h>
#include <gesture_api/gestureserviceprovider.h>
#include <gesture_api/zones.h>

#include <vellix/exitnotifier.h>

#include <QCoreApplication>
#include <QDebug>
#include <QTextStream>

// What the fragments of C++ in the documentation may use without declaring it. Nothing here is defined: they are
// compiled and never run.

using namespace vellix;
using namespace vellix::gesture;

extern QCoreApplication app;
extern DefaultFeaturesProvider features;
extern GestureServiceProvider provider;
extern GestureService *service;
extern Gesture *gesture;
extern Action *action;
extern QString mode;
extern QPointF touch; // where it started, relative to the screen
extern QPointF moved; // where it ended
extern QObject *parent;
