#include "CueSheet.h"

#include "base/Text.h"

#include <algorithm>

namespace verdin {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// Splits off the first blank-separated word of text.
std::string_view TakeWord(std::string_view& text) {
    text = TrimBlanks(text);
    const size_t end = std::min(text.find_first_of(" \t"), text.size());
    const std::string_view word = text.substr(0, end);
    text = TrimBlanks(text.substr(end));
    return word;
}

bool AllDigits(std::string_view text) {
    const auto digit = [](char c) { return c >= '0' && c <= '9'; };
    return !text.empty() && text.size() <= 6 && std::all_of(text.begin(), text.end(), digit);
}

// mm:ss:ff; -1 when malformed (seconds below 60, frames below 75).
int64_t ParseCueTime(std::string_view text) {
    const size_t first = text.find(':');
    const size_t second = first == std::string_view::npos ? first : text.find(':', first + 1);
    if (second == std::string_view::npos) return -1;
    const std::string_view minutes = text.substr(0, first);
    const std::string_view seconds = text.substr(first + 1, second - first - 1);
    const std::string_view frames = text.substr(second + 1);
    if (!AllDigits(minutes) || !AllDigits(seconds) || !AllDigits(frames)) return -1;
    const int64_t s = ParseDecimal(seconds), f = ParseDecimal(frames);
    if (s >= 60 || f >= kCdFramesPerSecond) return -1;
    return (ParseDecimal(minutes) * 60 + s) * kCdFramesPerSecond + f;
}

class Parser {
public:
    bool Line(std::string_view line) {
        std::string_view rest = line;
        const std::string command = ToUpper(TakeWord(rest));
        if (command.empty() || command == "REM") return true;
        if (command == "FILE") return File(rest);
        if (command == "TRACK") return Track(rest);
        if (command == "INDEX") return Index(rest);
        if (command == "TITLE" || command == "PERFORMER") return Text(command, rest);
        return true;  // CATALOG, FLAGS, ISRC, PREGAP, SONGWRITER...: nothing a player needs
    }

    bool Finish() {
        if (!EndTrack()) return false;
        if (std::none_of(sheet.tracks.begin(), sheet.tracks.end(), [](const CueTrack& t) { return t.audio; }))
            return Fail("the sheet names no audio track");
        return true;
    }

    CueSheet sheet;
    std::string error;

private:
    bool Fail(std::string text) {
        error = std::move(text);
        return false;
    }

    // A value: the text between quotes, or the rest of the line.
    bool Value(std::string_view rest, std::string& value, std::string_view& after) {
        rest = TrimBlanks(rest);
        if (!rest.empty() && rest.front() == '"') {
            const size_t close = rest.find('"', 1);
            if (close == std::string_view::npos) return Fail("a quoted value is not closed");
            value.assign(rest.substr(1, close - 1));
            after = TrimBlanks(rest.substr(close + 1));
            return true;
        }
        value.assign(rest);
        after = {};
        return true;
    }

    bool File(std::string_view rest) {
        if (!EndTrack()) return false;
        std::string_view after;
        const bool quoted = !TrimBlanks(rest).empty() && TrimBlanks(rest).front() == '"';
        if (!Value(rest, file_, after)) return false;
        if (!quoted) {  // FILE name with blanks.wav WAVE: the last word is the type
            const size_t blank = file_.find_last_of(" \t");
            if (blank != std::string::npos) file_ = std::string(TrimBlanks(std::string_view(file_).substr(0, blank)));
        }
        if (file_.empty()) return Fail("FILE names no file");
        // The file of the track before named again goes on after that track.
        const bool sameFile = !sheet.tracks.empty() && sheet.tracks.back().file == file_;
        trackStartFloor_ = sameFile ? sheet.tracks.back().start : -1;
        return true;
    }

    bool Track(std::string_view rest) {
        if (!EndTrack()) return false;
        if (file_.empty()) return Fail("TRACK comes before any FILE");
        const std::string_view number = TakeWord(rest);
        if (!AllDigits(number) || ParseDecimal(number) < 1 || ParseDecimal(number) > 99)
            return Fail("TRACK needs a number from 1 to 99");
        CueTrack track;
        track.number = ParseDecimal(number);
        for (const CueTrack& seen : sheet.tracks)
            if (seen.number == track.number) return Fail("track " + std::to_string(track.number) + " is named twice");
        track.audio = EqualsIgnoreCase(TakeWord(rest), "AUDIO");
        track.file = file_;
        sheet.tracks.push_back(std::move(track));
        open_ = true;
        return true;
    }

    bool Index(std::string_view rest) {
        if (!open_) return Fail("INDEX comes before any TRACK");
        const std::string_view number = TakeWord(rest);
        const int64_t time = ParseCueTime(TakeWord(rest));
        if (!AllDigits(number) || time < 0) return Fail("INDEX needs a number and a time mm:ss:ff");
        if (ParseDecimal(number) != 1) return true;  // INDEX 00 is the pre-gap: no boundary
        CueTrack& track = sheet.tracks.back();
        if (track.start >= 0) return Fail("track " + std::to_string(track.number) + " has two INDEX 01");
        if (time <= trackStartFloor_)
            return Fail("track " + std::to_string(track.number) + " starts before the track ahead of it ends");
        track.start = trackStartFloor_ = time;
        return true;
    }

    bool Text(const std::string& command, std::string_view rest) {
        std::string value;
        std::string_view after;
        if (!Value(rest, value, after)) return false;
        const bool forTrack = open_;
        std::string& target = command == "TITLE" ? (forTrack ? sheet.tracks.back().title : sheet.title)
                                                 : (forTrack ? sheet.tracks.back().performer : sheet.performer);
        target = std::move(value);
        return true;
    }

    bool EndTrack() {
        if (!open_) return true;
        open_ = false;
        CueTrack& track = sheet.tracks.back();
        if (track.start < 0) return Fail("track " + std::to_string(track.number) + " has no INDEX 01");
        if (track.performer.empty()) track.performer = sheet.performer;
        return true;
    }

    std::string file_;
    bool open_ = false;              // a TRACK is being read
    int64_t trackStartFloor_ = -1;  // the last start within the current FILE
};

}  // namespace

CueSheetParse ParseCueSheet(std::string_view text) {
    if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
    Parser parser;
    int lineNumber = 0;
    while (!text.empty()) {
        const size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text = end < text.size() ? text.substr(end + 1) : std::string_view{};
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        ++lineNumber;
        const std::string where = "line " + std::to_string(lineNumber) + ": ";
        if (line.find('\0') != std::string_view::npos) return {false, {}, where + "not text"};
        if (!parser.Line(line)) return {false, {}, where + parser.error};
    }
    if (!parser.Finish()) return {false, {}, "at the end: " + parser.error};
    return {true, std::move(parser.sheet), {}};
}

int64_t CueTrackEnd(const CueSheet& sheet, size_t index) {
    if (index + 1 >= sheet.tracks.size() || sheet.tracks[index + 1].file != sheet.tracks[index].file) return -1;
    return sheet.tracks[index + 1].start;
}

}  // namespace verdin
