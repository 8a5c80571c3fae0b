#pragma once
// Reads the tag containers of one file through TagLib's class for its layout, without
// audio properties, and hands them to the builder best first.
#include "tags/DescriptorStream.h"
#include "tags/TagBuilder.h"
#include "tags/TagFileKind.h"
#include "tags/TagVersion.h"

#include <string>

namespace verdin {

struct FormatReadResult {
    TagVersion version;  // of the ID3 tag found, if any
    std::string error;   // set when TagLib found the file invalid for its layout
};

FormatReadResult ReadFormatTags(TagFileKind kind, DescriptorStream& stream, bool leadingTag, TagBuilder& builder);

}  // namespace verdin
