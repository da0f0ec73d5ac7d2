// KySession.h: a stored tree that is looked at and changed over many steps, and the language of such steps.
//
//   const std::unique_ptr<KyNInventoryKit::Session> session = KyNInventoryKit::Session::open(pool, "rack.kyinv");
//   session->enter(pool, "BOARD[2]");
//   session->set(pool, "SLOT_COUNT", "5");
//   session->save(pool, KyNInventoryKit::Session::Others::KEEP);
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "errorhandling/KyCErrorListPool.h"
#include "inventory/KyCInventoryItem.h"
#include "inventory/KyCInventoryParameter.h"
#include "inventorykit/KyEdit.h"
#include "inventorykit/KyInventoryKitApi.h"
#include "inventorykit/KyLookUp.h"
#include "inventorykit/KyTree.h"

namespace KyNInventoryKit
{
// A command line as words. Words are separated by blanks, commands by line ends and ";". Inside '...' every character
// stands for itself, inside "..." all but \" and \\, and outside of quotes a "\" takes the meaning from the character
// behind it. "#" at the start of a word begins a comment that reaches to the end of the line.
//
// Result:     false on failure; the commands in front of the broken one are in the list all the same.
// Errors:     0x1503000  a quote is not closed
KY_INVENTORYKIT_API bool splitCommands(KyCErrorListPool& pool, const std::string& text,
                                       std::vector<std::vector<std::string>>& commands);

// As splitCommands, for a text that comes bit by bit: whoever sends a command line waits for what it does.
// Threads:    one at a time.
class KY_INVENTORYKIT_API CommandSplitter
{
public:
  // Takes what follows, and gives the commands that it ends: their line end or ";" has come.
  // Cost:    linear in the text, also where a word reaches over many of them.
  void add(const std::string& text, std::vector<std::vector<std::string>>& commands);

  // There is no more: gives the last command.
  //
  // Errors:  0x1503000  a quote is not closed
  bool finish(KyCErrorListPool& pool, std::vector<std::vector<std::string>>& commands);

private:
  void addPlain(char c, std::vector<std::vector<std::string>>& commands);
  void addQuoted(char c);
  void addBehindBackslash(char c);
  void addToWord(char c);
  void endWord();
  void endCommand(std::vector<std::vector<std::string>>& commands);

  std::string m_word;
  bool m_isInWord = false;    // an empty word is one, too
  bool m_isComment = false;
  bool m_isBehindBackslash = false;
  char m_quote = 0;    // 0: none is open
  std::vector<std::string> m_command;
};

// The addresses that a begun one may become: IDs in it are complete, but for the last one. An item's are those of its
// sub-items and parameters; where the begun address names an item, what is in it is offered, too.
//
// Result:     each text once, in list order.
// Cost:       linear in the number of siblings.
KY_INVENTORYKIT_API std::vector<std::string> completeAddress(KyCInventoryItem& item, const std::string& begun);

// The names of predefined IDs that begin so, in alphabetical order.
KY_INVENTORYKIT_API std::vector<std::string> completeName(const std::string& begun);

// A tree, where in it one stands, and whether it differs from what is stored. Addresses are relative to the current
// item; one that begins with "/" is relative to the root, and each ".." goes up one item, at the root none: in front of
// it there must be an item. "/" may stand at its end.
//
// Errors of all methods, besides those of readAddress:
//             0x1503001  there is no such item; the report names the nearest ones, as addresses of this kind
//             0x1503002  the address names a parameter where an item is needed
//             0x1503003  there is no such parameter; the report names the nearest items and parameters
//             0x1503004  the address names an item where a parameter is needed
//             0x1503005  the file holds another section than the one that was read
// On failure: null or false, with reports in the pool; the tree is as it was.
// Threads:    one at a time.
class KY_INVENTORYKIT_API Session
{
public:
  // Reads a file.
  //
  // Result:  null on failure, with the reports of readTree.
  static std::unique_ptr<Session> open(KyCErrorListPool& pool, const std::string& path);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // Path of the file, the tree, and the item that addresses are relative to. The session's; they hold as long as it does,
  // items until a change removes them.
  const std::string& path() const { return m_path; }
  KyCInventoryItem& root() { return *m_root; }
  KyCInventoryItem& current() { return *m_current; }

  // Whether the tree holds a change that is not stored.
  bool isChanged() const { return m_isChanged; }

  // Where the current item is: "/", "/BOARD[2]/CPU".
  std::string place() const;

  // Makes another item the current one.
  bool enter(KyCErrorListPool& pool, const std::string& address);

  KyCInventoryItem* item(KyCErrorListPool& pool, const std::string& address);
  KyCInventoryParameter* parameter(KyCErrorListPool& pool, const std::string& address);

  // What an address names, as lookUp takes it: the parameter where it names both.
  //
  // Errors:  0x1503003, or 0x1503001 for an address with an index, which can only be an item's
  Node node(KyCErrorListPool& pool, const std::string& address);

  // Sets a value that is given as setValueText takes it.
  //
  // Errors:  those of setValueText
  bool set(KyCErrorListPool& pool, const std::string& address, const std::string& value);

  // As changeParameter.
  //
  // Errors:  those of changeParameter; for what is missing 0x1503003
  bool change(KyCErrorListPool& pool, const std::string& address, const ParameterChange& change);

  // As change, for several, one after the other: all of them or, with the reports of the first that cannot be made, none.
  //
  //   failed   gets the place of that one in the list
  struct Assignment
  {
    std::string address;
    ParameterChange change;
  };
  bool changeAll(KyCErrorListPool& pool, const std::vector<Assignment>& assignments, std::size_t& failed);

  // Creates a parameter of a type (a code), without limits to changing it; missing items on the way are made.
  //
  // Errors:  those of createParameter. Items made on the way stay, and count as a change.
  bool create(KyCErrorListPool& pool, const std::string& address, unsigned int type, const std::string& value,
              const std::string& unit);

  // The tree as it was read or saved last.
  TreePointer stored(KyCErrorListPool& pool) const;

  // What saving does when the file holds another section by now.
  enum class Others
  {
    KEEP,    // reports it
    REPLACE
  };

  // Stores the tree in place of the section in the file, like replaceTree. Between comparing and replacing others may write
  // to the file: a program that is not alone with it locks it around this call.
  bool save(KyCErrorListPool& pool, Others others);

  // As completeAddress, for an address as these methods take it.
  std::vector<std::string> complete(const std::string& begun);

private:
  Session(const std::string& path, std::string bytes, TreePointer root);
  KyCInventoryItem* base(KyCErrorListPool& pool, const std::string& address, std::string& rest) const;
  bool isStoredElsewhere(KyCErrorListPool& pool) const;

  const std::string m_path;
  std::string m_bytes;    // of the section, as stored
  TreePointer m_root;
  KyCInventoryItem* m_current;
  bool m_isChanged = false;
};
}    // namespace KyNInventoryKit
