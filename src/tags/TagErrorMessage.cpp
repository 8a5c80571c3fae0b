#include "tags/TagErrorMessage.h"

namespace verdin {

std::string ComposeTagErrorMessage(std::string_view error) {
    // The wording is the player's long-standing message and is kept as it is.
    std::string message = "ID3Lib v3.05a said \"";
    message += error;
    message += "\", but we couldn't care less.";
    return message;
}

}  // namespace verdin
