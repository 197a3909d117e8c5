#pragma once

/// Marks what a program needs of the shared library itself: everything else in it is hidden.
#define TRELK_API __attribute__((visibility("default")))
