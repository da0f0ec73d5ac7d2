// makeExplanations.cpp: makes the table of explained message codes out of docs/error-codes.md, while the kit is built.
//
//   ky_make_explanations docs/error-codes.md KyExplanations.inc
//
// The page has a heading "## library" for each library and rows of five cells: code, text, reporters, cause, remedy.
// The table has one line each, ordered by code; the marks of the page are taken away, and a remedy of "–" is empty.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <string>
#include <vector>

namespace
{
using Cells = std::vector<std::string>;

std::string trimmed(const std::string& text)
{
  const std::size_t first = text.find_first_not_of(' ');
  return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

// The cells of a row "| a | b |". "\|" is a bar that belongs to a cell.
Cells cellsOf(const std::string& row)
{
  Cells cells;
  std::string cell;
  for (std::size_t n = 1; n < row.size(); ++n)
  {
    if (row[n] == '|')
    {
      cells.push_back(trimmed(cell));
      cell.clear();
      continue;
    }
    if (row[n] == '\\' && n + 1 < row.size() && row[n + 1] == '|') ++n;
    cell += row[n];
  }
  return cells;
}

std::string withoutMarks(std::string cell)
{
  cell.erase(std::remove(cell.begin(), cell.end(), '`'), cell.end());
  return cell == "\xE2\x80\x93" ? "" : cell;
}

std::string literal(const std::string& text)
{
  std::string quoted = "\"";
  for (const char c : text)
  {
    if (c == '"' || c == '\\' || c == '?') quoted += '\\';    // "?": no trigraphs
    quoted += c;
  }
  return quoted + "\"";
}

int fail(const std::string& what)
{
  std::fprintf(stderr, "makeExplanations: %s\n", what.c_str());
  return 1;
}

// The lines of the table by their codes; false, after a message, when a row is none.
bool readPage(std::ifstream& page, std::map<unsigned long, std::string>& lines)
{
  std::string library;
  for (std::string row; std::getline(page, row);)
  {
    if (row.compare(0, 3, "## ") == 0) library = trimmed(row.substr(3));
    if (row.compare(0, 5, "| `0x") != 0) continue;
    const Cells cells = cellsOf(row);
    if (cells.size() != 5) continue;    // the table of the libraries
    const unsigned long code = std::strtoul(withoutMarks(cells[0]).c_str(), nullptr, 16);
    std::string line = "{" + withoutMarks(cells[0]) + ", " + literal(library);
    for (std::size_t n = 1; n < cells.size(); ++n)
      line += ", " + literal(withoutMarks(cells[n]));
    if (!lines.emplace(code, line + "},\n").second) return fail("a code stands twice: " + row) == 0;
  }
  return !lines.empty() || fail("the page has no rows") == 0;
}
}    // namespace

int main(int argc, char** argv)
{
  if (argc != 3) return fail("usage: makeExplanations PAGE TABLE");
  std::ifstream page(argv[1]);
  if (!page) return fail(std::string("cannot read ") + argv[1]);
  std::map<unsigned long, std::string> lines;
  if (!readPage(page, lines)) return 1;
  std::ofstream table(argv[2]);
  table << "// Made by kit/generator/makeExplanations.cpp of docs/error-codes.md.\n";
  for (const auto& line : lines)
    table << line.second;
  table.close();
  return table ? 0 : fail(std::string("cannot write ") + argv[2]);
}
