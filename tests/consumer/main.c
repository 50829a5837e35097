/* A user program built against the installed tree. */
#include <stdio.h>
#include <string.h>
#include <zilcc.h>

int main(void) {
    const ZilLibVersion* v = zilccGetLibVersion();
    const uint8_t white[3] = {255, 255, 255};
    uint8_t yuv[3] = {0, 0, 0};
    ZilSize one = {1, 1};
    if (v == NULL || v->major != 2017 || strcmp(v->targetCpu, "mx") != 0) return 1;
    if (ziliRGBToYUV_8u_C3R(white, 3, yuv, 3, one) != zilStatusOk) return 2;
    if (yuv[0] != 255 || yuv[1] != 128 || yuv[2] != 128) return 3;
    printf("%s %s\n", v->name, v->version);
    return 0;
}
