#pragma once
// The player's dialogs, as the main window opens them. Each function runs its dialog
// (modal unless said otherwise) and applies what the user chose through the player;
// parent owns the dialog.
#include <optional>
#include <string>
#include <string_view>

class QWidget;

namespace verdin {

class Player;

// The properties of the track at a row: asks first to retrieve missing information
// ("Information for this track is not retrieved.\nDo you want to retrieve it now?"),
// says "Unknown file format." for a track that cannot be read; the "General" page, the
// tag page (with editing and saving attachments), the input module's own file info.
void ShowTrackProperties(QWidget* parent, Player& player, int row);
// "Random Entry Properties" for a new random entry: the expression, or nothing when
// cancelled.
std::optional<std::string> AskRandomExpression(QWidget* parent, const Player& player, std::string_view expression);
// The same for the random entry at a row, which gets the expression (a random entry's row
// given to ShowTrackProperties opens this dialog).
void EditRandomEntry(QWidget* parent, Player& player, int row);
// The properties of the track the random entry at a row picked last ("Evaluated Track
// Properties"); an entry that has not picked yet, or picked no track, says so.
void ShowEvaluatedTrackProperties(QWidget* parent, Player& player, int row);

// "Find": the search text and "Case sensitive"; nothing when cancelled.
struct FindRequest {
    std::string text;
    bool caseSensitive = false;
};
std::optional<FindRequest> AskFind(QWidget* parent, const FindRequest& last);
// "Find In Playlist" (Ctrl+F with askFirst, F3 without): asks first when askFirst is set
// or there was no search yet (a cancelled dialog ends it, -1), keeps the request in last,
// then searches from the row after focusedRow (-1: from row 0). Returns the matching row
// for the view to select, focus and scroll to; with no match the player says "Cannot find
// the string "%s"." and -1 is returned.
int FindInPlaylist(QWidget* parent, const Player& player, FindRequest& last, bool askFirst, int focusedRow);

// "Graphic Equalizer" (modeless; one at a time).
void ShowEqualizer(QWidget* parent, Player& player);

// The options dialog, opened on a page ("General", "Player", "Output", "Playlist",
// "Strings", "Input", "Visualization", "Digital Signal Processing (DSP)", "General
// Purpose", "Internet", "Appearance"); empty opens the first.
void ShowOptions(QWidget* parent, Player& player, const std::string& page = {});

// The about box.
void ShowAbout(QWidget* parent);

}  // namespace verdin
