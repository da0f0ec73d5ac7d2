// KyRack.h: the trees that everything is measured with, described so that every system can build them alike.
//
//   ROOT
//    +- BOARD[1..boards]                 8 parameters each
//        +- IOCHANNEL[1..channels]       12 parameters each, one of each type
#pragma once

#include <cstdint>
#include <string>
#include <vector>

enum class ValueType : unsigned char
{
  INT8,
  INT16,
  INT32,
  LONG64,
  UINT8,
  UINT16,
  UINT32,
  ULONG64,
  FLOAT32,
  FLOAT64,
  STRING,
  VERSION
};
constexpr unsigned int TYPE_COUNT = 12;

// One parameter of a board or a channel, apart from its value.
struct ParameterKind
{
  unsigned int id;
  const char* name;
  ValueType type;
  const char* unit;
  bool isModifiable;
  unsigned int relevance;
};

// Numbers stand for themselves in all integer types (cut to their size) and as number / 8 in the floating-point ones.
struct Value
{
  std::uint64_t number;
  const std::string* text;    // of the string type
};

class Rack
{
public:
  // textLength: of the strings; 0 for 8 to 40 characters.
  Rack(std::string name, unsigned int boards, unsigned int channels, unsigned int textLength = 0);

  const std::string& name() const { return m_name; }
  unsigned int boards() const { return m_boards; }
  unsigned int channels() const { return m_channels; }
  unsigned int parameterCount() const { return m_boards * (8 + m_channels * 12); }

  // The IDs and names of the items.
  unsigned int rootID() const { return m_root; }
  unsigned int boardID() const { return m_board; }
  unsigned int channelID() const { return m_channel; }

  const std::vector<ParameterKind>& boardParameters() const { return m_boardParameters; }
  const std::vector<ParameterKind>& channelParameters() const { return m_channelParameters; }

  // The value of parameter n of a board (channel 0) or a channel (from 1).
  Value value(unsigned int board, unsigned int channel, unsigned int n) const
  {
    const std::uint64_t mixed =
        (board * 0x9E3779B97F4A7C15ull) ^ (channel * 0xC2B2AE3D27D4EB4Full) ^ (n * 0x165667B19E3779F9ull);
    const std::uint64_t number = mixed ^ (mixed >> 29);
    return {number, &m_texts[static_cast<std::size_t>(number % m_texts.size())]};
  }

private:
  std::string m_name;
  unsigned int m_boards;
  unsigned int m_channels;
  unsigned int m_root;
  unsigned int m_board;
  unsigned int m_channel;
  std::vector<ParameterKind> m_boardParameters;
  std::vector<ParameterKind> m_channelParameters;
  std::vector<std::string> m_texts;
};

// What a look-up asks for.
struct Target
{
  unsigned int board;
  unsigned int channel;
  unsigned int parameter;    // place among the channel's parameters
};
// The same targets every time, in random order.
std::vector<Target> randomTargets(const Rack& rack, unsigned int count);
