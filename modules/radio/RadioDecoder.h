#pragma once
// The decoder of one station. Opening it touches no network (it is made on the
// user-interface thread); the first Decode, on the stream thread, connects. The stream
// extension's operations report the station's current title and why a track ended early.
#include <verdin/input.h>
#include <verdin/input_stream.h>

namespace verdin::radio {

InputDecoder* OpenRadioDecoder(const char* url);

// The stream extension of this module's decoders.
const InputStreamOps* RadioStreamOps();

}  // namespace verdin::radio
