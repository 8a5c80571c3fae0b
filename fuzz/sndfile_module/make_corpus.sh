#!/bin/sh
# Makes the seed corpus: a tenth of a second of sine in each container and encoding the
# module meets, each behind the fuzzer's two control bytes (data offset, seek position / 20 ms).
set -e
cd "$(dirname "$0")"
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
sox -n -r 8000 -c 2 -b 16 "$tmp/s16.wav" synth 0.1 sine 440 sine 660
sox -n -r 8000 -c 1 -b 8 -e unsigned-integer "$tmp/u8.wav" synth 0.1 sine 440
sox -n -r 8000 -c 1 -b 32 -e floating-point "$tmp/float.wav" synth 0.05 sine 440
sox "$tmp/s16.wav" "$tmp/s16.aiff"
sox "$tmp/s16.wav" "$tmp/s16.au"
sox "$tmp/s16.wav" -C 0 "$tmp/vorbis.ogg"
flac -s --no-padding -o "$tmp/s16.flac" "$tmp/s16.wav"
{ printf 'ID3\003\000\000\000\000\000\066'; head -c 54 /dev/zero; } > "$tmp/tag"
cat "$tmp/tag" "$tmp/s16.flac" > "$tmp/tagged.flac"
seed() { { printf "$1"; cat "$2"; } > "corpus/$3"; }
mkdir -p corpus
seed '\000\002' "$tmp/s16.wav" wav16
seed '\000\002' "$tmp/u8.wav" wav8
seed '\000\001' "$tmp/float.wav" wav_float
seed '\000\002' "$tmp/s16.aiff" aiff
seed '\000\002' "$tmp/s16.au" au
seed '\000\002' "$tmp/vorbis.ogg" vorbis
seed '\000\002' "$tmp/s16.flac" flac
seed '\100\003' "$tmp/tagged.flac" tagged_flac
