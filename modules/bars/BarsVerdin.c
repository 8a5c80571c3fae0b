/*
 * Bars_Verdin.so: a visualization plug-in with one module, "Spectrum bars and waveform",
 * that draws in a window of its own: 48 bars with falling peaks over the spectrum, and
 * the two channels' waveforms below them.
 *
 * An example for plug-in authors as much as a feature: it is built against the SDK
 * headers alone and uses nothing of the player but the module record. It draws with
 * Xlib on a display connection of its own, into a pixmap that is then copied to the
 * window in one piece, so the picture never flickers. Closing its window makes Render
 * answer 1, which switches the module off until visualization is switched on again;
 * without a display it does the same on the first Render.
 *
 * Xlib itself is opened when the module starts (dlopen), not linked: the player loads
 * every plug-in of its folder at start-up to list it, and a player that never shows this
 * window (a headless one, say) should not map the X client libraries for it.
 */
#include <verdin/vis.h>

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <dlfcn.h>
#include <string.h>

#define BARS 48
#define VALUES_PER_BAR (576 / BARS)
#define PEAK_HOLD_FRAMES 30
#define LEVELS 4

typedef struct Picture {
    Display* display;
    Window window;
    Pixmap pixmap;
    GC gc;
    Atom deleteWindow;
    int width, height;
    unsigned long background, trace, peak, level[LEVELS]; /* level: low bars to high */
    int bar[BARS], peakHeight[BARS], peakAge[BARS];         /* in 1/255 of the bar area */
} Picture;

static Picture picture;

/* The Xlib functions the module calls, looked up when it starts. */
#define BARS_XLIB_FUNCTIONS(F) \
    F(XAllocNamedColor) \
    F(XCloseDisplay) \
    F(XCopyArea) \
    F(XCreateGC) \
    F(XCreatePixmap) \
    F(XCreateSimpleWindow) \
    F(XDestroyWindow) \
    F(XDrawLines) \
    F(XFillRectangle) \
    F(XFlush) \
    F(XFreeGC) \
    F(XFreePixmap) \
    F(XInternAtom) \
    F(XMapWindow) \
    F(XNextEvent) \
    F(XOpenDisplay) \
    F(XPending) \
    F(XSelectInput) \
    F(XSetClassHint) \
    F(XSetForeground) \
    F(XSetWMProtocols) \
    F(XStoreName)

static struct {
#define BARS_XLIB_POINTER(name) __typeof__(name)* name;
    BARS_XLIB_FUNCTIONS(BARS_XLIB_POINTER)
} xlib;

/* Opens Xlib once; it stays loaded for the rest of the run. False when it cannot. Each
 * address is stored through a data pointer, as POSIX shows for dlsym. */
static int OpenXlib(void) {
    static void* library;
    if (library) return 1;
    void* handle = dlopen("libX11.so.6", RTLD_NOW | RTLD_LOCAL);
    if (!handle) return 0;
#define BARS_XLIB_RESOLVE(name)                           \
    if (!(*(void**)&xlib.name = dlsym(handle, #name))) { \
        dlclose(handle);                                  \
        return 0;                                         \
    }
    BARS_XLIB_FUNCTIONS(BARS_XLIB_RESOLVE)
    library = handle;
    return 1;
}

static unsigned long Colour(Display* display, const char* name, unsigned long fallback) {
    XColor exact, screen;
    Colormap map = DefaultColormap(display, DefaultScreen(display));
    return xlib.XAllocNamedColor(display, map, name, &screen, &exact) ? screen.pixel : fallback;
}

static void NewPixmap(Picture* p) {
    if (p->pixmap) xlib.XFreePixmap(p->display, p->pixmap);
    p->pixmap = xlib.XCreatePixmap(p->display, p->window, (unsigned)p->width, (unsigned)p->height,
                              (unsigned)DefaultDepth(p->display, DefaultScreen(p->display)));
}

static int Init(winampVisModule* module) {
    (void)module;
    memset(&picture, 0, sizeof picture);
    Picture* p = &picture;
    if (!OpenXlib()) return 1;
    p->display = xlib.XOpenDisplay(NULL);
    if (!p->display) return 1;
    const int screen = DefaultScreen(p->display);
    const unsigned long black = BlackPixel(p->display, screen), white = WhitePixel(p->display, screen);
    p->width = 480;
    p->height = 240;
    p->window = xlib.XCreateSimpleWindow(p->display, RootWindow(p->display, screen), 0, 0, (unsigned)p->width,
                                    (unsigned)p->height, 0, black, black);
    xlib.XStoreName(p->display, p->window, "Verdin Bars");
    XClassHint hint = {"bars", "Verdin"};
    xlib.XSetClassHint(p->display, p->window, &hint);
    p->deleteWindow = xlib.XInternAtom(p->display, "WM_DELETE_WINDOW", False);
    xlib.XSetWMProtocols(p->display, p->window, &p->deleteWindow, 1);
    xlib.XSelectInput(p->display, p->window, StructureNotifyMask);
    p->gc = xlib.XCreateGC(p->display, p->window, 0, NULL);
    p->background = black;
    p->trace = Colour(p->display, "#7fd7ff", white);
    p->peak = Colour(p->display, "#f0f0f0", white);
    const char* levels[LEVELS] = {"#1f9f3f", "#8fcf2f", "#efbf1f", "#ef4f1f"};
    for (int i = 0; i < LEVELS; ++i) p->level[i] = Colour(p->display, levels[i], white);
    NewPixmap(p);
    xlib.XMapWindow(p->display, p->window);
    xlib.XFlush(p->display);
    return 0;
}

/* Follows the window's size; false once the user closed it. */
static int HandleEvents(Picture* p) {
    while (xlib.XPending(p->display)) {
        XEvent event;
        xlib.XNextEvent(p->display, &event);
        if (event.type == ClientMessage && (Atom)event.xclient.data.l[0] == p->deleteWindow) return 0;
        if (event.type == ConfigureNotify &&
            (event.xconfigure.width != p->width || event.xconfigure.height != p->height)) {
            p->width = event.xconfigure.width > 0 ? event.xconfigure.width : 1;
            p->height = event.xconfigure.height > 0 ? event.xconfigure.height : 1;
            NewPixmap(p);
        }
    }
    return 1;
}

/* The louder of the two channels over the bar's values, with peaks that hold, then fall. */
static void UpdateBars(Picture* p, const winampVisModule* module) {
    for (int b = 0; b < BARS; ++b) {
        int loudest = 0;
        for (int ch = 0; ch < 2; ++ch)
            for (int i = b * VALUES_PER_BAR; i < (b + 1) * VALUES_PER_BAR && i < 575; ++i)
                if (module->spectrumData[ch][i] > loudest) loudest = module->spectrumData[ch][i];
        p->bar[b] = loudest > p->bar[b] ? loudest : (p->bar[b] > 6 ? p->bar[b] - 6 : 0);
        if (p->bar[b] >= p->peakHeight[b]) {
            p->peakHeight[b] = p->bar[b];
            p->peakAge[b] = 0;
        } else if (++p->peakAge[b] > PEAK_HOLD_FRAMES && p->peakHeight[b] > 0) {
            p->peakHeight[b] -= 3;
        }
    }
}

static void DrawBars(Picture* p, int areaHeight) {
    const int slot = p->width / BARS > 0 ? p->width / BARS : 1;
    for (int b = 0; b < BARS; ++b) {
        const int x = b * slot + 1, w = slot > 2 ? slot - 2 : 1;
        /* Each quarter of the height in its own colour, green at the bottom. */
        for (int level = 0; level < LEVELS; ++level) {
            const int from = areaHeight * level / LEVELS, to = areaHeight * (level + 1) / LEVELS;
            const int top = areaHeight * p->bar[b] / 255;
            if (top <= from) break;
            xlib.XSetForeground(p->display, p->gc, p->level[level]);
            const int h = (top < to ? top : to) - from;
            xlib.XFillRectangle(p->display, p->pixmap, p->gc, x, areaHeight - from - h, (unsigned)w, (unsigned)h);
        }
        const int peakY = areaHeight - areaHeight * p->peakHeight[b] / 255;
        xlib.XSetForeground(p->display, p->gc, p->peak);
        xlib.XFillRectangle(p->display, p->pixmap, p->gc, x, peakY > 1 ? peakY - 2 : 0, (unsigned)w, 2);
    }
}

/* Channel 0 in the upper half of the strip, channel 1 in the lower one. */
static void DrawWaveform(Picture* p, const winampVisModule* module, int top, int height) {
    XPoint points[576];
    xlib.XSetForeground(p->display, p->gc, p->trace);
    for (int ch = 0; ch < 2; ++ch) {
        const int middle = top + height * (2 * ch + 1) / 4;
        for (int i = 0; i < 576; ++i) {
            const signed char sample = (signed char)module->waveformData[ch][i];
            points[i].x = (short)(i * (p->width - 1) / 575);
            points[i].y = (short)(middle - sample * height / 4 / 128);
        }
        xlib.XDrawLines(p->display, p->pixmap, p->gc, points, 576, CoordModeOrigin);
    }
}

static int Render(winampVisModule* module) {
    Picture* p = &picture;
    if (!p->display || !HandleEvents(p)) return 1;
    UpdateBars(p, module);
    xlib.XSetForeground(p->display, p->gc, p->background);
    xlib.XFillRectangle(p->display, p->pixmap, p->gc, 0, 0, (unsigned)p->width, (unsigned)p->height);
    const int barsHeight = p->height * 2 / 3;
    DrawBars(p, barsHeight);
    DrawWaveform(p, module, barsHeight, p->height - barsHeight);
    xlib.XCopyArea(p->display, p->pixmap, p->window, p->gc, 0, 0, (unsigned)p->width, (unsigned)p->height, 0, 0);
    xlib.XFlush(p->display);
    return 0;
}

static void Quit(winampVisModule* module) {
    (void)module;
    Picture* p = &picture;
    if (!p->display) return;
    xlib.XFreePixmap(p->display, p->pixmap);
    xlib.XFreeGC(p->display, p->gc);
    xlib.XDestroyWindow(p->display, p->window);
    xlib.XCloseDisplay(p->display);
    p->display = NULL;
}

static winampVisModule bars = {
    .description = "Spectrum bars and waveform",
    .delayMs = 25,
    .spectrumNch = 2,
    .waveformNch = 2,
    .Init = Init,
    .Render = Render,
    .Quit = Quit,
};

static winampVisModule* GetModule(int which) { return which == 0 ? &bars : NULL; }

static winampVisHeader header = {VIS_HDRVER, "Verdin Bars", GetModule};

VERDIN_PLUGIN_EXPORT winampVisHeader* winampVisGetHeader(void) { return &header; }
