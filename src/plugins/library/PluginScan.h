#pragma once
// The visualization plug-in libraries on a search path, for the options page until their
// host runs in the player. A scan loads each "*.so", reads the
// descriptions its entry point hands out and unloads it again: nothing is started (no
// Init, no init), and nothing stays loaded.
#include <string>
#include <string_view>
#include <vector>

namespace verdin {

struct FoundPluginLibrary {
    std::string path;
    std::string description;
    std::vector<std::string> modules;  // the modules' descriptions, in module order
};

// Libraries exporting "winampVisGetHeader", with their modules (at most 1024 each, so a
// library whose getModule never says NULL cannot hang the scan).
std::vector<FoundPluginLibrary> FindVisualizationLibraries(std::string_view searchPath);

// "Configure" of a visualization module: a temporary load of the library, the module's
// Config with the given parent window record, and the library released again. False
// when the library, the module or its Config is missing.
bool ConfigureVisualizationModule(const std::string& path, int moduleIndex, void* parentWindow);

}  // namespace verdin
