#pragma once
// An input module whose decoding lives in a library of its own, opened the first time a
// file is read or played: the plug-in the player loads at start-up is a few pages, and
// the decoding library with everything it links (FFmpeg pulls in dozens of codec,
// network and crypto libraries) costs its memory and loading time only in a run that
// meets such a file.
//
// The plug-in answers from its own table what the player asks of every module at
// start-up and for every file (description, file types, whether a file is its own, and
// optionally a track's information that needs no decoding); everything else goes to the
// module that the decoding library's Verdin_GetInputModule returns, and the stream
// extension, where the library has one, to its table.
//
// The decoding library is looked for at `library`, relative to the folder that holds the
// plug-in. When it cannot be opened, the plug-in says so once on standard error and
// answers as a module that understands no file.
//
// Threads: as the input contract says. The library is opened once, by whichever thread
// first needs it; the others wait for that (std::call_once).
#include <verdin/input.h>
#include <verdin/input_stream.h>

#include <cstdint>

namespace verdin {

struct LazyInputModuleTable {
    const char* name;          // the plug-in's file name, for the message
    const char* description;
    const char* fileTypes;
    const char* library;       // e.g. "../libverdin-ffmpeg-input.so"
    int32_t (*isOurFile)(const char* path);
    // Fills a track's information without the library, or null to ask the library.
    int32_t (*describe)(const char* path, TrackInfo* info);
};

// The module for the plug-in's entry point; table must outlive it (a constant).
InputModule* LazyInputModule(const LazyInputModuleTable& table);

// The stream extension of the decoding library, for a plug-in that exports one: its
// operations forward to the library's (a decoder exists only once the library is open).
const InputStreamOps* LazyInputStreamOps();

}  // namespace verdin
