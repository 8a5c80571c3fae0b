#include "DspHost.h"

#include <algorithm>
#include <climits>
#include <thread>

namespace verdin {

namespace {

// Larger blocks would overflow the int that ModifySamples takes (twice the frames must
// fit); no stream makes blocks anywhere near this size.
constexpr uint32_t kMaxBlockFrames = INT_MAX / 2;

}  // namespace

DspHost::DspHost() : chain_(new Chain{}) {}

DspHost::~DspHost() {
    ClearActiveList();
    delete chain_.load(std::memory_order_relaxed);  // only this thread is left
}

void DspHost::SetActiveList(DspLibraryList& libraries, std::span<const DspModuleRef> refs) {
    std::vector<ActiveDspEntry> previous = std::move(entries_);
    entries_ = ActivateEntries(libraries, refs, previous);

    auto next = std::make_unique<Chain>();
    for (const ActiveDspEntry& entry : entries_) {
        winampDSPModule* module = entry.instance ? entry.instance->module() : nullptr;
        if (module && module->ModifySamples) next->modules.push_back(module);
    }
    Publish(std::move(next));
    // No stream can reach the modules that were not taken over any more: quit and
    // unload them now, in list order.
    previous.clear();
}

void DspHost::ClearActiveList() {
    std::vector<ActiveDspEntry> previous = std::move(entries_);
    entries_.clear();
    Publish(std::make_unique<Chain>());
    previous.clear();
}

std::string DspHost::DspPluginsText() const { return FormatDspPlugins(RefsOf(entries_)); }

void DspHost::Publish(std::unique_ptr<const Chain> next) {
    const Chain* old = chain_.exchange(next.release(), std::memory_order_seq_cst);
    while (busy_.load(std::memory_order_seq_cst)) std::this_thread::yield();
    delete old;
}

uint32_t DspHost::ProcessBlock(uint8_t* samples, uint32_t frames, uint32_t bitsPerSample, uint32_t channels,
                               uint32_t sampleRate) {
    if (frames == 0 || frames > kMaxBlockFrames) return frames;
    if (busy_.exchange(true, std::memory_order_seq_cst)) return frames;  // another stream is inside
    const Chain* chain = chain_.load(std::memory_order_seq_cst);
    const int room = static_cast<int>(2 * frames);
    int count = static_cast<int>(frames);
    for (winampDSPModule* module : chain->modules) {
        const int result = module->ModifySamples(module, reinterpret_cast<short*>(samples), count,
                                                 static_cast<int>(bitsPerSample), static_cast<int>(channels),
                                                 static_cast<int>(sampleRate));
        count = std::clamp(result, 0, room);
    }
    busy_.store(false, std::memory_order_release);
    return static_cast<uint32_t>(count);
}

uint32_t DspHost::Process(void* context, uint8_t* samples, uint32_t frames, uint32_t bitsPerSample,
                          uint32_t channels, uint32_t sampleRate) {
    return static_cast<DspHost*>(context)->ProcessBlock(samples, frames, bitsPerSample, channels, sampleRate);
}

}  // namespace verdin
