#pragma once
// The title a station announces: "StreamTitle='Artist - Song';" in the metadata blocks
// of the ICY protocol, and "icy-name" among its response headers.
#include <string>
#include <string_view>

namespace verdin::radio {

// The StreamTitle of one metadata block, or nothing when it has none. The value runs to
// the "';" that ends it, so a title may hold apostrophes.
std::string StreamTitleOf(std::string_view metadata);

// The value of one "name: value" line of the response headers (the name compared without
// regard to case), or nothing.
std::string HeaderValueOf(std::string_view headers, std::string_view name);

}  // namespace verdin::radio
