// KyNInventoryHost.cpp: see inventoryhost/KyNInventoryHost.h.
#include "inventoryhost/KyNInventoryHost.h"

#include "KyHostScan.h"
#include "KyHostTopology.h"

KyCInventoryItem* KyNInventoryHost::scanMachine(KyCErrorListPool& pool)
{
  KyCHostTopology topology;
  if (!topology.loadMachine(pool)) return nullptr;
  const KyHostSources sources;
  return buildInventory(pool, topology.handle(), &sources, "scanMachine", "this machine");
}

KyCInventoryItem* KyNInventoryHost::scanTopologyFile(KyCErrorListPool& pool, const char* path)
{
  if (path == nullptr) path = "";
  KyCHostTopology topology;
  if (!topology.loadFile(pool, path)) return nullptr;
  return buildInventory(pool, topology.handle(), nullptr, "scanTopologyFile", path);
}

KyCInventoryItem* KyNInventoryHost::scanTopologyStream(KyCErrorListPool& pool, int descriptor, const char* name)
{
  if (name == nullptr) name = "";
  KyCHostTopology topology;
  if (!topology.loadStream(pool, descriptor, name)) return nullptr;
  return buildInventory(pool, topology.handle(), nullptr, "scanTopologyStream", name);
}
