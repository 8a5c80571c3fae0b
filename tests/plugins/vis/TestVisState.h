/* What the test visualization plug-in records of each of its modules ("testVisState",
 * one per module), shared by the plug-in and the tests that read it. */
#ifndef VERDIN_TEST_VIS_STATE_H
#define VERDIN_TEST_VIS_STATE_H

#define TEST_VIS_MODULES 3

typedef struct TestVisState {
    int renderResult;      /* what Render answers */
    int sendInRender;      /* Render sends WM_COMMAND to hwndParent first */
    int inits, renders, quits;
    int quitsDuringRender; /* Quit called while a Render was running */
    int rendering;
} TestVisState;

#endif
