"""Converts Python arguments to those of the library. Errors name the argument."""

from __future__ import annotations

import operator
from typing import Any, Iterable, List, Mapping, NoReturn, Optional, Sequence, SupportsIndex, Tuple, Union

import numpy as np
import numpy.typing as npt

Reals = npt.NDArray[np.float64]
Nodes = npt.NDArray[np.uint32]
Real = Union[float, "np.floating[Any]"]
Statuses = Mapping[int, Tuple[str, str]]

UNLIMITED = 4294967295
LIMITS = ("min_elements, max_elements", "min_elements must be at least 1 and at most max_elements")
NO_MEMORY = -199


class Arguments:
    """Converts the arguments of one function. Arrays of the right type and order are not copied."""

    def __init__(self, function: str) -> None:
        self._function = function

    def fail(self, name: str, fault: str) -> NoReturn:
        raise ValueError(f"{self._function}: {name}: {fault}")

    def reject(self, name: str, fault: str) -> NoReturn:
        raise TypeError(f"{self._function}: {name}: {fault}")

    def check(self, status: int, statuses: Statuses) -> None:
        if status >= 0:
            return
        if NO_MEMORY <= status <= NO_MEMORY + 4:  # overloads of remesh_lines return up to -195
            raise MemoryError(f"{self._function}: not enough memory")
        self.fail(*statuses[status])

    def _array(self, name: str, value: npt.ArrayLike) -> npt.NDArray[Any]:
        if isinstance(value, np.ma.MaskedArray) and np.any(value.mask):
            self.fail(name, "has masked entries; fill or remove them")
        try:
            return np.asarray(value)
        except (TypeError, ValueError) as error:
            self.reject(name, f"must be an array of numbers ({error})")

    def reals_of_any_shape(self, name: str, value: npt.ArrayLike) -> Reals:
        array = self._array(name, value)
        if array.dtype.kind not in "iuf":
            self.reject(name, f"must contain real numbers, not {array.dtype}")
        return np.require(array, np.float64, ["C", "A"])

    def _nodes(self, name: str, value: npt.ArrayLike) -> Nodes:
        array = self._array(name, value)
        is_large = array.dtype.kind == "O" and all(isinstance(entry, int) for entry in array.flat)
        if array.dtype.kind not in "iu" and array.size > 0 and not is_large:
            self.reject(name, f"must contain integers, not {array.dtype}")
        if array.size > 0 and (array.min() < 0 or array.max() > UNLIMITED):
            wrong = array.min() if array.min() < 0 else array.max()
            self.fail(name, f"contains {wrong}; entries must be from 0 to {UNLIMITED}")
        return np.require(array, np.uint32, ["C", "A"])

    def reals(self, name: str, value: npt.ArrayLike) -> Reals:
        """A list of numbers."""
        array = self.reals_of_any_shape(name, value)
        if array.ndim != 1:
            self.fail(name, f"must have one dimension, not shape {array.shape}")
        return array

    def nodes(self, name: str, value: npt.ArrayLike) -> Nodes:
        """A list of node numbers."""
        array = self._nodes(name, value)
        if array.ndim != 1:
            self.fail(name, f"must have one dimension, not shape {array.shape}")
        return array

    def matrix(self, name: str, value: npt.ArrayLike, columns: Sequence[int] = ()) -> Reals:
        """Rows of numbers. The row length must be one of `columns`, if any are given."""
        array = self.reals_of_any_shape(name, value)
        if array.size == 0 and array.ndim == 1:
            array = array.reshape(0, columns[0] if columns else 0)
        if array.ndim != 2 or (columns and array.shape[1] not in columns):
            shapes = " or ".join(f"(n, {k})" for k in columns) if columns else "(n, k)"
            self.fail(name, f"must have shape {shapes}, not {array.shape}")
        return array

    def coords(self, value: npt.ArrayLike, name: str = "coords") -> Reals:
        """Node positions in the plane or in space."""
        return self.matrix(name, value, (2, 3))

    def elements(self, name: str, value: npt.ArrayLike, least: int = 2) -> Nodes:
        """Elements, one row of node numbers each, with at least `least` columns."""
        array = self._nodes(name, value)
        if array.size == 0 and array.ndim == 1:
            array = array.reshape(0, least)
        if array.ndim != 2 or array.shape[1] < least:
            self.fail(name, f"must have shape (m, k) with k at least {least}, not {array.shape}")
        return array

    def chain(self, value: Optional[npt.ArrayLike], coords: Reals, name: str = "indices") -> Nodes:
        """A list of node numbers; all nodes in order if it is None."""
        if value is None:
            return np.arange(len(coords), dtype=np.uint32)
        return self.nodes(name, value)

    def per_entry(self, name: str, value: npt.ArrayLike, count: int) -> Reals:
        """One number per entry. A single number is repeated."""
        array = self.reals_of_any_shape(name, value)
        if array.ndim == 0:
            return np.full(count, array)
        if array.ndim != 1:
            self.fail(name, f"must be a number or have one dimension, not shape {array.shape}")
        return array

    def targets(
        self,
        sizes: Optional[npt.ArrayLike],
        metrics: Optional[npt.ArrayLike],
        count: int,
        dimension: int,
    ) -> Reals:
        """Sizes or packed tensors. Exactly one of them must be given."""
        if (sizes is None) == (metrics is None):
            self.reject("sizes, metrics", "give exactly one of them")
        if metrics is None:
            assert sizes is not None
            return self.per_entry("sizes", sizes, count)
        return self.tensors("metrics", metrics, dimension)

    def tensors(self, name: str, value: npt.ArrayLike, dimension: int) -> Reals:
        """Tensors, packed or as matrices of shape (n, d, d)."""
        array = self.reals_of_any_shape(name, value)
        if array.ndim == 3 and array.shape[1:] == (dimension, dimension):
            return self.packed(name, array)
        count = dimension * (dimension + 1) // 2
        if array.ndim != 2 and array.size > 0 or array.ndim == 2 and array.shape[1] != count:
            shapes = f"(n, {count}) or (n, {dimension}, {dimension})"
            self.fail(name, f"must have shape {shapes}, not {array.shape}")
        return self.matrix(name, array, (count,))

    def packed(self, name: str, tensors: Reals) -> Reals:
        """Symmetric matrices of shape (n, 2, 2) or (n, 3, 3), packed."""
        if not np.array_equal(tensors, tensors.transpose(0, 2, 1), equal_nan=True):
            self.fail(name, "must contain symmetric matrices")
        rows, columns = _packing(tensors.shape[1])
        return np.ascontiguousarray(tensors[:, rows, columns])

    def count(self, name: str, value: SupportsIndex) -> int:
        """An integer from 0 to 4294967295."""
        try:
            result = operator.index(value)
        except TypeError:
            self.reject(name, f"must be an integer, not {type(value).__name__}")
        if not 0 <= result <= UNLIMITED:
            self.fail(name, f"is {result}; it must be from 0 to {UNLIMITED}")
        return result

    def counts(self, name: str, value: Sequence[SupportsIndex]) -> List[int]:
        """A few integers from 0 to 4294967295."""
        if not isinstance(value, Iterable):
            self.reject(name, f"must be a list of node numbers, not {type(value).__name__}")
        return [self.count(name, entry) for entry in value]

    def flag(self, name: str, value: bool) -> bool:
        """True or False. Strings and lists are rejected."""
        if not isinstance(value, (bool, np.bool_, int, np.integer)):
            self.reject(name, f"must be True or False, not {type(value).__name__}")
        return bool(value)

    def real(self, name: str, value: Real) -> float:
        if isinstance(value, (str, bytes)):
            self.reject(name, f"must be a number, not {type(value).__name__}")
        try:
            return float(value)
        except (TypeError, ValueError):
            self.reject(name, f"must be a number, not {type(value).__name__}")
        except OverflowError:
            self.fail(name, "is too large for a float")

    def is_number(self, name: str, value: npt.ArrayLike) -> bool:
        """Whether a value is a single number rather than an array."""
        return self._array(name, value).ndim == 0

    def vector(self, name: str, value: npt.ArrayLike, dimension: Optional[int] = None) -> Reals:
        """A point or a vector with `dimension` numbers, or with 2 or 3."""
        array = self.reals_of_any_shape(name, value)
        if array.shape not in ([(2,), (3,)] if dimension is None else [(dimension,)]):
            shapes = "(2,) or (3,)" if dimension is None else f"({dimension},)"
            self.fail(name, f"must have shape {shapes}, not {array.shape}")
        return array


def pack_metrics(tensors: npt.ArrayLike) -> Reals:
    """Pack symmetric matrices, shape (n, 2, 2) or (n, 3, 3), into rows of 3 or 6 numbers.

    The rows are (m00, m01, m11) in the plane and (m00, m01, m11, m02, m12, m22) in space.
    """
    a = Arguments("pack_metrics")
    full = a.reals_of_any_shape("tensors", tensors)
    if full.shape[1:] not in ((2, 2), (3, 3)):
        a.fail("tensors", f"must have shape (n, 2, 2) or (n, 3, 3), not {full.shape}")
    return a.packed("tensors", full)


def unpack_metrics(packed: npt.ArrayLike) -> Reals:
    """Unpack rows of 3 or 6 numbers into symmetric matrices, shape (n, 2, 2) or (n, 3, 3)."""
    rows_given = Arguments("unpack_metrics").matrix("packed", packed, (3, 6))
    dimension = 2 if rows_given.shape[1] == 3 else 3
    rows, columns = _packing(dimension)
    result = np.empty((len(rows_given), dimension, dimension))
    result[:, rows, columns] = rows_given
    result[:, columns, rows] = rows_given
    return result


def _packing(dimension: int) -> Tuple[Sequence[int], Sequence[int]]:
    pairs = [(i, j) for j in range(dimension) for i in range(j + 1)]
    return [i for i, _ in pairs], [j for _, j in pairs]
