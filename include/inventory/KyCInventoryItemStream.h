// KyCInventoryItemStream.h: the text dump of a tree: its option bits, its text, and the sink that the text goes into.
//
//   KyCString text = root.toString(pool, 0, 0);                    // full mark-up
//   root.printTree(pool, KyCInventoryItem::MyStream::PLAIN, 0);    // plain lines on standard output
//
// What a dump looks like
//
//   <ITEM ID="ROOT">                            head line of the item
//       <PARAM ID="VOLTAGE_MIN" Type="Int32">   its parameters, in list order
//           <VALUE>-5</VALUE>
//           <UNIT>V</UNIT>                      only when there is a unit
//           <ISMODIFIABLE>Yes</ISMODIFIABLE>
//           <RELEVANCE>1</RELEVANCE>
//       </PARAM>
//       <ITEM ID="BOARD[2]">                    then its sub-items, in list order, each with its whole subtree
//       </ITEM>
//   </ITEM>                                     closing line
//
// Siblings of the item that is dumped, and shared data that items are linked to, are not part of it.
//
// The ID
// - The description stands in for an ID without a registered name, and is then written a second time as " Descr=".
//   An ID with a name is written without a description.
// - The index of an item's ID follows in brackets when it is not 1; a parameter's ID has no index.
// - ID, description and unit are written as they are: only the values of string parameters are escaped.
//
// String values
// - Byte by byte: " & ' < > become &quot; &amp; &apos; &lt; &gt;, in plain mode too. A byte of 0x80 or above that
//   begins a UTF-8 sequence stays with its sequence; any other such byte is taken as Latin-1 and becomes the two bytes
//   of its UTF-8 form. A sequence is told by its bit patterns alone (110xxxxx, 1110xxxx or 11110xxx, followed by one,
//   two or three 10xxxxxx), so overlong forms and surrogates pass; one that the end of the text cuts off does not.
// - A value with a line feed is broken into lines: a line feed, each line at the line indentation, then the closing
//   mark on a line of its own. The line indentation is three levels below the item, or the item's own under NO_INDENT.
//   In plain mode an empty line follows instead of the closing mark.
// - A value reaches as far as a C string does: from a zero byte on, nothing of it is written.
//
// Plain mode
// - The marks fall away, the texts between them stay, and every line keeps its indentation and its line feed. A line
//   of which nothing is left (a head with ITEM_NO_ID and a named ID, a unit line with EMPTY_UNITS) is still written,
//   except a head for which the options leave nothing whatever the item is.
// - A type, and a description that ITEM_DESCRIPTION or PARAMETER_DESCRIPTION asks for, is written behind a space,
//   also where the ID before it is left out. Kept on purpose: a description written by default (because the ID has no
//   name) follows the ID directly, without a space.
//
// Where two options contradict each other, the one that leaves out wins: ..._NO_DESCRIPTION over ..._DESCRIPTION.
// Bits that are not listed are ignored.
#pragma once

#include "inventory/KyCInventoryItem.h"
#include "inventory/KyInventoryTreeApi.h"

// The sink of a dump: collects text, or prints it at once. Made by whoever dumps, usually on the stack for one call;
// owns its buffer. One thread at a time.
//
// Warning: in print mode every text that is written, names and values of the tree included, is handed to printf as
// its format string. Never print a tree from an untrusted source that way; collect it (toString) and write the string.
class KY_INVENTORY_API KyCInventoryItem::MyStream
{
public:
  // Bits of the option mask; 0 is the full mark-up.
  enum TOption : int
  {
    NO_INDENT = 0x1,                      // parameters, values and sub-items stay at the item's depth
    EMPTY_UNITS = 0x2,                    // the unit line also when the unit is empty
    INDEX_ALWAYS = 0x4,                   // the index of an item's ID also when it is 1
    NO_PARAMETERS = 0x8,                  // no parameters
    NO_ITEM_LINES = 0x10,                 // neither head nor closing line of items; parameters and sub-items stay
    INDEX_WITH_DOT = 0x20,                // ".2" instead of "[2]"
    ID_AS_NUMBER = 0x40,                  // IDs as decimal numbers instead of names
    PLAIN = 0x80,                         // plain mode: no marks
    NO_LINE_BREAKING = 0x100,             // string values with line feeds as they are
    ITEM_NO_ID = 0x200,                   // item head without the ID
    ITEM_NO_DESCRIPTION = 0x400,          // item head never with the description
    ITEM_DESCRIPTION = 0x800,             // item head always with the description
    PARAMETER_NO_ID = 0x1000,             // parameter head without the ID
    PARAMETER_NO_DESCRIPTION = 0x2000,    // parameter head never with the description
    PARAMETER_DESCRIPTION = 0x4000,       // parameter head always with the description
    PARAMETER_NO_TYPE = 0x8000,           // parameter head without the type
    NO_VALUE = 0x10000,                   // no value line
    NO_UNIT = 0x20000,                    // no unit line
    NO_MODIFIABLE = 0x40000,              // no modifiable line
    NO_RELEVANCE = 0x80000,               // no relevance line
    NO_ESCAPING = 0x100000,               // string values without escaping
    UNNAMED_ID_AS_NUMBER = 0x200000       // an ID without a registered name as its number instead of its description
  };

  // An empty sink.
  //
  //   print   true: every text goes to standard output at once; false: it is collected
  //
  // Errors:   none reported; without memory for the first 1024 bytes every write fails.
  explicit MyStream(bool print);
  ~MyStream();
  MyStream(const MyStream&) = delete;
  MyStream& operator=(const MyStream&) = delete;

  // Adds a text of any length.
  //
  //   text     ends at its zero byte; null is taken as empty
  //
  // Result:    print mode: always true. Collecting: true when the text was added; false when there is no buffer, or
  //            none large enough can be had: the buffer and what it held are then given up, and every later write
  //            fails too.
  // Errors:    none reported
  // Cost:      linear in the text; a full buffer grows by the text's length and 1024 bytes more.
  // Kept on purpose: in print mode the text is printf's format, so "100%%" prints "100%", and a conversion such as
  // "%s" reads an argument that is not there. See the warning above.
  bool write(const char* text);

  // Adds what printf would print.
  //
  // Result:    as write; false also when the arguments cannot be formatted
  // Errors:    none reported
  // Kept on purpose: the result is cut after 1022 characters. Texts of unknown length go through write.
  bool writef(const char* format, ...) __attribute__((format(printf, 2, 3)));

  // Result:    what was collected so far; empty in print mode and after a failed write
  // Errors:    none reported; with no memory left, std::bad_alloc is thrown.
  KyCString getString() const;

private:
  friend class KyCInventoryItem;
  bool grow(unsigned int textLength);

  // As getString, but no memory is an error report, and the sink may be without its buffer afterwards.
  bool takeString(KyCErrorListPool& pool, KyCString& text);

  bool m_print;
  char* m_buffer;             // from the C allocator; no terminator; null in print mode and after a failure
  unsigned int m_capacity;    // bytes allocated
  unsigned int m_length;      // bytes used
};
