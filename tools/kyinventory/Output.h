// Output.h: what a sub-command prints for people.
//
//   Output out;
//   out.text("Name  ").data(valueText(parameter)).text("\n");
//   return out.finish(EXIT_OK);
#pragma once

#include <string>
#include <string_view>

enum class Style
{
  PLAIN,
  HEADING,
  NAME,    // addresses, IDs
  VALUE,
  ADDED,
  REMOVED,
  CHANGED,
  WARNING
};

// Standard output, written in large blocks.
//
// On a terminal it has colour, and control characters of what came from files are shown as \xNN so that a stored text
// cannot steer the terminal. Elsewhere every text is passed on byte by byte, without colour.
class Output
{
public:
  Output();
  ~Output();
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  bool isTerminal() const { return m_isTerminal; }

  // Writes a text of the tool's own.
  Output& text(std::string_view text) { return write(text, Style::PLAIN); }
  Output& text(std::string_view text, Style style) { return write(text, style); }

  // Writes a text that came from a file or from the command line. A line feed is a control character, too.
  Output& data(std::string_view text) { return data(text, Style::PLAIN); }
  Output& data(std::string_view text, Style style);

  // As data, for a text of many lines: line feeds and tabs are passed on.
  Output& lines(std::string_view text);

  // Whether writing has failed: what follows is for nobody. A closed pipe is no failure to complain about.
  bool hasFailed() const { return m_hasFailed; }

  // Writes out what is left.
  //
  // Result:  exitCode, or EXIT_OUTPUT after a message when anything could not be written.
  int finish(int exitCode);

private:
  Output& write(std::string_view text, Style style);
  void flush();

  std::string m_buffer;
  bool m_isTerminal;
  bool m_hasFailed = false;
  int m_reason = 0;
};
