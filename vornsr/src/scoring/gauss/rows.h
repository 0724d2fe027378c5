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
class RowBlockWalk {
public:
    explicit RowBlockWalk(const RowBlock<const T>& rows) : first_(rows[0]), step_(rows[1] - rows[0]) {}
    VORN_INLINE FourRows<T> four() const {
        return {{keepApart(first_), keepApart(first_ + step_), keepApart(first_ + 2 * step_),
                 keepApart(first_ + 3 * step_)}};
    }
    VORN_INLINE void next() { first_ += 4 * step_; }

private:
    const T* first_;
    std::ptrdiff_t step_;
};
template <class T>
class RowListWalk {
public:
    explicit RowListWalk(const RowList<const T>& rows) : rows_(rows) {}
    VORN_INLINE FourRows<T> four() const {
        return {{keepApart(rows_[0]), keepApart(rows_[1]), keepApart(rows_[2]), keepApart(rows_[3])}};
    }
    VORN_INLINE void next() { rows_ = rows_.from(4); }

private:
    RowList<const T> rows_;
};
template <class T>
class AnyRowsWalk {
public:
    explicit AnyRowsWalk(const AnyRows<const T>& rows)
        : isList_(rows.isList()), list_(rows.list()), block_(rows.block()) {}
    VORN_INLINE FourRows<T> four() const { return isList_ ? list_.four() : block_.four(); }
    VORN_INLINE void next() { isList_ ? list_.next() : block_.next(); }

private:
    bool isList_;
    RowListWalk<T> list_;
    RowBlockWalk<T> block_;
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
RowBlockWalk<T> walk(const RowBlock<const T>& rows) {
    return RowBlockWalk<T>(rows);
}
template <class T>
RowListWalk<T> walk(const RowList<const T>& rows) {
    return RowListWalk<T>(rows);
}
template <class T>
AnyRowsWalk<T> walk(const AnyRows<const T>& rows) {
    return AnyRowsWalk<T>(rows);
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

// One frame against many Gaussians, the rows of mean and of var (a matrix or UnitVar). With two matrices to walk,
// asking for the layout at run time would cost a tenth.
template <class T, class Mean, class Var>
auto gaussians(const T* src, Mean mean, Var var) {
    return Pairing{Shared<T>(src), mean, var};
}

}  // namespace vorn
