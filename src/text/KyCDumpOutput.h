// KyCDumpOutput.h: how the lines of a dump get into the stream.
#pragma once

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "inventory/KyCInventoryItemStream.h"
#include "text/KyCNumberText.h"

// The stream of one dump. Lines are written as a row of pieces: marks, which plain mode leaves out, and texts. write()
// chooses between two classes to write them to, which have the same operations; each operation yields false when the
// stream has failed. Every text has a terminator behind it.
//
// What is collected goes through a segment of a few kilobytes, and to the stream when that is full: so a line is laid
// down without asking about room at each piece, and the stream's buffer grows once for many lines. Printing gets every
// piece for itself.
class KyCDumpOutput
{
public:
  // Piece by piece into the stream.
  class TPieces
  {
  public:
    TPieces(KyCInventoryItem::MyStream& stream, bool plain) : m_stream(stream), m_plain(plain) {}

    bool indent(int depth)
    {
      for (int level = 0; level < depth; ++level)
      {
        if (!write("    ")) return false;
      }
      return true;
    }

    bool write(const char* text, std::size_t) { return m_stream.write(text); }
    bool write(const KyCNumberText& text) { return m_stream.write(text.c_str()); }
    bool write(const char* text) { return m_stream.write(text); }
    bool mark(const char* text) { return m_plain || write(text); }

  private:
    KyCInventoryItem::MyStream& m_stream;
    const bool m_plain;
  };

  // Into the segment, which has room for everything: nothing is checked and nothing fails. Blanks and numbers are moved
  // in blocks of a fixed size, which takes no call.
  class TRoom
  {
  public:
    TRoom(char* at, bool plain) : m_at(at), m_plain(plain) {}

    static constexpr std::size_t overhang = KyCNumberText::size;    // bytes that may be overwritten behind the end

    char* end() const { return m_at; }

    bool indent(int depth)
    {
      constexpr char blanks[] = "                                ";
      if (depth < 1) return true;
      const std::size_t length = std::size_t{4} * static_cast<unsigned int>(depth);
      if (length < sizeof(blanks))
        std::memcpy(m_at, blanks, sizeof(blanks) - 1);
      else
        std::memset(m_at, ' ', length);
      m_at += length;
      return true;
    }

    bool write(const char* text, std::size_t length)
    {
      std::memcpy(m_at, text, length);
      m_at += length;
      return true;
    }
    bool write(const KyCNumberText& text)
    {
      std::memcpy(m_at, text.c_str(), KyCNumberText::size);
      m_at += text.length();
      return true;
    }
    template <std::size_t N>
    bool write(const char (&text)[N])
    {
      return write(text, N - 1);
    }
    template <std::size_t N>
    bool mark(const char (&text)[N])
    {
      if (!m_plain) write(text);
      return true;
    }

  private:
    char* m_at;
    const bool m_plain;
  };

  KyCDumpOutput(KyCInventoryItem::MyStream& stream, bool printing, bool plain)
      : m_stream(stream), m_printing(printing), m_plain(plain), m_used(0)
  {
  }

  bool isPrinting() const { return m_printing; }

  // Hands writePieces(auto& output) one of the two classes above, and yields its result.
  //
  //   length   bytes that it writes at most
  template <typename TWritePieces>
  bool write(std::uint64_t length, TWritePieces writePieces)
  {
    length += TRoom::overhang;
    if (length > segmentSize - m_used && !flush()) return false;
    if (m_printing || length > segmentSize)
    {
      TPieces pieces(m_stream, m_plain);
      return writePieces(pieces);
    }
    TRoom room(m_segment + m_used, m_plain);
    writePieces(room);
    assert(room.end() <= m_segment + m_used + length - TRoom::overhang);
    m_used = static_cast<std::size_t>(room.end() - m_segment);
    return true;
  }

  // Hands over what the segment holds: at the end of the dump, and before anything that may end it otherwise.
  bool flush()
  {
    if (m_used == 0) return true;
    m_segment[m_used] = '\0';
    m_used = 0;
    return m_stream.write(m_segment);
  }

private:
  static constexpr std::size_t segmentSize = 8192;    // bytes

  KyCInventoryItem::MyStream& m_stream;
  const bool m_printing;
  const bool m_plain;
  std::size_t m_used;
  char m_segment[segmentSize];
};
