#!/usr/bin/env bash
# zilcc convert between raw YUV layouts: bytes worked out by hand, which call
# --verbose names, and refusals.
# usage: reformat_cli.sh ZILCC WORKDIR
set -u
Z=$1
rm -rf "$2" && mkdir -p "$2" && cd "$2" || exit 1
source "$(dirname "$0")/lib.sh"
conv() {  # FROM TO IN OUT [more]: must succeed; stderr kept in err.txt
    local f=$1 t=$2 i=$3 o=$4
    shift 4
    "$Z" convert "$i" "$o" --from "$f" --to "$t" "$@" > /dev/null 2> err.txt || fail "$f -> $t exited $?: $(cat err.txt)"
}

# 4x2 I420: Y 0..7, U 100 101, V 200 201.
raw 0 1 2 3 4 5 6 7 100 101 200 201 > a.i420
conv i420 nv12 a.i420 a.nv12 --size 4x2 --verbose
same "i420 -> nv12" "$(bytes a.nv12)" "0 1 2 3 4 5 6 7 100 200 101 201"
grep -q "by ziliYCbCr420_8u_P3P2R" err.txt || fail "i420 -> nv12 does not name its call: $(cat err.txt)"
conv i420 nv21 a.i420 a.nv21 --size 4x2
same "i420 -> nv21" "$(bytes a.nv21)" "0 1 2 3 4 5 6 7 200 100 201 101"
conv nv21 yv12 a.nv21 a.yv12 --size 4x2
same "nv21 -> yv12" "$(bytes a.yv12)" "0 1 2 3 4 5 6 7 200 201 100 101"
# 4:2:0 to packed 4:2:2 repeats the chroma row; back keeps the even rows.
conv i420 yuy2 a.i420 a.yuy2 --size 4x2 --verbose
same "i420 -> yuy2" "$(bytes a.yuy2)" "0 100 1 200 2 101 3 201 4 100 5 200 6 101 7 201"
grep -q "through RGB" err.txt && fail "i420 -> yuy2 went through RGB"
conv yuy2 uyvy a.yuy2 a.uyvy --size 4x2
same "yuy2 -> uyvy" "$(bytes a.uyvy)" "100 0 200 1 101 2 201 3 100 4 200 5 101 6 201 7"
raw 0 9 1 9 2 9 3 9 4 8 5 8 6 8 7 8 > b.yuy2
conv yuy2 nv12 b.yuy2 b.nv12 --size 4x2 --verbose
same "yuy2 -> nv12 drops row 1" "$(bytes b.nv12)" "0 1 2 3 4 5 6 7 9 9 9 9"
grep -q "ziliYCbCr422ToYCbCr420_8u_C2P2R" err.txt || fail "yuy2 -> nv12: $(cat err.txt)"
# No call reaches 4:4:4: through RGB, said so.
conv nv21 yuv444p a.nv21 a.444 --size 4x2 --verbose
grep -q "through RGB" err.txt || fail "nv21 -> yuv444p does not say it went through RGB: $(cat err.txt)"
[[ $(stat -c %s a.444) == 24 ]] || fail "nv21 -> yuv444p wrote $(stat -c %s a.444) bytes, want 24"

# Refusals: a short input, an odd 4:2:0 extent, an unknown layout; no output left behind.
for args in "a.i420 x.nv12 --from i420 --to nv12 --size 4x4" "a.i420 x.nv12 --from i420 --to nv12 --size 3x2" \
    "a.i420 x.nv12 --from i421 --to nv12 --size 4x2" "a.i420 x.nv12 --from i420 --to nv12"; do
    # shellcheck disable=SC2086
    "$Z" convert $args > /dev/null 2> err.txt && fail "'$args' succeeded"
    [[ -e x.nv12 ]] && fail "'$args' left x.nv12 behind"
    [[ $(wc -l < err.txt) == 1 ]] || fail "'$args': want one line on stderr, got: $(cat err.txt)"
done
exit $((fails > 0))
