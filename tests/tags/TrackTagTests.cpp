#include "tags/FrameValues.h"
#include "tags/TrackTag.h"

#include <gtest/gtest.h>

namespace verdin {
namespace {

FrameView Comment(std::string_view text, std::string_view description) {
    FrameView view;
    view.id = FrameId::Comment;
    view.text = text;
    view.language = "eng";
    view.description = description;
    return view;
}

TEST(TrackTag, KeepsEveryFieldOfEveryFrame) {
    TrackTag tag;
    FrameView picture;
    picture.id = FrameId::Picture;
    picture.description = "front";
    picture.mimeType = "image/png";
    picture.pictureType = 3;
    picture.data = std::string_view("\x89PNG\0\1", 6);
    picture.dataSize = 6;
    tag.AddText(FrameId::Title, "Song");
    tag.Add(Comment("first", "iTunNORM"));
    tag.Add(picture);

    ASSERT_EQ(tag.size(), 3u);
    EXPECT_EQ(tag[0].id, FrameId::Title);
    EXPECT_EQ(tag[0].text, "Song");
    EXPECT_EQ(tag[1].language, "eng");
    EXPECT_EQ(tag[1].description, "iTunNORM");
    const FrameView read = tag[2];
    EXPECT_EQ(read.mimeType, "image/png");
    EXPECT_EQ(read.pictureType, 3);
    EXPECT_EQ(read.data, std::string_view("\x89PNG\0\1", 6));
    EXPECT_TRUE(read.dataKept());
}

TEST(TrackTag, FindPrefersTheFrameWithoutDescription) {
    TrackTag tag;
    tag.Add(Comment("player data", "iTunNORM"));
    EXPECT_EQ(tag.Find(FrameId::Comment)->text, "player data");  // the only one
    tag.Add(Comment("the real comment", ""));
    EXPECT_EQ(tag.Find(FrameId::Comment)->text, "the real comment");
    EXPECT_FALSE(tag.Find(FrameId::Title).has_value());
    EXPECT_TRUE(tag.Has(FrameId::Comment));
    EXPECT_FALSE(tag.Has(FrameId::Title));
}

TEST(TrackTag, EditingKeepsOtherFramesIntact) {
    TrackTag tag;
    tag.AddText(FrameId::Title, "Old title");
    tag.AddText(FrameId::LeadArtist, "Artist");
    tag.AddText(FrameId::Comment, "c1");
    tag.AddText(FrameId::Comment, "c2");

    tag.SetText(FrameId::Title, "New title");
    tag.SetText(FrameId::Album, "Album");  // absent: added
    tag.SetText(FrameId::LeadArtist, tag.Find(FrameId::Title)->text);  // from the tag's own pool
    EXPECT_EQ(FrameStringValue(tag, FrameId::Title), "New title");
    EXPECT_EQ(FrameStringValue(tag, FrameId::LeadArtist), "New title");
    EXPECT_EQ(FrameStringValue(tag, FrameId::Album), "Album");

    tag.Add(tag[0]);  // a copy of a frame of the same tag
    EXPECT_EQ(tag[tag.size() - 1].text, "New title");

    tag.RemoveAll(FrameId::Comment);
    EXPECT_FALSE(tag.Has(FrameId::Comment));
    tag.Remove(0);
    tag.Remove(99);  // out of range: nothing
    ASSERT_EQ(tag.size(), 3u);

    const TrackTag before = tag;
    const std::size_t heapBefore = tag.HeapBytes();
    tag.Compact();
    EXPECT_TRUE(tag == before);
    EXPECT_LT(tag.HeapBytes(), heapBefore);  // the replaced texts are gone
}

TEST(TrackTag, IsSmallToHoldForALargeLibrary) {
    EXPECT_LE(sizeof(TrackTag), 64u);
    TrackTag empty;
    EXPECT_EQ(empty.HeapBytes(), 0u);

    // A typical tag: seven short text frames and a comment.
    TrackTag tag;
    for (FrameId id : {FrameId::Title, FrameId::LeadArtist, FrameId::Album, FrameId::Year, FrameId::TrackNum,
                       FrameId::ContentType, FrameId::EncoderSettings})
        tag.AddText(id, "twenty characters...");
    tag.Add(Comment("a comment of some length", ""));
    tag.Compact();
    EXPECT_LT(tag.HeapBytes(), 700u);
}

TEST(TrackTag, ClearForgetsFramesAndSources) {
    TrackTag tag;
    tag.AddText(FrameId::Title, "x");
    tag.AddSource(kSourceId3v1);
    tag.Clear();
    EXPECT_TRUE(tag.empty());
    EXPECT_EQ(tag.sources(), 0);
}

}  // namespace
}  // namespace verdin
