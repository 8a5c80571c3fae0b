#include "tags/TrackTag.h"

#include <limits>

namespace verdin {

TrackTag::Span TrackTag::Store(std::string_view bytes) {
    // The pool is addressed with 32-bit offsets; a tag never comes near that in practice,
    // and a field that would overflow it is stored empty rather than corrupting others.
    constexpr std::size_t kLimit = std::numeric_limits<std::uint32_t>::max();
    if (bytes.empty() || bytes.size() > kLimit - pool_.size()) return {};
    Span span{static_cast<std::uint32_t>(pool_.size()), static_cast<std::uint32_t>(bytes.size())};
    pool_.append(bytes);
    return span;
}

FrameView TrackTag::operator[](std::size_t index) const {
    const Frame& f = frames_[index];
    FrameView view;
    view.id = f.id;
    view.text = Load(f.fields[kText]);
    view.language = Load(f.fields[kLanguage]);
    view.description = Load(f.fields[kDescription]);
    view.mimeType = Load(f.fields[kMimeType]);
    view.fileName = Load(f.fields[kFileName]);
    view.data = Load(f.fields[kData]);
    view.dataSize = f.dataSize;
    view.pictureType = f.pictureType;
    return view;
}

std::optional<std::size_t> TrackTag::FindIndex(FrameId id) const {
    std::optional<std::size_t> first;
    for (std::size_t i = 0; i < frames_.size(); ++i) {
        if (frames_[i].id != id) continue;
        if (frames_[i].fields[kDescription].size == 0) return i;
        if (!first) first = i;
    }
    return first;
}

std::optional<FrameView> TrackTag::Find(FrameId id) const {
    const auto index = FindIndex(id);
    if (!index) return std::nullopt;
    return (*this)[*index];
}

bool TrackTag::Has(FrameId id) const {
    for (const Frame& f : frames_)
        if (f.id == id) return true;
    return false;
}

void TrackTag::Add(const FrameView& view) {
    Frame f;
    f.id = view.id;
    f.pictureType = view.pictureType;
    f.dataSize = view.dataSize;
    const std::string_view fields[kFieldCount] = {view.text,     view.language, view.description,
                                                  view.mimeType, view.fileName, view.data};
    // A view may point into this very pool (copying a frame within a tag); appending can
    // move the pool, so such fields are copied out first.
    const auto inPool = [this](std::string_view s) {
        return !s.empty() && !pool_.empty() && s.data() >= pool_.data() && s.data() < pool_.data() + pool_.size();
    };
    bool selfReferencing = false;
    for (std::string_view field : fields) selfReferencing = selfReferencing || inPool(field);
    if (selfReferencing) {
        std::string copies[kFieldCount];
        for (int i = 0; i < kFieldCount; ++i) copies[i] = fields[i];
        for (int i = 0; i < kFieldCount; ++i) f.fields[i] = Store(copies[i]);
    } else {
        for (int i = 0; i < kFieldCount; ++i) f.fields[i] = Store(fields[i]);
    }
    frames_.push_back(f);
}

void TrackTag::AddText(FrameId id, std::string_view text) {
    FrameView view;
    view.id = id;
    view.text = text;
    Add(view);
}

void TrackTag::SetText(FrameId id, std::string_view text) {
    const auto index = FindIndex(id);
    if (!index) {
        AddText(id, text);
        return;
    }
    const std::string copy(text);  // text may point into the pool
    frames_[*index].fields[kText] = Store(copy);
}

void TrackTag::Remove(std::size_t index) {
    if (index >= frames_.size()) return;
    frames_.erase(frames_.begin() + static_cast<std::ptrdiff_t>(index));
}

void TrackTag::RemoveAll(FrameId id) {
    std::erase_if(frames_, [id](const Frame& f) { return f.id == id; });
}

void TrackTag::Clear() {
    frames_.clear();
    pool_.clear();
    sources_ = 0;
}

void TrackTag::Compact() {
    std::string pool;
    std::size_t used = 0;
    for (const Frame& f : frames_)
        for (const Span& span : f.fields) used += span.size;
    pool.reserve(used);
    for (Frame& f : frames_) {
        for (Span& span : f.fields) {
            if (span.size == 0) continue;
            const std::uint32_t offset = static_cast<std::uint32_t>(pool.size());
            pool.append(Load(span));
            span.offset = offset;
        }
    }
    pool_ = std::move(pool);
    frames_.shrink_to_fit();
}

std::size_t TrackTag::HeapBytes() const {
    constexpr std::size_t kInlineString = sizeof(std::string) - 1;  // no heap below this
    return frames_.capacity() * sizeof(Frame) + (pool_.capacity() > kInlineString ? pool_.capacity() + 1 : 0);
}

bool operator==(const TrackTag& a, const TrackTag& b) {
    if (a.size() != b.size() || a.sources_ != b.sources_) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        const FrameView x = a[i];
        const FrameView y = b[i];
        if (x.id != y.id || x.text != y.text || x.language != y.language ||
            x.description != y.description || x.mimeType != y.mimeType || x.fileName != y.fileName ||
            x.data != y.data || x.dataSize != y.dataSize || x.pictureType != y.pictureType)
            return false;
    }
    return true;
}

}  // namespace verdin
