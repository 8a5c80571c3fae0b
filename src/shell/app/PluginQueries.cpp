#include "PluginQueries.h"

#include "playlist/Playlist.h"
#include "playlist/TrackRecord.h"
#include "settings/Settings.h"
#include "shell/Player.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace verdin {

namespace {

// The volume query's "only answer" argument.
constexpr uintptr_t kReadVolume = static_cast<uintptr_t>(-666);

int RowOf(uintptr_t argument) { return argument > INT32_MAX ? -1 : static_cast<int>(argument); }

}  // namespace

intptr_t PluginQueries::Answer(intptr_t query, uintptr_t argument) {
    switch (query) {
        case VERDIN_IPC_GETVERSION: return VERDIN_HOST_VERSION;
        case VERDIN_IPC_ISPLAYING:
            switch (player_.Status()) {
                case PlayerStatus::Playing: return 1;
                case PlayerStatus::Paused: return 3;
                default: return 0;
            }
        case VERDIN_IPC_GETOUTPUTTIME: return OutputTime(argument);
        case VERDIN_IPC_JUMPTOTIME:
            if (!player_.Playing()) return -1;
            player_.SeekTo(static_cast<uint32_t>(std::min<uintptr_t>(argument, UINT32_MAX)));
            return 0;
        case VERDIN_IPC_SETPLAYLISTPOS: player_.SetCurrentRow(RowOf(argument)); return 0;
        case VERDIN_IPC_SETVOLUME: return Volume(argument);
        case VERDIN_IPC_GETLISTLENGTH: return player_.List().RowCount();
        case VERDIN_IPC_GETLISTPOS: return player_.List().RowCount() > 0 ? player_.CurrentRow() : -1;
        case VERDIN_IPC_GETINFO: return TrackInfo(argument);
        case VERDIN_IPC_GETPLAYLISTFILE: {
            const auto ref = player_.List().ItemAtRow(RowOf(argument));
            return ref ? Keep(fileName_, ref.item->Path() + ref.item->Body() + ref.item->Extension()) : 0;
        }
        case VERDIN_IPC_GETPLAYLISTTITLE: {
            const int row = RowOf(argument);
            return row >= 0 && row < player_.List().RowCount() ? Keep(title_, player_.CellsOfRow(row)[0]) : 0;
        }
        case VERDIN_IPC_GET_SHUFFLE: return player_.GetSettings().shuffleMode != 0;
        case VERDIN_IPC_GET_REPEAT: return player_.GetSettings().loopMode != 0;
        case VERDIN_IPC_SET_SHUFFLE:
            player_.ChangeSettings([on = argument != 0](Settings& s) { s.shuffleMode = on; });
            return 0;
        case VERDIN_IPC_SET_REPEAT:
            player_.ChangeSettings([on = argument != 0](Settings& s) { s.loopMode = on; });
            return 0;
        default: return 0;
    }
}

intptr_t PluginQueries::TakeCopyData(const COPYDATASTRUCT& data) {
    if (data.dwData != VERDIN_IPC_PLAYFILE || !data.lpData) return 0;
    const auto* bytes = static_cast<const char*>(data.lpData);
    const std::string path(bytes, strnlen(bytes, data.cbData));
    return !path.empty() && player_.AddPaths({path}, -1) > 0 ? 1 : 0;
}

intptr_t PluginQueries::OutputTime(uintptr_t which) const {
    const TrackRecord* track = player_.LoadedTrack();
    if (!player_.Playing() || !track) return -1;
    switch (which) {
        case 0: return player_.PositionMs();
        case 1: return track->Duration() / 1000;
        case 2: return track->Duration();
        default: return -1;
    }
}

intptr_t PluginQueries::TrackInfo(uintptr_t which) const {
    const TrackRecord* track = player_.LoadedTrack();
    if (!player_.Playing() || !track) return 0;
    switch (which) {
        case 0: return track->SampleRate();
        case 1: return std::abs(track->Bitrate()) / 1000;
        case 2: return track->Channels();
        default: return 0;
    }
}

intptr_t PluginQueries::Volume(uintptr_t volume) {
    if (volume != kReadVolume) {
        const int level = static_cast<int>(std::min<uintptr_t>(volume, 255) * 65535 / 255);
        player_.ChangeVolume(level - static_cast<int>(player_.GetSettings().Volume()));
    }
    return player_.GetSettings().Volume() * 255 / 65535;
}

intptr_t PluginQueries::Keep(std::string& kept, std::string text) {
    kept = std::move(text);
    return reinterpret_cast<intptr_t>(kept.c_str());
}

}  // namespace verdin
