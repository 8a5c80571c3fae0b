#pragma once
// The DSP library list's name for headers that only pass it around.
namespace verdin {

template <typename Kind>
class ModuleLibraryList;
struct DspKind;
using DspLibraryList = ModuleLibraryList<DspKind>;

}  // namespace verdin
