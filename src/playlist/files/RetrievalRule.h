#pragma once
// Whether a track's information is read at the moment it is added to a playlist (by a
// playlist file being loaded, or by the shell's open, add and insert commands).
//
//   a URL           unless skipInfoForAnyFile or skipInfoForURL
//   a local file    unless skipInfoForAnyFile, or it lies on a CD-ROM (the file system of
//                   its directory is ISO 9660 or UDF) and skipInfoForCDROM
//
// Reading a slow disc or a remote stream for every entry of a long playlist is what
// these settings spare the user.
#include <string_view>

namespace verdin {

class InputModuleList;
class TrackRecord;
struct Settings;

// Whether a statfs f_type is a CD-ROM's: ISO 9660 (0x9660) or UDF (0x15013346).
bool IsCdromFileSystemType(long fileSystemType);
// Whether the directory lies on such a file system (false when it cannot be asked).
bool IsOnCdrom(std::string_view directory);

// The rule on facts already known.
bool RetrievalWanted(const Settings& settings, bool isUrl, bool onCdrom);
// The rule for a track; asks the file system only when the answer matters.
bool ShouldRetrieveOnAdd(const TrackRecord& track, const Settings& settings);
// Applies the rule and, when it says so, retrieves (honouring ignoreID3Tags). Returns
// whether retrieval was attempted; how it went is in the track's flags.
bool RetrieveOnAdd(TrackRecord& track, const Settings& settings, const InputModuleList& modules);

}  // namespace verdin
