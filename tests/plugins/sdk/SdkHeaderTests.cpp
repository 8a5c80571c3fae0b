// The message helper of the SDK, called from C as plug-ins call it, carries
// pointer-sized values unchanged in both directions.
#include "HeadersInC.h"

#include <verdin/window.h>

#include <gtest/gtest.h>

namespace {

struct Received {
    VerdinHostWindow* window = nullptr;
    uint32_t msg = 0;
    uintptr_t wParam = 0;
    intptr_t lParam = 0;
    int calls = 0;
};

intptr_t Record(VerdinHostWindow* window, uint32_t msg, uintptr_t wParam, intptr_t lParam) {
    auto* received = static_cast<Received*>(window->host);
    *received = {window, msg, wParam, lParam, received->calls + 1};
    return lParam ^ static_cast<intptr_t>(wParam);
}

TEST(SdkHeaders, SendMessageCarriesPointerSizedValuesBothWays) {
    Received received;
    VerdinHostWindow window{Record, &received};
    const uintptr_t wide = static_cast<uintptr_t>(0x1234'5678'9ABC'DEF0ull);
    const intptr_t negative = -0x7654'3210'0000'0001ll;

    EXPECT_EQ(SendFromC(&window, WM_USER + 3, wide, negative), negative ^ static_cast<intptr_t>(wide));
    EXPECT_EQ(received.window, &window);
    EXPECT_EQ(received.msg, static_cast<uint32_t>(WM_USER + 3));
    EXPECT_EQ(received.wParam, wide);
    EXPECT_EQ(received.lParam, negative);
    EXPECT_EQ(received.calls, 1);

    // Without a window (a player without windows) the answer is 0 and nothing is called.
    EXPECT_EQ(SendFromC(nullptr, WM_COMMAND, 1, 2), 0);
    VerdinHostWindow empty{nullptr, &received};
    EXPECT_EQ(SendFromC(&empty, WM_COMMAND, 1, 2), 0);
    EXPECT_EQ(received.calls, 1);
}

}  // namespace
