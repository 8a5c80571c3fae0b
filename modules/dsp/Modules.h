#pragma once
// The modules of DSP_Verdin.so, in the order getModule hands them out.
#include <verdin/dsp.h>

namespace verdin_dsp {

winampDSPModule* StereoWidenerModule();
winampDSPModule* VoiceRemoverModule();
winampDSPModule* CompressorModule();

}  // namespace verdin_dsp
