#include "KeyFile.h"

#include "settings/IniProfile.h"

#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>

namespace verdin {

namespace {

constexpr size_t kNone = std::string::npos;

bool IsHeader(std::string_view line) { return !line.empty() && line.front() == '['; }

bool IsHeaderOf(std::string_view line, std::string_view group) {
    return line.size() == group.size() + 2 && line.front() == '[' && line.back() == ']' &&
           line.substr(1, group.size()) == group;
}

// The key of a key line, or nothing for any other line.
std::optional<std::string_view> KeyOf(std::string_view line) {
    const size_t equals = line.find('=');
    if (equals == std::string_view::npos || equals == 0 || line.front() == '#' || IsHeader(line)) return std::nullopt;
    return line.substr(0, equals);
}

}  // namespace

KeyFile::KeyFile(std::string_view text) {
    while (!text.empty()) {
        const size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        while (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        lines_.emplace_back(line);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
}

std::string KeyFile::Text() const {
    std::string text;
    for (const std::string& line : lines_) text += line + '\n';
    return text;
}

std::pair<size_t, size_t> KeyFile::GroupLines(std::string_view group) const {
    for (size_t i = 0; i < lines_.size(); ++i) {
        if (!IsHeaderOf(lines_[i], group)) continue;
        size_t end = i + 1;
        while (end < lines_.size() && !IsHeader(lines_[end])) ++end;
        return {i + 1, end};
    }
    return {kNone, kNone};
}

std::string KeyFile::Get(std::string_view group, std::string_view key) const {
    const auto [begin, end] = GroupLines(group);
    for (size_t i = begin; begin != kNone && i < end; ++i)
        if (KeyOf(lines_[i]) == key) return lines_[i].substr(key.size() + 1);
    return {};
}

void KeyFile::Set(std::string_view group, std::string_view key, std::string_view value) {
    const std::string line = std::string(key) + "=" + std::string(value);
    auto [begin, end] = GroupLines(group);
    if (begin == kNone) {
        if (!lines_.empty() && !lines_.back().empty()) lines_.emplace_back();
        lines_.push_back("[" + std::string(group) + "]");
        lines_.push_back(line);
        return;
    }
    for (size_t i = begin; i < end; ++i) {
        if (KeyOf(lines_[i]) == key) {
            lines_[i] = line;
            return;
        }
    }
    // After the group's last non-blank line, so a blank line before the next group stays.
    while (end > begin && lines_[end - 1].empty()) --end;
    lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(end), line);
}

void KeyFile::Remove(std::string_view group, std::string_view key) {
    auto [begin, end] = GroupLines(group);
    for (size_t i = begin; begin != kNone && i < end;) {
        if (KeyOf(lines_[i]) == key) {
            lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(i));
            --end;
        } else {
            ++i;
        }
    }
}

std::vector<std::string> KeyFile::Keys(std::string_view group) const {
    std::vector<std::string> keys;
    const auto [begin, end] = GroupLines(group);
    for (size_t i = begin; begin != kNone && i < end; ++i)
        if (const auto key = KeyOf(lines_[i])) keys.emplace_back(*key);
    return keys;
}

KeyFile ReadKeyFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return KeyFile(text.str());
}

bool WriteKeyFile(const std::string& path, const KeyFile& file) {
    std::error_code error;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path(), error);
    return WriteFileAtomically(path, file.Text());
}

}  // namespace verdin
