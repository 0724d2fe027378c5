// Plain loops of the fills and of conjugation.
#pragma once

#include <cstddef>

#include "vornsr/types.h"

namespace plain {

void set(Vorn16s val, Vorn16s* dst, std::size_t len);
void set(Vorn32f val, Vorn32f* dst, std::size_t len);
void set(Vorn64f val, Vorn64f* dst, std::size_t len);
void set(Vorn64fc val, Vorn64fc* dst, std::size_t len);

void conj(const Vorn16sc* src, Vorn16sc* dst, std::size_t len);
void conj(const Vorn32fc* src, Vorn32fc* dst, std::size_t len);
void conj(const Vorn64fc* src, Vorn64fc* dst, std::size_t len);

void conjFlip(const Vorn16sc* src, Vorn16sc* dst, std::size_t len);
void conjFlip(const Vorn32fc* src, Vorn32fc* dst, std::size_t len);
void conjFlip(const Vorn64fc* src, Vorn64fc* dst, std::size_t len);

}  // namespace plain
