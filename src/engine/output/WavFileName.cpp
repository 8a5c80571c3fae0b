#include "WavFileName.h"

#include <cstdio>
#include <cstring>

namespace verdin {

namespace {

// The width the number is padded to, by the size of the playlist, smallest first; 0 is
// the plain number without the leading space.
struct NumberWidth {
    int belowCount;
    int width;
};
constexpr NumberWidth kNumberWidths[] = {
    {10, 0},
    {100, 2},
    {1000, 3},
};
constexpr int kLargestWidth = 4;
constexpr size_t kLongestFileName = 255;  // bytes, as Linux file systems allow

constexpr std::string_view kForbidden{"/\\:*?\"<>|\0", 10};

}  // namespace

std::string FileNameSafeTitle(std::string_view title) {
    std::string safe(title);
    for (char& c : safe) {
        if (kForbidden.find(c) != std::string_view::npos) c = '_';
    }
    return safe;
}

std::string WavFileName(std::string_view directory, int number, int entryCount,
                        std::string_view title) {
    int width = kLargestWidth;
    for (const NumberWidth& row : kNumberWidths) {
        if (entryCount < row.belowCount) {
            width = row.width;
            break;
        }
    }
    char digits[32];
    if (width == 0)
        std::snprintf(digits, sizeof digits, "%d", number);
    else
        std::snprintf(digits, sizeof digits, " %*d", width, number);
    std::string name(directory);
    name += '/';
    name += digits;
    name += ". ";
    std::string safe = FileNameSafeTitle(title);
    const size_t room = kLongestFileName - std::strlen(digits) - std::strlen(". .wav");
    if (safe.size() > room) {
        size_t cut = room;
        // Not inside a UTF-8 sequence: back to the first byte of the character.
        while (cut > 0 && (static_cast<unsigned char>(safe[cut]) & 0xC0) == 0x80) --cut;
        safe.resize(cut);
    }
    name += safe;
    name += ".wav";
    return name;
}

}  // namespace verdin
