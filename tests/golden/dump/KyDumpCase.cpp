#include "KyDumpCase.h"

#include <sstream>

#include "support/KySampleTree.h"
#include "support/KyTestPool.h"

KyDumpOptions readOptions(const std::string& text)
{
  KyDumpOptions options;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);)
  {
    const std::size_t comment = line.find('#');
    if (comment != std::string::npos) options.hasComment = true;
    std::istringstream words(line.substr(0, comment));
    for (std::string word; words >> word;)
    {
      if (word == "depth")
        words >> options.depth;
      else
        options.mask |= std::stoi(word, nullptr, 0);
    }
    if (words.bad() || (words.fail() && !words.eof())) ADD_FAILURE() << "not an options line: " << line;
  }
  return options;
}

std::string dumpOf(const std::string& tree, const KyDumpOptions& options)
{
  const KySampleTree sample(tree);
  KyTestPool pool;
  const KyCString text = sample.root().toString(pool, options.mask, options.depth);
  return std::string(text.c_str(), text.length());
}
