#pragma once
// One loaded plug-in library: a dlopen handle that closes itself.
//
// Plug-in hosts load a library, look up its entry point and keep the handle exactly as
// long as they use something inside it. Owning the handle in an object makes "release
// the library" the end of a scope instead of a call to remember on every early return.
// Loading failures are silent by design (a broken library is skipped), so Open answers
// with an empty object rather than an error text.
#include <string>

namespace verdin {

class PluginLibrary {
public:
    PluginLibrary() = default;
    // Loads the library at path (every symbol resolved now, none made global). An
    // empty object when it cannot be loaded.
    static PluginLibrary Open(const std::string& path);

    ~PluginLibrary();
    PluginLibrary(PluginLibrary&& other) noexcept;
    PluginLibrary& operator=(PluginLibrary&& other) noexcept;
    PluginLibrary(const PluginLibrary&) = delete;
    PluginLibrary& operator=(const PluginLibrary&) = delete;

    explicit operator bool() const { return handle_ != nullptr; }
    // The dlopen handle, as plug-ins receive it in hDllInstance.
    void* handle() const { return handle_; }

    // The address of an exported symbol, or null (also for an empty object).
    void* Symbol(const char* name) const;
    // The same, as a function pointer of the entry point's type.
    template <typename Function>
    Function Entry(const char* name) const {
        return reinterpret_cast<Function>(Symbol(name));
    }

    // Closes the library now (when loaded); the object is empty afterwards.
    void Close();
    // Gives the library up without closing it: it stays loaded until the process ends,
    // for plug-in code that may still run (a thread of its own on its way out).
    void KeepLoaded() { handle_ = nullptr; }

    // While one of these lives, every library opened stays loaded until it ends, even when
    // its host closes it: the hosts of the four plug-in kinds each look at every library
    // of a shared folder, and without it each look would load, relocate and initialize a
    // library (and everything it links) anew. The user-interface thread only.
    class KeepOpenedWhileScanning {
    public:
        KeepOpenedWhileScanning();
        ~KeepOpenedWhileScanning();
        KeepOpenedWhileScanning(const KeepOpenedWhileScanning&) = delete;
        KeepOpenedWhileScanning& operator=(const KeepOpenedWhileScanning&) = delete;
    };

private:
    explicit PluginLibrary(void* handle) : handle_(handle) {}
    void* handle_ = nullptr;
};

}  // namespace verdin
