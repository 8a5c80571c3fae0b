#pragma once
// A track in a playlist: it owns its track record.
#include "playlist/PlaylistItem.h"
#include "playlist/TrackRecord.h"

#include <memory>

namespace verdin {

class TrackItem final : public PlaylistItem {
public:
    explicit TrackItem(std::unique_ptr<TrackRecord> track) : track_(std::move(track)) {}
    explicit TrackItem(std::string_view fullName) : track_(std::make_unique<TrackRecord>(fullName)) {}

    uint32_t Duration() const override { return track_->Duration(); }
    uint32_t FileSize() const override { return track_->FileSize(); }
    ItemKind Kind() const override { return ItemKind::kTrack; }
    std::string Path() const override { return track_->Path(); }
    std::string Body() const override { return track_->Body(); }
    std::string Extension() const override { return track_->Extension(); }

    TrackRecord& Track() { return *track_; }
    const TrackRecord& Track() const { return *track_; }

private:
    std::unique_ptr<TrackRecord> track_;
};

}  // namespace verdin
