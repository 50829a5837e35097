"""zilcc: bit-exact colour conversions of libzilccmx.so on numpy arrays.

Low level: every export by its name, with the header's arguments
(``zilcc.ziliRGBToYUV_8u_C3R(src, None, dst, None, (w, h))``; a step given as
None is taken from the array's row stride). High level: a few functions on
arrays in height x width x channels order that check their arguments and
allocate their results.

A negative status raises ZilError (with .function, .name and .status); a
positive one is issued as a ZilWarning through the warnings module. The calls
release the GIL while the library works.
"""
import numpy as np

from ._lowlevel import (FUNCTIONS, LIBRARY_PATH, ZilError, ZilLibVersion, ZilRect, ZilSize, ZilSizeL,
                        ZilWarning, has)
from ._signatures import STATUS_NAMES

__all__ = ["ZilError", "ZilWarning", "ZilSize", "ZilSizeL", "ZilRect", "ZilLibVersion", "LIBRARY_PATH",
           "STATUS_NAMES", "has", "version", "demosaic", "rgb_to_yuv", "yuv_to_rgb", "reduce_bits", "to_gray",
           "convert", "SPACES"]
__all__ += sorted(FUNCTIONS)
globals().update(FUNCTIONS)


def version():
    """The library's version record as a dict."""
    v = FUNCTIONS["zilccGetLibVersion"]()
    return {"major": v.major, "minor": v.minor, "majorBuild": v.majorBuild, "build": v.build,
            "targetCpu": v.targetCpu.decode(), "name": v.name.decode(), "version": v.version.decode(),
            "buildDate": v.buildDate.decode()}


# ---- argument checks ---------------------------------------------------------
_DEPTH = {np.dtype(np.uint8): "8u", np.dtype(np.uint16): "16u", np.dtype(np.int16): "16s",
          np.dtype(np.float32): "32f"}


def _image(img, what, dtypes, channels):
    """Checks an image argument: a numpy array of one of `dtypes`, 2-D for one
    channel or HxWxC with C in `channels`, pixels dense within each row (rows
    may be apart, or in reverse order). Returns (array, channel count)."""
    if not isinstance(img, np.ndarray):
        raise ValueError("%s must be a numpy array, not %s" % (what, type(img).__name__))
    if img.dtype not in [np.dtype(d) for d in dtypes]:
        raise ValueError("%s must be of dtype %s, not %s" % (what, " or ".join(np.dtype(d).name for d in dtypes),
                                                               img.dtype))
    if img.ndim == 2:
        ch = 1
    elif img.ndim == 3:
        ch = img.shape[2]
    else:
        raise ValueError("%s must be HxW or HxWxC, not of %d dimensions" % (what, img.ndim))
    if ch not in channels:
        raise ValueError("%s has %d channel%s; this function takes %s" % (
            what, ch, "" if ch == 1 else "s", " or ".join(str(c) for c in channels)))
    if img.shape[0] < 1 or img.shape[1] < 1:
        raise ValueError("%s is empty (%dx%d)" % (what, img.shape[1], img.shape[0]))
    item = img.itemsize
    if img.strides[1] != ch * item or (img.ndim == 3 and img.strides[2] != item):
        raise ValueError("%s: the pixels of a row must lie next to each other (take a copy with "
                         "numpy.ascontiguousarray)" % what)
    if abs(img.strides[0]) < img.shape[1] * ch * item and img.shape[0] > 1:
        raise ValueError("%s: rows overlap (row stride %d)" % (what, img.strides[0]))
    if abs(img.strides[0]) > 0x7FFFFFFF:
        raise ValueError("%s: row stride %d does not fit the library's 32-bit step" % (what, img.strides[0]))
    return img, ch


def _need(name):
    if not has(name):
        raise ValueError("%s is not exported by the loaded library (%s)" % (name, LIBRARY_PATH))
    return FUNCTIONS[name]


# ---- demosaicing -------------------------------------------------------------
PATTERNS = {"bggr": 0, "rggb": 1, "gbrg": 2, "grbg": 3}


def demosaic(raw, pattern, method="gradient"):
    """RGB (HxWx3, the raw dtype) from a Bayer mosaic `raw` (HxW, uint8 or
    uint16). `pattern`: the colours of the top-left 2x2 cell, "rggb", "bggr",
    "grbg" or "gbrg". `method`: "gradient" or "ahd" (at least 5x5)."""
    raw, _ = _image(raw, "raw", (np.uint8, np.uint16), (1,))
    if pattern not in PATTERNS:
        raise ValueError("pattern must be one of %s, not %r" % (", ".join(PATTERNS), pattern))
    if method not in ("gradient", "ahd"):
        raise ValueError("method must be 'gradient' or 'ahd', not %r" % (method,))
    h, w = raw.shape
    depth = _DEPTH[raw.dtype]
    dst = np.zeros((h, w, 3), raw.dtype)
    rect, size = (0, 0, w, h), (w, h)
    if method == "gradient":
        _need("ziliCFAToRGB_%s_C1C3R" % depth)(raw, rect, size, None, dst, None, PATTERNS[pattern])
        return dst
    # A plane of extent 5 is read one sample beyond its edge on that axis:
    # give it one more row and column.
    if w == 5 or h == 5:
        padded = np.zeros((h + 1, w + 1), raw.dtype)
        padded[:h, :w] = raw
        raw = padded
    line = (w + 6 if w % 2 == 0 else w + 8) * raw.itemsize
    buffer = np.zeros(30 * line, np.uint8)
    _need("ziliDemosaicAHD_%s_C1C3R" % depth)(raw, rect, size, None, dst, None, PATTERNS[pattern], buffer, line)
    return dst


# ---- RGB <-> YUV / YCbCr -------------------------------------------------------
# Per matrix and sampling: (forward export, inverse export, input is BGR).
_YUV = {
    ("analog", "444"): ("ziliRGBToYUV_8u_C3P3R", "ziliYUVToRGB_8u_P3C3R", False),
    ("analog", "422"): ("ziliRGBToYUV422_8u_C3P3R", "ziliYUV422ToRGB_8u_P3C3R", False),
    ("analog", "420"): ("ziliRGBToYUV420_8u_C3P3R", "ziliYUV420ToRGB_8u_P3C3R", False),
    ("bt601", "444"): ("ziliRGBToYCbCr_8u_C3P3R", "ziliYCbCrToRGB_8u_P3C3R", False),
    ("bt601", "422"): ("ziliRGBToYCbCr422_8u_C3P3R", "ziliYCbCr422ToRGB_8u_P3C3R", False),
    ("bt601", "420"): ("ziliRGBToYCbCr420_8u_C3P3R", "ziliYCbCr420ToRGB_8u_P3C3R", False),
    ("bt709", "420"): ("ziliBGRToYCbCr420_709CSC_8u_C3P3R", "ziliYCbCr420ToBGR_709CSC_8u_P3C3R", True),
}
MATRICES = ("analog", "bt601", "bt709")


def _matrix(m):
    """The tool's name "yuv" for the analog matrix is taken as well."""
    return "analog" if m == "yuv" else m


def _chroma_shape(sampling, w, h):
    return {"444": (h, w), "422": (h, (w + 1) // 2), "420": (h // 2, w // 2)}[sampling]


def _yuv_entry(sampling, matrix, w, h):
    if sampling not in ("444", "422", "420"):
        raise ValueError("sampling must be '444', '422' or '420', not %r" % (sampling,))
    if matrix not in MATRICES:
        raise ValueError("matrix must be one of %s, not %r" % (", ".join(MATRICES), matrix))
    if (matrix, sampling) not in _YUV:
        raise ValueError("matrix %r comes only with sampling %s" % (
            matrix, " or ".join(s for m, s in _YUV if m == matrix)))
    if sampling == "420" and (w % 2 or h % 2):
        raise ValueError("4:2:0 needs an even width and height, not %dx%d" % (w, h))
    if sampling == "422" and matrix != "analog" and w % 2:
        raise ValueError("4:2:2 YCbCr needs an even width, not %d" % w)
    return _YUV[(matrix, sampling)]


def rgb_to_yuv(img, sampling="444", matrix="analog"):
    """(Y, U, V) planes of an 8-bit RGB image (HxWx3 uint8). `matrix`:
    "analog" or "yuv" (Y = 0.299 R + 0.587 G + 0.114 B on 0..255), "bt601" (studio-range
    YCbCr) or "bt709" (studio-range HDTV YCbCr, 4:2:0 only). Chroma planes are
    subsampled: 4:2:2 to ceil(W/2) (W/2 for YCbCr) columns, 4:2:0 to W/2 x H/2."""
    img, _ = _image(img, "img", (np.uint8,), (3,))
    h, w = img.shape[:2]
    matrix = _matrix(matrix)
    fwd, _, bgr = _yuv_entry(sampling, matrix, w, h)
    f = _need(fwd)
    if bgr:
        img = np.ascontiguousarray(img[:, :, ::-1])
    y = np.zeros((h, w), np.uint8)
    c = _chroma_shape(sampling, w, h)
    u, v = np.zeros(c, np.uint8), np.zeros(c, np.uint8)
    if sampling == "444" and matrix == "analog":  # one step for all three planes
        planes = np.zeros((3, h, w), np.uint8)
        f(img, None, [planes[0], planes[1], planes[2]], None, (w, h))
        return planes[0], planes[1], planes[2]
    f(img, None, [y, u, v], None, (w, h))
    return y, u, v


def yuv_to_rgb(y, u, v, sampling="444", matrix="analog"):
    """An RGB image (HxWx3 uint8) from Y, U, V planes as rgb_to_yuv makes them."""
    y, _ = _image(y, "y", (np.uint8,), (1,))
    h, w = y.shape
    matrix = _matrix(matrix)
    _, inv, bgr = _yuv_entry(sampling, matrix, w, h)
    f = _need(inv)
    c = _chroma_shape(sampling, w, h)
    for name, p in (("u", u), ("v", v)):
        _image(p, name, (np.uint8,), (1,))
        if p.shape[0] < c[0] or p.shape[1] < c[1]:
            raise ValueError("%s is %dx%d; %s chroma of a %dx%d image needs %dx%d" % (
                name, p.shape[1], p.shape[0], sampling, w, h, c[1], c[0]))
    dst = np.zeros((h, w, 3), np.uint8)
    if sampling == "444" and matrix == "analog":  # one source step for all planes
        planes = np.stack([y, u[:h, :w], v[:h, :w]])
        f([planes[0], planes[1], planes[2]], None, dst, None, (w, h))
    else:
        f([y, u, v], None, dst, None, (w, h))
    return dst[:, :, ::-1].copy() if bgr else dst


# ---- bit-depth reduction -------------------------------------------------------
DITHERS = {"none": 0, "fs": 1, "jjn": 2, "stucki": 3, "bayer": 4}
_REDUCE_PAIRS = {("8u", "8u"): "8u", ("16u", "16u"): "16u", ("16s", "16s"): "16s", ("32f", "8u"): "32f8u",
                 ("32f", "16u"): "32f16u", ("32f", "16s"): "32f16s", ("16u", "8u"): "16u8u", ("16s", "8u"): "16s8u"}


def reduce_bits(img, levels, dither="none", noise=0, out_dtype=None):
    """`img` reduced to `levels` levels per channel, with `dither` ("none",
    "fs", "jjn", "stucki", "bayer") and `noise` percent (0..100) of noise.
    Sources uint8, uint16, int16 or float32 (0..1), HxW, HxWx3 or HxWx4; the
    result has `out_dtype` (default: the source's, uint8 for float32)."""
    img, ch = _image(img, "img", (np.uint8, np.uint16, np.int16, np.float32), (1, 3, 4))
    if dither not in DITHERS:
        raise ValueError("dither must be one of %s, not %r" % (", ".join(DITHERS), dither))
    out = np.dtype(out_dtype) if out_dtype is not None else (np.dtype(np.uint8) if img.dtype == np.float32
                                                             else img.dtype)
    pair = _REDUCE_PAIRS.get((_DEPTH[img.dtype], _DEPTH.get(out)))
    if pair is None:
        raise ValueError("no reduction from %s to %s" % (img.dtype, out))
    h, w = img.shape[:2]
    layout = {1: "C1", 3: "C3", 4: "C4"}[ch]
    size = np.zeros(1, np.int32)
    _need("ziliReduceBitsGetBufferSize")(ch, (w, h), int(noise), DITHERS[dither], size)
    buffer = np.zeros(max(int(size[0]), 1), np.uint8)
    dst = np.zeros(img.shape, out)
    _need("ziliReduceBits_%s_%sR" % (pair, layout))(img, None, dst, None, (w, h), int(noise), DITHERS[dither],
                                                    int(levels), buffer)
    return dst


# ---- gray and the colour spaces ------------------------------------------------
def to_gray(img):
    """One channel (HxW, same dtype) from RGB (HxWx3) or RGB plus alpha (HxWx4)
    of uint8, uint16, int16 or float32, with the fixed weights 0.299, 0.587, 0.114."""
    img, ch = _image(img, "img", (np.uint8, np.uint16, np.int16, np.float32), (3, 4))
    h, w = img.shape[:2]
    dst = np.zeros((h, w), img.dtype)
    _need("ziliRGBToGray_%s_%sC1R" % (_DEPTH[img.dtype], "C3" if ch == 3 else "AC4"))(img, None, dst, None, (w, h))
    return dst


# The colour spaces the library converts RGB to and from, pixel by pixel, in
# one interleaved image: name as in the function names.
SPACES = ("XYZ", "LUV", "Lab", "YCC", "HLS", "HSV", "YCoCg")


def convert(img, to, frm="RGB"):
    """A pixel-by-pixel conversion of an HxWx3 image between `frm` and `to`
    (e.g. "RGB" to "Lab"), through the export zili{frm}To{to}_{depth}_C3R of
    the image's dtype. The result has the same shape and dtype."""
    img, _ = _image(img, "img", (np.uint8, np.uint16, np.int16, np.float32), (3,))
    name = "zili%sTo%s_%s_C3R" % (frm, to, _DEPTH[img.dtype])
    if not has(name):
        others = sorted(n for n in FUNCTIONS if n.startswith("zili%sTo%s_" % (frm, to)) and n.endswith("_C3R"))
        raise ValueError("no %s to %s conversion for %s images%s" % (
            frm, to, img.dtype, "; there are: " + ", ".join(others) if others else ""))
    h, w = img.shape[:2]
    dst = np.zeros_like(img)
    FUNCTIONS[name](img, None, dst, None, (w, h))
    return dst


def _space_functions(space):
    def fwd(img):
        return convert(img, space, "RGB")

    def inv(img):
        return convert(img, "RGB", space)

    fwd.__name__, inv.__name__ = "rgb_to_" + space.lower(), space.lower() + "_to_rgb"
    fwd.__doc__ = "RGB (HxWx3) to %s, same dtype, through zilcc's zili RGBTo%s exports." % (space, space)
    inv.__doc__ = "%s (HxWx3) back to RGB, same dtype, through zilcc's zili%sToRGB exports." % (space, space)
    return fwd, inv


for _s in SPACES:
    _f, _i = _space_functions(_s)
    globals()[_f.__name__], globals()[_i.__name__] = _f, _i
    __all__ += [_f.__name__, _i.__name__]
del _s, _f, _i
