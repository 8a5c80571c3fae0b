#pragma once
// A bundled input plug-in loaded the way the player loads it: dlopen, the entry point
// once, Release and dlclose at the end.
#include <verdin/input.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace verdin::test {

class PluginUnderTest {
public:
    // Loads fileName from the build's plug-in directory; throws when it cannot.
    explicit PluginUnderTest(const std::string& fileName);
    ~PluginUnderTest();
    PluginUnderTest(const PluginUnderTest&) = delete;
    PluginUnderTest& operator=(const PluginUnderTest&) = delete;

    InputModule* module() const { return module_; }
    const InputModuleOps& ops() const { return *module_->ops; }

    // GetFileInfo into a record holding the player's defaults; none when it returns 0.
    std::optional<TrackInfo> Info(const std::string& path, uint32_t dataOffset = 0) const;
    bool IsOurFile(const std::string& path) const;
    // The texts of the GetFileTypes list, in order, without the terminating empty text.
    std::vector<std::string> FileTypeTexts() const;

private:
    void* library_ = nullptr;
    InputModule* module_ = nullptr;
};

// The record as the player holds it before a module answers.
TrackInfo UnansweredTrackInfo();

}  // namespace verdin::test
