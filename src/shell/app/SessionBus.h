#pragma once
// The first connection to the session bus, made before anything else in the process
// talks to it. Main thread only.

namespace verdin {

// Makes Qt's D-Bus thread and connects it to the session bus. Later calls of
// QDBusConnection::sessionBus() share what this made; a missing bus is found out there.
void OpenSessionBus();

}  // namespace verdin
