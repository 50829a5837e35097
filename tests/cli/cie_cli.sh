#!/usr/bin/env bash
# zilcc convert --to/--from xyz, luv, lab, ycc on tiny files with hand-worked
# samples; the depth rules and refusals; the demo section's pictures.
# usage: cie_cli.sh ZILCC WORKDIR
set -u
Z=$1
rm -rf "$2" && mkdir -p "$2" && cd "$2" || exit 1
source "$(dirname "$0")/lib.sh"
# The samples of a binary PNM or PFM written by the tool (a header of three lines).
samples() { tail -c +$(($(head -n 3 "$1" | wc -c) + 1)) "$1" | od -An -v -t"${2:-u1}" | tr -s ' \n' '  ' | sed 's/^ *//; s/ *$//'; }
run() { "$@" > out.txt 2> err.txt || fail "'$*' exited $?: $(cat err.txt)"; }
# refused REGEX CMD...: exit status 2, one stderr line matching REGEX.
refused() {
    local re=$1; shift
    "$@" > out.txt 2> err.txt
    local rc=$?
    [[ $rc == 2 ]] || fail "'$*' exited $rc, want 2"
    [[ $(wc -l < err.txt) == 1 ]] && grep -Eq -- "$re" err.txt || fail "'$*': stderr '$(cat err.txt)'"
}

printf 'P6\n2 1\n255\n\0\0\0\377\377\377' > bw.ppm           # black, white
# conv SPACE IN WANT [BACK]: --to SPACE gives WANT, --from SPACE of that gives BACK.
conv() {
    run "$Z" convert "$2" "$1.ppm" --to "$1"
    same "$1 of $2" "$(samples "$1.ppm")" "$3"
    [[ -z ${4:-} ]] && return
    run "$Z" convert "$1.ppm" back.ppm --from "$1"
    same "$1 back" "$(samples back.ppm)" "$4"
}
conv ycc bw.ppm "0 156 137 181 156 137" "0 0 0 245 245 245"  # the 8-bit gains lose white
conv lab bw.ppm "0 128 128 255 128 128" "1 1 1 255 255 255"  # no linear branch back
conv xyz bw.ppm "0 0 0 242 254 255"
printf 'P6\n1 1\n255\n\0\0\0' > k.ppm
conv luv k.ppm "0 97 136"

# 16-bit files take the 16u forms (PNM samples are big-endian): YCC of black
# is (0, 40092, 35209) = 0x0000 0x9C9C 0x8989.
printf 'P6\n1 1\n65535\n\0\0\0\0\0\0' > black16.ppm
run "$Z" convert black16.ppm ycc16.ppm --to ycc
same "16-bit ycc of black" "$(samples ycc16.ppm)" "0 0 156 156 137 137"
# ... and Lab has no 16-bit RGB form.
refused 'lab takes 8-bit PNG/PNM or PFM' "$Z" convert black16.ppm x.ppm --to lab

# PFM takes the 32f forms: white's Z is clamped to exactly 1 (0x3F800000).
printf 'PF\n1 1\n-1.0\n\0\0\200\77\0\0\200\77\0\0\200\77' > white.pfm
run "$Z" convert white.pfm xyz.pfm --to xyz
same "32f xyz of white, Z" "$(samples xyz.pfm x4 | cut -d' ' -f3)" "3f800000"
refused 'float image' "$Z" convert white.pfm x.png --to luv
printf 'P5\n1 1\n255\n\0' > grey.pgm
refused 'three-channel' "$Z" convert grey.pgm x.ppm --to xyz

# The demo section writes each space's channels side by side.
run "$Z" demo --out demo --size 32x16
for s in xyz luv lab ycc; do
    [[ -s demo/cie-$s.png ]] || fail "demo: no cie-$s.png"
done

exit $((fails > 0))
