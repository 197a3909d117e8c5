#pragma once

#include <array>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <functional>
#include <string>

#include <CLI/CLI.hpp>

#include "drawing.h"
#include "figure.h"
#include "line_mesh.h"

// Shared by the demo programs: options, the coast, its meshes, and the rows and panels that show them.

struct demo_options
{
    std::filesystem::path input = "data/lofoten-coast.geojson";
    std::filesystem::path output = ".";
    double tolerance = 0.5;
    std::string harbour = "Svolvær";
    std::array<double, 2> position = {14.571, 68.219};
    std::array<double, 3> detail = {-18.0, -1.0, 60.0};

    rectangle detail_area() const;
};

/// Adds these options to the program that draws `picture`.svg and `picture`.png.
void add_coast_options(CLI::App& app, demo_options& chosen, std::string const& picture);

/// Parses the arguments and runs the program. Prints errors. Returns the exit status of main.
template <class Options>
int run_demo(char const* name, char const* purpose, int argc, char** argv,
    void (*add_options)(CLI::App&, Options&), void (*run)(Options const&))
{
    try {
        Options chosen;
        CLI::App app(purpose, name);
        app.option_defaults()->always_capture_default();
        add_options(app, chosen);
        try {
            app.parse(argc, argv);
        } catch (CLI::ParseError const& error) {
            return app.exit(error) == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
        }
        run(chosen);
    } catch (std::exception const& error) {
        std::fprintf(stderr, "%s: %s\n", name, error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}

/// Throws if `status`, which `function` returned, is not 0.
void require_success(int status, std::string const& function);

/// Reads lines and projects them to the plane. The origin is at the given longitude and latitude. Lines have
/// no targets yet.
line_mesh read_lines(std::filesystem::path const& input, std::array<double, 2> const& origin);

/// Sets the target size at each node of each line.
void set_sizes(line_mesh& coast, std::function<double(point const&)> const& size_at);

struct meshing
{
    line_mesh mesh;
    double milliseconds = 0.0;
};

/// Meshes each line by its targets.
meshing mesh_lines(line_mesh const& coast, double tolerance);

void print_heading();

/// Prints a row of the table for a mesh of the coast, and returns the panel that shows the mesh.
panel present(std::string const& title, meshing const& shown, line_mesh const& coast, color const& ink);
