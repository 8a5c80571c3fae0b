#pragma once
// Hands a text from one thread to another without a lock: the writer posts a new text,
// the reader takes the latest one when it looks. Each text lives in a heap block whose
// owner is whichever thread took it out of the slot by an exchange, so no text is ever
// read while another thread writes or frees it. A text posted over one not yet taken
// replaces it: the reader sees only the newest.
//
// Threads: one writer (Post), one reader (Take); the destructor runs when neither does.
#include <atomic>
#include <memory>
#include <optional>
#include <string>

namespace verdin {

class TextMailbox {
public:
    TextMailbox() = default;
    ~TextMailbox() { delete slot_.exchange(nullptr, std::memory_order_acquire); }
    TextMailbox(const TextMailbox&) = delete;
    TextMailbox& operator=(const TextMailbox&) = delete;

    void Post(std::string text) {
        // Release: the reader that takes the block sees the text written into it.
        delete slot_.exchange(new std::string(std::move(text)), std::memory_order_acq_rel);
    }
    // The newest text posted since the last Take, or nothing.
    std::optional<std::string> Take() {
        std::unique_ptr<std::string> taken(slot_.exchange(nullptr, std::memory_order_acq_rel));
        if (!taken) return std::nullopt;
        return std::move(*taken);
    }

private:
    std::atomic<std::string*> slot_{nullptr};
};

}  // namespace verdin
