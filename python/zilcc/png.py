"""Plain PNG reading and writing with the standard library, enough for the
pictures the zilcc tool writes: 8- or 16-bit grey, grey+alpha, RGB or RGBA,
not interlaced. Arrays are HxW or HxWxC, uint8 or uint16."""
import struct
import zlib

import numpy as np

_CHANNELS = {0: 1, 2: 3, 4: 2, 6: 4}


def _unfilter(data, h, row, bpp):
    out = np.zeros((h, row), np.uint8)
    prev = np.zeros(row, np.int32)
    pos = 0
    for y in range(h):
        kind = data[pos]
        line = np.frombuffer(data, np.uint8, row, pos + 1).astype(np.int32)
        pos += row + 1
        if kind == 0:
            cur = line
        elif kind == 2:
            cur = (line + prev) & 255
        else:  # 1 sub, 3 average, 4 Paeth: each byte depends on the one bpp before it
            cur = np.zeros(row, np.int32)
            for x in range(row):
                a = cur[x - bpp] if x >= bpp else 0
                b = prev[x]
                if kind == 1:
                    p = a
                elif kind == 3:
                    p = (a + b) >> 1
                else:
                    c = prev[x - bpp] if x >= bpp else 0
                    pa, pb, pc = abs(b - c), abs(a - c), abs(a + b - 2 * c)
                    p = a if pa <= pb and pa <= pc else b if pb <= pc else c
                cur[x] = (line[x] + p) & 255
        out[y] = cur
        prev = cur
    return out


def read_png(path):
    """The image in a PNG file as an array."""
    data = open(path, "rb").read()
    if data[:8] != b"\x89PNG\r\n\x1a\n":
        raise ValueError("%s is not a PNG file" % path)
    pos, idat, head = 8, [], None
    while pos + 8 <= len(data):
        n, kind = struct.unpack(">I4s", data[pos:pos + 8])
        body = data[pos + 8:pos + 8 + n]
        if kind == b"IHDR":
            head = struct.unpack(">IIBBBBB", body)
        elif kind == b"IDAT":
            idat.append(body)
        elif kind == b"IEND":
            break
        pos += n + 12
    if head is None:
        raise ValueError("%s has no header" % path)
    w, h, bits, colour, _, _, interlace = head
    if bits not in (8, 16) or colour not in _CHANNELS or interlace:
        raise ValueError("%s: only 8/16-bit grey, RGB or with alpha, not interlaced" % path)
    ch = _CHANNELS[colour]
    bpp = ch * bits // 8
    rows = _unfilter(zlib.decompress(b"".join(idat)), h, w * bpp, bpp)
    img = rows.view(">u2").astype(np.uint16) if bits == 16 else rows
    return img.reshape((h, w) if ch == 1 else (h, w, ch))


def write_png(path, img):
    """Writes an HxW or HxWxC (C of 1 to 4) uint8 or uint16 array as PNG."""
    img = np.asarray(img)
    if img.dtype not in (np.uint8, np.uint16):
        raise ValueError("write_png takes uint8 or uint16 arrays, not %s" % img.dtype)
    h, w = img.shape[:2]
    ch = 1 if img.ndim == 2 else img.shape[2]
    colour = {1: 0, 2: 4, 3: 2, 4: 6}[ch]
    raw = img.astype(">u2") if img.dtype == np.uint16 else img
    rows = np.ascontiguousarray(raw).reshape(h, -1).view(np.uint8)
    body = b"".join(b"\0" + r.tobytes() for r in rows)

    def chunk(kind, payload):
        return struct.pack(">I", len(payload)) + kind + payload + struct.pack(">I", zlib.crc32(kind + payload))

    head = struct.pack(">IIBBBBB", w, h, 16 if img.dtype == np.uint16 else 8, colour, 0, 0, 0)
    with open(path, "wb") as f:
        f.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) + chunk(b"IDAT", zlib.compress(body, 6)) +
                chunk(b"IEND", b""))
