// Table.h: rows of columns, for people and for programs.
//
//   Table table(out, {"ADDRESS", "VALUE"});
//   table.add({address, value});
//   table.finish();
#pragma once

#include <string>
#include <vector>

#include "Output.h"

// On a terminal the columns are aligned below headings. Elsewhere each row is a line whose columns are separated by
// tabs, written at once and without headings; a tab, line feed, carriage return or backslash inside of a column is
// written as \t, \n, \r or \\, so that every line is one row.
class Table
{
public:
  Table(Output& out, std::vector<std::string> headings) : m_out(out), m_rows({std::move(headings)}) {}

  void add(std::vector<std::string> row);
  void finish();

private:
  Output& m_out;
  std::vector<std::vector<std::string>> m_rows;    // on a terminal all of them, the headings first
};
