// What stands in arrays: a style and a seed a buffer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "element.h"
#include "numbers.h"

namespace fuzz {

// Two thirds of the styles are plain numbers; the others reach for what numeric code breaks at.
inline constexpr unsigned styles = 24;

// So many components.
void fillData(const Element& element, std::byte* at, std::size_t count, unsigned style, std::uint64_t seed);

// So many components within the bounds that each place has; false if there are none such.
bool fillContent(const Element& element, std::byte* at, std::size_t count,
                 const std::function<std::vector<Bounds>(std::size_t)>& boundsAt, Order order, unsigned style,
                 std::uint64_t seed);

}  // namespace fuzz
