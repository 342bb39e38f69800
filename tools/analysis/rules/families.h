#pragma once

#include <analysis/rule.h>

// The tables of the rules, in the order of the search.

namespace analysis {

/// Files, entries and values that the library refuses. The readers report them.
Rules readingRules();
/// Keys that the library ignores and values that it converts.
Rules keyRules();
Rules zoneRules();
/// The definitions of actions and groups.
Rules actionRules();
/// Which of several gestures the lookup finds.
Rules lookupRules();
/// The action and the touches of a single gesture.
Rules gestureRules();
/// The user's bindings for a configuration.
Rules bindingRules();

}
