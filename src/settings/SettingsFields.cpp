#include "SettingsFields.h"

#include "Settings.h"

#include <array>
#include <bit>
#include <cstring>
#include <type_traits>

namespace verdin {

static_assert(std::endian::native == std::endian::little,
              "binary settings are stored as the little-endian bytes of the fields");
static_assert(sizeof(RebarBand) * 7 == 84 && sizeof(WindowPlacement) == 44);

namespace {

template <auto Member>
using MemberType = std::remove_reference_t<decltype(std::declval<Settings&>().*Member)>;

template <auto Member>
std::string* TextOf(Settings& s) { return &(s.*Member); }

template <auto Member>
void* BytesOf(Settings& s) { return &(s.*Member); }

template <auto Member>
constexpr SettingsField Text(const char* name, uint32_t size) {
    return {name, FieldKind::Text, size, &TextOf<Member>, nullptr};
}

// A number, flag or array stored as exactly its bytes (the low bytes when a smaller
// size is given: only mainVolume, whose two low bytes are the volume).
template <auto Member>
constexpr SettingsField Binary(const char* name, uint32_t size = sizeof(MemberType<Member>)) {
    static_assert(std::is_trivially_copyable_v<MemberType<Member>>);
    return {name, FieldKind::Binary, size, nullptr, &BytesOf<Member>};
}

using S = Settings;

constexpr std::array kFields = {
    Binary<&S::version>("version"),
    Text<&S::trackTitleTemplate>("trackTitleTemplate", 256),
    Text<&S::windowTitleTemplate>("windowTitleTemplate", 256),
    Text<&S::statusStringTemplate>("statusStringTemplate", 256),
    Binary<&S::customizedCaption>("customizedCaption"),
    Text<&S::initialDirectory>("initialDirectory", 256),
    Binary<&S::playlistHeaderOrder>("playlistHeaderOrder"),
    Binary<&S::playlistHeaderWidth>("playlistHeaderWidth"),
    Binary<&S::rebarBandArray>("rebarBandArray"),
    Binary<&S::mainWindowPlacement>("mainWindowPlacement"),
    Binary<&S::loopMode>("loopMode"),
    Binary<&S::frequencyAnalyzer>("frequencyAnalyzer"),
    Binary<&S::oscilloscope>("oscilloscope"),
    Binary<&S::shuffleMode>("shuffleMode"),
    Binary<&S::showPlaylist>("showPlaylist"),
    Binary<&S::bufferSize>("bufferSize"),
    Binary<&S::bufferPrefill>("bufferPrefill"),
    Binary<&S::playerThreadPriority>("playerThreadPriority"),
    Binary<&S::processPriorityClass>("processPriorityClass"),
    Text<&S::decodeDirectory>("decodeDirectory", 256),
    Binary<&S::savedCurrentIndex>("savedCurrentIndex"),
    Binary<&S::useProxy>("useProxy"),
    Text<&S::proxyURL>("proxyURL", 1024),
    Text<&S::proxyByPass>("proxyByPass", 1024),
    Binary<&S::useTrayIcon>("useTrayIcon"),
    Binary<&S::skipSilenceInTheBeginning>("skipSilenceInTheBeginning"),
    Binary<&S::skipSilenceInTheEnd>("skipSilenceInTheEnd"),
    Binary<&S::silenceLevel>("silenceLevel"),
    Binary<&S::miniWindowMode>("miniWindowMode"),
    Binary<&S::miniWindowX>("miniWindowX"),
    Binary<&S::miniWindowY>("miniWindowY"),
    Binary<&S::miniWindowWidth>("miniWindowWidth"),
    Binary<&S::autoPlayAtStartup>("autoPlayAtStartup"),
    Binary<&S::miniWindowShowPosition>("miniWindowShowPosition"),
    Binary<&S::minimized>("minimized"),
    Binary<&S::pauseBetweenTracks>("pauseBetweenTracks"),
    Binary<&S::useRebarBitmap>("useRebarBitmap"),
    Text<&S::rebarBitmap>("rebarBitmap", 256),
    Binary<&S::rebarBitmapIntensity>("rebarBitmapIntensity"),
    Binary<&S::mainVolume>("mainVolume", 2),
    Binary<&S::showVolumeControl>("showVolumeControl"),
    Binary<&S::waveOutDevice>("waveOutDevice"),
    Binary<&S::equalize>("equalize"),
    Binary<&S::loudness>("loudness"),
    Binary<&S::usePresetLinks>("usePresetLinks"),
    Binary<&S::equalizerValues>("equalizerValues"),
    Binary<&S::preAmp>("preAmp"),
    Binary<&S::ignoreID3Tags>("ignoreID3Tags"),
    Binary<&S::showSplash>("showSplash"),
    Binary<&S::skipInfoForURL>("skipInfoForURL"),
    Binary<&S::skipInfoForCDROM>("skipInfoForCDROM"),
    Binary<&S::skipInfoForAnyFile>("skipInfoForAnyFile"),
    Text<&S::sampleSpaceSearchPath>("sampleSpaceSearchPath", 4096),
    Binary<&S::recurseSampleSpaceSearchPath>("recurseSampleSpaceSearchPath"),
    Binary<&S::recursiveAddDirectory>("recursiveAddDirectory"),
    Binary<&S::outputType>("outputType"),
    Binary<&S::directSoundDevice>("directSoundDevice"),
    Binary<&S::directSoundCooperativeLevel>("directSoundCooperativeLevel"),
    Text<&S::inputPluginsSearchPath>("inputPluginsSearchPath", 4096),
    Text<&S::visualizationPluginsSearchPath>("visualizationPluginsSearchPath", 4096),
    Text<&S::dspPluginsSearchPath>("dspPluginsSearchPath", 4096),
    Text<&S::generalPurposePluginsSearchPath>("generalPurposePluginsSearchPath", 4096),
    Binary<&S::enableVisualizationPlugins>("enableVisualizationPlugins"),
    Binary<&S::normalWindowAlwaysOnTop>("normalWindowAlwaysOnTop"),
    Text<&S::visualizationPlugins>("visualizationPlugins", 4096),
    Text<&S::dspPlugins>("dspPlugins", 4096),
    Binary<&S::crossfade>("crossfade"),
    Binary<&S::crossfadeLength>("crossfadeLength"),
    Binary<&S::deleteTracksAfterPlaying>("deleteTracksAfterPlaying"),
    Binary<&S::vdpHistory>("vdpHistory"),
};

// Cuts a text to at most max bytes without splitting a UTF-8 character.
std::string CutText(const std::string& text, size_t max) {
    if (text.size() <= max) return text;
    size_t end = max;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
    return text.substr(0, end);
}

}  // namespace

std::span<const SettingsField> SettingsFields() { return kFields; }

std::string StoredBytes(const SettingsField& field, const Settings& settings) {
    Settings& s = const_cast<Settings&>(settings);
    if (field.kind == FieldKind::Text) return *field.text(s);
    return std::string(static_cast<const char*>(field.bytes(s)), field.size);
}

bool TakeStoredBytes(const SettingsField& field, Settings& settings, const std::string& stored) {
    if (field.kind == FieldKind::Text) {
        if (stored.empty()) return false;
        *field.text(settings) = CutText(stored, field.size - 1);
        return true;
    }
    if (stored.size() != field.size) return false;
    std::memcpy(field.bytes(settings), stored.data(), field.size);
    return true;
}

}  // namespace verdin
