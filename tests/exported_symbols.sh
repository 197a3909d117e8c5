#!/usr/bin/env bash
# The shared library exports its public functions and what callers need of the containers, nothing else.
# Usage: exported_symbols.sh LIBRARY
set -euo pipefail
export LC_ALL=C

containers='^((vtable|typeinfo|typeinfo name) for )?trelk::(sumvane::ref_counted|vector_num<|__vector_num_)'

nm --dynamic --defined-only --demangle "$1" | cut -d' ' -f3- | grep -vE "$containers" | sort |
    diff "$(dirname "$0")/exported_symbols.txt" - &&
    echo "$(wc -l <"$(dirname "$0")/exported_symbols.txt") functions, as named, and the containers' storage."
