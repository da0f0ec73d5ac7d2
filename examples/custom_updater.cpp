// Hangs an object of its own on each thing that can be updated, and updates what is out of date.
#include <cstdio>
#include "inventory/KyInventoryTree.h"
using namespace KyNInventoryIDs;

// What updating means is the program's business; the tree keeps the object and destroys it with its item.
class FlashUpdater : public KyIUpdater
{
public:
  explicit FlashUpdater(const KyCVersion& newest) : m_newest(newest) {}

  void update(KyCErrorListPool& pool, KyCInventoryItem& element) const
  {
    const KyCVersion installed = element.getValue<KyCVersion>(pool, VERSION);
    const char* const name = element.getValue<const char*>(pool, NAME);
    if (installed < m_newest)
    {
      std::printf("%s: %s -> %s\n", name, installed.toString().c_str(), m_newest.toString().c_str());
      element.setValue(pool, VERSION, m_newest);
    }
    else
      std::printf("%s: %s is up to date\n", name, installed.toString().c_str());
  }

private:
  KyCVersion m_newest;
};

void addFirmware(KyCErrorListPool& pool, KyCInventoryItem& root, unsigned int number, const char* name,
                 KyCVersion version)
{
  KyCInventoryItem* const element = root.addPath(pool, UPDATE_ELEMENT[number]);
  if (element == nullptr) return;
  KyNInventoryTree::addUpdateElementParameters(element, pool, number, 1, name, 17, "ANALOG", true, true, 0, 4);
  element->createParameter(pool, VERSION, version, "", false, 2);
  KyIUpdater* const updater = new FlashUpdater(KyCVersion(2, 10, 0, 0));
  const unsigned int before = pool.getErrorCount();
  element->setUpdater(pool, updater);
  if (pool.getErrorCount() != before) delete updater;    // refused: still ours
}

int main()
{
  KyCErrorListPool pool;
  KyCInventoryItem root(pool, ROOT, "ROOT");
  addFirmware(pool, root, 1, "Backplane", KyCVersion(2, 9, 0, 0));
  addFirmware(pool, root, 2, "Power supply", KyCVersion(2, 10, 0, 0));

  for (KyCInventoryItem* element = root.getFirstSubItem(); element != nullptr; element = element->getNext())
  {
    // The library never looks into an updater; what went in comes out.
    const auto* const updater = dynamic_cast<FlashUpdater*>(element->getUpdater());
    if (updater != nullptr) updater->update(pool, *element);
  }
  return pool.getErrorCount() == 0 ? 0 : 1;
}
