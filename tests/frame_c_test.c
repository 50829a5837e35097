/* The public header used from strict C99: types, constants and a call. */
#include <string.h>

#include "zilcc.h"

int zil_c_smoke(void);

int zil_c_smoke(void) {
    const ZilLibVersion* v = zilccGetLibVersion();
    const uint8_t black[3] = {0, 0, 0};
    uint8_t out[3] = {1, 2, 3};
    ZilSize one = {1, 1};
    ZilStatus st;
    if (v != zilccGetLibVersion() || strcmp(v->targetCpu, "mx") != 0) return 1;
    st = ziliRGBToYUV_8u_C3R(black, 3, out, 3, one);
    if (st != zilStatusOk) return 2;
    if (out[0] != 0 || out[1] != 128 || out[2] != 128) return 3;
    st = ziliRGBToYUV_8u_C3R(black, 3, NULL, 3, one);
    if (st != zilStatusNullPointer) return 4;
    return 0;
}
