// pugixml: the tree as a document of elements and attributes.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <pugixml.hpp>

#include "KySystem.h"

namespace
{
const char* const s_types[TYPE_COUNT] = {"Int8",   "Int16",   "Int32",   "Long64",  "UInt8",  "UInt16",
                                         "UInt32", "ULong64", "Float32", "Float64", "String", "Version"};

struct Writer : pugi::xml_writer
{
  void write(const void* data, std::size_t size) override { text.append(static_cast<const char*>(data), size); }
  std::string text;
};

void setValue(pugi::xml_text text, const ParameterKind& kind, const Value& value)
{
  switch (kind.type)
  {
    case ValueType::INT8:
      text.set(static_cast<int>(static_cast<signed char>(value.number)));
      return;
    case ValueType::INT16:
      text.set(static_cast<int>(static_cast<short>(value.number)));
      return;
    case ValueType::INT32:
      text.set(static_cast<int>(value.number));
      return;
    case ValueType::LONG64:
      text.set(static_cast<long long>(value.number));
      return;
    case ValueType::UINT8:
      text.set(static_cast<unsigned int>(static_cast<unsigned char>(value.number)));
      return;
    case ValueType::UINT16:
      text.set(static_cast<unsigned int>(static_cast<unsigned short>(value.number)));
      return;
    case ValueType::UINT32:
      text.set(static_cast<unsigned int>(value.number));
      return;
    case ValueType::ULONG64:
      text.set(static_cast<unsigned long long>(value.number));
      return;
    case ValueType::FLOAT32:
      text.set(static_cast<float>(value.number) / 8);
      return;
    case ValueType::FLOAT64:
      text.set(static_cast<double>(value.number) / 8);
      return;
    case ValueType::STRING:
      text.set(value.text->c_str());
      return;
    case ValueType::VERSION:
    {
      char version[48];
      std::snprintf(version, sizeof(version), "%u.%u.0.%u", static_cast<unsigned int>(value.number & 0xF),
                    static_cast<unsigned int>(value.number >> 4 & 0xFF),
                    static_cast<unsigned int>(value.number >> 12 & 0xFFF));
      text.set(version);
      return;
    }
  }
}

void addParameters(pugi::xml_node item, const std::vector<ParameterKind>& kinds, const Rack& rack, unsigned int b,
                   unsigned int c)
{
  unsigned int n = 0;
  for (const ParameterKind& kind : kinds)
  {
    pugi::xml_node parameter = item.append_child("PARAM");
    parameter.append_attribute("ID").set_value(kind.name);
    parameter.append_attribute("Type").set_value(s_types[static_cast<unsigned int>(kind.type)]);
    if (*kind.unit != '\0') parameter.append_attribute("Unit").set_value(kind.unit);
    if (kind.isModifiable) parameter.append_attribute("Modifiable").set_value("yes");
    parameter.append_attribute("Relevance").set_value(kind.relevance);
    setValue(parameter.text(), kind, rack.value(b, c, n++));
  }
}

pugi::xml_node addItem(pugi::xml_node parent, const char* name, unsigned int index)
{
  pugi::xml_node item = parent.append_child("ITEM");
  item.append_attribute("ID").set_value(name);
  item.append_attribute("Index").set_value(index);
  return item;
}

using Document = std::unique_ptr<pugi::xml_document>;

Document build(const Rack& rack)
{
  auto document = std::make_unique<pugi::xml_document>();
  pugi::xml_node root = addItem(*document, "ROOT", 1);
  for (unsigned int b = 1; b <= rack.boards(); ++b)
  {
    pugi::xml_node board = addItem(root, "BOARD", b);
    addParameters(board, rack.boardParameters(), rack, b, 0);
    for (unsigned int c = 1; c <= rack.channels(); ++c)
      addParameters(addItem(board, "IOCHANNEL", c), rack.channelParameters(), rack, b, c);
  }
  return document;
}

class Pugixml : public System
{
public:
  const char* name() const override { return "pugixml"; }

  std::optional<Measure> measure(Operation operation, const Rack& rack) override
  {
    const double parameters = rack.parameterCount();
    switch (operation)
    {
      case Operation::BUILD:
        return Measure{{},
                       [=, &rack]
                       {
                         m_work = build(rack);
                         return parameters;
                       },
                       [=] { m_work.reset(); }};
      case Operation::DESTROY:
        return Measure{[=, &rack] { m_work = build(rack); },
                       [=]
                       {
                         m_work.reset();
                         return parameters;
                       },
                       {}};
      case Operation::STORE:
        return Measure{[=, &rack] { tree(rack); },
                       [=]
                       {
                         keep(save(pugi::format_raw).data());
                         return parameters;
                       },
                       {}};
      case Operation::DUMP:
        return Measure{
            [=, &rack] { tree(rack); }, [=] { return static_cast<double>(save(pugi::format_indent).size()); }, {}};
      case Operation::EXTRACT_MEM:
        return Measure{[=, &rack] { text(rack); },
                       [=]
                       {
                         m_work = read();
                         return parameters;
                       },
                       [=] { m_work.reset(); }};
      case Operation::COPY:
        return Measure{[=, &rack] { tree(rack); },
                       [=]
                       {
                         m_work = std::make_unique<pugi::xml_document>();
                         m_work->reset(*m_tree);
                         return parameters;
                       },
                       [=] { m_work.reset(); }};
      default:
        return std::nullopt;
    }
  }

  std::size_t storedSize(const Rack& rack) override { return text(rack).size(); }
  bool hold(const Rack& rack, bool isRead) override
  {
    m_work = build(rack);
    if (!isRead) return true;
    Writer writer;
    m_work->save(writer, "", pugi::format_raw);
    m_work = std::make_unique<pugi::xml_document>();
    return m_work->load_buffer(writer.text.data(), writer.text.size());
  }
  void release() override { m_work.reset(); }

private:
  void tree(const Rack& rack)
  {
    if (m_treeOf == &rack) return;
    m_tree = build(rack);
    m_treeOf = &rack;
  }
  const std::string& text(const Rack& rack)
  {
    if (m_textOf != &rack)
    {
      tree(rack);
      m_text = save(pugi::format_raw);
      m_textOf = &rack;
    }
    return m_text;
  }
  std::string save(unsigned int flags) const
  {
    Writer writer;
    m_tree->save(writer, "    ", flags);
    return std::move(writer.text);
  }
  Document read() const
  {
    auto document = std::make_unique<pugi::xml_document>();
    if (!document->load_buffer(m_text.data(), m_text.size())) std::abort();
    return document;
  }

  Document m_tree;
  const Rack* m_treeOf = nullptr;
  std::string m_text;
  const Rack* m_textOf = nullptr;
  Document m_work;
};
}    // namespace

std::unique_ptr<System> makePugixml() { return std::make_unique<Pugixml>(); }
