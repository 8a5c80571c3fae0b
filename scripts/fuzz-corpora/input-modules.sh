#!/bin/sh
# Makes the seed corpora of the input module fuzzers (mpeg_module, sndfile_module,
# ffmpeg_module): a fraction of a second of sine in each flavour and container a module
# meets, each behind the fuzzer's two control bytes (data offset, seek position / 20 ms).
# Needs sox, lame, flac and ffmpeg.
set -e
cd "$(dirname "$0")/../../fuzz"
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
# seed <fuzzer> <control bytes> <file in $tmp> <seed name>
seed() { mkdir -p "$1/corpus"; { printf "$2"; cat "$tmp/$3"; } > "$1/corpus/$4"; }
# An ID3v2 tag of 64 bytes in front of the audio, skipped through the data offset.
{ printf 'ID3\003\000\000\000\000\000\066'; head -c 54 /dev/zero; } > "$tmp/tag"

sox -n -r 44100 -c 2 -b 16 "$tmp/stereo.wav" synth 0.15 sine 440 sine 660
sox -n -r 22050 -c 1 -b 16 "$tmp/mono.wav" synth 0.15 sine 330
lame --quiet -b 128 "$tmp/stereo.wav" "$tmp/cbr.mp3"
lame --quiet -V 4 "$tmp/stereo.wav" "$tmp/vbr.mp3"
lame --quiet -t -b 32 "$tmp/mono.wav" "$tmp/mono_notag.mp3"
cat "$tmp/tag" "$tmp/cbr.mp3" > "$tmp/tagged.mp3"
seed mpeg_module '\000\005' cbr.mp3 cbr
seed mpeg_module '\000\003' vbr.mp3 vbr
seed mpeg_module '\000\002' mono_notag.mp3 mono_notag
seed mpeg_module '\100\004' tagged.mp3 tagged_offset
seed mpeg_module '\000\004' tagged.mp3 tagged_no_offset

sox -n -r 8000 -c 2 -b 16 "$tmp/s16.wav" synth 0.1 sine 440 sine 660
sox -n -r 8000 -c 1 -b 8 -e unsigned-integer "$tmp/u8.wav" synth 0.1 sine 440
sox -n -r 8000 -c 1 -b 32 -e floating-point "$tmp/float.wav" synth 0.05 sine 440
sox "$tmp/s16.wav" "$tmp/s16.aiff"
sox "$tmp/s16.wav" "$tmp/s16.au"
sox "$tmp/s16.wav" -C 0 "$tmp/vorbis.ogg"
flac -s --no-padding -o "$tmp/s16.flac" "$tmp/s16.wav"
cat "$tmp/tag" "$tmp/s16.flac" > "$tmp/tagged.flac"
for kind in wav16:s16.wav wav8:u8.wav aiff:s16.aiff au:s16.au vorbis:vorbis.ogg flac:s16.flac; do
  seed sndfile_module '\000\002' "${kind#*:}" "${kind%%:*}"
done
seed sndfile_module '\000\001' float.wav wav_float
seed sndfile_module '\100\003' tagged.flac tagged_flac

# The FFmpeg module (needs ffmpeg): AAC and ALAC in MP4, 5.1 WavPack, Opus in WebM, WMA;
# the MP4s also behind the tag.
ffmpeg -v error -f lavfi -i "sine=f=440:r=22050:d=0.15" -ac 2 "$tmp/ff.wav"
ffmpeg -v error -i "$tmp/ff.wav" -c:a aac -b:a 32k "$tmp/aac.m4a"
ffmpeg -v error -i "$tmp/ff.wav" -c:a alac "$tmp/alac.m4a"
ffmpeg -v error -i "$tmp/ff.wav" -af "pan=5.1|FC=c0|LFE=c1" -c:a wavpack "$tmp/surround.wv"
ffmpeg -v error -i "$tmp/ff.wav" -ac 1 -c:a libopus -b:a 16k "$tmp/opus.webm"
ffmpeg -v error -i "$tmp/ff.wav" -c:a wmav2 -b:a 32k "$tmp/wma.wma"
cat "$tmp/tag" "$tmp/alac.m4a" > "$tmp/tagged.m4a"
for kind in aac_m4a:aac.m4a alac_m4a:alac.m4a wavpack_surround:surround.wv opus_webm:opus.webm wma:wma.wma; do
  seed ffmpeg_module '\000\003' "${kind#*:}" "${kind%%:*}"
done
seed ffmpeg_module '\100\002' tagged.m4a tagged_alac_m4a
