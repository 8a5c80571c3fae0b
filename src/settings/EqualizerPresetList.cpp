#include "EqualizerPresetList.h"

#include "IniProfile.h"
#include "base/Text.h"

#include <string>

namespace verdin {

int EqualizerPreset::FindLink(const std::string& path) const {
    for (size_t i = 0; i < links.size(); ++i)
        if (links[i] == path) return static_cast<int>(i);
    return -1;
}

size_t EqualizerPresetList::LoadFile(const std::string& path) {
    const IniProfile file = IniProfile::Load(path);
    size_t added = 0;
    for (const std::string& name : file.SectionNames()) {
        if (FindByName(name) >= 0) continue;
        EqualizerPreset preset;
        preset.name = name;
        for (int band = 1; band <= 16; ++band)
            preset.bands[band - 1] = file.GetInt(name, "Band" + std::to_string(band), 0);
        preset.preAmp = file.GetInt(name, "PreAmp", 0);
        for (int link = 1;; ++link) {
            std::string value = file.GetString(name, "Link" + std::to_string(link), "", 255);
            if (value.empty()) break;
            preset.links.push_back(std::move(value));
        }
        preset.isDefault = file.GetInt(name, "Default", 0) > 0;
        presets_.push_back(std::move(preset));
        ++added;
    }
    return added;
}

namespace {

void WriteSection(IniProfile& file, const EqualizerPreset& preset) {
    file.ClearSection(preset.name);
    for (int band = 1; band <= 16; ++band) {
        if (preset.bands[band - 1] != 0)
            file.SetString(preset.name, "Band" + std::to_string(band), std::to_string(preset.bands[band - 1]));
    }
    file.SetString(preset.name, "PreAmp", std::to_string(preset.preAmp));
    for (size_t i = 0; i < preset.links.size(); ++i)
        file.SetString(preset.name, "Link" + std::to_string(i + 1), preset.links[i]);
    if (preset.isDefault) file.SetString(preset.name, "Default", "1");
}

}  // namespace

bool EqualizerPresetList::WritePreset(const std::string& path, const EqualizerPreset& preset) {
    IniProfile file = IniProfile::Load(path);
    WriteSection(file, preset);
    return file.Save(path);
}

bool EqualizerPresetList::SaveAll(const std::string& path) const {
    IniProfile file;
    for (const auto& preset : presets_) WriteSection(file, preset);
    return file.Save(path);
}

void EqualizerPresetList::Clear() {
    presets_.clear();
    current_ = -1;
}

int EqualizerPresetList::FindByName(const std::string& name) const {
    for (size_t i = 0; i < presets_.size(); ++i)
        if (presets_[i].name == name) return static_cast<int>(i);
    return -1;
}

void EqualizerPresetList::Remove(size_t index) {
    if (index >= presets_.size()) return;
    presets_.erase(presets_.begin() + static_cast<std::ptrdiff_t>(index));
    if (current_ == static_cast<int>(index)) current_ = -1;
    else if (current_ > static_cast<int>(index)) --current_;
}

int EqualizerPresetList::PresetForTrack(const std::string& path) const {
    for (size_t i = 0; i < presets_.size(); ++i)
        if (presets_[i].FindLink(path) >= 0) return static_cast<int>(i);
    for (size_t i = 0; i < presets_.size(); ++i)
        if (presets_[i].isDefault) return static_cast<int>(i);
    return -1;
}

bool EqualizerPresetList::ChooseForTrack(const std::string& path, std::array<int32_t, 16>& bands,
                                         int32_t& preAmp) {
    const int chosen = PresetForTrack(path);
    if (chosen < 0) return false;
    current_ = chosen;
    bands = presets_[static_cast<size_t>(chosen)].bands;
    preAmp = presets_[static_cast<size_t>(chosen)].preAmp;
    return true;
}

std::string ExportFileName(const std::string& chosen) {
    const size_t slash = chosen.rfind('/');
    const std::string_view name = std::string_view(chosen).substr(slash == std::string::npos ? 0 : slash + 1);
    if (EqualsIgnoreCase(ExtensionOf(name), ".eq")) return chosen;
    return chosen + ".eq";
}

}  // namespace verdin
