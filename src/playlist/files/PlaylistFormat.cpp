#include "PlaylistFormat.h"

#include "base/Text.h"

#include <array>

namespace verdin {

namespace {

struct FormatRow {
    PlaylistFormat format;
    std::string_view extension;
};

constexpr std::array<FormatRow, 3> kFormats{{
    {PlaylistFormat::kM3u, ".m3u"},
    {PlaylistFormat::kPls, ".pls"},
    {PlaylistFormat::kVdp, ".vdp"},
}};

}  // namespace

std::string_view FormatExtension(PlaylistFormat format) {
    for (const FormatRow& row : kFormats)
        if (row.format == format) return row.extension;
    return {};
}

bool IsPlaylistFormat(PlaylistFormat format) { return !FormatExtension(format).empty(); }

std::string NameWithFormatExtension(std::string_view fileName, PlaylistFormat format) {
    const std::string_view extension = FormatExtension(format);
    std::string name(fileName);
    if (!EqualsIgnoreCase(ExtensionOf(fileName), extension)) name += extension;
    return name;
}

}  // namespace verdin
