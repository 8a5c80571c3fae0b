#pragma once
// The DSP host: the active modules, and the call of each module's ModifySamples on every
// block a stream produces.
//
// How it stays free of locks and of data races
// --------------------------------------------
// Three kinds of thread meet here. The user-interface thread builds and changes the
// active list (start-up, the options page's Apply, exit) and is the only one to call
// Init, Config and Quit. Stream threads call ProcessBlock for every block; during a
// crossfade two of them do so at once. No thread may ever wait for a stream thread to
// finish a plug-in call while holding up that stream, and a stream thread must never
// wait at all.
//
// The streams never see the active list itself. They see a Chain: an immutable array of
// the module records to call, in order, built by the user-interface thread and
// published through the atomic pointer chain_. Changing the active list means building
// a new Chain (initialising the modules that are new in it first), swapping it in, and
// only then releasing what is no longer used: the old Chain and the instances of
// modules that left the list (their Quit runs, their library is unloaded).
//
// The hard part is "only then": a stream may have loaded the old pointer just before
// the swap and still be inside a module of it. The busy mark says whether a stream is
// inside the host. A stream takes it on entry (an exchange: if it was already set,
// another stream is inside and this block passes through unchanged, as the player has
// always done during a crossfade), loads chain_, runs the modules, and clears the mark.
// After swapping chain_, the user-interface thread waits until it sees the mark clear.
// A clear mark seen after the swap proves that every stream that could hold the old
// pointer has left: a stream that takes the mark later must load the new pointer.
//
// That proof is the store-buffer pattern (thread A writes chain_ then reads busy_;
// thread B writes busy_ then reads chain_; at least one must see the other's write).
// Acquire and release alone do not give it: both reads could see the old values. It
// needs one total order over those four operations, so exactly they are sequentially
// consistent; clearing the mark is a plain release, which is all the waiting thread's
// acquire (part of its sequentially consistent load) needs to see the stream's last use
// of the old chain before it frees it.
//
// The wait does not sleep: it yields until it sees the mark clear, which takes at most
// the time of one block's plug-in calls, since streams spend most of their step outside
// the host. The same swap-and-wait empties the host at exit; streams must have been
// stopped before the host is destroyed, because the hook's context is this object.
#include "plugins/dsp/ActiveDspList.h"
#include "plugins/dsp/DspLibraryList.h"
#include "plugins/dsp/DspPluginsText.h"

#include <verdin/dsp.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace verdin {

class DspHost {
public:
    DspHost();
    // Releases every active module (Quit for the initialised ones, then unloading).
    ~DspHost();
    DspHost(const DspHost&) = delete;
    DspHost& operator=(const DspHost&) = delete;

    // --- user-interface thread ---

    // Makes refs the active list (start-up with "dspPlugins", or Apply). A module that
    // was already active under the same ref keeps running with its state; a new one is
    // activated from libraries and initialised before any block reaches it; one that
    // left the list is quit and unloaded once no stream is inside it any more. An entry
    // whose library or module cannot be found stays in the list without an instance.
    void SetActiveList(DspLibraryList& libraries, std::span<const DspModuleRef> refs);
    // Empties the active list, releasing every module as above.
    void ClearActiveList();

    const std::vector<ActiveDspEntry>& ActiveList() const { return entries_; }
    // The "dspPlugins" text for the active list.
    std::string DspPluginsText() const;

    // --- stream threads ---

    // Passes a block through every active module in list order. samples holds frames
    // interleaved frames of the given format and has room for twice as many; the
    // result is the frame count of the block now (each module's result, negative ones
    // as 0, cut to that room), for the next module and for output. An empty block, or
    // one that arrives while another stream is inside the host, passes unchanged.
    uint32_t ProcessBlock(uint8_t* samples, uint32_t frames, uint32_t bitsPerSample, uint32_t channels,
                          uint32_t sampleRate);

    // The same with the shape of the engine's stream hook: context is the host
    // (HookContext()).
    static uint32_t Process(void* context, uint8_t* samples, uint32_t frames, uint32_t bitsPerSample,
                            uint32_t channels, uint32_t sampleRate);
    void* HookContext() { return this; }

private:
    // What the streams run: the modules of the entries that have an instance, in order.
    struct Chain {
        std::vector<winampDSPModule*> modules;
    };

    // Swaps next in and returns once no stream can still be using the chain it replaced,
    // which it frees.
    void Publish(std::unique_ptr<const Chain> next);

    // The active list; user-interface thread only.
    std::vector<ActiveDspEntry> entries_;
    // The chain the streams run, never null. Written (exchanged) by the user-interface
    // thread in Publish, read by stream threads while they hold the busy mark.
    // Sequentially consistent on both sides (see above).
    std::atomic<const Chain*> chain_;
    // Set while a stream thread is inside ProcessBlock. Taken (exchange, sequentially
    // consistent) and cleared (release) by stream threads; read by the user-interface
    // thread in Publish (sequentially consistent) to know the old chain is unused.
    std::atomic<bool> busy_{false};
};

}  // namespace verdin
