#pragma once
// Loading and saving the settings record through a key-value store, and the upgrade of
// values stored by older versions. The store itself (QSettings in the player, a map in
// tests) only moves bytes: every rule about sizes, defaults and versions is here.
#include <optional>
#include <string>

namespace verdin {

struct Settings;
struct SettingsEnvironment;

class SettingsStorage {
public:
    virtual ~SettingsStorage() = default;
    // The stored bytes of a value (a text as its UTF-8 bytes), or nothing when absent.
    virtual std::optional<std::string> Read(const std::string& name) = 0;
    virtual void WriteText(const std::string& name, const std::string& text) = 0;
    virtual void WriteBinary(const std::string& name, const std::string& bytes) = 0;
    // Makes the writes durable (atomically: all or nothing); false on failure.
    virtual bool Commit() = 0;
};

// Defaults (with the preset file), then every stored value that passes the size rule,
// then the checks and upgrade steps for the stored version.
void LoadSettings(Settings& settings, SettingsStorage& storage, const SettingsEnvironment& environment);

// Writes the preset file, then every value in table order. False when either failed
// (nothing is half-written: both are replaced atomically).
bool SaveSettings(const Settings& settings, SettingsStorage& storage, const SettingsEnvironment& environment);

// The upgrade steps for a stored version below the current one (a fresh store counts as
// 65535: no step runs). Old values are read from the storage, never deleted.
void UpgradeSettings(Settings& settings, int32_t storedVersion, SettingsStorage& storage,
                     const SettingsEnvironment& environment);

// Every occurrence of from replaced by to; the scan goes on behind the inserted text.
std::string ReplaceAll(std::string text, const std::string& from, const std::string& to);

}  // namespace verdin
