#pragma once
// Conversions from TagLib's texts to the player's texts (UTF-8 on this platform).
#include <taglib/tbytevector.h>
#include <taglib/tstring.h>
#include <taglib/tstringlist.h>

#include <string>
#include <string_view>

namespace verdin {

inline std::string Utf8(const TagLib::String& s) { return s.isEmpty() ? std::string() : s.to8Bit(true); }

// The values of a multi-valued field joined with `separator`, empty values skipped.
std::string JoinUtf8(const TagLib::StringList& values, std::string_view separator);

inline std::string_view BytesOf(const TagLib::ByteVector& bytes) {
    return bytes.isEmpty() ? std::string_view() : std::string_view(bytes.data(), bytes.size());
}

}  // namespace verdin
