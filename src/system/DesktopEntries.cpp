#include "DesktopEntries.h"

#include "base/Text.h"

#include <array>

namespace verdin {

namespace {

constexpr std::string_view kPlayName = "Play with Verdin";
constexpr std::string_view kAddName = "Add to Verdin main playlist";

std::string Entry(std::string_view name, std::string_view exec, std::string_view mimeTypes, std::string_view extra) {
    std::string text = "[Desktop Entry]\nType=Application\nVersion=1.5\nName=";
    text += name;
    text += "\nIcon=verdin\nExec=";
    text += exec;
    text += "\nMimeType=";
    text += mimeTypes;
    text += "\nNoDisplay=true\nTerminal=false\n";
    text += extra;
    return text;
}

}  // namespace

std::string_view ClassOfExtension(std::string_view extension) {
    constexpr std::array kPlaylists = {".vdp", ".m3u", ".pls", ".m3u8"};
    for (const char* playlist : kPlaylists)
        if (EqualsIgnoreCase(extension, playlist)) return kPlaylistClass;
    return kTrackClass;
}

std::string DesktopFileName(std::string_view name) { return std::string(name) + ".desktop"; }

std::string ExecQuoted(std::string_view program) {
    // Inside quotes an Exec line escapes ", `, $ and \ with a backslash; the desktop
    // file's own escaping doubles that backslash.
    std::string quoted = "\"";
    for (const char c : program) {
        if (c == '"' || c == '`' || c == '$' || c == '\\') quoted += "\\\\";
        quoted += c;
    }
    return quoted + "\"";
}

std::string ClassEntryText(std::string_view className, std::string_view program,
                           const std::vector<std::string>& mimeTypes) {
    std::string types;
    for (const std::string& type : mimeTypes) types += type + ";";
    const std::string play = ExecQuoted(program) + " /PLAY %F", add = ExecQuoted(program) + " %F";
    const std::string actions = "Actions=Play;Add;\n\n[Desktop Action Play]\nName=" + std::string(kPlayName) +
                                "\nExec=" + play + "\n\n[Desktop Action Add]\nName=" + std::string(kAddName) +
                                "\nExec=" + add + "\n";
    return Entry(className == kPlaylistClass ? "Verdin Playlist File" : "Verdin Audio File", play, types, actions);
}

std::string FolderVerbEntryText(std::string_view verb, std::string_view program) {
    const bool play = verb == kPlayFolderVerb;
    const std::string exec = ExecQuoted(program) + (play ? " /PLAY %F" : " %F");
    return Entry(play ? kPlayName : kAddName, exec, "inode/directory;", "");
}

}  // namespace verdin
