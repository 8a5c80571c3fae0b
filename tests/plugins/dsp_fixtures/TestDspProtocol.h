/*
 * How the DSP test plug-ins report to the test that loads them: a WM_COPYDATA message to
 * the module's hwndParent (so a report arriving at all shows that the host filled it in),
 * dwData TEST_DSP_REPORT, lpData the text "<library>/<module> <event>", for instance
 * "Kit/append 1 Init". Events: Init, Quit, Config; "gate" (the gate module is inside
 * ModifySamples, where the test may hold it); "format <bps> <nch> <srate> <numsamples>";
 * "violation: <what>" when the host broke the contract (ModifySamples or Quit without
 * Init, Quit while ModifySamples runs).
 */
#ifndef VERDIN_TEST_DSP_PROTOCOL_H
#define VERDIN_TEST_DSP_PROTOCOL_H
#define TEST_DSP_REPORT 0x44535054u /* "DSPT" */
#endif
