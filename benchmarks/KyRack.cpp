#include "KyRack.h"

#include <random>
#include <utility>

#include "inventory/KyNInventoryIDs.h"

using namespace KyNInventoryIDs;

namespace
{
ParameterKind kind(const KyCInventoryAddress& id, ValueType type, const char* unit, bool isModifiable = false)
{
  return {id.getCategory(), id.getCategoryNameCStr(), type, unit, isModifiable, static_cast<unsigned int>(type) % 4};
}

std::vector<std::string> makeTexts(unsigned int length)
{
  std::mt19937 random(1);
  std::vector<std::string> texts(1021);
  for (std::string& text : texts)
  {
    text.resize(length != 0 ? length : 8 + random() % 33);
    for (char& c : text)
      c = static_cast<char>('a' + random() % 26);
  }
  return texts;
}
}    // namespace

Rack::Rack(std::string name, unsigned int boards, unsigned int channels, unsigned int textLength)
    : m_name(std::move(name)),
      m_boards(boards),
      m_channels(channels),
      m_root(ROOT.getCategory()),
      m_board(BOARD.getCategory()),
      m_channel(IOCHANNEL.getCategory()),
      m_boardParameters{kind(SERIAL_NUMBER, ValueType::UINT32, ""),
                        kind(NAME, ValueType::STRING, ""),
                        kind(VERSION, ValueType::VERSION, ""),
                        kind(SLOT_COUNT, ValueType::UINT8, ""),
                        kind(VOLTAGE_MAX, ValueType::FLOAT64, "V", true),
                        kind(CURRENT_MAX, ValueType::FLOAT32, "A"),
                        kind(FREQUENCY, ValueType::ULONG64, "Hz"),
                        kind(SIZE, ValueType::INT32, "")},
      m_channelParameters{kind(CHANNEL_ID, ValueType::INT8, ""),      kind(GAIN, ValueType::INT16, ""),
                          kind(OFFSET, ValueType::INT32, "V", true),  kind(SIZE64, ValueType::LONG64, ""),
                          kind(ACTIVE, ValueType::UINT8, ""),         kind(WORD_WIDTH, ValueType::UINT16, ""),
                          kind(BASE_ADDRESS, ValueType::UINT32, ""),  kind(FREQUENCY_MAX, ValueType::ULONG64, "Hz"),
                          kind(CURRENT_MAX, ValueType::FLOAT32, "A"), kind(VOLTAGE_MAX, ValueType::FLOAT64, "V", true),
                          kind(SIGNAL_NAME, ValueType::STRING, ""),   kind(VERSION, ValueType::VERSION, "")},
      m_texts(makeTexts(textLength))
{
}

std::vector<Target> randomTargets(const Rack& rack, unsigned int count)
{
  std::mt19937 random(7);
  std::vector<Target> targets(count);
  for (Target& target : targets)
  {
    target.board = 1 + static_cast<unsigned int>(random() % rack.boards());
    target.channel = 1 + static_cast<unsigned int>(random() % rack.channels());
    target.parameter = static_cast<unsigned int>(random() % rack.channelParameters().size());
  }
  return targets;
}
