#pragma once

#include "subject.h"

// What the library takes in a gesture configuration and nobody means; one function for each such thing.

namespace analysis {

void reportDuplicateKeys(const JsonText &text, Findings *findings);
void reportUnknownKeys(const Subject &subject, Findings *findings);
void reportConvertedValues(const Subject &subject, Findings *findings);

void reportOverriddenZones(const Subject &subject, Findings *findings);
void reportOddZones(const Subject &subject, Findings *findings);
void reportUnusedZones(const Subject &subject, Findings *findings);

void reportDuplicateActions(const Subject &subject, Findings *findings);
void reportUnusedActions(const Subject &subject, Findings *findings);
void reportUnusedGroups(const Subject &subject, Findings *findings);
void reportShortTitles(const Subject &subject, Findings *findings);
void reportDeepPaths(const Subject &subject, Findings *findings);
void reportUnsaveableActions(const Subject &subject, Findings *findings);

void reportShadowed(const Subject &subject, Findings *findings);
void reportDuplicateIds(const Subject &subject, Findings *findings);
void reportFallbacks(const Subject &subject, Findings *findings);
void reportNotAvailable(const Subject &subject, Findings *findings);
void reportFixedActions(const Subject &subject, Findings *findings);
void reportDirectedTaps(const Subject &subject, Findings *findings);
void reportUndirectedSwipes(const Subject &subject, Findings *findings);
void reportModesCase(const Subject &subject, Findings *findings);
/// Of a device that was asked for.
void reportNoAction(const Subject &subject, Findings *findings);
void reportDeadTouches(const Subject &subject, Findings *findings);

}
