// Splitting a name into path, body and extension, and putting it back together.
#include "playlist/TrackName.h"
#include "playlist/TrackRecord.h"

#include <gtest/gtest.h>

namespace verdin {
namespace {

TEST(TrackName, SplitsIntoPathBodyAndExtension) {
    const struct {
        const char* name;
        const char* path;
        const char* body;
        const char* extension;
    } cases[] = {
        {"", "", "", ""},
        {"a", "", "a", ""},                                   // no "." and no "/"
        {"a.mp3", "", "a", ".mp3"},                           // no "/"
        {"/m/a", "/m/", "a", ""},                             // no "."
        {"/m/a.mp3", "/m/", "a", ".mp3"},
        {"/m/a.b.mp3", "/m/", "a.b", ".mp3"},                 // the last "." counts
        {"/m/.hidden", "/m/", "", ".hidden"},
        {"/m.d/a", "/m.d/", "a", ""},                         // a "." in a directory only
        {"/m.d/a.flac", "/m.d/", "a", ".flac"},
        {"/m/", "/m/", "", ""},
        {"http://host/dir/a.mp3", "http://host/dir/", "a", ".mp3"},
        {"http://radio.example.com/stream", "http://radio.example.com/", "stream", ""},
        {"http://host", "http://", "host", ""},
        {"http://host.com", "http://", "host", ".com"},
    };
    for (const auto& c : cases) {
        const TrackName split = SplitTrackName(c.name);
        EXPECT_EQ(split.path, c.path) << c.name;
        EXPECT_EQ(split.body, c.body) << c.name;
        EXPECT_EQ(split.extension, c.extension) << c.name;
        EXPECT_EQ(split.Full(), c.name);
    }
}

TEST(TrackName, RecordTellsUrlsAndTheNullTrack) {
    EXPECT_TRUE(TrackRecord("http://host/dir/a.mp3").IsUrl());
    EXPECT_TRUE(TrackRecord("mms://host/a").IsUrl());
    EXPECT_FALSE(TrackRecord("/m/a:b.mp3").IsUrl());
    EXPECT_FALSE(TrackRecord("/m/a.mp3").IsUrl());

    const TrackRecord& null = TrackRecord::NullTrack();
    EXPECT_TRUE(null.IsNullTrack());
    EXPECT_EQ(null.Body(), "null track");
    EXPECT_EQ(null.FullName(), "null track");
    EXPECT_EQ(&null, &TrackRecord::NullTrack());
    // A record spelled the same is the null track too; anything else is not.
    EXPECT_TRUE(TrackRecord("null track").IsNullTrack());
    EXPECT_FALSE(TrackRecord("/m/null track").IsNullTrack());
    EXPECT_FALSE(TrackRecord("null track.mp3").IsNullTrack());
}

}  // namespace
}  // namespace verdin
