/* Every SDK header compiled as C11 in one unit, as a plug-in using them all compiles them
 * (their layout checks run here too), and the message helper called from C. */
#include <verdin/dsp.h>
#include <verdin/gen.h>
#include <verdin/input.h>
#include <verdin/vis.h>
#include <verdin/window.h>

intptr_t SendFromC(void* window, uint32_t msg, uintptr_t wParam, intptr_t lParam) {
    return VerdinSendMessage(window, msg, wParam, lParam);
}
