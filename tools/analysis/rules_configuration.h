#pragma once

#include "subject.h"

// What the library takes in a gesture configuration and nobody means; one function for each such thing.

namespace analysis {

void tellDuplicateKeys(const JsonText &text, Findings *findings);
void tellUnknownKeys(const Subject &subject, Findings *findings);
void tellConvertedValues(const Subject &subject, Findings *findings);

void tellOverriddenZones(const Subject &subject, Findings *findings);
void tellOddZones(const Subject &subject, Findings *findings);
void tellUnusedZones(const Subject &subject, Findings *findings);

void tellDuplicateActions(const Subject &subject, Findings *findings);
void tellUnusedActions(const Subject &subject, Findings *findings);
void tellUnusedGroups(const Subject &subject, Findings *findings);
void tellShortTitles(const Subject &subject, Findings *findings);
void tellDeepPaths(const Subject &subject, Findings *findings);
void tellUnsaveableActions(const Subject &subject, Findings *findings);

void tellShadowed(const Subject &subject, Findings *findings);
void tellDuplicateIds(const Subject &subject, Findings *findings);
void tellFallbacks(const Subject &subject, Findings *findings);
void tellNotAvailable(const Subject &subject, Findings *findings);
void tellFixedActions(const Subject &subject, Findings *findings);
void tellDirectedTaps(const Subject &subject, Findings *findings);
void tellUndirectedSwipes(const Subject &subject, Findings *findings);
void tellModesCase(const Subject &subject, Findings *findings);
/// Of a device that was asked for.
void tellNoAction(const Subject &subject, Findings *findings);
void tellDeadTouches(const Subject &subject, Findings *findings);

}
