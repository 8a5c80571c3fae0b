#include "CommandLine.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string_view>

namespace verdin {

const char* const kUsageText =
    "Usage: verdin [--headless] [--quit-after-play] [/PLAY] [path...]\n"
    "       verdin --play | --pause | --play-pause | --stop | --next | --previous\n"
    "              | --seek=[+|-]SECONDS | --volume=[+|-]PERCENT | --current[=FORMAT] ...\n"
    "\n"
    "Plays files, folders, playlists and URLs. A running Verdin takes the paths over:\n"
    "with /PLAY it replaces its playlist with them and plays, without it adds them.\n"
    "\n"
    "  --headless         run without windows; messages go to standard error\n"
    "  --quit-after-play  end when playback ends\n"
    "  --help             show this text\n"
    "  --version          show the version\n"
    "\n"
    "Remote control of the running Verdin, in the order given (no player is started):\n"
    "  --play             resume when paused, play when stopped\n"
    "  --pause            pause when playing\n"
    "  --play-pause       pause or resume; play when stopped\n"
    "  --stop, --next, --previous\n"
    "  --seek=N           jump to N seconds into the track; +N and -N jump by N seconds\n"
    "  --volume=N         set the volume to N percent; +N and -N change it by N points\n"
    "  --current          print the window caption of what plays\n"
    "  --current=FORMAT   print FORMAT filled in as the status line's template is\n"
    "                     (%title%, %num%, %dur%, %status%, %time%, %timel%, ...)\n"
    "\n"
    "Scripts control a running Verdin over D-Bus: org.brimfell.Verdin, objects /System\n"
    "(Execute) and /Player (Command, Rows, Status, ...), and through MPRIS.\n";

namespace {

using Kind = RemoteRequest::Kind;

struct PlainRequest {
    const char* option;
    Kind kind;
};

constexpr PlainRequest kPlainRequests[] = {
    {"--play", Kind::kPlay}, {"--pause", Kind::kPause}, {"--play-pause", Kind::kPlayPause}, {"--stop", Kind::kStop},
    {"--next", Kind::kNext}, {"--previous", Kind::kPrevious}, {"--current", Kind::kCurrent},
};

// "N", "+N" or "-N": a finite number, relative when it carries a sign.
std::optional<RemoteRequest> Amount(Kind kind, std::string_view text) {
    if (text.empty()) return std::nullopt;
    const std::string copy(text);
    char* end = nullptr;
    const double value = std::strtod(copy.c_str(), &end);
    if (end != copy.c_str() + copy.size() || !std::isfinite(value)) return std::nullopt;
    RemoteRequest request;
    request.kind = kind;
    request.amount = value;
    request.relative = text[0] == '+' || text[0] == '-';
    return request;
}

// A remote request, or nothing when the option is none (or its value is bad).
std::optional<RemoteRequest> ParseRemote(std::string_view arg) {
    for (const PlainRequest& plain : kPlainRequests)
        if (arg == plain.option) return RemoteRequest{plain.kind, 0, false, {}};
    const size_t equals = arg.find('=');
    if (equals == std::string_view::npos) return std::nullopt;
    const std::string_view name = arg.substr(0, equals), value = arg.substr(equals + 1);
    if (name == "--seek") return Amount(Kind::kSeek, value);
    if (name == "--volume") return Amount(Kind::kVolume, value);
    if (name == "--current") return RemoteRequest{Kind::kCurrent, 0, false, std::string(value)};
    return std::nullopt;
}

}  // namespace

CommandLine ParseCommandLine(int argc, const char* const* argv) {
    CommandLine line;
    bool optionsDone = false;
    for (int i = 1; i < argc; ++i) {
        const char* arg = argv[i];
        if (!optionsDone && std::strncmp(arg, "--", 2) == 0) {
            if (std::strcmp(arg, "--") == 0) optionsDone = true;
            else if (std::strcmp(arg, "--headless") == 0) line.headless = true;
            else if (std::strcmp(arg, "--quit-after-play") == 0) line.quitAfterPlay = true;
            else if (std::strcmp(arg, "--help") == 0) line.help = true;
            else if (std::strcmp(arg, "--version") == 0) line.version = true;
            else if (std::optional<RemoteRequest> request = ParseRemote(arg)) line.remote.push_back(*request);
            else if (line.unknownOption.empty()) line.unknownOption = arg;
            continue;
        }
        if (!line.commandText.empty()) line.commandText += ' ';
        if (std::strchr(arg, ' ') && arg[0] != '"') line.commandText += std::string("\"") + arg + "\"";
        else line.commandText += arg;
    }
    return line;
}

}  // namespace verdin
