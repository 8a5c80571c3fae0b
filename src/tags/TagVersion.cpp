#include "tags/TagVersion.h"

#include <cstdio>

namespace verdin {

std::string DescribeTagVersion(TagVersion v) {
    if (!v.found()) return "No ID3 Tag found";
    char text[40];
    std::snprintf(text, sizeof text, "ID3 Tag version %d.%d.%d", v.version, v.revision, v.subRevision);
    return text;
}

}  // namespace verdin
