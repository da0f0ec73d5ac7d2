// LineReader.h: lines that people type.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

// Reads lines from the terminal. Where libedit is there, they can be edited and completed, and former ones come back;
// otherwise the terminal's own editing is all there is.
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

  // Result:  false at the end of input.
  bool read(const std::string& prompt, std::string& line);

private:
  class Editor;
  std::unique_ptr<Editor> m_editor;
};
