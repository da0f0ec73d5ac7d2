// KySystem.h: one way of holding a tree, as the benchmarks see it.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "KyRack.h"

enum class Operation
{
  BUILD,
  STORE,
  EXTRACT_MEM,
  EXTRACT_FILE,
  LOOKUP,
  SET,
  DUMP,
  COPY,
  MERGE,
  LINK,
  APPLY,
  DESTROY
};

struct OperationName
{
  Operation operation;
  const char* name;
  const char* unit;
};
constexpr OperationName OPERATIONS[] = {
    {Operation::BUILD, "build", "ns/param"},
    {Operation::STORE, "store", "ns/param"},
    {Operation::EXTRACT_MEM, "extract_mem", "ns/param"},
    {Operation::EXTRACT_FILE, "extract_file", "ns/param"},
    {Operation::LOOKUP, "lookup", "ns/op"},
    {Operation::SET, "set", "ns/op"},
    {Operation::DUMP, "dump", "ns/byte"},
    {Operation::COPY, "copy", "ns/param"},
    {Operation::MERGE, "merge", "ns/param"},
    {Operation::LINK, "link", "ns/param"},
    {Operation::APPLY, "apply", "ns/param"},
    {Operation::DESTROY, "destroy", "ns/param"},
};

// One operation ready to be measured; only `run` is timed, and what it gives is the number of units (parameters, look-ups,
// bytes) that the time is divided by. `before` and `after` may be empty.
struct Measure
{
  std::function<void()> before;
  std::function<double()> run;
  std::function<void()> after;
};

class System
{
public:
  virtual ~System() = default;
  virtual const char* name() const = 0;

  // None when the system does not do such a thing.
  virtual std::optional<Measure> measure(Operation operation, const Rack& rack) = 0;

  // Bytes of the stored tree; 0: cannot store.
  virtual std::size_t storedSize(const Rack&) { return 0; }

  // Makes a tree, by building or by reading, and keeps it until release.
  virtual bool hold(const Rack&, bool /*isRead*/) { return false; }
  virtual void release() {}
};

// Keeps the optimiser from leaving work out.
template <typename T>
inline void keep(const T& value)
{
  asm volatile("" : : "r,m"(value) : "memory");
}

std::unique_ptr<System> makeOurs();
std::unique_ptr<System> makeLimit();    // plain structs, one malloc a node
std::unique_ptr<System> makeBytes();    // memcpy of the stored bytes
#ifdef KY_HAVE_PEERS
std::unique_ptr<System> makePugixml();
std::unique_ptr<System> makeProtobuf();
std::unique_ptr<System> makeProtobufArena();
std::unique_ptr<System> makeProtobufMap();
#endif
