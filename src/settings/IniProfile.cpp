#include "IniProfile.h"

#include "base/IniLineScanner.h"
#include "base/Text.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <fstream>
#include <iterator>
#include <unistd.h>

namespace verdin {

IniProfile IniProfile::Parse(std::string_view text) {
    IniProfile profile;
    IniLineScanner scanner(text);
    IniLine line;
    while (scanner.Next(&line)) {
        if (line.kind == IniLine::Kind::kSection)
            profile.sections_.push_back(Section{std::string(line.name), {}});
        else if (!profile.sections_.empty())  // a key before any section is not read
            profile.sections_.back().entries.push_back(Entry{std::string(line.name), std::string(line.value)});
    }
    return profile;
}

IniProfile IniProfile::Load(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return IniProfile();
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    return Parse(text);
}

std::vector<std::string> IniProfile::SectionNames() const {
    std::vector<std::string> names;
    names.reserve(sections_.size());
    for (const auto& s : sections_) names.push_back(s.name);
    return names;
}

const IniProfile::Section* IniProfile::FindSection(std::string_view name) const {
    for (const auto& s : sections_)
        if (IniNamesMatch(s.name, name)) return &s;
    return nullptr;
}

const IniProfile::Entry* IniProfile::Find(std::string_view section, std::string_view key) const {
    const Section* s = FindSection(section);
    if (!s) return nullptr;
    for (const auto& e : s->entries)
        if (IniNamesMatch(e.key, key)) return &e;
    return nullptr;
}

std::string IniProfile::GetString(std::string_view section, std::string_view key,
                                  std::string_view fallback, size_t maxChars) const {
    const Entry* e = Find(section, key);
    std::string_view value = e ? std::string_view(e->value) : fallback;
    return std::string(value.substr(0, maxChars));
}

int IniProfile::GetInt(std::string_view section, std::string_view key, int fallback) const {
    const Entry* e = Find(section, key);
    return e ? ParseDecimal(e->value) : fallback;
}

void IniProfile::SetString(std::string_view section, std::string_view key, std::string_view value) {
    Section* s = const_cast<Section*>(FindSection(section));
    if (!s) {
        sections_.push_back(Section{std::string(section), {}});
        s = &sections_.back();
    }
    for (auto& e : s->entries) {
        if (IniNamesMatch(e.key, key)) {
            e.value = std::string(value);
            return;
        }
    }
    s->entries.push_back(Entry{std::string(key), std::string(value)});
}

void IniProfile::ClearSection(std::string_view section) {
    bool kept = false;
    for (auto it = sections_.begin(); it != sections_.end();) {
        if (!IniNamesMatch(it->name, section)) {
            ++it;
        } else if (!kept) {
            it->name = std::string(section);
            it->entries.clear();
            kept = true;
            ++it;
        } else {
            it = sections_.erase(it);
        }
    }
    if (!kept) sections_.push_back(Section{std::string(section), {}});
}

void IniProfile::RemoveSection(std::string_view section) {
    std::erase_if(sections_, [&](const Section& s) { return IniNamesMatch(s.name, section); });
}

std::string IniProfile::Serialize() const {
    std::string out;
    for (const auto& s : sections_) {
        out += '[';
        out += s.name;
        out += "]\r\n";
        for (const auto& e : s.entries) {
            out += e.key;
            out += '=';
            out += e.value;
            out += "\r\n";
        }
    }
    return out;
}

bool IniProfile::Save(const std::string& path) const { return WriteFileAtomically(path, Serialize()); }

bool WriteFileAtomically(const std::string& path, std::string_view data) {
    std::string temp = path + ".XXXXXX";
    const int fd = mkstemp(temp.data());
    if (fd < 0) return false;
    bool ok = true;
    size_t done = 0;
    while (ok && done < data.size()) {
        const ssize_t n = ::write(fd, data.data() + done, data.size() - done);
        if (n > 0) done += static_cast<size_t>(n);
        else if (n < 0 && errno == EINTR) continue;
        else ok = false;
    }
    // mkstemp makes the file private (0600); give it the mode of the file it replaces,
    // or the usual 0644 for a new one.
    struct stat existing;
    const mode_t mode = ::stat(path.c_str(), &existing) == 0 ? (existing.st_mode & 07777) : 0644;
    ok = ok && ::fchmod(fd, mode) == 0;
    ok = ok && ::fsync(fd) == 0;
    ok = (::close(fd) == 0) && ok;
    if (ok && std::rename(temp.c_str(), path.c_str()) == 0) return true;
    ::unlink(temp.c_str());
    return false;
}

}  // namespace verdin
