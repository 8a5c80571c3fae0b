// Tags read from and written to files made here: MP3 files by lame and by hand where an
// exact layout matters, FLAC and Ogg comments, WAV and AIFF chunks, trailers on other
// files. A damaged file gives a clear result, never a crash or a hang; a write that cannot
// be done leaves the file exactly as it was, and no write leaves anything beside it.
#include "tags/FrameDisplay.h"
#include "tags/FrameValues.h"
#include "tags/LeadingTag.h"
#include "tags/TagReader.h"
#include "tags/TagWriter.h"

#include "Files.h"
#include "PcmFixtures.h"
#include "Process.h"
#include "TempDir.h"

#include <gtest/gtest.h>
#include <taglib/id3v2tag.h>
#include <taglib/infotag.h>
#include <taglib/wavfile.h>

#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace verdin {
namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<uint8_t>;
using Values = std::vector<std::pair<FrameId, std::string>>;

Bytes Concat(Bytes a, const Bytes& b) { return a.insert(a.end(), b.begin(), b.end()), a; }
std::string Latin1(std::string_view text) { return '\0' + std::string(text); }

// An ID3v2 tag of version 2.major with the frames (id, body), then padding, then a footer when asked.
Bytes RawId3v2(int major, const std::vector<std::pair<std::string, std::string>>& frames, size_t padding = 0, bool footer = false) {
    const auto put = [](Bytes& out, size_t value, int bytes, int bits) {
        for (int i = bytes - 1; i >= 0; --i) out.push_back(static_cast<uint8_t>((value >> (bits * i)) & ((1u << bits) - 1)));
    };
    Bytes body;
    for (const auto& [id, content] : frames) {
        body.insert(body.end(), id.begin(), id.end());
        put(body, content.size(), major == 2 ? 3 : 4, major == 4 ? 7 : 8);
        if (major > 2) body.insert(body.end(), {0, 0});
        body.insert(body.end(), content.begin(), content.end());
    }
    body.resize(body.size() + padding, 0);
    Bytes tag{'I', 'D', '3', static_cast<uint8_t>(major), 0, static_cast<uint8_t>(footer ? 0x10 : 0)};
    put(tag, body.size(), 4, 7);
    tag = Concat(tag, body);
    return footer ? Concat(tag, {'3', 'D', 'I', static_cast<uint8_t>(major), 0, 0x10, tag[6], tag[7], tag[8], tag[9]}) : tag;
}

// An ID3v1 trailer of the year 2001; track < 0 writes the 1.0 layout (a 30-byte comment).
Bytes RawId3v1(std::string_view title, std::string_view artist, std::string_view comment, int track, int genre) {
    Bytes out{'T', 'A', 'G'};
    for (const auto& [text, width] : {std::pair{title, 30}, {artist, 30}, {"", 30}, {"2001", 4}, {comment, track < 0 ? 30 : 28}})
        for (size_t i = 0; i < size_t(width); ++i) out.push_back(i < text.size() ? static_cast<uint8_t>(text[i]) : 0);
    if (track >= 0) out.insert(out.end(), {0, static_cast<uint8_t>(track)});
    return out.push_back(static_cast<uint8_t>(genre)), out;
}

// One Ogg page holding one packet of under 255 bytes (flags: 2 first page, 4 last page);
// its checksum is left at 0, which TagLib does not check.
Bytes OggPage(uint8_t sequence, uint8_t flags, std::string_view packet) {
    Bytes page{'O', 'g', 'g', 'S', 0, flags, 0, 0, 0, 0, 0, 0, 0, 0, 7, 0, 0, 0, sequence, 0, 0, 0, 0, 0, 0, 0, 1, uint8_t(packet.size())};
    return page.insert(page.end(), packet.begin(), packet.end()), page;
}

const std::vector<std::string> kLameTags{"--tt", "Title One", "--ta", "The Artist", "--tl", "The Album", "--ty", "1999",
                                         "--tn", "3/12", "--tg", "125", "--tc", "a comment"};

class TagFiles : public ::testing::Test {
protected:
    // Runs a tool on the test's files: "%" stands for dir/name, "%wav" for a fresh 0.2 s sine.
    std::string Tool(const std::string& name, std::vector<std::string> argv) {
        test::WriteWav(dir_.file("source.wav"), 2, 44100, 16, test::Bytes16(test::Sine16(8820, 2, 44100, {440.0, 660.0})));
        for (auto& a : argv) a = a == "%" ? dir_.file(name) : a == "%wav" ? dir_.file("source.wav") : a;
        const test::CommandResult result = test::RunCommand(argv);
        if (result.exitCode != 0) throw std::runtime_error(argv[0] + " failed: " + result.output);
        return dir_.file(name);
    }
    std::string Lame(const std::string& name, std::vector<std::string> options, std::vector<std::string> more = {}) {
        options.insert(options.begin(), {"lame", "--quiet"});
        options.insert(options.end(), more.begin(), more.end());
        return options.insert(options.end(), {"%wav", "%"}), Tool(name, options);
    }
    // Tag bytes in front of plain MP3 audio, and behind it.
    std::string Mp3(const std::string& name, const Bytes& front, const Bytes& back = {}) {
        if (!test::FileExists(dir_.file("audio.mp3"))) Lame("audio.mp3", {});
        test::WriteBytes(dir_.file(name), Concat(Concat(front, test::ReadBytes(dir_.file("audio.mp3"))), back));
        return dir_.file(name);
    }
    // Reads the file's tag, and once more ignoring tags; checks what both give and where the
    // audio starts (audioStart -1: at an MPEG frame behind a tag of some size).
    TrackTag Check(const std::string& path, TagVersion version, int sources, const Values& values, int64_t audioStart = 0) {
        SCOPED_TRACE(path);
        TrackTag tag, ignoredTag;
        tag.AddText(FrameId::Title, "stale");  // reading replaces what was there
        const TagReadResult r = ReadTrackTag(path, {}, tag), ignored = ReadTrackTag(path, {TagMode::Ignore}, ignoredTag);
        EXPECT_EQ(std::tuple(r.opened, r.error, r.version, r.fileSize, tag.sources()), std::tuple(true, "", version, fs::file_size(path), sources));
        for (const auto& [id, text] : values) EXPECT_EQ(FrameStringValue(tag, id), text) << FrameIndex(id);
        EXPECT_TRUE(ignoredTag.empty() && ignored.opened && ignored.version == TagVersion{} && ignored.audioStart == r.audioStart && ignored.fileSize == r.fileSize);
        if (audioStart >= 0) { EXPECT_EQ(r.audioStart, audioStart); }
        const Bytes b = test::ReadBytes(path);
        EXPECT_TRUE(TagFileKindFor(path) != TagFileKind::Mpeg || (b.at(r.audioStart) == 0xFF && (b.at(r.audioStart + 1) & 0xE0) == 0xE0)) << r.audioStart << ": no MPEG frame";
        return tag;
    }
    // Writes and expects the error (empty: success); a refused write leaves the file as it was.
    void Write(const std::string& path, std::vector<FrameEdit> edits, const std::string& error = "") {
        const auto entries = [&] {
            std::vector<std::string> names;
            for (const auto& entry : fs::directory_iterator(dir_.path())) names.push_back(entry.path().filename().string());
            return std::sort(names.begin(), names.end()), names;
        };
        const auto before = entries();
        const std::string bytes = test::FileExists(path) ? test::ReadFile(path) : "";
        const auto mode = fs::symlink_status(path).permissions();
        EXPECT_EQ(WriteTagFrames(path, edits), error) << path;
        EXPECT_EQ(entries(), before) << path;
        EXPECT_TRUE(error.empty() || ((test::FileExists(path) ? test::ReadFile(path) : "") == bytes && fs::symlink_status(path).permissions() == mode)) << path;
    }
    test::TempDir dir_;
};

TEST_F(TagFiles, MpegTagsOfEveryVersionAndWhereTheAudioStarts) {
    // ID3v1 alone, and an ID3v2.3 tag written in front of it that the trailer follows.
    const std::string v1 = Lame("v1.mp3", kLameTags, {"--id3v1-only"});
    Check(v1, {1, 1, 0}, kSourceId3v1,
          {{FrameId::Title, "Title One"}, {FrameId::Year, "1999"}, {FrameId::ContentType, "Dance Hall "}, {FrameId::TrackNum, "3"}, {FrameId::Comment, "a comment"}});
    Write(v1, {{FrameId::Title, "Longer title"}});
    Check(v1, {2, 3, 0}, kSourceId3v2 | kSourceId3v1, {{FrameId::Title, "Longer title"}, {FrameId::Album, "The Album"}}, -1);
    EXPECT_EQ(test::ReadFile(v1).substr(fs::file_size(v1) - 128, 15), "TAGLonger title");
    Check(Mp3("v10.mp3", {}, RawId3v1("Old", "", "thirty characters of comment!!", -1, 255)), {1, 0, 0}, kSourceId3v1,
          {{FrameId::Title, "Old"}, {FrameId::Comment, "thirty characters of comment!!"}, {FrameId::ContentType, ""}, {FrameId::TrackNum, ""}});

    // ID3v2.3 with padding (the audio starts after it), written through a link: an empty text
    // removes a frame; the other frames, the tag's version, the audio, the link and the mode stay.
    const std::string v23 = Lame("v23.mp3", kLameTags, {"--id3v2-only", "--pad-id3v2-size", "1000"}), link = dir_.file("link.mp3");
    const Values kept{{FrameId::LeadArtist, "The Artist"}, {FrameId::Album, "The Album"}, {FrameId::Comment, "a comment"}};
    Check(v23, {2, 3, 0}, kSourceId3v2, {{FrameId::TrackNum, "3/12"}, {FrameId::ContentType, "Dance Hall"}, kept[0], kept[1], kept[2]}, -1);
    ASSERT_EQ(::chmod(v23.c_str(), 0640), 0);
    fs::create_symlink(v23, link);
    const auto audioOf = [](const Bytes& bytes) { return Bytes(bytes.begin() + ParseLeadingTag(bytes).completeSize, bytes.end()); };
    const Bytes audio = audioOf(test::ReadBytes(v23));
    Write(link, {{FrameId::Title, "New title"}, {FrameId::Composer, "Somebody"}, {FrameId::ContentType, "Acid Jazz"}, {FrameId::TrackNum, ""}});
    const TrackTag written = Check(v23, {2, 3, 0}, kSourceId3v2, {{FrameId::Title, "New title"}, {FrameId::Composer, "Somebody"}, {FrameId::ContentType, "Acid Jazz"}, kept[0], kept[1], kept[2]}, -1);
    EXPECT_TRUE(!written.Has(FrameId::TrackNum) && audioOf(test::ReadBytes(v23)) == audio);
    EXPECT_TRUE(fs::is_symlink(link) && fs::status(v23).permissions() == fs::perms(0640));

    const Bytes v24 = RawId3v2(4, {{"TIT2", "\3Ünïcødé ☃ 日本"}, {"TPE1", std::string("\3Ärtist\0Second", 15)}, {"TDRC", "\0032004-05-06"},
                                   {"TCON", std::string("\00317\0RX", 6)}});
    Check(Mp3("v24.mp3", v24), {2, 4, 0}, kSourceId3v2,
          {{FrameId::Title, "Ünïcødé ☃ 日本"}, {FrameId::LeadArtist, "Ärtist/Second"}, {FrameId::Year, "2004-05-06"}, {FrameId::ContentType, "Rock Remix "}}, v24.size());
    // Frames beyond plain text; attachments measured on scans and kept on request.
    std::string pictureBytes(5000, '\0');
    for (size_t i = 0; i < pictureBytes.size(); ++i) pictureBytes[i] = static_cast<char>(i * 7);
    const Bytes frames = RawId3v2(3, {{"TCON", Latin1("(RX)(17)Metal")}, {"TYER", Latin1("1999")}, {"TDAT", Latin1("0605")},
                                      {"TIME", Latin1("1230")}, {"TRDA", Latin1("June 5-6")}, {"IPLS", std::string("\0producer\0Bob\0mix\0Al", 20)},
                                      {"TXXX", std::string("\0MOOD\0calm", 10)}, {"WXXX", std::string("\0home\0http://example.org/", 25)},
                                      {"WOAR", "http://artist.example/"}, {"UFID", std::string("http://ids.example\0abc-123", 26)},
                                      {"PCNT", std::string("\0\0\x01\x02", 4)}, {"POPM", std::string("me@example.org\0\xC4\0\0\0\x07", 20)},
                                      {"USLT", std::string("\0deu\0la la la", 13)}, {"TPOS", Latin1("2/3")},
                                      {"APIC", std::string("\0image/png\0\3front\0", 18) + pictureBytes}, {"GEOB", std::string("\0text/plain\0notes.txt\0notes\0line one\n", 37)}}, 500);
    const std::string path = Mp3("frames.mp3", frames);
    Check(path, {2, 3, 0}, kSourceId3v2,
          {{FrameId::ContentType, "Remix Rock Metal"}, {FrameId::Year, "1999"},  // not the "1999-05-06" TagLib makes of it
           {FrameId::Date, "0605"}, {FrameId::Time, "1230"}, {FrameId::RecordingDates, "June 5-6"},
           {FrameId::InvolvedPeople, "producer: Bob, mix: Al"}, {FrameId::UserText, "calm"}, {FrameId::WwwUser, "http://example.org/"},
           {FrameId::WwwArtist, "http://artist.example/"}, {FrameId::UniqueFileId, "abc-123"}, {FrameId::PlayCounter, "258"},
           {FrameId::Popularimeter, "196"}, {FrameId::UnsyncedLyrics, "la la la"}, {FrameId::PartInSet, "2/3"}},
          frames.size());
    TrackTag scanned, full;
    const int fd = ::open(path.c_str(), O_RDONLY);  // an open file is read without moving it
    ASSERT_EQ(::lseek(fd, 5, SEEK_SET), 5);
    EXPECT_EQ(ReadTrackTag(fd, TagFileKind::Mpeg, {}, scanned).audioStart, frames.size());
    EXPECT_EQ(::lseek(fd, 0, SEEK_CUR), 5);
    EXPECT_EQ(::close(fd), 0);  // still the caller's to close
    EXPECT_EQ(std::tuple(scanned.Find(FrameId::Picture)->dataSize, scanned.Find(FrameId::Picture)->data.size()), std::tuple(5000u, size_t(0)));
    EXPECT_LT(scanned.HeapBytes(), 2000u);  // a library does not hold its cover art
    EXPECT_EQ(FrameStringValue(scanned, FrameId::GeneralObject), "notes");
    ReadTrackTag(path, {TagMode::Read, true}, full);
    ASSERT_EQ(SaveAttachment(*full.Find(FrameId::Picture), dir_.file("cover.png")), "");
    EXPECT_EQ(test::ReadFile(dir_.file("cover.png")), pictureBytes);
    ASSERT_EQ(SaveAttachment(*full.Find(FrameId::GeneralObject), dir_.file("notes.txt")), "");
    EXPECT_EQ(test::ReadFile(dir_.file("notes.txt")), "line one\n");
    EXPECT_EQ(SaveAttachment(*full.Find(FrameId::Picture), "/dev/full"), "No space left on device");
    const Bytes v22 = RawId3v2(2, {{"TT2", Latin1("Old Song")}, {"TCO", Latin1("(125)")}, {"COM", std::string("\0eng\0old", 8)}});
    Check(Mp3("v22.mp3", v22), {2, 2, 0}, kSourceId3v2, {{FrameId::Title, "Old Song"}, {FrameId::ContentType, "Dance Hall "}, {FrameId::Comment, "old"}}, v22.size());
    // ID3v2 first, an ID3v1 trailer fills gaps; also on a file of another kind.
    const Bytes both = RawId3v2(3, {{"TIT2", Latin1("V2 Title")}, {"TCON", Latin1("(8)")}});
    Check(Mp3("both.mp3", both, RawId3v1("V1 Title", "V1 Artist", "v1 comment", 1, 17)), {2, 3, 0}, kSourceId3v2 | kSourceId3v1,
          {{FrameId::Title, "V2 Title"}, {FrameId::ContentType, "Jazz "}, {FrameId::LeadArtist, "V1 Artist"}, {FrameId::Comment, "v1 comment"}}, both.size());
    test::WriteBytes(dir_.file("tagged.au"), Concat(Concat(both, test::ReadBytes(Tool("a.au", {"sox", "%wav", "%"}))), RawId3v1("", "V1 Artist", "", 9, 0)));
    Check(dir_.file("tagged.au"), {2, 3, 0}, kSourceId3v2 | kSourceId3v1,
          {{FrameId::Title, "V2 Title"}, {FrameId::LeadArtist, "V1 Artist"}, {FrameId::TrackNum, "9"}, {FrameId::ContentType, "Jazz "}, {FrameId::Year, "2001"}}, both.size());
}

TEST_F(TagFiles, CommentsAndChunksOfTheOtherContainers) {
    const std::string flac = Tool("tagged.flac", {"flac", "-s", "-T", "TITLE=Flac Title", "-T", "ARTIST=Flac Artist", "-T", "ARTIST=Guest", "-T", "ALBUMARTIST=The Band",
                                                  "-T", "DATE=2004-05-06", "-T", "TRACKNUMBER=3", "-T", "TRACKTOTAL=12", "-T", "GENRE=Acid Jazz", "-T", "DISCNUMBER=1",
                                                  "-T", "DISCTOTAL=2", "-T", "ORGANIZATION=Label", "-o", "%", "%wav"});
    Write(flac, {{FrameId::Title, "Neu"}, {FrameId::Album, "Zusammen"}});  // the other fields kept, the stream still tests clean
    Check(flac, {}, kSourceXiph, {{FrameId::Title, "Neu"}, {FrameId::Album, "Zusammen"}, {FrameId::LeadArtist, "Flac Artist/Guest"}, {FrameId::Band, "The Band"},
                                  {FrameId::Year, "2004-05-06"}, {FrameId::TrackNum, "3/12"}, {FrameId::ContentType, "Acid Jazz"}, {FrameId::PartInSet, "1/2"},
                                  {FrameId::Publisher, "Label"}});
    EXPECT_EQ(test::RunCommand({"flac", "-s", "-t", flac}).exitCode, 0);

    const std::string ogg = Tool("tagged.ogg", {"sox", "%wav", "--comment", "TITLE=Ogg Title", "--add-comment", "GENRE=125", "%"});
    Write(ogg, {{FrameId::Composer, "Somebody"}});
    Check(ogg, {}, kSourceXiph, {{FrameId::Title, "Ogg Title"}, {FrameId::ContentType, "Dance Hall "}, {FrameId::Composer, "Somebody"}});
    const Bytes opus = Concat(Concat(OggPage(0, 2, std::string_view("OpusHead\1\2\x38\1\x80\xBB\0\0\0\0\0", 19)),
                                     OggPage(1, 0, std::string_view("OpusTags\4\0\0\0test\2\0\0\0\20\0\0\0TITLE=Opus Title\10\0\0\0GENRE=RX", 52))),
                              OggPage(2, 4, "\x08"));
    test::WriteBytes(dir_.file("opus.OGG"), opus);  // known by its first packet, not by its name
    Write(dir_.file("opus.OGG"), {{FrameId::LeadArtist, "Opus Artist"}});
    Check(dir_.file("opus.OGG"), {}, kSourceXiph, {{FrameId::Title, "Opus Title"}, {FrameId::ContentType, "Remix "}, {FrameId::LeadArtist, "Opus Artist"}});

    const std::string wav = Tool("tagged.wav", {"sox", "%wav", "%"});
    Write(wav, {{FrameId::LeadArtist, "Wave maker"}});  // an ID3 chunk, every sample kept
    Check(wav, {2, 3, 0}, kSourceId3v2, {{FrameId::LeadArtist, "Wave maker"}});
    EXPECT_EQ(test::RunCommand({"soxi", "-s", wav}).output, "8820\n");
    {  // the ID3 chunk first, then the INFO list
        TagLib::RIFF::WAV::File file(wav.c_str(), false);
        file.ID3v2Tag()->setTitle("Id3 Title");
        file.InfoTag()->setTitle("Info Title");
        file.InfoTag()->setAlbum("Info Album");
        ASSERT_TRUE(file.save());
    }
    Check(wav, {2, 4, 0}, kSourceId3v2 | kSourceRiffInfo, {{FrameId::Title, "Id3 Title"}, {FrameId::LeadArtist, "Wave maker"}, {FrameId::Album, "Info Album"}});
    const std::string aiff = Tool("tagged.aiff", {"sox", "%wav", "%"});
    Write(aiff, {{FrameId::Title, "Aiff Title"}, {FrameId::TrackNum, "7"}});
    Check(aiff, {2, 3, 0}, kSourceId3v2, {{FrameId::Title, "Aiff Title"}, {FrameId::TrackNum, "7"}});

    const std::string readOnly = Lame("ro.mp3", {"--tt", "Kept"});
    ASSERT_EQ(::chmod(readOnly.c_str(), 0444), 0);
    for (const auto& [name, text] : {std::pair{"broken.mp3", std::string(3000, '\x55')}, {"broken.flac", "fLaC"}, {"notes.txt", "no audio layout"}})
        test::WriteFile(dir_.file(name), text);  // no MPEG frame anywhere; a bare FLAC marker; no layout
    const std::vector<FrameEdit> title{{FrameId::Title, "x"}};
    Write(dir_.file("broken.mp3"), title, "Not a valid MPEG audio file");
    Write(dir_.file("broken.flac"), title, "Not a valid FLAC file");
    Write(dir_.file("notes.txt"), title, "Tags cannot be written to files of this type");
    Write(readOnly, title, "The file is read-only");
    Write(flac, {{FrameId::Title, "ok"}, {FrameId::Picture, "no"}}, "This frame cannot be edited");
    Write(dir_.file("missing.mp3"), title, "Cannot open the file: No such file or directory");
}

TEST_F(TagFiles, DamagedAndUnreadableFiles) {
    // A tag cut into its third frame: read as far as it goes, the audio start at the end.
    const Bytes tagged = Concat(RawId3v2(3, {{"TIT2", Latin1("Kept Title")}, {"TPE1", Latin1("Kept Artist")}, {"COMM", std::string("\0eng\0lost to the cut", 20)}}),
                                test::ReadBytes(Mp3("whole.mp3", {})));
    test::WriteBytes(dir_.file("cut.mp3"), {tagged.begin(), tagged.begin() + 10 + 21 + 22 + 15});
    TrackTag tag;
    TagReadResult r = ReadTrackTag(dir_.file("cut.mp3"), {}, tag);
    EXPECT_EQ(std::tuple(r.opened, r.error, r.audioStart, r.version), std::tuple(true, "ID3v2 tag is larger than the file", 68u, TagVersion{2, 3, 0}));
    EXPECT_EQ(FrameStringValue(tag, FrameId::Title) + "|" + FrameStringValue(tag, FrameId::LeadArtist) + "|" + std::to_string(tag.Has(FrameId::Comment)), "Kept Title|Kept Artist|0");

    // Tags scribbled over at random are fuzz/tags' (the same checks on every read).
    const std::string flac = test::ReadFile(Tool("cut.flac", {"flac", "-s", "-T", "TITLE=Cut", "-o", "%", "%wav"}));
    const std::tuple<std::string, std::string, std::string> layouts[] = {  // error "?": some error
        {"empty.flac", "", "Not a valid FLAC file"}, {"text.ogg", "OggS but not really a page", "Not a valid Ogg file"},
        {"empty.wav", "", "Not a valid WAV file"}, {"text.aiff", "this is no AIFF file", "Not a valid AIFF file"},
        {"chunkless.wav", std::string("RIFF\4\0\0\0WAVE", 12), ""}, {"chunkless.aiff", std::string("FORM\0\0\0\4AIFF", 12), ""},
        {"empty.mp3", "", ""}, {"empty.au", "", ""}, {"short.mp3", "ID3", ""}, {"cut45.flac", flac.substr(0, 45), "?"}, {"cut120.flac", flac.substr(0, 120), "?"},
    };
    for (const auto& [name, contents, error] : layouts) {
        test::WriteFile(dir_.file(name), contents);
        r = ReadTrackTag(dir_.file(name), {}, tag);
        EXPECT_TRUE(r.opened && r.version == TagVersion{} && r.fileSize == contents.size()) << name;
        EXPECT_TRUE(error == "?" ? !r.error.empty() : r.error == error && tag.empty()) << name << ": " << r.error;
    }
    tag.AddText(FrameId::Title, "stale");
    r = ReadTrackTag(dir_.file("missing.mp3"), {}, tag);
    EXPECT_EQ(std::tuple(r.opened, r.error, tag.empty()), std::tuple(false, "No such file or directory", true));
    ASSERT_EQ(::mkfifo(dir_.file("pipe.mp3").c_str(), 0600), 0);
    r = ReadTrackTag(dir_.file("pipe.mp3"), {}, tag);  // must not wait for a writer
    EXPECT_EQ(std::tuple(r.opened, r.error), std::tuple(false, "Not a regular file"));
    EXPECT_FALSE(ReadTrackTag(-1, TagFileKind::Mpeg, {}, tag).opened);
}

}  // namespace
}  // namespace verdin
