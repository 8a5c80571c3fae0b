#pragma once
// A track: its split file name, the information retrieved from the file (what the input
// module reports, the tag, the tag version, where the audio starts) and whether the file
// could be opened.
//
// Information is kept compactly (a music library holds tens of thousands of records):
// the input module's record is kept as its fields, not as its 544-byte layout.
#include "playlist/TrackName.h"
#include "tags/TagVersion.h"
#include "tags/TrackTag.h"

#include <verdin/input.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace verdin {

class InputModuleList;

class TrackRecord {
public:
    // Splits the name; no file access.
    explicit TrackRecord(std::string_view fullName);

    // The one record that stands for "no track": empty path and extension, the body
    // "null track". A random entry with nothing to pick resolves to it; it is never played.
    static TrackRecord& NullTrack();
    bool IsNullTrack() const;

    const std::string& Path() const { return name_.path; }
    const std::string& Body() const { return name_.body; }
    const std::string& Extension() const { return name_.extension; }
    std::string FullName() const { return name_.Full(); }
    bool IsUrl() const;

    // Retrieves the information: the tag (unless ignoreTags) with its version and the
    // audio start, for local files; then the input module that takes the file fills the
    // information. A file that cannot be opened, or that no module understands, leaves
    // `exists` cleared. Nothing is reported. Does nothing for the null track.
    // offUserThread: called on a worker thread, where only a module that declares itself
    // re-entrant may be asked; for any other module the record is left not retrieved
    // (InfoRetrieved() false), for the user-interface thread to finish. Safe to run for
    // different records on several threads at once.
    // A cue sheet's track (CueTrackPath.h) takes its information from its image, its
    // length from the sheet's boundaries, its title and performer from the sheet.
    bool RetrieveInformation(const InputModuleList& modules, bool ignoreTags, bool offUserThread = false);

    bool Exists() const { return exists_; }
    bool InfoRetrieved() const { return infoRetrieved_; }
    uint32_t AudioStart() const { return audioStart_; }

    const TrackTag& Tag() const { return tag_; }
    TrackTag& MutableTag() {
        ++revision_;
        return tag_;
    }
    TagVersion GetTagVersion() const { return tagVersion_; }

    uint32_t FileSize() const { return fileSize_; }
    uint32_t Duration() const { return duration_; }  // milliseconds
    int32_t Bitrate() const { return bitrate_; }     // negative: variable, the average
    int32_t SampleRate() const { return sampleRate_; }
    int32_t Channels() const { return channels_; }
    int32_t BitsPerSample() const { return bitsPerSample_; }
    bool Seekable() const { return seekable_; }
    const std::string& SuggestedTitle() const { return suggestedTitle_; }

    // The input module's record as its layout has it (the placeholder values before
    // retrieval).
    TrackInfo Info() const;
    void SetInfo(const TrackInfo& info);

    // Changes whenever the information or the tag may have changed, so that what was read
    // from the record can tell whether it is still what the record holds.
    uint32_t Revision() const { return revision_; }

private:
    bool RetrieveCueTrackInformation(const InputModuleList& modules, bool offUserThread);

    TrackName name_;
    TrackTag tag_;
    std::string suggestedTitle_;
    uint32_t fileSize_ = 0;
    uint32_t duration_ = 0;
    uint32_t audioStart_ = 0;
    int32_t bitrate_ = 1;
    int32_t sampleRate_ = 1;
    int32_t channels_ = 1;
    int32_t bitsPerSample_ = 8;
    TagVersion tagVersion_;
    bool seekable_ = false;
    bool decoderEqualizes_ = false;
    bool exists_ = true;
    bool infoRetrieved_ = false;
    uint32_t revision_ = 0;
};

}  // namespace verdin
