#include "tags/Id3v1Import.h"

#include "tags/TaglibText.h"

namespace verdin {

TagVersion ImportId3v1(const TagLib::ID3v1::Tag& tag, TagBuilder& b) {
    constexpr unsigned kNoGenre = 255;
    b.AddText(FrameId::Title, Utf8(tag.title()));
    b.AddText(FrameId::LeadArtist, Utf8(tag.artist()));
    b.AddText(FrameId::Album, Utf8(tag.album()));
    if (tag.year() != 0) b.AddText(FrameId::Year, std::to_string(tag.year()));
    if (tag.genreNumber() < kNoGenre) b.AddText(FrameId::ContentType, "(" + std::to_string(tag.genreNumber()) + ")");
    if (tag.track() != 0) b.AddText(FrameId::TrackNum, std::to_string(tag.track()));
    const std::string comment = Utf8(tag.comment());
    if (!comment.empty()) {
        FrameView view;
        view.id = FrameId::Comment;
        view.text = comment;
        view.language = "eng";
        view.description = kId3v1CommentDescription;
        b.Add(view);
    }
    // TagLib reads a track number only from the ID3v1.1 layout (comment byte 28 zero,
    // byte 29 not), so a track number is what tells the two layouts apart.
    return TagVersion{1, static_cast<std::uint8_t>(tag.track() != 0 ? 1 : 0), 0};
}

}  // namespace verdin
