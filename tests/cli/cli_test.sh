#!/usr/bin/env bash
# Runs the zilcc tool on tiny files whose results are worked out by hand.
# usage: cli_test.sh ZILCC WORKDIR GROUP EXPORTS_FILE "FAMILIES"
#   GROUP: basics | convert | demosaic | dither | bad_input | demo | outputs | pipes |
#          ranges | ahd_sizes
#   FAMILIES: the optional families in this build (cfa ahd reduce reduce1u)
set -u
Z=$1
WORK=$2
GROUP=$3
EXPORTS=$4
FAMILIES=" ${5:-} "
rm -rf "$WORK" && mkdir -p "$WORK" && cd "$WORK" || exit 1

source "$(dirname "$0")/lib.sh"
have() { [[ $FAMILIES == *" $1 "* ]]; }
# The packed rows of a P4 bitmap written by the tool (a header of two lines).
pbm_bits() { tail -c +$(($(head -n 2 "$1" | wc -c) + 1)) "$1" > "$1.bits"; bytes "$1.bits"; }

pgm8() { local w=$1 h=$2; shift 2; { printf 'P5\n%d %d\n255\n' "$w" "$h"; raw "$@"; }; }
ppm8() { local w=$1 h=$2; shift 2; { printf 'P6\n%d %d\n255\n' "$w" "$h"; raw "$@"; }; }
# 16-bit PGM from sample values (written big-endian).
pgm16() {
    local w=$1 h=$2 v
    shift 2
    printf 'P5\n%d %d\n65535\n' "$w" "$h"
    for v in "$@"; do raw $((v >> 8)) $((v & 255)); done
}
flat() { local n=$1 v=$2 i; for ((i = 0; i < n; i++)); do printf '%s ' "$v"; done; }

case $GROUP in
basics)
    ok "$Z" version
    same "version line" "$(head -n 1 out.txt)" "zilCC PX (mx) 2017.0.3 (r55431)"
    grep -q "build date  Apr 12 2017" out.txt || fail "version: no build date line"
    # list reads the names from the library's symbol table: the same set as the export list.
    ok "$Z" list
    sort out.txt > listed.txt
    grep -Ev '^[[:space:]]*(#|$)' "$EXPORTS" | tr -d ' \t' | sort > expected.txt
    cmp -s listed.txt expected.txt || fail "list differs from the export list: $(diff listed.txt expected.txt | head -5)"
    ok "$Z" list YUV420ToRGB
    same "list filter" "$(wc -l < out.txt)" "5"
    for c in demo demosaic convert dither version list; do
        ok "$Z" "$c" --help
        grep -q "^usage: zilcc $c" out.txt || fail "$c --help prints no usage line"
    done
    ok "$Z" --help
    grep -q "^usage: zilcc COMMAND" out.txt || fail "--help prints no usage"
    ;;

convert)
    # Red, white, black, mid grey. Forward: S = 19595 R + 38470 G + 7471 B;
    # red: Y = (4996725 + 32768) >> 16 = 76, U = ((-4963958 >> 16) * 32244 >> 16) + 128
    # = 90, V = 179 * 57475 >> 16 = 156, + 128 clamps to 255.
    ppm8 4 1 255 0 0 255 255 255 0 0 0 128 128 128 > in.ppm
    ok "$Z" convert in.ppm out.yuv --to yuv444p --matrix yuv
    same "yuv444p" "$(bytes out.yuv)" "76 255 0 128 90 128 128 128 255 128 128 128"
    # Back through the planar 4:4:4 member (74710 set, R and B rounded, G floored):
    # R = (4980736 + 74710*127 + 32768) >> 16 = 221, G = (4980736 + 25820*38 - 38075*127) >> 16 = 17,
    # B = (4980736 - 133168*38 + 32768) >> 16 = -1, clamped to 0.
    ok "$Z" convert out.yuv back.ppm --from yuv444p --size 4x1 --matrix yuv
    same "yuv444p back" "$(samples back.ppm)" "221 17 0 255 255 255 0 0 0 128 128 128"
    # The same through a PNG: the tool's PNG reader and writer keep every byte.
    ok "$Z" convert out.yuv back.png --from YUV444P --size 4x1 --matrix yuv
    ok "$Z" convert back.png again.yuv --to yuv444p --matrix yuv
    ok "$Z" convert back.ppm again2.yuv --to yuv444p --matrix yuv
    cmp -s again.yuv again2.yuv || fail "PNG and PPM inputs give different YUV"

    # Packed 4:2:2, red then white: chroma of the pair with c = 32768 and shift 17:
    # du = (16711680 - 21708405 + 32768) >> 16 = -76, U = (-76*32244 >> 17) + 128 = 109;
    # dv = (33423360 - 21708405 + 32768) >> 16 = 179, V = (179*57475 >> 17) + 128 = 206.
    ppm8 2 1 255 0 0 255 255 255 > rw.ppm
    ok "$Z" convert rw.ppm rw.yuy2 --to yuy2 --matrix yuv
    same "yuy2" "$(bytes rw.yuy2)" "76 109 255 206"
    ok "$Z" convert rw.ppm rw.uyvy --to uyvy --matrix yuv
    same "uyvy" "$(bytes rw.uyvy)" "109 76 206 255"
    # Back, all channels rounded, u = -19, v = 78: pixel 0 R = (4980736 + 74711*78 + 32768) >> 16
    # = 165, G = (4980736 + 25821*19 - 38076*78 + 32768) >> 16 = 38, B = (4980736 - 133169*19
    # + 32768) >> 16 = 37; pixel 1 likewise 344 (clamped to 255), 217, 216.
    for f in yuy2 uyvy; do
        ok "$Z" convert rw.$f rw-$f.ppm --from $f --size 2x1 --matrix yuv
        same "$f back" "$(samples rw-$f.ppm)" "165 38 37 255 217 216"
    done

    # Planar 4:2:2 of odd width: the pair as above but with c = 65535 (same U 109,
    # V 206); the last pixel alone (black) gives U = V = 128.
    ppm8 3 1 255 0 0 255 255 255 0 0 0 > odd.ppm
    ok "$Z" convert odd.ppm odd.yuv --to yuv422p --matrix yuv
    same "yuv422p" "$(bytes odd.yuv)" "76 255 0 109 128 206 128"
    # Back: pairs R, B rounded and G floored: (165, 38, 37), (255, 217, 216); last column black.
    ok "$Z" convert odd.yuv odd-back.ppm --from yuv422p --size 3x1 --matrix yuv
    same "yuv422p back" "$(samples odd-back.ppm)" "165 38 37 255 217 216 0 0 0"

    # 4:2:0, a red and a white 2x2 block. Red block: du = (-19986900 + 131071) >> 16 = -303,
    # U = (-303*32244 >> 18) + 128 = 90; dv = 717, V = (717*57475 >> 18) + 128 = 285 -> 255.
    ppm8 4 2 255 0 0 255 0 0 255 255 255 255 255 255 255 0 0 255 0 0 255 255 255 255 255 255 > blocks.ppm
    ok "$Z" convert blocks.ppm blocks.i420 --to i420 --matrix yuv
    same "i420" "$(bytes blocks.i420)" "76 76 255 255 76 76 255 255 90 128 255 128"
    ok "$Z" convert blocks.ppm blocks.nv12 --to nv12 --matrix yuv
    same "nv12" "$(bytes blocks.nv12)" "76 76 255 255 76 76 255 255 90 255 128 128"
    # Back (74711 set): R = (4980736 + 74711*127 + 32768) >> 16 = 221, G = (4980736 + 25821*38
    # - 38076*127) >> 16 = 17, B = -1 -> 0.
    for f in i420 nv12; do
        ok "$Z" convert blocks.$f blocks-$f.ppm --from $f --size 4x2 --matrix yuv
        same "$f back" "$(samples blocks-$f.ppm)" \
            "221 17 0 221 17 0 255 255 255 255 255 255 221 17 0 221 17 0 255 255 255 255 255 255"
    done
    # A grey PGM goes in as R = G = B.
    pgm8 2 1 0 200 > grey.pgm
    ok "$Z" convert grey.pgm grey.yuv --to yuv444p --matrix yuv
    same "grey in" "$(bytes grey.yuv)" "0 200 128 128 128 128"
    # Bands of two rows give the bytes of one call.
    ok "$Z" demo --out scene --size 64x48
    for m in yuv bt601; do
        ok "$Z" convert scene/scene.png whole.i420 --to i420 --matrix $m
        ok "$Z" convert scene/scene.png band.i420 --to i420 --band-rows 2 --matrix $m
        cmp -s whole.i420 band.i420 || fail "i420 $m in bands of 2 rows differs"
        ok "$Z" convert whole.i420 whole.png --from i420 --size 64x48 --matrix $m
        ok "$Z" convert whole.i420 band.png --from i420 --size 64x48 --band-rows 4 --matrix $m
        cmp -s whole.png band.png || fail "i420 $m to RGB in bands of 4 rows differs"
    done
    ;;

demosaic)
    pgm8 8 6 $(flat 48 100) > flat8.pgm
    pgm16 8 6 $(flat 48 1000) > flat16.pgm
    if ! have cfa; then
        bad 1 o.ppm "gradient demosaicing method is not available" "$Z" demosaic flat8.pgm o.ppm --pattern rggb --method gradient
    fi
    if ! have ahd; then
        bad 1 o.ppm "AHD demosaicing method is not available" "$Z" demosaic flat8.pgm o.ppm --pattern rggb --method ahd
    fi
    for m in gradient ahd; do
        if [[ $m == gradient ]] && ! have cfa; then continue; fi
        if [[ $m == ahd ]] && ! have ahd; then continue; fi
        # A flat mosaic gives a flat image: every mean reproduces the value.
        for p in rggb bggr grbg gbrg; do
            ok "$Z" demosaic flat8.pgm f8.ppm --pattern $p --method $m
            same "$m $p flat 8-bit" "$(samples f8.ppm)" "$(flat 144 100 | sed 's/ $//')"
        done
        ok "$Z" demosaic flat16.pgm f16.ppm --pattern grbg --method $m
        # 1000 is 3 * 256 + 232, big-endian in the PPM.
        same "$m flat 16-bit" "$(samples f16.ppm)" "$(for i in $(seq 144); do printf '3 232 '; done | sed 's/ $//')"
        ok "$Z" demosaic flat16.pgm f16.png --pattern grbg --method $m
        [[ $(head -c 8 f16.png | od -An -tx1 | tr -d ' \n') == 89504e470d0a1a0a ]] || fail "$m: no PNG signature"
        # Bands of any height give the same pixels as one call over the image.
        ok "$Z" demo --out scene --size 64x48
        ok "$Z" demosaic scene/mosaic-rggb.png whole.ppm --pattern rggb --method $m
        for b in 1 2 7; do
            ok "$Z" demosaic scene/mosaic-rggb.png band.ppm --pattern rggb --method $m --band-rows $b
            cmp -s whole.ppm band.ppm || fail "$m in bands of $b rows differs from one call"
        done
        # A region (odd origin) holds the same pixels as that part of the whole image.
        ok "$Z" demosaic scene/mosaic-rggb.png rect.ppm --pattern rggb --method $m --rect 5,7,20,9
        for r in 0 4 8; do
            want=$(tail -c +$(($(head -n 3 whole.ppm | wc -c) + 1 + ((7 + r) * 64 + 5) * 3)) whole.ppm | head -c 60 | od -An -v -tu1)
            got=$(tail -c +$(($(head -n 3 rect.ppm | wc -c) + 1 + r * 20 * 3)) rect.ppm | head -c 60 | od -An -v -tu1)
            [[ $want == "$got" ]] || fail "$m: row $r of --rect 5,7,20,9 differs from the whole image"
        done
        # A region reaching past the image is cut to it.
        ok "$Z" demosaic scene/mosaic-rggb.png cut.ppm --pattern rggb --method $m --rect 60,40,100,100
        same "$m cut rect" "$(head -n 2 cut.ppm | tail -n 1)" "4 8"
    done
    if have cfa; then
        # Sizes the library refuses come back by the status's name.
        pgm8 1 4 1 2 3 4 > thin.pgm
        bad 1 o.ppm "ziliCFAToRGB_8u_C1C3R returned zilStatusBadSize" "$Z" demosaic thin.pgm o.ppm --pattern rggb --method gradient
    fi
    if have ahd; then
        pgm8 4 4 $(flat 16 9) > small.pgm
        bad 1 o.ppm "ziliDemosaicAHD_8u_C1C3R returned zilStatusBadSize" "$Z" demosaic small.pgm o.ppm --pattern rggb --method ahd
    fi
    ;;

dither)
    pgm8 6 1 0 63 64 191 192 255 > ramp.pgm
    pgm8 10 1 0 50 100 127 128 200 255 127 128 0 > bits.pgm
    if ! have reduce; then
        bad 1 o.pgm "bit-depth reduction is not available" "$Z" dither ramp.pgm o.pgm --levels 3 --method none
    else
        # Three levels: index trunc(2 * s/255 + 0.5), level q/2 stored as trunc(q*255 + 0.5):
        # 63 -> 0.994 -> 0; 64 -> 1.002 -> 128; 191 -> 1.998 -> 128; 192 -> 2.006 -> 255.
        ok "$Z" dither ramp.pgm l3.pgm --levels 3 --method none
        same "3 levels" "$(samples l3.pgm)" "0 0 128 128 255 255"
        # 256 levels of 8-bit input change nothing.
        ok "$Z" dither bits.pgm same.pgm --levels 256 --method none
        same "256 levels" "$(samples same.pgm)" "0 50 100 127 128 200 255 127 128 0"
        # 16-bit to 8-bit, two levels: index trunc(s/65535) is 0, and the level moves up
        # when s/65535 - 0 exceeds one half: 32767 -> 0, 32768 -> 255.
        pgm16 4 1 0 32767 32768 65535 > wide.pgm
        ok "$Z" dither wide.pgm w8.pgm --levels 2 --method none
        same "16u8u" "$(samples w8.pgm)" "0 0 255 255"
        # Every method, with and without noise: only the two levels appear, and the size is kept.
        ok "$Z" demo --out scene --size 64x48
        for m in none fs jjn stucki bayer; do
            for n in 0 40; do
                [[ $m == none && $n != 0 ]] && continue
                ok "$Z" dither scene/scene.png d.ppm --levels 2 --method $m $([[ $m != none ]] && echo --noise $n)
                same "$m noise $n size" "$(head -n 2 d.ppm | tail -n 1)" "64 48"
                same "$m noise $n levels" "$(samples d.ppm | tr ' ' '\n' | grep -Evc '^(0|255)$')" "0"
            done
        done
        # N levels are round(k * 255 / (N - 1)) for every method, and white stays white
        # (the library's 8-bit pair would give 35 or 0 for white at some cells under
        # bayer). 8 levels: 255 k / 7 = 36.4, 72.9, 109.3, 145.7, 182.1, 218.6.
        pgm8 256 4 $(for y in 1 2 3 4; do seq 0 255; done) > ramp256.pgm
        pgm8 16 16 $(flat 256 255) > white.pgm
        for m in none fs jjn stucki bayer; do
            ok "$Z" dither ramp256.pgm r8.pgm --levels 8 --method $m
            same "$m 8 levels" "$(samples r8.pgm | tr ' ' '\n' | sort -nu | tr '\n' ' ')" "0 36 73 109 146 182 219 255 "
            for n in 8 124 230; do
                ok "$Z" dither white.pgm w.pgm --levels $n --method $m
                same "$m white at $n levels" "$(samples w.pgm | tr ' ' '\n' | sort -u)" "255"
            done
        done
        ok "$Z" dither white.pgm wn.pgm --levels 8 --method bayer --noise 100
        same "bayer noise 100 white" "$(samples wn.pgm | tr ' ' '\n' | sort -u)" "255"
        # Plain and ordered dither run in bands; bands give the pixels of one call.
        for m in none bayer; do
            ok "$Z" dither scene/scene.png whole.ppm --levels 4 --method $m
            ok "$Z" dither scene/scene.png band.ppm --levels 4 --method $m --band-rows 3
            cmp -s whole.ppm band.ppm || fail "$m in bands differs from one call"
        done
    fi
    if ! have reduce1u; then
        bad 1 o.pbm "one-bit reduction is not available" "$Z" dither bits.pgm o.pbm --bits 1 --method threshold
    else
        # Threshold 127: bits 0000 1110 10, so bytes 0x0E 0x80; a PBM's 1 is black, so the
        # file holds their complements 0xF1 and 0x7F cut to the row's 10 bits: 0x40.
        ok "$Z" dither bits.pgm t.pbm --bits 1 --method threshold
        same "pbm header" "$(head -n 2 t.pbm | tr '\n' ' ')" "P4 10 1 "
        same "pbm bits" "$(pbm_bits t.pbm)" "241 64"
        # Stucki diffusion of flat 128 at threshold 127: the first pixel is set and leaves
        # an error of 1024 - 2047, so the row cannot stay all set as it does when plain.
        pgm8 32 8 $(flat 256 128) > mid.pgm
        ok "$Z" dither mid.pgm plain.pbm --bits 1 --method threshold
        ok "$Z" dither mid.pgm st.pbm --bits 1 --method stucki
        same "plain mid" "$(pbm_bits plain.pbm | tr ' ' '\n' | sort -u | tr '\n' ' ')" "0 "
        black=$(pbm_bits st.pbm | tr ' ' '\n' | grep -vc '^0$')
        [[ $black -gt 0 ]] || fail "stucki one-bit output has no black pixel"
        ok "$Z" dither mid.pgm st.png --bits 1 --method stucki
        bad 1 o.pbm "8-bit grey" "$Z" dither scene/scene.png o.pbm --bits 1 --method stucki
    fi
    bad 2 o.pbm "--bits takes only 1" "$Z" dither bits.pgm o.pbm --bits 2 --method stucki
    bad 2 o.pgm "--method wants none\|fs\|jjn\|stucki\|bayer" "$Z" dither bits.pgm o.pgm --levels 4 --method floyd
    ;;

bad_input)
    ppm8 2 2 $(flat 12 7) > ok.ppm
    pgm8 4 4 $(flat 16 7) > ok.pgm
    # The command line.
    bad 2 "" "unknown command 'frobnicate'" "$Z" frobnicate
    bad 2 "" "missing command" "$Z"
    bad 2 o.yuv "unknown option '--colour'" "$Z" convert ok.ppm o.yuv --to i420 --colour
    bad 2 o.yuv "unknown option '-x'" "$Z" convert ok.ppm o.yuv --to i420 -x
    bad 2 "" "missing OUT argument" "$Z" convert ok.ppm --to i420
    bad 2 "" "missing IN argument" "$Z" demosaic --pattern rggb --method ahd
    bad 2 o.png "unexpected argument 'extra'" "$Z" demosaic ok.pgm o.png extra --pattern rggb --method ahd
    bad 2 o.png "option --pattern needs a value" "$Z" demosaic ok.pgm o.png --method ahd --pattern
    bad 2 o.png "missing option --pattern" "$Z" demosaic ok.pgm o.png --method ahd
    bad 2 o.png "missing option --method" "$Z" demosaic ok.pgm o.png --pattern rggb
    bad 2 o.png "--pattern wants bggr\|rggb\|gbrg\|grbg, not 'rgbg'" "$Z" demosaic ok.pgm o.png --pattern rgbg --method ahd
    bad 2 o.png "--method wants gradient\|ahd" "$Z" demosaic ok.pgm o.png --pattern rggb --method vng
    bad 2 o.png "--rect wants x,y,w,h" "$Z" demosaic ok.pgm o.png --pattern rggb --method ahd --rect 1,2,3
    bad 2 o.png "--rect wants x,y,w,h" "$Z" demosaic ok.pgm o.png --pattern rggb --method ahd --rect -1,0,3,3
    bad 2 o.jpg "cannot tell the output format of 'o.jpg'" "$Z" demosaic ok.pgm o.jpg --pattern rggb --method ahd
    bad 2 o.rgb "missing option --to or --from" "$Z" convert ok.ppm o.rgb
    bad 2 o.yuv "--to wants i420\|nv12\|yuy2\|uyvy\|yuv422p\|yuv444p(\|[a-z0-9]+)*, not 'yv12'" "$Z" convert ok.ppm o.yuv --to yv12
    bad 2 o.png "missing option --size" "$Z" convert ok.ppm o.png --from i420
    bad 2 o.png "--size wants WIDTHxHEIGHT" "$Z" convert ok.ppm o.png --from i420 --size 4by4
    bad 2 o.pgm "--levels wants a whole number from 2 to 256 for 8-bit output, not 'many'" "$Z" dither ok.pgm o.pgm --levels many --method fs
    bad 2 d "--size wants an even width and height" "$Z" demo --out d --size 15x16
    # Files that cannot be read.
    bad 1 o.yuv "cannot open missing.ppm: No such file or directory" "$Z" convert missing.ppm o.yuv --to i420
    mkdir adir
    bad 1 o.yuv "cannot read adir: it is a directory" "$Z" convert adir o.yuv --to i420
    : > empty.ppm
    bad 1 o.yuv "empty.ppm: empty file" "$Z" convert empty.ppm o.yuv --to i420
    printf 'hello world\n' > text.ppm
    bad 1 o.yuv "text.ppm: not a PNG, PGM, PPM or PFM file" "$Z" convert text.ppm o.yuv --to i420
    # Malformed and truncated PNM.
    printf 'P6\n2 x\n255\n' > head.ppm
    bad 1 o.yuv "head.ppm: malformed PPM header" "$Z" convert head.ppm o.yuv --to i420
    printf 'P5\n4 4\n70000\n' > maxval.pgm
    bad 1 o.yuv "maxval.pgm: malformed PGM header \(maximum value 70000" "$Z" convert maxval.pgm o.yuv --to i420
    head -c -3 ok.ppm > short.ppm
    bad 1 o.yuv "short.ppm: truncated PPM: 9 of 12 bytes" "$Z" convert short.ppm o.yuv --to i420
    # A header that claims a huge extent is refused before memory is taken for it.
    printf 'P5\n100000 100000\n255\nabc' > huge.pgm
    bad 1 o.yuv "huge.pgm: truncated PGM: 3 of 10000000000 bytes" "$Z" convert huge.pgm o.yuv --to i420
    printf 'P3\n1 1\n255\n1 2 3\n' > plain.ppm
    bad 1 o.yuv "plain-text PNM \(P3\) is not supported" "$Z" convert plain.ppm o.yuv --to i420
    # Malformed and truncated PNG.
    ok "$Z" convert ok.ppm good.yuv --to yuv444p
    ok "$Z" convert good.yuv good.png --from yuv444p --size 2x2
    size=$(wc -c < good.png)
    head -c $((size - 20)) good.png > cut.png
    bad 1 o.yuv "cut.png: malformed or truncated PNG" "$Z" convert cut.png o.yuv --to i420
    { head -c 40 good.png; printf 'XXXX'; tail -c +45 good.png; } > crc.png
    bad 1 o.yuv "crc.png: malformed or truncated PNG" "$Z" convert crc.png o.yuv --to i420
    head -c 12 good.png > sig.png
    bad 1 o.yuv "sig.png: malformed or truncated PNG" "$Z" convert sig.png o.yuv --to i420
    # Raw YUV whose length does not match --size.
    bad 1 o.png "good.yuv has 12 bytes, but I420 at 4x4 needs 24" "$Z" convert good.yuv o.png --from i420 --size 4x4
    bad 1 o.png "good.yuv has 12 bytes, but YUV444P at 2x3 needs 18" "$Z" convert good.yuv o.png --from yuv444p --size 2x3
    # 4:2:0 needs whole 2x2 cells.
    ppm8 3 2 $(flat 18 7) > odd.ppm
    bad 1 o.yuv "I420 needs an even width and height, 3x2 is not" "$Z" convert odd.ppm o.yuv --to i420 --matrix yuv
    # Data of the wrong kind for the command.
    if have cfa; then
        bad 1 o.png "demosaicing takes a single-channel image" "$Z" demosaic ok.ppm o.png --pattern rggb --method gradient
    fi
    # A failing command leaves an existing OUT as it was, and writes nothing into a missing folder.
    printf 'keep' > keep.yuv
    bad 1 "" "short.ppm: truncated PPM" "$Z" convert short.ppm keep.yuv --to i420
    same "OUT kept" "$(cat keep.yuv)" "keep"
    bad 1 "" "cannot write nodir/o.yuv: No such file or directory" "$Z" convert ok.ppm nodir/o.yuv --to yuv444p
    [[ ! -e nodir ]] || fail "a folder was created for OUT"
    ;;

demo)
    ok "$Z" demo --out "out dir" --size 48x32
    grep -q "^zilcc demo: 48x32 scene" out.txt || fail "demo: no summary line: $(head -n 1 out.txt)"
    grep -q "4:2:0" out.txt || fail "demo: summary has no 4:2:0 row"
    for f in index.html scene.png scene16.png yuv444.png yuv422.png yuv420.png luma.png; do
        [[ -s "out dir/$f" ]] || fail "demo did not write $f"
    done
    expect=()
    have cfa && expect+=(demosaic-gradient-rggb-8.png demosaic-gradient-bggr-16.png)
    have ahd && expect+=(demosaic-ahd-grbg-8.png demosaic-ahd-gbrg-16.png)
    have reduce && expect+=(reduce-2-fs.png reduce-8-bayer-noise.png reduce-4-jjn.png)
    have reduce1u && expect+=(bits1-stucki.png)
    for f in "${expect[@]}"; do [[ -s "out dir/$f" ]] || fail "demo did not write $f"; done
    # Every picture of the contact sheet is there, and only those are written.
    grep -o 'src="[^"]*"' "out dir/index.html" | sed 's/src="//; s/"$//' | sort > shown.txt
    (cd "out dir" && ls *.png) | sort > written.txt
    cmp -s shown.txt written.txt || fail "index.html and the PNG files differ: $(diff shown.txt written.txt | head -4)"
    [[ $(wc -l < shown.txt) -ge 7 ]] || fail "index.html shows fewer than 7 pictures"
    # A valid PNG: the signature, an IHDR of 48x32 RGB, and libpng reads it back whole.
    same "signature" "$(head -c 8 "out dir/scene.png" | od -An -tx1 | tr -d ' \n')" "89504e470d0a1a0a"
    same "IHDR" "$(head -c 26 "out dir/scene.png" | tail -c 14 | od -An -tu1 | tr -s ' ' | sed 's/^ //')" \
        "73 72 68 82 0 0 0 48 0 0 0 32 8 2"
    ok "$Z" convert "out dir/scene.png" scene.yuv --to yuv444p
    same "scene read back" "$(wc -c < scene.yuv)" "4608"
    # 16-bit: bit depth 16 in the IHDR.
    same "IHDR 16" "$(head -c 26 "out dir/scene16.png" | tail -c 2 | od -An -tu1 | tr -s ' ' | sed 's/^ //')" "16 2"
    [[ $(ls -A "out dir" | grep -c zilcc-) == 0 ]] || fail "demo left temporary files"
    ;;

outputs)
    # OUT through a symbolic link, onto a file of mode 0600, a hard link, a FIFO and
    # a device: links and modes are kept, FIFOs and devices are written through.
    ppm8 2 2 $(flat 12 7) > in.ppm
    ok "$Z" convert in.ppm want.yuv --to yuv444p
    printf 'old' > target.yuv && ln -s target.yuv link.yuv
    ok "$Z" convert in.ppm link.yuv --to yuv444p
    [[ -L link.yuv ]] || fail "the symbolic link was replaced"
    cmp -s target.yuv want.yuv || fail "the link's target was not written"
    printf 'old' > private.yuv && chmod 600 private.yuv
    ok "$Z" convert in.ppm private.yuv --to yuv444p
    same "mode kept" "$(stat -c %a private.yuv)" "600"
    printf 'old' > a.yuv && ln a.yuv b.yuv
    ok "$Z" convert in.ppm a.yuv --to yuv444p
    cmp -s b.yuv want.yuv || fail "the hard link b.yuv does not see the new content"
    mkfifo fifo.yuv
    cat fifo.yuv > from-fifo.yuv &
    ok "$Z" convert in.ppm fifo.yuv --to yuv444p
    wait
    [[ -p fifo.yuv ]] || fail "the FIFO was replaced"
    cmp -s from-fifo.yuv want.yuv || fail "the FIFO's reader got other bytes"
    ok "$Z" convert in.ppm /dev/null --to yuv444p
    [[ -c /dev/null ]] || fail "/dev/null is no longer a device"
    # Raw data under an image file's name: written, with a warning.
    ok "$Z" convert in.ppm o.png --to i420
    grep -q "warning: o.png is named like a .png image but will hold raw I420 data" err.txt || fail "no warning for raw data in o.png"
    [[ $(ls -A | grep -c zilcc) == 0 ]] || fail "a temporary file was left: $(ls -A)"
    ;;

pipes)
    # '-' and pipes for every format; output '-' is PNM.
    pgm8 4 4 $(seq 1 16) > in.pgm
    ok "$Z" convert in.pgm want.yuv --to yuv444p
    ok "$Z" convert want.yuv want.ppm --from yuv444p --size 4x4
    ok "$Z" convert want.yuv want.png --from yuv444p --size 4x4
    for f in in.pgm want.ppm want.png; do
        ok "$Z" convert <(cat $f) p.yuv --to yuv444p
        ok "$Z" convert - s.yuv --to yuv444p < $f
        cmp -s p.yuv s.yuv && "$Z" convert $f f.yuv --to yuv444p && cmp -s p.yuv f.yuv || fail "$f through a pipe or - differs"
    done
    "$Z" convert want.yuv - --from yuv444p --size 4x4 < /dev/null > stdout.ppm 2> err.txt || fail "output - failed: $(cat err.txt)"
    cmp -s stdout.ppm want.ppm || fail "output - differs from the PPM file"
    cat want.yuv | "$Z" convert - - --from yuv444p --size 4x4 | cmp -s - want.ppm || fail "- to - differs"
    # A PGM comment longer than any buffer.
    { printf 'P5\n# %05000d\n4 4\n255\n' 0; raw $(seq 1 16); } > comment.pgm
    ok "$Z" convert comment.pgm c.yuv --to yuv444p
    cmp -s c.yuv want.yuv || fail "long comment: other bytes"
    # An endless raw input is read only as far as the layout needs plus one byte.
    bad 1 o.png "/dev/zero has more than 6 bytes, but I420 at 2x2 needs 6" timeout 10 "$Z" convert /dev/zero o.png --from i420 --size 2x2
    # A tiny PNG that claims a huge extent fails at once.
    if command -v python3 > /dev/null; then
        for wh in "30000 30000" "2147483647 2147483647"; do
            python3 - $wh > huge.png << 'PY'
import struct, sys, zlib
def chunk(t, d): return struct.pack('>I', len(d)) + t + d + struct.pack('>I', zlib.crc32(t + d))
w, h = int(sys.argv[1]), int(sys.argv[2])
sys.stdout.buffer.write(b'\x89PNG\r\n\x1a\n' + chunk(b'IHDR', struct.pack('>IIBBBBB', w, h, 8, 2, 0, 0, 0))
                        + chunk(b'IDAT', zlib.compress(b'\0' * 8)) + chunk(b'IEND', b''))
PY
            start=$SECONDS
            bad 1 o.yuv "huge.png: " timeout 20 "$Z" convert huge.png o.yuv --to yuv444p
            (( SECONDS - start < 3 )) || fail "a PNG claiming $wh took $((SECONDS - start)) s to refuse"
        done
    fi
    ;;

ranges)
    pgm8 2 2 $(flat 4 9) > g.pgm
    for v in 0 1 257 65536 -1; do
        bad 2 o.pgm "--levels wants a whole number from 2 to 256 for 8-bit output, not '$v'" "$Z" dither g.pgm o.pgm --levels $v --method fs
    done
    bad 2 o.pgm "from 2 to 65536 for 16-bit output, not '65537'" "$Z" dither g.pgm o.pgm --levels 65537 --method fs --out-bits 16
    for v in -1 101; do
        bad 2 o.pgm "--noise wants a whole number from 0 to 100 percent, not '$v'" "$Z" dither g.pgm o.pgm --levels 4 --method bayer --noise $v
    done
    bad 2 o.pgm "--noise goes with a dithering method" "$Z" dither g.pgm o.pgm --levels 4 --method none --noise 10
    bad 2 o.png "--size 2147483647x1 is too large" "$Z" convert g.pgm o.png --from i420 --size 2147483647x1
    # A 12-bit PGM keeps its range: PPM with maxval 4095, PNG scaled to 16 bits
    # (1000 * 65535 / 4095 = 16004.2 -> 16004 = 62 * 256 + 132) with an sBIT chunk.
    if have cfa; then
        { printf 'P5\n6 6\n4095\n'; for i in $(seq 36); do raw 3 232; done; } > twelve.pgm
        ok "$Z" demosaic twelve.pgm t.ppm --pattern rggb --method gradient
        same "maxval kept" "$(head -n 3 t.ppm | tail -n 1)" "4095"
        same "samples kept" "$(samples t.ppm | tr ' ' '\n' | paste -d' ' - - | sort -u)" "3 232"
        ok "$Z" demosaic twelve.pgm t.png --pattern rggb --method gradient
        grep -q sBIT t.png || fail "no sBIT chunk in the 12-bit PNG"
        if have reduce; then
            ok "$Z" dither t.png t16.ppm --levels 65536 --method none --out-bits 16
            same "PNG scaled" "$(samples t16.ppm | tr ' ' '\n' | paste -d' ' - - | sort -u)" "62 132"
        fi
        { printf 'P5\n2 2\n100\n'; raw 1 2 255 4; } > over.pgm
        bad 1 o.ppm "over.pgm: sample 255 at \(0,1\) is above the maximum value 100" "$Z" demosaic over.pgm o.ppm --pattern rggb --method gradient
    fi
    # Packed 4:2:2 at an odd width: whole cells, the last pixel repeated. Red, white, then
    # black alone in its cell: 76 109 255 206, then Y 0 with U = V = 128, twice.
    ppm8 3 1 255 0 0 255 255 255 0 0 0 > odd.ppm
    ok "$Z" convert odd.ppm odd.yuy2 --to yuy2 --matrix yuv
    same "yuy2 odd" "$(bytes odd.yuy2)" "76 109 255 206 0 128 0 128"
    ok "$Z" convert odd.ppm odd.uyvy --to uyvy --matrix yuv
    same "uyvy odd" "$(bytes odd.uyvy)" "109 76 206 255 128 0 128 0"
    ok "$Z" convert odd.yuy2 back.ppm --from yuy2 --size 3x1 --matrix yuv
    same "yuy2 odd back" "$(samples back.ppm)" "165 38 37 255 217 216 0 0 0"
    head -c 6 odd.yuy2 > short.yuy2
    bad 1 o.ppm "short.yuy2 has 6 bytes, but YUY2 at 3x1 needs 8" "$Z" convert short.yuy2 o.ppm --from yuy2 --size 3x1
    ;;

ahd_sizes)
    # The adaptive method reads one place outside a plane 5 wide or high; the tool
    # gives that place memory of its own (run under the sanitizer build). A flat
    # mosaic gives the flat value everywhere.
    have ahd || exit 0
    for wh in 5x5 5x9 9x5 7x5 5x6; do
        w=${wh%x*} h=${wh#*x}
        pgm8 $w $h $(flat $((w * h)) 77) > f8.pgm
        pgm16 $w $h $(flat $((w * h)) 40000) > f16.pgm
        ok "$Z" demosaic f8.pgm o8.ppm --pattern gbrg --method ahd
        same "ahd $wh 8-bit" "$(samples o8.ppm | tr ' ' '\n' | sort -u)" "77"
        ok "$Z" demosaic f16.pgm o16.ppm --pattern rggb --method ahd
        same "ahd $wh 16-bit" "$(samples o16.ppm | tr ' ' '\n' | paste -d' ' - - | sort -u)" "156 64"
    done
    # --rect gives the whole image's pixels there, for regions touching every edge.
    ok "$Z" demo --out scene --size 24x20
    ok "$Z" demosaic scene/mosaic-rggb.png whole.ppm --pattern rggb --method ahd
    for r in 0,0,1,1 23,19,1,1 1,1,22,18 3,0,5,20 0,7,24,3 11,5,13,15 2,17,7,3; do
        IFS=, read -r x y w h <<< "$r"
        ok "$Z" demosaic scene/mosaic-rggb.png rect.ppm --pattern rggb --method ahd --rect $r
        hw=$(($(head -n 3 whole.ppm | wc -c) + 1)) hr=$(($(head -n 3 rect.ppm | wc -c) + 1))
        for ((j = 0; j < h; j++)); do
            [[ $(tail -c +$((hw + ((y + j) * 24 + x) * 3)) whole.ppm | head -c $((w * 3)) | od -An -v -tu1) == \
               $(tail -c +$((hr + j * w * 3)) rect.ppm | head -c $((w * 3)) | od -An -v -tu1) ]] ||
                { fail "--rect $r: row $j differs from the whole image"; break; }
        done
    done
    ;;

*)
    echo "unknown group $GROUP"
    exit 2
    ;;
esac

if ((fails)); then
    echo "$fails check(s) failed in group $GROUP"
    exit 1
fi
echo "group $GROUP: all checks passed"
