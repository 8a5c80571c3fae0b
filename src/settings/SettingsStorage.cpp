#include "SettingsStorage.h"

#include "Settings.h"
#include "SettingsFields.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <numeric>
#include <utility>

namespace verdin {

namespace {

// Reads an old 4-byte value that newer layouts dropped; fallback when absent or of
// another size.
int32_t ReadOldInt(SettingsStorage& storage, const char* name, int32_t fallback) {
    std::optional<std::string> bytes = storage.Read(name);
    if (!bytes || bytes->size() != 4) return fallback;
    int32_t value;
    std::memcpy(&value, bytes->data(), 4);
    return value;
}

std::string ApplyCodes(std::string text, std::initializer_list<std::pair<const char*, const char*>> codes) {
    for (const auto& [from, to] : codes) text = ReplaceAll(std::move(text), from, to);
    return text.substr(0, 255);
}

constexpr std::initializer_list<std::pair<const char*, const char*>> kTrackTitleCodes = {
    {"%pth", "%path%"}, {"%bdy", "%body%"}, {"%ext", "%ext%"}, {"%TT2", "%TITLE%"}, {"%TP1", "%LEADARTIST%"}};

constexpr std::initializer_list<std::pair<const char*, const char*>> kWindowTitleCodes = {
    {"%ttl", "%title%"}, {"%sts", "%status%"}, {"%tno", "%num%"},  {"%pht", "%path%"},
    {"%php", "%ppath%"}, {"%bdt", "%body%"},   {"%bdp", "%pbody%"}, {"%ext", "%ext%"},
    {"%exp", "%pext%"},  {"%dut", "%dur%"},    {"%dup", "%pdur%"}};

constexpr std::initializer_list<std::pair<const char*, const char*>> kStatusOnlyCodes = {
    {"%ptt", "%time%"}, {"%ptp", "%ptime%"}, {"%plt", "%timel%"}, {"%plp", "%ptimel%"}};

}  // namespace

std::string ReplaceAll(std::string text, const std::string& from, const std::string& to) {
    if (from.empty()) return text;
    size_t at = 0;
    while ((at = text.find(from, at)) != std::string::npos) {
        text.replace(at, from.size(), to);
        at += to.size();
    }
    return text;
}

void UpgradeSettings(Settings& s, int32_t stored, SettingsStorage& storage, const SettingsEnvironment& env) {
    if (stored < 15) {
        // Older layouts kept the level as a positive fraction. This runs after the clamp
        // of the loaded value, which makes every level negative, so the result is always
        // -100; the order is kept as it has always been.
        s.silenceLevel = s.silenceLevel > 0
                             ? static_cast<int32_t>(20.0 * std::log10(s.silenceLevel * 0.001))
                             : -100;
    }
    if (stored < 18) {
        s.trackTitleTemplate = ApplyCodes(s.trackTitleTemplate, kTrackTitleCodes);
        s.windowTitleTemplate = ApplyCodes(s.windowTitleTemplate, kWindowTitleCodes);
        s.statusStringTemplate = ApplyCodes(ApplyCodes(s.statusStringTemplate, kWindowTitleCodes), kStatusOnlyCodes);
    }
    if (stored < 20) {
        s.ignoreID3Tags = ReadOldInt(storage, "ignoreID3v2Tags", 0);
        s.skipInfoForURL = !ReadOldInt(storage, "retrieveInformationForURLs", 0);
        s.statusStringTemplate = ReplaceAll(s.statusStringTemplate, "%title ", "%title% ").substr(0, 255);
    }
    if (stored < 22) s.outputType = ReadOldInt(storage, "decodeToFile", 0) != 0 ? 1 : 0;
    if (stored < 25) {
        s.trackTitleTemplate = ReplaceAll(s.trackTitleTemplate, "%body%", "%sugtitle%").substr(0, 255);
        s.playerThreadPriority = ReadOldInt(storage, "decoderThreadPriority", 2);
        const std::string dir = env.userDirectory + "/";
        std::rename((dir + "equalizer.dat").c_str(), (dir + "equalizer.eq").c_str());  // failure ignored
        s.ignoreID3Tags = 0;
        s.bufferSize = std::max(s.bufferSize, 102400);
    }
    if (stored < 27) s.inputPluginsSearchPath = DefaultPluginSearchPath(env.programDirectory);
}

void LoadSettings(Settings& s, SettingsStorage& storage, const SettingsEnvironment& env) {
    SetDefaults(s, env);
    s.version = 0;
    for (const SettingsField& field : SettingsFields()) {
        if (std::optional<std::string> stored = storage.Read(field.name)) TakeStoredBytes(field, s, *stored);
    }
    const int32_t stored = s.version != 0 ? s.version : 65535;
    s.version = kSettingsVersion;

    const Settings defaults = [&] {
        Settings d;
        SetDefaultValues(d, env);
        return d;
    }();
    const int32_t bandSum = std::accumulate(s.rebarBandArray.begin(), s.rebarBandArray.end(), 0,
                                            [](int32_t sum, const RebarBand& b) { return sum + b.id; });
    if (bandSum != 808) s.rebarBandArray = defaults.rebarBandArray;
    s.silenceLevel = std::clamp(s.silenceLevel, -100, -20);

    UpgradeSettings(s, stored, storage, env);
}

bool SaveSettings(const Settings& s, SettingsStorage& storage, const SettingsEnvironment& env) {
    std::error_code ignored;
    std::filesystem::create_directories(env.userDirectory, ignored);
    const bool presetsSaved = s.presets.SaveAll(PresetFilePath(env));
    for (const SettingsField& field : SettingsFields()) {
        if (field.kind == FieldKind::Text) storage.WriteText(field.name, StoredBytes(field, s));
        else storage.WriteBinary(field.name, StoredBytes(field, s));
    }
    const bool valuesSaved = storage.Commit();
    return presetsSaved && valuesSaved;
}

}  // namespace verdin
