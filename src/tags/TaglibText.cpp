#include "tags/TaglibText.h"

namespace verdin {

std::string JoinUtf8(const TagLib::StringList& values, std::string_view separator) {
    std::string joined;
    for (const TagLib::String& value : values) {
        if (value.isEmpty()) continue;
        if (!joined.empty()) joined += separator;
        joined += Utf8(value);
    }
    return joined;
}

}  // namespace verdin
