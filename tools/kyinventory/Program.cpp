#include "Program.h"

#include <map>
#include <utility>

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
    addWatchCommand,
    addRemoveCommand,
};
// clang-format on

std::map<std::string, Manual>& manuals()
{
  static std::map<std::string, Manual> all;
  return all;
}
}    // namespace

void setManual(const CLI::App& command, Manual manual) { manuals()[command.get_name()] = std::move(manual); }

const Manual& manualOf(const CLI::App& command) { return manuals()[command.get_name()]; }

std::unique_ptr<CLI::App> makeProgram(int& exitCode)
{
  auto program = std::make_unique<CLI::App>("Takes, shows, compares and changes inventories of real-time test systems.",
                                            "kyinventory");
  program->set_version_flag("--version", "kyinventory " KY_VERSION);
  program->require_subcommand(1);
  program->footer("Exit codes: 0 done, 1 no, different or findings, 2 wrong usage, 3 input unusable, 4 output failed.");
  for (auto add : s_commands)
    add(*program, exitCode);
  return program;
}
