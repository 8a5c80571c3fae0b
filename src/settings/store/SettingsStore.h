#pragma once
// The settings record's home on disk: QSettings("Brimfell", "Verdin") in Qt's native
// format, which on Linux is an INI file, $XDG_CONFIG_HOME/Brimfell/Verdin.conf. Texts are
// stored as strings; every number, flag and array as a byte array of exactly its size.
// QSettings replaces the file atomically when it writes, so a crash never leaves a
// half-written file.
#include "settings/Settings.h"
#include "settings/SettingsStorage.h"

#include <QSettings>
#include <memory>

namespace verdin {

class QSettingsStorage final : public SettingsStorage {
public:
    // Uses the given QSettings object (the user's store, or a file a test names).
    explicit QSettingsStorage(QSettings& settings) : settings_(settings) {}
    std::optional<std::string> Read(const std::string& name) override;
    void WriteText(const std::string& name, const std::string& text) override;
    void WriteBinary(const std::string& name, const std::string& bytes) override;
    bool Commit() override;

private:
    QSettings& settings_;
};

// The user's settings store: QSettings("Brimfell", "Verdin").
std::unique_ptr<QSettings> OpenUserSettingsStore();

// The directories the defaults use, for this process: the executable's directory, the
// user directory, the working directory and the user's music folder.
SettingsEnvironment CurrentSettingsEnvironment();

// Loads the user's settings (defaults, stored values, upgrades) / saves them.
void LoadUserSettings(Settings& settings, const SettingsEnvironment& environment);
bool SaveUserSettings(const Settings& settings, const SettingsEnvironment& environment);

}  // namespace verdin
