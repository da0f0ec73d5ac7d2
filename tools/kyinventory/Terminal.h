// Terminal.h: what the tool says to people.
#pragma once

#include <string>
#include <string_view>

#include "ExitCode.h"
#include "errorhandling/KyCErrorList.h"

// The text with each byte of a control character as \xNN, but for the characters to keep. Controls are also U+0080 .. U+009F,
// the characters that change the direction of a line, and every byte that is no UTF-8.
std::string withoutControls(std::string_view text, std::string_view kept = "");

// One line "kyinventory: ..." on standard error, with control characters, line feeds too, as \xNN: the message may hold a
// file's texts.
void complain(const std::string& message);

// One report as "kyinventory: SUBJECT: text (0xCODE, function)"; without the subject where the text names it as a word.
void complainAbout(const std::string& subject, const KyErrorEntry& entry);

// Every report of the list, oldest first, one line each, as "kyinventory: SUBJECT: text (0xCODE, function)"; behind
// them one line "kyinventory: what to do: ..." about the first one, which names the cause. Throws std::bad_alloc when there
// was no memory for any of the reports.
void complainAbout(const std::string& subject, const KyCErrorList& reports);

// Whether memory has run out: that is reported, or there was none for all of the reports.
bool isOutOfMemory(const KyCErrorList& reports);

// As above, for what ends a command.
//
// Result:     EXIT_OUTPUT when memory has run out, `otherwise` for every other reason
int failWith(const std::string& subject, const KyCErrorList& reports, ExitCode otherwise);
