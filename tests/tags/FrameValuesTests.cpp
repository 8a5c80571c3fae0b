#include "tags/FrameDisplay.h"
#include "tags/FrameValues.h"
#include "tags/TagErrorMessage.h"
#include "tags/TagVersion.h"

#include "Files.h"
#include "TempDir.h"

#include <gtest/gtest.h>

namespace verdin {
namespace {

TEST(FrameValues, StringsAndIntegersOfEachKind) {
    TrackTag tag;
    tag.AddText(FrameId::TrackNum, "3/12");
    tag.AddText(FrameId::Year, "2004-05-06");
    tag.AddText(FrameId::ContentType, "(125)");
    tag.AddText(FrameId::Title, "Song");
    FrameView picture;
    picture.id = FrameId::Picture;
    picture.description = "front cover";
    tag.Add(picture);
    FrameView object;
    object.id = FrameId::GeneralObject;
    object.fileName = "notes.txt";
    tag.Add(object);

    struct Row {
        FrameId id;
        std::string_view text;
        int integer;
    };
    const Row rows[] = {
        {FrameId::TrackNum, "3/12", 3},
        {FrameId::Year, "2004-05-06", 2004},
        {FrameId::ContentType, "Dance Hall ", 0},
        {FrameId::Title, "Song", 0},
        {FrameId::Picture, "front cover", 0},
        {FrameId::GeneralObject, "notes.txt", 0},  // no description: the file name
        {FrameId::Album, "", 0},                    // missing
        {FrameId::NoFrame, "", 0},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(FrameStringValue(tag, row.id), row.text) << FrameIndex(row.id);
        EXPECT_EQ(FrameIntegerValue(tag, row.id), row.integer) << FrameIndex(row.id);
    }
}

TEST(FrameValues, AreCutTo255BytesAtACharacterBoundary) {
    TrackTag tag;
    tag.AddText(FrameId::Title, std::string(300, 'a'));
    // 254 ASCII bytes, then a two-byte character that would straddle the limit.
    tag.AddText(FrameId::Album, std::string(254, 'b') + "\xC3\xA9" + "tail");
    EXPECT_EQ(FrameStringValue(tag, FrameId::Title), std::string(255, 'a'));
    EXPECT_EQ(FrameStringValue(tag, FrameId::Album), std::string(254, 'b'));

    std::string reused = "left over";
    FrameStringValue(tag, FrameId::Comment, reused);
    EXPECT_EQ(reused, "");
}

TEST(FrameDisplay, DetailsUseTheLabelsJoinedByDashes) {
    FrameView comment;
    comment.id = FrameId::Comment;
    comment.language = "eng";
    comment.description = "ID3v1 comment field";
    EXPECT_EQ(JoinFrameDetails(FrameDetails(comment)), "Language: eng - Description: ID3v1 comment field");

    FrameView picture;
    picture.id = FrameId::Picture;
    picture.description = "front";
    picture.pictureType = 3;
    picture.mimeType = "image/png";
    EXPECT_EQ(JoinFrameDetails(FrameDetails(picture)), "Description: front - Picture type: Cover (front) - MIME type: image/png");
    picture.description = {};
    picture.pictureType = 0;
    EXPECT_EQ(JoinFrameDetails(FrameDetails(picture)), "Picture type: Other - MIME type: image/png");

    FrameView object;
    object.id = FrameId::GeneralObject;
    object.description = "notes";
    object.mimeType = "text/plain";
    object.fileName = "notes.txt";
    EXPECT_EQ(JoinFrameDetails(FrameDetails(object)), "Description: notes - MIME type: text/plain - File name: notes.txt");

    FrameView title;
    title.id = FrameId::Title;
    title.text = "Song";
    title.description = "ignored for a text frame";
    EXPECT_TRUE(FrameDetails(title).empty());
}

TEST(FrameDisplay, SavesAttachmentsAndReportsWhyNot) {
    test::TempDir dir;
    FrameView picture;
    picture.id = FrameId::Picture;
    const std::string bytes("\x89PNG\r\n\x1A\n\0\0binary", 16);
    picture.data = bytes;
    picture.dataSize = static_cast<std::uint32_t>(bytes.size());

    EXPECT_EQ(SaveAttachment(picture, dir.file("cover.png")), "");
    EXPECT_EQ(test::ReadFile(dir.file("cover.png")), bytes);

    EXPECT_EQ(SaveAttachment(picture, dir.file("missing/cover.png")), "No such file or directory");
    EXPECT_EQ(SaveAttachment(picture, "/dev/full"), "No space left on device");

    FrameView notKept = picture;
    notKept.data = {};
    EXPECT_EQ(SaveAttachment(notKept, dir.file("x")), "The attachment was not read from the file");
    EXPECT_FALSE(test::FileExists(dir.file("x")));

    FrameView text;
    text.id = FrameId::Title;
    EXPECT_FALSE(HasAttachment(text));
    EXPECT_EQ(SaveAttachment(text, dir.file("y")), "The frame has no attachment");
}

TEST(TagTexts, VersionAndErrorMessagesAreExact) {
    EXPECT_EQ(DescribeTagVersion({2, 3, 0}), "ID3 Tag version 2.3.0");
    EXPECT_EQ(DescribeTagVersion({1, 1, 0}), "ID3 Tag version 1.1.0");
    EXPECT_EQ(DescribeTagVersion({}), "No ID3 Tag found");
    EXPECT_EQ(ComposeTagErrorMessage("Not a valid FLAC file"),
              "ID3Lib v3.05a said \"Not a valid FLAC file\", but we couldn't care less.");
}

}  // namespace
}  // namespace verdin
