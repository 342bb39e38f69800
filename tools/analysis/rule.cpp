#include "rule.h"

namespace analysis {
namespace rules {

const Severity error = Severity::Error;
const Severity warning = Severity::Warning;

const Rule unreadable{"unreadable", error, "A file cannot be read.", "Nothing of it counts."};
const Rule syntax{"syntax", error, "A file is not JSON.", "Nothing of it counts."};
const Rule refused{"refused", error, "The library does not load a file with this.",
                   "One such place and nothing of the whole file is loaded."};
const Rule version{"version", error, "The bindings are of another version.",
                   "The library ignores the file and keeps it beside itself before the next save."};
const Rule duplicateNeighbours{"duplicate-neighbours", error, "Two gestures beside each other have the same id.",
                               "Give one of them an \"id\" of its own, or drop it."};
const Rule groupFeatures{"group-features", error, "An action that a group defines names features.",
                         "Groups are read without a features provider: define the action in \"actions\" and name its "
                         "path here."};
const Rule noSupportedAction{"no-supported-action", error, "A device supports no action of a fallback list.",
                             "Such a device loads nothing of the file: end the list with an action without features."};
const Rule undefinedBinding{"undefined-binding", error, "A binding names an action that is not defined.",
                            "The library loads no gesture at all with this binding: remove it, or define the action."};
const Rule unsaveableAction{
        "unsaveable-action", error, "An action that a user can choose is not among \"actions\".",
        "A save writes the current action of every gesture, and an application whose saved action is "
        "not defined has no gestures at all: define it in \"actions\" and name its path here."};

const Rule notStrict{"not-strict", warning, "The library reads what other JSON programs refuse.",
                     "Behind this place, others are not known, and members of one name are not looked for."};
const Rule duplicateKey{"duplicate-key", warning, "An object has two members of one name.",
                        "Only the last of them counts."};
const Rule unknownKey{"unknown-key", warning, "Nobody reads a key.", "The library ignores it."};
const Rule convertedValue{"converted-value", warning, "A value of another type is converted.", "Write what is meant."};
const Rule shadowed{"shadowed", warning, "A gesture can never fire.",
                    "The first gesture that matches wins: move this one before the other, or drop one of them."};
const Rule partlyShadowed{"partly-shadowed", warning, "A part of a gesture's zone can never fire it.",
                          "The first gesture that matches wins. If that is meant, --ignore partly-shadowed."};
const Rule duplicateId{"duplicate-id", warning, "Two gestures have the same id.",
                       "A user's choice for one of them is the other's, too."};
const Rule overriddenZone{"overridden-zone", warning, "A zone has the name of a predefined one, which wins.",
                          "Give it another name."};
const Rule zoneOutside{"zone-outside", warning, "A zone is outside the screen.",
                       "Touches are between 0 and 1, x to the right and y down."};
const Rule zoneEmpty{"zone-empty", warning, "A zone without width or height contains nothing.",
                     "\"w\" and \"h\" are its width and height."};
const Rule zoneNegative{"zone-negative", warning, "A zone has a negative side.",
                        "It is turned to the other side: write the top left corner and positive sides."};
const Rule unusedZone{"unused-zone", warning, "No gesture uses a zone.", "Drop it, or use it."};
const Rule unusedAction{"unused-action", warning, "No gesture or group uses an action.", "Drop it, or offer it."};
const Rule unusedGroup{"unused-group", warning, "No gesture uses a group.", "Drop it, or use it."};
const Rule duplicateAction{"duplicate-action", warning, "Two actions have the same path.",
                           "References find the last of them."};
const Rule shortTitles{"short-titles", warning, "An action has fewer titles than its path has segments.",
                       "The menu shows a title for each segment, from the outermost to the action's own."};
const Rule deepPath{"deep-path", warning, "The path of an action has more than 64 segments.",
                    "Each segment but the last is a menu within the one before: nobody walks so many."};
const Rule fallbackEnd{"fallback-end", warning, "A fallback list has no action that every device supports.",
                       "A device that supports none of them loads nothing of the file: end the list with an action "
                       "without features."};
const Rule undefinedFallback{"undefined-fallback", warning, "A fallback list names an action that is not defined.",
                             "A device that supports no earlier alternative loads nothing of the file."};
const Rule unreachableFallback{"unreachable-fallback", warning, "An alternative stands behind one that always works.",
                               "The first supported action is taken: move it forward, or drop it."};
const Rule notAvailable{"not-available", warning, "An action that a gesture does is not among those that it offers.",
                        "The menu cannot show it, and who chooses another cannot return to it: offer it, too."};
const Rule fixedAction{"fixed-action", warning, "\"currentAction\" hides what a user chooses.",
                       "Use \"defaultAction\", unless the gesture is to be fixed."};
const Rule directedTap{"directed-tap", warning, "A tap or hold has a direction.",
                       "Only swipes and drags have one: drop the direction."};
const Rule undirectedSwipe{"undirected-swipe", warning, "A swipe has no direction.",
                           "It matches no movement but an exact diagonal: set its direction, once for each."};
const Rule modesCase{"modes-case", warning, "Modes differ only in case.", "The lookup tells them apart."};
const Rule noAction{"no-action", warning, "A gesture has no action that the device supports.",
                    "Use a \"defaultAction\" with a fallback list, or name the features among the gesture's own."};
const Rule deadTouches{"dead-touches", warning, "A gesture that the device does not support takes touches from others.",
                       "The lookup finds it all the same: in place of its \"features\", end its \"defaultAction\" list "
                       "with what the others do."};
const Rule unknownGesture{"unknown-gesture", warning, "A binding is of no gesture.",
                          "It has no effect, and the next save drops it."};
const Rule unsupportedBinding{"unsupported-binding", warning, "The device does not support a bound action.",
                              "The gesture is loaded and its action does nothing."};
const Rule hiddenBinding{"hidden-binding", warning, "A binding never shows: its gesture has a \"currentAction\".",
                         "Remove the binding, or change the gesture to a \"defaultAction\"."};
const Rule repeatedDefault{"repeated-default", warning, "A binding only repeats the default.",
                           "It hides every later change of the default: remove it."};

}

const QVector<const Rule *> &allRules()
{
    using namespace rules;
    static const QVector<const Rule *> all{&unreadable,
                                           &syntax,
                                           &refused,
                                           &version,
                                           &duplicateNeighbours,
                                           &groupFeatures,
                                           &noSupportedAction,
                                           &undefinedBinding,
                                           &unsaveableAction,
                                           &notStrict,
                                           &duplicateKey,
                                           &unknownKey,
                                           &convertedValue,
                                           &shadowed,
                                           &partlyShadowed,
                                           &duplicateId,
                                           &overriddenZone,
                                           &zoneOutside,
                                           &zoneEmpty,
                                           &zoneNegative,
                                           &unusedZone,
                                           &unusedAction,
                                           &unusedGroup,
                                           &duplicateAction,
                                           &shortTitles,
                                           &deepPath,
                                           &fallbackEnd,
                                           &undefinedFallback,
                                           &unreachableFallback,
                                           &notAvailable,
                                           &fixedAction,
                                           &directedTap,
                                           &undirectedSwipe,
                                           &modesCase,
                                           &noAction,
                                           &deadTouches,
                                           &unknownGesture,
                                           &unsupportedBinding,
                                           &hiddenBinding,
                                           &repeatedDefault};
    return all;
}

}
