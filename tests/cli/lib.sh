# Shared by the tests/cli/*_cli.sh scripts: `source "$(dirname "$0")/lib.sh"`
# after changing into the work folder. Each failed check prints "FAIL: ..."
# and counts in $fails; a script ends with `exit $((fails > 0))`.
fails=0
fail() { echo "FAIL: $*"; fails=$((fails + 1)); }
# Bytes given as decimal numbers, written raw.
raw() { local v; for v in "$@"; do printf "\\$(printf %03o "$v")"; done; }
# A file's bytes as decimal numbers on one line.
bytes() { od -An -v -tu1 "$1" | tr -s ' \n' '  ' | sed 's/^ *//; s/ *$//'; }
# The samples of an 8-bit PGM/PPM with a three-line header.
samples() { tail -c +$(($(head -n 3 "$1" | wc -c) + 1)) "$1" > "$1.s"; bytes "$1.s"; }
same() { [[ $2 == "$3" ]] || fail "$1: got [$2], want [$3]"; }
# The command must succeed; its output is in out.txt and err.txt.
ok() { "$@" > out.txt 2> err.txt || fail "'$*' exited $?: $(cat err.txt)"; }
# The command must fail with status WANT, one stderr line matching RE, and
# leave neither OUT (when not empty) nor a temporary file behind:
# bad WANT OUT RE COMMAND...
bad() {
    local want=$1 out=$2 re=$3
    shift 3
    "$@" > out.txt 2> err.txt
    local rc=$?
    [[ $rc == "$want" ]] || fail "'$*' exited $rc, want $want ($(cat err.txt))"
    [[ $(wc -l < err.txt) == 1 ]] || fail "'$*': stderr is not one line: $(cat err.txt)"
    grep -Eq -- "$re" err.txt || fail "'$*': stderr '$(cat err.txt)' does not match /$re/"
    [[ -z $out || ! -e $out ]] || fail "'$*' left $out behind"
    if compgen -G '.*zilcc-*' > /dev/null; then fail "'$*' left a temporary file"; rm -f .*zilcc-*; fi
}
