#include "tags/DescriptorStream.h"

#include "Files.h"
#include "TempDir.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace verdin {
namespace {

class DescriptorStreamTest : public ::testing::Test {
protected:
    void SetUp() override {
        for (int i = 0; i < 10000; ++i) contents_.push_back(static_cast<char>(i * 31 + i / 256));
        path_ = dir_.file("data.bin");
        test::WriteFile(path_, contents_);
        fd_ = ::open(path_.c_str(), O_RDONLY);
        ASSERT_GE(fd_, 0);
    }
    void TearDown() override { ::close(fd_); }

    std::string Expected(std::size_t offset, std::size_t length) const {
        return offset >= contents_.size() ? std::string() : contents_.substr(offset, length);
    }

    test::TempDir dir_;
    std::string contents_;
    std::string path_;
    int fd_ = -1;
};

TEST_F(DescriptorStreamTest, ServesEveryRangeAsTheFileHoldsIt) {
    DescriptorStream stream(fd_, static_cast<std::int64_t>(contents_.size()));
    const std::pair<std::size_t, std::size_t> ranges[] = {
        {0, 3},     {0, 10},    {10, 300},   {4000, 96},  {4090, 20},  // across the head block's end
        {5000, 10}, {9488, 10}, {9480, 20},  {9872, 128}, {9990, 50},  // tail, across its start, past the end
        {0, 10000}, {10000, 5}, {20000, 1},
    };
    for (const auto& [offset, length] : ranges) {
        const TagLib::ByteVector bytes = stream.ReadAt(static_cast<std::int64_t>(offset), length);
        EXPECT_EQ(std::string(bytes.data(), bytes.size()), Expected(offset, length)) << offset << "+" << length;
    }
}

TEST_F(DescriptorStreamTest, HeaderAndTrailerReadsCostOneCallEach) {
    DescriptorStream stream(fd_, static_cast<std::int64_t>(contents_.size()));
    stream.ReadAt(0, 3);
    stream.ReadAt(0, 10);
    stream.ReadAt(10, 500);
    stream.ReadAt(10000 - 128, 3);
    stream.ReadAt(10000 - 160, 32);
    stream.ReadAt(10000 - 128, 128);
    EXPECT_EQ(stream.readCalls(), 2);
}

TEST_F(DescriptorStreamTest, SeeksLikeAFile) {
    DescriptorStream stream(fd_, static_cast<std::int64_t>(contents_.size()));
    EXPECT_EQ(stream.length(), 10000);
    stream.seek(100);
    EXPECT_EQ(std::string(stream.readBlock(4).data(), 4), Expected(100, 4));
    EXPECT_EQ(stream.tell(), 104);
    stream.seek(-4, TagLib::IOStream::Current);
    EXPECT_EQ(stream.tell(), 100);
    stream.seek(-128, TagLib::IOStream::End);
    EXPECT_EQ(stream.tell(), 10000 - 128);
    stream.seek(-20000, TagLib::IOStream::End);  // before the start: refused
    EXPECT_EQ(stream.tell(), 10000 - 128);
    stream.seek(0, TagLib::IOStream::End);
    EXPECT_TRUE(stream.readBlock(10).isEmpty());
    EXPECT_TRUE(stream.readOnly());
}

}  // namespace
}  // namespace verdin
