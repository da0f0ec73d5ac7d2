#include "Program.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <sstream>
#include <utility>

#include "Command.h"
#include "Files.h"
#include "Output.h"
#include "Terminal.h"
#include "inventorykit/KyAddressText.h"

namespace
{
// One line a sub-command, in the order of the program's help.
// clang-format off
constexpr void (*s_commands[])(CLI::App&, int&) = {
    addScanCommand,
    addShowCommand,
    addGetCommand,
    addFindCommand,
    addSetCommand,
    addRemoveCommand,
    addRenameCommand,
    addMergeCommand,
    addDiffCommand,
    addPatchCommand,
    addExportCommand,
    addImportCommand,
    addAnonymizeCommand,
    addCheckCommand,
    addInspectCommand,
    addAppendCommand,
    addExtractCommand,
    addStripCommand,
    addIdsCommand,
    addExplainCommand,
    addShellCommand,
    addWatchCommand,
    addCompleteAddressCommand,
};
// clang-format on

constexpr std::size_t s_lineLength = 80;

// The words of a paragraph in lines, each with the indentation in front.
std::string wrapped(const std::string& paragraph, const std::string& indentation)
{
  std::string text;
  std::string line;
  std::istringstream words(paragraph);
  for (std::string word; words >> word;)
  {
    if (!line.empty() && line.size() + 1 + word.size() > s_lineLength)
    {
      text += line + "\n";
      line.clear();
    }
    line += (line.empty() ? indentation : " ") + word;
  }
  return text + line + "\n";
}

// Of an argument that must be given twice or more, the name stands twice.
class HelpFormatter : public CLI::Formatter
{
public:
  std::string make_option_usage(const CLI::Option* option) const override
  {
    const std::string name = make_option_name(option, true);
    return option->get_expected_min() < 2 ? CLI::Formatter::make_option_usage(option) : name + " " + name + "...";
  }
};

// What stands below the options in a help.
std::string footerOf(const CLI::App& command)
{
  const Manual& manual = manualOf(command);
  std::string text;
  for (const std::string& paragraph : paragraphsOf(manual.details))
    text += (paragraph[0] == ' ' ? paragraph + "\n" : wrapped(paragraph, "")) + "\n";
  if (!manual.examples.empty()) text += "Examples:\n";
  for (const Manual::Example& example : manual.examples)
    text += "  " + example.command + "\n" + wrapped(example.meaning, "      ");
  if (!manual.examples.empty()) text += "\n";
  text += "Exit codes:\n";
  for (const ExitMeaning& exit : s_exitMeanings)
    text += "  " + std::to_string(exit.code) + "  " + exit.meaning + "\n";
  text.pop_back();
  return text;
}

// Whether a positional argument is the path of a file.
bool isFile(const CLI::Option& option)
{
  const char* const names[] = {"FILE", "IMAGE", "A", "B", "DIFF"};
  return std::find(std::begin(names), std::end(names), option.get_name()) != std::end(names);
}

// What the program and every sub-command have in common.
void complete(CLI::App& command)
{
  if (isHidden(command)) return;
  command.add_flag_callback("--no-pager", &Output::forbidPager, "Print long output at once, without $PAGER");
  // What a positional argument is, its name tells.
  for (CLI::Option* option : command.get_options([](const CLI::Option* any) { return any->get_positional(); }))
  {
    if (option->get_type_name() == "TEXT") option->type_name("");
    if (isFile(*option)) option->check(notEmpty());
  }
  command.footer(footerOf(command));
}

std::map<std::string, Manual>& manuals()
{
  static std::map<std::string, Manual> all;
  return all;
}

// The first word of a command line that chooses no command; empty when there is none.
std::string unknownCommand(const CLI::App& program)
{
  if (!program.get_subcommands().empty()) return {};
  const std::vector<std::string> words = program.remaining();
  return words.empty() ? "" : words.front();
}

std::string suggestionFor(const CLI::App& program, const std::string& word)
{
  std::vector<std::string> commands;
  for (const CLI::App* command : program.get_subcommands([](const CLI::App* any) { return !isHidden(*any); }))
    commands.push_back(command->get_name());
  const std::vector<std::string> nearest = KyNInventoryKit::nearestOf(word, commands, 1);
  return nearest.empty() ? "" : " Did you mean " + nearest.front() + "?";
}

// Whether a word was taken for an option, and is none: it may be meant as a file.
bool hasUnknownOption(const CLI::App& command)
{
  const std::vector<std::string> words = command.remaining();
  return std::any_of(words.begin(), words.end(), [](const std::string& word) { return word[0] == '-'; });
}

// What is wrong with the command line, and where its help is.
void complainOfUsage(const CLI::App& program, const std::string& error)
{
  const std::vector<CLI::App*> chosen = program.get_subcommands();
  const std::string command = chosen.empty() ? "" : chosen.front()->get_name();
  const std::string unknown = unknownCommand(program);
  const bool isOption = !unknown.empty() && unknown.front() == '-';
  if (isOption)
    complain(unknown + " is no option of kyinventory itself.");
  else if (!unknown.empty())
    complain(unknown + " is no command." + suggestionFor(program, unknown));
  else
    complain((command.empty() ? "" : command + ": ") + error);
  const bool isHint = !chosen.empty() && hasUnknownOption(*chosen.front());
  complain("what to do: See kyinventory " + (command.empty() ? "" : command + " ") + "--help." +
           (isHint ? " Put -- in front of a file or another argument that begins with -." : ""));
}

// What the parser has to say: help for those who asked for it, otherwise what is wrong.
int answer(const CLI::App& program, const CLI::ParseError& error)
{
  std::ostringstream help;
  std::ostringstream wrong;
  help.exceptions(std::ios::badbit);    // without memory a stream would be cut, and say nothing
  if (program.exit(error, help, wrong) != 0)
  {
    complainOfUsage(program, error.what());
    return EXIT_USAGE;
  }
  Output out;
  out.text(help.str());
  return out.finish(EXIT_OK);
}
}    // namespace

bool isHidden(const CLI::App& command) { return command.get_parent() != nullptr && command.get_group().empty(); }

std::vector<std::string> paragraphsOf(const std::string& text)
{
  std::vector<std::string> paragraphs;
  for (std::size_t begin = 0; begin < text.size();)
  {
    const std::size_t end = std::min(text.find("\n\n", begin), text.size());
    if (end != begin) paragraphs.push_back(text.substr(begin, end - begin));
    begin = end + 2;
  }
  return paragraphs;
}

void setManual(const CLI::App& command, Manual manual) { manuals()[command.get_name()] = std::move(manual); }

const Manual& manualOf(const CLI::App& command) { return manuals()[command.get_name()]; }

std::unique_ptr<CLI::App> makeProgram(int& exitCode)
{
  auto program = std::make_unique<CLI::App>("Takes, shows, compares and changes inventories of real-time test systems.",
                                            "kyinventory");
  program->set_version_flag("--version", "kyinventory " KY_VERSION);
  program->require_subcommand(1);
  program->formatter(std::make_shared<HelpFormatter>());    // the sub-commands take it over
  for (auto add : s_commands)
    add(*program, exitCode);
  complete(*program);
  for (CLI::App* command : program->get_subcommands([](CLI::App*) { return true; }))
    complete(*command);
  program->footer(program->get_footer() + "\n\nEach sub-command has a help of its own: kyinventory COMMAND --help");
  return program;
}

int runProgram(int argc, char** argv)
{
  int exitCode = EXIT_OK;
  const std::unique_ptr<CLI::App> program = makeProgram(exitCode);
  try
  {
    program->parse(argc, argv);
  }
  catch (const CLI::ParseError& error)
  {
    return answer(*program, error);
  }
  return exitCode;
}
