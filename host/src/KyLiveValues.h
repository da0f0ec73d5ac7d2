// KyLiveValues.h: values of the running machine that change while it runs, and the update methods that read them anew.
//
// An update method is a plain function and carries nothing. Which file to read it learns from the parameter's item (an
// interface's NAME, a temperature's ADDRESS, a processor's ID); where /sys and /proc lie it learns from the tree's root,
// which is a KyCMachineRoot. So each tree keeps its own sources for as long as it lives, nothing is shared between
// trees, and two threads may scan and update trees of their own at once; a default for the whole process would have
// to be locked, and a test that replaces it would replace it for every tree. The walk's context stays the caller's.
#pragma once

#include "KyHostScan.h"

// The root of a tree of the running machine, or of folders that stand in for it.
class KyCMachineRoot : public KyCInventoryItem
{
public:
  KyCMachineRoot(KyCErrorListPool& pool, const KyHostSources& sources);

  const KyHostSources& sources() const { return m_sources; }

  // Those of the nearest root above the item (or of the item itself). An item that was moved into another tree has none
  // above it and is still about the running machine: then /sys and /proc.
  static const KyHostSources& sourcesOf(const KyCInventoryItem& item);

private:
  const KyHostSources m_sources;
};

// Each adds what can be read now, with its update method. Nothing is added without sources.
void addLiveAvailableMemory(const KyHostScan& scan);
void addLiveUptime(const KyHostScan& scan);
// The processor must have its ID, and the root all processors.
void addLiveFrequency(const KyHostScan& scan, KyCInventoryItem& processor);
// The interface must have its NAME.
void addLiveLink(const KyHostScan& scan, KyCInventoryItem& interface);
// True when an item for the temperature was added; name and location are what it gets besides.
//
//   address  "hwmon0/temp1" or "thermal_zone0"
bool addLiveTemperature(const KyHostScan& scan, const KyCInventoryAddress& id, const std::string& name,
                        const std::string& location, const std::string& address);
