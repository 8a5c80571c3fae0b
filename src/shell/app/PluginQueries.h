#pragma once
// The answers to the WM_USER queries and WM_COPYDATA blocks that hosted plug-ins send
// their host window (the query numbers and what each answers are in sdk/verdin/window.h).
// User-interface thread only: HostWindow brings messages from other threads here.
#include <verdin/window.h>

#include <cstdint>
#include <string>

namespace verdin {

class Player;

class PluginQueries {
public:
    explicit PluginQueries(Player& player) : player_(player) {}

    intptr_t Answer(intptr_t query, uintptr_t argument);
    intptr_t TakeCopyData(const COPYDATASTRUCT& data);

private:
    intptr_t OutputTime(uintptr_t which) const;
    intptr_t TrackInfo(uintptr_t which) const;
    intptr_t Volume(uintptr_t volume);
    // A text for the caller, kept until the next query of the same number.
    intptr_t Keep(std::string& kept, std::string text);

    Player& player_;
    std::string fileName_;
    std::string title_;
};

}  // namespace verdin
