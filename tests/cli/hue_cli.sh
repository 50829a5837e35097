#!/usr/bin/env bash
# zilcc convert --to/--from hls, hsv and ycocg on tiny files whose results are
# worked out by hand, and the refusals of depths a space does not take.
# usage: hue_cli.sh ZILCC WORKDIR
set -u
Z=$1
WORK=$2
rm -rf "$WORK" && mkdir -p "$WORK" && cd "$WORK" || exit 1

source "$(dirname "$0")/lib.sh"
# Samples after a header of $2 lines.
body() { tail -c +$(($(head -n "$2" "$1" | wc -c) + 1)) "$1" > "$1.body"; bytes "$1.body"; }
run() { "$@" > out.txt 2> err.txt || fail "'$*' exited $?: $(cat err.txt)"; }
ppm8() { local w=$1 h=$2; shift 2; { printf 'P6\n%d %d\n255\n' "$w" "$h"; raw "$@"; }; }

# (200, 100, 51): HSV V 200, S 149/200 x 255 = 189.98, H 49/149 x 255/6 = 13.98.
# (17, 99, 230): V 230, S 213/230 x 255 = 236.15, blue sector
# (131/213 + 4 - 1) x 255/6 = 153.64.
# HLS: (200, 100, 51) L 125.5, S 149/251 x 255 = 151.37; (17, 99, 230) L 123.5,
# S 213/247 x 255 = 219.90, H (240 - 82 x 60/213) x 255/360 = 153.64.
ppm8 2 1 200 100 51 17 99 230 > in.ppm
run "$Z" convert in.ppm hsv.ppm --to hsv
same "to hsv" "$(body hsv.ppm 3)" "14 190 200 154 236 230"
run "$Z" convert in.ppm hls.ppm --to hls
same "to hls" "$(body hls.ppm 3)" "14 126 151 154 124 220"
# HSV (14, 190, 200): sector 0, t = (1 - 0.7451 x 0.6706) x 200 = 100.07, p = 50.98.
ppm8 1 1 14 190 200 > h.ppm
run "$Z" convert h.ppm back.ppm --from hsv
same "from hsv" "$(body back.ppm 3)" "200 100 51"

# YCoCg, chroma + 128: (255, 0, 0) -> Y 64, Co 256 limited to 255, Cg 64;
# back R = 64 + 255 - 64, G = 64 + 64 - 128, B = 64 - 255 - 64 + 256.
ppm8 1 1 255 0 0 > red.ppm
run "$Z" convert red.ppm y.ppm --to ycocg
same "to ycocg" "$(body y.ppm 3)" "64 255 64"
run "$Z" convert y.ppm yback.ppm --from ycocg
same "from ycocg" "$(body yback.ppm 3)" "255 0 1"

# 16-bit grey 1000 is RGB (1000, 1000, 1000): HSV (0, 0, 1000), big-endian.
{ printf 'P5\n1 1\n65535\n'; raw 3 232; } > g16.pgm
run "$Z" convert g16.pgm g16.ppm --to hsv
same "16-bit grey to hsv" "$(body g16.ppm 3)" "0 0 0 0 3 232"

# Float RGB (1, 0, 0) to HLS: H 0, L 0.5, S 1.
{ printf 'PF\n1 1\n-1.0\n'; raw 0 0 128 63 0 0 0 0 0 0 0 0; } > red.pfm
run "$Z" convert red.pfm red-hls.pfm --to hls
same "float to hls" "$(body red-hls.pfm 3)" "0 0 0 0 0 0 0 63 0 0 128 63"

# Depths a space does not take: exit 1, one line, no output file.
refuse() {
    local out=$1; shift
    "$@" > out.txt 2> err.txt
    local rc=$?
    [[ $rc == 1 ]] || fail "'$*' exited $rc, want 1"
    [[ $(wc -l < err.txt) == 1 ]] || fail "'$*' stderr: $(cat err.txt)"
    [[ ! -e $out ]] || fail "'$*' left $out"
}
refuse no1.ppm "$Z" convert g16.pgm no1.ppm --to ycocg
refuse no2.pfm "$Z" convert red.pfm no2.pfm --to hsv
refuse no3.pfm "$Z" convert red.pfm no3.pfm --from ycocg

exit $((fails > 0))
