#pragma once

#include <QVector>

// The rules of the check. Each is an entry of its family's table in rules/, beside the function that finds it.

namespace analysis {

class Findings;
struct Subject;

enum class Severity { Error, Warning };

struct Rule
{
    /// Reports all its findings. Neighbours in a table may share one function, which is called once.
    using Finder = void (*)(const Subject &, Findings *);

    int number; // its position in every list of rules; a new rule takes the next number
    const char *id;
    Severity severity;
    const char *meaning;     // one sentence
    const char *hint;        // the correction
    Finder find = nullptr;   // null if the readers report it
    bool isOfDevice = false; // only checked for requested devices: this machine is hardly one of them
};

using Rules = QVector<Rule>;

/// Errors first, each severity by number.
const QVector<const Rule *> &allRules();

/// The rule of this id, which must exist.
const Rule &ruleOf(const char *id);

/// Finds everything in a valid configuration, family by family in the order of the tables.
void findAll(const Subject &subject, bool isDeviceChosen, Findings *findings);

}
