#pragma once
// A random entry: an expression that picks a matching track from the sample space when
// its row comes up. It refers to the picked track (a sample-space record, or the null
// track) without owning it.
#include "playlist/PlaylistItem.h"

#include <string>
#include <string_view>

namespace verdin {

class TrackRecord;

class RandomEntry final : public PlaylistItem {
public:
    explicit RandomEntry(std::string_view expression) : expression_(expression) {}

    uint32_t Duration() const override { return 0; }
    uint32_t FileSize() const override { return 0; }
    ItemKind Kind() const override { return ItemKind::kRandomEntry; }
    std::string Path() const override { return {}; }
    std::string Body() const override { return "Random entry"; }
    std::string Extension() const override { return {}; }

    const std::string& Expression() const { return expression_; }
    // Replaces the expression; the entry picks anew next time.
    void SetExpression(std::string_view expression) {
        expression_ = expression;
        picked_ = false;
    }
    bool Picked() const { return picked_; }
    TrackRecord* PickedTrack() const { return pickedTrack_; }
    // The sample space records the outcome of a pick here.
    void SetPicked(TrackRecord* track) {
        pickedTrack_ = track;
        picked_ = true;
    }
    void Reset() { picked_ = false; }

private:
    TrackRecord* pickedTrack_ = nullptr;
    bool picked_ = false;
    std::string expression_;
};

}  // namespace verdin
