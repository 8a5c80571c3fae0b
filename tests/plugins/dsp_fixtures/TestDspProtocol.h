/*
 * How the DSP test plug-ins report to the test that loads them.
 *
 * Each report is a WM_COPYDATA message sent to the module's hwndParent (the test's own
 * host window record), so a report arriving at all shows that the host filled in
 * hwndParent. dwData is TEST_DSP_REPORT, lpData the NUL-terminated text
 * "<library>/<module> <event>", for instance "Kit/append 1 Init". Events:
 *   Init, Quit, Config             the call itself
 *   gate                           the gate module is inside ModifySamples (the test
 *                                  may hold it there by not returning)
 *   format <bps> <nch> <srate> <numsamples>
 *                                  the format module's arguments
 *   violation: <what>              the host broke the contract (ModifySamples or Quit
 *                                  without Init, Quit while ModifySamples runs)
 */
#ifndef VERDIN_TEST_DSP_PROTOCOL_H
#define VERDIN_TEST_DSP_PROTOCOL_H

#define TEST_DSP_REPORT 0x44535054u /* "DSPT" */

#endif
