#include "tags/GenreTable.h"

#include "base/Text.h"

namespace verdin {
namespace {

constexpr std::array<std::string_view, kGenreCount> kGenres{
    "Blues ", "Classic Rock ", "Country ", "Dance ", "Disco ", "Funk ", "Grunge ",
    "Hip-Hop ", "Jazz ", "Metal ", "New Age ", "Oldies ", "Other", "Pop ", "R&B ", "Rap ",
    "Reggae ", "Rock ", "Techno ", "Industrial ", "Alternative ", "Ska ", "Death Metal ",
    "Pranks ", "Soundtrack", "Euro-Techno ", "Ambient ", "Trip-Hop ", "Vocal ", "Jazz+Funk ",
    "Fusion ", "Trance ", "Classical ", "Instrumental ", "Acid ", "House", "Game ",
    "Sound Clip ", "Gospel ", "Noise ", "AlternRock ", "Bass ", "Soul ", "Punk ", "Space ",
    "Meditative ", "Instrumental Pop", "Instrumental Rock ", "Ethnic ", "Gothic ",
    "Darkwave ", "Techno-Industrial ", "Electronic ", "Pop-Folk ", "Eurodance ", "Dream",
    "Southern Rock ", "Comedy ", "Cult ", "Gangsta ", "Top 40 ", "Christian Rap ",
    "Pop/Funk ", "Jungle ", "Native American ", "Cabaret", "New Wave ", "Psychadelic ",
    "Rave ", "Showtunes ", "Trailer ", "Lo-Fi ", "Tribal ", "Acid Punk ", "Acid Jazz ",
    "Polka ", "Retro", "Musical ", "Rock & Roll ", "Hard Rock ", "Folk ", "Folk-Rock ",
    "National Folk ", "Swing ", "Fast Fusion ", "Bebob ", "Latin ", "Revival", "Celtic ",
    "Bluegrass ", "Avantgarde ", "Gothic Rock ", "Progressive Rock ", "Psychedelic Rock ",
    "Symphonic Rock ", "Slow Rock", "Big Band ", "Chorus ", "Easy Listening ", "Acoustic ",
    "Humour ", "Speech ", "Chanson ", "Opera ", "Chamber Music ", "Sonata ", "Symphony",
    "Booty Bass ", "Primus ", "Porn Groove ", "Satire ", "Slow Jam ", "Club ", "Tango ",
    "Samba ", "Folklore ", "Ballad ", "Power Ballad", "Rhythmic Soul ", "Freestyle ",
    "Duet ", "Punk Rock ", "Drum Solo ", "A capella ", "Euro-House ", "Dance Hall ",
};

bool IsDecimal(std::string_view text) {
    if (text.empty() || text.size() > 3) return false;
    for (char c : text)
        if (c < '0' || c > '9') return false;
    return true;
}

std::string_view TrimTrailingBlank(std::string_view text) {
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
    return text;
}

}  // namespace

const std::array<std::string_view, kGenreCount>& GenreTable() { return kGenres; }

std::optional<std::string_view> GenreName(int number) {
    if (number < 0 || number >= static_cast<int>(kGenreCount)) return std::nullopt;
    return kGenres[static_cast<std::size_t>(number)];
}

std::string ContentTypeFromValues(const std::vector<std::string>& values) {
    std::string references;
    std::string text;
    for (const std::string& value : values) {
        if (IsDecimal(value) || value == "RX" || value == "CR") {
            references += '(';
            references += value;
            references += ')';
        } else if (!value.empty()) {
            if (!text.empty()) text += '/';
            else if (value.front() == '(') text += '(';
            text += value;
        }
    }
    return references + text;
}

void ResolveContentType(std::string_view raw, std::string& out) {
    out.clear();
    std::string_view lastName;
    while (raw.size() >= 2 && raw[0] == '(' && raw[1] != '(') {
        const std::size_t close = raw.find(')');
        if (close == std::string_view::npos) break;
        const std::string_view inner = raw.substr(1, close - 1);
        std::optional<std::string_view> name;
        if (IsDecimal(inner)) name = GenreName(ParseDecimal(inner));
        else if (inner == "RX") name = kRemixRefinement;
        else if (inner == "CR") name = kCoverRefinement;
        if (name) {
            out += *name;
            lastName = *name;
        } else {
            out += raw.substr(0, close + 1);
            lastName = {};
        }
        raw.remove_prefix(close + 1);
    }
    if (raw.size() >= 2 && raw[0] == '(' && raw[1] == '(') raw.remove_prefix(1);
    if (raw.empty()) return;
    if (!lastName.empty() && EqualsIgnoreCase(TrimTrailingBlank(lastName), raw)) return;
    out += raw;
}

std::string ResolveContentType(std::string_view raw) {
    std::string out;
    ResolveContentType(raw, out);
    return out;
}

}  // namespace verdin
