"""What the values of an argument must be, in words and as a check, and how errors show them."""

from __future__ import annotations

import math
from typing import Any, Callable, Dict, List, NamedTuple

import numpy as np

UNLIMITED = 4294967295
LARGEST_COORDINATE = 1e150  # its square and a sum of squares are still finite


class Rule(NamedTuple):
    """What is allowed. `holds` tests a number, or an array element by element, for a range without gaps."""

    allowed: str
    holds: Callable[[Any], Any]


def _between(first: int, last: int) -> Rule:
    return Rule(f"from {first} to {last}", lambda x: (x >= first) & (x <= last))


FINITE = Rule("finite", lambda x: abs(x) < math.inf)
POSITIVE = Rule("positive and finite", lambda x: (x > 0) & (x < math.inf))
NOT_NEGATIVE = Rule("at least 0 and finite", lambda x: (x >= 0) & (x < math.inf))
POSITION = Rule("finite", lambda x: abs(x) <= LARGEST_COORDINATE)
OWN_SIZE = Rule("finite; 0 or less means no size of its own", FINITE.holds)
ANY = Rule("a number or NaN", lambda x: x == x or True)
NUMBER = _between(0, UNLIMITED)
NODE = _between(0, UNLIMITED - 1)  # where the largest number stands for no node

# The rules of arguments by name. Other real numbers must be finite, other integers must be 32-bit numbers.
RULES: Dict[str, Rule] = {
    "coords": POSITION,
    "positions": POSITION,
    "start": POSITION,
    "center": POSITION,
    "vector": POSITION,
    "rotation": POSITION,
    "sizes": POSITIVE,
    "size_along": POSITIVE,
    "size_across": POSITIVE,
    "default_size": NOT_NEGATIVE,
    "min_size": NOT_NEGATIVE,
    "max_gradation": NOT_NEGATIVE,
    "max_angle": Rule("at least 0", lambda x: x >= 0),
    "exponent": Rule("a number, inf or -inf", lambda x: x == x),
    "min_elements": _between(1, UNLIMITED),
    "max_elements": _between(1, UNLIMITED),
}

# What the entries of an array are called. Otherwise they have the name of the argument.
ENTRIES = {"coords": "coordinates", "metrics": "tensors", "packed": "tensors"}


def valid_number(kind: str, count: int, owner: str) -> Rule:
    """The rule for numbers of nodes or rows, of which the argument `owner` has `count`."""
    limit = f"below {count}" if count > 0 else f"but {owner} has none"
    return Rule(f"a valid {kind} number, {limit}", lambda x: (x >= 0) & (x < count))


def allowed(rule: Rule, value: Any) -> str:
    """What the rule allows, in words that fit a value that breaks it."""
    if rule is POSITION and np.isfinite(value).all():
        return f"between {-LARGEST_COORDINATE:g} and {LARGEST_COORDINATE:g}"
    return rule.allowed


def shown(value: Any) -> str:
    """A value as an error shows it: short, rows in parentheses."""
    if getattr(value, "ndim", 0) == 1:
        return f"({', '.join(shown(x) for x in value)})"
    return f"{value:g}" if isinstance(value, float) else str(value)


def shown_apart(value: float, *others: float) -> List[str]:
    """Numbers as an error shows them, with all digits if the first would look like one of the others."""
    texts = [shown(x) for x in (value, *others)]
    return [repr(float(x)) for x in (value, *others)] if texts[0] in texts[1:] else texts


def number_of(count: int, thing: str) -> str:
    """For example "1 node" and "3 nodes", "2 entries"."""
    if count == 1:
        return f"1 {thing}"
    return f"{count} {thing[:-1]}ies" if thing.endswith("y") else f"{count} {thing}s"
