#pragma once
// Names of the ID3v2 attached-picture types 0..20 (the same numbering FLAC and Xiph
// pictures use), shown on the tag page of the properties dialog.
#include <array>
#include <string_view>

namespace verdin {

inline constexpr std::size_t kPictureTypeCount = 21;

const std::array<std::string_view, kPictureTypeCount>& PictureTypeTable();

// The name of a picture type; types outside 0..20 read as "Other".
std::string_view PictureTypeName(int type);

}  // namespace verdin
