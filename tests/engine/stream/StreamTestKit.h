#pragma once
// Helpers for running real streams in tests: the bundled input modules, WAV fixtures and
// decoding a track (or a chain of tracks) into a WAV file through the whole stream path.
#include "engine/input/InputModuleList.h"
#include "engine/stream/Stream.h"

#include "PcmFixtures.h"
#include "TempDir.h"

#include <memory>
#include <string>
#include <vector>

namespace verdin::test {

// The player's own input modules, from the build tree.
const InputModuleList& BundledModules();

// 16-bit samples as little-endian bytes, and back.
std::vector<int16_t> Samples16(const std::vector<uint8_t>& bytes);

// A stream of the given options, opened on path (linked after previous when given).
std::unique_ptr<Stream> OpenTrack(const std::string& path, StreamOptions options, Stream* previous = nullptr);

// Where decoding to a file puts track 1 of a one-entry playlist titled "out".
OutputTarget FileTarget(const TempDir& dir);
std::string FileTargetPath(const TempDir& dir);

// Decodes the tracks one after the other into one WAV file (each linked to the one before,
// so they share the file device) and returns the file's data bytes.
std::vector<uint8_t> DecodeChain(const TempDir& dir, const std::vector<std::string>& tracks, StreamOptions options,
                                 bool crossfade = false);

}  // namespace verdin::test
