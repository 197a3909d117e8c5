"""Converts Python arguments to those of the library and checks them. Errors name the argument.

Each array is tested as a whole first. The wrong entry is looked for only after that test has failed.
"""

from __future__ import annotations

import operator
from typing import Any, Callable, Iterable, List, Mapping, NoReturn, Optional, Sequence, SupportsIndex
from typing import Tuple, Union

import numpy as np
import numpy.typing as npt

from . import _core
from ._rules import ENTRIES, FINITE, NUMBER, RULES, UNLIMITED, Rule
from ._rules import allowed, number_of, shown, shown_apart, valid_number

Reals = npt.NDArray[np.float64]
Nodes = npt.NDArray[np.uint32]
Real = Union[float, "np.floating[Any]"]
Statuses = Mapping[int, Tuple[str, str]]

__all__ = ["UNLIMITED", "Arguments", "Nodes", "Real", "Reals", "Statuses", "pack_metrics", "unpack_metrics"]

NO_MEMORY = -199
_KINDS = {"b": "booleans", "c": "complex numbers", "f": "real numbers", "U": "text", "S": "bytes"}


class Arguments:
    """Converts the arguments of one function. Arrays of the right type and order are not copied."""

    def __init__(self, function: str) -> None:
        self._function = function
        self._doubts: List[Callable[[], None]] = []

    def fail(self, name: str, fault: str) -> NoReturn:
        raise ValueError(f"{self._function}: {name} {fault}")

    def reject(self, name: str, fault: str) -> NoReturn:
        raise TypeError(f"{self._function}: {name} {fault}")

    def check(self, status: int, statuses: Statuses = {}) -> None:
        """Raise the error of a status. Looks first for faults that only the library tests."""
        if status >= 0:
            return
        if status == NO_MEMORY:
            raise MemoryError(
                f"{self._function}: not enough memory, or more nodes than 32-bit numbers can name"
            )
        for find_fault in self._doubts:
            find_fault()
        self.fail(*statuses.get(status, ("the arguments", f"do not fit together (status {status})")))

    def one_of(self, **values: object) -> None:
        """Exactly one of the values must be given."""
        given = [name for name, value in values.items() if value is not None]
        if len(given) > 1:
            self.reject(" and ".join(given), "exclude each other; give one of them")
        if len(given) == 0:
            *first, last = values
            self.reject(f"{', '.join(first)} and {last}", "are missing; give one of them")

    def _array(self, name: str, value: npt.ArrayLike) -> npt.NDArray[Any]:
        if isinstance(value, np.ma.MaskedArray) and np.any(value.mask):
            self.fail(name, "has masked entries; fill or remove them")
        try:
            return np.asarray(value)
        except (TypeError, ValueError):
            self.reject(name, "must be an array of numbers, with rows of one length")

    def _reject_kind(
        self, name: str, array: npt.NDArray[Any], kind: str, types: Tuple[type, ...]
    ) -> NoReturn:
        if array.ndim == 0:
            self.reject(name, f"must contain {kind}, not {_KINDS.get(array.dtype.kind, array.item())}")
        for place, entry in np.ndenumerate(array if array.dtype.kind == "O" else ()):
            if not isinstance(entry, types):
                self.reject(f"{name}{list(place)}", f"is {entry!r}; it must be a number")
        self.reject(name, f"must contain {kind}, not {_KINDS.get(array.dtype.kind, array.dtype)}")

    def _shape(self, name: str, array: npt.NDArray[Any], shapes: str) -> NoReturn:
        if array.ndim == 0:
            self.fail(name, f"is {shown(array[()])}; it must have shape {shapes}")
        self.fail(name, f"has shape {array.shape}; it must be {shapes}")

    def hold(
        self, name: str, array: npt.NDArray[Any], rule: Optional[Rule] = None, subject: Optional[str] = None
    ) -> None:
        """Every entry must obey the rule."""
        rule = RULES.get(name, FINITE) if rule is None else rule
        if array.size == 0 or (rule.holds(array.min()) and rule.holds(array.max())):
            return
        place = np.unravel_index(np.argmin(rule.holds(array)), array.shape)
        entry = f"{name}[{', '.join(map(str, place))}]"
        self.fail(
            entry, f"is {shown(array[place])}; {subject or ENTRIES.get(name, name)} must be {rule.allowed}"
        )

    def _hold_rows(self, name: str, rows: Reals, used: Optional[Nodes] = None) -> None:
        """Every row, or every row that is used, must obey the rule of the argument."""
        rule = RULES.get(name, FINITE)
        if rows.size == 0 or (rule.holds(rows.min()) and rule.holds(rows.max())):
            return
        is_wrong = np.zeros(len(rows), bool)
        for column in rows.T:  # faster than a test of all rows at once
            is_wrong |= ~rule.holds(column)
        wrong = np.flatnonzero(is_wrong) if used is None else used[is_wrong[used]]
        if len(wrong) > 0:
            first = int(wrong.min())
            self._fail_row(f"{name}[{first}]", rows[first], ENTRIES.get(name, name), rule)

    def _fail_row(self, name: str, row: Reals, subject: str, rule: Rule) -> NoReturn:
        self.fail(name, f"is {shown(row)}; {subject} must be {allowed(rule, row)}")

    def _real_array(self, name: str, value: npt.ArrayLike) -> Reals:
        array = self._array(name, value)
        if array.dtype.kind not in "iuf":
            self._reject_kind(name, array, "real numbers", (int, float))
        return np.require(array, np.float64, ["C", "A"])

    def _nodes(
        self, name: str, value: npt.ArrayLike, below: Optional[Rule], columns: Optional[int] = None
    ) -> Nodes:
        """Integers that obey the rule `below` in the first columns."""
        array = self._array(name, value)
        is_large = array.dtype.kind == "O" and all(isinstance(entry, int) for entry in array.flat)
        if array.dtype.kind not in "iu" and array.size > 0 and not is_large:
            self._reject_kind(name, array, "integers", (int, np.integer))
        if array.ndim == 0:
            self._shape(name, array, "(n,)" if columns is None else "(m, 2)")
        if below is not None:
            self.hold(name, array if array.ndim < 2 else array[:, :columns], below, "it")
        if array.dtype != np.uint32:
            self.hold(name, array, NUMBER, "it")
        return np.require(array, np.uint32, ["C", "A"])

    def reals(self, name: str, value: npt.ArrayLike, rule: Optional[Rule] = None) -> Reals:
        """A list of numbers."""
        array = self._real_array(name, value)
        if array.ndim != 1:
            self._shape(name, array, "(n,)")
        self.hold(name, array, rule)
        return array

    def ascending(self, name: str, value: npt.ArrayLike) -> Reals:
        """A list of numbers of which none is below the number before it."""
        array = self.reals(name, value)
        falls = array[1:] < array[:-1]
        if falls.any():
            k = int(np.argmax(falls)) + 1
            here, before = shown_apart(array[k], array[k - 1])
            self.fail(f"{name}[{k}]", f"is {here} after {before}; {name} must not decrease")
        return array

    def nodes(self, name: str, value: npt.ArrayLike, below: Optional[Rule] = None) -> Nodes:
        """A list of node numbers or of other integers."""
        array = self._nodes(name, value, below)
        if array.ndim != 1:
            self._shape(name, array, "(n,)")
        return array

    def matrix(self, name: str, value: npt.ArrayLike, columns: Sequence[int] = ()) -> Reals:
        """Rows of numbers. The row length must be one of `columns`, if any are given."""
        array = self._real_array(name, value)
        if array.size == 0 and array.ndim == 1:
            array = array.reshape(0, columns[0] if columns else 0)
        if array.ndim != 2 or (columns and array.shape[1] not in columns):
            shapes = " or ".join(f"(n, {k})" for k in sorted(columns)) if columns else "(n, k)"
            is_turned = array.ndim == 2 and array.shape[0] in columns
            self._shape(name, array, shapes + (f"; use {name}.T" if is_turned else ""))
        return array

    def coords(self, value: npt.ArrayLike, name: str = "coords") -> Reals:
        """Node positions in the plane or in space. `chain` and `elements` check those that they use."""
        return self.matrix(name, value, (2, 3))

    def elements(
        self,
        name: str,
        value: npt.ArrayLike,
        least: int = 2,
        *,
        most: Optional[int] = None,
        of: Optional[Reals] = None,
        owner: str = "coords",
    ) -> Nodes:
        """Elements, one row of node numbers each, with at least `least` columns and at most `most`.

        The end nodes must be rows of the argument `owner`, which is `of`, and these rows must be valid.
        """
        below = None if of is None else valid_number("node", len(of), owner)
        array = self._nodes(name, value, below, 2)
        if array.size == 0 and array.ndim == 1:
            array = array.reshape(0, least)
        if array.ndim != 2 or array.shape[1] < least or array.shape[1] > (most or array.shape[1]):
            self._shape(
                name,
                array,
                f"(m, {least})" if of is not None or least == most else f"(m, k) with k at least {least}",
            )
        if of is not None and len(array) > 0:
            self._hold_rows(owner, of, array[:, :2].ravel())
        return array

    def chain(
        self, value: Optional[npt.ArrayLike], coords: Reals, name: str = "indices", *, owner: str = "coords"
    ) -> Nodes:
        """A list of node numbers; all nodes in order if it is None. The positions of these nodes must be valid."""
        if value is None:
            self._hold_rows(owner, coords)
            return np.arange(len(coords), dtype=np.uint32)
        array = self.nodes(name, value, valid_number("node", len(coords), owner))
        self._hold_rows(owner, coords, array)
        return array

    def at_least(
        self, least: int, thing: str, name: str, values: npt.NDArray[Any], entry: str = "node"
    ) -> None:
        """A list or a matrix must have enough entries."""
        if len(values) < least:
            self.fail(name, f"has {number_of(len(values), entry)}; {thing} needs at least {least}")

    def may_have_no_length(self, name: str, coords: Reals, chain: Nodes) -> None:
        """If the call fails, look for a line of length 0."""

        def find() -> None:
            places = coords[chain]
            nodes = f"all {len(chain)} nodes" if len(chain) > 2 else "both nodes"
            rest = "a line must have a positive length"
            if (places == places[0]).all():
                self.fail(name, f"puts {nodes} of the line at {shown(places[0])}; {rest}")
            if not _core.length(coords, chain)[1] > 0:
                self.fail(name, f"puts {nodes} of the line too close together; {rest}")

        self._doubts.append(find)

    def one_per(self, thing: str, count: int, name: str, values: npt.NDArray[Any]) -> None:
        """A list or a matrix must have one entry per thing."""
        if len(values) != count:
            self.fail(name, f"has {number_of(len(values), 'entry')}; it needs {count}, one per {thing}")

    def per_entry(
        self, name: str, value: npt.ArrayLike, count: int, thing: str = "node of the line"
    ) -> Reals:
        """One number per thing. A single number is repeated."""
        array = self._real_array(name, value)
        if array.ndim == 0:
            rule = RULES.get(name, FINITE)
            if not rule.holds(array[()]):
                self.fail(name, f"is {shown(array[()])}; {name} must be {rule.allowed}")
            return np.full(count, array)
        if array.ndim != 1:
            self._shape(name, array, "a number or (n,)")
        self.one_per(thing, count, name, array)
        self.hold(name, array)
        return array

    def targets(
        self,
        sizes: Optional[npt.ArrayLike],
        metrics: Optional[npt.ArrayLike],
        count: int,
        dimension: int,
        thing: str = "node of the line",
    ) -> Reals:
        """Sizes or packed tensors. Exactly one of them must be given."""
        self.one_of(sizes=sizes, metrics=metrics)
        if metrics is None:
            assert sizes is not None
            return self.per_entry("sizes", sizes, count, thing)
        array = self.tensors("metrics", metrics, dimension)
        self.one_per(thing, count, "metrics", array)
        self._doubts.append(lambda: self.find_indefinite("metrics", array))
        return array

    def find_indefinite(self, name: str, tensors: Reals) -> None:
        """Fail at the first tensor that is not positive definite, or at the one nearest to that."""
        if len(tensors) > 0:
            values = np.linalg.eigvalsh(unpack_metrics(tensors))
            is_wrong = ~(values[:, 0] > 0)
            first = np.argmax(is_wrong) if is_wrong.any() else np.argmin(values[:, 0] / values[:, -1])
            fault = f"is {shown(tensors[first])}, which is not positive definite; each direction needs a positive size"
            self.fail(f"{name}[{first}]", fault)

    def tensors(self, name: str, value: npt.ArrayLike, dimension: int) -> Reals:
        """Tensors, packed or as matrices of shape (n, d, d)."""
        array = self._real_array(name, value)
        if array.ndim == 3 and array.shape[1:] == (dimension, dimension):
            return self._packed(name, array)
        count = dimension * (dimension + 1) // 2
        if array.ndim != 2 and array.size > 0 or array.ndim == 2 and array.shape[1] != count:
            self._shape(name, array, f"(n, {count}) or (n, {dimension}, {dimension})")
        return self.packed(name, array, (count,))

    def packed(self, name: str, value: npt.ArrayLike, columns: Sequence[int]) -> Reals:
        """Packed tensors."""
        rows = self.matrix(name, value, columns)
        self._hold_rows(name, rows)
        return rows

    def _packed(self, name: str, tensors: Reals) -> Reals:
        rows, columns = _packing(tensors.shape[1])
        upper = np.ascontiguousarray(tensors[:, rows, columns])
        self._hold_rows(name, upper)
        is_wrong = (upper != tensors[:, columns, rows]).any(axis=1)
        if is_wrong.any():
            first = int(np.argmax(is_wrong))
            matrix = ", ".join(shown(row) for row in tensors[first])
            self.fail(f"{name}[{first}]", f"is ({matrix}); tensors must be symmetric")
        return upper

    def matrices(self, name: str, value: npt.ArrayLike) -> Reals:
        """Symmetric matrices of shape (n, 2, 2) or (n, 3, 3), packed."""
        array = self._real_array(name, value)
        if array.shape[1:] not in ((2, 2), (3, 3)):
            self._shape(name, array, "(n, 2, 2) or (n, 3, 3)")
        return self._packed(name, array)

    def sizes_or_tensors(self, name: str, value: npt.ArrayLike) -> Reals:
        """Sizes, or tensors in the plane or in space."""
        array = self._real_array(name, value)
        if array.ndim == 1:
            return self.reals(name, array)
        if array.shape[1:] not in ((3,), (6,), (2, 2), (3, 3)):
            self._shape(name, array, "(n,), (n, 3), (n, 6), (n, 2, 2) or (n, 3, 3)")
        return self.tensors(name, array, 3 if array.shape[1:] in ((6,), (3, 3)) else 2)

    def count(self, name: str, value: SupportsIndex, rule: Optional[Rule] = None) -> int:
        """An integer, by its rule."""
        try:
            result = operator.index(value)
        except TypeError:
            self.reject(name, f"must be an integer, not {type(value).__name__}")
        rule = RULES.get(name, NUMBER) if rule is None else rule
        if not rule.holds(result):
            self.fail(name, f"is {result}; it must be {rule.allowed}")
        return result

    def limits(self, min_elements: SupportsIndex, max_elements: SupportsIndex) -> Tuple[int, int]:
        """The smallest and the largest number of elements."""
        fewest, most = self.count("min_elements", min_elements), self.count("max_elements", max_elements)
        if fewest > most:
            fault = f"is {fewest} and max_elements is {most}; min_elements must not be larger"
            self.fail("min_elements", fault)
        return fewest, most

    def few_nodes(self, name: str, value: Sequence[SupportsIndex], coords: Reals) -> List[int]:
        """A list of a few node numbers."""
        if not isinstance(value, Iterable) or isinstance(value, np.ndarray) and value.ndim == 0:
            self.reject(name, f"is {value}; it must be a list of node numbers")
        below = valid_number("node", len(coords), "coords")
        result = [self.count(f"{name}[{k}]", entry, below) for k, entry in enumerate(value)]
        self._hold_rows("coords", coords, np.array(result, np.uint32))
        return result

    def flag(self, name: str, value: bool) -> bool:
        """True or False. Strings and lists are rejected."""
        if not isinstance(value, (bool, np.bool_, int, np.integer)):
            self.reject(name, f"must be True or False, not {type(value).__name__}")
        return bool(value)

    def real(self, name: str, value: Real) -> float:
        """A number, by its rule."""
        is_number = not isinstance(value, (str, bytes))
        if isinstance(value, (np.ndarray, np.generic)):  # float() takes the only entry or the real part
            is_number = value.ndim == 0 and value.dtype.kind in "biuf"
        if not is_number:
            self.reject(name, f"must be a number, not {type(value).__name__}")
        try:
            result = float(value)
        except (TypeError, ValueError):
            self.reject(name, f"must be a number, not {type(value).__name__}")
        except OverflowError:
            self.fail(name, "is too large for a float")
        rule = RULES.get(name, FINITE)
        if not rule.holds(result):
            self.fail(name, f"is {shown(result)}; it must be {allowed(rule, result)}")
        return result

    def is_number(self, name: str, value: npt.ArrayLike) -> bool:
        """Whether a value is a single number rather than an array."""
        return self._array(name, value).ndim == 0

    def vector(self, name: str, value: npt.ArrayLike, dimension: Optional[int] = None) -> Reals:
        """A point or a vector with `dimension` numbers, or with 2 or 3."""
        array = self._real_array(name, value)
        if array.shape not in ([(2,), (3,)] if dimension is None else [(dimension,)]):
            self._shape(name, array, "(2,) or (3,)" if dimension is None else f"({dimension},)")
        rule = RULES.get(name, FINITE)
        if not rule.holds(array).all():
            self._fail_row(name, array, "it", rule)
        return array


def pack_metrics(tensors: npt.ArrayLike) -> Reals:
    """Pack symmetric matrices, shape (n, 2, 2) or (n, 3, 3), into rows of 3 or 6 numbers.

    The rows are (m00, m01, m11) in the plane and (m00, m01, m11, m02, m12, m22) in space.

    Examples
    --------
    >>> import vornik1d
    >>> vornik1d.pack_metrics([[[1, 2], [2, 5]]]).tolist()
    [[1.0, 2.0, 5.0]]
    """
    return Arguments("pack_metrics").matrices("tensors", tensors)


def unpack_metrics(packed: npt.ArrayLike) -> Reals:
    """Unpack rows of 3 or 6 numbers into symmetric matrices, shape (n, 2, 2) or (n, 3, 3).

    Examples
    --------
    >>> import vornik1d
    >>> vornik1d.unpack_metrics([[1, 2, 5]]).tolist()
    [[[1.0, 2.0], [2.0, 5.0]]]
    """
    rows_given = Arguments("unpack_metrics").packed("packed", packed, (3, 6))
    dimension = 2 if rows_given.shape[1] == 3 else 3
    rows, columns = _packing(dimension)
    result = np.empty((len(rows_given), dimension, dimension))
    result[:, rows, columns] = rows_given
    result[:, columns, rows] = rows_given
    return result


def _packing(dimension: int) -> Tuple[Sequence[int], Sequence[int]]:
    pairs = [(i, j) for j in range(dimension) for i in range(j + 1)]
    return [i for i, _ in pairs], [j for _, j in pairs]
