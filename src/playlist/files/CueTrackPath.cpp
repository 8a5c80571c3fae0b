#include "CueTrackPath.h"

#include "base/Text.h"
#include "playlist/TrackName.h"
#include "playlist/files/EntryPath.h"
#include "playlist/files/FileLookup.h"

#include <fstream>
#include <iterator>

namespace verdin {

namespace {

// Sheets are text files of a few kilobytes; anything far larger is no sheet.
constexpr std::streamsize kMaxSheetBytes = 1 << 20;

}  // namespace

bool IsCueSheetName(std::string_view path) { return EqualsIgnoreCase(SplitTrackName(path).extension, ".cue"); }

std::string CueTrackPath(std::string_view sheet, int number) {
    return std::string(sheet) + "#" + std::to_string(number);
}

std::optional<CueTrackName> SplitCueTrackPath(std::string_view path) {
    const size_t hash = path.rfind('#');
    if (hash == std::string_view::npos || hash + 1 == path.size() || path.size() - hash > 3) return std::nullopt;
    const std::string_view digits = path.substr(hash + 1);
    for (const char c : digits)
        if (c < '0' || c > '9') return std::nullopt;
    const std::string_view sheet = path.substr(0, hash);
    if (!IsCueSheetName(sheet) || sheet.find("://") != std::string_view::npos) return std::nullopt;
    return CueTrackName{std::string(sheet), ParseDecimal(digits)};
}

CueSheetParse ReadCueSheet(const std::string& sheetPath) {
    std::ifstream in(sheetPath, std::ios::binary);
    std::string text(static_cast<size_t>(kMaxSheetBytes) + 1, '\0');
    if (in) in.read(text.data(), kMaxSheetBytes + 1);
    if (!in && !in.eof()) return {false, {}, "the file cannot be read"};
    text.resize(static_cast<size_t>(in.gcount()));
    if (text.size() > static_cast<size_t>(kMaxSheetBytes)) return {false, {}, "the file is too large for a cue sheet"};
    return ParseCueSheet(text);
}

std::optional<CueTrackSource> ResolveCueTrack(std::string_view path, std::string& error) {
    const std::optional<CueTrackName> name = SplitCueTrackPath(path);
    if (!name) return std::nullopt;
    const CueSheetParse parse = ReadCueSheet(name->sheet);
    if (!parse.ok) {
        error = "\"" + name->sheet + "\"\nis not a cue sheet that can be played: " + parse.error + ".";
        return std::nullopt;
    }
    const CueSheet& sheet = parse.sheet;
    for (size_t i = 0; i < sheet.tracks.size(); ++i) {
        const CueTrack& track = sheet.tracks[i];
        if (track.number != name->number || !track.audio) continue;
        const std::optional<std::string> image =
            FileLookup().Find(EntryToPath(track.file, SplitTrackName(name->sheet).path));
        if (!image) {
            error = "\"" + name->sheet + "\"\nnames the file \"" + track.file + "\", which cannot be found.";
            return std::nullopt;
        }
        return CueTrackSource{*image, track.start, CueTrackEnd(sheet, i), track.title, track.performer, sheet.title};
    }
    error = "\"" + name->sheet + "\"\nhas no audio track " + std::to_string(name->number) + ".";
    return std::nullopt;
}

}  // namespace verdin
