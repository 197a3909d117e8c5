#pragma once

#include <filesystem>

#include "line_mesh.h"

/// Reads a FeatureCollection of LineStrings. Coordinates are longitude and latitude in degrees. Lines get no
/// target sizes. The property `between` of a line, a list of strings, names its two sides. Throws
/// std::runtime_error if the file cannot be read or holds something else.
line_mesh read_geojson(std::filesystem::path const& path);

/// Projects longitude and latitude in degrees to kilometres east and north of a centre. The projection is
/// azimuthal equidistant: distances from the centre are true.
point project(point const& position, point const& centre);
