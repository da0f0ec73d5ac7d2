// KyReport.h: prints the figures.
#pragma once

#include <vector>

#include "KyMeasure.h"

// For people: one line an operation and size, with every system's figure and our ratio to it.
void printTable(const std::vector<Row>& rows);

// For programs: an array of {"operation", "size", "system", "unit", "median"}.
void printJson(const std::vector<Row>& rows);
