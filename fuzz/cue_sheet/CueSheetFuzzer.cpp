// The cue sheet fuzzer: arbitrary bytes are parsed as a sheet. A sheet taken must hold an
// audio track, numbers from 1 to 99 named once, tracks that start after the one before
// them in the same file and end after they start; the same text with CRLF line ends must
// read the same. A refused sheet must say where. Anything else aborts.
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

bool SameSheet(const verdin::CueSheet& a, const verdin::CueSheet& b) {
    if (a.title != b.title || a.performer != b.performer || a.tracks.size() != b.tracks.size()) return false;
    for (size_t i = 0; i < a.tracks.size(); ++i) {
        const verdin::CueTrack& x = a.tracks[i];
        const verdin::CueTrack& y = b.tracks[i];
        if (x.number != y.number || x.audio != y.audio || x.file != y.file || x.title != y.title ||
            x.performer != y.performer || x.start != y.start)
            return false;
    }
    return true;
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
    if (!again.ok || !SameSheet(again.sheet, parse.sheet)) std::abort();
    return 0;
}
