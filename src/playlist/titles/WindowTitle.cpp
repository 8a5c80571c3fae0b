#include "playlist/titles/WindowTitle.h"

#include "playlist/Playlist.h"
#include "playlist/TrackRecord.h"
#include "playlist/titles/DurationText.h"
#include "playlist/titles/StatusTimes.h"
#include "playlist/titles/TemplateExpansion.h"
#include "playlist/titles/TrackTitle.h"

#include <array>

namespace verdin {
namespace {

using Expander = void (*)(const TitleState&, std::string&);

struct WindowVariable {
    std::string_view name;
    Expander expand;
};

std::string_view StatusWord(PlayerStatus status) {
    switch (status) {
        case PlayerStatus::Paused: return "paused";
        case PlayerStatus::Playing: return "playing";
        case PlayerStatus::Stopped: break;
    }
    return "stopped";
}

// The variables in the order they are looked up.
constexpr std::array<WindowVariable, 12> kWindowVariables{{
    {"sugtitle", [](const TitleState& s, std::string& out) { if (s.track) out += s.track->SuggestedTitle(); }},
    {"title", [](const TitleState& s, std::string& out) {
         if (s.track) out += ExpandTrackTitle(*s.track, s.templates.trackTitle);
     }},
    {"num", [](const TitleState& s, std::string& out) {
         if (s.track && s.number > 0) out += std::to_string(s.number) + ".";
     }},
    {"path", [](const TitleState& s, std::string& out) { if (s.track) out += s.track->Path(); }},
    {"body", [](const TitleState& s, std::string& out) { if (s.track) out += s.track->Body(); }},
    {"ext", [](const TitleState& s, std::string& out) { if (s.track) out += s.track->Extension(); }},
    {"dur", [](const TitleState& s, std::string& out) {
         if (s.track) out += FormatDuration(s.track->Duration() / 1000);
     }},
    {"ppath", [](const TitleState& s, std::string& out) { if (s.holder) out += s.holder->Path(); }},
    {"pbody", [](const TitleState& s, std::string& out) { if (s.holder) out += s.holder->Body(); }},
    {"pext", [](const TitleState& s, std::string& out) { if (s.holder) out += s.holder->Extension(); }},
    {"pdur", [](const TitleState& s, std::string& out) {
         if (s.holder) out += FormatDuration(s.holder->Duration() / 1000);
     }},
    {"status", [](const TitleState& s, std::string& out) { out += StatusWord(s.status); }},
}};

bool ShowsEmptyPlaylist(const TitleState& state) { return !state.trackLoaded && state.mainPlaylistEmpty; }

std::string Expand(const TitleState& state, std::string_view text, const ReferenceStyle& style) {
    return ExpandReferences(text, style, [&state](std::string_view name, std::string& out) {
        for (const WindowVariable& variable : kWindowVariables) {
            if (variable.name == name) {
                variable.expand(state, out);
                return true;
            }
        }
        return false;
    });
}

}  // namespace

std::string ExpandWindowTitle(const TitleState& state) {
    if (ShowsEmptyPlaylist(state)) return std::string(kEmptyPlaylistTitle);
    return Expand(state, state.templates.windowTitle, {});
}

std::string ExpandStatusTemplate(const TitleState& state) {
    if (ShowsEmptyPlaylist(state)) return std::string(kEmptyPlaylistTitle);
    return Expand(state, state.templates.statusString, {.percentSign = "%%", .keepUnknown = true, .escapeValues = true});
}

std::string ExpandStatusString(const TitleState& state) {
    return ComposeStatusTimes(ExpandStatusTemplate(state), state);
}

}  // namespace verdin
