// Escaping of string values: the text is looked at once to measure, once to write, in runs of bytes that stay.
#include "text/KyCValueText.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace
{
// The bytes at which a run ends.
constexpr unsigned char STOP_END = 1;
constexpr unsigned char STOP_LINE_FEED = 2;
constexpr unsigned char STOP_ESCAPE = 4;    // what escaping changes or looks closer at

struct TStops
{
  unsigned char of[256];

  constexpr TStops() : of()
  {
    of[0] = STOP_END;
    of[static_cast<unsigned char>('\n')] = STOP_LINE_FEED;
    for (const char* special = "\"&'<>"; *special != '\0'; ++special)
      of[static_cast<unsigned char>(*special)] = STOP_ESCAPE;
    for (unsigned int byte = 0x80; byte <= 0xFF; ++byte)
      of[byte] = STOP_ESCAPE;
  }
};

constexpr TStops stops;

std::size_t runLength(const char* text, int stopAt)
{
  const char* end = text;
  while ((stops.of[static_cast<unsigned char>(*end)] & stopAt) == 0)
    ++end;
  return static_cast<std::size_t>(end - text);
}

const char* entityOf(char character)
{
  switch (character)
  {
    case '"':
      return "&quot;";
    case '&':
      return "&amp;";
    case '\'':
      return "&apos;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    default:
      return nullptr;
  }
}

// Bytes of the UTF-8 sequence that starts here, told by bit patterns alone; 0 when none does. The terminator of the
// text is no continuation byte, so the look ahead ends there.
std::size_t sequenceLength(const char* text)
{
  const auto lead = static_cast<unsigned char>(*text);
  std::size_t length = 0;
  if ((lead & 0xE0) == 0xC0) length = 2;
  if ((lead & 0xF0) == 0xE0) length = 3;
  if ((lead & 0xF8) == 0xF0) length = 4;
  for (std::size_t n = 1; n < length; ++n)
  {
    if ((static_cast<unsigned char>(text[n]) & 0xC0) != 0x80) return 0;
  }
  return length;
}

// What one step of the escaping takes from the text, and what stands for it.
struct TPiece
{
  std::size_t taken;    // bytes of the text
  const char* text;
  std::size_t length;
};

// latin1: room for the two bytes of a stray byte's UTF-8 form.
TPiece nextPiece(const char* text, char (&latin1)[2])
{
  const auto byte = static_cast<unsigned char>(*text);
  if (byte < 0x80)
  {
    const char* const entity = entityOf(*text);
    if (entity != nullptr) return {1, entity, std::strlen(entity)};
    const std::size_t run = runLength(text, STOP_END | STOP_ESCAPE);
    return {run, text, run};
  }
  const std::size_t sequence = sequenceLength(text);
  if (sequence != 0) return {sequence, text, sequence};
  latin1[0] = static_cast<char>(0xC0 | (byte >> 6));
  latin1[1] = static_cast<char>(0x80 | (byte & 0x3F));
  return {1, latin1, 2};
}

// 64 bits wide: an entity is six times as long as its character.
std::uint64_t escapedLength(const char* text)
{
  std::uint64_t length = 0;
  char latin1[2];
  while (*text != '\0')
  {
    const TPiece piece = nextPiece(text, latin1);
    length += piece.length;
    text += piece.taken;
  }
  return length;
}

void escapeInto(char* target, const char* text)
{
  char latin1[2];
  while (*text != '\0')
  {
    const TPiece piece = nextPiece(text, latin1);
    std::memcpy(target, piece.text, piece.length);
    target += piece.length;
    text += piece.taken;
  }
  *target = '\0';
}
}    // namespace

std::size_t KyCValueText::unchangedLength(const char* text, bool escape, bool breakLines)
{
  return runLength(text, STOP_END | (escape ? STOP_ESCAPE : 0) | (breakLines ? STOP_LINE_FEED : 0));
}

KyCValueText::KyCValueText(const char* text, bool escape) : m_text(nullptr), m_length(0)
{
  const std::uint64_t length = escape ? escapedLength(text) : std::strlen(text);
  if (length >= std::numeric_limits<unsigned int>::max()) return;    // longer than any string of the base library
  m_text = static_cast<char*>(std::malloc(static_cast<std::size_t>(length) + 1));
  if (m_text == nullptr) return;
  m_length = static_cast<std::size_t>(length);
  if (escape)
    escapeInto(m_text, text);
  else
    std::memcpy(m_text, text, static_cast<std::size_t>(length) + 1);
}

KyCValueText::~KyCValueText() { std::free(m_text); }

bool KyCValueText::hasLineFeed() const { return std::strchr(m_text, '\n') != nullptr; }
