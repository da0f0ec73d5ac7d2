// Shell.h: the commands of `kyinventory shell`.
#pragma once

#include <string>
#include <vector>

#include "inventorykit/KySession.h"

class Output;

// Carries out commands on a session and prints what they have to say.
class Shell
{
public:
  explicit Shell(KyNInventoryKit::Session& session) : m_session(session) {}

  // One command: its name and its arguments.
  //
  // Result:  its exit code, after a message when it is not EXIT_OK.
  int execute(const std::vector<std::string>& words);

  // Whether the session is to end.
  bool isLeft() const { return m_isLeft; }

  // What may stand in place of the last word of a begun line, which begins at `wordBegin`.
  std::vector<std::string> complete(const std::string& line, std::size_t& wordBegin);

  // The commands, a line each, for `help` and for the manual.
  static std::string overview();

  // How values with blanks and backslashes are written, for both, too.
  static std::string quotingRules();

private:
  using Words = std::vector<std::string>;

  struct Command
  {
    const char* name;
    const char* arguments;
    const char* meaning;
    std::size_t least;    // arguments
    std::size_t most;
    int (Shell::*run)(const Words& words);
  };
  static const Command s_commands[];
  static const Command* commandOf(const std::string& name);

  int changeItem(const Words& words);
  int diff(const Words& words);
  int find(const Words& words);
  int get(const Words& words);
  int help(const Words& words);
  int list(const Words& words);
  int place(const Words& words);
  int quit(const Words& words);
  int save(const Words& words);
  int set(const Words& words);
  int assign(const Words& texts, const KyNInventoryKit::ParameterChange& common);
  void printNodes(Output& out, const std::vector<KyNInventoryKit::Node>& nodes, const Words& headings);

  KyNInventoryKit::Session& m_session;
  bool m_isLeft = false;
};
