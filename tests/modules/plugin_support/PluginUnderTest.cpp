#include "PluginUnderTest.h"

#include <cstring>
#include <dlfcn.h>
#include <stdexcept>

namespace verdin::test {

PluginUnderTest::PluginUnderTest(const std::string& fileName) {
    const std::string path = std::string(VERDIN_TEST_PLUGIN_DIR) + "/" + fileName;
    library_ = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library_) throw std::runtime_error("cannot load " + path + ": " + dlerror());
    auto entry = reinterpret_cast<Verdin_GetInputModuleFunc>(dlsym(library_, VERDIN_INPUT_ENTRY_POINT));
    if (!entry) {
        dlclose(library_);
        throw std::runtime_error(path + " has no entry point");
    }
    module_ = entry(library_, nullptr);
    if (!module_ || !module_->ops) {
        dlclose(library_);
        throw std::runtime_error(path + " returned no module");
    }
}

PluginUnderTest::~PluginUnderTest() {
    ops().Release(module_);
    dlclose(library_);
}

std::optional<TrackInfo> PluginUnderTest::Info(const std::string& path, uint32_t dataOffset) const {
    TrackInfo info = UnansweredTrackInfo();
    if (!ops().GetFileInfo(module_, path.c_str(), dataOffset, &info)) return std::nullopt;
    return info;
}

bool PluginUnderTest::IsOurFile(const std::string& path) const {
    return ops().IsOurFile(module_, path.c_str(), 0) != 0;
}

std::vector<std::string> PluginUnderTest::FileTypeTexts() const {
    std::vector<std::string> texts;
    const char* at = ops().GetFileTypes(module_);
    while (at && *at) {
        texts.emplace_back(at);
        at += texts.back().size() + 1;
    }
    return texts;
}

TrackInfo UnansweredTrackInfo() {
    TrackInfo info;
    std::memset(&info, 0, sizeof info);
    info.bitrate = 1;
    info.sampleRate = 1;
    info.channels = 1;
    info.bitsPerSample = 8;
    return info;
}

}  // namespace verdin::test
