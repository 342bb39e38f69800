#pragma once

#include "comparison.h"
#include "sample.h"

/// The groups of rows with their requirements; one source each.
std::vector<Row> benchLoad();
std::vector<Row> benchRefusal();
std::vector<Row> benchLookup();
std::vector<Row> benchSave();
std::vector<Row> benchClone();
std::vector<Row> benchWatch();
std::vector<Row> benchShapes();
std::vector<Row> benchStart();

/// A load and a lookup at any size, and the work that each is compared with.
Comparison loadAt(const Size &size);
Comparison lookupAt(const Size &size);
