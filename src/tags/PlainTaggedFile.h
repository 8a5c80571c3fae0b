#pragma once
// A TagLib file object for a file whose layout TagLib does not know (AU and others):
// only the tag containers that any file may carry are looked for, at the places they
// are kept: an ID3v2 tag at the start, an ID3v1 trailer in the last 128 bytes and an
// APE tag just before it or at the end. Nothing in the audio is read.
#include <taglib/apetag.h>
#include <taglib/id3v1tag.h>
#include <taglib/id3v2tag.h>
#include <taglib/tfile.h>

#include <memory>

namespace verdin {

class PlainTaggedFile final : public TagLib::File {
public:
    // leadingTag: whether the stream starts with an ID3v2 header.
    PlainTaggedFile(TagLib::IOStream* stream, bool leadingTag);
    ~PlainTaggedFile() override;

    TagLib::Tag* tag() const override;
    TagLib::AudioProperties* audioProperties() const override { return nullptr; }
    bool save() override { return false; }

    TagLib::ID3v2::Tag* id3v2Tag() const { return id3v2_.get(); }
    TagLib::ID3v1::Tag* id3v1Tag() const { return id3v1_.get(); }
    TagLib::APE::Tag* apeTag() const { return ape_.get(); }

private:
    std::unique_ptr<TagLib::ID3v2::Tag> id3v2_;
    std::unique_ptr<TagLib::ID3v1::Tag> id3v1_;
    std::unique_ptr<TagLib::APE::Tag> ape_;
};

}  // namespace verdin
