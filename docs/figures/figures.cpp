// Draws the pictures of the manual. Usage: figures RESULTS PICTURES. RESULTS is the folder of what the
// recipes printed, PICTURES the folder for the pictures.

#include "figures.h"

#include <cstdio>
#include <cstdlib>
#include <exception>

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::fputs("usage: figures RESULTS PICTURES\n", stderr);
        return EXIT_FAILURE;
    }
    try {
        draw_ideas(argv[2]);
        draw_recipes(argv[1], argv[2]);
    } catch (std::exception const& error) {
        std::fprintf(stderr, "figures: %s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
