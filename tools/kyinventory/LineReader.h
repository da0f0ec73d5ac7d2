// LineReader.h: lines that people type.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

// Reads lines from the terminal. Where libedit is there, they can be edited and completed, and former ones come back;
// otherwise, and where TERM is "dumb", the terminal's own editing is all there is.
//
// The interrupt key gives up the line that is being typed. Elsewhere the owner decides what the signal does.
class LineReader
{
public:
  // What may stand in place of the word that the cursor is behind: `line` up to the cursor, and where in it that word
  // begins.
  using Complete = std::function<std::vector<std::string>(const std::string& line, std::size_t& wordBegin)>;

  explicit LineReader(Complete complete);
  ~LineReader();
  LineReader(const LineReader&) = delete;
  LineReader& operator=(const LineReader&) = delete;

  // Result:  false at the end of input, which on a terminal is not for ever: one may read on. The line is empty when it
  //          was given up.
  bool read(const std::string& prompt, std::string& line);

private:
  class Source;
  class Plain;
  class Editor;
  static std::unique_ptr<Source> makeSource(Complete complete);

  std::unique_ptr<Source> m_source;
};
