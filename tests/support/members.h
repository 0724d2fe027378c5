// What holds for every member of the families of element-wise functions and reductions: pointers are checked before
// lengths, and no alignment of any pointer changes a result. A member is one row.
#pragma once

#include <vector>

#include "calls/signature.h"

namespace test {

// extra: the scale factor or the hint, where there is one.
struct Member : calls::Function {
    template <class... P>
    Member(const char* name, VornStatus (*function)(P...), int extra_ = 0)
        : Function(name, function, calls::elementWiseShapes), extra(extra_) {}
    int extra;
};

// The error for a constant of zero, where a family has one, comes last.
void expectPointersThenLength(const calls::Function& member, int extra, VornStatus zeroConstant = vornStsNoErr);
void expectNoAlignmentChangesAResult(const calls::Function& member, int extra);

inline void expectPointersThenLength(const Member& member) { expectPointersThenLength(member, member.extra); }
inline void expectNoAlignmentChangesAResult(const Member& member) {
    expectNoAlignmentChangesAResult(member, member.extra);
}

}  // namespace test

#define MEMBER(function, ...) \
    { VORN_NAMED(function) __VA_OPT__(, ) __VA_ARGS__ }
