// Gaussian scores: which vectors meet. Row r of a score pairs a feature vector with a mean and with inverse variances;
// what the pattern shares (the Gaussian of many frames, the frame of many Gaussians) is the same for every row.
#pragma once

#include <cstddef>
#include <type_traits>

#include "frame/rows.h"
#include "simd/tile.h"

namespace vorn {

// One vector for every row.
template <class T>
class Shared {
public:
    explicit Shared(const T* vector) : vector_(vector) {}
    VORN_INLINE const T* operator[](std::ptrdiff_t) const { return vector_; }
    Shared from(std::ptrdiff_t) const { return *this; }

private:
    const T* vector_;
};

template <class Rows>
inline constexpr bool isShared = false;
template <class T>
inline constexpr bool isShared<Shared<T>> = true;

// The inverse variances of the identity covariance: nothing to read, every one is 1.
struct UnitVar {
    VORN_INLINE UnitVar operator[](std::ptrdiff_t) const { return {}; }
    VORN_INLINE UnitVar operator+(std::ptrdiff_t) const { return {}; }
    UnitVar from(std::ptrdiff_t) const { return {}; }
};

template <class Var>
inline constexpr bool isUnit = std::is_same_v<Var, UnitVar>;

template <class T>
struct FourRows {
    const T* row[4];
    VORN_INLINE const T* operator[](std::ptrdiff_t r) const { return row[r]; }
};

// Walks over the rows, four at a time.
template <class T>
class RowWalk {
public:
    explicit RowWalk(const AnyRows<const T>& rows) : rows_(rows) {}
    VORN_INLINE FourRows<T> four() const {
        return rows_.as([](const auto& rows) -> FourRows<T> {
            return {{keepApart(rows[0]), keepApart(rows[1]), keepApart(rows[2]), keepApart(rows[3])}};
        });
    }
    VORN_INLINE void next() { rows_ = rows_.from(4); }

private:
    AnyRows<const T> rows_;
};
// What is the same for every row.
template <class Same>
class SameWalk {
public:
    explicit SameWalk(Same same) : same_(same) {}
    VORN_INLINE Same four() const { return same_; }
    VORN_INLINE void next() {}

private:
    Same same_;
};

template <class T>
RowWalk<T> walk(const AnyRows<const T>& rows) {
    return RowWalk<T>(rows);
}
template <class Same>
SameWalk<Same> walk(const Same& same) {
    return SameWalk<Same>(same);
}

template <class T>
Shared<T> sharedVar(const T* var) {
    return Shared<T>(var);
}
inline UnitVar sharedVar(UnitVar) { return {}; }

template <class Src, class Mean, class Var>
struct Pairing {
    // One frame against many Gaussians.
    static constexpr bool frameIsShared = isShared<Src>;

    Src src;
    Mean mean;
    Var var;

    Pairing from(std::ptrdiff_t row) const { return {src.from(row), mean.from(row), var.from(row)}; }
};
template <class Src, class Mean, class Var>
Pairing(Src, Mean, Var) -> Pairing<Src, Mean, Var>;

// The vectors of one row.
template <class Vectors>
VORN_INLINE auto oneRow(const Vectors& vectors, std::ptrdiff_t row) {
    return Pairing{Shared(vectors.src[row]), Shared(vectors.mean[row]), sharedVar(vectors.var[row])};
}

// Many frames, the rows of a matrix, against one Gaussian; var is a vector or UnitVar.
template <class Src, class T, class Var>
auto frames(Src src, const T* mean, Var var) {
    return Pairing{AnyRows(src), Shared<T>(mean), sharedVar(var)};
}

// One frame against many Gaussians, the rows of mean and of var (a matrix or UnitVar).
template <class T, class Mean, class Var>
auto gaussians(const T* src, Mean mean, Var var) {
    if constexpr (isUnit<Var>) {
        return Pairing{Shared<T>(src), AnyRows(mean), var};
    } else {
        return Pairing{Shared<T>(src), AnyRows(mean), AnyRows(var)};
    }
}

}  // namespace vorn
