#include <vornik1d/vornik1d.h>

namespace trelk::vornik1d {

char const* version() noexcept { return VORNIK1D_VERSION; }

} // namespace trelk::vornik1d
