#include "TreeText.h"

#include <string>

#include "Command.h"
#include "Terminal.h"
#include "inventory/KyCInventoryItemStream.h"

namespace
{
using Stream = KyCInventoryItem::MyStream;

constexpr unsigned int s_smallItem = 64;    // parameters of an item that is written in one piece

bool isSmallLeaf(const KyCInventoryItem& item)
{
  const KyCInventoryParameter* parameter = item.getParameterByOrdinalNumber(0);
  unsigned int count = 0;
  for (; parameter != nullptr && count < s_smallItem; ++count)
    parameter = parameter->getNext();
  return parameter == nullptr && item.getFirstSubItem() == nullptr;
}

// The dump can write whole items only. So a large one is written in the pieces that it consists of: the item without
// anything in it, of which the closing line is kept for later; its parameters, each as the only one of an item whose own
// lines are left out; its sub-items; the closing line.
class TreePrinter
{
public:
  TreePrinter(Output& out, int options, int indent) : m_out(out), m_options(options), m_indent(indent) {}

  int print(const KyCInventoryItem& top)
  {
    const KyCInventoryItem* item = &top;
    int level = m_indent;
    while (isGoing())
    {
      const bool isWhole = isSmallLeaf(*item);
      if (isWhole)
        write(*item, m_options, level);
      else
        begin(*item, level);
      if (item->getFirstSubItem() != nullptr)
      {
        item = item->getFirstSubItem();
        level += step();
        continue;
      }
      if (!isWhole) end(level);
      while (item != &top && item->getNext() == nullptr)
      {
        item = item->getParent();
        level -= step();
        end(level);
      }
      if (item == &top) break;
      item = item->getNext();
    }
    return finish();
  }

  int print(const KyCInventoryParameter& parameter)
  {
    write(parameter, m_indent);
    return finish();
  }

private:
  bool isGoing() const { return !m_out.hasFailed() && !m_hasFailed; }
  int step() const { return (m_options & Stream::NO_INDENT) != 0 ? 0 : 1; }
  bool hasEnd() const { return (m_options & (Stream::NO_ITEM_LINES | Stream::PLAIN)) == 0; }

  int finish()
  {
    const int exitCode = m_out.finish(EXIT_OK);
    complainAbout("show", m_pool);
    if (m_isMemoryOut) complain("there is no memory for the text");
    if (m_isMemoryOut || exitCode != EXIT_OK) return EXIT_OUTPUT;
    return m_pool.getErrorCount() == 0 ? EXIT_OK : EXIT_INPUT;
  }

  std::string textOf(const KyCInventoryItem& item, int options, int level)
  {
    Stream stream(false);
    if (!item.writeToStream(m_pool, options, level, stream)) m_isMemoryOut = true;
    m_hasFailed = m_isMemoryOut || m_pool.getErrorCount() != 0;
    const KyCString text = stream.getString();
    return std::string(text.c_str(), text.length());
  }

  void write(const KyCInventoryItem& item, int options, int level) { m_out.lines(textOf(item, options, level)); }

  void write(const KyCInventoryParameter& parameter, int level)
  {
    const KyCInventoryItem& owner = *parameter.getParent();
    KyCInventoryItem holder(m_pool, owner.getID(), "");
    auto* copy = new KyCInventoryParameter(parameter);
    if (holder.addParameter(m_pool, KyCInventoryAddress(), copy) == nullptr) delete copy;
    write(holder, m_options | Stream::NO_ITEM_LINES, level);
  }

  void begin(const KyCInventoryItem& item, int level)
  {
    const KyCInventoryItem empty(m_pool, item.getID(), item.getDescription());
    std::string text = textOf(empty, m_options, level);
    if (hasEnd() && isGoing()) text.resize(text.rfind('\n', text.size() - 2) + 1);
    m_out.lines(text);
    if ((m_options & Stream::NO_PARAMETERS) != 0) return;
    const KyCInventoryParameter* parameter = item.getParameterByOrdinalNumber(0);
    for (; parameter != nullptr && isGoing(); parameter = parameter->getNext())
      write(*parameter, level);
  }

  void end(int level)
  {
    if (!hasEnd() || !isGoing()) return;
    for (int n = 0; n < level; ++n)
      m_out.text("    ");
    m_out.text("</ITEM>\n");
  }

  Output& m_out;
  const int m_options;
  const int m_indent;
  KyCErrorListPool m_pool;
  bool m_isMemoryOut = false;
  bool m_hasFailed = false;
};
}    // namespace

int printTree(Output& out, const KyCInventoryItem& item, int options, int indent)
{
  return TreePrinter(out, options, indent).print(item);
}

int printParameter(Output& out, const KyCInventoryParameter& parameter, int options, int indent)
{
  return TreePrinter(out, options, indent).print(parameter);
}
