#!/usr/bin/env bash
# The results of pseudo-random calls are those that results.txt holds, bit for bit; else names the overloads that
# differ. PROGRAM OVERLOAD prints the status and the hash of each call, so that two versions can be compared.
# Usage: results.sh PROGRAM
set -euo pipefail

expected=$(dirname "$0")/results.txt
if differences=$(diff "$expected" <("$1")); then
    echo "$(wc -l <"$expected") overloads, with the results that were taken down."
else
    echo "These overloads give other results (<: as taken down, >: now):"
    grep '^[<>]' <<<"$differences"
    exit 1
fi
