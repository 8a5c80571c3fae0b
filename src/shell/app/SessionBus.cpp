#include "SessionBus.h"

#include <QDBusConnection>

#if defined(__SANITIZE_ADDRESS__)
#define VERDIN_LEAK_CHECKED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VERDIN_LEAK_CHECKED 1
#endif
#endif
#ifdef VERDIN_LEAK_CHECKED
#include <sanitizer/lsan_interface.h>
#endif

namespace verdin {

void OpenSessionBus() {
#ifdef VERDIN_LEAK_CHECKED
    // Qt ends its D-Bus thread from a static destructor at exit. Depending on how that
    // thread's last steps interleave with the rest of the exit, the thread's own records
    // (made here, on this thread) are sometimes never freed, and the leak checker reports
    // them. They are made once and live as long as the process: the checker ignores what
    // this first call allocates on this thread, and whatever those records hold.
    __lsan::ScopedDisabler madeOnceForTheProcess;
#endif
    (void)QDBusConnection::sessionBus();
}

}  // namespace verdin
