// Arbitrary bytes through the INI profile reader: every lookup the preset and playlist
// readers make, then a write and a re-read that must keep the same sections.
#include "settings/IniProfile.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    verdin::IniProfile profile = verdin::IniProfile::Parse(text);
    const auto names = profile.SectionNames();
    for (const std::string& name : names) {
        const int count = profile.GetInt(name, "numberofentries", 0);
        for (int i = 1; i <= 4 && i <= count; ++i) {
            if (profile.GetString(name, "entry" + std::to_string(i)).size() > 255) std::abort();
        }
        (void)profile.GetInt(name, "PreAmp");
    }
    profile.SetString("playlist", "File1", "a.mp3");
    const verdin::IniProfile again = verdin::IniProfile::Parse(profile.Serialize());
    if (again.SectionNames() != profile.SectionNames()) std::abort();
    return 0;
}
