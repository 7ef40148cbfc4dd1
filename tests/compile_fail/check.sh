#!/bin/sh
# check.sh COMPILER ROOT SOURCE: the source must fail with the words of its first line, and its twin
# must compile.
compiler=$1 root=$2 source=$3
words=$(sed -n '1s,^// ,,p' "$source")
compile() { "$compiler" -std=c++20 -fsyntax-only -I"$root" "$@" "$source" 2>&1; }
compile -DQUORIN_RIGHT || { echo "the twin of $source does not compile"; exit 1; }
said=$(compile) && { echo "$source compiles"; exit 1; }
echo "$said" | grep -qE "$words" || { echo "$said"; echo "nothing about: $words"; exit 1; }
