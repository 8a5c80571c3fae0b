// The SDK's message helper, called from C as plug-ins call it, carries pointer-sized
// values unchanged both ways. Without a window it answers 0 and calls nothing: a DSP test
// plug-in reports to none in DspLibraryList.ActivationLoadsTheLibraryForTheInstance....
#include <verdin/window.h>

#include <gtest/gtest.h>

extern "C" intptr_t SendFromC(void* window, uint32_t msg, uintptr_t wParam, intptr_t lParam);

namespace {

TEST(SdkHeaders, SendMessageCarriesPointerSizedValuesBothWays) {
    struct Received {
        VerdinHostWindow* window;
        uint32_t msg;
        uintptr_t wParam;
        intptr_t lParam;
    } received{};
    VerdinHostWindow window{[](VerdinHostWindow* w, uint32_t msg, uintptr_t wParam, intptr_t lParam) -> intptr_t {
                                *static_cast<Received*>(w->host) = {w, msg, wParam, lParam};
                                return lParam ^ static_cast<intptr_t>(wParam);
                            },
                            &received};
    const uintptr_t wide = static_cast<uintptr_t>(0x1234'5678'9ABC'DEF0ull);
    const intptr_t negative = -0x7654'3210'0000'0001ll;
    EXPECT_EQ(SendFromC(&window, WM_USER + 3, wide, negative), negative ^ static_cast<intptr_t>(wide));
    EXPECT_EQ(received.window, &window);
    EXPECT_EQ(received.msg, static_cast<uint32_t>(WM_USER + 3));
    EXPECT_EQ(received.wParam, wide);
    EXPECT_EQ(received.lParam, negative);
}

}  // namespace
