#pragma once

#include "comparison.h"
#include "sample.h"

/// The groups of rows, each with what it needs; one source each.
std::vector<Row> benchLoad();
std::vector<Row> benchRefusal();
std::vector<Row> benchLookup();
std::vector<Row> benchSave();
std::vector<Row> benchClone();
std::vector<Row> benchWatch();
std::vector<Row> benchStart();

/// A load and a lookup at any size beside what they are held against.
Comparison loadAt(const Size &size);
Comparison lookupAt(const Size &size);
