#include "tags/PictureTypes.h"

namespace verdin {
namespace {

constexpr std::array<std::string_view, kPictureTypeCount> kPictureTypes{
    "Other",
    "32x32 pixels 'file icon'",
    "Other file icon",
    "Cover (front)",
    "Cover (back)",
    "Leaflet page",
    "Media (e.g. lable side of CD)",
    "Lead artist/lead performer/soloist",
    "Artist/performer",
    "Conductor",
    "Band/Orchestra",
    "Composer",
    "Lyricist/text writer",
    "Recording Location",
    "During recording",
    "During performance",
    "Movie/video screen capture",
    "A bright coloured fish",
    "Illustration",
    "Band/artist logotype",
    "Publisher/Studio logotype",
};

}  // namespace

const std::array<std::string_view, kPictureTypeCount>& PictureTypeTable() { return kPictureTypes; }

std::string_view PictureTypeName(int type) {
    if (type < 0 || type >= static_cast<int>(kPictureTypeCount)) return kPictureTypes[0];
    return kPictureTypes[static_cast<std::size_t>(type)];
}

}  // namespace verdin
