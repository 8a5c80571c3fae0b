// The shared library list with the visualization entry point: which libraries are found,
// in which order, with which descriptions; nothing stays loaded; "Configure" of a module.
#include "plugins/library/ModuleConfigure.h"
#include "plugins/vis/VisLibraryList.h"

#include "TempDir.h"

#include <verdin/window.h>

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <tuple>

namespace verdin {

bool operator==(const ModuleLibrary& a, const ModuleLibrary& b) {
    return a.path == b.path && a.description == b.description && a.moduleDescriptions == b.moduleDescriptions;
}

namespace {

const std::string kScanDir = VERDIN_SCAN_TEST_MODULES;

// The handle of the library at path if the process has it loaded, else null.
void* LoadedHandle(const std::string& path) {
    void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (handle) dlclose(handle);
    else dlerror();
    return handle;
}

// Copies of the test plug-ins in a private directory, so the build's own holds nothing
// else; the DSP test plug-ins come first on the path, and are passed over.
TEST(VisLibraryList, FindsEachKindAlongTheSearchPathAndLeavesNothingLoaded) {
    test::TempDir dir;
    for (const char* name : {"scan_endless.so", "scan_vis.so"}) std::filesystem::copy_file(kScanDir + "/" + name, dir.file(name));
    const std::string path = std::string(VERDIN_DSP_TEST_MODULES) + ";;" + dir.str() + ";/no/such/dir";
    const std::vector<ModuleLibrary> expected = {
        {dir.file("scan_endless.so"), "Endless", std::vector<std::string>(1024, "bars")},
        {dir.file("scan_vis.so"), "Scan Vis", {"bars", "scope"}},
    };
    EXPECT_EQ(VisLibraryList(nullptr, path).libraries(), expected);
    for (const auto& library : expected) EXPECT_EQ(LoadedHandle(library.path), nullptr) << library.path;
}

// The module's Config is called with its window and its library's handle filled in.
TEST(VisLibraryList, ConfigureHandsTheModuleItsWindowAndLibraryFirst) {
    const std::string vis = kScanDir + "/scan_vis.so";
    struct Received {
        std::string path;
        int calls = 0;
        bool libraryHandle = false;
    } received{vis};
    VerdinHostWindow window{[](VerdinHostWindow* w, uint32_t msg, uintptr_t, intptr_t lParam) -> intptr_t {
                                auto* r = static_cast<Received*>(w->host);
                                r->calls += msg == WM_USER;
                                r->libraryHandle = lParam == reinterpret_cast<intptr_t>(LoadedHandle(r->path));
                                return 0;
                            },
                            &received};
    {
        VisLibraryList libraries(&window, kScanDir + ";" + VERDIN_DSP_TEST_MODULES + ";");
        const std::tuple<std::string, int, bool> cases[] = {  // library, module, found
            {vis, 1, true}, {vis, 0, true},  // "bars" has no Config: found, nothing called
            {vis, 2, false}, {vis, -1, false}, {kScanDir + "/missing.so", 0, false},
            {std::string(VERDIN_DSP_TEST_MODULES) + "/kit.so", 0, false},  // no visualization library
        };
        for (const auto& [path, module, found] : cases)
            EXPECT_EQ(ConfigureModuleByPath(libraries, path, module), found) << path << " " << module;
    }
    EXPECT_EQ(received.calls, 1);
    EXPECT_TRUE(received.libraryHandle);
    EXPECT_EQ(LoadedHandle(vis), nullptr);
}

}  // namespace
}  // namespace verdin
