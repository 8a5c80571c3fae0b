#pragma once
// The DSP plug-in interface as a module kind of the shared library list and instance:
// its records and its entry point, "winampDSPGetHeader2".
#include <verdin/dsp.h>

namespace verdin {

struct DspKind {
    using Header = winampDSPHeader;
    using Module = winampDSPModule;
    using GetHeader = winampDSPGetHeaderType;
    static constexpr const char* kEntryPoint = VERDIN_DSP_ENTRY_POINT;
};

}  // namespace verdin
