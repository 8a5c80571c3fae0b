#pragma once
// Parked mpg123 handles for information retrieval.
//
// Making a handle costs about twice as much as reading a file's information with it, and
// the player reads the information of thousands of files in a row, from several threads
// at once. Handles are therefore parked here after use and taken again by the next call.
// Taking and parking are one atomic exchange each: no lock, and a handle is only ever in
// one thread's hands.
#include "Mpg123Handle.h"

#include <array>
#include <atomic>

namespace verdin::mpeg {

class MpegHandlePool {
public:
    MpegHandlePool() = default;
    ~MpegHandlePool() { Drain(); }
    MpegHandlePool(const MpegHandlePool&) = delete;
    MpegHandlePool& operator=(const MpegHandlePool&) = delete;

    // A parked handle, or a new one when none is parked (null only when libmpg123 fails).
    Mpg123Handle Take();
    // Parks the handle for the next Take; deletes it when every place is taken.
    void Park(Mpg123Handle handle);
    // Deletes every parked handle (the module is being released).
    void Drain();

private:
    // Enough for every information-retrieval thread the player runs at once; more
    // threads still work, they just make their own handles.
    static constexpr size_t kPlaces = 8;
    // Each place holds a parked handle or null. Any thread that retrieves information
    // parks (release, publishing the handle's state) and takes (acquire) through it.
    std::array<std::atomic<mpg123_handle*>, kPlaces> places_{};
};

// Borrows a handle from a pool for one scope and parks it again at the end.
class PooledMpg123Handle {
public:
    explicit PooledMpg123Handle(MpegHandlePool& pool) : pool_(pool), handle_(pool.Take()) {}
    ~PooledMpg123Handle() {
        if (handle_) pool_.Park(std::move(handle_));
    }
    PooledMpg123Handle(const PooledMpg123Handle&) = delete;
    PooledMpg123Handle& operator=(const PooledMpg123Handle&) = delete;

    mpg123_handle* get() const { return handle_.get(); }

private:
    MpegHandlePool& pool_;
    Mpg123Handle handle_;
};

}  // namespace verdin::mpeg
