/*
 * Notify_Verdin.so: a general-purpose plug-in that shows a desktop notification
 * (org.freedesktop.Notifications) with the title of each track as it starts to play.
 *
 * An example for plug-in authors as much as a feature: it is built against the SDK
 * headers alone, asks the player nothing but the host window's WM_USER queries, and asks
 * them from a thread of its own, once a second, which its quit stops and waits for. It
 * talks to the session bus only when one is named in the environment, so that it never
 * starts a bus of its own.
 */
#include <verdin/gen.h>
#include <verdin/window.h>

#include <dbus/dbus.h>
#include <pthread.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

/* Each look costs two or three round trips to the player's user-interface thread; once a
 * second is soon enough for a notification. */
#define POLL_MS 1000

static winampGeneralPurposePlugin plugin;
static pthread_t watcher;
static pthread_mutex_t lock = PTHREAD_MUTEX_INITIALIZER;
static pthread_cond_t wake = PTHREAD_COND_INITIALIZER;
static int stopping;

static intptr_t Ask(intptr_t query, uintptr_t argument) {
    return VerdinSendMessage(plugin.hwndParent, WM_USER, argument, query);
}

static void Notify(DBusConnection* bus, const char* title) {
    DBusMessage* call = dbus_message_new_method_call("org.freedesktop.Notifications", "/org/freedesktop/Notifications",
                                                     "org.freedesktop.Notifications", "Notify");
    if (!call) return;
    const char *app = "Verdin", *icon = "verdin", *summary = "Verdin";
    const dbus_uint32_t replaces = 0;
    const dbus_int32_t timeout = -1;
    DBusMessageIter args, actions, hints;
    dbus_message_iter_init_append(call, &args);
    dbus_message_iter_append_basic(&args, DBUS_TYPE_STRING, &app);
    dbus_message_iter_append_basic(&args, DBUS_TYPE_UINT32, &replaces);
    dbus_message_iter_append_basic(&args, DBUS_TYPE_STRING, &icon);
    dbus_message_iter_append_basic(&args, DBUS_TYPE_STRING, &summary);
    dbus_message_iter_append_basic(&args, DBUS_TYPE_STRING, &title);
    dbus_message_iter_open_container(&args, DBUS_TYPE_ARRAY, "s", &actions);
    dbus_message_iter_close_container(&args, &actions);
    dbus_message_iter_open_container(&args, DBUS_TYPE_ARRAY, "{sv}", &hints);
    dbus_message_iter_close_container(&args, &hints);
    dbus_message_iter_append_basic(&args, DBUS_TYPE_INT32, &timeout);
    dbus_message_set_no_reply(call, TRUE);
    dbus_connection_send(bus, call, NULL);
    dbus_connection_flush(bus);
    dbus_message_unref(call);
}

/* Waits up to POLL_MS for quit; nonzero once quit has asked the thread to end. */
static int WaitOrStop(void) {
    struct timespec until;
    clock_gettime(CLOCK_REALTIME, &until);
    until.tv_nsec += POLL_MS * 1000000L;
    until.tv_sec += until.tv_nsec / 1000000000L, until.tv_nsec %= 1000000000L;
    pthread_mutex_lock(&lock);
    while (!stopping && pthread_cond_timedwait(&wake, &lock, &until) == 0) {}
    const int stop = stopping;
    pthread_mutex_unlock(&lock);
    return stop;
}

/* A track counts as new when the current row or its title changed while playing. Whether
 * it plays is asked only after a change, so that a look at an unchanged track costs two
 * round trips instead of three. */
static void Watch(DBusConnection* bus) {
    char shown[1024] = "";
    intptr_t shownRow = -1;
    do {
        const intptr_t row = Ask(VERDIN_IPC_GETLISTPOS, 0);
        const char* title = row >= 0 ? (const char*)Ask(VERDIN_IPC_GETPLAYLISTTITLE, (uintptr_t)row) : NULL;
        if (!title || !*title || (row == shownRow && strncmp(title, shown, sizeof shown - 1) == 0)) continue;
        /* The title is the host's text until the next question: kept before asking. */
        char seen[sizeof shown] = "";
        strncpy(seen, title, sizeof seen - 1);
        if (Ask(VERDIN_IPC_ISPLAYING, 0) != 1) continue;
        shownRow = row;
        memcpy(shown, seen, sizeof shown);
        Notify(bus, shown);
    } while (!WaitOrStop());
}

/* The thread connects to the bus itself, so that the player's start-up never waits for
 * the handshake; without a bus it ends at once. */
static void* Run(void* unused) {
    (void)unused;
    DBusConnection* bus = dbus_bus_get_private(DBUS_BUS_SESSION, NULL);
    if (!bus) return NULL;
    dbus_connection_set_exit_on_disconnect(bus, FALSE);
    Watch(bus);
    dbus_connection_close(bus);
    dbus_connection_unref(bus);
    return NULL;
}

static int Init(void) {
    if (!getenv("DBUS_SESSION_BUS_ADDRESS")) return 1;
    dbus_threads_init_default();
    return pthread_create(&watcher, NULL, Run, NULL) == 0 ? 0 : 1;
}

static void Quit(void) {
    pthread_mutex_lock(&lock);
    stopping = 1;
    pthread_cond_signal(&wake);
    pthread_mutex_unlock(&lock);
    pthread_join(watcher, NULL);
}

static void Config(void) {}

static winampGeneralPurposePlugin plugin = {GPPHDR_VER, "Verdin Notifications", Init, Config, Quit, NULL, NULL};

VERDIN_PLUGIN_EXPORT winampGeneralPurposePlugin* winampGetGeneralPurposePlugin(void) { return &plugin; }
