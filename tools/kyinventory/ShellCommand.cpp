// kyinventory shell: a session with one file, at the terminal or from a script.
#include <unistd.h>

#include <csignal>

#include "Command.h"
#include "Files.h"
#include "LineReader.h"
#include "Progress.h"
#include "Shell.h"
#include "Terminal.h"

using KyNInventoryKit::Session;

namespace
{
struct ShellArguments
{
  std::string file;
  std::string commands;
};

using Commands = std::vector<std::vector<std::string>>;

bool split(const std::string& text, Commands& commands)
{
  KyCErrorListPool pool;
  const bool isDone = KyNInventoryKit::splitCommands(pool, text, commands);
  complainAbout("shell", pool);
  return isDone;
}

// The end of a session that quit has not ended.
int atEnd(const Session& session)
{
  if (!session.isChanged()) return EXIT_OK;
  complain(session.path() + ": the changes were not saved");
  return EXIT_NO;
}

// The first command that fails ends it.
int runScript(Session& session, const Commands& commands)
{
  Shell shell(session);
  for (const auto& command : commands)
  {
    const int exitCode = shell.execute(command);
    if (shell.isLeft()) return exitCode;
    if (exitCode == EXIT_OK) continue;
    atEnd(session);
    return exitCode;
  }
  return atEnd(session);
}

std::string promptOf(const Session& session)
{
  const std::string& path = session.path();
  return withoutControls(path.substr(path.rfind('/') + 1) + ":" + session.place(), "") +
         (session.isChanged() ? " *> " : "> ");
}

int runDialogue(Session& session)
{
  std::signal(SIGINT, SIG_IGN);    // gives up a line, not the changes
  Shell shell(session);
  LineReader reader([&](const std::string& line, std::size_t& wordBegin) { return shell.complete(line, wordBegin); });
  for (std::string line; reader.read(promptOf(session), line);)
  {
    Commands commands;
    if (!split(line, commands)) continue;
    for (const auto& command : commands)
    {
      if (shell.execute(command) != EXIT_OK) break;
      if (shell.isLeft()) return EXIT_OK;
    }
  }
  const std::string newLine = "\n";    // the prompt's line ends here
  static_cast<void>(::write(STDOUT_FILENO, newLine.data(), newLine.size()) == 1);
  return atEnd(session);
}

bool readScript(const ShellArguments& arguments, bool isGiven, Commands& commands)
{
  if (isGiven) return split(arguments.commands, commands);
  KyCErrorListPool pool;
  std::string text;
  const bool isRead = KyNInventoryKit::readBytes(pool, "-", text);
  complainAbout("standard input", pool);
  return isRead && split(text, commands);
}

int runShell(const ShellArguments& arguments, bool isScriptGiven)
{
  if (arguments.file == "-")
  {
    complain("standard input has no place to save to; name a file");
    return EXIT_USAGE;
  }
  const bool isScript = isScriptGiven || ::isatty(STDIN_FILENO) == 0;
  Commands commands;
  if (isScript && !readScript(arguments, isScriptGiven, commands)) return EXIT_USAGE;

  KyCErrorListPool pool;
  std::unique_ptr<Session> session;
  {
    const Progress progress("reading " + arguments.file);
    session = Session::open(pool, arguments.file);
  }
  complainAbout(arguments.file, pool);
  if (!session) return EXIT_INPUT;
  return isScript ? runScript(*session, commands) : runDialogue(*session);
}

// The commands as a paragraph each, for the manual.
std::string commandParagraphs()
{
  std::string text = Shell::overview();
  for (std::size_t n = 0; n < text.size(); ++n)
  {
    if (text[n] != '\n') continue;
    if (text.compare(n, 5, "\n    ") == 0)
      text.replace(n, 5, ": ");
    else
      text.insert(++n, 1, '\n');
  }
  return text;
}
}    // namespace

void addShellCommand(CLI::App& program, int& exitCode)
{
  auto arguments = std::make_shared<ShellArguments>();
  CLI::App* command = program.add_subcommand("shell", "Look into a file and change it, command by command");
  command->add_option("FILE", arguments->file, "File with a section at its end or start")->required();
  CLI::Option* script =
      command->add_option("-c,--commands", arguments->commands,
                          "Commands to carry out instead of asking for them, separated by semicolons");
  setManual(
      *command,
      {"At a terminal, asks for commands: the Tab key completes them and addresses, the arrow keys bring former "
       "ones back. Changes stay in memory until they are saved.\n\n"
       "With -c, or when standard input is not a terminal, carries out the commands that it is given and asks for "
       "nothing. The first one that fails ends the session with its exit code; nothing is saved on the way out. "
       "Changes that are not saved at the end give exit code 1.\n\n"
       "Commands are separated by line ends or \";\". Values with blanks stand in quotes. # begins a comment. "
       "Addresses are relative to the current item; / at the start means the root, .. the item above.\n\n" +
           commandParagraphs(),
       {{"kyinventory shell rack.kyinv", "opens a session"},
        {"kyinventory shell rack.kyinv -c 'cd BOARD[2]; set SLOT_COUNT=5; save'",
         "changes the second board's slot count"}}});
  command->callback([arguments, script, &exitCode]() { exitCode = runShell(*arguments, script->count() != 0); });
}
