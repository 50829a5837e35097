#!/usr/bin/env bash
# zilcc twist and zilcc tonemap on tiny files worked out by hand, and their
# bad input. usage: twist_cli.sh ZILCC WORKDIR
set -u
Z=$1
rm -rf "$2" && mkdir -p "$2" && cd "$2" || exit 1
source "$(dirname "$0")/lib.sh"
# bad STATUS OUTFILE CMD...: exit STATUS, one line on stderr, no OUTFILE left.
bad() {
    local want=$1 out=$2
    shift 2
    "$@" > out.txt 2> err.txt
    local rc=$?
    [[ $rc == "$want" ]] || fail "'$*' exited $rc, want $want ($(cat err.txt))"
    [[ $(wc -l < err.txt) == 1 ]] || fail "'$*' stderr is not one line: $(cat err.txt)"
    [[ ! -e $out ]] || fail "'$*' left $out behind"
}

# Red and blue swapped, 0.5 added to the new blue: 10.5 and 200.5 round to even.
printf 'P6\n2 1\n255\n\012\024\036\310\144\062' > rgb.ppm
ok "$Z" twist rgb.ppm swap.ppm --matrix "0 0 1 0; 0 1 0 0; 1 0 0 0.5"
[[ $(samples swap.ppm) == "30 20 10 50 100 200" ]] || fail "twist: got [$(samples swap.ppm)]"

# A grey float image 1.0, 2.0 (little-endian PFM): linear k = 127.5 gives 127
# 255; mean 1.5, k = 85 gives 85 170.
printf 'Pf\n2 1\n-1.0\n\000\000\200\077\000\000\000\100' > hdr.pfm
ok "$Z" tonemap hdr.pfm lin.pgm --method linear
[[ $(samples lin.pgm) == "127 255" ]] || fail "tonemap linear: got [$(samples lin.pgm)]"
ok "$Z" tonemap hdr.pfm mean.pgm --method mean
[[ $(samples mean.pgm) == "85 170" ]] || fail "tonemap mean: got [$(samples mean.pgm)]"

# Bad input.
printf 'Pf\n2 1\n-1.0\n\000\000' > short.pfm
bad 1 t1.png "$Z" tonemap short.pfm t1.png --method linear
printf 'Pf\n2 1\n-1.0\n\000\000\200\277\000\000\000\300' > neg.pfm  # -1, -2
bad 1 t2.png "$Z" tonemap neg.pfm t2.png --method mean
bad 1 t3.png "$Z" tonemap rgb.ppm t3.png --method linear
bad 2 t4.png "$Z" tonemap hdr.pfm t4.png --method median
bad 2 t5.ppm "$Z" twist rgb.ppm t5.ppm --matrix "0 0 1 0; 0 1 0 0; 1 0 0"
bad 2 t6.ppm "$Z" twist rgb.ppm t6.ppm --matrix "0 0 1 0; 0 1 0 0; 1 0 0 0; 1 1 1 1"
bad 2 t7.ppm "$Z" twist rgb.ppm t7.ppm --matrix "0 0 1 0; 0 inf 0 0; 1 0 0 0"
bad 2 t8.ppm "$Z" twist rgb.ppm t8.ppm --matrix "0 0 1 0; 0 1 0 0; 1 0 0 1e39"
bad 2 t9.ppm "$Z" twist rgb.ppm t9.ppm --matrix "0 0 1 0; 0 1 0 0; 1 0 0 x"
[[ $fails == 0 ]]
