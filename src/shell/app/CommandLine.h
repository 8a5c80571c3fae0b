#pragma once
// The player's command line:
//   verdin [--headless] [--quit-after-play] [command text...]
//   verdin --help | --version
// The command text is what the desktop hands over: "/PLAY" and paths. Arguments that hold
// blanks are quoted again, so a path given as one argument stays one token.
#include <string>

namespace verdin {

struct CommandLine {
    bool headless = false;
    bool quitAfterPlay = false;
    bool help = false;
    bool version = false;
    std::string unknownOption;  // the first option not understood
    std::string commandText;
};

CommandLine ParseCommandLine(int argc, const char* const* argv);

extern const char* const kUsageText;

}  // namespace verdin
