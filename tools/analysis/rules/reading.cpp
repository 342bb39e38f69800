#include "families.h"

namespace analysis {

Rules readingRules()
{
    const Severity error = Severity::Error;
    return {
            {1, "unreadable", error, "A file cannot be read.", "Nothing of it counts."},
            {2, "syntax", error, "A file is not JSON.", "Nothing of it counts."},
            {3, "refused", error, "The library does not load a file with this.",
             "One such place and nothing of the whole file is loaded."},
            {4, "version", error, "The bindings are of another version.",
             "The library ignores the file and keeps it beside itself before the next save."},
            {5, "duplicate-neighbours", error, "Two gestures beside each other have the same id.",
             "Give one of them an \"id\" of its own, or drop it."},
            {6, "group-features", error, "An action that a group defines names features.",
             "Groups are read without a features provider: define the action in \"actions\" and name its path here."},
            {7, "no-supported-action", error, "A device supports no action of a fallback list.",
             "Such a device loads nothing of the file: end the list with an action without features."},
            {10, "not-strict", Severity::Warning, "The library reads what other JSON programs refuse.",
             "Behind this place, others are not known, and members of one name are not looked for."},
    };
}

}
