/* Every SDK header compiled as C11 in one unit, as a plug-in using them all compiles them
 * (their layout checks run here too). */
#include <verdin/dsp.h>
#include <verdin/gen.h>
#include <verdin/input.h>
#include <verdin/vis.h>
#include <verdin/window.h>
