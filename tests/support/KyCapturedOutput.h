// KyCapturedOutput.h: catches what a test prints.
#pragma once

#include <unistd.h>

#include <cstdio>
#include <stdexcept>
#include <string>

// From construction on, standard output goes into a temporary file instead; take() or the end of the object restores it.
class KyCapturedOutput
{
public:
  KyCapturedOutput() : m_file(std::tmpfile())
  {
    std::fflush(stdout);
    m_saved = dup(STDOUT_FILENO);
    if (m_file == nullptr || m_saved < 0 || dup2(fileno(m_file), STDOUT_FILENO) < 0)
    {
      throw std::runtime_error("cannot redirect standard output");
    }
  }

  ~KyCapturedOutput()
  {
    restore();
    std::fclose(m_file);
  }

  KyCapturedOutput(const KyCapturedOutput&) = delete;
  KyCapturedOutput& operator=(const KyCapturedOutput&) = delete;

  // Ends the redirection; everything that was printed meanwhile.
  std::string take()
  {
    restore();
    std::string text;
    std::rewind(m_file);
    for (int character = std::fgetc(m_file); character != EOF; character = std::fgetc(m_file))
    {
      text += static_cast<char>(character);
    }
    return text;
  }

private:
  void restore()
  {
    if (m_saved < 0) return;
    std::fflush(stdout);
    dup2(m_saved, STDOUT_FILENO);
    close(m_saved);
    m_saved = -1;
  }

  std::FILE* m_file;
  int m_saved = -1;
};
