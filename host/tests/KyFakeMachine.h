// KyFakeMachine.h: a machine of the tests' own.
#pragma once

#include "KyHostScan.h"
#include "KyHostTestSupport.h"
#include "KyHostTopology.h"

// A machine whose processors hwloc makes up and whose files lie in a scratch folder.
class KyFakeMachine
{
public:
  std::string path(const std::string& name) const { return m_folder.path(name); }
  void write(const std::string& name, const std::string& content) { m_folder.write(name, content); }

  void remove(const std::string& name) { std::filesystem::remove_all(m_folder.path(name)); }

  KyTree scan(const char* description = "pack:1 [numa(memory=4294967296)] core:2 pu:1") const
  {
    KyTestPool pool;
    KyCHostTopology topology;
    if (!topology.loadSynthetic(pool, description)) return nullptr;
    const KyHostSources sources = {m_folder.path("sys"), m_folder.path("proc"), m_folder.path("etc")};
    KyTree tree(buildInventory(pool, topology.handle(), &sources, "scanMachine", "this machine"));
    EXPECT_NO_REPORTS(pool);
    if (tree != nullptr) expectSoundTree(*tree);
    return tree;
  }

private:
  KyTemporaryFolder m_folder;
};
