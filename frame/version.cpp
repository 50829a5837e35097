// The version record. Its texts are in read-only data; the record holds their
// addresses, so it is relocated at load and then lies in read-only memory.
#include "zil_common.h"

#define ZIL_VER_MAJOR 2017
#define ZIL_VER_MINOR 0
#define ZIL_VER_MAJOR_BUILD 3
#define ZIL_VER_BUILD 55431
#define ZIL_STR2(x) #x
#define ZIL_STR(x) ZIL_STR2(x)

extern "C" ZIL_HIDDEN const ZilLibVersion zilVersionRecord;
const ZilLibVersion zilVersionRecord = {
    ZIL_VER_MAJOR, ZIL_VER_MINOR, ZIL_VER_MAJOR_BUILD, ZIL_VER_BUILD,
    {'m', 'x', 0, 0},
    "zilCC PX (mx)",
    ZIL_STR(ZIL_VER_MAJOR) "." ZIL_STR(ZIL_VER_MINOR) "." ZIL_STR(ZIL_VER_MAJOR_BUILD) " (r" ZIL_STR(ZIL_VER_BUILD) ")",
    "Apr 12 2017",
};

ZIL_IMPL const ZilLibVersion* mx_zilccGetLibVersion(void) { return ZIL_GOT_ADDRESS(const ZilLibVersion, zilVersionRecord); }
