#include "families.h"

namespace analysis {

Rules readingRules()
{
    const Severity error = Severity::Error;
    return {
            {1, "unreadable", error, "A file cannot be read.", "The whole file is ignored."},
            {2, "syntax", error, "A file is not JSON.", "The whole file is ignored."},
            {3, "refused", error, "The library rejects a file with this fault.",
             "A single error of this kind makes the library reject the whole file."},
            {4, "version", error, "The bindings file has another version.",
             "The library ignores the file. The next save first keeps it as \"<file name>.rejected\"."},
            {5, "duplicate-neighbours", error, "Two neighbouring gestures have the same id.",
             "Give one of them its own \"id\", or remove one."},
            {6, "group-features", error, "An action that a group defines requires features.",
             "Define the action in \"actions\" and name its path here. Groups are read without a features provider."},
            {7, "no-supported-action", error, "A device supports no action of a fallback list.",
             "End the list with an action without features. On such a device the library rejects the whole file."},
            {10, "not-strict", Severity::Warning, "The file is not strict JSON, but the library accepts it.",
             "After this point positions are approximate and duplicate keys are not detected."},
    };
}

}
