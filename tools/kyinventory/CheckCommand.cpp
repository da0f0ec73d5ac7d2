// kyinventory check: everything that is wrong with stored trees, or may be, and where.
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "Command.h"
#include "Files.h"
#include "Output.h"
#include "Progress.h"
#include "Terminal.h"
#include "inventorykit/KyCheck.h"

namespace
{
using KyNInventoryKit::CheckResult;
using KyNInventoryKit::Finding;
using KyNInventoryKit::Severity;
using KyNInventoryKit::Verdict;

struct CheckArguments
{
  std::vector<std::string> files;
  bool json = false;
  bool all = false;
};

std::string hex(std::uint64_t number)
{
  char text[24];
  std::snprintf(text, sizeof(text), "0x%llX", static_cast<unsigned long long>(number));
  return text;
}

std::string counted(unsigned int count, const char* what)
{
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

Style styleOf(Severity severity)
{
  return severity == Severity::ERROR ? Style::REMOVED : severity == Severity::WARNING ? Style::WARNING : Style::PLAIN;
}

void print(Output& out, const std::string& file, const Finding& finding)
{
  out.data(file).text(": ").text(KyNInventoryKit::severityName(finding.severity), styleOf(finding.severity));
  if (finding.offset != Finding::NOWHERE)
    out.text(" at byte " + std::to_string(finding.offset) + " (" + hex(finding.offset) + ")");
  if (!finding.address.empty()) out.text(", ").data(finding.address, Style::NAME);
  out.text(": ").data(withoutControls(finding.text)).text(" (" + hex(finding.code) + ")\n");
  if (!finding.remedy.empty()) out.text("    ").text(finding.remedy).text("\n");
  if (finding.more != 0)
    out.data(file).text(": " + std::to_string(finding.more) + " more of " + hex(finding.code) + "; --all lists them\n");
}

void print(Output& out, const CheckResult& result)
{
  const std::string file = withoutControls(result.name);
  for (const Finding& finding : result.findings)
    print(out, file, finding);
  std::vector<std::string> counts;
  if (result.verdict != Verdict::FINDINGS) counts.push_back(KyNInventoryKit::verdictName(result.verdict));
  if (result.errors != 0) counts.push_back(counted(result.errors, "error"));
  if (result.warnings != 0) counts.push_back(counted(result.warnings, "warning"));
  if (result.notes != 0) counts.push_back(counted(result.notes, "note"));
  out.data(file).text(": ");
  for (std::size_t n = 0; n < counts.size(); ++n)
    out.text(n == 0 ? "" : ", ").text(counts[n]);
  out.text("\n");
}

int exitCodeOf(Verdict verdict)
{
  return verdict == Verdict::FINE ? EXIT_OK : verdict == Verdict::FINDINGS ? EXIT_NO : EXIT_INPUT;
}

int check(const CheckArguments& arguments)
{
  if (isInputTwice(arguments.files)) return EXIT_USAGE;
  KyNInventoryKit::CheckOptions options;
  if (arguments.all) options.mostPerCode = options.mostNotesPerCode = 0;
  Output out;
  std::vector<CheckResult> results;
  int exitCode = EXIT_OK;
  for (const std::string& file : arguments.files)
  {
    const Progress progress("checking " + inputName(file));
    CheckResult result = KyNInventoryKit::checkFile(file, options);
    exitCode = std::max(exitCode, exitCodeOf(result.verdict));
    if (arguments.json)
      results.push_back(std::move(result));
    else
      print(out, result);
  }
  if (arguments.json) out.text(KyNInventoryKit::checkAsJson(results));
  return out.finish(exitCode);
}
}    // namespace

void addCheckCommand(CLI::App& program, int& exitCode)
{
  auto arguments = std::make_shared<CheckArguments>();
  CLI::App* command = program.add_subcommand("check", "Tell what is wrong with section files, where, and what to do");
  command->add_option("FILE", arguments->files, "Files with a section each; - is standard input")->required();
  command->add_flag("--all", arguments->all, "List every finding, not only the first 20 (notes: 3) of each code");
  command->add_flag("--json", arguments->json, "Print JSON: an array with an object for each file");
  setManual(
      *command,
      {"Reads header, trailer and every record of the stored tree, and tells what it finds with the byte offset in the "
       "file, the address, the code and what to do.\n\n"
       "An error keeps the tree from being read. A warning is about a tree that reads and is likely not meant so: a "
       "header or trailer that is missing or disagrees, bytes that nothing reads, IDs that are not predefined, "
       "siblings "
       "of one ID and index, a parameter and a sub-item of one ID, shared data that cannot be linked. A note is worth "
       "knowing: texts that are not UTF-8, descriptions of their own, units that may have been cut, deep nesting.\n\n"
       "Where the stored tree is damaged, the offset is that of the damage, and the address is that of the item or "
       "parameter that was read last; everything in front of it is sound.\n\n"
       "The exit code is 0 when there is nothing but notes, 1 when there are warnings, 3 when there are errors or a "
       "file "
       "cannot be read; of several files, the worst.",
       {{"kyinventory check rack.kyinv", "checks one file"},
        {"kyinventory check --json *.kyinv", "checks several, for a program to read"}}});
  command->callback([arguments, &exitCode]() { exitCode = check(*arguments); });
}
