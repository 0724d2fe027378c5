// Gaussian scores of one vector, and block-diagonal contexts.
#include <algorithm>
#include <iterator>

#include "families.h"

namespace verify {
namespace {

const int scaleFactors[] = {-20, -3, -1, 0, 4, 15, 16, 28, 40};

// Sixteen-byte addresses: the double forms look at them.
template <class T>
class Aligned {
public:
    explicit Aligned(const std::vector<T>& values) : block_(values.size() + 16 / sizeof(T)) {
        const auto address = reinterpret_cast<std::uintptr_t>(block_.data());
        data_ = block_.data() + (16 - address % 16) % 16 / sizeof(T);
        std::copy(values.begin(), values.end(), data_);
    }
    const T* data() const { return data_; }

private:
    std::vector<T> block_;
    T* data_;
};

// call(src, mean, var, len, result): ordinary data, and floats of any bit pattern. The variances are above zero.
template <class T, class R, class Call>
void floats(Source& source, Digest& digest, Call call) {
    for (int len : lengths) {
        const Aligned<T> src(source.values<T>(len, -20.0, 20.0)), mean(source.values<T>(len, -20.0, 20.0));
        const Aligned<T> var(source.values<T>(len, 0.01, 4.0));
        R result;
        digest.add(call(src.data(), mean.data(), var.data(), len, &result));
        digest.add(result);
        const Aligned<T> hard(source.patterns<T>(len));
        digest.add(call(hard.data(), mean.data(), var.data(), len, &result));
        digest.add(result);
    }
}

// call(src, mean, var, len, result, scaleFactor): small values, and values over the whole range.
template <class R, class Call>
void fixed(Source& source, Digest& digest, Call call) {
    for (int len : lengths) {
        for (int scaleFactor : scaleFactors) {
            for (int shift : {9, 0}) {
                std::vector<Vorn16s> src = source.values<Vorn16s>(len), mean = source.values<Vorn16s>(len),
                                     var = source.values<Vorn16s>(len);
                for (int j = 0; j < len; ++j) {
                    src[j] = static_cast<Vorn16s>(src[j] >> shift);
                    mean[j] = static_cast<Vorn16s>(mean[j] >> shift);
                    var[j] = static_cast<Vorn16s>((var[j] >> shift) | 1);
                }
                R result;
                digest.add(call(src.data(), mean.data(), var.data(), len, &result, scaleFactor));
                digest.add(result);
            }
        }
    }
}

template <class T>
struct Matrix {
    std::vector<int> sizes;
    std::vector<T> elements;
    std::vector<const T*> rows;
};

// Blocks of 1, 2, 3, ... columns until len is used up.
template <class T>
Matrix<T> growingBlocks(Source& source, int len) {
    Matrix<T> matrix;
    std::size_t elements = 0;
    for (int left = len, size = 1; left > 0; ++size) {
        matrix.sizes.push_back(std::min(size, left));
        left -= matrix.sizes.back();
        elements += static_cast<std::size_t>(matrix.sizes.back()) * static_cast<std::size_t>(matrix.sizes.back());
    }
    matrix.elements = source.values<T>(elements, -2.0, 2.0);
    const T* row = matrix.elements.data();
    for (int size : matrix.sizes) {
        for (int r = 0; r < size; ++r, row += size) matrix.rows.push_back(row);
    }
    return matrix;
}

template <class T, class R, class Context, class Init, class Free, class Call>
void blocks(Source& source, Digest& digest, Init init, Free release, Call call) {
    for (int len : lengths) {
        if (len > 1000) continue;
        const Matrix<T> matrix = growingBlocks<T>(source, len);
        Context* context = nullptr;
        digest.add(init(&context, matrix.rows.data(), matrix.sizes.data(), static_cast<int>(matrix.sizes.size())));
        const std::vector<T> src = source.values<T>(len, -9.0, 9.0), mean = source.values<T>(len, -9.0, 9.0);
        R result;
        digest.add(call(src.data(), mean.data(), context, len, &result));
        digest.add(result);
        digest.add(release(context));
    }
}
template <class R, class Call>
void singleBlocks(Source& source, Digest& digest, Call call) {
    blocks<Vorn32f, R, VornBlockDMatrix_32f>(source, digest, vornsBlockDMatrixInitAlloc_32f, vornsBlockDMatrixFree_32f,
                                             call);
}
template <class Call>
void doubleBlocks(Source& source, Digest& digest, Call call) {
    blocks<Vorn64f, Vorn64f, VornBlockDMatrix_64f>(source, digest, vornsBlockDMatrixInitAlloc_64f,
                                                   vornsBlockDMatrixFree_64f, call);
}
template <class R, class Call>
void fixedBlocks(Source& source, Digest& digest, Call call) {
    blocks<Vorn16s, R, VornBlockDMatrix_16s>(source, digest, vornsBlockDMatrixInitAlloc_16s, vornsBlockDMatrixFree_16s,
                                             call);
}

// What a context of this form scores tells what it holds.
void scoreOfSingle(Source& source, Digest& digest) {
    singleBlocks<Vorn32f>(source, digest, [](auto* x, auto* m, auto* c, int len, auto* r) {
        return vornsLogGaussSingle_BlockDVar_32f(x, m, c, len, r, 1.5f);
    });
}
void scoreOfDouble(Source& source, Digest& digest) {
    doubleBlocks(source, digest, [](auto* x, auto* m, auto* c, int len, auto* r) {
        return vornsLogGaussSingle_BlockDVar_64f(x, m, c, len, r, 1.5);
    });
}
void scoreOfFixed(Source& source, Digest& digest) {
    fixedBlocks<Vorn32f>(source, digest, [](auto* x, auto* m, auto* c, int len, auto* r) {
        return vornsLogGaussSingle_BlockDVarScaled_16s32f(x, m, c, len, r, 1.5f, 6);
    });
}

const Workload workloads[] = {
    {"vornsLogGaussSingle_32f",
     [](Source& source, Digest& digest) {
         floats<Vorn32f, Vorn32f>(source, digest, [](auto* x, auto* m, auto* v, int len, auto* r) {
             return vornsLogGaussSingle_32f(x, m, v, len, r, 1.5f);
         });
     }},
    {"vornsLogGaussSingle_64f",
     [](Source& source, Digest& digest) {
         floats<Vorn64f, Vorn64f>(source, digest, [](auto* x, auto* m, auto* v, int len, auto* r) {
             return vornsLogGaussSingle_64f(x, m, v, len, r, 1.5);
         });
     }},
    {"vornsLogGaussSingle_32f64f",
     [](Source& source, Digest& digest) {
         floats<Vorn32f, Vorn64f>(source, digest, [](auto* x, auto* m, auto* v, int len, auto* r) {
             return vornsLogGaussSingle_32f64f(x, m, v, len, r, 1.5);
         });
     }},
    {"vornsLogGaussSingle_Scaled_16s32f",
     [](Source& source, Digest& digest) {
         fixed<Vorn32f>(source, digest, [](auto* x, auto* m, auto* v, int len, auto* r, int sf) {
             return vornsLogGaussSingle_Scaled_16s32f(x, m, v, len, r, 1.5f, sf);
         });
     }},
    {"vornsLogGaussSingle_16s32s_Sfs",
     [](Source& source, Digest& digest) {
         fixed<Vorn32s>(source, digest, [](auto* x, auto* m, auto* v, int len, auto* r, int sf) {
             return vornsLogGaussSingle_16s32s_Sfs(x, m, v, len, r, 15, sf);
         });
     }},
    {"vornsLogGaussSingle_LowScaled_16s32f",
     [](Source& source, Digest& digest) {
         fixed<Vorn32f>(source, digest, [](auto* x, auto* m, auto* v, int len, auto* r, int sf) {
             return vornsLogGaussSingle_LowScaled_16s32f(x, m, v, len, r, 1.5f, sf);
         });
     }},
    {"vornsLogGaussSingle_Low_16s32s_Sfs",
     [](Source& source, Digest& digest) {
         fixed<Vorn32s>(source, digest, [](auto* x, auto* m, auto* v, int len, auto* r, int sf) {
             return vornsLogGaussSingle_Low_16s32s_Sfs(x, m, v, len, r, 15, sf);
         });
     }},
    {"vornsLogGaussSingle_IdVar_32f",
     [](Source& source, Digest& digest) {
         floats<Vorn32f, Vorn32f>(source, digest, [](auto* x, auto* m, auto*, int len, auto* r) {
             return vornsLogGaussSingle_IdVar_32f(x, m, len, r, 1.5f);
         });
     }},
    {"vornsLogGaussSingle_IdVar_64f",
     [](Source& source, Digest& digest) {
         floats<Vorn64f, Vorn64f>(source, digest, [](auto* x, auto* m, auto*, int len, auto* r) {
             return vornsLogGaussSingle_IdVar_64f(x, m, len, r, 1.5);
         });
     }},
    {"vornsLogGaussSingle_IdVar_32f64f",
     [](Source& source, Digest& digest) {
         floats<Vorn32f, Vorn64f>(source, digest, [](auto* x, auto* m, auto*, int len, auto* r) {
             return vornsLogGaussSingle_IdVar_32f64f(x, m, len, r, 1.5);
         });
     }},
    {"vornsLogGaussSingle_IdVarScaled_16s32f",
     [](Source& source, Digest& digest) {
         fixed<Vorn32f>(source, digest, [](auto* x, auto* m, auto*, int len, auto* r, int sf) {
             return vornsLogGaussSingle_IdVarScaled_16s32f(x, m, len, r, 1.5f, sf);
         });
     }},
    {"vornsLogGaussSingle_IdVar_16s32s_Sfs",
     [](Source& source, Digest& digest) {
         fixed<Vorn32s>(source, digest, [](auto* x, auto* m, auto*, int len, auto* r, int sf) {
             return vornsLogGaussSingle_IdVar_16s32s_Sfs(x, m, len, r, 15, sf);
         });
     }},
    {"vornsLogGaussSingle_IdVarLowScaled_16s32f",
     [](Source& source, Digest& digest) {
         fixed<Vorn32f>(source, digest, [](auto* x, auto* m, auto*, int len, auto* r, int sf) {
             return vornsLogGaussSingle_IdVarLowScaled_16s32f(x, m, len, r, 1.5f, sf);
         });
     }},
    {"vornsLogGaussSingle_IdVarLow_16s32s_Sfs",
     [](Source& source, Digest& digest) {
         fixed<Vorn32s>(source, digest, [](auto* x, auto* m, auto*, int len, auto* r, int sf) {
             return vornsLogGaussSingle_IdVarLow_16s32s_Sfs(x, m, len, r, 15, sf);
         });
     }},
    {"vornsLogGaussSingle_DirectVar_32f",
     [](Source& source, Digest& digest) {
         floats<Vorn32f, Vorn32f>(source, digest, [](auto* x, auto* m, auto* v, int len, auto* r) {
             return vornsLogGaussSingle_DirectVar_32f(x, m, v, len, r, 1.5f);
         });
     }},
    {"vornsLogGaussSingle_DirectVar_64f",
     [](Source& source, Digest& digest) {
         floats<Vorn64f, Vorn64f>(source, digest, [](auto* x, auto* m, auto* v, int len, auto* r) {
             return vornsLogGaussSingle_DirectVar_64f(x, m, v, len, r, 1.5);
         });
     }},
    {"vornsLogGaussSingle_DirectVar_32f64f",
     [](Source& source, Digest& digest) {
         floats<Vorn32f, Vorn64f>(source, digest, [](auto* x, auto* m, auto* v, int len, auto* r) {
             return vornsLogGaussSingle_DirectVar_32f64f(x, m, v, len, r, 1.5);
         });
     }},
    {"vornsLogGaussSingle_DirectVarScaled_16s32f",
     [](Source& source, Digest& digest) {
         fixed<Vorn32f>(source, digest, [](auto* x, auto* m, auto* v, int len, auto* r, int sf) {
             return vornsLogGaussSingle_DirectVarScaled_16s32f(x, m, v, len, r, 1.5f, sf);
         });
     }},
    {"vornsLogGaussSingle_DirectVar_16s32s_Sfs",
     [](Source& source, Digest& digest) {
         fixed<Vorn32s>(source, digest, [](auto* x, auto* m, auto* v, int len, auto* r, int sf) {
             return vornsLogGaussSingle_DirectVar_16s32s_Sfs(x, m, v, len, r, 15, sf);
         });
     }},
    {"vornsLogGaussSingle_BlockDVar_32f", scoreOfSingle},
    {"vornsLogGaussSingle_BlockDVar_64f", scoreOfDouble},
    {"vornsLogGaussSingle_BlockDVar_32f64f",
     [](Source& source, Digest& digest) {
         singleBlocks<Vorn64f>(source, digest, [](auto* x, auto* m, auto* c, int len, auto* r) {
             return vornsLogGaussSingle_BlockDVar_32f64f(x, m, c, len, r, 1.5);
         });
     }},
    {"vornsLogGaussSingle_BlockDVarScaled_16s32f", scoreOfFixed},
    {"vornsLogGaussSingle_BlockDVar_16s32s_Sfs",
     [](Source& source, Digest& digest) {
         fixedBlocks<Vorn32s>(source, digest, [](auto* x, auto* m, auto* c, int len, auto* r) {
             return vornsLogGaussSingle_BlockDVar_16s32s_Sfs(x, m, c, len, r, 15, 6);
         });
     }},
    {"vornsBlockDMatrixInitAlloc_32f", scoreOfSingle},
    {"vornsBlockDMatrixInitAlloc_64f", scoreOfDouble},
    {"vornsBlockDMatrixInitAlloc_16s", scoreOfFixed},
    {"vornsBlockDMatrixFree_32f", scoreOfSingle},
    {"vornsBlockDMatrixFree_64f", scoreOfDouble},
    {"vornsBlockDMatrixFree_16s", scoreOfFixed},
};

}  // namespace

Family gaussSingleWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
