#pragma once
// The name of the file a track is decoded into.
#include <string>
#include <string_view>

namespace verdin {

// "<directory>/<number>. <title>.wav". The number's form follows the playlist's entry
// count: fewer than 10 entries, the plain number ("%d"); from 10 on, the formats
// "% 2d", "% 3d" and "% 4d" (10 to 99, 100 to 999, 1000 or more) as the player reads
// them: one space, then the number padded with spaces to the width. With 12 entries
// track 7 is "  7" and track 12 is " 12"; with 100 entries track 7 is "   7". (C's
// printf would count the space inside the width and give " 7"; the player's names are
// the ones above, on purpose.) A title too long for a file name (255 bytes with the
// number and ".wav") is cut, at a character's boundary, so that the name fits; a name
// that fits is left exactly as it is.
std::string WavFileName(std::string_view directory, int number, int entryCount,
                        std::string_view title);

// The title with every character that a file name cannot hold replaced by "_": "/" and
// NUL, which Linux forbids, and also \ : * ? " < > |, which other file systems (FAT,
// NTFS, SMB shares) forbid, so that decoded files can be copied anywhere.
std::string FileNameSafeTitle(std::string_view title);

}  // namespace verdin
