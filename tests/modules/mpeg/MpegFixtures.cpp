#include "MpegFixtures.h"

#include "AudioFiles.h"
#include "PcmFixtures.h"
#include "Process.h"

namespace verdin::test {

std::unique_ptr<TempDir> MpegModuleTest::dir_;
std::unique_ptr<std::vector<Mp3Fixture>> MpegModuleTest::fixtures_;

namespace {

struct Recipe {
    const char* label;
    const char* name;  // the body has dots and blanks on purpose: it is the suggested title
    const char* source;
    std::vector<std::string> lameOptions;
    bool carriesLength;
};

}  // namespace

void MpegModuleTest::SetUpTestSuite() {
    ASSERT_TRUE(HaveCommand("lame") && HaveCommand("mpg123")) << "the MPEG tests need lame and mpg123";
    dir_ = std::make_unique<TempDir>();
    fixtures_ = std::make_unique<std::vector<Mp3Fixture>>();

    // 2.5 s each; a tone per channel so that a swapped or shifted channel shows.
    const int stereoFrames = 110250, monoFrames = 55125;
    WriteWav(dir_->file("stereo.wav"), 2, 44100, 16, Bytes16(Sine16(stereoFrames, 2, 44100, {440.0, 660.0})));
    WriteWav(dir_->file("mono.wav"), 1, 22050, 16, Bytes16(Sine16(monoFrames, 1, 22050, {330.0})));

    const Recipe recipes[] = {
        {"CBR 128", "Song.v1 (live).mp3", "stereo.wav", {"-b", "128"}, true},
        {"VBR V2", "vbr.mp3", "stereo.wav", {"-V", "2"}, true},
        {"CBR without Info frame", "notag.mp3", "stereo.wav", {"-t", "-b", "128"}, false},
        {"mono 22.05 kHz", "mono.mp3", "mono.wav", {"-b", "64"}, true},
    };
    for (const Recipe& r : recipes) {
        const bool stereo = std::string(r.source) == "stereo.wav";
        Mp3Fixture f{r.label, dir_->file(r.name), stereo ? stereoFrames : monoFrames, stereo ? 44100 : 22050,
                     stereo ? 2 : 1, r.carriesLength, {}};
        std::vector<std::string> lame = {"lame", "--quiet"};
        lame.insert(lame.end(), r.lameOptions.begin(), r.lameOptions.end());
        lame.insert(lame.end(), {dir_->file(r.source), f.path});
        RunOrThrow(lame);
        const std::string reference = f.path + ".reference.wav";
        RunOrThrow({"mpg123", "-q", "-w", reference, f.path});
        f.reference = WavData(reference);
        fixtures_->push_back(std::move(f));
    }
}

void MpegModuleTest::TearDownTestSuite() {
    fixtures_.reset();
    dir_.reset();
}

}  // namespace verdin::test
