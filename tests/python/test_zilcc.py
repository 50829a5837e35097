"""The Python package against the C library: the same bytes as the zilcc tool
gives for the same data, error and warning mapping, strided and reversed
views, and calls that release the GIL."""
import os
import subprocess
import threading
import warnings

import numpy as np
import pytest

import zilcc

TOOL = os.environ.get("ZILCC_TOOL")
needs_tool = pytest.mark.skipif(not TOOL, reason="ZILCC_TOOL not set")
rng = np.random.default_rng(7)


def write_pnm(path, img):
    ch = 1 if img.ndim == 2 else 3
    maxval = 255 if img.dtype == np.uint8 else 65535
    with open(path, "wb") as f:
        f.write(b"P%d\n%d %d\n%d\n" % (5 if ch == 1 else 6, img.shape[1], img.shape[0], maxval))
        f.write(img.astype(">u2").tobytes() if maxval > 255 else img.tobytes())


def read_pnm(path):
    data = open(path, "rb").read()
    fields, pos = [], 0
    while len(fields) < 4:
        while data[pos:pos + 1].isspace():
            pos += 1
        end = pos
        while not data[end:end + 1].isspace():
            end += 1
        fields.append(data[pos:end])
        pos = end
    w, h, maxval = int(fields[1]), int(fields[2]), int(fields[3])
    ch = 3 if fields[0] == b"P6" else 1
    dtype = np.dtype(">u2") if maxval > 255 else np.dtype(np.uint8)
    a = np.frombuffer(data[pos + 1:], dtype, count=w * h * ch)
    return a.astype(np.uint16 if maxval > 255 else np.uint8).reshape((h, w, ch) if ch == 3 else (h, w))


def tool(*args):
    subprocess.run([TOOL, *map(str, args)], check=True, capture_output=True)


@needs_tool
@pytest.mark.parametrize("method", ["gradient", "ahd"])
@pytest.mark.parametrize("dtype", [np.uint8, np.uint16])
def test_demosaic_equals_tool(tmp_path, method, dtype):
    raw = rng.integers(0, np.iinfo(dtype).max + 1, (23, 37), dtype=dtype)
    write_pnm(tmp_path / "raw.pgm", raw)
    tool("demosaic", tmp_path / "raw.pgm", tmp_path / "out.ppm", "--pattern", "grbg", "--method", method)
    expect = read_pnm(tmp_path / "out.ppm")
    np.testing.assert_array_equal(zilcc.demosaic(raw, "grbg", method), expect)


@needs_tool
@pytest.mark.parametrize("sampling,fmt,matrix", [(s, f, m) for s, f in (("444", "yuv444p"), ("422", "yuv422p"),
                                                                         ("420", "i420")) for m in ("yuv", "bt601")]
                         + [("420", "i420", "bt709")])
def test_rgb_to_yuv_equals_tool(tmp_path, sampling, fmt, matrix):
    img = rng.integers(0, 256, (18, 30, 3), dtype=np.uint8)
    write_pnm(tmp_path / "in.ppm", img)
    tool("convert", tmp_path / "in.ppm", tmp_path / "out.yuv", "--to", fmt, "--matrix", matrix)
    planes = zilcc.rgb_to_yuv(img, sampling, matrix)
    assert b"".join(p.tobytes() for p in planes) == (tmp_path / "out.yuv").read_bytes()
    tool("convert", tmp_path / "out.yuv", tmp_path / "back.ppm", "--from", fmt, "--size", "30x18", "--matrix", matrix)
    np.testing.assert_array_equal(zilcc.yuv_to_rgb(*planes, sampling=sampling, matrix=matrix),
                                  read_pnm(tmp_path / "back.ppm"))


def test_low_level_statuses_raise_and_warn():
    src = np.zeros((3, 5, 3), np.uint8)
    y, u, v = np.zeros((3, 5), np.uint8), np.zeros((1, 2), np.uint8), np.zeros((1, 2), np.uint8)
    with pytest.raises(zilcc.ZilError) as e:
        zilcc.ziliRGBToYUV_8u_C3R(src, None, None, 15, (5, 3))
    assert (e.value.status, e.value.name, e.value.function) == (-8, "zilStatusNullPointer", "ziliRGBToYUV_8u_C3R")
    with pytest.raises(zilcc.ZilError, match=r"ziliRGBToYUV_8u_C3R returned zilStatusBadSize \(-6\)"):
        zilcc.ziliRGBToYUV_8u_C3R(src, None, src.copy(), None, (0, 3))
    with warnings.catch_warnings(record=True) as caught:
        warnings.simplefilter("always")
        assert zilcc.ziliRGBToYUV420_8u_C3P3R(src, None, [y, u, v], None, (5, 3)) == 35
    assert [(w.message.name, w.message.status) for w in caught] == [("zilStatusOddSize", 35)]


def test_steps_come_from_strides_of_views():
    big = rng.integers(0, 256, (40, 24, 3), dtype=np.uint8)
    for view in (big[::2], big[::-1], big[5:31, 3:19]):
        expect = zilcc.rgb_to_yuv(np.ascontiguousarray(view), "420")
        got = zilcc.rgb_to_yuv(view, "420")
        for g, x in zip(got, expect):
            np.testing.assert_array_equal(g, x)
    # The same through the low level, destination reversed as well.
    dst = np.zeros((40, 24, 3), np.uint8)
    zilcc.ziliRGBToYUV_8u_C3R(big[::-1], None, dst[::-1], None, (24, 40))
    ref = np.zeros_like(dst)
    zilcc.ziliRGBToYUV_8u_C3R(big, None, ref, None, (24, 40))
    np.testing.assert_array_equal(dst, ref)


@pytest.mark.parametrize("call,message", [
    (lambda: zilcc.demosaic(np.zeros((8, 8), np.float32), "rggb"), "dtype uint8 or uint16"),
    (lambda: zilcc.demosaic(np.zeros((8, 8, 3), np.uint8), "rggb"), "3 channels"),
    (lambda: zilcc.demosaic(np.zeros((8, 8), np.uint8), "rgbg"), "pattern"),
    (lambda: zilcc.rgb_to_yuv(np.zeros((8, 8, 3), np.uint8)[:, ::-1], "420"), "next to each other"),
    (lambda: zilcc.rgb_to_yuv(np.zeros((7, 8, 3), np.uint8), "420"), "even width and height"),
    (lambda: zilcc.yuv_to_rgb(np.zeros((8, 8), np.uint8), np.zeros((2, 2), np.uint8), np.zeros((4, 4), np.uint8),
                              "420"), "u is 2x2"),
    (lambda: zilcc.reduce_bits(np.zeros((4, 4, 2), np.uint8), 4), "2 channels"),
    (lambda: zilcc.reduce_bits(np.zeros((4, 4), np.uint8), 4, dither="floyd"), "dither must be"),
])
def test_bad_arguments_raise_value_error(call, message):
    with pytest.raises(ValueError, match=message):
        call()


def test_below_minimum_size_is_a_zil_error_with_the_export():
    with pytest.raises(zilcc.ZilError, match="ziliDemosaicAHD_8u_C1C3R returned zilStatusBadSize"):
        zilcc.demosaic(np.zeros((4, 9), np.uint8), "rggb", "ahd")
    with pytest.raises(zilcc.ZilError, match="ziliReduceBits_8u_C1R returned zilStatusBadLevels"):
        zilcc.reduce_bits(np.zeros((4, 4), np.uint8), 1)


def test_ahd_on_extent_five_and_levels():
    raw = rng.integers(0, 256, (5, 7), dtype=np.uint8)
    assert zilcc.demosaic(raw, "bggr", "ahd").shape == (5, 7, 3)
    flat = np.full((6, 9), 255, np.uint8)
    assert set(np.unique(zilcc.reduce_bits(flat.astype(np.uint16) * 257, 2, "fs"))) <= {0, 65535}


def test_calls_release_the_gil():
    raw = rng.integers(0, 256, (2000, 2000), dtype=np.uint8)
    started, done = threading.Event(), threading.Event()

    def work():
        started.set()
        zilcc.demosaic(raw, "rggb", "ahd")
        done.set()

    t = threading.Thread(target=work)
    t.start()
    started.wait()
    spins = 0
    while not done.is_set():  # Python runs here only if the call let go of the GIL
        spins += 1
    t.join()
    assert spins > 1000


@needs_tool
@pytest.mark.parametrize("dtype", [np.uint8, np.uint16])
def test_png_reader_reads_what_the_tool_writes(tmp_path, dtype):
    from zilcc.png import read_png, write_png
    raw = rng.integers(0, np.iinfo(dtype).max + 1, (19, 26), dtype=dtype)
    write_png(tmp_path / "raw.png", raw)
    np.testing.assert_array_equal(read_png(tmp_path / "raw.png"), raw)
    for ext in ("png", "ppm"):
        tool("demosaic", tmp_path / "raw.png", tmp_path / ("out." + ext), "--pattern", "bggr", "--method", "gradient")
    np.testing.assert_array_equal(read_png(tmp_path / "out.png"), read_pnm(tmp_path / "out.ppm"))
