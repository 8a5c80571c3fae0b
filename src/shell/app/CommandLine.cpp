#include "CommandLine.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string_view>

namespace verdin {

const char* const kUsageText =
    "Usage: verdin [--headless] [--quit-after-play] [/PLAY] [path...]\n"
    "       verdin --install | --uninstall | --associations\n"
    "       verdin --associate [ext...] | --unassociate [ext...]\n"
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
    "Desktop set-up for the user who runs it (no player is started):\n"
    "  --install          menu entry, file classes, icon and UninstallVerdin.sh\n"
    "  --uninstall        remove them, the settings and the associations\n"
    "  --associate        make Verdin the default for these extensions (all it plays\n"
    "                     when none are given); --unassociate gives them back\n"
    "  --associations     print each extension's state: yes, no (another program) or none\n"
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

struct SetupOption {
    const char* option;
    SetupMode mode;
};

constexpr SetupOption kSetupOptions[] = {
    {"--install", SetupMode::kInstall},         {"--uninstall", SetupMode::kUninstall},
    {"--associate", SetupMode::kAssociate},     {"--unassociate", SetupMode::kUnassociate},
    {"--associations", SetupMode::kAssociations},
};

}  // namespace

CommandLine ParseCommandLine(int argc, const char* const* argv) {
    CommandLine line;
    // The installer's and the uninstall script's calls: the first byte decides.
    if (argc > 1 && static_cast<unsigned char>(argv[1][0]) == 0xB5) line.setup = SetupMode::kInstall;
    if (argc > 1 && argv[1][0] == ':') line.setup = SetupMode::kUninstall;
    if (line.setup != SetupMode::kNone) return line;
    bool optionsDone = false;
    for (int i = 1; i < argc; ++i) {
        const char* arg = argv[i];
        if (line.setup == SetupMode::kAssociate || line.setup == SetupMode::kUnassociate) {
            line.extensions.push_back(arg[0] == '.' ? std::string(arg) : "." + std::string(arg));
            continue;
        }
        if (!optionsDone && std::strncmp(arg, "--", 2) == 0) {
            const auto setup = std::find_if(std::begin(kSetupOptions), std::end(kSetupOptions),
                                            [arg](const SetupOption& o) { return std::strcmp(arg, o.option) == 0; });
            if (setup != std::end(kSetupOptions)) line.setup = setup->mode;
            else if (std::strcmp(arg, "--") == 0) optionsDone = true;
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
