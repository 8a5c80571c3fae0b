#pragma once
// One choice of the options page's device list: the name the device is opened by and
// the text shown for it.
#include <string>

namespace verdin {

struct OutputDeviceEntry {
    std::string name;
    std::string description;
    bool operator==(const OutputDeviceEntry&) const = default;
};

}  // namespace verdin
