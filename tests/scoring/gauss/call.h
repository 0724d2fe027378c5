// Calls any member of the Gaussian score families on one problem.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "calls/signature.h"
#include "support/guarded.h"
#include "support/values.h"
#include "vornsr.h"

namespace gauss {

using test::Guarded;

inline std::size_t at(int n) { return static_cast<std::size_t>(n); }

// height vectors of len elements, step apart in one block whose last row ends where its elements end, and as rows of
// their own.
template <class T>
struct Matrix {
    Matrix(int height, int len, int step_, const std::vector<T>& values)
        : step(step_), block(at(height - 1) * at(step_) + at(len)), rows(at(height)) {
        for (int r = 0; r < height; ++r) {
            for (int j = 0; j < len; ++j) block[at(r) * at(step) + at(j)] = values[at(r) * at(len) + at(j)];
            rows[at(r)] = block + at(r) * at(step);
        }
    }
    const T* row(int r) const { return rows[at(r)]; }

    int step;
    Guarded<T> block;
    Guarded<const T*> rows;
};

// Both patterns on the same data: `many` holds the frames or the means, `manyVar` the inverse variances by row, `one`
// and `oneVar` the vectors that all rows share.
template <class T, class Val>
struct Problem {
    int height, len;
    Matrix<T> many, manyVar;
    Guarded<T> one, oneVar;
    Guarded<Val> val;
    int scaleFactor;
};

// The order in which a D2 form tests its arguments; D2L forms test pointers, then sizes.
enum class Order { StrideNullSize, NullStrideSize, NullSizeStride };

struct Shape {
    bool gaussians = false;    // one frame, many Gaussians
    bool identity = false;     // no var
    bool scaled = false;       // has a scale factor
    bool separateVal = false;  // many Gaussians: val is an array of its own
    bool oneResult = false;    // a mixture
    Order order = Order::StrideNullSize;
};

// The arguments of both layouts.
template <class T, class Val, class Out>
struct Arguments {
    const T *many, *manyVar;
    const T *const *manyRows, *const *manyVarRows;
    int step;
    const T *one, *oneVar;
    const Val* val;
    Val oneVal;
    Out* out;
    int len, height, scaleFactor;
};
template <class T, class Val, class Out>
Arguments<T, Val, Out> argumentsOf(const Problem<T, Val>& p, Out* out) {
    return {p.many.block, p.manyVar.block, p.many.rows, p.manyVar.rows, p.many.step, p.one,        p.oneVar,
            p.val,        p.val[0],        out,         p.len,          p.height,    p.scaleFactor};
}

template <class Function, class T, class Val, class Out>
VornStatus call(Function function, const Arguments<T, Val, Out>& a) {
    using calls::Role;
    calls::Arguments arguments;
    arguments[Role::rows] = a.many, arguments[Role::rowVars] = a.manyVar;
    arguments[Role::rowList] = a.manyRows, arguments[Role::rowVarList] = a.manyVarRows;
    arguments[Role::src1] = a.one, arguments[Role::var] = a.oneVar;
    arguments[Role::vals] = a.val, arguments[Role::val] = &a.oneVal;
    arguments[Role::dst] = arguments[Role::result] = a.out;
    arguments[Role::len] = a.len, arguments[Role::height] = a.height, arguments[Role::step] = a.step;
    arguments[Role::scaleFactor] = a.scaleFactor;
    return calls::Function("", function, calls::scoreShapes)(arguments);
}

}  // namespace gauss
