#include "AlsaDeviceList.h"

#include "engine/output/AlsaApi.h"

#include <algorithm>
#include <cstdlib>

namespace verdin {

namespace {

constexpr const char* kDefaultName = "default";
constexpr const char* kDefaultDescription = "Default ALSA device";

// A hint's field as a string; ALSA hands out malloc'd copies.
std::string HintField(const void* hint, const char* field) {
    char* value = Alsa()->snd_device_name_get_hint(hint, field);
    if (!value) return {};
    std::string text(value);
    std::free(value);
    return text;
}

// Descriptions come as one or two lines ("HDA Intel PCH, ALC892 Analog\nFront output");
// the options page shows one line.
std::string OneLine(std::string text) {
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

}  // namespace

std::vector<OutputDeviceEntry> ListAlsaDevices() {
    std::vector<OutputDeviceEntry> list{{kDefaultName, kDefaultDescription}};
    void** hints = nullptr;
    if (!Alsa() || Alsa()->snd_device_name_hint(-1, "pcm", &hints) < 0 || !hints) return list;
    for (void** hint = hints; *hint; ++hint) {
        const std::string name = HintField(*hint, "NAME");
        const std::string direction = HintField(*hint, "IOID");  // empty: both ways
        if (name.empty() || direction == "Input") continue;
        const bool seen = std::any_of(list.begin(), list.end(),
                                      [&](const OutputDeviceEntry& e) { return e.name == name; });
        if (seen) {
            if (name == kDefaultName) {
                const std::string description = OneLine(HintField(*hint, "DESC"));
                if (!description.empty()) list[0].description = description;
            }
            continue;
        }
        list.push_back({name, OneLine(HintField(*hint, "DESC"))});
    }
    Alsa()->snd_device_name_free_hint(hints);
    return list;
}

std::optional<std::string> AlsaPcmNameOf(int deviceNumber) {
    if (deviceNumber == -1) return std::string(kDefaultName);
    if (deviceNumber < -1) return std::nullopt;
    const std::vector<OutputDeviceEntry> list = ListAlsaDevices();
    const size_t entry = static_cast<size_t>(deviceNumber) + 1;
    if (entry >= list.size()) return std::nullopt;
    return list[entry].name;
}

}  // namespace verdin
