#include "Table.h"

#include <algorithm>

#include "Terminal.h"

namespace
{
// A longer value does not make its column wider: one in a file must not fill the screen with blanks.
constexpr std::size_t s_widestColumn = 40;

std::string escaped(const std::string& text)
{
  if (text.find_first_of("\t\n\r\\") == std::string::npos) return text;
  std::string line;
  for (const char c : text)
  {
    const std::size_t place = std::string_view("\t\n\r\\").find(c);
    if (place == std::string_view::npos)
      line += c;
    else
      (line += '\\') += "tnr\\"[place];
  }
  return line;
}

// The characters of a text, of which UTF-8 may take several bytes.
std::size_t widthOf(const std::string& text)
{
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}
}    // namespace

void Table::add(std::vector<std::string> row)
{
  for (std::string& column : row)
    column = m_out.isTerminal() ? withoutControls(column, "") : escaped(column);
  if (m_out.isTerminal())
  {
    m_rows.push_back(std::move(row));
    return;
  }
  for (std::size_t n = 0; n < row.size(); ++n)
    m_out.data(row[n]).text(n + 1 == row.size() ? "\n" : "\t");
}

void Table::finish()
{
  if (!m_out.isTerminal() || m_rows.size() == 1) return;
  std::vector<std::size_t> widths(m_rows.front().size(), 0);
  for (const auto& row : m_rows)
    for (std::size_t n = 0; n < row.size(); ++n)
      widths[n] = std::max(widths[n], std::min(widthOf(row[n]), s_widestColumn));
  for (std::size_t line = 0; line < m_rows.size(); ++line)
  {
    const auto& row = m_rows[line];
    for (std::size_t n = 0; n < row.size(); ++n)
    {
      m_out.data(row[n], line == 0 ? Style::HEADING : n == 0 ? Style::NAME : Style::PLAIN);
      const bool isLast = n + 1 == row.size();
      const std::size_t width = std::min(widthOf(row[n]), widths[n]);
      m_out.text(isLast ? "\n" : std::string(widths[n] - width + 2, ' '));
    }
  }
}
