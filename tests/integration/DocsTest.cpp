// Help, man pages and completions say the same: what the command line knows stands in each of them.
#include <algorithm>
#include <filesystem>
#include <sstream>

#include "Command.h"
#include "Program.h"
#include "integration/KyToolTest.h"

namespace
{
namespace fs = std::filesystem;

const std::string s_docs = KY_BINARY_DIR "/docs/";

bool isThere(const std::string& command) { return std::system(("command -v " + command + " >/dev/null").c_str()) == 0; }

class Docs : public Tool
{
protected:
  Docs() : m_program(makeProgram(m_exitCode)) {}

  // The program and its sub-commands, by name; "" is the program.
  std::vector<std::pair<std::string, const CLI::App*>> commands() const
  {
    std::vector<std::pair<std::string, const CLI::App*>> all = {{"", m_program.get()}};
    for (const CLI::App* command : m_program->get_subcommands([](const CLI::App*) { return true; }))
      if (!isHidden(*command)) all.emplace_back(command->get_name(), command);
    return all;
  }

  static std::string manPageOf(const std::string& command)
  {
    return s_docs + "man1/kyinventory" + (command.empty() ? "" : "-" + command) + ".1";
  }

  static std::vector<std::string> namesOf(const CLI::Option& option)
  {
    std::vector<std::string> names;
    for (const std::string& name : option.get_snames())
      names.push_back("-" + name);
    for (const std::string& name : option.get_lnames())
      names.push_back("--" + name);
    return names;
  }

  // What the bash completion offers for the last of the words.
  std::string completed(const std::string& words) const
  {
    const std::string script = m_folder.write("complete.sh", "source " + s_docs +
                                                                 "completions/kyinventory || exit 9\n"
                                                                 "COMP_WORDS=(" +
                                                                 words +
                                                                 ")\n"
                                                                 "COMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n"
                                                                 "_kyinventory\n"
                                                                 "printf '%s\\n' \"${COMPREPLY[@]}\"\n");
    const std::string folder = fs::path(kyToolPath).parent_path().string();
    const std::string command =
        "cd " + m_folder.path() + " && PATH=" + folder + ":$PATH bash " + script + " >" + path("offered") + " 2>&1";
    EXPECT_EQ(std::system(command.c_str()), 0);
    return contentOf(path("offered"));
  }

  int m_exitCode = 0;
  const std::unique_ptr<CLI::App> m_program;
};

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

// The text of a man page without roff's escapes.
std::string plain(const std::string& roff)
{
  const std::pair<std::string, std::string> escapes[] = {{"\\fB", ""},   {"\\fI", ""},   {"\\fR", ""},   {"\\&", ""},
                                                         {"\\-", "-"},   {"\\(aq", "'"}, {"\\(ti", "~"}, {"\\(ha", "^"},
                                                         {"\\(ga", "`"}, {"\\e", "\\"}};
  std::string text;
  for (std::size_t n = 0; n < roff.size();)
  {
    const auto isHere = [&](const auto& escape) { return roff.compare(n, escape.first.size(), escape.first) == 0; };
    const auto* const escape = std::find_if(std::begin(escapes), std::end(escapes), isHere);
    const bool isEscape = escape != std::end(escapes);
    text += isEscape ? escape->second : std::string(1, roff[n]);
    n += isEscape ? escape->first.size() : 1;
  }
  return text;
}

TEST_F(Docs, everySubCommandStandsInHelpManPagesAndCompletions)
{
  const std::string help = run("--help").out;
  const std::string man = plain(contentOf(manPageOf("")));
  const std::string bash = contentOf(s_docs + "completions/kyinventory");
  const std::string zsh = contentOf(s_docs + "completions/_kyinventory");
  const std::string fish = contentOf(s_docs + "completions/kyinventory.fish");
  for (const auto& [name, command] : commands())
  {
    if (name.empty()) continue;
    EXPECT_TRUE(contains(help, "\n  " + name + " ")) << name;
    EXPECT_TRUE(contains(man, ".TP\n" + name + "\n" + command->get_description() + ".\n")) << name;
    EXPECT_TRUE(contains(man, ".BR kyinventory-" + name + " (1)")) << name;
    EXPECT_TRUE(contains(bash, "\n    " + name + ")\n")) << name;
    EXPECT_TRUE(contains(zsh, "\n    '" + name + ":")) << name;
    EXPECT_TRUE(contains(fish, " -a " + name + " -d ")) << name;
    EXPECT_FALSE(command->get_description().empty()) << name;
  }
}

TEST_F(Docs, everyOptionAndArgumentStandsInHelpManPageAndCompletions)
{
  const std::string bash = contentOf(s_docs + "completions/kyinventory");
  const std::string zsh = contentOf(s_docs + "completions/_kyinventory");
  const std::string fish = contentOf(s_docs + "completions/kyinventory.fish");
  unsigned int options = 0;
  for (const auto& [name, command] : commands())
  {
    const std::string help = run(name + " --help").out;
    const std::string man = plain(contentOf(manPageOf(name)));
    const std::string row = "\n    " + (name.empty() ? "''" : name) + ")\n      options='";
    const std::size_t begin = bash.find(row) + row.size();
    const std::string bashOptions = " " + bash.substr(begin, bash.find('\'', begin) - begin) + " ";
    for (const CLI::Option* option : command->get_options())
    {
      ++options;
      EXPECT_TRUE(contains(man, "\n" + option->get_description() + ".\n")) << name << " " << option->get_name();
      if (option->get_positional())
      {
        EXPECT_TRUE(contains(help, "\n  " + option->get_name(true))) << name << " " << option->get_name(true);
        EXPECT_TRUE(contains(man, ".TP\n" + option->get_name(true) + "\n")) << name << " " << option->get_name(true);
        continue;
      }
      for (const std::string& one : namesOf(*option))
      {
        EXPECT_TRUE(contains(help, one)) << name << " " << one;
        EXPECT_TRUE(contains(man, one)) << name << " " << one;
        EXPECT_TRUE(contains(bashOptions, " " + one + " ")) << name << " " << one;
        EXPECT_TRUE(contains(zsh, "'" + one + "[") || contains(zsh, "'" + one + "=[")) << name << " " << one;
        const bool isLong = one.compare(0, 2, "--") == 0;
        EXPECT_TRUE(contains(fish, (isLong ? " -l " : " -s ") + one.substr(isLong ? 2 : 1))) << name << " " << one;
      }
    }
  }
  EXPECT_GT(options, 20u);
}

TEST_F(Docs, whatIsRequiredStandsInTheSynopsis)
{
  unsigned int required = 0;
  for (const auto& [name, command] : commands())
    for (const CLI::Option* option : command->get_options())
    {
      if (!option->get_required() || option->get_positional()) continue;
      ++required;
      const std::string man = plain(contentOf(manPageOf(name)));
      EXPECT_TRUE(contains(man, "\nkyinventory " + name + " [OPTIONS] -o FILE ")) << man;
      EXPECT_TRUE(contains(man, "\n" + option->get_description() + ".\nRequired.\n")) << man;
    }
  EXPECT_EQ(required, 4u) << "merge, import, anonymize, extract";
}

TEST_F(Docs, mergeTakesTwoFilesOrMore)
{
  const std::string help = run("merge --help").out;
  EXPECT_TRUE(contains(help, "Usage: kyinventory merge [OPTIONS] FILE FILE...\n")) << help;
  EXPECT_TRUE(contains(help, "\n  FILE FILE... REQUIRED ")) << help;
  EXPECT_TRUE(contains(plain(contentOf(manPageOf("merge"))), "[OPTIONS] -o FILE FILE FILE...\n"));
}

TEST_F(Docs, anOutputLeavesTheFileThatIsNamedAsItIs)
{
  unsigned int outputs = 0;
  for (const auto& [name, command] : commands())
    for (const CLI::Option* option : command->get_options())
    {
      const std::string meaning = option->get_description();
      const std::size_t behind = meaning.find(" staying as it is");
      if (behind == meaning.npos) continue;
      ++outputs;
      const std::size_t begin = meaning.rfind(' ', behind - 1) + 1;
      const CLI::Option* const first =
          command->get_options([](const CLI::Option* any) { return any->get_positional(); }).at(0);
      EXPECT_EQ(meaning.substr(begin, behind - begin), first->get_name()) << name;
    }
  EXPECT_GE(outputs, 6u);
}

// "| 0x1 | `NAME` | effect |"
TEST_F(Docs, theOptionMaskOfShowIsThatOfTheLibrarysPage)
{
  const std::string help = run("show --help").out;
  std::istringstream page(contentOf(KY_SOURCE_DIR "/docs/text-dump.md"));
  unsigned int bits = 0;
  for (std::string line; std::getline(page, line);)
  {
    if (line.compare(0, 4, "| 0x") != 0) continue;
    const std::string bit = line.substr(2, line.find(' ', 2) - 2);
    std::string effect = line.substr(line.find("` | ") + 4);
    effect.resize(effect.size() - 2);
    effect.erase(std::remove(effect.begin(), effect.end(), '`'), effect.end());
    EXPECT_TRUE(contains(help, "  " + bit + std::string(10 - bit.size(), ' ') + effect + "\n")) << bit;
    ++bits;
  }
  EXPECT_EQ(bits, 22u);
}

TEST_F(Docs, everySubCommandHasDetailsAndExamplesInHelpAndManPage)
{
  for (const auto& [name, command] : commands())
  {
    if (name.empty()) continue;
    const Manual& manual = manualOf(*command);
    const std::string help = run(name + " --help").out;
    const std::string man = plain(contentOf(manPageOf(name)));
    EXPECT_FALSE(manual.details.empty()) << name;
    EXPECT_FALSE(manual.examples.empty()) << name;
    for (const std::string& paragraph : paragraphsOf(manual.details))
      EXPECT_TRUE(contains(man, paragraph)) << name << ": " << paragraph;
    for (const Manual::Example& example : manual.examples)
    {
      EXPECT_TRUE(contains(example.command, "kyinventory " + name)) << example.command;
      EXPECT_TRUE(contains(help, "\n  " + example.command + "\n")) << example.command;
      EXPECT_TRUE(contains(man, "\n" + example.command + "\n")) << example.command;
    }
  }
}

TEST_F(Docs, theExitCodesStandInEveryHelpAndManPage)
{
  for (const auto& command : commands())
  {
    const std::string help = run(command.first + " --help").out;
    const std::string man = plain(contentOf(manPageOf(command.first)));
    for (const ExitMeaning& exit : s_exitMeanings)
    {
      const std::string code = std::to_string(exit.code);
      EXPECT_TRUE(contains(help, "\n  " + code + "  " + exit.meaning + "\n")) << command.first;
      EXPECT_TRUE(contains(man, ".TP\n" + code + "\n" + exit.meaning + ".\n")) << command.first;
    }
  }
}

TEST_F(Docs, hiddenCommandsStandNowhere)
{
  EXPECT_FALSE(contains(run("--help").out, "complete-address"));
  EXPECT_FALSE(contains(plain(contentOf(manPageOf(""))), "complete-address"));
  EXPECT_FALSE(fs::exists(manPageOf("complete-address")));
}

TEST_F(Docs, thereIsAManPageForTheToolAndEachSubCommandAndNoOther)
{
  std::size_t pages = 0;
  for (const auto& entry : fs::directory_iterator(s_docs + "man1"))
    pages += entry.path().extension() == ".1" ? 1 : 0;
  EXPECT_EQ(pages, commands().size());
  for (const auto& command : commands())
    EXPECT_TRUE(fs::exists(manPageOf(command.first))) << command.first;
}

TEST_F(Docs, groffHasNothingToSayAboutTheManPages)
{
  if (!isThere("groff")) GTEST_SKIP() << "groff is not here (Debian: groff-base)";
  for (const auto& command : commands())
  {
    const std::string groff = "groff -man -Tutf8 -ww -z " + manPageOf(command.first) + " >" + path("said") + " 2>&1";
    EXPECT_EQ(std::system(groff.c_str()), 0);
    EXPECT_EQ(contentOf(path("said")), "") << command.first;
  }
}

TEST_F(Docs, theCompletionsAreValid)
{
  const std::string folder = s_docs + "completions/";
  EXPECT_EQ(std::system(("bash -n " + folder + "kyinventory").c_str()), 0);
  const bool isZsh = isThere("zsh");
  const bool isFish = isThere("fish");
  EXPECT_TRUE(!isZsh || std::system(("zsh -n " + folder + "_kyinventory").c_str()) == 0);
  EXPECT_TRUE(!isFish || std::system(("fish -n " + folder + "kyinventory.fish").c_str()) == 0);
  if (!isZsh || !isFish) GTEST_SKIP() << "zsh or fish is not here";
}

TEST_F(Docs, bashOffersSubCommandsAndOptions)
{
  EXPECT_EQ(completed("kyinventory sho"), "show\n");
  EXPECT_EQ(completed("kyinventory --no-pager sho"), "show\n");
  EXPECT_EQ(completed("kyinventory --ver"), "--version\n");
  EXPECT_EQ(completed("kyinventory show --opt"), "--options\n");
  EXPECT_EQ(completed("kyinventory show a.kyinv --opt"), "--options\n");
  EXPECT_EQ(completed("kyinventory dance --opt"), "\n");
  EXPECT_EQ(completed("kyinventory set a.kyinv NAME=1 --create UI"), "UInt8\nUInt16\nUInt32\n");
  EXPECT_EQ(completed("kyinventory set a.kyinv NAME=1 --create ''"),
            "Int8\nInt16\nInt32\nLong64\nUInt8\nUInt16\nUInt32\nULong64\nFloat32\nFloat64\nString\nVersion\n");
}

TEST_F(Docs, bashOffersFilesAndAddresses)
{
  store("rack.kyinv", "ROOT/BOARD[2] SIZE=1; BOARD[2]/CPU; BOARD[3]");
  EXPECT_EQ(completed("kyinventory show ra"), "rack.kyinv\n");
  EXPECT_EQ(completed("kyinventory scan -o ra"), "rack.kyinv\n");
  EXPECT_EQ(completed("kyinventory scan --output = ra"), "rack.kyinv\n");
  EXPECT_EQ(completed("kyinventory merge a b ra"), "rack.kyinv\n");
  EXPECT_EQ(completed("kyinventory show rack.kyinv BO"), "BOARD[2]\nBOARD[3]\n");
  EXPECT_EQ(completed("kyinventory show --plain --depth 3 rack.kyinv 'BOARD[2]/'"), "BOARD[2]/CPU\nBOARD[2]/SIZE\n");
  EXPECT_EQ(completed("kyinventory show --depth = 3 rack.kyinv 'BOARD[2]/S'"), "BOARD[2]/SIZE\n");
  EXPECT_EQ(completed("kyinventory show missing.kyinv BO"), "\n");
  EXPECT_EQ(completed("kyinventory show --depth 'B'"), "\n");
}
}    // namespace
