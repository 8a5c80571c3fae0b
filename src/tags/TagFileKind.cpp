#include "tags/TagFileKind.h"

#include "base/Text.h"

#include <array>

namespace verdin {
namespace {

struct ExtensionRow {
    std::string_view extension;
    TagFileKind kind;
};

constexpr std::array<ExtensionRow, 15> kExtensions{{
    {".mp3", TagFileKind::Mpeg},  {".mp2", TagFileKind::Mpeg},  {".mp1", TagFileKind::Mpeg},
    {".mpa", TagFileKind::Mpeg},  {".mpga", TagFileKind::Mpeg}, {".flac", TagFileKind::Flac},
    {".fla", TagFileKind::Flac},  {".ogg", TagFileKind::Ogg},   {".oga", TagFileKind::Ogg},
    {".opus", TagFileKind::Ogg},  {".wav", TagFileKind::Wav},   {".wave", TagFileKind::Wav},
    {".aif", TagFileKind::Aiff},  {".aiff", TagFileKind::Aiff}, {".aifc", TagFileKind::Aiff},
}};

constexpr std::array<std::string_view, kTagFileKindCount> kNames{"audio", "MPEG audio", "FLAC",
                                                                  "Ogg",   "WAV",        "AIFF"};

}  // namespace

TagFileKind TagFileKindFor(std::string_view fileName) {
    const std::string_view extension = ExtensionOf(fileName);
    for (const ExtensionRow& row : kExtensions)
        if (EqualsIgnoreCase(row.extension, extension)) return row.kind;
    return TagFileKind::Plain;
}

std::string_view TagFileKindName(TagFileKind kind) {
    const auto index = static_cast<std::size_t>(kind);
    return index < kNames.size() ? kNames[index] : kNames[0];
}

}  // namespace verdin
