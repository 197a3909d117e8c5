#include <trelk/vector_num.h>

#include <cstdlib>

namespace trelk {

namespace sumvane {

ref_counted::ref_counted() noexcept = default;
ref_counted::~ref_counted() = default;

void ref_counted::__destroy() noexcept { delete this; }

} // namespace sumvane

void* __vector_num_alloc(std::size_t bytes) noexcept { return std::malloc(bytes); }

void* __vector_num_realloc(void* pointer, std::size_t bytes) noexcept { return std::realloc(pointer, bytes); }

void __vector_num_free(void* pointer) noexcept { std::free(pointer); }

template class vector_num<double>;
template class vector_num<unsigned>;

} // namespace trelk
