#pragma once

#include <QVector>

// What a check looks for.

namespace analysis {

enum class Severity { Error, Warning };

struct Rule
{
    const char *id;
    Severity severity;
    const char *meaning; // one sentence
    const char *hint;    // what to do about it
};

namespace rules {

// What the library does not take.
extern const Rule unreadable;
extern const Rule syntax;
extern const Rule refused;
extern const Rule version;
extern const Rule duplicateNeighbours;
extern const Rule groupFeatures;
extern const Rule noSupportedAction;
extern const Rule undefinedBinding;
extern const Rule unsaveableAction;

// What it takes and nobody means.
extern const Rule notStrict;
extern const Rule duplicateKey;
extern const Rule unknownKey;
extern const Rule convertedValue;
extern const Rule shadowed;
extern const Rule partlyShadowed;
extern const Rule duplicateId;
extern const Rule overriddenZone;
extern const Rule zoneOutside;
extern const Rule zoneEmpty;
extern const Rule zoneNegative;
extern const Rule unusedZone;
extern const Rule unusedAction;
extern const Rule unusedGroup;
extern const Rule duplicateAction;
extern const Rule shortTitles;
extern const Rule deepPath;
extern const Rule fallbackEnd;
extern const Rule undefinedFallback;
extern const Rule unreachableFallback;
extern const Rule notAvailable;
extern const Rule fixedAction;
extern const Rule directedTap;
extern const Rule undirectedSwipe;
extern const Rule modesCase;
extern const Rule noAction;
extern const Rule deadTouches;
extern const Rule unknownGesture;
extern const Rule unsupportedBinding;
extern const Rule hiddenBinding;
extern const Rule repeatedDefault;

}

const QVector<const Rule *> &allRules();

}
