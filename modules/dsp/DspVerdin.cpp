// The entry point of DSP_Verdin.so and its module list.
//
// None of the modules has a settings dialog (their Config is NULL): each does one thing
// with fixed, moderate settings, and is switched on or off by adding it to the player's
// active list or removing it.
#include "Modules.h"

namespace {

using ModuleGetter = winampDSPModule* (*)();

// Index -> module; getModule answers NULL past the end.
constexpr ModuleGetter kModules[] = {
    verdin_dsp::StereoWidenerModule,
    verdin_dsp::VoiceRemoverModule,
    verdin_dsp::CompressorModule,
};
constexpr int kModuleCount = static_cast<int>(sizeof kModules / sizeof kModules[0]);

winampDSPModule* GetModule(int which) {
    return which >= 0 && which < kModuleCount ? kModules[which]() : nullptr;
}

char description[] = "Verdin DSP modules";
winampDSPHeader header = {DSP_HDRVER, description, GetModule};

}  // namespace

extern "C" winampDSPHeader* winampDSPGetHeader2(void) { return &header; }
