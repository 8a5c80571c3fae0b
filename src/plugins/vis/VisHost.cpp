#include "VisHost.h"

#include "plugins/library/PluginCallScope.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <utility>

namespace verdin {

namespace {

constexpr int kChannels = 2;
constexpr int kValues = 576;
// The spectrum's last value of each channel is left as the module's record holds it:
// the host has always filled 575 of them.
constexpr int kSpectrumValuesFilled = kValues - 1;

using Block = std::array<std::array<unsigned char, kValues>, kChannels>;

// How many bytes of a 2 x 576 block a module's channel count asks for: 0, 576 or 1152.
size_t BytesFor(int channels) { return channels == 1 || channels == 2 ? static_cast<size_t>(channels) * kValues : 0; }

}  // namespace

VisHost::~VisHost() {
    for (ActiveVisEntry& entry : entries_) entry.instance.reset();
}

void VisHost::Load(VerdinHostWindow* parentWindow, std::string_view searchPath, std::string_view activeText) {
    // Modules run only once a list has been loaded; at start-up the setting alone is set.
    const bool wasOn = On() && libraries_;
    if (wasOn) SwitchOffNow();
    if (!libraries_ || searchPath_ != searchPath || libraries_->parentWindow() != parentWindow) {
        searchPath_ = std::string(searchPath);
        libraries_ = std::make_unique<VisLibraryList>(parentWindow, searchPath_);
    }
    entries_.clear();
    for (ModuleRef& ref : ParseModuleList(activeText)) entries_.push_back({std::move(ref), nullptr, 0});
    if (wasOn) SwitchOnNow();
}

void VisHost::StartUp() {
    if (!On()) return;
    enabled_ = 0;
    SwitchOn();
}

void VisHost::SwitchOn() {
    if (busy_) {
        pending_ = Pending::kOn;
        return;
    }
    if (!On()) SwitchOnNow();
}

void VisHost::SwitchOff() {
    if (busy_) {
        pending_ = Pending::kOff;
        return;
    }
    if (On()) SwitchOffNow();
}

void VisHost::SwitchOnNow() {
    busy_ = true;
    for (ActiveVisEntry& entry : entries_) {
        entry.instance = libraries_ ? libraries_->ActivateByPath(entry.ref.libraryPath, entry.ref.moduleIndex) : nullptr;
        if (entry.instance) entry.instance->Initialise();
        entry.elapsedMs = 0;
    }
    enabled_ = 1;
    EndBusy();
}

void VisHost::SwitchOffNow() {
    enabled_ = 0;
    busy_ = true;
    for (ActiveVisEntry& entry : entries_) entry.instance.reset();
    EndBusy();
}

void VisHost::EndBusy() {
    busy_ = false;
    const Pending pending = std::exchange(pending_, Pending::kNone);
    if (pending == Pending::kOn) SwitchOn();
    if (pending == Pending::kOff) SwitchOff();
}

void VisHost::RenderTick(const VisFrame& frame) {
    if (!On() || entries_.empty() || busy_) return;
    busy_ = true;
    if (frame.refresh) frame.refresh();
    Block spectrum{};
    Block waveform{};
    for (int channel = 0; channel < kChannels; ++channel) {
        for (int index = 0; index < kValues; ++index) {
            if (frame.waveform)
                waveform[channel][index] = static_cast<unsigned char>(static_cast<int8_t>(frame.waveform(channel, index) >> 24));
            if (frame.spectrum && index < kSpectrumValuesFilled)
                spectrum[channel][index] = static_cast<unsigned char>(frame.spectrum(channel, index) & 0xFF);
        }
    }
    for (ActiveVisEntry& entry : entries_) {
        // A switch asked for by an earlier module's Render waits for the tick's end; the
        // modules after it are not called any more meanwhile.
        if (!entry.instance || pending_ != Pending::kNone) continue;
        entry.elapsedMs += kTickMs;
        winampVisModule* module = entry.instance->module();
        if (entry.elapsedMs < module->delayMs) continue;
        module->sRate = frame.sampleRate;
        module->nCh = frame.channels;
        // Row by row, so that the last spectrum value of each channel stays as it is.
        for (int channel = 0; channel * kValues < static_cast<int>(BytesFor(module->spectrumNch)); ++channel)
            std::memcpy(module->spectrumData[channel], spectrum[channel].data(), kSpectrumValuesFilled);
        std::memcpy(module->waveformData, waveform.data(), BytesFor(module->waveformNch));
        int failed = 0;
        if (module->Render) {
            PluginCallScope call;
            failed = module->Render(module);
        }
        if (failed) entry.instance.reset();
    }
    EndBusy();
}

}  // namespace verdin
