// Arbitrary bytes through the INI profile reader, a key set, a write and a re-read that
// must keep the same sections and the key (the lookups on arbitrary text are the PLS and
// .vdp fuzzers', which compare them with the indexed key reader's).
#include "settings/IniProfile.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    verdin::IniProfile profile = verdin::IniProfile::Parse(std::string_view(reinterpret_cast<const char*>(data), size));
    profile.SetString("playlist", "File1", "a.mp3");
    const verdin::IniProfile again = verdin::IniProfile::Parse(profile.Serialize());
    if (again.SectionNames() != profile.SectionNames() || again.GetString("playlist", "File1") != "a.mp3") std::abort();
    return 0;
}
