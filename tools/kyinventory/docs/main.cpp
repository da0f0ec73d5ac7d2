// kyinventory-docs: writes the man pages and the completions of kyinventory, from its command line.
#include <cstdio>
#include <fstream>

#include "Command.h"
#include "CompletionScript.h"
#include "ManPage.h"
#include "Program.h"

namespace
{
bool write(const std::string& path, const std::string& text)
{
  std::ofstream file(path, std::ios::binary);
  file << text;
  file.close();
  if (!file) std::fprintf(stderr, "kyinventory-docs: cannot write %s\n", path.c_str());
  return static_cast<bool>(file);
}

bool writeManPages(const std::string& folder, const std::vector<CommandRow>& table)
{
  bool isDone = true;
  for (const CommandRow& row : table)
    isDone = write(folder + "/" + manName(row) + ".1", manPage(table, row)) && isDone;
  return isDone;
}

bool writeCompletions(const std::string& folder, const std::vector<CommandRow>& table)
{
  return write(folder + "/kyinventory", bashCompletion(table)) &&
         write(folder + "/_kyinventory", zshCompletion(table)) &&
         write(folder + "/kyinventory.fish", fishCompletion(table));
}
}    // namespace

int main(int argc, char** argv)
{
  const std::string what = argc == 3 ? argv[1] : "";
  if (what != "man" && what != "completions")
  {
    std::fputs("usage: kyinventory-docs man|completions FOLDER\n", stderr);
    return EXIT_USAGE;
  }
  int ignored = 0;
  const std::unique_ptr<CLI::App> program = makeProgram(ignored);
  const std::vector<CommandRow> table = commandTable(*program);
  const bool isDone = what == "man" ? writeManPages(argv[2], table) : writeCompletions(argv[2], table);
  return isDone ? EXIT_OK : EXIT_OUTPUT;
}
