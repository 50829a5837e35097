#!/usr/bin/env bash
# The --matrix of zilcc convert on the raw video layouts: BT.601 and BT.709
# video-range YCbCr on tiny files whose bytes are worked out by hand, odd
# extents, refusals.
# usage: sub_cli.sh ZILCC WORKDIR
set -u
Z=$1
WORK=$2
rm -rf "$WORK" && mkdir -p "$WORK" && cd "$WORK" || exit 1

source "$(dirname "$0")/lib.sh"
R="255 0 0" B="0 0 255"
{ printf 'P6\n3 3\n255\n'; raw $R $R $B $R $R $B $R $R $B; } > rrb.ppm
{ printf 'P6\n1 1\n255\n'; raw $R; } > r.ppm
{ printf 'P6\n2 1\n255\n'; raw $R $B; } > rb.ppm
{ printf 'P6\n3 1\n255\n'; raw $R $B $B; } > rbb.ppm

# BT.601, 4:2:0 planes at 3x3 (the default matrix): Y = (L + 1081344) >> 16, red L = 16843 x 255
# -> 82, blue 6423 x 255 -> 41. The last column and row are repeated into whole cells, so the
# right cells are all blue: Cb = (4 x 28770 x 255 - 33521664) >> 18 = -16 -> 240, Cr = (4 x -4653
# x 255 - 33521664) >> 18 = -146 -> 110; red cells Cb = -166 -> 90, Cr = -16 -> 240. Chroma 2x2.
ok "$Z" convert rrb.ppm rrb.i420 --to i420
same "i420 bt601 3x3" "$(bytes rrb.i420)" "82 82 41 82 82 41 82 82 41 90 240 90 240 240 110 240 110"
ok "$Z" convert rrb.ppm rrb601.i420 --to i420 --matrix bt601
cmp -s rrb.i420 rrb601.i420 || fail "the default matrix is not bt601"
# Back (76284 set, rounded): (82, 90, 240): R = (6255288 + 104595 x 112 - 1187776) >> 16 = 256
# -> 255, G = (6255288 + 25690 x 38 - 53281 x 112 - 1187776) >> 16 = 1, B = 44444 >> 16 = 0;
# (41, 240, 110) -> 0, 0, (3127644 + 132186 x 112 - 1187776) >> 16 = 255.
ok "$Z" convert rrb.i420 rrb.ppm --from i420 --size 3x3
same "i420 bt601 back" "$(samples rrb.ppm)" "$(for i in 1 2 3; do echo -n "255 1 0 255 1 0 0 0 255 "; done | sed 's/ $//')"
# Two planes at 1x1, float: Y = 0.257 x 255 + 16.5 = 82.0, Cb = (512 - 0.148 x 1020) x 0.25 + 0.5
# = 90.76 -> 90, Cr = (0.439 x 1020 + 512) x 0.25 + 0.5 = 240.4 -> 240.
ok "$Z" convert r.ppm r.nv12 --to nv12
same "nv12 bt601 1x1" "$(bytes r.nv12)" "82 90 240"
ok "$Z" convert r.nv12 r-nv12.ppm --from nv12 --size 1x1
same "nv12 bt601 back" "$(samples r-nv12.ppm)" "255 1 0"

# BT.709 (709CSC), red: Y = (11993 x 255 + 1081344) >> 16 = 63, Cb = (4 x -6619 x 255 - 33521664)
# >> 18 = -154 -> 102, Cr = 240. Back: R = (76284 x 63 + 117506 x 112 - 1187776) >> 16 = 256 ->
# 255, G = (4805892 + 13959 x 26 - 34996 x 112 - 1187776) >> 16 = 0, B = 14282 >> 16 = 0.
for f in i420 nv12; do
    ok "$Z" convert r.ppm r709.$f --to $f --matrix bt709
    same "$f bt709" "$(bytes r709.$f)" "63 102 240"
    ok "$Z" convert r709.$f r709-$f.ppm --from $f --size 1x1 --matrix bt709
    same "$f bt709 back" "$(samples r709-$f.ppm)" "255 0 0"
done
cp r709.i420 r709.yuv
ok "$Z" convert r709.yuv r709-444.ppm --from yuv444p --size 1x1 --matrix bt709
same "yuv444p bt709 back" "$(samples r709-444.ppm)" "255 0 0"

# Packed 4:2:2, red then blue: Y0 rounds 82, Y1 floors (1637865 + 1048576) >> 16 = 40; pair sums
# Cb = (-2473245 + 7336350 - 16711680) >> 17 = -91 -> 165, Cr = (7336350 - 1186515 - 16711680)
# >> 17 = -81 -> 175. UYVY holds the same samples as Cb Y0 Cr Y1.
ok "$Z" convert rb.ppm rb.yuy2 --to yuy2
same "yuy2 bt601" "$(bytes rb.yuy2)" "82 165 40 175"
ok "$Z" convert rb.ppm rb.uyvy --to uyvy
same "uyvy bt601" "$(bytes rb.uyvy)" "165 82 175 40"
# Back, u = 37, v = 47: (82) R = (6255288 + 104595 x 47 - 1187776) >> 16 = 152, G = 24, B = 151;
# (40) R = 103, G < 0 -> 0, B = 103. The UYVY reader's set (76282, ...) gives the same here.
for f in yuy2 uyvy; do
    ok "$Z" convert rb.$f rb-$f.ppm --from $f --size 2x1
    same "$f bt601 back" "$(samples rb-$f.ppm)" "152 24 151 103 0 103"
done
# Planar 4:2:2 of width 3: both lumas round (82, 41, 41), chroma + 128.125: the pair Cb =
# (4863105 - 16760832) >> 17 = -91 -> 165, Cr -81 -> 175; the last pixel doubled: 240, 110.
ok "$Z" convert rbb.ppm rbb.yuv --to yuv422p
same "yuv422p bt601" "$(bytes rbb.yuv)" "82 41 41 165 240 175 110"
# Back, floored on stored Cb, Cr: R = (76284 x 82 + 104595 x 175 - 14608761) >> 16 = 151,
# G = (6255288 - 25690 x 165 - 53281 x 175 + 8887730) >> 16 = 24, B = 151; (41, 165, 175):
# 104, 0, 103; the last column (41, 240, 110): 0, 0, 255 (not left black).
ok "$Z" convert rbb.yuv rbb-back.ppm --from yuv422p --size 3x1
same "yuv422p bt601 back" "$(samples rbb-back.ppm)" "151 24 151 104 0 103 0 0 255"

# Odd extents in bands give the bytes of one call.
{ printf 'P6\n5 5\n255\n'; for i in $(seq 75); do raw $((i * 37 % 256)); done; } > odd.ppm
for f in i420 nv12; do
    for m in bt601 bt709; do
        ok "$Z" convert odd.ppm whole.$f --to $f --matrix $m
        ok "$Z" convert odd.ppm band.$f --to $f --matrix $m --band-rows 2
        cmp -s whole.$f band.$f || fail "$f $m 5x5 in bands differs"
        same "$f 5x5 bytes" "$(wc -c < whole.$f)" "43"
        ok "$Z" convert whole.$f whole.ppm --from $f --size 5x5 --matrix $m
        ok "$Z" convert whole.$f band.ppm --from $f --size 5x5 --matrix $m --band-rows 2
        cmp -s whole.ppm band.ppm || fail "$f $m 5x5 back in bands differs"
    done
done

# Refusals: the layouts BT.709 has no form for, an unknown matrix (exit 2); a raw file of the
# wrong size names both numbers (exit 1); nothing is written.
for f in yuy2 uyvy yuv422p; do
    bad 2 x.$f "no ${f^^} form for --to" "$Z" convert rb.ppm x.$f --to $f --matrix bt709
    bad 2 x.ppm "no ${f^^} form for --from" "$Z" convert rb.yuy2 x.ppm --from $f --size 2x1 --matrix bt709
done
bad 2 x.yuv "no YUV444P form for --to" "$Z" convert r.ppm x.yuv --to yuv444p --matrix bt709
bad 2 x.yuv "--matrix takes bt601, bt709 or yuv, not 'bt2020'" "$Z" convert r.ppm x.yuv --to i420 --matrix bt2020
bad 1 x.ppm "rrb.i420 has 17 bytes, but I420 at 3x4 needs 20" "$Z" convert rrb.i420 x.ppm --from i420 --size 3x4
bad 1 x.ppm "rrb.i420 has more than 12 bytes, but NV12 at 4x2 needs 12" "$Z" convert rrb.i420 x.ppm --from nv12 --size 4x2
bad 1 x.yuv "I420 needs an even width and height" "$Z" convert rrb.ppm x.yuv --to i420 --matrix yuv

[[ $fails == 0 ]] || exit 1
