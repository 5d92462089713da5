#!/usr/bin/env bash
# Checks that the program is what Windows can defend and a user can carry: of the machine it is for, without libraries
# but the system's, at a random address, with no memory that is both written and run, and small.
#   check_executable.sh FILE FORMAT TOOLCHAIN MOST_BYTES
# FORMAT is as objdump names it, TOOLCHAIN as in TOOLCHAIN-w64-mingw32-objdump.
set -uo pipefail
file=$1 format=$2 objdump=$3-w64-mingw32-objdump limit=$4
faults=0

fault() {
  echo "$file: $*"
  faults=$((faults + 1))
}

dump=$("$objdump" -p "$file") && sections=$("$objdump" -h "$file") || exit 1
grep -q "file format $format\$" <<<"$dump" || fault "is not $format"
libraries=$(grep -iE 'DLL Name: (lib|mingw)' <<<"$dump") && fault "needs $libraries"
# What a window needs late or never would slow each start. On x86 it cannot be put off.
grep -q '^Subsystem.*GUI' <<<"$dump" && late=$(grep -iE 'DLL Name: (comdlg32|oleacc|shell32|winmm)\.' <<<"$dump") && [ "$format" != pei-i386 ] &&
  fault "loads with each start $late"

# Windows XP starts no program that imports something it lacks.
if [ "$format" = pei-i386 ]; then
  lacking=$(awk '
    FNR == NR && /^#/ { next }
    FNR == NR { if (sub(/:$/, "", $1)) { dll = $1; $1 = "" } for (i = 1; i <= NF; ++i) known[dll, $i]; next }
    /DLL Name:/ { dll = tolower($3) }
    $3 == "<none>" { $3 = $2 }  # imported by number
    NF == 3 && $1 ~ /^[0-9a-f]+$/ && $2 ~ /^[0-9]+$/ && !((dll, $3) in known) { printf "%s of %s, ", $3, dll }
  ' "$(dirname "$0")/windows_xp_exports.txt" - <<<"$dump")
  [ -z "$lacking" ] || fault "imports ${lacking%, }, which windows_xp_exports.txt does not list"
fi

flags=$(sed -n '/^DllCharacteristics/,/^SizeOf/p' <<<"$dump")
wanted=(DYNAMIC_BASE NX_COMPAT)
[ "$format" = pei-i386 ] || wanted+=(HIGH_ENTROPY_VA)
for flag in "${wanted[@]}"; do
  grep -qw "$flag" <<<"$flags" || fault "is not $flag"
done
# Without its relocations it always lies at one address, whatever the flags say.
grep -qw '\.reloc' <<<"$sections" || fault "has no relocations"
# Section lines come in pairs: names and sizes, then flags.
writable=$(paste -d' ' - - < <(grep -A1 -E '^ +[0-9]+ ' <<<"$sections" | grep -v '^--') | grep -w CODE | grep -vw READONLY)
[ -z "$writable" ] || fault "may write what it runs: $writable"
grep -qw CODE <<<"$sections" || fault "has no code"

size=$(stat -c %s "$file")
[ "$size" -le $limit ] || fault "has $size bytes, more than $limit"
[ $faults = 0 ]
