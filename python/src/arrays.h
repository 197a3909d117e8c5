#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include <vornik1d/vornik1d.h>

// Converts NumPy arrays to containers and back. An array of shape (n, d) in C order is a matrix of d rows and n
// columns. The Python code has already converted the arguments to arrays of the right type and order.

namespace py = pybind11;

using real_array = py::array_t<double, py::array::c_style>;
using node_array = py::array_t<unsigned, py::array::c_style>;
using reals = trelk::dense1D<double>;
using nodes = trelk::dense1D<unsigned>;
using matrix = trelk::dense2D<double>;
using connectivity = trelk::dense2D<unsigned>;

/// Views of an array. The library does not write to the array: when it appends to a view of foreign values, it
/// first copies the values to its own memory.
template <class T>
trelk::dense1D<T> list_view(py::array_t<T, py::array::c_style> const& values)
{
    return trelk::dense1D<T>(static_cast<std::size_t>(values.size()), const_cast<T*>(values.data()));
}

template <class T>
trelk::dense2D<T> matrix_view(py::array_t<T, py::array::c_style> const& values)
{
    if (values.ndim() != 2) throw py::value_error("an array must have two dimensions");
    return {static_cast<std::size_t>(values.shape(1)), static_cast<std::size_t>(values.shape(0)),
        const_cast<T*>(values.data())};
}

/// Copies of an array, for arguments that a function changes in place.
template <class T>
trelk::dense1D<T> list_copy(py::array_t<T, py::array::c_style> const& values)
{
    trelk::dense1D<T> result;
    if (!result.copy(list_view(values))) throw std::bad_alloc();
    return result;
}

template <class T>
trelk::dense2D<T> matrix_copy(py::array_t<T, py::array::c_style> const& values)
{
    trelk::dense2D<T> result;
    if (!result.copy(matrix_view(values))) throw std::bad_alloc();
    return result;
}

/// A NumPy array that shows the values of a container and owns the container.
template <class Container>
py::array own(Container container, std::vector<py::ssize_t> shape)
{
    using value = typename Container::value_type;
    auto held = std::make_unique<Container>(std::move(container));
    value const* const values = held->data();
    py::capsule const owner(held.release(), [](void* p) { delete static_cast<Container*>(p); });
    return py::array_t<value>(std::move(shape), values, owner);
}

template <class T>
py::array to_array(trelk::dense1D<T> list)
{
    auto const size = static_cast<py::ssize_t>(list.size());
    if (size == 0) return py::array_t<T>(0);
    return own(std::move(list), {size});
}

template <class T>
py::array to_array(trelk::dense2D<T> values)
{
    auto const rows = static_cast<py::ssize_t>(values.rows());
    auto const cols = static_cast<py::ssize_t>(values.cols());
    if (values.empty()) return py::array_t<T>({cols, rows});
    if (values.ld() != values.rows()) {
        trelk::dense2D<T> packed;
        if (!packed.copy(values)) throw std::bad_alloc();
        values = packed;
    }
    return own(std::move(values), {cols, rows});
}

/// Coordinates to which a call may have appended nodes. Without new nodes they still view the caller's array.
inline py::array to_array(matrix const& coords, real_array const& input)
{
    if (coords.data() != input.data()) return to_array(coords);
    matrix result;
    if (!result.copy(coords)) throw std::bad_alloc();
    return to_array(std::move(result));
}

/// Calls the library with the interpreter's lock released.
template <class Call>
int unlocked(Call call)
{
    py::gil_scoped_release const release;
    return call();
}
