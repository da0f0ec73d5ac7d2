// Runs a fuzz target over the files given, once each: the corpus as an ordinary test, without a fuzz engine.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace
{
void replay(const std::filesystem::path& path)
{
  std::ifstream file(path, std::ios::binary);
  const std::vector<char> bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
  LLVMFuzzerTestOneInput(input.data(), input.size());
}
}    // namespace

int main(int argc, char** argv)
{
  unsigned int count = 0;
  for (int n = 1; n < argc; ++n)
  {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(argv[n]))
    {
      if (!entry.is_regular_file()) continue;
      replay(entry.path());
      ++count;
    }
  }
  std::printf("%u inputs replayed\n", count);
  return count == 0 ? 1 : 0;
}
