#include "tags/PlainTaggedFile.h"

#include <taglib/apefooter.h>

namespace verdin {

PlainTaggedFile::PlainTaggedFile(TagLib::IOStream* stream, bool leadingTag) : TagLib::File(stream) {
    if (!isOpen()) return;
    if (leadingTag) id3v2_ = std::make_unique<TagLib::ID3v2::Tag>(this, 0);

    constexpr long kId3v1Size = 128;
    const long size = length();
    long end = size;
    if (size >= kId3v1Size) {
        seek(size - kId3v1Size);
        if (readBlock(3) == "TAG") {
            id3v1_ = std::make_unique<TagLib::ID3v1::Tag>(this, size - kId3v1Size);
            end -= kId3v1Size;
        }
    }
    const long footer = end - static_cast<long>(TagLib::APE::Footer::size());
    if (footer >= 0) {
        seek(footer);
        if (readBlock(8) == "APETAGEX") ape_ = std::make_unique<TagLib::APE::Tag>(this, footer);
    }
}

PlainTaggedFile::~PlainTaggedFile() = default;

TagLib::Tag* PlainTaggedFile::tag() const {
    if (id3v2_) return id3v2_.get();
    if (ape_) return ape_.get();
    return id3v1_.get();
}

}  // namespace verdin
