#include "SectionEndOption.h"

void addSectionEndOption(CLI::App& command, KyNInventoryKit::SectionEnd& at, const std::string& description)
{
  command
      .add_option_function<std::string>(
          "--at",
          [&at](const std::string& text)
          { at = text == "start" ? KyNInventoryKit::SectionEnd::START : KyNInventoryKit::SectionEnd::END; },
          description)
      ->check(CLI::IsMember({"start", "end"}));
}
