#pragma once
/* What HeadersInC.c, compiled as C, reports about the SDK headers. */
#include <verdin/window.h>

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The size of each record followed by the offsets of its fields, in declaration order,
 * as the C compiler lays them out; count receives the number of values. */
const size_t* DspModuleLayoutInC(size_t* count);
const size_t* DspHeaderLayoutInC(size_t* count);
const size_t* VisModuleLayoutInC(size_t* count);
const size_t* VisHeaderLayoutInC(size_t* count);
const size_t* GeneralPluginLayoutInC(size_t* count);
const size_t* HostWindowLayoutInC(size_t* count);
const size_t* CopyDataLayoutInC(size_t* count);

/* VerdinSendMessage called from C, as a plug-in calls it. */
intptr_t SendFromC(void* window, uint32_t msg, uintptr_t wParam, intptr_t lParam);

#ifdef __cplusplus
}
#endif
