#pragma once
// Copies of the DSP test plug-ins (built into tests/modules/dsp_host/) placed where a
// test wants them, and questions about what the process has loaded.
#include <string>

namespace verdin::test {

// Copies the test plug-in "<module>.so" (kit, other, empty, noentry, nullheader, endless) to
// directory/name and returns the new path. Each copy is a library of its own for the
// loader, with its own static data.
std::string PlaceTestModule(const std::string& module, const std::string& directory, const std::string& name);

// The handle of the library at path if the process has it loaded, else null. Asking
// does not load it (and leaves its reference count as it was).
void* LoadedHandle(const std::string& path);

}  // namespace verdin::test
