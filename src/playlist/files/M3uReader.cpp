#include "M3uReader.h"

#include <algorithm>

namespace verdin {

namespace {

constexpr char kUtf8Bom[] = "\xEF\xBB\xBF";

}  // namespace

M3uReader::M3uReader(std::istream& in, bool utf8) : in_(in) {
    if (!utf8) return;
    char head[3] = {};
    in_.read(head, 3);
    const auto got = static_cast<size_t>(in_.gcount());
    if (got == 3 && std::equal(head, head + 3, kUtf8Bom)) return;
    // Not a mark: those bytes begin the first line.
    in_.clear();
    in_.seekg(0);
}

std::optional<std::string> M3uReader::Next() {
    if (ended_) return std::nullopt;
    if (taken_ >= line_.size()) {
        line_.clear();
        taken_ = 0;
        if (!std::getline(in_, line_)) {
            ended_ = true;  // the end of the file, after its last line
            return std::nullopt;
        }
        const bool endedAtLf = !in_.eof();
        if (line_.empty() && endedAtLf) {
            ended_ = true;  // a bare LF
            return std::nullopt;
        }
        if (endedAtLf && !line_.empty() && line_.back() == '\r') line_.pop_back();
        if (line_.empty()) return std::string();  // a lone CR
    }
    const size_t length = std::min(kM3uLineLength, line_.size() - taken_);
    std::string entry = line_.substr(taken_, length);
    taken_ += length;
    if (const size_t nul = entry.find('\0'); nul != std::string::npos) entry.resize(nul);
    return entry;
}

}  // namespace verdin
