#pragma once
// The message shown when a tag could not be read. Show it only for an action the user
// started (opening the tag page, saving a tag); a scan of files never shows it: a
// damaged tag is read as far as it goes and the track is used as it is.
#include <string>
#include <string_view>

namespace verdin {

// "ID3Lib v3.05a said "<error>", but we couldn't care less." (caption "Verdin")
std::string ComposeTagErrorMessage(std::string_view error);

}  // namespace verdin
