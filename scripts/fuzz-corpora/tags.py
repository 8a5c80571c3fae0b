#!/usr/bin/env python3
"""Writes the seed corpus of fuzz_tags: one small file of each layout, behind the byte that
picks the layout (0 other, 1 MPEG, 2 FLAC, 3 Ogg, 4 WAV, 5 AIFF). Needs lame, flac and sox.
Run from anywhere: scripts/fuzz-corpora/tags.py"""
import os, struct, subprocess, tempfile

os.chdir(os.path.join(os.path.dirname(os.path.abspath(__file__)), '..', '..', 'fuzz', 'tags'))

def synchsafe(n): return bytes([(n >> 21) & 127, (n >> 14) & 127, (n >> 7) & 127, n & 127])
def frame(fid, body, major=3): return fid.encode() + (synchsafe(len(body)) if major == 4 else struct.pack('>I', len(body))) + b'\0\0' + body
def id3v2(frames, major=3): body = b''.join(frames) + b'\0' * 16; return b'ID3' + bytes([major, 0, 0]) + synchsafe(len(body)) + body
def latin1(text): return b'\0' + text.encode('latin1')
def chunk(cid, data, fmt): return cid + struct.pack(fmt, len(data)) + data + b'\0' * (len(data) % 2)
def id3v1(title, artist, track, genre):
    pad = lambda s, n: s.encode()[:n].ljust(n, b'\0')
    return b'TAG' + pad(title, 30) + pad(artist, 30) + pad('Album', 30) + b'1999' + pad('comment', 28) + bytes([0, track, genre])
def ogg_page(sequence, flags, packet):
    lacing = bytes([255] * (len(packet) // 255) + [len(packet) % 255])
    page = b'OggS\0' + bytes([flags]) + b'\0' * 8 + struct.pack('<III', 9, sequence, 0) + bytes([len(lacing)]) + lacing + packet
    crc = 0
    for byte in page:
        crc ^= byte << 24
        for _ in range(8): crc = ((crc << 1) ^ 0x04C11DB7 if crc & 0x80000000 else crc << 1) & 0xFFFFFFFF
    return page[:22] + struct.pack('<I', crc) + page[26:]
def run(*args): subprocess.run(args, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
def read(path): return open(path, 'rb').read()
def write(name, kind, data): os.makedirs('corpus', exist_ok=True); open(os.path.join('corpus', name), 'wb').write(bytes([kind]) + data)

tags23 = id3v2([frame('TIT2', latin1('Seed Title')), frame('TPE1', latin1('Seed Artist')), frame('TCON', latin1('(RX)(17)Metal')),
                frame('COMM', b'\0eng\0hello'), frame('TXXX', b'\0MOOD\0calm'), frame('APIC', b'\0image/png\0\3front\0PNGDATA'),
                frame('GEOB', b'\0text/plain\0a.txt\0notes\0DATA'), frame('PCNT', b'\0\0\1\2'), frame('POPM', b'me\0\xc4\0\0\0\7'),
                frame('TDAT', latin1('0605'))])
with tempfile.TemporaryDirectory() as tmp:
    wav, mp3, flac, ogg = (os.path.join(tmp, 'a.' + e) for e in ('wav', 'mp3', 'flac', 'ogg'))
    run('sox', '-n', '-r', '8000', '-c', '1', '-b', '16', wav, 'synth', '0.02', 'sine', '440')
    run('lame', '--quiet', '-b', '8', wav, mp3)
    write('mpeg-v23-v1', 1, tags23 + read(mp3)[:600] + id3v1('V1', 'Artist', 3, 125))
    write('mpeg-v24', 1, id3v2([frame('TIT2', b'\3' + 'Ünï'.encode(), 4), frame('TCON', b'\3' + b'17\0RX', 4)], 4) + read(mp3)[:600])
    write('other-v1', 0, read(wav)[:200] + id3v1('Au', 'Artist', 0, 8))
    run('flac', '-s', '-f', '--no-padding', '-T', 'TITLE=Seed', '-T', 'ARTIST=A', '-T', 'GENRE=17', '-T', 'TRACKNUMBER=3',
        '-T', 'TRACKTOTAL=9', '-o', flac, wav)
    write('flac', 2, read(flac))
    run('sox', wav, '--comment', 'TITLE=Seed Ogg', ogg)
    write('ogg', 3, read(ogg))
    tags = b'OpusTags' + struct.pack('<I', 4) + b'seed' + struct.pack('<I', 2) + b''.join(
        struct.pack('<I', len(f)) + f for f in (b'TITLE=Seed Opus', b'GENRE=CR'))
    head = b'OpusHead' + struct.pack('<BBHIhB', 1, 2, 312, 48000, 0, 0)
    write('opus', 3, ogg_page(0, 2, head) + ogg_page(1, 0, tags) + ogg_page(2, 4, b'\x08'))
    info = b'INFO' + chunk(b'INAM', b'Info Title\0', '<I') + chunk(b'IART', b'Info Artist\0', '<I')
    body = b'WAVE' + chunk(b'fmt ', struct.pack('<HHIIHH', 1, 1, 8000, 16000, 2, 16), '<I') + chunk(b'data', read(wav)[44:144], '<I') + \
        chunk(b'LIST', info, '<I') + chunk(b'id3 ', id3v2([frame('TIT2', latin1('Wave'))]), '<I')
    write('wav', 4, b'RIFF' + struct.pack('<I', len(body)) + body)
    body = b'AIFF' + chunk(b'COMM', struct.pack('>hIh', 1, 50, 16) + b'\x40\x0b\xfa\0\0\0\0\0\0\0', '>I') + \
        chunk(b'SSND', struct.pack('>II', 0, 0) + b'\0' * 100, '>I') + chunk(b'ID3 ', id3v2([frame('TIT2', latin1('Aiff'))]), '>I')
    write('aiff', 5, b'FORM' + struct.pack('>I', len(body)) + body)
