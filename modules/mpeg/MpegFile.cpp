#include "MpegFile.h"

namespace verdin::mpeg {

void MpegFile::Close() {
    if (open_) mpg123_close(handle_);
    open_ = false;
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

int64_t MpegFile::LengthInSamples() const {
    if (!open_) return -1;
    const off_t length = mpg123_length(handle_);
    return length == MPG123_ERR ? -1 : static_cast<int64_t>(length);
}

}  // namespace verdin::mpeg
