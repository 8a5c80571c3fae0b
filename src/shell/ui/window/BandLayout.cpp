#include "BandLayout.h"

#include <algorithm>

namespace verdin {

BandArray BandsFromScreen(const BandArray& before, const std::vector<BandOnScreen>& screen) {
    auto onScreen = [&](int32_t id) -> const BandOnScreen* {
        for (const BandOnScreen& band : screen)
            if (band.id == id && band.shown) return &band;
        return nullptr;
    };

    std::vector<BandOnScreen> shown;
    for (const BandOnScreen& band : screen)
        if (band.shown) shown.push_back(band);
    std::stable_sort(shown.begin(), shown.end(), [](const BandOnScreen& a, const BandOnScreen& b) {
        return a.top != b.top ? a.top < b.top : a.left < b.left;
    });

    std::vector<RebarBand> order;
    for (size_t i = 0; i < shown.size(); ++i) {
        const bool newLine = i > 0 && shown[i].top != shown[i - 1].top;
        order.push_back({shown[i].id, shown[i].width, newLine ? 1 : 0});
    }
    // Hidden bands (and bands the window does not know) go back behind the band they
    // followed: on its line when they were part of it, else as a line of their own right
    // below that band's line, so the lines the user sees stay as they are.
    for (size_t i = 0; i < before.size(); ++i) {
        if (onScreen(before[i].id)) continue;
        auto at = order.begin();
        if (i > 0) {
            const int32_t predecessor = before[i - 1].id;
            at = std::find_if(order.begin(), order.end(), [&](const RebarBand& b) { return b.id == predecessor; });
            if (at != order.end()) ++at;
            if (before[i].lineBreak)
                while (at != order.end() && !at->lineBreak) ++at;
        }
        order.insert(at, before[i]);
    }
    BandArray bands{};
    std::copy_n(order.begin(), std::min(order.size(), bands.size()), bands.begin());
    return bands;
}

}  // namespace verdin
