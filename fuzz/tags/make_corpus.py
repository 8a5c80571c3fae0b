#!/usr/bin/env python3
"""Writes the seed corpus of fuzz_tags: one small file of each layout, prefixed with the
byte that picks the layout (0 other, 1 MPEG, 2 FLAC, 3 Ogg, 4 WAV, 5 AIFF). Needs lame,
flac and sox. Run from this folder: ./make_corpus.py"""
import os, struct, subprocess, tempfile

def synchsafe(n):
    return bytes([(n >> 21) & 127, (n >> 14) & 127, (n >> 7) & 127, n & 127])

def frame(fid, body, major=3):
    size = synchsafe(len(body)) if major == 4 else struct.pack('>I', len(body))
    return fid.encode() + size + b'\0\0' + body

def id3v2(frames, major=3, padding=16):
    body = b''.join(frames) + b'\0' * padding
    return b'ID3' + bytes([major, 0, 0]) + synchsafe(len(body)) + body

def id3v1(title, artist, track, genre):
    pad = lambda s, n: s.encode()[:n].ljust(n, b'\0')
    return b'TAG' + pad(title, 30) + pad(artist, 30) + pad('Album', 30) + b'1999' + pad('comment', 28) + bytes([0, track, genre])

def latin1(text):
    return b'\0' + text.encode('latin1')

def riff_chunk(cid, data):
    return cid + struct.pack('<I', len(data)) + data + (b'\0' if len(data) % 2 else b'')

def aiff_chunk(cid, data):
    return cid + struct.pack('>I', len(data)) + data + (b'\0' if len(data) % 2 else b'')

def ogg_crc(data):
    crc = 0
    for byte in data:
        crc ^= byte << 24
        for _ in range(8):
            crc = ((crc << 1) ^ 0x04C11DB7 if crc & 0x80000000 else crc << 1) & 0xFFFFFFFF
    return crc

def ogg_page(sequence, flags, packet):
    lacing = bytes([255] * (len(packet) // 255) + [len(packet) % 255])
    page = b'OggS\0' + bytes([flags]) + b'\0' * 8 + struct.pack('<III', 9, sequence, 0) + bytes([len(lacing)]) + lacing + packet
    return page[:22] + struct.pack('<I', ogg_crc(page)) + page[26:]

def run(args):
    subprocess.run(args, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

def write(name, kind, data):
    with open(os.path.join('corpus', name), 'wb') as f:
        f.write(bytes([kind]) + data)

tags23 = id3v2([frame('TIT2', latin1('Seed Title')), frame('TPE1', latin1('Seed Artist')),
                frame('TCON', latin1('(RX)(17)Metal')), frame('COMM', b'\0eng\0hello'),
                frame('TXXX', b'\0MOOD\0calm'), frame('APIC', b'\0image/png\0\3front\0PNGDATA'),
                frame('GEOB', b'\0text/plain\0a.txt\0notes\0DATA'), frame('PCNT', b'\0\0\1\2'),
                frame('POPM', b'me\0\xc4\0\0\0\7'), frame('TDAT', latin1('0605'))])
tags24 = id3v2([frame('TIT2', b'\3' + 'Ünï'.encode(), 4), frame('TCON', b'\3' + b'17\0RX', 4)], major=4)

with tempfile.TemporaryDirectory() as tmp:
    wav = os.path.join(tmp, 'a.wav')
    run(['sox', '-n', '-r', '8000', '-c', '1', '-b', '16', wav, 'synth', '0.02', 'sine', '440'])
    mp3 = os.path.join(tmp, 'a.mp3')
    run(['lame', '--quiet', '-b', '8', wav, mp3])
    audio = open(mp3, 'rb').read()[:600]
    write('mpeg-v23-v1', 1, tags23 + audio + id3v1('V1', 'Artist', 3, 125))
    write('mpeg-v24', 1, tags24 + audio)
    write('other-v1', 0, open(wav, 'rb').read()[:200] + id3v1('Au', 'Artist', 0, 8))
    flac = os.path.join(tmp, 'a.flac')
    run(['flac', '-s', '-f', '--no-padding', '-T', 'TITLE=Seed', '-T', 'ARTIST=A', '-T', 'GENRE=17',
         '-T', 'TRACKNUMBER=3', '-T', 'TRACKTOTAL=9', '-o', flac, wav])
    write('flac', 2, open(flac, 'rb').read())
    ogg = os.path.join(tmp, 'a.ogg')
    run(['sox', wav, '--comment', 'TITLE=Seed Ogg', ogg])
    write('ogg', 3, open(ogg, 'rb').read())
    fields = [b'TITLE=Seed Opus', b'GENRE=CR']
    opus_tags = b'OpusTags' + struct.pack('<I', 4) + b'seed' + struct.pack('<I', len(fields)) + \
        b''.join(struct.pack('<I', len(f)) + f for f in fields)
    opus_head = b'OpusHead' + struct.pack('<BBHIhB', 1, 2, 312, 48000, 0, 0)
    write('opus', 3, ogg_page(0, 2, opus_head) + ogg_page(1, 0, opus_tags) + ogg_page(2, 4, b'\x08'))
    pcm = open(wav, 'rb').read()[44:144]
    fmt = struct.pack('<HHIIHH', 1, 1, 8000, 16000, 2, 16)
    info = b'INFO' + riff_chunk(b'INAM', b'Info Title\0') + riff_chunk(b'IART', b'Info Artist\0')
    body = b'WAVE' + riff_chunk(b'fmt ', fmt) + riff_chunk(b'data', pcm) + riff_chunk(b'LIST', info) + \
        riff_chunk(b'id3 ', id3v2([frame('TIT2', latin1('Wave'))]))
    write('wav', 4, b'RIFF' + struct.pack('<I', len(body)) + body)
    comm = struct.pack('>hIh', 1, 50, 16) + b'\x40\x0b\xfa\0\0\0\0\0\0\0'
    ssnd = struct.pack('>II', 0, 0) + b'\0' * 100
    body = b'AIFF' + aiff_chunk(b'COMM', comm) + aiff_chunk(b'SSND', ssnd) + \
        aiff_chunk(b'ID3 ', id3v2([frame('TIT2', latin1('Aiff'))]))
    write('aiff', 5, b'FORM' + struct.pack('>I', len(body)) + body)
