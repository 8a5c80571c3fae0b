#pragma once
/* HeadersInC.c compiles every SDK header as C11, as plug-ins compile them; the layout
 * checks inside the headers then hold for C as well as for the C++ player. */
#include <verdin/window.h>

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* VerdinSendMessage called from C, as a plug-in calls it. */
intptr_t SendFromC(void* window, uint32_t msg, uintptr_t wParam, intptr_t lParam);

#ifdef __cplusplus
}
#endif
