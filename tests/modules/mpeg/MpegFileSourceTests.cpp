// The read-ahead of the MPEG reader must hand mpg123 exactly the bytes an unbuffered pread
// would, in one call: across block edges, after seeks backwards and forwards, for reads larger than the
// block and at the end of the file.
#include "MpegFileSource.h"

#include "TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <random>
#include <unistd.h>
#include <vector>

namespace verdin::mpeg {
namespace {

TEST(MpegFileSource, ReadAheadGivesTheBytesOfPlainReadsThroughSeeksAndTheEnd) {
    test::TempDir dir;
    const std::string path = dir.file("data.bin");
    std::vector<uint8_t> bytes(5000);
    for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<uint8_t>(i * 7 % 251);
    FILE* file = std::fopen(path.c_str(), "wb");
    ASSERT_TRUE(file);
    std::fwrite(bytes.data(), 1, bytes.size(), file);
    std::fclose(file);

    const int fd = ::open(path.c_str(), O_RDONLY);
    ASSERT_GE(fd, 0);
    constexpr int64_t kOffset = 123;  // a tag in front that the decoder does not see
    MpegFileSource plain{fd, kOffset, static_cast<int64_t>(bytes.size()) - kOffset, 0};
    MpegFileSource buffered = plain;
    buffered.EnableReadAhead(64);

    std::mt19937 random(7);
    for (int step = 0; step < 3000; ++step) {
        if (random() % 5 == 0) {
            const int whence = random() % 3 == 0 ? SEEK_CUR : random() % 2 ? SEEK_SET : SEEK_END;
            const off_t offset = whence == SEEK_SET ? static_cast<off_t>(random() % 5000)
                                                    : static_cast<off_t>(random() % 400) - 200;
            const off_t a = SeekMpegFileSource(&plain, offset, whence);
            ASSERT_EQ(SeekMpegFileSource(&buffered, offset, whence), a) << step;
            continue;
        }
        const size_t size = random() % 4 == 0 ? 65 + random() % 200 : 1 + random() % 40;
        std::vector<uint8_t> expected(size), got(size);
        const ssize_t n = ReadMpegFileSource(&plain, expected.data(), size);
        const ssize_t m = ReadMpegFileSource(&buffered, got.data(), size);
        ASSERT_EQ(m, n) << step;
        expected.resize(static_cast<size_t>(std::max<ssize_t>(n, 0)));
        got.resize(expected.size());
        ASSERT_EQ(got, expected) << step;
        ASSERT_EQ(buffered.position, plain.position) << step;
    }
    ::close(fd);
}

}  // namespace
}  // namespace verdin::mpeg
