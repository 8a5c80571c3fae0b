#pragma once
// The player's dialogs, as the main window opens them. Each function runs its dialog
// (modal unless said otherwise) and applies what the user chose to the core and the
// settings itself; parent owns the dialog.
#include <optional>
#include <string>

class QWidget;

namespace verdin {

class PlayerCore;
class RandomEntry;

// The properties of the track at a row: asks first to retrieve missing information
// ("Information for this track is not retrieved.\nDo you want to retrieve it now?"),
// says "Unknown file format." for a track that cannot be read; the "General" page, the
// tag page (with editing and saving attachments), the input module's own file info.
void ShowTrackProperties(QWidget* parent, PlayerCore& core, int row);
// "Random Entry Properties" for a random entry; true when the expression was changed.
bool EditRandomEntry(QWidget* parent, PlayerCore& core, RandomEntry& entry);
// The properties of the track a random entry at a row resolves to.
void ShowEvaluatedTrackProperties(QWidget* parent, PlayerCore& core, int row);

// "Find": the search text and "Case sensitive"; nothing when cancelled.
struct FindRequest {
    std::string text;
    bool caseSensitive = false;
};
std::optional<FindRequest> AskFind(QWidget* parent, const FindRequest& last);

// "Graphic Equalizer" (modeless; one at a time).
void ShowEqualizer(QWidget* parent, PlayerCore& core);

// The options dialog, opened on a page ("General", "Player", "Output", "Playlist",
// "Strings", "Input", "Visualization", "Digital Signal Processing (DSP)", "General
// Purpose", "Internet", "Appearance"); empty opens the first.
void ShowOptions(QWidget* parent, PlayerCore& core, const std::string& page = {});

// The about box.
void ShowAbout(QWidget* parent);

}  // namespace verdin
