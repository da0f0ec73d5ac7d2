// kyinventory explain: tells what a message code means, and what to do about it.
#include <cstdio>
#include <string>

#include "Command.h"
#include "Json.h"
#include "Output.h"
#include "Terminal.h"
#include "inventorykit/KyExplain.h"

namespace
{
using KyNInventoryKit::Explanation;

struct ExplainArguments
{
  std::string code;
  bool json = false;
};

std::string hex(unsigned int code)
{
  char text[16];
  std::snprintf(text, sizeof(text), "0x%X", code);
  return text;
}

void printText(Output& out, const Explanation& explanation)
{
  out.text(hex(explanation.code), Style::HEADING).text("  ").text(explanation.text, Style::HEADING).text("\n");
  out.text("Library:      ").text(explanation.library).text("\n");
  out.text("Reported by:  ").text(explanation.reporters).text("\n");
  out.text("Cause:        ").text(explanation.cause).text("\n");
  if (*explanation.remedy != '\0') out.text("What to do:   ").text(explanation.remedy).text("\n");
}

void printJson(Output& out, const Explanation& explanation)
{
  out.text("{\n  \"code\": ").text(jsonText(hex(explanation.code)));
  out.text(",\n  \"library\": ").text(jsonText(explanation.library));
  out.text(",\n  \"text\": ").text(jsonText(explanation.text));
  out.text(",\n  \"reportedBy\": ").text(jsonText(explanation.reporters));
  out.text(",\n  \"cause\": ").text(jsonText(explanation.cause));
  out.text(",\n  \"remedy\": ").text(jsonText(explanation.remedy)).text("\n}\n");
}

int explain(const ExplainArguments& arguments)
{
  KyCErrorListPool pool;
  const unsigned int code = KyNInventoryKit::readCode(pool, arguments.code);
  Explanation explanation;
  const bool isExplained = code != 0 && explainText(pool, arguments.code, explanation);
  complainAbout(arguments.code, pool);
  if (code == 0) return EXIT_USAGE;
  if (!isExplained) return EXIT_NOT_FOUND;
  Output out;
  if (arguments.json)
    printJson(out, explanation);
  else
    printText(out, explanation);
  return out.finish(EXIT_OK);
}
}    // namespace

void addExplainCommand(CLI::App& program, int& exitCode)
{
  auto arguments = std::make_shared<ExplainArguments>();
  CLI::App* command = program.add_subcommand("explain", "Explain a message code: cause and remedy");
  command->add_option("CODE", arguments->code, "Code, decimal or as 0x1300005, or a line of reports with one in it")
      ->required();
  command->add_flag("--json", arguments->json, "Print a JSON object");
  command->callback([arguments, &exitCode]() { exitCode = explain(*arguments); });
  setManual(
      *command,
      {"Prints text, library, reporting functions, cause and remedy of a message, as the page of error codes has them. "
       "Of several codes in a text the first one counts. Exit code 1 when no message has the code.",
       {{"kyinventory explain 0x1300005", "explains \"Cannot read from file.\""}}});
}
