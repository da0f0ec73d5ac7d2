// kyinventory set: changes parameters of a stored tree, or creates them.
#include <algorithm>
#include <charconv>
#include <string>
#include <utility>
#include <vector>

#include "Command.h"
#include "Files.h"
#include "Terminal.h"
#include "inventory/KyNInventoryIDs.h"
#include "inventorykit/KyAddressText.h"
#include "inventorykit/KyEdit.h"
#include "inventorykit/KyValueText.h"

namespace
{
using KyNInventoryKit::ParameterChange;

constexpr unsigned int codeNoValue = 0x1500803;    // the type does not take what the command line says

struct SetArguments
{
  std::string file;
  std::vector<std::string> assignments;
  std::string createType;
  std::string unit;
  std::string relevance;
  std::string modifiable;
  CLI::Option* unitOption = nullptr;
  TargetOptions target;
};

struct Assignment
{
  KyCInventoryAddress address;
  ParameterChange change;
};

bool readNumber(const std::string& text, unsigned int& number)
{
  const char* const last = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data(), last, number);
  return error == std::errc() && end == last;
}

// What the options say of every parameter.
ParameterChange commonChange(const SetArguments& arguments)
{
  ParameterChange change;
  change.createType = KyNInventoryKit::typeOfName(arguments.createType);
  if (arguments.unitOption->count() != 0) change.unit = arguments.unit;
  if (!arguments.modifiable.empty()) change.isModifiable = arguments.modifiable == "yes";
  unsigned int relevance = 0;
  if (readNumber(arguments.relevance, relevance)) change.relevance = relevance;
  return change;
}

// The three below yield EXIT_OK, or another code after a message.
int readAssignment(const std::string& text, const ParameterChange& common, Assignment& assignment)
{
  const std::size_t sign = text.find('=');
  assignment.change = common;
  if (text.empty() || sign == 0)
  {
    complain((text.empty() ? "ADDRESS=VALUE" : text) + ": the address " + s_emptyAddress);
    return EXIT_USAGE;
  }
  if (sign != std::string::npos)
  {
    assignment.change.value = text.substr(sign + 1);
  }
  else if (common.createType != 0 || (!common.unit && !common.isModifiable && !common.relevance))
  {
    complain(text + ": has no value; write ADDRESS=VALUE");
    return EXIT_USAGE;
  }
  KyCErrorListPool pool;
  const bool isRead = KyNInventoryKit::readAddress(pool, text.substr(0, sign), assignment.address);
  return isRead ? EXIT_OK : failWith(text, pool, EXIT_USAGE);
}

// What a file is not needed for: whether the type to create takes the value, and a section the unit.
int tryOut(const Assignment& assignment)
{
  ParameterChange trial = assignment.change;
  KyCErrorListPool pool;
  KyCInventoryItem root(pool, KyNInventoryIDs::ROOT, "");
  if (trial.createType == 0)
  {
    trial.createType = KyNInventoryKit::typeOfName("String");
    trial.value.reset();
  }
  changeParameter(pool, root, KyNInventoryIDs::NAME, trial);
  return pool.getErrorCount() == 0 ? EXIT_OK
                                   : failWith(KyNInventoryKit::addressText(assignment.address), pool, EXIT_USAGE);
}

int readAssignments(const SetArguments& arguments, std::vector<Assignment>& assignments)
{
  const ParameterChange common = commonChange(arguments);
  for (const std::string& text : arguments.assignments)
  {
    assignments.emplace_back();
    int exitCode = readAssignment(text, common, assignments.back());
    if (exitCode == EXIT_OK) exitCode = tryOut(assignments.back());
    if (exitCode != EXIT_OK) return exitCode;
  }
  return EXIT_OK;
}

int set(const SetArguments& arguments)
{
  std::vector<Assignment> assignments;
  int exitCode = readAssignments(arguments, assignments);
  if (exitCode != EXIT_OK) return exitCode;
  if (!mayStore(arguments.file, arguments.target)) return exitCodeOfRefusal(arguments.file, arguments.target);
  const TreePointer tree = readTreeFile(arguments.file);
  if (!tree) return EXIT_INPUT;

  const std::string name = inputName(arguments.file);
  for (const Assignment& assignment : assignments)
  {
    KyCErrorListPool pool;
    if (changeParameter(pool, *tree, assignment.address, assignment.change) != nullptr) continue;
    const bool isNoValue = pool.getEntryCount() != 0 && pool.getEntry(0).code == codeNoValue;
    const ExitCode code = isNoValue && exitCode != EXIT_NO ? EXIT_USAGE : EXIT_NO;
    const std::string address = KyNInventoryKit::addressText(assignment.address);
    exitCode = failWith(isNoValue ? name + ": " + address : name, pool, code);
    if (exitCode == EXIT_OUTPUT) break;    // no memory for the others either
  }
  return exitCode == EXIT_OK ? storeTree(arguments.file, *tree, arguments.target) : exitCode;
}

std::string checkType(const std::string& text)
{
  return KyNInventoryKit::typeOfName(text) != 0 ? "" : "must be one of " + KyNInventoryKit::typeNames();
}

// "{Int8,Int16,...}": what completions offer.
std::string typeChoices()
{
  std::string names = KyNInventoryKit::typeNames();
  names.erase(std::remove(names.begin(), names.end(), ' '), names.end());
  return "{" + names + "}";
}

std::string checkRelevance(const std::string& text)
{
  unsigned int number = 0;
  return readNumber(text, number) ? "" : "must be a number from 0 to 4294967295";
}
}    // namespace

void addSetCommand(CLI::App& program, int& exitCode)
{
  auto arguments = std::make_shared<SetArguments>();
  CLI::App* command = program.add_subcommand("set", "Change parameters of a section file, or create them");
  command->add_option("FILE", arguments->file, "File with a section at its end or start; - is standard input")
      ->required();
  command
      ->add_option(
          "ADDRESS=VALUE", arguments->assignments,
          "Parameter and its new value, which is all that stands behind the first \"=\"; without one the value "
          "stays")
      ->required();
  command
      ->add_option("--create", arguments->createType,
                   "Type of parameters that are missing, which are created with the items on the way to them")
      ->type_name("TYPE")
      ->check(checkType, typeChoices());
  arguments->unitOption = command->add_option("--unit", arguments->unit, "Unit of the parameters, at most 100 bytes");
  command->add_option("--relevance", arguments->relevance, "Relevance of the parameters")
      ->check(checkRelevance, "NUMBER");
  command->add_option("--modifiable", arguments->modifiable, "Whether the parameters are marked as modifiable")
      ->check(CLI::IsMember({"yes", "no"}));
  addTargetOptions(*command, arguments->target);
  command->callback([arguments, &exitCode]() { exitCode = set(*arguments); });
  setManual(
      *command,
      {"Values are read by the parameter's own type: whole numbers in decimal or with 0x in front; floating-point "
       "numbers, inf, -inf and nan; versions of one to four numbers; texts as they are. --unit, --relevance and "
       "--modifiable go for every parameter of the command line, and need no new value.\n\n"
       "The file is written when every change has succeeded, and left as it was otherwise. What stands around the "
       "section in the file stays. Several commands that change one file in place wait for each other.\n\n"
       "Exit code 1 when a parameter does not exist, or cannot be created; 2 for a value that its type does not take.",
       {{"kyinventory set rack.kyinv BOARD[2]/SIZE=4096", "changes the size of the second board"},
        {"kyinventory set rack.kyinv BOARD[3]/SIZE=2048 --create UInt32 --unit kB",
         "creates a third board with a size"},
        {"kyinventory set rack.kyinv BOARD[2]/SIZE --modifiable yes", "marks the size as modifiable"}}});
}
