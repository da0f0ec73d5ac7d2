// Puts an inventory at the end of a firmware image, and finds it there again.
#include <cstdio>
#include <vector>
#include "inventory/KyInventoryTree.h"
using namespace KyNInventoryIDs;

int main()
{
  std::vector<unsigned char> image(1000, 0xA5);    // stands for the code

  KyCErrorListPool pool;
  KyCInventoryItem root(pool, ROOT, "ROOT");
  root.createParameter(pool, FIRMWARE / NAME, KyCString("AO-16"), "", false, 1);
  root.createParameter(pool, FIRMWARE / VERSION, KyCVersion(2, 1, 0, 417), "", false, 1);
  KyCBuffer section(pool);
  KyCInventoryData::generateInventorySection(pool, section, &root);
  image.insert(image.end(), section.getStorage(), section.getStorage() + section.getWritePosition());

  // On the device, or in the program that shows what an image is: the section's last 24 bytes are the block's last ones.
  const unsigned int size = static_cast<unsigned int>(image.size());
  unsigned int atStart = 0, atEnd = 0;
  KyCInventoryData::getInventorySectionSizeFromMem(pool, reinterpret_cast<const char*>(image.data()), size, atStart,
                                                   atEnd);
  std::printf("image: %u bytes of code, %u bytes of inventory\n", size - atEnd, atEnd);

  KyCInventoryItem* read = nullptr;
  KyCInventoryData::extractInventoryTreeFromMem(pool, image.data(), size, read);
  if (read == nullptr) return 1;
  std::printf("%s %s\n", read->getValue<const char*>(pool, FIRMWARE / NAME),
              read->getValue<KyCVersion>(pool, FIRMWARE / VERSION).toString().c_str());
  delete read;
  return pool.getErrorCount() == 0 ? 0 : 1;
}
