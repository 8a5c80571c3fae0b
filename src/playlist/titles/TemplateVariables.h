#pragma once
// The variables the options page's "Insert a variable reference into ..." menus offer,
// with the description shown after the tab and the submenu they sit in (empty: the menu
// itself).
#include <string_view>
#include <vector>

namespace verdin {

inline constexpr std::string_view kTrackVariablesGroup = "Track";
inline constexpr std::string_view kPlaylistVariablesGroup = "Playlist";
inline constexpr std::string_view kFrameReferencesGroup = "ID3 Frame";

struct TemplateVariable {
    std::string_view reference;  // "%dur%": what the menu inserts
    std::string_view description;
    std::string_view group;
};

// "Insert a variable reference into Track Title": %sugtitle%, %path%, %body%, %ext%, then
// every frame name of the tag layer ("%LEADARTIST%") under "ID3 Frame".
std::vector<TemplateVariable> TrackTitleVariables();
// "... into Window Title", in lookup order.
std::vector<TemplateVariable> WindowTitleVariables();
// "... into Status String": the window title's, then the four times.
std::vector<TemplateVariable> StatusStringVariables();

}  // namespace verdin
