// KyTopologyTrial.h: tries an untrusted topology where it can do no harm.
#pragma once

#include <string>

enum class KyTopologyTrial
{
  READABLE,    // hwloc loads it, without complaint, and finds it consistent
  REFUSED,     // hwloc refuses it, complains, finds it inconsistent, crashes, or does not come to an end
  NOT_RUN      // no child process could be started; errno tells why
};

// Has a child process load the XML text, the NUL behind the text included. Reading some damaged topologies, hwloc 2.9
// follows null pointers, and its consistency check ends the process: both then happen to the child alone, and what
// hwloc prints about it goes nowhere.
KyTopologyTrial tryTopology(const std::string& xml);
