#pragma once

#include <gesturectl/verb.h>

// One function for each verb, in a file of its name with its request, its options and its work.

namespace gesturectl {

Verb listVerb();
Verb findVerb();
Verb explainVerb();
Verb zonesVerb();
Verb actionsVerb();
Verb mapVerb();
Verb bindVerb();
Verb resetVerb();
Verb watchVerb();
Verb checkVerb();
Verb doctorVerb();
Verb exportVerb();
Verb importVerb();
Verb schemaVerb();

}
