#include "FlacLength.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <cstring>
#include <optional>
#include <unistd.h>
#include <vector>

namespace verdin::sndfile {

namespace {

constexpr int64_t kFirstWindow = 64 * 1024;
constexpr int64_t kLastWindow = 4 * 1024 * 1024;
constexpr size_t kId3v1Bytes = 128;

// CRC tables, most significant bit first: CRC-8 with polynomial 0x07 guards a frame
// header, CRC-16 with polynomial 0x8005 the whole frame; both start from 0.
template <typename Crc, Crc kPolynomial>
constexpr std::array<Crc, 256> CrcTable() {
    constexpr int kShift = 8 * sizeof(Crc) - 8;
    std::array<Crc, 256> table{};
    for (unsigned byte = 0; byte < 256; ++byte) {
        Crc crc = static_cast<Crc>(byte << kShift);
        for (int bit = 0; bit < 8; ++bit)
            crc = static_cast<Crc>(crc & (Crc(1) << (kShift + 7)) ? (crc << 1) ^ kPolynomial : crc << 1);
        table[byte] = crc;
    }
    return table;
}
constexpr auto kCrc8 = CrcTable<uint8_t, 0x07>();
constexpr auto kCrc16 = CrcTable<uint16_t, 0x8005>();

uint8_t Crc8(const uint8_t* bytes, size_t count) {
    uint8_t crc = 0;
    for (size_t i = 0; i < count; ++i) crc = kCrc8[crc ^ bytes[i]];
    return crc;
}

uint16_t Crc16(const uint8_t* bytes, size_t count) {
    uint16_t crc = 0;
    for (size_t i = 0; i < count; ++i) crc = static_cast<uint16_t>((crc << 8) ^ kCrc16[(crc >> 8) ^ bytes[i]]);
    return crc;
}

bool ReadFully(int fd, int64_t at, uint8_t* to, size_t bytes) {
    while (bytes > 0) {
        const ssize_t n = ::pread(fd, to, bytes, at);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        to += n, at += n, bytes -= static_cast<size_t>(n);
    }
    return true;
}

struct FrameHeader {
    bool variableBlockSize;
    uint64_t number;  // the first sample's number, or the frame's in a fixed-block-size stream
    uint32_t blockSize;
    size_t bytes;
};

// The frame header at the start of the bytes, its CRC-8 checked; nullopt if there is none.
std::optional<FrameHeader> ParseFrameHeader(const uint8_t* p, size_t available) {
    if (available < 6 || p[0] != 0xFF || (p[1] & 0xFE) != 0xF8) return std::nullopt;
    const unsigned sizeCode = p[2] >> 4, rateCode = p[2] & 0x0F, channelCode = p[3] >> 4, depthCode = (p[3] >> 1) & 7;
    if (sizeCode == 0 || rateCode == 15 || channelCode > 10 || depthCode == 3 || (p[3] & 1)) return std::nullopt;
    // The number, coded like UTF-8 (up to 7 bytes for 36 bits).
    size_t at = 4;
    const unsigned lead = static_cast<unsigned>(std::countl_one(p[at]));
    if (lead == 1 || lead > 7) return std::nullopt;
    uint64_t number = p[at++] & (0x7Fu >> lead);
    for (unsigned i = 1; i < lead; ++i, ++at) {
        if (at >= available || (p[at] & 0xC0) != 0x80) return std::nullopt;
        number = number << 6 | (p[at] & 0x3F);
    }
    const size_t sizeBytes = sizeCode == 6 ? 1 : sizeCode == 7 ? 2 : 0;
    const size_t rateBytes = rateCode == 12 ? 1 : rateCode == 13 || rateCode == 14 ? 2 : 0;
    if (at + sizeBytes + rateBytes >= available) return std::nullopt;
    uint32_t blockSize = sizeCode == 1 ? 192 : sizeCode <= 5 ? 576u << (sizeCode - 2) : 0;
    if (sizeCode >= 8) blockSize = 256u << (sizeCode - 8);
    if (sizeBytes > 0) blockSize = (sizeBytes == 1 ? p[at] : (p[at] << 8 | p[at + 1])) + 1u;
    at += sizeBytes + rateBytes;
    if (Crc8(p, at) != p[at]) return std::nullopt;
    return FrameHeader{(p[1] & 1) != 0, number, blockSize, at + 1};
}

}  // namespace

int64_t FlacLengthFromLastFrame(int fd, int64_t start, int64_t length) {
    // "fLaC", then STREAMINFO first: its block header, the smallest and largest block size.
    uint8_t head[12];
    if (length < 42 || !ReadFully(fd, start, head, sizeof head) || std::memcmp(head, "fLaC", 4) != 0 || (head[4] & 0x7F) != 0)
        return 0;
    // In a fixed-block-size stream every block but the last has the largest size.
    const uint32_t fixedBlockSize = static_cast<uint32_t>(head[10] << 8 | head[11]);
    std::vector<uint8_t> tail;
    for (int64_t window = kFirstWindow;; window *= 4) {
        const int64_t size = std::min(window, length);
        tail.resize(static_cast<size_t>(size));
        if (!ReadFully(fd, start + length - size, tail.data(), tail.size())) return 0;
        size_t end = tail.size();
        if (end >= kId3v1Bytes && std::memcmp(&tail[end - kId3v1Bytes], "TAG", 3) == 0) end -= kId3v1Bytes;
        // A whole frame ends in its CRC-16: at the end of the stream, or, when the file was
        // cut short inside its last frame, where that frame's header starts (the frame that
        // does not decode is not counted).
        const auto endsAt = [&](size_t at, size_t bytes, size_t to) {
            return to - at >= bytes + 2 && Crc16(&tail[at], to - at - 2) == (tail[to - 2] << 8 | tail[to - 1]);
        };
        for (size_t at = end, next = end; at-- > 0;) {
            if (tail[at] != 0xFF) continue;
            const auto header = ParseFrameHeader(&tail[at], end - at);
            if (!header) continue;
            if (endsAt(at, header->bytes, end) || (next < end && endsAt(at, header->bytes, next))) {
                const uint64_t first = header->variableBlockSize ? header->number : header->number * fixedBlockSize;
                return static_cast<int64_t>(first + header->blockSize);
            }
            next = at;
        }
        if (size == length || window >= kLastWindow) return 0;
    }
}

}  // namespace verdin::sndfile
