// Block-diagonal matrices, shared by scores of single frames: short ones and those whose length takes scratch memory.
#include <numeric>
#include <string>

#include "threads/together.h"

namespace {

using test::Buffers, test::Together;

template <class T, class Matrix>
std::shared_ptr<Matrix> matrix(const std::vector<int>& sizes,
                               VornStatus (*make)(Matrix**, const T* const*, const int*, int),
                               VornStatus (*release)(Matrix*)) {
    Buffers buffers(5);
    std::vector<const T*> rows;
    for (int size : sizes) {
        for (int row = 0; row < size; ++row) rows.push_back(buffers.source<T>(static_cast<std::size_t>(size)));
    }
    Matrix* made = nullptr;
    EXPECT_EQ(make(&made, rows.data(), sizes.data(), static_cast<int>(sizes.size())), vornStsNoErr);
    return test::owned(made, release);
}

template <class T, class Matrix, class Result>
void addScore(Together& calls, const std::string& name, const std::shared_ptr<Matrix>& context, int len,
              VornStatus (*f)(const T*, const T*, const Matrix*, int, Result*, Result)) {
    calls.add(name, [=](Buffers& b) {
        const auto n = static_cast<std::size_t>(len);
        return f(b.source<T>(n), b.source<T>(n), context.get(), len, b.result<Result>(1), Result(-20));
    });
}
template <class T, class Matrix, class Result>
void addScore(Together& calls, const std::string& name, const std::shared_ptr<Matrix>& context, int len,
              VornStatus (*f)(const T*, const T*, const Matrix*, int, Result*, Result, int)) {
    calls.add(name, [=](Buffers& b) {
        const auto n = static_cast<std::size_t>(len);
        return f(b.source<T>(n), b.source<T>(n), context.get(), len, b.result<Result>(1), Result(-20), 12);
    });
}

TEST(ThreadsShareMatrices, BlockDiagonal) {
    Together calls;
    for (const std::vector<int>& sizes : {std::vector<int>{13, 13, 13}, std::vector<int>{39, 1, 80, 20}}) {
        const int len = std::accumulate(sizes.begin(), sizes.end(), 0);
        const std::string name = std::to_string(len);
        const auto singles = matrix(sizes, vornsBlockDMatrixInitAlloc_32f, vornsBlockDMatrixFree_32f);
        const auto doubles = matrix(sizes, vornsBlockDMatrixInitAlloc_64f, vornsBlockDMatrixFree_64f);
        const auto integers = matrix(sizes, vornsBlockDMatrixInitAlloc_16s, vornsBlockDMatrixFree_16s);
        addScore(calls, name + " 32f", singles, len, vornsLogGaussSingle_BlockDVar_32f);
        addScore(calls, name + " 32f64f", singles, len, vornsLogGaussSingle_BlockDVar_32f64f);
        addScore(calls, name + " 64f", doubles, len, vornsLogGaussSingle_BlockDVar_64f);
        addScore(calls, name + " 16s32f", integers, len, vornsLogGaussSingle_BlockDVarScaled_16s32f);
        addScore(calls, name + " 16s32s", integers, len, vornsLogGaussSingle_BlockDVar_16s32s_Sfs);
    }
    calls.expectSameAsAlone(200);
}

}  // namespace
