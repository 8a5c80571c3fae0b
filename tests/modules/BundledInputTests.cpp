// The bundled input plug-ins, loaded the way the player loads them, on files made here:
// MPEG_Verdin.so on MP3 files that lame encodes from sines, with the PCM that "mpg123 -w"
// writes for each as the reference; WAV_Verdin.so on canonical WAV files written directly,
// other formats encoded from them with flac and sox, and float WAV with libsndfile's own
// encoder. And the MPEG module's read-ahead.
#include "MpegFileSource.h"

#include "Files.h"
#include "PcmFixtures.h"
#include "Process.h"
#include "TempDir.h"

#include <verdin/input.h>

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <random>
#include <sndfile.h>
#include <sys/stat.h>
#include <unistd.h>

namespace verdin::test {
namespace {

using Bytes = std::vector<uint8_t>;

void RunOrThrow(const std::vector<std::string>& argv) {  // a broken fixture fails loudly
    const CommandResult result = RunCommand(argv);
    if (result.exitCode != 0) throw std::runtime_error(argv[0] + " failed: " + result.output);
}
Bytes Concat(Bytes a, const Bytes& b) { return a.insert(a.end(), b.begin(), b.end()), a; }
std::vector<int16_t> Samples16(const Bytes& bytes) {
    std::vector<int16_t> out(bytes.size() / 2);
    for (size_t i = 0; i < out.size(); ++i) out[i] = static_cast<int16_t>(bytes[2 * i] | bytes[2 * i + 1] << 8);
    return out;
}
// A minimal ID3v2.3 tag as taggers write it: a title frame, padded to exactly totalBytes.
Bytes Id3v2Tag(size_t totalBytes) {
    Bytes tag = {'I', 'D', '3', 3, 0, 0};
    for (int shift = 21; shift >= 0; shift -= 7) tag.push_back(static_cast<uint8_t>(((totalBytes - 10) >> shift) & 0x7F));
    const std::string frame = std::string("TIT2\0\0\0\x11\0\0\0", 11) + "A title in a tag";
    tag.insert(tag.end(), frame.begin(), frame.end());
    return tag.resize(totalBytes, 0), tag;
}

// dlopen and the entry point once; Release and dlclose at the end.
class Plugin {
public:
    explicit Plugin(const std::string& fileName) : library_(dlopen((std::string(VERDIN_TEST_PLUGIN_DIR) + "/" + fileName).c_str(), RTLD_NOW)) {
        const auto entry = library_ ? reinterpret_cast<Verdin_GetInputModuleFunc>(dlsym(library_, VERDIN_INPUT_ENTRY_POINT)) : nullptr;
        if (!(module_ = entry ? entry(library_, nullptr) : nullptr)) throw std::runtime_error(fileName + " gives no module");
    }
    ~Plugin() { module_->ops->Release(module_), dlclose(library_); }
    Plugin(const Plugin&) = delete;
    const InputModuleOps& ops() const { return *module_->ops; }
    InputModule* module() const { return module_; }
    // GetFileInfo into a record holding what the player holds before a module answers.
    std::optional<TrackInfo> Info(const std::string& path, uint32_t dataOffset = 0) const {
        TrackInfo info{};
        info.bitrate = info.sampleRate = info.channels = 1, info.bitsPerSample = 8;
        return ops().GetFileInfo(module_, path.c_str(), dataOffset, &info) ? std::optional(info) : std::nullopt;
    }

private:
    void* library_;
    InputModule* module_;
};

// A decoder opened for one test and destroyed with it.
class Decoder {
public:
    Decoder(const Plugin& plugin, const std::string& path, uint32_t offset = 0) : decoder_(plugin.ops().OpenDecoder(plugin.module(), path.c_str(), offset)) {}
    ~Decoder() { decoder_ ? decoder_->ops->Destroy(decoder_) : void(); }
    Decoder(const Decoder&) = delete;
    bool valid() const { return decoder_ != nullptr; }
    uint32_t Seek(uint32_t milliseconds) { return decoder_->ops->Seek(decoder_, milliseconds); }
    // Every block until Decode returns 0; each must hold whole frames, and the decoder must end.
    Bytes ToEnd(uint32_t frameBytes) {
        Bytes pcm;
        for (size_t blocks = 0; decoder_; ++blocks) {
            const void* block = nullptr;
            const uint32_t bytes = decoder_->ops->Decode(decoder_, &block);
            if (bytes == 0) break;
            if (!block || bytes % frameBytes != 0 || blocks == 1000000) {
                ADD_FAILURE() << "block " << blocks << ": " << bytes << " bytes at " << block << ", frames of " << frameBytes;
                break;
            }
            pcm.insert(pcm.end(), static_cast<const uint8_t*>(block), static_cast<const uint8_t*>(block) + bytes);
        }
        return pcm;
    }

private:
    InputDecoder* decoder_;
};

struct Track {
    std::string path;
    int sampleRate, channels;
    int32_t bitrate;  // 0: variable, a negative average
    Bytes reference;  // the PCM it holds
    uint32_t frameBytes() const { return uint32_t(2 * channels); }
};

class BundledInput : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        dir_ = new TempDir;
        // 0.5 s for the lossless files, 2.5 s for the MP3s; a tone per channel, so that a
        // swapped or shifted channel shows.
        const Bytes pcm = Bytes16(Sine16(22050, 2, 44100, {440.0, 660.0}));
        WriteWav(dir_->file("Take 2.final.wav"), 2, 44100, 16, pcm);  // its body is the suggested title
        RunOrThrow({"flac", "-s", "-o", dir_->file("tone.flac"), dir_->file("Take 2.final.wav")});
        for (const char* format : {"aiff", "au"}) RunOrThrow({"sox", dir_->file("Take 2.final.wav"), dir_->file("tone.") + format});
        WriteWav(dir_->file("stereo.wav"), 2, 44100, 16, Bytes16(Sine16(110250, 2, 44100, {440.0, 660.0})));
        WriteWav(dir_->file("mono.wav"), 1, 22050, 16, Bytes16(Sine16(55125, 1, 22050, {330.0})));
        tracks_ = new std::vector<Track>{{dir_->file("Take 2.final.wav"), 44100, 2, 44100 * 32, pcm}, {dir_->file("tone.flac"), 44100, 2, 0, pcm},
                                         {dir_->file("Song.v1 (live).mp3"), 44100, 2, 128000}, {dir_->file("vbr.mp3"), 44100, 2, 0},
                                         {dir_->file("notag.mp3"), 44100, 2, 128000}, {dir_->file("mono.mp3"), 22050, 1, 64000}};
        const std::vector<std::string> options[] = {{"-b", "128"}, {"-V", "2"}, {"-t", "-b", "128"}, {"-b", "64"}};  // "-t": no Info frame
        for (size_t i = 0; i < 4; ++i) {
            Track& t = (*tracks_)[2 + i];
            std::vector<std::string> lame = {"lame", "--quiet"};
            lame.insert(lame.end(), options[i].begin(), options[i].end());
            lame.insert(lame.end(), {dir_->file(t.channels == 2 ? "stereo.wav" : "mono.wav"), t.path});
            RunOrThrow(lame);
            RunOrThrow({"mpg123", "-q", "-w", t.path + ".wav", t.path});
            t.reference = WavData(t.path + ".wav");
        }
    }
    static void TearDownTestSuite() { delete tracks_, delete dir_; }
    static const Track& Wav() { return tracks_->at(0); }
    static const Track& Cbr() { return tracks_->at(2); }
    static std::string Path(const std::string& name) { return dir_->file(name); }

    static TempDir* dir_;
    static std::vector<Track>* tracks_;
    Plugin mpeg_{"MPEG_Verdin.so"}, sndfile_{"WAV_Verdin.so"};
};
TempDir* BundledInput::dir_ = nullptr;
std::vector<Track>* BundledInput::tracks_ = nullptr;

TEST_F(BundledInput, MpegDecodesWhatMpg123WritesAndDescribesTheFile) {
    for (size_t i = 2; i < tracks_->size(); ++i) {
        const Track& t = tracks_->at(i);
        SCOPED_TRACE(t.path);
        EXPECT_TRUE(Decoder(mpeg_, t.path).ToEnd(t.frameBytes()) == t.reference);
        const auto info = mpeg_.Info(t.path);
        ASSERT_TRUE(info);
        EXPECT_EQ(std::tuple(info->sampleRate, info->channels, info->bitsPerSample, info->seekable, info->decoderEqualizes, info->fileSize),
                  std::tuple(t.sampleRate, t.channels, 16, 1, 0, std::filesystem::file_size(t.path)));
        EXPECT_EQ(info->suggestedTitle, std::filesystem::path(t.path).stem().string());
        const int64_t sourceFrames = t.sampleRate * 5 / 2, decodedMs = int64_t(t.reference.size() / t.frameBytes()) * 1000 / t.sampleRate;
        if (i != 4) {  // lame wrote its Info frame: gapless, exactly the encoded frames and their exact length
            EXPECT_EQ(t.reference.size(), size_t(sourceFrames) * t.frameBytes());
            EXPECT_EQ(info->duration, 2500u);
        } else {
            EXPECT_LE(std::llabs(int64_t(info->duration) - decodedMs), 1152 * 1000 / t.sampleRate + 1);  // one frame
        }
        if (t.bitrate) { EXPECT_EQ(info->bitrate, t.bitrate); }
        else { EXPECT_NEAR(-info->bitrate, std::filesystem::file_size(t.path) * 8000.0 / info->duration, -info->bitrate * 0.02); }
    }
}

TEST_F(BundledInput, SndfileDescribesAndDecodesEachFormat) {
    // Unsigned 8-bit WAV comes as stored; other formats become 16-bit signed: 24-bit FLAC
    // keeps its top 16 bits, signed 8-bit AIFF is shifted up, floats are scaled and clipped.
    Bytes stored(2 * 8000), pcm24, unsigned8(3000);
    std::vector<int16_t> top16, shifted;
    for (size_t i = 0; i < stored.size(); ++i) stored[i] = static_cast<uint8_t>(i * 7);
    WriteWav(Path("bytes.wav"), 2, 8000, 8, stored);
    for (int i = 0; i < 4000; ++i) {
        const int32_t sample = (i * 2731 % 16777216) - 8388608;  // spans most of the 24-bit range
        for (int b = 0; b < 3; ++b) pcm24.push_back(static_cast<uint8_t>(sample >> (8 * b)));
        top16.push_back(static_cast<int16_t>(sample >> 8));
    }
    WriteWav(Path("deep.wav"), 1, 48000, 24, pcm24);
    RunOrThrow({"flac", "-s", "-o", Path("deep.flac"), Path("deep.wav")});
    for (size_t i = 0; i < unsigned8.size(); ++i) unsigned8[i] = static_cast<uint8_t>(i % 256), shifted.push_back(static_cast<int16_t>((int(i % 256) - 128) * 256));
    WriteWav(Path("eight.wav"), 1, 8000, 8, unsigned8);
    RunOrThrow({"sox", Path("eight.wav"), Path("eight.aiff")});
    const std::string loud = Path("loud.wav");  // mono floats written by libsndfile itself, unclipped
    SF_INFO format{0, 44100, 1, SF_FORMAT_WAV | SF_FORMAT_FLOAT, 0, 0};
    SNDFILE* file = sf_open(loud.c_str(), SFM_WRITE, &format);
    ASSERT_NE(file, nullptr) << sf_strerror(nullptr);
    sf_command(file, SFC_SET_CLIPPING, nullptr, SF_FALSE);
    const float floats[] = {0.5f, 1.5f, -1.5f, -0.25f, 1.0f, -1.0f, 0.0f};
    EXPECT_EQ(sf_writef_float(file, floats, 7), 7);
    sf_close(file);
    const Bytes& pcm = Wav().reference;
    const std::tuple<std::string, uint32_t, int32_t, int32_t, uint32_t, Bytes> cases[] = {
        // path, frame bytes, bits, bitrate (0: a negative average; -1: not checked), duration, PCM
        {Wav().path, 4, 16, 44100 * 32, 500, pcm}, {Path("tone.flac"), 4, 16, 0, 500, pcm}, {Path("tone.aiff"), 4, 16, 44100 * 32, 500, pcm},
        {Path("tone.au"), 4, 16, 44100 * 32, 500, pcm}, {Path("bytes.wav"), 2, 8, 8000 * 16, 1000, stored}, {Path("deep.flac"), 2, 16, 0, 83, Bytes16(top16)},
        {Path("eight.aiff"), 2, 16, -1, 375, Bytes16(shifted)}, {loud, 2, 16, -1, 0, Bytes16({16384, 32767, -32768, -8192, 32767, -32768, 0})},
    };
    for (const auto& [path, frameBytes, bits, bitrate, duration, expected] : cases) {
        SCOPED_TRACE(path);
        const auto info = sndfile_.Info(path);
        ASSERT_TRUE(info);
        EXPECT_EQ(info->suggestedTitle, std::filesystem::path(path).stem().string());  // "Take 2.final" keeps its dot
        EXPECT_EQ(std::tuple(info->fileSize, info->seekable, info->decoderEqualizes, info->duration, info->bitsPerSample),
                  std::tuple(uint32_t(std::filesystem::file_size(path)), 1, 0, duration, bits));
        if (bitrate > 0) { EXPECT_EQ(info->bitrate, bitrate); }
        if (bitrate == 0) { EXPECT_NEAR(-info->bitrate, std::filesystem::file_size(path) * 8000.0 / duration, -info->bitrate * 0.01); }
        EXPECT_EQ(Samples16(Decoder(sndfile_, path).ToEnd(frameBytes)), Samples16(expected));
    }
}

TEST_F(BundledInput, SeekLandsOnTheFrameItReportsAlsoBehindWhatLiesInFrontOfTheAudio) {
    // After Seek(ms) the decoder goes on with the frames a decode from the start has there,
    // also after the end; past the end it stays there. For MPEG-2 (the mono MP3)
    // libmpg123's synthesis filter may round a few samples one step apart after a seek; a
    // position one frame off would differ by hundreds of steps. In front of the audio: a
    // tag, or a whole file of another format, which the decoders would not skip by themselves.
    WriteWav(Path("other.wav"), 1, 8000, 8, Bytes(800, 0x80));
    const Bytes nothing, tag = Id3v2Tag(4096), otherMp3 = ReadBytes(tracks_->at(5).path), otherWav = ReadBytes(Path("other.wav"));
    const std::tuple<const Plugin*, const Track*, const Bytes*> rows[] = {
        {&sndfile_, &Wav(), &nothing}, {&sndfile_, &tracks_->at(1), &nothing}, {&sndfile_, &Wav(), &tag}, {&sndfile_, &tracks_->at(1), &otherWav},
        {&mpeg_, &Cbr(), &nothing}, {&mpeg_, &tracks_->at(3), &tag}, {&mpeg_, &tracks_->at(3), &otherMp3}, {&mpeg_, &tracks_->at(5), &tag},
    };
    for (const auto& [plugin, t, prefix] : rows) {
        const std::string path = t->path + ".shifted";
        WriteBytes(path, Concat(*prefix, ReadBytes(t->path)));
        const auto offset = static_cast<uint32_t>(prefix->size());
        const auto plain = plugin->Info(t->path), shifted = plugin->Info(path, offset);
        ASSERT_TRUE(plain && shifted);
        EXPECT_EQ(std::tuple(shifted->fileSize, shifted->duration, shifted->bitrate, shifted->sampleRate, shifted->channels),
                  std::tuple(plain->fileSize + offset, plain->duration, plain->bitrate, plain->sampleRate, plain->channels));
        const uint32_t length = plain->duration;
        for (uint32_t ms : {0u, 1u, 123u, length / 2, length - 1, ~0u, length * 4}) {
            Decoder decoder(*plugin, path, offset);
            if (ms == ~0u) ms = length / 3, decoder.ToEnd(t->frameBytes());  // back after the end
            SCOPED_TRACE(path + " behind " + std::to_string(offset) + " bytes at " + std::to_string(ms) + " ms");
            const uint32_t reached = decoder.Seek(ms);
            EXPECT_TRUE(reached == std::min(ms, length) || (ms > length && plugin == &mpeg_ && reached == length + 1)) << reached;
            const std::vector<int16_t> got = Samples16(decoder.ToEnd(t->frameBytes()));
            const size_t from = std::min(t->reference.size(), (size_t(std::min(ms, length)) * t->sampleRate + 500) / 1000 * t->frameBytes());
            const std::vector<int16_t> expected = Samples16({t->reference.begin() + long(from), t->reference.end()});
            ASSERT_EQ(got.size(), expected.size());
            for (size_t i = 0; i < got.size(); ++i) ASSERT_LE(std::abs(got[i] - expected[i]), t->channels == 1 ? 1 : 0) << i;
        }
    }
}

TEST_F(BundledInput, FilesAsFoundDecodeWholeAndReportTheirLength) {
    // A variable-rate MP3 without a Xing header (silence, then noise); an MP3 cut to
    // 8 KB whose Info header still counts the whole; a FLAC whose STREAMINFO has no total
    // sample count, as an encoder writing to a pipe leaves it; MP3s joined mono-stereo-mono
    // and stereo-mono-stereo (the track keeps its first format, as mpg123 -m / --stereo
    // makes it); an MP3 hit by random bytes mid-way, and one with a zeroed stretch longer
    // than libmpg123's default resync window. Each decodes to the reference PCM (or, when
    // damaged, to within `slack` MPEG frames of the whole), and its duration agrees.
    Bytes noisy(4 * 22050, 0);
    std::mt19937 random(3);
    for (int i = 0; i < 4 * 88200; ++i) noisy.push_back(static_cast<uint8_t>(random()));
    WriteWav(Path("noisy.wav"), 2, 44100, 16, noisy);
    RunOrThrow({"lame", "--quiet", "-V", "5", "-t", Path("noisy.wav"), Path("no_xing.mp3")});
    RunOrThrow({"lame", "--quiet", "-t", "-m", "m", "-b", "64", Path("stereo.wav"), Path("downmix.mp3")});
    const Bytes cbr = ReadBytes(Cbr().path), stereo = ReadBytes(tracks_->at(4).path), mono = ReadBytes(Path("downmix.mp3"));
    Bytes hit = cbr, zeroed = cbr, flac = ReadBytes(tracks_->at(1).path);
    std::mt19937 damage(38);  // among its first 300 bytes, what passes for frame headers of other formats
    for (size_t i = 0; i < 300; ++i) hit[hit.size() / 2 + i] = static_cast<uint8_t>(damage());
    std::fill_n(zeroed.begin() + long(zeroed.size() / 2), 1500, 0);
    flac[21] &= 0xF0, std::fill_n(flac.begin() + 22, 4, 0);  // the low 36 bits of STREAMINFO's bytes 10-17
    WriteBytes(Path("cut.mp3"), {cbr.begin(), cbr.begin() + 8192}), WriteBytes(Path("no_total.flac"), flac);
    WriteBytes(Path("mono_stereo_mono.mp3"), Concat(Concat(mono, stereo), mono)), WriteBytes(Path("stereo_mono_stereo.mp3"), Concat(Concat(stereo, mono), stereo));
    WriteBytes(Path("hit.mp3"), hit), WriteBytes(Path("zeroed.mp3"), zeroed);
    const std::tuple<const Plugin*, std::string, const Bytes*, std::string, int, int32_t, int64_t> rows[] = {
        // plugin, file, reference PCM (null: mpg123 -w with the option), option, channels, bitrate (0: a negative average), slack
        {&mpeg_, "no_xing.mp3", nullptr, "-q", 2, 0, 0}, {&mpeg_, "cut.mp3", nullptr, "-q", 2, 128000, 0},
        {&sndfile_, "no_total.flac", &Wav().reference, "", 2, 0, 0}, {&mpeg_, "mono_stereo_mono.mp3", nullptr, "-m", 1, 0, 0},
        {&mpeg_, "stereo_mono_stereo.mp3", nullptr, "--stereo", 2, 0, 0}, {&mpeg_, "hit.mp3", &Cbr().reference, "", 2, 128000, 6},
        {&mpeg_, "zeroed.mp3", &Cbr().reference, "", 2, 128000, 6},
    };
    for (const auto& [plugin, name, reference, option, channels, bitrate, slack] : rows) {
        SCOPED_TRACE(name);
        const std::string path = Path(name);
        if (!reference) RunOrThrow({"mpg123", "-q", option, "-w", path + ".wav", path});
        const Bytes expected = reference ? *reference : WavData(path + ".wav"), pcm = Decoder(*plugin, path).ToEnd(2 * channels);
        const int64_t frames = int64_t(expected.size()) / (2 * channels), frameMs = 1152 * 1000 / 44100 + 1;
        const auto info = plugin->Info(path);
        ASSERT_TRUE(info);
        EXPECT_EQ(info->channels, channels);
        EXPECT_LE(std::llabs(int64_t(info->duration) - frames * 1000 / 44100), frameMs) << info->duration;
        if (slack == 0) { EXPECT_TRUE(pcm == expected) << pcm.size() << " bytes, not " << expected.size(); }
        else { EXPECT_LE(std::llabs(int64_t(pcm.size()) / (2 * channels) - frames), slack * 1152) << pcm.size(); }
        if (bitrate) { EXPECT_EQ(info->bitrate, bitrate); }
        else { EXPECT_NEAR(-info->bitrate, std::filesystem::file_size(path) * 8000.0 / info->duration, -info->bitrate * 0.02); }
    }
}

TEST_F(BundledInput, TypesAndFilesThatCannotBeRead) {
    // IsOurFile (asked twice: an answer must not depend on the one before); GetFileTypes;
    // the description names the library under it.
    const std::tuple<const Plugin*, std::vector<std::pair<std::string, bool>>, std::vector<std::string>, std::string> types[] = {
        {&mpeg_, {{"/music/a.mp3", true}, {"/music/B.MP3", true}, {"c.Mp2", true}, {"d.mp1", true}, {"http://h/e.mp3", true}, {"/no/such/file.mp3", true},
                  {"/music/f.wav", false}, {"/music/mp3", false}, {"/m.mp3/track", false}, {"/music/g.mp3.bak", false}, {"", false}},
         {"MPEG audio", "*.mp3;*.mp2;*.mp1"}, "MPEG"},
        {&sndfile_, {{"a.wav", true}, {"B.WAV", true}, {"c.aif", true}, {"d.AIFF", true}, {"e.aifc", true}, {"f.au", true}, {"g.snd", true}, {"h.flac", true},
                     {"i.ogg", true}, {"j.oga", true}, {"k.Opus", true}, {"l.mp3", false}, {"wav", false}, {"/x.wav/y", false}, {"m.wav.txt", false}, {"http://host/n.flac", true}},
         {"WAV audio", "*.wav", "AIFF audio", "*.aif;*.aiff;*.aifc", "Sun/NeXT audio", "*.au;*.snd", "FLAC audio", "*.flac", "Ogg Vorbis audio", "*.ogg;*.oga", "Opus audio", "*.opus"},
         "libsndfile"},
    };
    for (const auto& [plugin, paths, expected, library] : types) {
        for (const auto& [path, taken] : paths)
            for (int ask = 0; ask < 2; ++ask) EXPECT_EQ(plugin->ops().IsOurFile(plugin->module(), path.c_str(), 0) != 0, taken) << path << ", ask " << ask;
        std::vector<std::string> texts;
        for (const char* at = plugin->ops().GetFileTypes(plugin->module()); at && *at; at += texts.back().size() + 1) texts.emplace_back(at);
        EXPECT_EQ(texts, expected);
        const std::string description = plugin->ops().GetDescription(plugin->module());
        EXPECT_NE(description.find(library), std::string::npos) << description;
    }

    // Neither information nor a decoder for an empty file, random bytes, a folder, a pipe
    // (which would block a plain open()), a missing file, an unreadable one (root reads it
    // anyway; then it is random bytes), an address nothing answers at, an offset past the
    // end; and for what else each module refuses.
    const TempDir dir;
    std::mt19937 generator(1);
    Bytes garbage(64 * 1024);
    for (auto& b : garbage) b = static_cast<uint8_t>(generator());
    WriteBytes(dir.file("three_bytes.mp3"), {0xFF, 0xFB, 0x90});
    WriteBytes(dir.file("tag_then_garbage.mp3"), Concat(Id3v2Tag(512), {garbage.begin(), garbage.begin() + 8192}));
    const Bytes wav = ReadBytes(Wav().path);
    WriteBytes(dir.file("header_cut.wav"), {wav.begin(), wav.begin() + 20});
    WriteWav(dir.file("65_channels.wav"), 65, 8000, 16, Bytes(130 * 800));  // more than any speaker layout
    const std::tuple<const Plugin*, std::string, std::string, std::vector<std::pair<std::string, uint32_t>>> refusals[] = {
        {&mpeg_, ".mp3", Cbr().path, {{dir.file("three_bytes.mp3"), 0}, {dir.file("tag_then_garbage.mp3"), 512}}},
        {&sndfile_, ".wav", Wav().path, {{dir.file("header_cut.wav"), 0}, {dir.file("65_channels.wav"), 0}, {Wav().path, 10}}},  // an offset inside the header
    };
    for (auto [plugin, extension, readable, refused] : refusals) {
        WriteFile(dir.file("empty" + extension), "");
        for (const char* name : {"garbage", "locked"}) WriteBytes(dir.file(name + extension), garbage);
        chmod(dir.file("locked" + extension).c_str(), 0);
        std::filesystem::create_directory(dir.file("folder" + extension));
        ASSERT_EQ(mkfifo(dir.file("pipe" + extension).c_str(), 0600), 0);
        for (const char* name : {"empty", "garbage", "locked", "folder", "pipe", "missing"}) refused.emplace_back(dir.file(name + extension), 0);
        refused.insert(refused.end(), {{"http://localhost:1/stream" + extension, 0}, {readable, 1u << 30}});
        for (const auto& [path, offset] : refused) EXPECT_TRUE(!plugin->Info(path, offset) && !Decoder(*plugin, path, offset).valid()) << path << " at " << offset;
    }

    // Cut short, in the middle of a frame or block: less than the whole, the start of the
    // real thing for lossless files, and the decoder ends, also after a seek into what may be missing.
    for (const auto& [plugin, t, keep] : {std::tuple{&mpeg_, &Cbr(), 1000.0}, {&mpeg_, &Cbr(), 0.5}, {&mpeg_, &Cbr(), -100.0},
                                          {&sndfile_, &Wav(), 44 + 40000 + 3.0}, {&sndfile_, &tracks_->at(1), 0.5}}) {
        const Bytes bytes = ReadBytes(t->path);
        const std::string cut = dir.file("cut" + std::filesystem::path(t->path).extension().string());
        WriteBytes(cut, {bytes.begin(), bytes.begin() + long(keep < 0 ? bytes.size() + keep : keep < 1 ? bytes.size() * keep : keep)});
        ASSERT_TRUE(plugin->Info(cut)) << cut;
        Decoder decoder(*plugin, cut);
        const Bytes pcm = decoder.ToEnd(t->frameBytes());
        EXPECT_TRUE(pcm.size() < t->reference.size() && (plugin == &mpeg_ || (!pcm.empty() && std::equal(pcm.begin(), pcm.end(), t->reference.begin())))) << cut;
        decoder.Seek(t->reference.size() / t->frameBytes() * 800 / t->sampleRate);  // 80% in
        EXPECT_LE(decoder.ToEnd(t->frameBytes()).size(), t->reference.size() / 5) << cut;
    }
    WriteWav(dir.file("silence.wav"), 2, 44100, 16, {});  // no frames: an empty track
    EXPECT_EQ(sndfile_.Info(dir.file("silence.wav"))->duration, 0u);
    Decoder silence(sndfile_, dir.file("silence.wav"));
    EXPECT_TRUE(silence.ToEnd(4).empty() && silence.Seek(1000) == 0);
}

TEST_F(BundledInput, FfmpegDecodesLosslessExactlyAacGaplesslySurroundMixedDownAndSeeksToTheFrame) {
    // Files that ffmpeg encodes from the 0.5 s stereo tone, and a 5.1 file whose centre holds
    // a mono tone and whose LFE holds the same (it must vanish): the ITU downmix puts the
    // centre at -3 dB into both sides, scaled by 1 / (1 + 2 * -3 dB) so that nothing clips.
    const Plugin ffmpeg("FFmpeg_Verdin.so");
    const std::vector<int16_t> centre = Sine16(24000, 1, 48000, {500.0});
    WriteWav(Path("centre.wav"), 1, 48000, 16, Bytes16(centre));
    for (const auto& [codec, name] : {std::pair{"alac", "alac.m4a"}, {"wavpack", "pack.wv"}})
        RunOrThrow({"ffmpeg", "-v", "error", "-i", Wav().path, "-c:a", codec, Path(name)});
    // AAC in packets of 1024 frames
    RunOrThrow({"ffmpeg", "-v", "error", "-i", Path("centre.wav"), "-c:a", "aac", Path("lossy.m4a")});
    RunOrThrow({"ffmpeg", "-v", "error", "-i", Path("centre.wav"), "-af", "pan=5.1|FC=c0|LFE=c0", "-c:a", "wavpack",
                Path("surround.wv")});
    Bytes pcm24;  // mono 24-bit ALAC keeps one channel and the top 16 bits of each sample
    std::vector<int16_t> top16;
    for (int i = 0; i < 24000; ++i) {
        const int32_t sample = (i * 2731 % 16777216) - 8388608;
        for (int b = 0; b < 3; ++b) pcm24.push_back(static_cast<uint8_t>(sample >> (8 * b)));
        top16.push_back(static_cast<int16_t>(sample >> 8));
    }
    WriteWav(Path("deep.wav"), 1, 48000, 24, pcm24);
    RunOrThrow({"ffmpeg", "-v", "error", "-i", Path("deep.wav"), "-c:a", "alac", Path("deep.m4a")});
    std::vector<int16_t> mixed;
    for (const int16_t x : centre) mixed.insert(mixed.end(), 2, static_cast<int16_t>(x * 0.70710678 / 2.41421356));
    const std::vector<int16_t> tone = Samples16(Wav().reference);
    const auto meanDifference = [](const std::vector<int16_t>& a, const std::vector<int16_t>& b, size_t bFrom) {
        double sum = 0;  // over all of it: one sample off shows on a lossless file, 1024 on AAC
        for (size_t i = 0; i < a.size(); ++i) sum += std::abs(a[i] - b[bFrom + i]);
        return a.empty() ? 0.0 : sum / double(a.size());
    };
    const std::tuple<std::string, int, int, const std::vector<int16_t>*, int> rows[] = {
        // file, rate, channels, expected samples, mean difference allowed
        {"alac.m4a", 44100, 2, &tone, 0}, {"pack.wv", 44100, 2, &tone, 0}, {"lossy.m4a", 48000, 1, &centre, 1000},
        {"surround.wv", 48000, 2, &mixed, 1}, {"deep.m4a", 48000, 1, &top16, 0},
    };
    for (const auto& [name, rate, channels, expected, tolerance] : rows) {
        SCOPED_TRACE(name);
        const auto info = ffmpeg.Info(Path(name));
        ASSERT_TRUE(info);
        const CommandResult probe =
            RunCommand({"ffprobe", "-v", "error", "-show_entries", "stream=duration_ts", "-of", "csv=p=0", Path(name)});
        EXPECT_LE(std::llabs(std::stoll(probe.output) * 1000 / rate - info->duration), 1024 * 1000 / rate);
        EXPECT_EQ(std::tuple(info->sampleRate, info->channels, info->bitsPerSample, info->seekable),
                  std::tuple(rate, channels, 16, 1));
        // The whole, with as many frames as the source: no encoder delay in front, no padding behind.
        const std::vector<int16_t> got = Samples16(Decoder(ffmpeg, Path(name)).ToEnd(2 * channels));
        ASSERT_EQ(got.size(), expected->size());
        EXPECT_LE(meanDifference(got, *expected, 0), tolerance);
        // Behind a tag, a seek goes on with exactly the frames a decode from the start has
        // there; for AAC nearly (its noise substitution is random), from a packet before the
        // target, whose overlap the target's packet needs.
        const std::string tagged = Path(name + ".tagged");
        WriteBytes(tagged, Concat(Id3v2Tag(2048), ReadBytes(Path(name))));
        for (const uint32_t ms : {0u, 3u, 64u, 123u, 389u, info->duration, 9999u}) {  // 64 ms: AAC's third packet
            Decoder decoder(ffmpeg, tagged, 2048);
            EXPECT_EQ(decoder.Seek(ms), std::min(ms, info->duration));
            const std::vector<int16_t> tail = Samples16(decoder.ToEnd(2 * channels));
            const size_t from = std::min(got.size(), (size_t(ms) * size_t(rate) + 500) / 1000 * channels);
            ASSERT_EQ(tail.size(), got.size() - from) << ms;
            EXPECT_LE(meanDifference(tail, got, from), tolerance / 100.0) << ms;
        }
    }
    // By name: its own types, none the other modules play and no URL. A file cut before its
    // index, one of garbage or a playlist is unknown; one cut mid-stream plays its first part.
    for (const auto& [path, taken] : std::initializer_list<std::pair<const char*, bool>>{
             {"a.M4A", true}, {"b.wv", true}, {"c.ape", true}, {"d.wma", true}, {"e.mp3", false}, {"f.wav", false},
             {"g.flac", false}, {"h.opus", false}, {"i.ogg", false}, {"http://host/j.m4a", false}})
        EXPECT_EQ(ffmpeg.ops().IsOurFile(ffmpeg.module(), path, 0) != 0, taken) << path;
    RunOrThrow({"ffmpeg", "-v", "error", "-i", Path("stereo.wav"), "-c:a", "wavpack", Path("long.wv")});  // 1 s blocks
    const Bytes m4a = ReadBytes(Path("lossy.m4a")), wv = ReadBytes(Path("long.wv"));
    const Bytes whole = WavData(Path("stereo.wav"));
    WriteBytes(Path("cut.m4a"), {m4a.begin(), m4a.begin() + long(m4a.size() / 2)});
    WriteBytes(Path("junk.wv"), Bytes(9000, 0x5A));
    WriteBytes(Path("cut.wv"), {wv.begin(), wv.begin() + long(wv.size() / 2)});
    WriteFile(Path("list.aac"),
              "#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\n" + Path("alac.m4a") + "\n#EXT-X-ENDLIST\n");
    for (const char* name : {"cut.m4a", "junk.wv", "list.aac"})
        EXPECT_TRUE(!ffmpeg.Info(Path(name)) && !Decoder(ffmpeg, Path(name)).valid()) << name;
    const Bytes part = Decoder(ffmpeg, Path("cut.wv")).ToEnd(4);
    EXPECT_TRUE(!part.empty() && part.size() < whole.size() && std::equal(part.begin(), part.end(), whole.begin()))
        << part.size();
}

// The read-ahead must hand mpg123 exactly the bytes an unbuffered read would, across
// block edges, after seeks either way, for reads larger than the block and at the end.
TEST(MpegFileSource, ReadAheadGivesTheBytesOfPlainReads) {
    TempDir dir;
    Bytes bytes(5000);
    for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<uint8_t>(i * 7 % 251);
    WriteBytes(dir.file("data.bin"), bytes);
    const int fd = ::open(dir.file("data.bin").c_str(), O_RDONLY);
    ASSERT_GE(fd, 0);
    mpeg::MpegFileSource plain{fd, 123, int64_t(bytes.size()) - 123, 0};  // a tag in front that the decoder does not see
    mpeg::MpegFileSource buffered = plain;
    buffered.EnableReadAhead(64);
    std::mt19937 random(7);
    for (int step = 0; step < 3000; ++step) {
        if (random() % 5 == 0) {
            const int whence = random() % 3 == 0 ? SEEK_CUR : random() % 2 ? SEEK_SET : SEEK_END;
            const off_t offset = whence == SEEK_SET ? off_t(random() % 5000) : off_t(random() % 400) - 200;
            ASSERT_EQ(mpeg::SeekMpegFileSource(&buffered, offset, whence), mpeg::SeekMpegFileSource(&plain, offset, whence)) << step;
            continue;
        }
        const size_t size = random() % 4 == 0 ? 65 + random() % 200 : 1 + random() % 40;
        Bytes expected(size), got(size);
        const ssize_t n = mpeg::ReadMpegFileSource(&plain, expected.data(), size);
        ASSERT_EQ(mpeg::ReadMpegFileSource(&buffered, got.data(), size), n) << step;
        expected.resize(size_t(std::max<ssize_t>(n, 0)));
        got.resize(expected.size());
        ASSERT_TRUE(got == expected && buffered.position == plain.position) << step;
    }
    ::close(fd);
}

}  // namespace
}  // namespace verdin::test
