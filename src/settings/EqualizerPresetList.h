#pragma once
// The user's equalizer presets, kept in an INI file (one section per preset):
//
//   [name]
//   Band%d=<gain>     1..16, written only for non-zero gains (read default 0)
//   PreAmp=<gain>     always written
//   Link%d=<path>     1, 2, ... without gaps; reading stops at the first empty one
//   Default=1         only for the default preset (a value > 0 sets it)
#include "settings/EqualizerPreset.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace verdin {

class EqualizerPresetList {
public:
    const std::vector<EqualizerPreset>& Presets() const { return presets_; }
    size_t Count() const { return presets_.size(); }
    EqualizerPreset& At(size_t index) { return presets_[index]; }
    const EqualizerPreset& At(size_t index) const { return presets_[index]; }

    // The current preset: an index into the list, -1 when none.
    int Current() const { return current_; }
    void SetCurrent(int index) { current_ = (index >= 0 && static_cast<size_t>(index) < presets_.size()) ? index : -1; }

    // Appends the presets of a preset file. A section whose name is already a preset
    // (byte-wise) is skipped, so the first preset of a name wins, within the file and
    // against presets already loaded. A missing or empty file adds nothing. Returns the
    // number of presets added.
    size_t LoadFile(const std::string& path);

    // Replaces the preset's section in an existing file, or adds it, keeping the file's
    // other sections (export). False when the file cannot be written.
    static bool WritePreset(const std::string& path, const EqualizerPreset& preset);
    // Writes every preset, in list order, as the whole file (replacing it atomically).
    bool SaveAll(const std::string& path) const;

    void Append(EqualizerPreset preset) { presets_.push_back(std::move(preset)); }
    void Clear();
    // The index of the preset named name (byte-wise), or -1.
    int FindByName(const std::string& name) const;
    // Removes the preset at index; the current preset is kept when it is another one.
    void Remove(size_t index);

    // The preset for a track: the first preset (in list order) with a link equal to path
    // (byte-wise), else the first default preset; -1 for none.
    int PresetForTrack(const std::string& path) const;
    // Chooses PresetForTrack: on a choice the preset becomes current and its gains are
    // copied to bands and preAmp; returns whether one was chosen.
    bool ChooseForTrack(const std::string& path, std::array<int32_t, 16>& bands, int32_t& preAmp);

private:
    std::vector<EqualizerPreset> presets_;
    int current_ = -1;
};

// The name an exported preset file gets: ".eq" is appended unless the file name already
// ends in ".eq" (ignoring case); "mine.txt" gives "mine.txt.eq", "mine" gives "mine.eq".
std::string ExportFileName(const std::string& chosen);

}  // namespace verdin
