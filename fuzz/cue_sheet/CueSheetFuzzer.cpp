// The cue sheet fuzzer: arbitrary bytes are parsed as a sheet. A sheet taken must hold an
// audio track, numbers from 1 to 99 named once, tracks that start after the one before
// them in the same file and end after they start; the same text with CRLF line ends must
// give the same tracks, starts and titles. A refused sheet must say where. Anything else
// aborts.
#include "playlist/files/CueSheet.h"

#include <cstdlib>
#include <set>

namespace {

void CheckSheet(const verdin::CueSheet& sheet) {
    std::set<int> numbers;
    bool audio = false;
    for (size_t i = 0; i < sheet.tracks.size(); ++i) {
        const verdin::CueTrack& track = sheet.tracks[i];
        audio = audio || track.audio;
        if (track.number < 1 || track.number > 99 || !numbers.insert(track.number).second) std::abort();
        if (track.file.empty() || track.start < 0) std::abort();
        if (i > 0 && sheet.tracks[i - 1].file == track.file && sheet.tracks[i - 1].start >= track.start) std::abort();
        const int64_t end = verdin::CueTrackEnd(sheet, i);
        if (end != -1 && end <= track.start) std::abort();
    }
    if (!audio) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const verdin::CueSheetParse parse = verdin::ParseCueSheet(text);
    if (!parse.ok) {
        if (parse.error.empty() || !parse.sheet.tracks.empty()) std::abort();
        return 0;
    }
    CheckSheet(parse.sheet);
    // A line may already end in "\r": the CRLF copy is made only of texts without one.
    if (text.find('\r') != std::string::npos) return 0;
    std::string crlf;
    for (const char c : text) crlf += c == '\n' ? std::string("\r\n") : std::string(1, c);
    const verdin::CueSheetParse again = verdin::ParseCueSheet(crlf);
    if (!again.ok || again.sheet.tracks.size() != parse.sheet.tracks.size()) std::abort();
    for (size_t i = 0; i < again.sheet.tracks.size(); ++i) {
        const verdin::CueTrack& track = again.sheet.tracks[i];
        if (track.start != parse.sheet.tracks[i].start || track.title != parse.sheet.tracks[i].title) std::abort();
    }
    return 0;
}
