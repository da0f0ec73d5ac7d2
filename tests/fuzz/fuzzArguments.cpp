// Any command line of the tool, up to where its work would begin: understood, or refused with a text.
#include <cstdio>
#include <vector>

#include "Command.h"
#include "Program.h"

namespace
{
constexpr std::size_t MOST_ARGUMENTS = 64;

// The words of the input, one a line.
std::vector<std::string> wordsOf(const std::string& text)
{
  std::vector<std::string> words;
  for (std::size_t begin = 0; begin < text.size() && words.size() < MOST_ARGUMENTS;)
  {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    words.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return words;
}
}    // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  int exitCode = EXIT_OK;
  const std::unique_ptr<CLI::App> program = makeProgram(exitCode);
  for (CLI::App* command : program->get_subcommands([](CLI::App*) { return true; }))
    command->parse_complete_callback([] { throw CLI::Success(); });
  std::vector<std::string> words = wordsOf(std::string(reinterpret_cast<const char*>(data), size));
  std::vector<std::string> reversed(words.rbegin(), words.rend());    // as the parser takes them
  try
  {
    program->parse(reversed);
  }
  catch (const CLI::ParseError& error)
  {
    std::ostringstream help;
    std::ostringstream wrong;
    if (program->exit(error, help, wrong) != 0 && wrong.str().empty()) std::abort();
  }
  return 0;
}
