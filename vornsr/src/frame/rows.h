// The two matrix layouts as one thing to a kernel: something that yields row r as a pointer.
#pragma once

#include <cstddef>

namespace vorn {

// D2: one block, rows a fixed stride of elements apart.
template <class T>
class RowBlock {
public:
    RowBlock(T* base, std::ptrdiff_t step) : base_(base), step_(step) {}
    T* operator[](std::ptrdiff_t row) const { return base_ + row * step_; }
    RowBlock from(std::ptrdiff_t row) const { return {base_ + row * step_, step_}; }
    T* base() const { return base_; }

private:
    T* base_;
    std::ptrdiff_t step_;
};

// D2L: an array of row pointers.
template <class T>
class RowList {
public:
    explicit RowList(T* const* rows) : rows_(rows) {}
    T* operator[](std::ptrdiff_t row) const { return rows_[row]; }
    RowList from(std::ptrdiff_t row) const { return RowList(rows_ + row); }

private:
    T* const* rows_;
};

// Either, told apart at run time: for kernels that do much with each row, so that they need be made only once.
template <class T>
class AnyRows {
public:
    AnyRows(RowBlock<T> rows) : list_(nullptr), block_(rows) {}
    AnyRows(RowList<T> rows) : list_(rows), block_(nullptr, 0) {}
    bool isList() const { return block_.base() == nullptr; }
    RowList<T> list() const { return list_; }
    RowBlock<T> block() const { return block_; }
    T* operator[](std::ptrdiff_t row) const { return isList() ? list_[row] : block_[row]; }
    // One question for several rows: take(rows) with the rows in their own layout.
    template <class Take>
    auto as(const Take& take) const {
        return isList() ? take(list_) : take(block_);
    }
    AnyRows from(std::ptrdiff_t row) const { return isList() ? AnyRows(list_.from(row)) : AnyRows(block_.from(row)); }

private:
    RowList<T> list_;
    RowBlock<T> block_;
};

template <class T>
RowBlock<T> Rows(T* base, std::ptrdiff_t step) {
    return {base, step};
}

template <class T>
RowList<T> Rows(T* const* rows) {
    return RowList<T>(rows);
}

}  // namespace vorn
