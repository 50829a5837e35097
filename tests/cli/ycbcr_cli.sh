#!/usr/bin/env bash
# The gray colour space and studio-range YCbCr 4:4:4 of the zilcc tool, on tiny
# files whose results are worked out by hand.
# usage: ycbcr_cli.sh ZILCC WORKDIR
set -u
Z=$1
WORK=$2
rm -rf "$WORK" && mkdir -p "$WORK" && cd "$WORK" || exit 1

source "$(dirname "$0")/lib.sh"
# bad STATUS OUTFILE REGEX CMD...: exit STATUS, one stderr line matching REGEX, no OUTFILE.

{ printf 'P6\n3 1\n255\n'; raw 255 0 0 255 255 255 32 205 14; } > rgb.ppm
{ printf 'P6\n1 1\n65535\n'; raw 255 255 0 0 0 0; } > red16.ppm
{ printf 'P5\n2 1\n255\n'; raw 7 200; } > g.pgm

# Gray, 8-bit: (255 x 9798 + 16384) >> 15 = 76; white 255; (32 x 9798 + 205 x 19235 + 14 x 3736
# + 16384) >> 15 = 4325399 >> 15 = 132 + 23/32768 -> 132.
ok "$Z" convert rgb.ppm gray.pgm --to gray
same "gray 8-bit" "$(samples gray.pgm)" "76 255 132"
# 16-bit: 65535 x 0.299f + 0.5 = 19595.46 -> 19595 = 0x4C8B, stored big-endian.
ok "$Z" convert red16.ppm gray16.pgm --to gray
same "gray 16-bit" "$(samples gray16.pgm)" "76 139"
ok "$Z" convert g.pgm back.ppm --from gray
same "from gray" "$(samples back.ppm)" "7 7 7 200 200 200"
bad 1 x.ppm 'one-channel' "$Z" convert rgb.ppm x.ppm --from gray
bad 2 x.pgm 'matrix' "$Z" convert rgb.ppm x.pgm --to gray --matrix bt601

# Studio-range YCbCr: (255, 0, 0): Y = (255 x 16843 + 1081344) >> 16 = 82, Cb = (-9699 x 255 -
# 8355840) >> 16 = -166 -> 90, Cr = (28770 x 255 - 8355840) >> 16 = -16 -> 240; white 235, 128, 128;
# (32, 205, 14): 129, 70, 66. Planes Y, Cb, Cr.
ok "$Z" convert rgb.ppm s.yuv --to yuv444p --matrix bt601
same "to yuv444p bt601" "$(bytes s.yuv)" "82 235 129 90 128 70 240 128 66"
# Analog YUV: (255, 0, 0) is Y 76, U 90, V 255.
ok "$Z" convert rgb.ppm a.yuv --to yuv444p --matrix yuv
same "to yuv444p yuv" "$(bytes a.yuv | cut -d' ' -f1,4,7)" "76 90 255"
# Back: (138, 157, 154) -> (183, 109, 200) (76282 set, rounded); (16, 128, 128) -> black.
raw 138 16 157 128 154 128 > r.yuv
ok "$Z" convert r.yuv r.ppm --from yuv444p --matrix bt601 --size 2x1
same "from yuv444p bt601" "$(samples r.ppm)" "183 109 200 0 0 0"
bad 2 x.yuv 'no YUV444P form for --to' "$Z" convert rgb.ppm x.yuv --to yuv444p --matrix bt709
bad 1 x.ppm 'needs' "$Z" convert s.yuv x.ppm --from yuv444p --matrix bt601 --size 2x2

[[ $fails == 0 ]] || exit 1
