// Arbitrary bytes as a mimeapps.list: a default set, read back, written out and read
// again, then removed. What the editor does not touch must survive the round trip.
#include "system/KeyFile.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    verdin::KeyFile file(std::string_view(reinterpret_cast<const char*>(data), size));
    const std::string before = file.Text();
    if (verdin::KeyFile(before).Text() != before) std::abort();
    file.Set("Default Applications", "audio/mpeg", "Verdin.Track.desktop;");
    verdin::KeyFile again(file.Text());
    if (again.Get("Default Applications", "audio/mpeg") != "Verdin.Track.desktop;") std::abort();
    again.Remove("Default Applications", "audio/mpeg");
    if (!again.Get("Default Applications", "audio/mpeg").empty()) std::abort();
    return 0;
}
