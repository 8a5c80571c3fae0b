#pragma once
// The player's command line:
//   verdin [--headless] [--quit-after-play] [command text...]
//   verdin --play | --pause | --play-pause | --stop | --next | --previous
//          | --seek=[+|-]SECONDS | --volume=[+|-]PERCENT | --current[=FORMAT] ...
//   verdin --install | --uninstall | --associations
//   verdin --associate [ext...] | --unassociate [ext...]
//   verdin --help | --version
// A first argument that begins with the byte 0xB5 is the install step, one that begins
// with ":" the uninstall step, whatever follows (SetupModes.h).
// The command text is what the desktop hands over: "/PLAY" and paths. Arguments that hold
// blanks are quoted again, so a path given as one argument stays one token. The remote
// requests go to the running player in the order given (RemoteControl.h).
#include <string>
#include <vector>

namespace verdin {

struct RemoteRequest {
    enum class Kind { kPlay, kPause, kPlayPause, kStop, kNext, kPrevious, kSeek, kVolume, kCurrent };
    Kind kind = Kind::kPlay;
    // kSeek: seconds (fractions allowed); kVolume: percent. Relative when signed.
    double amount = 0;
    bool relative = false;
    // kCurrent: a title template; empty for the window caption.
    std::string format;
};

enum class SetupMode { kNone, kInstall, kUninstall, kAssociate, kUnassociate, kAssociations };

struct CommandLine {
    bool headless = false;
    bool quitAfterPlay = false;
    bool help = false;
    bool version = false;
    std::string unknownOption;  // the first option not understood, or given a bad value
    std::string commandText;
    std::vector<RemoteRequest> remote;
    SetupMode setup = SetupMode::kNone;
    std::vector<std::string> extensions;  // --associate, --unassociate: each with its dot
};

CommandLine ParseCommandLine(int argc, const char* const* argv);

extern const char* const kUsageText;

}  // namespace verdin
