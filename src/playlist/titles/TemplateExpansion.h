#pragma once
// The walk shared by every template: text with %name% references.
//
// A character other than "%" is copied. "%%" is a "%" sign. Otherwise the characters after
// "%" up to the next "%" (or the end of the text) are a name, which the resolver expands;
// a name it does not know is written back as "%name%" or dropped, as the style says (a
// reference cut off by the end of the text is still a reference: "%dur" expands dur).
// A template is a C text (it ends at its first NUL) and every result is cut to
// kTemplateResultLimit characters, the room of the 512-byte buffer it was made in.
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace verdin {

inline constexpr std::size_t kTemplateResultLimit = 511;

struct ReferenceStyle {
    std::string_view percentSign = "%";  // what "%%" yields
    bool keepUnknown = true;             // write unknown references back as "%name%"
    bool escapeValues = false;           // double each "%" of an expanded value
};

// Appends the value of the named variable to out and returns true, or returns false for
// a name it does not know.
using ReferenceResolver = std::function<bool(std::string_view name, std::string& out)>;

std::string ExpandReferences(std::string_view text, const ReferenceStyle& style, const ReferenceResolver& resolve);

}  // namespace verdin
