// KyHostTopology.h: an hwloc topology, loaded and freed.
#pragma once

#include <hwloc.h>

#include <cstdio>
#include <string>

#include "errorhandling/KyCErrorListPool.h"

// Owns one topology of hwloc; handle() is null until a load succeeded.
class KyCHostTopology
{
public:
  KyCHostTopology() = default;
  ~KyCHostTopology();
  KyCHostTopology(const KyCHostTopology&) = delete;
  KyCHostTopology& operator=(const KyCHostTopology&) = delete;

  static constexpr unsigned int MAX_FILE = 64u * 1024 * 1024;    // bytes of a topology file

  // False with a report in the pool on failure. Call one of them, once.
  bool loadMachine(KyCErrorListPool& pool);
  bool loadFile(KyCErrorListPool& pool, const char* path);
  bool loadStream(KyCErrorListPool& pool, int descriptor, const char* name);
  bool loadSynthetic(KyCErrorListPool& pool, const char* description);    // for tests: "pack:2 core:4 pu:2"

  hwloc_topology_t handle() const { return m_topology; }

  // Everything of the topology is kept, devices included. Null on failure.
  static hwloc_topology_t create();

private:
  bool init(KyCErrorListPool& pool, const char* function);
  bool load(KyCErrorListPool& pool, const char* function);
  bool loadXml(KyCErrorListPool& pool, std::FILE* stream, const char* function, const char* name);

  hwloc_topology_t m_topology = nullptr;
};

// The next object behind this one when the tree is walked from its root, parents first: of one object's children the
// processors' side first, then memory, then devices, then the rest. Null at the end. Needs no stack.
hwloc_obj_t nextTopologyObject(hwloc_obj_t object);
