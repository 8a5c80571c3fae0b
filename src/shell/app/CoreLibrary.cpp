// libverdin-core.so: the player's own code (engine, playlists, tags, settings, plug-in
// hosts, the application core). Its contents come whole from the static libraries it is
// linked from; this file only gives the library an object of its own.
namespace verdin {
extern const char* const kCoreLibraryName;
const char* const kCoreLibraryName = "verdin-core";
}  // namespace verdin
