// Output.h: what a sub-command prints for people.
//
//   Output out;
//   out.text("Name  ").data(valueText(parameter)).text("\n");
//   return out.finish(EXIT_OK);
#pragma once

#include <sys/types.h>

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
// On a terminal, control characters of what came from files are shown as \xNN so that a stored text cannot steer the
// terminal, and there is colour, unless the environment has NO_COLOR or a TERM of "dumb". What has more lines than the
// terminal goes through the pager: $PAGER, else less -FRX, else more; none when PAGER is empty or "cat", and none after
// forbidPager. Elsewhere every text is passed on byte by byte, without colour.
//
// Whoever reads may stop reading. A pager that is left early takes nothing from the command's exit code. A closed pipe on
// standard output ends the program by SIGPIPE, as it ends any other that writes there: quietly, and 141 for a shell.
//
// One at a time; used by one thread.
class Output
{
public:
  Output();
  ~Output();
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  // From now on nothing goes through a pager.
  static void forbidPager();

  bool isTerminal() const { return m_isTerminal; }

  // Writes a text of the tool's own.
  Output& text(std::string_view text) { return write(text, Style::PLAIN); }
  Output& text(std::string_view text, Style style) { return write(text, style); }

  // Writes a text that came from a file or from the command line. A line feed is a control character, too.
  Output& data(std::string_view text) { return data(text, Style::PLAIN); }
  Output& data(std::string_view text, Style style);

  // As data, for a text of many lines: line feeds and tabs are passed on.
  Output& lines(std::string_view text);

  // Whether writing has failed, or the pager was left: what follows is for nobody, and long work may end.
  bool hasFailed() const { return m_hasFailed; }

  // Shows now what was written so far. For output that comes bit by bit; on a terminal it goes through no pager then.
  void flush();

  // Writes out what is left, and waits for the pager.
  //
  // Result:  exitCode, or EXIT_OUTPUT after a message when anything could not be written.
  int finish(int exitCode);

private:
  Output& write(std::string_view text, Style style);
  void append(std::string_view text);
  void count(std::string_view text);
  void writeOut();
  void startPager();
  void endPager();

  std::string m_buffer;
  bool m_isTerminal;
  bool m_hasColour;
  bool m_mayPage;             // and then nothing has been written out yet
  unsigned int m_rows = 0;    // of the terminal
  unsigned int m_columns = 0;
  unsigned int m_row = 0;    // where the text has come to
  unsigned int m_column = 0;
  int m_target;         // standard output, or the pager's input
  pid_t m_pager = 0;    // 0: none
  bool m_hasFailed = false;
  int m_reason = 0;
};
