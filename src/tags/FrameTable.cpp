#include "tags/FrameTable.h"

#include "base/Text.h"

namespace verdin {
namespace {

using F = FrameId;

constexpr std::array<FrameInfo, kFrameCount> kFrames{{
    {F::NoFrame, "NOFRAME", "No frame", false},
    {F::OrigAlbum, "ORIGALBUM", "Original album/movie/show title", false},
    {F::Publisher, "PUBLISHER", "Publisher", false},
    {F::EncodedBy, "ENCODEDBY", "Encoded by", false},
    {F::EncoderSettings, "ENCODERSETTINGS", "Software/Hardware and settings used for encoding", false},
    {F::OrigFileName, "ORIGFILENAME", "Original filename", false},
    {F::Language, "LANGUAGE", "Language(s)", false},
    {F::PartInSet, "PARTINSET", "Part of a set", true},
    {F::Date, "DATE", "Date", false},
    {F::Time, "TIME", "Time", false},
    {F::RecordingDates, "RECORDINGDATES", "Recording dates", false},
    {F::MediaType, "MEDIATYPE", "Media type", false},
    {F::FileType, "FILETYPE", "File type", false},
    {F::NetRadioStation, "NETRADIOSTATION", "Internet radio station name", false},
    {F::NetRadioOwner, "NETRADIOOWNER", "Internet radio station owner", false},
    {F::Lyricist, "LYRICIST", "Lyricist/Text writer", false},
    {F::OrigArtist, "ORIGARTIST", "Original artist(s)/performer(s)", false},
    {F::OrigLyricist, "ORIGLYRICIST", "Original lyricist(s)/text writer(s)", false},
    {F::Subtitle, "SUBTITLE", "Subtitle/Description refinement", false},
    {F::MixArtist, "MIXARTIST", "Interpreted, remixed, or otherwise modified by", false},
    {F::UserText, "USERTEXT", "User defined text information", false},
    {F::ContentGroup, "CONTENTGROUP", "Content group description", false},
    {F::Title, "TITLE", "Title/songname/content description", false},
    {F::LeadArtist, "LEADARTIST", "Lead performer(s)/Soloist(s)", false},
    {F::Band, "BAND", "Band/orchestra/accompaniment", false},
    {F::Album, "ALBUM", "Album/Movie/Show title", false},
    {F::Year, "YEAR", "Year", true},
    {F::Conductor, "CONDUCTOR", "Conductor/performer refinement", false},
    {F::Composer, "COMPOSER", "Composer", false},
    {F::Copyright, "COPYRIGHT", "Copyright message", false},
    {F::ContentType, "CONTENTTYPE", "Content type", false},
    {F::TrackNum, "TRACKNUM", "Track number/Position in set", true},
    {F::Comment, "COMMENT", "Comments", false},
    {F::WwwAudioFile, "WWWAUDIOFILE", "Official audio file webpage", false},
    {F::WwwArtist, "WWWARTIST", "Official artist/performer webpage", false},
    {F::WwwAudioSource, "WWWAUDIOSOURCE", "Official audio source webpage", false},
    {F::WwwCommercialInfo, "WWWCOMMERCIALINFO", "Commercial information", false},
    {F::WwwCopyright, "WWWCOPYRIGHT", "Copyright/Legal information", false},
    {F::WwwPublisher, "WWWPUBLISHER", "Publishers official webpage", false},
    {F::WwwPayment, "WWWPAYMENT", "Payment", false},
    {F::WwwRadioPage, "WWWRADIOPAGE", "Official internet radio station homepage", false},
    {F::WwwUser, "WWWUSER", "User defined URL link", false},
    {F::InvolvedPeople, "INVOLVEDPEOPLE", "Involved people list", false},
    {F::UnsyncedLyrics, "UNSYNCEDLYRICS", "Unsychronized lyric/text transcription", false},
    {F::Picture, "PICTURE", "Attached picture", false},
    {F::GeneralObject, "GENERALOBJECT", "General encapsulated object", false},
    {F::UniqueFileId, "UNIQUEFILEID", "Unique file identifier", false},
    {F::PlayCounter, "PLAYCOUNTER", "Play counter", true},
    {F::Popularimeter, "POPULARIMETER", "Popularimeter", true},
    {F::GroupingReg, "GROUPINGREG", "Group identification registration", false},
    {F::CryptoReg, "CRYPTOREG", "Encryption method registration", false},
}};

// Position = identifier is what lets the rest of the player index by FrameId.
constexpr bool RowsAreInIdentifierOrder() {
    for (std::size_t i = 0; i < kFrames.size(); ++i)
        if (FrameIndex(kFrames[i].id) != i) return false;
    return true;
}
static_assert(RowsAreInIdentifierOrder());

}  // namespace

const std::array<FrameInfo, kFrameCount>& FrameTable() { return kFrames; }

const FrameInfo& FrameInfoOf(FrameId id) {
    const std::size_t index = FrameIndex(id);
    return kFrames[index < kFrames.size() ? index : 0];
}

std::optional<FrameId> FindFrameName(std::string_view name) {
    for (const FrameInfo& frame : kFrames)
        if (frame.name == name) return frame.id;
    return std::nullopt;
}

std::optional<FrameId> FindFrameNameIgnoreCase(std::string_view name) {
    for (const FrameInfo& frame : kFrames)
        if (EqualsIgnoreCase(frame.name, name)) return frame.id;
    return std::nullopt;
}

}  // namespace verdin
