#!/bin/sh
# Makes the seed corpus: a few tenths of a second of sine in each flavour the module meets,
# each behind the fuzzer's two control bytes (data offset, seek position / 20 ms).
set -e
cd "$(dirname "$0")"
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
sox -n -r 44100 -c 2 -b 16 "$tmp/stereo.wav" synth 0.15 sine 440 sine 660
sox -n -r 22050 -c 1 -b 16 "$tmp/mono.wav" synth 0.15 sine 330
lame --quiet -b 128 "$tmp/stereo.wav" "$tmp/cbr.mp3"
lame --quiet -V 4 "$tmp/stereo.wav" "$tmp/vbr.mp3"
lame --quiet -t -b 32 "$tmp/mono.wav" "$tmp/mono_notag.mp3"
# An ID3v2 tag of 64 bytes in front of the audio, skipped through the data offset.
{ printf 'ID3\003\000\000\000\000\000\066'; head -c 54 /dev/zero; } > "$tmp/tag"
seed() { { printf "$1"; cat "$2"; } > "corpus/$3"; }
mkdir -p corpus
seed '\000\005' "$tmp/cbr.mp3" cbr
seed '\000\003' "$tmp/vbr.mp3" vbr
seed '\000\002' "$tmp/mono_notag.mp3" mono_notag
cat "$tmp/tag" "$tmp/cbr.mp3" > "$tmp/tagged.mp3"
seed '\100\004' "$tmp/tagged.mp3" tagged_offset
seed '\000\004' "$tmp/tagged.mp3" tagged_no_offset
