#include "Shell.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "Command.h"
#include "Files.h"
#include "Numbers.h"
#include "Output.h"
#include "Progress.h"
#include "Table.h"
#include "Terminal.h"
#include "inventory/KyNInventoryIDs.h"
#include "inventorykit/KyAddressText.h"
#include "inventorykit/KyDiff.h"
#include "inventorykit/KyEdit.h"
#include "inventorykit/KyFind.h"
#include "inventorykit/KyValueText.h"

using KyNInventoryKit::Session;

namespace
{
constexpr std::size_t s_any = static_cast<std::size_t>(-1);

// An address that is none, a value that its type does not take, a unit that is too long: what was typed is wrong, whatever
// the tree holds.
bool isWrongText(unsigned int code) { return (code >= 0x1500800 && code <= 0x1500803) || code == 0x1504006; }

// The reports of a failed command, with what helps.
int told(const KyCErrorListPool& pool, const std::string& subject)
{
  const bool isWrong = pool.getEntryCount() != 0 && isWrongText(pool.getEntry(0).code);
  return failWith(subject, pool, isWrong ? EXIT_USAGE : EXIT_NO);
}

int wrongUsage(const std::string& message)
{
  complain(message);
  return EXIT_USAGE;
}

// Whether a word may be an address, after a message when it is an option or nothing: an empty one is a script's unset
// variable.
bool mayBeAddress(const std::string& command, const std::string& word)
{
  if (word.empty()) complain(command + ": an address must not be empty; . is the current item, / the root");
  if (!word.empty() && word.front() == '-') complain(command + ": " + word + ": no such option");
  return !word.empty() && word.front() != '-';
}

// As above, for all words behind the command.
bool mayBeAddresses(const std::vector<std::string>& words)
{
  return std::all_of(words.begin() + 1, words.end(),
                     [&](const std::string& word) { return mayBeAddress(words.front(), word); });
}

// Reports a unit that no parameter keeps.
bool isUnit(KyCErrorListPool& pool, const std::string& unit)
{
  KyCInventoryItem root(pool, KyNInventoryIDs::ROOT, "");
  KyNInventoryKit::ParameterChange trial;
  trial.createType = KyNInventoryKit::typeOfName("String");
  trial.unit = unit;
  return changeParameter(pool, root, KyNInventoryIDs::NAME, trial) != nullptr;
}

std::string padded(std::string text, std::size_t width)
{
  if (text.size() < width) text.append(width - text.size(), ' ');
  return text;
}

// Addresses as the session takes them: relative to the current item what is in it, the others from the root with a "/" in
// front. At the root they are those that the sub-commands take.
class ShownAddresses
{
public:
  explicit ShownAddresses(Session& session) : m_current(&session.current()), m_place(session.place()) {}

  std::string of(const KyNInventoryKit::Node& node)
  {
    if (node.item != m_item) m_isInCurrent = isInCurrent(node.item);
    m_item = node.item;
    const std::string& address = m_texts.of(node);
    if (!m_isInCurrent) return address == "." ? "/" : "/" + address;
    if (m_place == "/") return address;
    return address.size() < m_place.size() ? "." : address.substr(m_place.size());
  }

private:
  bool isInCurrent(const KyCInventoryItem* item) const
  {
    while (item != nullptr && item != m_current)
      item = item->getParent();
    return item != nullptr;
  }

  const KyCInventoryItem* const m_current;
  const std::string m_place;
  KyNInventoryKit::AddressTexts m_texts;
  const KyCInventoryItem* m_item = nullptr;
  bool m_isInCurrent = false;
};

bool isSetOption(const std::string& name)
{
  return name == "--create" || name == "--unit" || name == "--relevance" || name == "--modifiable";
}

// Reads an option of set; false after a message.
bool readSetOption(const std::string& name, const std::string& value, KyNInventoryKit::ParameterChange& change)
{
  if (name == "--unit")
  {
    change.unit = value;
    return true;
  }
  if (name == "--create")
  {
    change.createType = KyNInventoryKit::typeOfName(value);
    if (change.createType == 0) complain(value + ": is no type; the types are " + KyNInventoryKit::typeNames());
    return change.createType != 0;
  }
  if (name == "--relevance")
  {
    change.relevance = parseWholeNumber(value, 0, std::numeric_limits<unsigned int>::max());
    if (!change.relevance) complain("set: --relevance: " + value + ": must be a whole number from 0 to 4294967295");
    return change.relevance.has_value();
  }
  const bool isAnswer = value == "yes" || value == "no";
  if (isAnswer) change.isModifiable = value == "yes";
  if (!isAnswer) complain("set: --modifiable: " + value + ": must be yes or no");
  return isAnswer;
}

// A value on one line, whatever is in it.
std::string shownValue(const KyCInventoryParameter& parameter)
{
  const std::string value = withoutControls(KyNInventoryKit::valueText(parameter), "");
  const bool isString = parameter.getType() == KyCParam::TYPE_STRING;
  const std::string unit = parameter.getUnit();
  return (isString ? "\"" + value + "\"" : value) + (unit.empty() ? "" : " " + withoutControls(unit, ""));
}
}    // namespace

// In alphabetical order.
const Shell::Command Shell::s_commands[] = {
    {"cd", "[ADDRESS]", "go to an item; without an address, to the root", 0, 1, &Shell::changeItem},
    {"diff", "", "show what differs from the stored tree", 0, 0, &Shell::diff},
    {"exit", "[--force]", "the same as quit", 0, 1, &Shell::quit},
    {"find", "PATTERN [--where EXPR]", "list what fits below the current item, with values and units", 1, 3,
     &Shell::find},
    {"get", "ADDRESS...", "print values; of an item, those of all its parameters behind their addresses", 1, s_any,
     &Shell::get},
    {"help", "", "show this list", 0, 0, &Shell::help},
    {"ls", "[ADDRESS]", "list the items and parameters in an item", 0, 1, &Shell::list},
    {"pwd", "", "print the address of the current item", 0, 0, &Shell::place},
    {"quit", "[--force]", "leave; with unsaved changes only when forced, as by quit!", 0, 1, &Shell::quit},
    {"quit!", "", "leave, and drop unsaved changes", 0, 0, &Shell::quit},
    {"save", "[--force]", "store the tree in its file; forced, also when someone else has changed the file", 0, 1,
     &Shell::save},
    {"set", "ADDRESS[=VALUE]... [--create TYPE] [--unit UNIT] [--relevance NUMBER] [--modifiable yes|no]",
     "change parameters, or create them: all of them or none", 1, s_any, &Shell::set},
};

const Shell::Command* Shell::commandOf(const std::string& name)
{
  const auto isMeant = [&](const Command& command) { return name == command.name; };
  const Command* const found = std::find_if(std::begin(s_commands), std::end(s_commands), isMeant);
  return found == std::end(s_commands) ? nullptr : found;
}

std::string Shell::overview()
{
  std::string text;
  for (const Command& command : s_commands)
  {
    const std::string arguments = command.arguments;
    text += std::string(command.name) + (arguments.empty() ? "" : " " + arguments) + "\n    " + command.meaning + "\n";
  }
  return text;
}

std::string Shell::quotingRules()
{
  return "Words with blanks, \";\" or \"#\" stand in quotes: set NAME=\"second board\".\n"
         "Outside of quotes a backslash takes the meaning from the character behind it, and does not stay:\n"
         "set VENDOR=C:\\tmp stores C:tmp; for C:\\tmp write set VENDOR='C:\\tmp' or set VENDOR=C:\\\\tmp.\n"
         "Inside \"...\" it does so in front of \" and \\ alone; inside '...' every character stands for itself.\n";
}

int Shell::execute(const Words& words)
{
  if (words.empty()) return EXIT_OK;
  const Command* const command = commandOf(words.front());
  if (command == nullptr) return wrongUsage(words.front() + ": no such command; help lists them all");
  const Words arguments(words.begin() + 1, words.end());
  if (arguments.size() < command->least || arguments.size() > command->most)
    return wrongUsage("wrong usage: " + std::string(command->name) + " " + command->arguments);
  return (this->*command->run)(words);
}

int Shell::changeItem(const Words& words)
{
  if (!mayBeAddresses(words)) return EXIT_USAGE;
  KyCErrorListPool pool;
  const std::string address = words.size() < 2 ? "/" : words[1];
  return m_session.enter(pool, address) ? EXIT_OK : told(pool, address);
}

int Shell::place(const Words&)
{
  Output out;
  out.data(m_session.place(), Style::NAME).text("\n");
  return out.finish(EXIT_OK);
}

int Shell::help(const Words&)
{
  Output out;
  out.text(overview());
  out.text("\nAddresses are relative to the current item; / at the start means the root, .. the item above.\n");
  out.text("\n" + quotingRules());
  return out.finish(EXIT_OK);
}

int Shell::list(const Words& words)
{
  if (!mayBeAddresses(words)) return EXIT_USAGE;
  KyCErrorListPool pool;
  const std::string address = words.size() < 2 ? "." : words[1];
  KyCInventoryItem* const item = m_session.item(pool, address);
  if (item == nullptr) return told(pool, address);

  Output out;
  for (const KyCInventoryItem* sub = item->getFirstSubItem(); sub != nullptr; sub = sub->getNext())
    out.data(KyNInventoryKit::addressText(sub->getID()), Style::NAME).text("/\n");
  std::size_t width = 0;
  for (const KyCInventoryParameter* p = item->getParameterByOrdinalNumber(0); p != nullptr; p = p->getNext())
    width = std::max(width, KyNInventoryKit::addressText(p->getID()).size());
  for (const KyCInventoryParameter* p = item->getParameterByOrdinalNumber(0); p != nullptr && !out.hasFailed();
       p = p->getNext())
  {
    out.data(padded(KyNInventoryKit::addressText(p->getID()), width), Style::NAME).text("  ");
    out.data(padded(p->getTypeAsString().c_str(), 7)).text("  ").data(shownValue(*p), Style::VALUE).text("\n");
  }
  return out.finish(EXIT_OK);
}

int Shell::get(const Words& words)
{
  if (!mayBeAddresses(words)) return EXIT_USAGE;
  int exitCode = EXIT_OK;
  bool hasItem = false;
  std::vector<KyNInventoryKit::Node> parameters;
  for (std::size_t n = 1; n < words.size(); ++n)
  {
    KyCErrorListPool pool;
    const KyNInventoryKit::Node node = m_session.node(pool, words[n]);
    if (node.item == nullptr) exitCode = told(pool, words[n]);
    if (exitCode == EXIT_USAGE) return exitCode;
    if (node.item == nullptr) continue;
    hasItem = hasItem || node.parameter == nullptr;
    if (node.parameter != nullptr) parameters.push_back(node);
    if (node.parameter != nullptr) continue;
    for (KyCInventoryParameter* p = node.item->getParameterByOrdinalNumber(0); p != nullptr; p = p->getNext())
      parameters.push_back({node.item, p});
  }
  Output out;
  if (hasItem)
    printNodes(out, parameters, {"ADDRESS", "VALUE"});
  else
    for (const KyNInventoryKit::Node& node : parameters)
      out.data(KyNInventoryKit::valueText(*node.parameter), Style::VALUE).text("\n");
  return out.finish(exitCode);
}

void Shell::printNodes(Output& out, const std::vector<KyNInventoryKit::Node>& nodes, const Words& headings)
{
  ShownAddresses addresses(m_session);
  Table table(out, headings);
  for (const KyNInventoryKit::Node& node : nodes)
  {
    const bool isItem = node.parameter == nullptr;
    Words row = {addresses.of(node), isItem ? "" : KyNInventoryKit::valueText(*node.parameter),
                 isItem ? "" : node.parameter->getUnit()};
    row.resize(headings.size());
    table.add(std::move(row));
    if (out.hasFailed()) break;
  }
  table.finish();
}

int Shell::set(const Words& words)
{
  Words assignments;
  KyNInventoryKit::ParameterChange change;
  for (std::size_t n = 1; n < words.size(); ++n)
  {
    const std::string& word = words[n];
    const std::size_t equals = word.find('=');
    const std::string front = word.substr(0, equals);
    if (!isSetOption(front))
    {
      if (!mayBeAddress("set", front)) return EXIT_USAGE;
      assignments.push_back(word);
      continue;
    }
    if (equals == word.npos && n + 1 == words.size()) return wrongUsage("set: " + word + " needs a value");
    if (!readSetOption(front, equals == word.npos ? words[++n] : word.substr(equals + 1), change)) return EXIT_USAGE;
  }
  if (assignments.empty()) return wrongUsage("set: nothing to set");
  const bool mayKeepValue = change.createType == 0 && (change.unit || change.relevance || change.isModifiable);
  for (const std::string& text : assignments)
    if (!mayKeepValue && text.find('=') == text.npos)
      return wrongUsage("set: " + text + ": a value is missing: write " + text + "=VALUE");
  KyCErrorListPool pool;
  if (!isUnit(pool, change.unit.value_or(""))) return told(pool, "set");
  return assign(assignments, change);
}

int Shell::assign(const Words& texts, const KyNInventoryKit::ParameterChange& common)
{
  std::vector<Session::Assignment> assignments;
  for (const std::string& text : texts)
  {
    const std::size_t equals = text.find('=');
    assignments.push_back({text.substr(0, equals), common});
    if (equals != text.npos) assignments.back().change.value = text.substr(equals + 1);
  }
  KyCErrorListPool pool;
  std::size_t failed = 0;
  return m_session.changeAll(pool, assignments, failed) ? EXIT_OK : told(pool, assignments[failed].address);
}

int Shell::save(const Words& words)
{
  const bool isForced = words.size() > 1;
  if (isForced && words[1] != "--force") return wrongUsage("save: " + words[1] + ": only --force may stand here");
  if (isWriteProtected(m_session.path()))
  {
    complain(m_session.path() + ": is write-protected");
    return EXIT_OUTPUT;
  }
  KyCErrorListPool pool;
  bool isDone = false;
  {
    const ChangeLock lock(m_session.path());    // from before the comparison with the file
    const Progress progress("storing " + m_session.path());
    isDone = m_session.save(pool, isForced ? Session::Others::REPLACE : Session::Others::KEEP);
  }
  complainAbout(m_session.path(), pool);
  return isDone ? EXIT_OK : EXIT_OUTPUT;
}

int Shell::quit(const Words& words)
{
  const bool hasOption = words.size() > 1;
  if (hasOption && words[1] != "--force")
    return wrongUsage(words[0] + ": " + words[1] + ": only --force may stand here");
  const bool isForced = hasOption || words[0] == "quit!";
  if (m_session.isChanged() && !isForced)
  {
    complain("there are unsaved changes; save stores them, quit! drops them");
    return EXIT_NO;
  }
  m_isLeft = true;
  return EXIT_OK;
}

int Shell::find(const Words& words)
{
  if (words.size() != 2 && (words.size() != 4 || words[2] != "--where"))
    return wrongUsage("wrong usage: find PATTERN [--where EXPR]");
  if (!mayBeAddress("find", words[1])) return EXIT_USAGE;
  KyCErrorListPool pool;
  KyNInventoryKit::Query query;
  const bool isRead = KyNInventoryKit::readPattern(pool, words[1], query) &&
                      (words.size() == 2 || KyNInventoryKit::readCondition(pool, words[3], query));
  if (!isRead)
  {
    complainAbout("find", pool);
    return EXIT_USAGE;
  }
  const std::vector<KyNInventoryKit::Node> nodes = KyNInventoryKit::find(m_session.current(), query);
  Output out;
  printNodes(out, nodes, {"ADDRESS", "VALUE", "UNIT"});
  return out.finish(nodes.empty() ? EXIT_NO : EXIT_OK);
}

int Shell::diff(const Words&)
{
  KyCErrorListPool pool;
  const TreePointer stored = m_session.stored(pool);
  complainAbout(m_session.path(), pool);
  if (!stored) return EXIT_INPUT;
  KyNInventoryKit::Difference difference;
  {
    const Progress progress("comparing");
    difference = KyNInventoryKit::compareTrees(*stored, m_session.root());
  }
  Output out;
  for (const KyNInventoryKit::Change& change : difference.changes())
  {
    if (change.kind == KyNInventoryKit::ChangeKind::MOVED) continue;    // no content
    const bool isAdded = change.kind == KyNInventoryKit::ChangeKind::ADDED;
    const bool isRemoved = change.kind == KyNInventoryKit::ChangeKind::REMOVED;
    const Style style = isAdded ? Style::ADDED : isRemoved ? Style::REMOVED : Style::CHANGED;
    const std::string text = KyNInventoryKit::changeText(change);
    out.text(isAdded ? "+ " : isRemoved ? "- " : "~ ", style).data(difference.addressOf(change), style);
    out.text(text.empty() ? "" : "  ").data(text).text("\n");
    if (out.hasFailed()) break;
  }
  return out.finish(EXIT_OK);
}

std::vector<std::string> Shell::complete(const std::string& line, std::size_t& wordBegin)
{
  const std::size_t command = line.find_last_of(';') + 1;    // npos + 1 is 0
  const std::size_t blank = line.find_last_of(" \t;");
  wordBegin = blank == line.npos ? 0 : blank + 1;
  const std::string word = line.substr(wordBegin);
  const bool isFirst = line.find_first_not_of(" \t", command) >= wordBegin;
  if (!isFirst) return word.find_first_of("='\"\\") == word.npos ? m_session.complete(word) : Words();
  Words names;
  for (const Command& known : s_commands)
    if (std::string(known.name).compare(0, word.size(), word) == 0) names.emplace_back(known.name);
  return names;
}
