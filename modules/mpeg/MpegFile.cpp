#include "MpegFile.h"

namespace verdin::mpeg {

namespace {

constexpr uint64_t kId3v1Bytes = 128;
// Read-ahead while the frames are counted: the scan makes two small reads per frame.
constexpr size_t kScanReadAhead = 64 * 1024;

// The smallest frame the stream's version and layer allow at its rate: the lowest bit
// rate of their table, without padding. Layer I has 384 samples a frame, layer II 1152,
// layer III 1152 (MPEG-1) or 576, and a frame holds samples / 8 x bit rate / rate bytes.
uint64_t SmallestFrameBytes(const mpg123_frameinfo& frame, int samplesPerFrame) {
    const uint64_t lowestBitRate = frame.version == MPG123_1_0 || frame.layer == 1 ? 32000 : 8000;
    return static_cast<uint64_t>(samplesPerFrame) / 8 * lowestBitRate / static_cast<uint64_t>(frame.rate);
}

}  // namespace

void MpegFile::Close() {
    if (open_) mpg123_close(handle_);
    open_ = false;
    lengthChecked_ = scanned_ = false;
    file_.reset();
}

bool MpegFile::Open(const char* path, uint32_t dataOffset) {
    Close();
    if (!handle_) return false;
    file_ = RegularFile::Open(path);
    if (!file_ || dataOffset >= file_->size()) return false;
    source_ = MpegFileSource{file_->fd(), dataOffset, static_cast<int64_t>(file_->size() - dataOffset), 0};

    // The handle reads through MpegFileSource (set when it was made, see Mpg123Handle.cpp).
    if (mpg123_open_handle(handle_, &source_) != MPG123_OK) return false;
    open_ = true;

    int encoding = 0;
    if (mpg123_getformat(handle_, &sampleRate_, &channels_, &encoding) != MPG123_OK ||
        encoding != MPG123_ENC_SIGNED_16 || sampleRate_ <= 0 || (channels_ != 1 && channels_ != 2)) {
        Close();
        return false;
    }
    return true;
}

uint64_t MpegFile::audioBytes() const {
    uint64_t bytes = fileSize() - dataOffset();
    mpg123_id3v1* v1 = nullptr;
    mpg123_id3v2* v2 = nullptr;
    if (open_ && mpg123_id3(handle_, &v1, &v2) == MPG123_OK && v1 && bytes >= kId3v1Bytes) bytes -= kId3v1Bytes;
    return bytes;
}

bool MpegFile::HeaderGivesLength() const {
    // libmpg123 does not say whether a frame count came from a header. What shows that a
    // header was read: "Xing" makes the stream variable-rate, and the LAME tag (which
    // LAME's constant-rate "Info" headers carry too) gives the encoder delay. A stream
    // with neither is taken as headerless and counted, which is right for any stream.
    mpg123_frameinfo frame{};
    if (mpg123_info(handle_, &frame) != MPG123_OK || frame.rate <= 0) return false;
    long delay = -1;
    double unused = 0;
    if (mpg123_getstate(handle_, MPG123_ENC_DELAY, &delay, &unused) != MPG123_OK) delay = -1;
    if (frame.vbr == MPG123_CBR && delay < 0) return false;
    const off_t frames = mpg123_framelength(handle_);
    const int samplesPerFrame = mpg123_spf(handle_);
    if (frames < 0 || samplesPerFrame <= 0) return false;
    const uint64_t smallest = SmallestFrameBytes(frame, samplesPerFrame);
    return smallest == 0 || static_cast<uint64_t>(frames) <= audioBytes() / smallest;
}

int64_t MpegFile::LengthInSamples() {
    if (!open_) return -1;
    if (!lengthChecked_) {
        lengthChecked_ = true;
        if (!HeaderGivesLength()) {
            if (source_.buffer.empty()) source_.EnableReadAhead(kScanReadAhead);
            scanned_ = mpg123_scan(handle_) == MPG123_OK;
        }
    }
    const off_t length = mpg123_length(handle_);
    return length == MPG123_ERR ? -1 : static_cast<int64_t>(length);
}

}  // namespace verdin::mpeg
