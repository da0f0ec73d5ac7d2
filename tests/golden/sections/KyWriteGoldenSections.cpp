// KyWriteGoldenSections.cpp: writes the section files of this folder. Run by hand alone; see README.md.
#include <cstdio>
#include <string>

#include "errorhandling/KyErrorHandling.h"
#include "golden/sections/KyGoldenTrees.h"

namespace
{
bool writeFile(const std::string& path, const std::vector<unsigned char>& bytes)
{
  std::FILE* const file = std::fopen(path.c_str(), "wbx");    // an existing file is never overwritten
  if (file == nullptr) return false;
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
  return std::fclose(file) == 0 && written;
}
}    // namespace

int main(int argc, char** argv)
{
  if (argc != 2)
  {
    std::fprintf(stderr, "usage: %s FOLDER    writes each section file that FOLDER does not hold yet\n", argv[0]);
    return 2;
  }
  KyCErrorListPool pool;
  for (const KyGoldenTree& tree : kyGoldenTrees())
  {
    const std::unique_ptr<KyCInventoryItem> root = tree.make(pool, KyForm::GIVEN);
    const std::string path = std::string(argv[1]) + "/" + tree.name + ".kyinv";
    const std::vector<unsigned char> bytes = kyStoredSection(pool, root.get());
    if (pool.getErrorCount() != 0)
    {
      std::fprintf(stderr, "%s: %s\n", tree.name, pool.getEntry(0).text);
      return 1;
    }
    if (writeFile(path, bytes))
      std::printf("%s  %u bytes\n", path.c_str(), static_cast<unsigned int>(bytes.size()));
    else
      std::printf("%s  left as it is\n", path.c_str());
  }
  return 0;
}
