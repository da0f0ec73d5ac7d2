// KyMeasure.h: takes the figures.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "KySystem.h"

struct Row
{
  std::string operation;
  std::string size;
  std::string system;
  std::string unit;
  double median;
};

using Systems = std::vector<std::unique_ptr<System>>;

// Times one operation of every system that does it, in random order from repetition to repetition.
void measureOperation(const Systems& systems, const Rack& rack, const OperationName& operation,
                      unsigned int repetitions, std::vector<Row>& rows);

// Bytes of the heap for each parameter, after building and after reading (size "M/read"). The strings of this rack have
// six characters, which no system stores apart: their own text does not count.
void measureHeap(const Systems& systems, const Rack& rack, std::vector<Row>& rows);

// Blocks of the heap for each parameter, likewise; only where they are counted (KyBlockCount.h).
void measureBlocksInUse(const Systems& systems, const Rack& rack, std::vector<Row>& rows);

// Bytes of the stored tree for each parameter.
void measureSection(const Systems& systems, const Rack& rack, std::vector<Row>& rows);

// Seconds of the processor that the work takes, system calls included.
double timeOf(const std::function<void()>& work);

// The same for one unit of what is measured.
double timeOfUnit(const Measure& measure);

double median(std::vector<double> values);
