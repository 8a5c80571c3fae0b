#pragma once
// "Playlist": when track information is not read ("skipInfoForAnyFile",
// "skipInfoForURL", "skipInfoForCDROM"), "deleteTracksAfterPlaying",
// "recursiveAddDirectory", and the random entries' sample space: its directories
// ("sampleSpaceSearchPath"), "recurseSampleSpaceSearchPath" and the pick history
// ("vdpHistory"). A changed sample space path is used when the sample space is next
// built.
#include "shell/ui/dialogs/options/OptionsPage.h"

class QSpinBox;

namespace verdin {

class SearchPathField;

// The note under the sample space path, with an example of this platform's paths.
inline constexpr const char* kSampleSpaceNote = "Use semicolons to separate directories (eg. /music/mp3;/media/disk/mp3)";

class PlaylistPage : public OptionsPage {
    Q_OBJECT
public:
    explicit PlaylistPage(Player& player, QWidget* parent = nullptr);
    void Load() override;
    void Apply(Settings& s) override;

    SearchPathField* SampleSpacePath() const { return sampleSpace_; }
    QSpinBox* History() const { return history_; }

private:
    SearchPathField* sampleSpace_ = nullptr;
    QSpinBox* history_ = nullptr;
};

}  // namespace verdin
