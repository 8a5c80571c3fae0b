// MPEG_Verdin.so on MP3 files encoded here by lame from sines, with the PCM that
// "mpg123 -w" writes for each as the reference; and the module's read-ahead.
#include "MpegFileSource.h"

#include "PcmFixtures.h"
#include "PluginKit.h"
#include "TempDir.h"

#include <atomic>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace verdin::test {
namespace {

struct Mp3 {
    std::string label, path;
    int sourceFrames, sampleRate, channels;
    int32_t bitrate;                 // 0: variable, a negative average
    bool carriesLength;              // lame wrote its Info frame (not with -t)
    std::vector<uint8_t> reference;  // what mpg123 -w decodes
    uint32_t frameBytes() const { return uint32_t(2 * channels); }
};

class MpegModule : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        dir_ = new TempDir;
        // 2.5 s each; a tone per channel, so that a swapped or shifted channel shows.
        WriteWav(dir_->file("stereo.wav"), 2, 44100, 16, Bytes16(Sine16(110250, 2, 44100, {440.0, 660.0})));
        WriteWav(dir_->file("mono.wav"), 1, 22050, 16, Bytes16(Sine16(55125, 1, 22050, {330.0})));
        files_ = new std::vector<Mp3>{
            {"CBR 128", "Song.v1 (live).mp3", 110250, 44100, 2, 128000, true},  // its body is the suggested title
            {"VBR V2", "vbr.mp3", 110250, 44100, 2, 0, true},
            {"CBR without Info frame", "notag.mp3", 110250, 44100, 2, 128000, false},
            {"mono 22.05 kHz", "mono.mp3", 55125, 22050, 1, 64000, true},
        };
        const std::vector<std::string> options[] = {{"-b", "128"}, {"-V", "2"}, {"-t", "-b", "128"}, {"-b", "64"}};
        for (size_t i = 0; i < files_->size(); ++i) {
            Mp3& f = (*files_)[i];
            f.path = dir_->file(f.path);
            std::vector<std::string> lame = {"lame", "--quiet"};
            lame.insert(lame.end(), options[i].begin(), options[i].end());
            lame.insert(lame.end(), {dir_->file(f.channels == 2 ? "stereo.wav" : "mono.wav"), f.path});
            RunOrThrow(lame);
            RunOrThrow({"mpg123", "-q", "-w", f.path + ".wav", f.path});
            f.reference = WavData(f.path + ".wav");
        }
    }
    static void TearDownTestSuite() {
        delete files_;
        delete dir_;
    }
    static const Mp3& Cbr() { return files_->at(0); }
    static const Mp3& Vbr() { return files_->at(1); }
    static const Mp3& Mono() { return files_->at(3); }

    static TempDir* dir_;
    static std::vector<Mp3>* files_;
    PluginUnderTest plugin_{"MPEG_Verdin.so"};
};
TempDir* MpegModule::dir_ = nullptr;
std::vector<Mp3>* MpegModule::files_ = nullptr;

TEST_F(MpegModule, DecodesWhatMpg123WritesAndDescribesTheFile) {
    for (const Mp3& f : *files_) {
        SCOPED_TRACE(f.label);
        Decoder decoder(plugin_, f.path);
        ASSERT_TRUE(decoder.valid());
        EXPECT_TRUE(decoder.ToEnd(f.frameBytes()) == f.reference);
        const auto info = plugin_.Info(f.path);
        ASSERT_TRUE(info);
        EXPECT_EQ(std::tuple(info->sampleRate, info->channels, info->bitsPerSample, info->seekable, info->decoderEqualizes),
                  std::tuple(f.sampleRate, f.channels, 16, 1, 0));
        EXPECT_EQ(info->fileSize, std::filesystem::file_size(f.path));
        EXPECT_EQ(info->suggestedTitle, std::filesystem::path(f.path).stem().string());
        const int64_t decodedMs = int64_t(f.reference.size() / f.frameBytes()) * 1000 / f.sampleRate;
        if (f.carriesLength) {  // gapless: exactly the encoded frames, and their exact length
            EXPECT_EQ(f.reference.size(), size_t(f.sourceFrames) * f.frameBytes());
            EXPECT_EQ(info->duration, uint32_t(int64_t(f.sourceFrames) * 1000 / f.sampleRate));
        } else {
            EXPECT_LE(std::llabs(int64_t(info->duration) - decodedMs), 1152 * 1000 / f.sampleRate + 1);  // one frame
        }
        if (f.bitrate) { EXPECT_EQ(info->bitrate, f.bitrate); }
        else { EXPECT_NEAR(-info->bitrate, std::filesystem::file_size(f.path) * 8000.0 / info->duration, -info->bitrate * 0.02); }
    }
}

TEST_F(MpegModule, DataOffsetSkipsWhatLiesInFrontOfTheAudio) {
    // libmpg123 would skip a tag by itself, but not a whole other MP3 file of another format.
    for (const auto& prefix : {Id3v2Tag(4096), ReadBytes(Mono().path)}) {
        const std::string shifted = dir_->file("shifted.mp3");
        WriteBytes(shifted, Concat(prefix, ReadBytes(Vbr().path)));
        const auto offset = static_cast<uint32_t>(prefix.size());
        Decoder decoder(plugin_, shifted, offset);
        EXPECT_TRUE(decoder.ToEnd(4) == Vbr().reference) << offset;
        const auto plain = plugin_.Info(Vbr().path), withPrefix = plugin_.Info(shifted, offset);
        ASSERT_TRUE(plain && withPrefix);
        EXPECT_EQ(std::tuple(withPrefix->fileSize, withPrefix->duration, withPrefix->bitrate, withPrefix->sampleRate),
                  std::tuple(plain->fileSize + offset, plain->duration, plain->bitrate, plain->sampleRate));
    }
}

TEST_F(MpegModule, SeekLandsOnTheSampleItReports) {
    // After Seek(ms) the decoder goes on with the samples a decode from the start has
    // there. For MPEG-2 (the mono file) libmpg123's synthesis filter may round a few
    // samples one step apart after a seek; a position one sample off would differ by
    // hundreds of steps.
    for (const Mp3* f : {&Cbr(), &Vbr(), &Mono()}) {
        for (uint32_t ms : {0u, 1u, 499u, 1234u, 2499u}) {
            SCOPED_TRACE(f->label + " at " + std::to_string(ms) + " ms");
            Decoder decoder(plugin_, f->path);
            EXPECT_EQ(decoder.Seek(ms), ms);
            const size_t frame = (size_t(ms) * f->sampleRate + 500) / 1000;
            const std::vector<uint8_t> expected(f->reference.begin() + long(frame * f->frameBytes()), f->reference.end());
            const int difference = MaxSampleDifference(decoder.ToEnd(f->frameBytes()), expected);
            EXPECT_GE(difference, 0) << "a different length";
            EXPECT_LE(difference, f == &Mono() ? 1 : 0);
        }
    }
    Decoder decoder(plugin_, Cbr().path);  // back after the end, and past the end
    decoder.ToEnd(4);
    EXPECT_EQ(decoder.Seek(1000), 1000u);
    EXPECT_TRUE(decoder.ToEnd(4) == std::vector<uint8_t>(Cbr().reference.begin() + 44100 * 4, Cbr().reference.end()));
    const uint32_t reached = decoder.Seek(60000);
    EXPECT_GE(reached, 2500u);
    EXPECT_LE(reached, 2501u);
    EXPECT_TRUE(decoder.ToEnd(4).empty());
}

TEST_F(MpegModule, ManyCallsFromSeveralThreadsGiveTheSameAnswers) {
    // Information is read with reused decoder handles: nothing may carry over from one
    // file to the next, nor between threads reading at the same time.
    std::vector<TrackInfo> expected;
    for (const Mp3& f : *files_) expected.push_back(*plugin_.Info(f.path));
    std::atomic<int> mismatches{0};  // written by the readers, read after they are joined
    std::vector<std::thread> readers;
    for (int t = 0; t < 4; ++t)
        readers.emplace_back([&, t] {
            for (int i = 0; i < 50; ++i) {
                const size_t which = size_t(i + t) % files_->size();
                const auto info = plugin_.Info((*files_)[which].path);
                if (!info || std::memcmp(&*info, &expected[which], sizeof(TrackInfo)) != 0) mismatches.fetch_add(1);
            }
        });
    for (auto& r : readers) r.join();
    EXPECT_EQ(mismatches.load(), 0);
}

TEST_F(MpegModule, TakesItsExtensionsWithoutRegardToCaseAndAnnouncesThem) {
    const std::pair<const char*, bool> paths[] = {
        {"/music/a.mp3", true},   {"/music/B.MP3", true},      {"c.Mp2", true},          {"d.mp1", true},
        {"http://h/e.mp3", true}, {"/no/such/file.mp3", true}, {"/music/f.wav", false},  {"/music/mp3", false},
        {"/m.mp3/track", false},  {"/music/g.mp3.bak", false}, {"", false},
    };
    for (const auto& [path, taken] : paths) {
        EXPECT_EQ(plugin_.IsOurFile(path), taken) << path;
        EXPECT_EQ(plugin_.IsOurFile(path), taken) << path << " asked again";
    }
    const auto texts = plugin_.Announcements();
    ASSERT_EQ(texts.size(), 4u);
    EXPECT_EQ(std::vector<std::string>(texts.begin(), texts.begin() + 2), (std::vector<std::string>{"MPEG audio", "*.mp3;*.mp2;*.mp1"}));
    EXPECT_NE(texts[2].find("MPEG"), std::string::npos) << texts[2];
    EXPECT_EQ(texts[3], texts[2] + "\n");
}

TEST_F(MpegModule, DamagedAndUnreadableFiles) {
    // Neither information nor a decoder for what is not a readable MPEG file.
    const TempDir dir;
    WriteFile(dir.file("empty.mp3"), "");
    WriteBytes(dir.file("garbage.mp3"), Garbage(64 * 1024, 1));
    WriteBytes(dir.file("three_bytes.mp3"), {0xFF, 0xFB, 0x90});
    WriteBytes(dir.file("tag_then_garbage.mp3"), Concat(Id3v2Tag(512), Garbage(8192, 7)));
    std::filesystem::create_directory(dir.file("folder.mp3"));
    ASSERT_EQ(mkfifo(dir.file("pipe.mp3").c_str(), 0600), 0);  // would block a plain open()
    WriteFile(dir.file("locked.mp3"), "unreadable");
    chmod(dir.file("locked.mp3").c_str(), 0);  // (root reads it anyway; then it is garbage)
    const std::pair<std::string, uint32_t> refused[] = {
        {dir.file("empty.mp3"), 0},   {dir.file("garbage.mp3"), 0}, {dir.file("three_bytes.mp3"), 0},
        {dir.file("folder.mp3"), 0},  {dir.file("pipe.mp3"), 0},    {dir.file("tag_then_garbage.mp3"), 512},
        {dir.file("missing.mp3"), 0}, {dir.file("locked.mp3"), 0},  {"http://localhost:1/stream.mp3", 0},
        {Cbr().path, 1u << 30},  // an offset past the end
    };
    for (const auto& [path, offset] : refused) {
        EXPECT_FALSE(plugin_.Info(path, offset)) << path;
        EXPECT_FALSE(Decoder(plugin_, path, offset).valid()) << path;
    }

    // Cut short: what comes out is less than the whole, and the decoder ends, also after a
    // seek into what may be missing.
    const std::vector<uint8_t> whole = ReadBytes(Cbr().path);
    for (size_t keep : {size_t{1000}, whole.size() / 2, whole.size() - 100}) {
        WriteBytes(dir.file("cut.mp3"), {whole.begin(), whole.begin() + long(keep)});
        ASSERT_TRUE(plugin_.Info(dir.file("cut.mp3"))) << keep;
        Decoder decoder(plugin_, dir.file("cut.mp3"));
        EXPECT_LT(decoder.ToEnd(4).size(), Cbr().reference.size()) << keep;
        decoder.Seek(2000);
        EXPECT_LE(decoder.ToEnd(4).size(), Cbr().reference.size() / 5) << keep;
    }

    // A damaged file the fuzz target found (behind its two control bytes): after a seek,
    // libmpg123 hands out half a stereo frame, which must not reach the player.
    const auto input = ReadBytes(std::string(VERDIN_TEST_SOURCE_DIR) + "/fuzz/mpeg_module/corpus/torn_frame_after_seek");
    WriteBytes(dir.file("torn.mp3"), {input.begin() + 2, input.end()});
    ASSERT_EQ(plugin_.Info(dir.file("torn.mp3"))->channels, 2);
    Decoder decoder(plugin_, dir.file("torn.mp3"));
    decoder.ToEnd(4);  // fails the test on a block of a partial frame
    decoder.Seek(60);
    EXPECT_FALSE(decoder.ToEnd(4).empty());
}

// The read-ahead must hand mpg123 exactly the bytes an unbuffered read would, across
// block edges, after seeks either way, for reads larger than the block and at the end.
TEST(MpegFileSource, ReadAheadGivesTheBytesOfPlainReads) {
    TempDir dir;
    std::vector<uint8_t> bytes(5000);
    for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<uint8_t>(i * 7 % 251);
    WriteBytes(dir.file("data.bin"), bytes);
    const int fd = ::open(dir.file("data.bin").c_str(), O_RDONLY);
    ASSERT_GE(fd, 0);
    constexpr int64_t kOffset = 123;  // a tag in front that the decoder does not see
    mpeg::MpegFileSource plain{fd, kOffset, int64_t(bytes.size()) - kOffset, 0};
    mpeg::MpegFileSource buffered = plain;
    buffered.EnableReadAhead(64);
    std::mt19937 random(7);
    for (int step = 0; step < 3000; ++step) {
        if (random() % 5 == 0) {
            const int whence = random() % 3 == 0 ? SEEK_CUR : random() % 2 ? SEEK_SET : SEEK_END;
            const off_t offset = whence == SEEK_SET ? off_t(random() % 5000) : off_t(random() % 400) - 200;
            const off_t a = mpeg::SeekMpegFileSource(&plain, offset, whence);
            ASSERT_EQ(mpeg::SeekMpegFileSource(&buffered, offset, whence), a) << step;
            continue;
        }
        const size_t size = random() % 4 == 0 ? 65 + random() % 200 : 1 + random() % 40;
        std::vector<uint8_t> expected(size), got(size);
        const ssize_t n = mpeg::ReadMpegFileSource(&plain, expected.data(), size);
        ASSERT_EQ(mpeg::ReadMpegFileSource(&buffered, got.data(), size), n) << step;
        expected.resize(size_t(std::max<ssize_t>(n, 0)));
        got.resize(expected.size());
        ASSERT_EQ(got, expected) << step;
        ASSERT_EQ(buffered.position, plain.position) << step;
    }
    ::close(fd);
}

}  // namespace
}  // namespace verdin::test
