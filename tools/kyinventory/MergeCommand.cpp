// kyinventory merge: makes one tree of several stored ones.
#include <map>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "Command.h"
#include "Files.h"
#include "Progress.h"
#include "Terminal.h"
#include "inventory/KyCInventoryAddress.h"

namespace
{
constexpr unsigned int flagParameters = 1;
constexpr unsigned int codeCannotMerge = 0x1300803;
constexpr unsigned int codeAlreadyExists = 0x130081A;

struct MergeArguments
{
  std::vector<std::string> inputs;
  TargetOptions target;
  bool noParameters = false;
};

std::string join(const std::string& head, const std::string& tail) { return head.empty() ? tail : head + "/" + tail; }

std::string parentOf(const std::string& address)
{
  const std::size_t slash = address.rfind('/');
  return slash == std::string::npos ? "" : address.substr(0, slash);
}

// Follows the reports of one merge and tells which address each is about. A report that says that an ID exists already
// names the ID and the item. Those behind it name nothing: the first may be about that parameter, and then there is one
// for each level on the way up.
class AddressTracker
{
public:
  std::string addressOf(const KyErrorEntry& entry)
  {
    if (entry.code == codeAlreadyExists) return enter(entry.text, std::string(entry.function) == "addParameter");
    if (entry.code != codeCannotMerge) return {};
    if (!m_parameter.empty()) return std::exchange(m_parameter, {});
    return std::exchange(m_item, parentOf(m_item));
  }

private:
  // "... with ID %1 at %2. The ID already exists."
  std::string enter(const std::string& text, bool isParameter)
  {
    const std::size_t id = text.find(" with ID ");
    const std::size_t place = text.rfind(" at ");
    const std::size_t end = text.rfind(". The ID already exists.");
    if (id == std::string::npos || place == std::string::npos || end == std::string::npos) return {};
    m_item = text.substr(place + 4, end - place - 4);
    if (m_item == "root item") m_item.clear();
    const std::string address = join(m_item, text.substr(id + 9, place - id - 9));
    m_parameter = isParameter ? address : "";
    return address;
  }

  std::string m_item;         // the level that the reports have come to
  std::string m_parameter;    // the one that the next report is about; empty: none
};

// The items of a tree by their addresses. Null stands for several of one address.
using ItemsByAddress = std::map<std::string, KyCInventoryItem*>;

ItemsByAddress itemsOf(KyCInventoryItem& root)
{
  ItemsByAddress items;
  KyCInventoryItem* item = &root;
  for (;;)
  {
    const auto entry = items.emplace(item->getAddress().toString().c_str(), item);
    if (!entry.second) entry.first->second = nullptr;
    if (item->getFirstSubItem() != nullptr)
    {
      item = item->getFirstSubItem();
      continue;
    }
    while (item != &root && item->getNext() == nullptr)
      item = item->getParent();
    if (item == &root) return items;
    item = item->getNext();
  }
}

// A sub-item that a merge gives up is in no tree any more and ours to delete. One whose address is not its own alone
// cannot be told from its twin; it stays until the program ends.
void deleteGivenUp(const ItemsByAddress& items, const std::string& address)
{
  const auto entry = items.find(address);
  if (entry != items.end()) delete entry->second;
}

// True when there was nothing to report.
bool mergeInto(TreePointer& tree, TreePointer other, const std::string& path, unsigned int flags)
{
  const ItemsByAddress items = itemsOf(*other);
  const std::string name = inputName(path);
  KyCErrorListPool pool;
  KyCInventoryItem* target = tree.get();
  KyCInventoryItem* source = other.release();
  {
    const Progress progress("merging " + name);
    KyCInventoryItem::mergeTree(pool, target, source, flags);
  }
  AddressTracker tracker;
  for (unsigned int n = 0; n < pool.getEntryCount(); ++n)
  {
    const KyErrorEntry& entry = pool.getEntry(n);
    const std::string address = tracker.addressOf(entry);
    complainAbout(address.empty() ? name : name + ": " + address, entry);
    if (entry.code == codeAlreadyExists && std::string(entry.function) == "mergeTree") deleteGivenUp(items, address);
  }
  if (isOutOfMemory(pool)) throw std::bad_alloc();    // half a merge is none
  return pool.getErrorCount() == 0;
}

int merge(const MergeArguments& arguments)
{
  if (isInputTwice(arguments.inputs)) return EXIT_USAGE;
  if (isOutputAnInput(arguments.inputs, arguments.target)) return EXIT_USAGE;
  if (!mayStore("", arguments.target)) return exitCodeOfRefusal("", arguments.target);
  const unsigned int flags = arguments.noParameters ? 0 : flagParameters;
  TreePointer tree;
  bool clean = true;
  for (const std::string& path : arguments.inputs)
  {
    TreePointer next = readTreeFile(path);
    if (!next) return EXIT_INPUT;
    if (tree)
      clean = mergeInto(tree, std::move(next), path, flags) && clean;
    else
      tree = std::move(next);
  }
  if (storeTree("", *tree, arguments.target) != EXIT_OK) return EXIT_OUTPUT;
  if (clean) return EXIT_OK;
  const std::string& output = arguments.target.output;
  complain("stored in " + (output == "-" ? "standard output" : output) + " all the same");
  return EXIT_REPORTED;
}
}    // namespace

void addMergeCommand(CLI::App& program, int& exitCode)
{
  auto arguments = std::make_shared<MergeArguments>();
  CLI::App* command =
      program.add_subcommand("merge", "Make one tree of several; what is in two of them is the first one's");
  command
      ->add_option("FILE", arguments->inputs,
                   "Files with a section each; later ones are merged into the first; - is standard input")
      ->required()
      ->expected(2, 1 << 20)
      ->option_text("FILE... REQUIRED");
  addTargetOptions(*command, arguments->target, "Section file to store the merged tree in; - is standard output")
      ->required();
  command->add_flag("--no-parameters", arguments->noParameters,
                    "Take no parameters of later files into items that are there already");
  setManual(*command,
            {"What is in several of the files is taken from the first that has it; nothing of it is overwritten. Items "
             "are told by ID and index. Where a file has a parameter and another one an item of the same ID, that is "
             "reported, and the rest of the branch may be missing from the result, which is stored all the same, with "
             "exit code "
             "1.",
             {{"kyinventory merge host.kyinv boards.kyinv -o rack.kyinv",
               "stores what is in host.kyinv, and of boards.kyinv what is not"}}});
  command->callback([arguments, &exitCode]() { exitCode = merge(*arguments); });
}
