#pragma once
// Reading a desktop link file (a ".desktop" entry of Type=Link, as file managers make for
// "link to file" and as desktops store bookmarks): the address in its URL key.
// Toolkit-free, so it can be fuzzed on its own.
//
// Only the "[Desktop Entry]" group counts; localized keys ("URL[de]") are not the URL;
// the value's escapes (\s \n \t \r \\) are undone; the last of repeated keys wins.
#include <optional>
#include <string>
#include <string_view>

namespace verdin {

// The URL of a Type=Link entry, or nothing for any other text.
std::optional<std::string> DesktopLinkUrl(std::string_view fileText);

}  // namespace verdin
