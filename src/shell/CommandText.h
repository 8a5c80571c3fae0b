#pragma once
// The command text that the desktop and a second start of the player hand over: blank-
// separated tokens, "/PLAY" and paths.
//
// A token that begins with a double quote runs to the next double quote (the quote and
// the byte after it end the token; a quote that never closes runs to the end of the text);
// any other token runs to the next blank. So "/PLAY "/m/a b.mp3" /m/c.mp3" holds three
// tokens, and a quoted path may hold blanks while an unquoted one is cut at each blank.
#include <string>
#include <string_view>
#include <vector>

namespace verdin {

// The tokens of a command text, in order; empty tokens (two blanks in a row) are left out,
// as they name nothing.
std::vector<std::string> SplitCommandText(std::string_view text);

// Whether a token is the play command ("/PLAY", compared without regard to case).
bool IsPlayToken(std::string_view token);

}  // namespace verdin
