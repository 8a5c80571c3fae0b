#include "RadioDecoder.h"

#include "IcyTitle.h"
#include "StreamConnection.h"

#include <memory>
#include <string>

namespace verdin::radio {

namespace {

class RadioDecoder : public InputDecoder {
public:
    explicit RadioDecoder(std::string url) : InputDecoder{&kOps}, url_(std::move(url)) {}

    uint32_t Decode(const void** block) {
        if (!opened_) {
            opened_ = true;
            connected_ = connection_.Open(url_);
            // The station's name stands for the title until it announces a song.
            if (connected_) title_ = HeaderValueOf(connection_.IcyHeaders(), "icy-name");
        }
        if (!connected_) return 0;
        const uint8_t* pcm = nullptr;
        const uint32_t bytes = connection_.Read(&pcm);
        if (std::string song = StreamTitleOf(connection_.IcyMetadata()); !song.empty()) title_ = std::move(song);
        *block = pcm;
        return bytes;
    }

    const char* Title() const { return title_.c_str(); }
    const char* Error() const { return connection_.Error().c_str(); }
    void Interrupt() { connection_.Interrupt(); }

private:
    static const InputDecoderOps kOps;

    const std::string url_;
    StreamConnection connection_;
    bool opened_ = false;     // the first Decode has tried to connect
    bool connected_ = false;  // and succeeded
    std::string title_;
};

RadioDecoder* Self(InputDecoder* decoder) {
    return static_cast<RadioDecoder*>(decoder);
}

const InputDecoderOps RadioDecoder::kOps = {
    [](InputDecoder* self, const void** block) { return Self(self)->Decode(block); },
    // A live stream cannot be seeked: it stays where it is.
    [](InputDecoder*, uint32_t) -> uint32_t { return 0; },
    // The player equalizes.
    [](InputDecoder*, int32_t) {},
    [](InputDecoder*, const EqualizerValues*) {},
    [](InputDecoder* self) { delete Self(self); },
};

const InputStreamOps kStreamOps = {
    [](InputDecoder* self) { return Self(self)->Title(); },
    [](InputDecoder* self) { return Self(self)->Error(); },
    [](InputDecoder* self) { Self(self)->Interrupt(); },
};

}  // namespace

InputDecoder* OpenRadioDecoder(const char* url) {
    return new RadioDecoder(url);
}

const InputStreamOps* RadioStreamOps() {
    return &kStreamOps;
}

}  // namespace verdin::radio
