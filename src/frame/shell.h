// Texts that go into command lines. An interface name must look like one or
// the command is not run; any other text is inserted as it is when it holds
// only characters no shell treats specially, else as one single-quoted word.
// Ordinary inputs therefore give byte-identical command lines.
#pragma once

#include <string>
#include <string_view>

namespace caltofal::shell {

// ^[A-Za-z0-9][A-Za-z0-9._-]{0,14}$
bool isInterfaceName(const char *name);

// The text as one shell word: unchanged when made only of [A-Za-z0-9._/:-],
// else in single quotes with each ' written '\''. The empty text is '': a
// word that vanished would make the next one take its place (`cat  > t`
// reads standard input).
std::string word(std::string_view text);

// The text for a place inside a single-quoted part of a command line: each
// ' written '\'' (close, escaped quote, reopen); nothing else changes, so a
// text without ' stays byte-identical.
std::string inSingleQuotes(std::string_view text);

// The text as the inside of a JSON string: ", \ and U+0000 to U+001F
// escaped; everything else unchanged.
std::string jsonEscaped(std::string_view text);

}  // namespace caltofal::shell
