#include "playlist/titles/TemplateExpansion.h"

namespace verdin {
namespace {

void AppendEscaped(std::string& out, std::string_view value) {
    for (const char c : value) {
        out += c;
        if (c == '%') out += '%';
    }
}

}  // namespace

std::string ExpandReferences(std::string_view text, const ReferenceStyle& style, const ReferenceResolver& resolve) {
    text = text.substr(0, text.find('\0'));
    std::string out;
    std::string value;
    std::size_t pos = 0;
    // The result only grows, so the walk can stop once it is full.
    while (pos < text.size() && out.size() < kTemplateResultLimit) {
        const char c = text[pos++];
        if (c != '%') {
            out += c;
            continue;
        }
        if (pos < text.size() && text[pos] == '%') {
            out += style.percentSign;
            ++pos;
            continue;
        }
        std::size_t close = text.find('%', pos);
        if (close == std::string_view::npos) close = text.size();
        const std::string_view name = text.substr(pos, close - pos);
        pos = close < text.size() ? close + 1 : close;
        value.clear();
        if (resolve(name, value)) {
            if (style.escapeValues) AppendEscaped(out, value);
            else out += value;
        } else if (style.keepUnknown) {
            out += '%';
            out += name;
            out += '%';
        }
    }
    if (out.size() > kTemplateResultLimit) out.resize(kTemplateResultLimit);
    return out;
}

}  // namespace verdin
