// The library's malloc is this program's own: allocations are counted, and one of them can be made to fail.
#pragma once

namespace fuzz::allocation {

#ifdef VORNSR_SANITIZED
inline constexpr bool counted = false;  // the sanitizer's allocator stands in the place of ours
#else
inline constexpr bool counted = true;
#endif

extern bool watching;    // set while the library is called
extern unsigned made;    // since reset
extern unsigned failAt;  // this one, counted from 1, gives null; 0: none
extern int live;         // blocks not freed yet

void reset(unsigned failing);
inline bool failed() { return failAt != 0 && made >= failAt; }

}  // namespace fuzz::allocation
