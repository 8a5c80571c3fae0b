#include "StreamTestKit.h"

#include "Files.h"

#include <gtest/gtest.h>

namespace verdin::test {

const InputModuleList& BundledModules() {
    static InputModuleList* modules = [] {
        auto* list = new InputModuleList;
        list->LoadInputModules(std::string(VERDIN_TEST_PLUGIN_DIR) + ";", nullptr);
        return list;
    }();
    return *modules;
}

std::vector<int16_t> Samples16(const std::vector<uint8_t>& bytes) {
    std::vector<int16_t> out(bytes.size() / 2);
    for (size_t i = 0; i < out.size(); ++i)
        out[i] = static_cast<int16_t>(bytes[2 * i] | (bytes[2 * i + 1] << 8));
    return out;
}

std::unique_ptr<Stream> OpenTrack(const std::string& path, StreamOptions options, Stream* previous) {
    auto stream = std::make_unique<Stream>(BundledModules(), options);
    EXPECT_TRUE(stream->OpenStream(path, previous)) << stream->ErrorText();
    return stream;
}

OutputTarget FileTarget(const TempDir& dir) {
    OutputTarget target;
    target.kind = OutputTarget::kWavFile;
    target.decodeDirectory = dir.str();
    target.trackNumber = 1;
    target.entryCount = 1;
    target.title = "out";
    return target;
}

std::string FileTargetPath(const TempDir& dir) { return dir.file("1. out.wav"); }

std::vector<uint8_t> DecodeChain(const TempDir& dir, const std::vector<std::string>& tracks, StreamOptions options,
                                 bool crossfade) {
    std::vector<std::unique_ptr<Stream>> streams;
    streams.push_back(OpenTrack(tracks.front(), options));
    // Decoding to a file runs as fast as the disk allows; held by the user's pause, the
    // first stream fills its ring and waits, so the next ones can be linked to it the way
    // the shell links them while a track plays (every track but the last must be longer
    // than the ring for that).
    streams.back()->PausePlayback();
    if (!streams.back()->StartStream(FileTarget(dir))) {
        ADD_FAILURE() << streams.back()->ErrorText();
        return {};
    }
    for (size_t i = 1; i < tracks.size(); ++i) {
        streams.push_back(OpenTrack(tracks[i], options, streams.back().get()));
        streams.back()->SetCrossfadeOnHandOver(crossfade);
        EXPECT_EQ(streams[i - 1]->NextStream(), streams[i].get()) << "track " << i << " was not linked";
    }
    streams.front()->ResumePlayback();
    // Each track hands the device to the next one when it ends; the last plays it out.
    for (auto& stream : streams) stream->WaitUntilFinished();
    for (size_t i = 0; i + 1 < streams.size(); ++i)
        EXPECT_EQ(streams[i]->HandedOverTo(), streams[i + 1].get()) << "track " << i;
    for (auto& stream : streams) EXPECT_FALSE(stream->Failed()) << stream->ErrorText();
    streams.clear();  // the last owner closes the device, which completes the header
    return WavData(FileTargetPath(dir));
}

}  // namespace verdin::test
