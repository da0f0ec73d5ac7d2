// KyCMessageArguments.h: the values that fill a message's placeholders, as texts.
#pragma once

#include <cstdarg>
#include <cstddef>

class KyCMessageArguments
{
public:
  static constexpr unsigned int maxCount = 9;    // placeholders %1 .. %9

  // Reads one value per conversion of argFormat. Stops at the first conversion it does not know: the size of what lies
  // there, and so the place of everything behind it, is unknown. Texts ("%s") are borrowed from the caller.
  KyCMessageArguments(const char* argFormat, std::va_list values) noexcept;
  KyCMessageArguments(const KyCMessageArguments&) = delete;
  KyCMessageArguments& operator=(const KyCMessageArguments&) = delete;

  unsigned int getCount() const noexcept { return m_count; }
  const char* getText(unsigned int n) const noexcept { return m_texts[n]; }    // n: 0 .. getCount() - 1
  std::size_t getLength(unsigned int n) const noexcept { return m_lengths[n]; }

private:
  static constexpr std::size_t numberSize = 336;    // the largest double takes 309 digits, a point and six more digits

  bool read(const char*& conversion, std::va_list& values) noexcept;
  template <typename T>
  void addNumber(const char* format, T value) noexcept;
  void addCharacter(int character) noexcept;
  void addText(const char* text) noexcept;
  void add(const char* text, std::size_t length) noexcept;

  unsigned int m_count = 0;
  const char* m_texts[maxCount];
  std::size_t m_lengths[maxCount];
  char m_numbers[maxCount][numberSize];
};
