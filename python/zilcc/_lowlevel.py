"""Every export of libzilccmx.so, callable by its name with the header's arguments.

The argument list is the header's. Image pointers take numpy arrays (their data
pointer is passed), None, or a plain integer address; arrays of plane pointers
take a sequence of those. A step left out (None) is taken from the array it
belongs to: srcStep from src's row stride, dstStep from dst's, a per-plane step
array from each plane's. ZilSize and ZilRect take tuples. A negative status
raises ZilError; a positive one is issued as a ZilWarning.
"""
import ctypes
import os
import warnings

from ._signatures import SIGNATURES, STATUS_NAMES

LIBRARY_NAME = "libzilccmx.so"


class ZilError(RuntimeError):
    """A negative status: the call failed and wrote nothing."""

    def __init__(self, function, status):
        self.function = function
        self.status = status
        self.name = STATUS_NAMES.get(status, "unknown status")
        super().__init__("%s returned %s (%d)" % (function, self.name, status))


class ZilWarning(UserWarning):
    """A positive status: the work was done, with a remark (e.g. an odd size)."""

    def __init__(self, function, status):
        self.function = function
        self.status = status
        self.name = STATUS_NAMES.get(status, "unknown status")
        super().__init__("%s returned %s (%d)" % (function, self.name, status))


class ZilSize(ctypes.Structure):
    _fields_ = [("width", ctypes.c_int32), ("height", ctypes.c_int32)]


class ZilSizeL(ctypes.Structure):
    _fields_ = [("width", ctypes.c_int64), ("height", ctypes.c_int64)]


class ZilRect(ctypes.Structure):
    _fields_ = [("x", ctypes.c_int32), ("y", ctypes.c_int32), ("width", ctypes.c_int32), ("height", ctypes.c_int32)]


class ZilLibVersion(ctypes.Structure):
    _fields_ = [("major", ctypes.c_int32), ("minor", ctypes.c_int32), ("majorBuild", ctypes.c_int32),
                ("build", ctypes.c_int32), ("targetCpu", ctypes.c_char * 4), ("name", ctypes.c_char_p),
                ("version", ctypes.c_char_p), ("buildDate", ctypes.c_char_p)]


_SCALAR = {"int32": ctypes.c_int32, "uint32": ctypes.c_uint32, "int64": ctypes.c_int64, "uint8": ctypes.c_uint8,
           "uint16": ctypes.c_uint16, "int16": ctypes.c_int16, "float": ctypes.c_float, "double": ctypes.c_double}
_RECORD = {"size": ZilSize, "sizel": ZilSizeL, "rect": ZilRect}
_ARRAY_ELEM = {"intarr": ctypes.c_int32, "floatarr": ctypes.c_float, "doublearr": ctypes.c_double}


def _candidates():
    env = os.environ.get("ZILCC_LIBRARY")
    if env:
        yield env
    here = os.path.dirname(os.path.abspath(__file__))
    yield os.path.join(here, LIBRARY_NAME)
    # The build tree (build/DIR/python/zilcc) and an installed prefix
    # (PREFIX/lib/pythonX.Y/site-packages/zilcc) both keep the library a few
    # folders up.
    d = here
    for _ in range(4):
        d = os.path.dirname(d)
        yield os.path.join(d, LIBRARY_NAME)
    yield LIBRARY_NAME  # the usual library search


def _load():
    errors = []
    for path in _candidates():
        if os.sep in path and not os.path.exists(path):
            continue
        try:
            return ctypes.CDLL(path), path
        except OSError as e:
            errors.append("%s: %s" % (path, e))
    raise ImportError("zilcc: cannot load %s (set ZILCC_LIBRARY to its path); tried: %s"
                      % (LIBRARY_NAME, "; ".join(errors) or "nothing found"))


_lib, LIBRARY_PATH = _load()


def _address(value, function, pname):
    if value is None:
        return None
    if isinstance(value, int):
        return value
    iface = getattr(value, "__array_interface__", None)
    if iface is not None:
        return iface["data"][0]
    if isinstance(value, ctypes.Array) or isinstance(value, ctypes.Structure):
        return ctypes.addressof(value)
    raise TypeError("%s: %s wants a numpy array, an address or None, not %s" % (function, pname, type(value).__name__))


def _row_stride(value, function, pname):
    strides = getattr(value, "strides", None)
    if not strides:
        raise ValueError("%s: %s is not given and cannot be taken from a non-array" % (function, pname))
    return strides[0]


class Function:
    """One export; call it with the header's arguments."""

    def __init__(self, name, signature):
        self.name = name
        self.restype, self.params = signature
        self._c = getattr(_lib, name)
        self._c.restype = ctypes.POINTER(ZilLibVersion) if self.restype == "version" else ctypes.c_int32
        argtypes = []
        for kind, _, count in self.params:
            if kind in _SCALAR:
                argtypes.append(_SCALAR[kind])
            elif kind in _RECORD:
                argtypes.append(_RECORD[kind])
            else:  # pointers, arrays of pointers, number arrays: passed by address
                argtypes.append(ctypes.c_void_p)
        self._c.argtypes = argtypes
        self.__doc__ = "%s(%s)" % (name, ", ".join(p[1] for p in self.params))

    def __repr__(self):
        return "<zilcc function %s>" % self.__doc__

    def __call__(self, *args, **kwargs):
        if len(args) > len(self.params):
            raise TypeError("%s takes %d arguments, %d given" % (self.name, len(self.params), len(args)))
        values = dict(zip((p[1] for p in self.params), args))
        for k, v in kwargs.items():
            if k not in (p[1] for p in self.params):
                raise TypeError("%s has no argument %r" % (self.name, k))
            values[k] = v
        keep = []  # ctypes arrays that must live until the call returns
        cargs = []
        for kind, pname, count in self.params:
            v = values.get(pname)
            if v is None and pname.endswith("Step") and pname[:-4] in values:
                owner = values[pname[:-4]]
                if kind == "intarr":
                    v = [_row_stride(p, self.name, pname) if p is not None else 0 for p in owner]
                elif isinstance(owner, (list, tuple)):
                    v = _row_stride(owner[0], self.name, pname)
                else:
                    v = _row_stride(owner, self.name, pname)
            if kind in _SCALAR:
                if v is None:
                    raise TypeError("%s: argument %r is missing" % (self.name, pname))
                cargs.append(v)
            elif kind in _RECORD:
                cargs.append(v if isinstance(v, _RECORD[kind]) else _RECORD[kind](*v))
            elif kind == "ptr":
                cargs.append(_address(v, self.name, pname))
            elif kind == "ptrarr":
                if v is None:
                    cargs.append(None)
                    continue
                if len(v) != count:
                    raise ValueError("%s: %s wants %d planes, %d given" % (self.name, pname, count, len(v)))
                arr = (ctypes.c_void_p * count)(*[_address(p, self.name, pname) for p in v])
                keep.append(arr)
                cargs.append(ctypes.addressof(arr))
            else:  # intarr, floatarr, doublearr
                if v is None:
                    cargs.append(None)
                    continue
                if hasattr(v, "__array_interface__"):
                    v = [x for x in v.reshape(-1)]
                if len(v) != count:
                    raise ValueError("%s: %s wants %d numbers, %d given" % (self.name, pname, count, len(v)))
                arr = (_ARRAY_ELEM[kind] * count)(*v)
                keep.append(arr)
                cargs.append(ctypes.addressof(arr))
        result = self._c(*cargs)  # ctypes releases the GIL for the call
        if self.restype == "version":
            return result.contents
        if result < 0:
            raise ZilError(self.name, result)
        if result > 0:
            warnings.warn(ZilWarning(self.name, result), stacklevel=2)
        return result


FUNCTIONS = {name: Function(name, sig) for name, sig in SIGNATURES.items()}


def has(name):
    """True if the loaded library exports `name`."""
    return name in FUNCTIONS
