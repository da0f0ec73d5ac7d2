// kyinventory shell: a session with one file, at the terminal or from a script.
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>

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

// Commands up to the first one that fails, or that leaves.
int carryOutAll(Shell& shell, const Commands& commands)
{
  int exitCode = EXIT_OK;
  for (std::size_t n = 0; n < commands.size() && exitCode == EXIT_OK && !shell.isLeft(); ++n)
    exitCode = shell.execute(commands[n]);
  return exitCode;
}

// The exit code of a session in which nobody was asked.
int endScript(const Session& session, const Shell& shell, int exitCode)
{
  const int unsaved = shell.isLeft() ? EXIT_OK : atEnd(session);
  return exitCode == EXIT_OK ? unsaved : exitCode;
}

int runScript(Session& session, const Commands& commands)
{
  Shell shell(session);
  const int exitCode = carryOutAll(shell, commands);
  return endScript(session, shell, exitCode);
}

// Carries out each command of standard input as soon as it has come: whoever sends them may wait for the answer before
// the next one.
int runStandardInput(Session& session)
{
  Shell shell(session);
  KyNInventoryKit::CommandSplitter splitter;
  int exitCode = EXIT_OK;
  for (bool isEnd = false; !isEnd && exitCode == EXIT_OK && !shell.isLeft();)
  {
    Commands commands;
    KyCErrorListPool pool;
    char block[4096];
    const ssize_t count = ::read(STDIN_FILENO, block, sizeof(block));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0)
    {
      complain(std::string("standard input: ") + std::strerror(errno));
      exitCode = EXIT_INPUT;
      break;
    }
    isEnd = count == 0;
    splitter.add(std::string(block, static_cast<std::size_t>(count)), commands);
    const bool isWhole = !isEnd || splitter.finish(pool, commands);
    complainAbout("shell", pool);
    exitCode = isWhole ? carryOutAll(shell, commands) : EXIT_USAGE;
  }
  return endScript(session, shell, exitCode);
}

std::string promptOf(const Session& session)
{
  const std::string& path = session.path();
  return withoutControls(path.substr(path.rfind('/') + 1) + ":" + session.place(), "") +
         (session.isChanged() ? " *> " : "> ");
}

void endPromptLine()
{
  const std::string newLine = "\n";
  static_cast<void>(::write(STDOUT_FILENO, newLine.data(), newLine.size()) == 1);
}

// Typing the end of input (Ctrl-D) leaves; with unsaved changes when it is typed twice in a row.
int runDialogue(Session& session)
{
  std::signal(SIGINT, SIG_IGN);    // gives up a line, not the changes
  Shell shell(session);
  LineReader reader([&](const std::string& line, std::size_t& wordBegin) { return shell.complete(line, wordBegin); });
  bool isWarned = false;
  while (!shell.isLeft())
  {
    std::string line;
    if (reader.read(promptOf(session), line))
    {
      isWarned = false;
      Commands commands;
      if (split(line, commands)) carryOutAll(shell, commands);
      continue;
    }
    endPromptLine();
    if (!session.isChanged() || isWarned) return atEnd(session);
    complain("there are unsaved changes; save stores them, quit! or Ctrl-D once more drops them");
    isWarned = true;
  }
  return EXIT_OK;
}

int runShell(const ShellArguments& arguments, bool isScript)
{
  if (arguments.file == "-")
  {
    complain("standard input has no place to save to; name a file");
    return EXIT_USAGE;
  }
  Commands commands;
  if (isScript && !split(arguments.commands, commands)) return EXIT_USAGE;

  KyCErrorListPool pool;
  std::unique_ptr<Session> session;
  {
    const Progress progress("reading " + arguments.file);
    session = Session::open(pool, arguments.file);
  }
  complainAbout(arguments.file, pool);
  if (!session) return EXIT_INPUT;
  if (isScript) return runScript(*session, commands);
  return ::isatty(STDIN_FILENO) != 0 ? runDialogue(*session) : runStandardInput(*session);
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
       "ones back. Ctrl-C gives up the line. Ctrl-D leaves as quit does; where there are unsaved changes it has to be "
       "pressed once more, which drops them and gives exit code 1. Changes stay in memory until they are saved. save "
       "waits until no other command changes the file; where one has done so since it was read, it saves nothing, and "
       "gives exit code 4, unless forced.\n\n"
       "With -c, or when standard input is not a terminal, carries out the commands that it is given and asks for "
       "nothing. Each command of standard input is carried out and answered as soon as its line has come, so that "
       "another program can ask through a pair of pipes. The first one that fails ends the session with its exit code; "
       "nothing is saved on the way out. "
       "Changes that are not saved at the end give exit code 1.\n\n"
       "Commands are separated by line ends or \";\". # begins a comment. Addresses are relative to the current item; "
       "/ "
       "at the start means the root, .. the item above. get and find print them in the same form: relative to the "
       "current item what is in it, with / in front what is not. At the root that is the form that the other "
       "sub-commands take.\n\n" +
           Shell::quotingRules() + "\n" + commandParagraphs(),
       {{"kyinventory shell rack.kyinv", "opens a session"},
        {"kyinventory shell rack.kyinv -c 'cd BOARD[2]; set SLOT_COUNT=5; save'",
         "changes the second board's slot count"}}});
  command->callback([arguments, script, &exitCode]() { exitCode = runShell(*arguments, script->count() != 0); });
}
