// KyProcesses.h: figures that need processes of their own. They are in the table for people alone.
#pragma once

#include <string>
#include <vector>

#include "KyMeasure.h"

// Blocks of the heap for each parameter, after building and after reading, by ky_bench_blocks.
void measureBlocks(const std::string& sizes, bool isAlone, std::vector<Row>& rows);

// Loading and unloading the library, beside four empty ones ("empty"): the least that the loader and the system take for
// mapping as many files.
void measureLoad(unsigned int repetitions, std::vector<Row>& rows);

// The tool from its start to its end for one value, beside a program of the C++ library that does nothing ("nothing").
void measureStart(unsigned int repetitions, std::vector<Row>& rows);
