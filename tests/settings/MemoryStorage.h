#pragma once
#include "settings/SettingsStorage.h"

#include <cstring>
#include <map>

namespace verdin::test {

// A key-value store in memory, standing in for the file when a test wants to put odd
// values (wrong sizes, old names) in place directly.
class MemoryStorage final : public SettingsStorage {
public:
    std::map<std::string, std::string> values;
    std::optional<std::string> Read(const std::string& name) override {
        auto it = values.find(name);
        if (it == values.end()) return std::nullopt;
        return it->second;
    }
    void WriteText(const std::string& name, const std::string& text) override { values[name] = text; }
    void WriteBinary(const std::string& name, const std::string& bytes) override { values[name] = bytes; }
    bool Commit() override { return true; }

    void PutInt(const std::string& name, int32_t v) { values[name] = std::string(reinterpret_cast<const char*>(&v), 4); }
};

}  // namespace verdin::test
