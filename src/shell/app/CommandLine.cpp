#include "CommandLine.h"

#include <cstring>

namespace verdin {

const char* const kUsageText =
    "Usage: verdin [--headless] [--quit-after-play] [/PLAY] [path...]\n"
    "\n"
    "Plays files, folders, playlists and URLs. A running Verdin takes the paths over:\n"
    "with /PLAY it replaces its playlist with them and plays, without it adds them.\n"
    "\n"
    "  --headless         run without windows; messages go to standard error\n"
    "  --quit-after-play  end when playback ends\n"
    "  --help             show this text\n"
    "  --version          show the version\n"
    "\n"
    "Scripts control a running Verdin over D-Bus: org.brimfell.Verdin, objects /System\n"
    "(Execute) and /Player (Command, Rows, Status, ...).\n";

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
