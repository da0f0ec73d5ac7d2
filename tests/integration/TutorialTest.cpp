// The tutorial: every command on the page is run, and what it prints is compared with the page.
#include <sstream>

#include "integration/KyToolTest.h"

#ifdef KY_HAVE_HOST
namespace
{
// The page as it should be: each "$ command" of its console blocks with what the command prints now.
std::string regenerated(const std::string& page, const KyTemporaryFolder& folder)
{
  const std::string tool = kyToolPath;
  const std::string bin = tool.substr(0, tool.rfind('/'));
  std::string result;
  std::istringstream lines(page);
  bool isConsole = false;
  for (std::string line; std::getline(lines, line);)
  {
    const bool isFence = line.rfind("```", 0) == 0;
    if (isFence) isConsole = line == "```console";
    const bool isCommand = isConsole && line.rfind("$ ", 0) == 0;
    if (!isConsole || isFence || isCommand) result += line + "\n";    // of a console block, the output is left out
    if (!isCommand) continue;

    folder.write("command.sh", "PATH=" + bin + ":$PATH\ncd '" + folder.path() + "/files'\n" + line.substr(2) + "\n");
    const int status = std::system(("sh " + folder.path("command.sh") + " >" + folder.path("out") + " 2>&1").c_str());
    EXPECT_TRUE(WIFEXITED(status)) << line;
    result += contentOf(folder.path("out"));
  }
  return result;
}
}    // namespace

TEST(Tutorial, everyCommandPrintsWhatThePageSays)
{
  const KyTemporaryFolder folder;
  folder.write("files/machine.xml", contentOf(KY_SOURCE_DIR "/host/tests/data/small-machine.xml"));
  const std::string page = contentOf(KY_SOURCE_DIR "/docs/tutorial.md");
  EXPECT_EQ(regenerated(page, folder), page);
}
#endif
