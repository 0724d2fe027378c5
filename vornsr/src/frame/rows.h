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
    std::ptrdiff_t step() const { return step_; }

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
    T* const* pointers() const { return rows_; }

private:
    T* const* rows_;
};

// Either, told apart at run time: for kernels that do much with each row, so that they need be made only once.
template <class T>
class AnyRows {
public:
    AnyRows(RowBlock<T> rows) : list_(nullptr), base_(rows[0]), step_(rows.step()) {}
    AnyRows(RowList<T> rows) : list_(rows.pointers()), base_(nullptr), step_(0) {}
    T* operator[](std::ptrdiff_t row) const { return list_ != nullptr ? list_[row] : base_ + row * step_; }
    // One question for several rows: take(rows) with the rows in their layout.
    template <class Take>
    auto as(const Take& take) const {
        return list_ != nullptr ? take(RowList<T>(list_)) : take(RowBlock<T>(base_, step_));
    }
    AnyRows from(std::ptrdiff_t row) const {
        AnyRows rest = *this;
        if (list_ != nullptr) {
            rest.list_ += row;
        } else {
            rest.base_ += row * step_;
        }
        return rest;
    }

private:
    T* const* list_;
    T* base_;
    std::ptrdiff_t step_;
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
