#include "KyReport.h"

#include <cstdio>

void printTable(const std::vector<Row>& rows)
{
  std::printf("%-14s %-7s %-15s %11s %9s   %s\n", "operation", "size", "system", "median", "ours is", "unit");
  const Row* ours = nullptr;
  for (const Row& row : rows)
  {
    if (row.system == "ours") ours = &row;
    const bool isPeer =
        row.system != "ours" && ours != nullptr && ours->operation == row.operation && ours->size == row.size;
    if (isPeer)
      std::printf("%-14s %-7s %-15s %11.2f %8.2fx   %s\n", "", "", row.system.c_str(), row.median,
                  ours->median / row.median, row.unit.c_str());
    else
      std::printf("%-14s %-7s %-15s %11.2f %9s   %s\n", row.operation.c_str(), row.size.c_str(), row.system.c_str(),
                  row.median, "", row.unit.c_str());
  }
}

void printJson(const std::vector<Row>& rows)
{
  std::printf("[");
  for (const Row& row : rows)
    std::printf(
        "%s\n  {\"operation\": \"%s\", \"size\": \"%s\", \"system\": \"%s\", \"unit\": \"%s\", \"median\": %.6g}",
        &row == rows.data() ? "" : ",", row.operation.c_str(), row.size.c_str(), row.system.c_str(), row.unit.c_str(),
        row.median);
  std::printf("\n]\n");
}
