#pragma once

#include <analysis/rule.h>

// The tables of the rules, in the order in which they are looked for.

namespace analysis {

/// What the readers report: a file, an entry or a value that the library refuses.
Rules readingRules();
/// Keys that the library ignores and values that it converts.
Rules keyRules();
Rules zoneRules();
/// The definitions of actions and groups.
Rules actionRules();
/// Which of several gestures the lookup finds.
Rules lookupRules();
/// What a gesture does, and the touches that it is for.
Rules gestureRules();
/// The user's bindings for a configuration.
Rules bindingRules();

}
