#include "MpegHandlePool.h"

namespace verdin::mpeg {

Mpg123Handle MpegHandlePool::Take() {
    for (auto& place : places_) {
        if (place.load(std::memory_order_relaxed) == nullptr) continue;
        if (mpg123_handle* parked = place.exchange(nullptr, std::memory_order_acquire))
            return Mpg123Handle(parked);
    }
    return NewMpg123Handle();
}

void MpegHandlePool::Park(Mpg123Handle handle) {
    for (auto& place : places_) {
        mpg123_handle* empty = nullptr;
        if (place.compare_exchange_strong(empty, handle.get(), std::memory_order_release,
                                          std::memory_order_relaxed)) {
            handle.release();
            return;
        }
    }
    // Every place is taken: the handle is deleted as it goes out of scope.
}

void MpegHandlePool::Drain() {
    for (auto& place : places_) {
        Mpg123Handle parked(place.exchange(nullptr, std::memory_order_acquire));
    }
}

}  // namespace verdin::mpeg
