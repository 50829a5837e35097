#!/usr/bin/env bash
# zilcc gamma: stated table entries through 8- and 16-bit files, PNG round
# trip, and bad input (exit status, one message line, no file left behind).
Z=$1
W=$2
rm -rf "$W" && mkdir -p "$W" && cd "$W" || exit 1
source "$(dirname "$0")/lib.sh"
bytes() { tail -c "$1" "$2" | od -An -tu1 | tr -s ' ' | sed 's/^ //;s/ $//'; }

printf 'P5\n4 1\n255\n\x00\x01\x03\xff' > g8.pgm
"$Z" gamma g8.pgm f8.pgm || fail "gamma 8-bit exit status"
[ "$(bytes 4 f8.pgm)" = "0 4 14 255" ] || fail "forward 8-bit entries: $(bytes 4 f8.pgm)"
"$Z" gamma g8.pgm i8.pgm --inverse || fail "gamma --inverse exit status"
[ "$(bytes 4 i8.pgm)" = "0 0 1 255" ] || fail "inverse 8-bit entries: $(bytes 4 i8.pgm)"
printf 'P6\n1 1\n65535\n\x00\x29\x2e\xe9\xff\xff' > g16.ppm   # 41, 12009, 65535
"$Z" gamma g16.ppm f16.ppm && "$Z" gamma g16.ppm i16.ppm --inverse || fail "gamma 16-bit exit status"
[ "$(bytes 6 f16.ppm | cut -d' ' -f1,2,5,6)" = "0 184 255 255" ] || fail "forward 16-bit entries: $(bytes 6 f16.ppm)"
[ "$(bytes 6 i16.ppm | cut -d' ' -f3,4)" = "12 124" ] || fail "inverse 16-bit entry 12009 is not 3196: $(bytes 6 i16.ppm)"
"$Z" gamma g16.ppm f16.png && "$Z" gamma f16.png back.ppm --inverse || fail "PNG round trip"
[ -s back.ppm ] || fail "PNG round trip wrote nothing"

printf 'P6\n2 1\n255\n\x00' > short.ppm
"$Z" gamma short.ppm out.png 2> err.txt; rc=$?
[ $rc = 1 ] || fail "truncated input: exit $rc, not 1"
[ "$(wc -l < err.txt)" = 1 ] || fail "truncated input: not one message line"
[ ! -e out.png ] || fail "truncated input left out.png"
"$Z" gamma g8.pgm out.png --gamma 2.2 2> err.txt; rc=$?
[ $rc = 2 ] && [ ! -e out.png ] && [ "$(wc -l < err.txt)" = 1 ] || fail "unknown option: exit $rc"
"$Z" gamma g8.pgm 2> /dev/null; [ $? = 2 ] || fail "missing OUT: not exit 2"
exit $((fails > 0))
