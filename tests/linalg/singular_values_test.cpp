// Singular value decomposition and its row and column operations, bit for bit beside the plain model.
#include "linalg/singular_values.h"

#include <gtest/gtest.h>
#include <sys/mman.h>

#include <limits>
#include <memory>

#include "support/allocation.h"
#include "support/expect.h"

namespace {

using namespace test;
using model::SingularValues;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

// Status, values and factors are those of the model, and nothing else was written.
::testing::AssertionResult isAsModelled(const Matrix& a, int height, int width, const Form& form, int nIter,
                                        SingularValues* seen = nullptr) {
    SingularValues expected(a, height, width);
    const VornStatus status = form.sorts ? expected.decomposeSorted(nIter) : expected.decompose(nIter);
    if (seen != nullptr) *seen = expected;
    Decomposition actual(form, a, height, width);
    const VornStatus got = actual.run(nIter);
    const auto failure = [&] {
        return ::testing::AssertionFailure() << form.name() << " of " << height << " x " << width << ", step " << a.step
                                             << ", nIter " << nIter << ": ";
    };
    if (got != status) return failure() << "status " << got << ", expected " << status;
    if (const auto same = sameBits(actual.w.data(), expected.w.data(), width); !same)
        return failure() << "w: " << same.message();
    for (int column = 0; column < width; ++column) {
        for (int row = 0; row < height; ++row) {
            if (!same(actual.u(row, column), expected.u(row, column))) {
                return failure() << "u[" << row << "][" << column << "]: got " << show(actual.u(row, column))
                                 << ", expected " << show(expected.u(row, column));
            }
        }
        for (int row = 0; row < width; ++row) {
            if (!same(actual.v(row, column), expected.v(row, column))) {
                return failure() << "v[" << row << "][" << column << "]: got " << show(actual.v(row, column))
                                 << ", expected " << show(expected.v(row, column));
            }
        }
    }
    if (!actual.surroundingsUntouched()) return failure() << "something else was written";
    return ::testing::AssertionSuccess();
}

TEST(SingularValues, AreThoseOfTheModelInEveryShape) {
    for (int width = 1; width <= 20; ++width) {
        for (int height = 1; height <= 20; ++height) {
            const int step = width + (height + width) % 3;
            const Matrix a = uniformMatrix({height, width, step}, 100 * width + height);
            const Form& form = forms[(3 * height + width) % std::size(forms)];
            EXPECT_TRUE(isAsModelled(a, height, width, form, 30));
        }
    }
}

TEST(SingularValues, AreThoseOfTheModelAroundTheBlocksOfTheKernels) {
    for (int width : {23, 31, 32, 33, 39, 47, 48, 49, 63, 64, 65, 70, 96, 97}) {
        for (int height : {1, width / 2, width - 1, width, 2 * width + 5}) {
            const Matrix a = uniformMatrix({height, width, width + 1}, 1000 * width + height);
            EXPECT_TRUE(isAsModelled(a, height, width, forms[(height + width) % std::size(forms)], 30));
        }
    }
}

TEST(SingularValues, AreThoseOfTheModelInEveryForm) {
    for (const Form& form : forms) {
        for (Shape shape : {Shape{7, 5, 5}, Shape{5, 7, 9}, Shape{70, 39, 40}, Shape{66, 67, 67}, Shape{100, 13, 16}})
            EXPECT_TRUE(isAsModelled(uniformMatrix(shape, shape.height), shape.height, shape.width, form, 30));
    }
}

// More rotations than wait at a time, on more rows than are rotated at a time.
TEST(SingularValues, AreThoseOfTheModelWhereRotationsAreDoneInParts) {
    const Matrix tall = uniformMatrix({311, 41, 43}, 41), square = uniformMatrix({150, 150, 150}, 150);
    for (const Form& form : {forms[0], forms[7]}) {
        EXPECT_TRUE(isAsModelled(tall, 311, 41, form, 30));
        EXPECT_TRUE(isAsModelled(square, 150, 150, form, 30));
    }
}

TEST(SingularValues, OfMatricesThatAreSpecial) {
    for (const Form& form : {blockForm, sortingForm}) {
        for (int rank : {1, 2, 5, 12}) {
            EXPECT_TRUE(isAsModelled(matrixOfRank(rank, 40, 13, rank), 40, 13, form, 30)) << "rank " << rank;
            EXPECT_TRUE(isAsModelled(matrixOfRank(rank, 13, 40, rank), 13, 40, form, 30)) << "rank " << rank;
        }
        for (int width : {1, 2, 3, 6, 10, 13, 20}) {
            EXPECT_TRUE(isAsModelled(hilbert(width, width), width, width, form, 30));
            EXPECT_TRUE(isAsModelled(hilbert(2 * width, width), 2 * width, width, form, 30));
        }
        EXPECT_TRUE(isAsModelled(frames(98, 39), 98, 39, form, 30));
        for (double by : {0x1p-1022, 0x1p-600, 0x1p-500, 0x1p-400, 0x1p400, 0x1p511, 0x1p1000, 0x1p1022}) {
            for (Shape shape : {Shape{1, 1, 1}, Shape{5, 1, 1}, Shape{1, 5, 5}, Shape{6, 4, 4}, Shape{3, 4, 4}})
                EXPECT_TRUE(isAsModelled(scaled(uniformMatrix(shape, 8), by), shape.height, shape.width, form, 30));
        }
    }
}

// Few different values, many zeros: negligible elements and rotations that cancel.
TEST(SingularValues, OfSparseMatrices) {
    int cancellations = 0, sweeps = 0;
    for (int seed = 0; seed < 400; ++seed) {
        Random random(seed);
        const int height = static_cast<int>(random.integer(1, 12)), width = static_cast<int>(random.integer(1, 12));
        Matrix a(height, width);
        a.elements = random.pick<double>({0.0, 0.0, 0.0, 0.0, -0.0, 1.0, -1.0, 2.0}, a.elements.size());
        SingularValues seen(a, height, width);
        EXPECT_TRUE(isAsModelled(a, height, width, forms[seed % std::size(forms)], 30, &seen)) << "seed " << seed;
        cancellations += seen.cancellations;
        sweeps += seen.sweeps;
    }
    EXPECT_GT(cancellations, 20);
    EXPECT_GT(sweeps, 1000);
}

// A bidiagonal matrix whose diagonal has zeros among values that the iteration has to separate.
TEST(SingularValues, OfBidiagonalMatricesWithZerosOnTheDiagonal) {
    int cancellations = 0;
    for (int width = 2; width <= 24; ++width) {
        for (int zero = 0; zero < width; ++zero) {
            Random random(97 * width + zero);
            Matrix a(width + 2, width);
            for (int i = 0; i < width; ++i) {
                a(i, i) = i == zero ? 0.0 : random.uniform(0.5, 2.0);
                if (i > 0) a(i - 1, i) = random.uniform(-2.0, 2.0);
            }
            SingularValues seen(a, width + 2, width);
            EXPECT_TRUE(isAsModelled(a, width + 2, width, forms[zero % std::size(forms)], 30, &seen));
            cancellations += seen.cancellations;
        }
    }
    EXPECT_GT(cancellations, 50);
}

TEST(SingularValues, OfHardBitPatterns) {
    const auto hard = hardFloats<double>();
    for (int seed = 0; seed < 300; ++seed) {
        Random random(seed);
        const int height = static_cast<int>(random.integer(1, 9)), width = static_cast<int>(random.integer(1, 9));
        Matrix a(height, width);
        if (seed % 3 == 0) {
            for (double& x : a.elements) x = random.anyBits<double>();
        } else {
            a.elements = random.doubles(a.elements.size(), -1.0, 1.0);
            for (int count = seed % 5; count >= 0; --count)
                a.elements[random.integer(0, static_cast<std::int64_t>(a.elements.size()) - 1)] =
                    random.pick(hard, 1)[0];
        }
        EXPECT_TRUE(isAsModelled(a, height, width, forms[seed % std::size(forms)], 12)) << "seed " << seed;
    }
}

// The state of an iteration that was cut off, after each number of rounds.
TEST(SingularValues, HoldTheirStateWhereTheyDoNotConverge) {
    int failures = 0, successes = 0;
    for (int nIter = 1; nIter <= 6; ++nIter) {
        for (Shape shape : {Shape{2, 2, 2}, Shape{9, 6, 8}, Shape{6, 9, 9}, Shape{40, 20, 20}, Shape{80, 70, 70}}) {
            const Matrix a = uniformMatrix(shape, 5);
            for (const Form& form : {forms[0], forms[3], forms[5], forms[6]}) {
                SingularValues seen(a, shape.height, shape.width);
                EXPECT_TRUE(isAsModelled(a, shape.height, shape.width, form, nIter, &seen));
                (seen.decompose(nIter) == vornStsNoErr ? successes : failures) += 1;
            }
        }
    }
    EXPECT_GT(failures, 20);
}

TEST(SingularValues, OneColumnIsNormalised) {
    for (const Form& form : forms) {
        Decomposition result(form, Matrix{uniformMatrix({2, 1, 1}, 1)}, 2, 1);
        Matrix a(2, 1);
        a(0, 0) = 3.0, a(1, 0) = -4.0;
        Decomposition column(form, a, 2, 1);
        ASSERT_EQ(column.run(), vornStsNoErr);
        EXPECT_DOUBLE_EQ(column.w[0], 5.0);
        EXPECT_EQ(std::fabs(column.v(0, 0)), 1.0);
        EXPECT_DOUBLE_EQ(column.u(0, 0) * column.v(0, 0), 0.6);
        EXPECT_DOUBLE_EQ(column.u(1, 0) * column.v(0, 0), -0.8);
    }
}

TEST(SingularValues, OfAZeroMatrixAreZeroAndItsFactorsTheIdentity) {
    for (const Form& form : forms) {
        for (Shape shape : {Shape{1, 1, 1}, Shape{5, 3, 3}, Shape{3, 5, 5}, Shape{70, 66, 66}}) {
            Decomposition zero(form, Matrix(shape.height, shape.step), shape.height, shape.width);
            ASSERT_EQ(zero.run(1), vornStsNoErr);
            for (int c = 0; c < shape.width; ++c) {
                EXPECT_TRUE(same(zero.w[c], 0.0));
                for (int r = 0; r < shape.height; ++r) EXPECT_TRUE(same(zero.u(r, c), r == c ? 1.0 : 0.0));
                for (int r = 0; r < shape.width; ++r) EXPECT_TRUE(same(zero.v(r, c), r == c ? 1.0 : 0.0));
            }
        }
    }
}

TEST(SingularValues, OfADiagonalMatrixNeedNoSweep) {
    const double diagonal[] = {2.0, -7.0, 0.0, 5.0};
    const double asConverged[] = {2.0, 7.0, 0.0, 5.0}, descending[] = {7.0, 5.0, 2.0, 0.0};
    for (const Form& form : forms) {
        for (int height : {4, 6}) {
            Matrix a(height, 4);
            for (int i = 0; i < 4; ++i) a(i, i) = diagonal[i];
            Decomposition result(form, a, height, 4);
            ASSERT_EQ(result.run(1), vornStsNoErr);
            EXPECT_TRUE(sameBits(result.w.data(), form.sorts ? descending : asConverged, 4)) << form.name();
            // Signs stand in the columns of V: a reflection turns each value that is not zero.
            for (int c = 0; c < 4; ++c) {
                int place = c;
                for (int i = 0; form.sorts && i < 4; ++i) {
                    if (asConverged[i] == descending[c]) place = i;
                }
                for (int r = 0; r < 4; ++r) {
                    EXPECT_EQ(result.u(r, c) * result.v(r, c), r == place ? (diagonal[r] < 0.0 ? -1.0 : 1.0) : 0.0);
                    EXPECT_EQ(std::fabs(result.v(r, c)), r == place ? 1.0 : 0.0);
                }
            }
        }
    }
}

TEST(SingularValues, EqualOnesStayInTheirOrder) {
    Matrix a(4, 4);
    const double diagonal[] = {1.0, 3.0, 1.0, 3.0};
    for (int i = 0; i < 4; ++i) a(i, i) = diagonal[i];
    Decomposition result(sortingForm, a, 4, 4);
    ASSERT_EQ(result.run(1), vornStsNoErr);
    const int places[] = {1, 3, 2, 0};  // a selection sort: the first 1 went where the first 3 stood, and on from there
    for (int c = 0; c < 4; ++c) {
        EXPECT_EQ(result.w[c], c < 2 ? 3.0 : 1.0);
        EXPECT_EQ(std::fabs(result.u(places[c], c)), 1.0) << c;
    }
}

TEST(SingularValues, ThatNeedASweepAreRefusedInOneRound) {
    Matrix a(2, 2);
    a(0, 0) = 1.0, a(0, 1) = 2.0, a(1, 0) = 3.0, a(1, 1) = 4.0;
    for (const Form& form : forms) {
        Decomposition refused(form, a, 2, 2), done(form, a, 2, 2);
        EXPECT_EQ(refused.run(1), vornStsSvdNoConvergeErr);
        EXPECT_EQ(done.run(30), vornStsNoErr);
        EXPECT_NEAR(done.w[0] * done.w[1], 2.0, 1e-14);                           // |det A|
        EXPECT_NEAR(done.w[0] * done.w[0] + done.w[1] * done.w[1], 30.0, 1e-13);  // the sum of the squares
    }
}

TEST(SingularValues, OfWhatIsNotANumberDoNotConvergeAndTakeNoTime) {
    for (double bad : {notANumber, infinity, -infinity}) {
        for (Shape shape : {Shape{1, 2, 2}, Shape{2, 2, 2}, Shape{3, 5, 5}, Shape{6, 4, 4}, Shape{70, 66, 66}}) {
            for (int at : {0, shape.width - 1, shape.height * shape.width / 2, shape.height * shape.width - 1}) {
                for (double others : {0.0, 1.0}) {
                    Matrix a = scaled(uniformMatrix(shape, 2), others);
                    a.elements[at] = bad;
                    for (const Form& form : {forms[0], forms[7]}) {
                        Decomposition result(form, a, shape.height, shape.width);
                        EXPECT_EQ(result.run(std::numeric_limits<int>::max()), vornStsSvdNoConvergeErr)
                            << bad << " at " << at << " of " << shape.height << " x " << shape.width;
                    }
                }
            }
        }
        Matrix column(3, 1);
        column(1, 0) = bad;
        Decomposition result(blockForm, column, 3, 1);
        EXPECT_EQ(result.run(), vornStsNoErr);
        EXPECT_TRUE(std::isnan(result.w[0]));
    }
}

// The iteration ends on any data, and so does a caller who sets no limit.
TEST(SingularValues, EndOnAnyBits) {
    for (int seed = 0; seed < 300; ++seed) {
        Random random(seed);
        const int height = static_cast<int>(random.integer(1, 8)), width = static_cast<int>(random.integer(2, 8));
        Matrix a(height, width);
        for (double& x : a.elements)
            x = std::ldexp(random.uniform(-1.0, 1.0), static_cast<int>(random.integer(-1074, 1023)));
        Decomposition result(forms[seed % std::size(forms)], a, height, width);
        const VornStatus status = result.run(1000);
        EXPECT_TRUE(status == vornStsNoErr || status == vornStsSvdNoConvergeErr);
    }
}

TEST(SingularValues, PaddingIsCopiedToUAndStaysInV) {
    const Shape shape = {6, 4, 9};
    const Matrix a = uniformMatrix(shape, 3);
    for (bool sorts : {false, true}) {
        Guarded<double> source(a.elements), u(54), w(4), v(4 * 9), before(4 * 9);
        v.assign(uniformMatrix({4, 9, 9}, 4).elements);
        before.assign(v.values());
        ASSERT_EQ((sorts ? vornsSVDSort_64f_D2 : vornsSVD_64f_D2)(source, u, 6, w, v, 4, 9, 30), vornStsNoErr);
        EXPECT_TRUE(sameBits(source.values(), a.elements));
        for (int r = 0; r < 6; ++r) EXPECT_TRUE(sameBits(&u[r * 9 + 4], &a.elements[r * 9 + 4], 5)) << r;
        for (int r = 0; r < 4; ++r) EXPECT_TRUE(sameBits(&v[r * 9 + 4], &before[r * 9 + 4], 5)) << r;
    }
}

TEST(SingularValues, SourceMayBeU) {
    const Matrix a = uniformMatrix({9, 5, 6}, 3);
    SingularValues expected(a, 9, 5);
    ASSERT_EQ(expected.decompose(30), vornStsNoErr);
    Guarded<double> u(a.elements), w(5), v(4 * 6 + 5);
    ASSERT_EQ(vornsSVD_64f_D2(u, u, 9, w, v, 5, 6, 30), vornStsNoErr);
    EXPECT_TRUE(sameBits(u.values(), expected.u.elements));
    EXPECT_TRUE(sameBits(w.values(), expected.w));
}

TEST(SingularValues, BitsDependOnNoAddress) {
    for (Shape shape : {Shape{12, 7, 7}, Shape{40, 19, 20}}) {
        const Matrix a = uniformMatrix(shape, 6);
        SingularValues expected(a, shape.height, shape.width);
        ASSERT_EQ(expected.decompose(30), vornStsNoErr);
        for (std::size_t offset = 0; offset < 64; offset += 8) {
            Offset<double> u(a.elements.size(), offset), w(shape.width, (offset * 3 + 8) % 64),
                v(static_cast<std::size_t>(shape.width) * shape.step, (offset * 5 + 24) % 64);
            u.assign(a.elements);
            ASSERT_EQ(vornsSVD_64f_D2_I(u, shape.height, w, v, shape.width, shape.step, 30), vornStsNoErr);
            EXPECT_TRUE(sameBits(u.values(), expected.u.elements)) << offset;
            EXPECT_TRUE(sameBits(w.values(), expected.w)) << offset;
        }
    }
}

TEST(SingularValues, SmallWidthsNeedNoMemoryAndOthersFailCleanly) {
    if (!FailAllocation::available()) GTEST_SKIP() << "the sanitizer's allocator stands in the place of ours";
    for (const Form& form : forms) {
        for (int width : {1, 64, 65, 100}) {
            const Matrix a = uniformMatrix({70, width, width}, width);
            Decomposition counted(form, a, 70, width), failing(form, a, 70, width);
            {
                FailAllocation count(0);
                EXPECT_EQ(counted.run(), vornStsNoErr);
                EXPECT_EQ(count.calls(), width <= 64 ? 0 : 1);
                EXPECT_EQ(count.outstanding(), 0);
            }
            if (width <= 64) continue;
            FailAllocation fail(1);
            EXPECT_EQ(failing.run(), vornStsSvdNoConvergeErr);
            EXPECT_EQ(fail.outstanding(), 0);
            EXPECT_TRUE(failing.resultsUntouched());
            if (form.inPlace && form.layout == Layout::Block) {
                EXPECT_TRUE(sameBits(failing.uBlock().values(), a.elements));
            }
        }
    }
}

// Sizes whose products no int holds: rows that lie gigabytes apart, and a step near the limit with one row.
TEST(SingularValues, LargeStepsAreFormedIn64Bits) {
    constexpr int step = 1 << 28, height = 3;  // 3 x 2^28 doubles are 6 GB of addresses, of which three pages are used
    double* const u =
        static_cast<double*>(mmap(nullptr, sizeof(double) * ((std::size_t{height} - 1) * step + 2),
                                  PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0));
    double* const v =
        static_cast<double*>(mmap(nullptr, sizeof(double) * (std::size_t{step} + 2), PROT_READ | PROT_WRITE,
                                  MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0));
    if (u == MAP_FAILED || v == MAP_FAILED) GTEST_SKIP() << "no room for 8 GB of addresses";
    const Matrix a = uniformMatrix({height, 2, 2}, 9);
    SingularValues expected(a, height, 2);
    ASSERT_EQ(expected.decompose(30), vornStsNoErr);
    for (int r = 0; r < height; ++r) {
        for (int c = 0; c < 2; ++c) u[std::size_t(r) * step + c] = a(r, c);
    }
    double w[2];
    EXPECT_EQ(vornsSVD_64f_D2_I(u, height, w, v, 2, step, 30), vornStsNoErr);
    EXPECT_TRUE(sameBits(w, expected.w.data(), 2));
    for (int r = 0; r < height; ++r) {
        for (int c = 0; c < 2; ++c) EXPECT_TRUE(same(u[std::size_t(r) * step + c], expected.u(r, c)));
    }
    munmap(u, sizeof(double) * ((std::size_t{height} - 1) * step + 2));
    munmap(v, sizeof(double) * (std::size_t{step} + 2));
}

// More columns than any memory has room for.
TEST(SingularValues, WidthsThatNoMemoryHoldsAreRefused) {
    Guarded<double> u(1), w(1), v(1);
    double* rows[] = {u};
    constexpr int most = std::numeric_limits<int>::max();
    EXPECT_EQ(vornsSVD_64f_D2_I(u, 1, w, v, most, most, 30), vornStsSvdNoConvergeErr);
    EXPECT_EQ(vornsSVDSort_64f_D2L_I(rows, 1, w, rows, most, 30), vornStsSvdNoConvergeErr);
    EXPECT_TRUE(u.untouched() && w.untouched() && v.untouched());
}

TEST(SingularValues, OrderOfChecks) {
    struct Arguments {
        std::shared_ptr<Guarded<double>> src, u, w, v;
        std::vector<double*> rows;
        const double* srcBlock;
        double *uBlock, *wBlock, *vBlock;
        double* const* uList;
        double* const* vList;
        const double* const* srcList;
        int height = 2, width = 2, step = 2, nIter = 30;
    };
    const auto make = [] {
        Arguments a;
        a.src = std::make_shared<Guarded<double>>(std::vector<double>{1.0, 2.0, 3.0, 4.0});
        for (auto* x : {&a.u, &a.v}) *x = std::make_shared<Guarded<double>>(4);
        a.w = std::make_shared<Guarded<double>>(2);
        a.srcBlock = a.src->data(), a.uBlock = a.u->data(), a.wBlock = a.w->data(), a.vBlock = a.v->data();
        a.rows = {a.src->data(), a.src->data() + 2, a.uBlock, a.uBlock + 2, a.vBlock, a.vBlock + 2};
        a.srcList = a.rows.data(), a.uList = a.rows.data() + 2, a.vList = a.rows.data() + 4;
        return a;
    };
    for (const Form& form : forms) {
        SCOPED_TRACE(form.name());
        const bool list = form.layout == Layout::List;
        const auto good = [&] {
            Arguments a = make();
            // In place the matrix is U itself, and stays when nothing is written.
            if (form.inPlace) a.u->assign({1.0, 2.0, 3.0, 4.0});
            return a;
        };
        // The vector of rows moves with the arguments, so that its addresses hold.
        const std::function<VornStatus(Arguments&)> call = [&](Arguments& a) {
            if (list && form.inPlace)
                return (form.sorts ? vornsSVDSort_64f_D2L_I : vornsSVD_64f_D2L_I)(a.uList, a.height, a.wBlock, a.vList,
                                                                                  a.width, a.nIter);
            if (list)
                return (form.sorts ? vornsSVDSort_64f_D2L : vornsSVD_64f_D2L)(a.srcList, a.uList, a.height, a.wBlock,
                                                                              a.vList, a.width, a.nIter);
            if (form.inPlace)
                return (form.sorts ? vornsSVDSort_64f_D2_I : vornsSVD_64f_D2_I)(a.uBlock, a.height, a.wBlock, a.vBlock,
                                                                                a.width, a.step, a.nIter);
            return (form.sorts ? vornsSVDSort_64f_D2 : vornsSVD_64f_D2)(a.srcBlock, a.uBlock, a.height, a.wBlock,
                                                                        a.vBlock, a.width, a.step, a.nIter);
        };
        std::vector<Rule<Arguments>> rules;
        if (!form.inPlace)
            rules.push_back(
                {"src", vornStsNullPtrErr, [](Arguments& a) { a.srcBlock = nullptr, a.srcList = nullptr; }});
        rules.push_back({"U", vornStsNullPtrErr, [](Arguments& a) { a.uBlock = nullptr, a.uList = nullptr; }});
        rules.push_back({"W", vornStsNullPtrErr, [](Arguments& a) { a.wBlock = nullptr; }});
        rules.push_back({"V", vornStsNullPtrErr, [](Arguments& a) { a.vBlock = nullptr, a.vList = nullptr; }});
        rules.push_back({"height", vornStsSizeErr, [](Arguments& a) { a.height = 0; }});
        rules.push_back({"height", vornStsSizeErr, [](Arguments& a) { a.height = -1; }});
        rules.push_back({"width", vornStsSizeErr, [](Arguments& a) { a.width = 0; }});
        rules.push_back({"nIter", vornStsSizeErr, [](Arguments& a) { a.nIter = 0; }});
        if (!list) rules.push_back({"step", vornStsSizeErr, [](Arguments& a) { a.step = a.width - 1; }});
        const std::function<bool(Arguments&)> untouched = [&](Arguments& a) {
            return a.w->untouched() && a.v->untouched() &&
                   (form.inPlace ? (*a.u)[0] == 1.0 && (*a.u)[3] == 4.0 : a.u->untouched());
        };
        expectCheckOrder<Arguments>(good, call, untouched, rules);
    }
}

// ---- Operations on single columns and rows.

struct Rows {
    explicit Rows(const Matrix& a, int height, int width) {
        for (int r = 0; r < height; ++r) {
            rows.emplace_back(width);
            for (int c = 0; c < width; ++c) rows.back()[c] = a(r, c);
        }
        for (auto& row : rows) pointers.push_back(row.data());
    }
    ::testing::AssertionResult are(const Matrix& a) const {
        for (std::size_t r = 0; r < rows.size(); ++r) {
            if (const auto same = sameBits(rows[r].data(), &a.elements[r * a.step], rows[r].size()); !same)
                return ::testing::AssertionFailure() << "row " << r << ": " << same.message();
            if (!rows[r].surroundingsUntouched()) return ::testing::AssertionFailure() << "written beside row " << r;
        }
        return ::testing::AssertionSuccess();
    }
    double* const* data() const { return pointers.data(); }

    std::vector<Guarded<double>> rows;
    std::vector<double*> pointers;
};

Matrix hardMatrix(int height, int width, bool hard, std::uint64_t seed) {
    Matrix a = uniformMatrix({height, width, width}, seed, -100.0, 100.0);
    if (hard) a.elements = Random(seed).pick(hardFloats<double>(), a.elements.size());
    return a;
}

TEST(ColumnOperations, AreThoseOfTheModel) {
    for (int height = 1; height <= 70; ++height) {
        for (bool hard : {false, true}) {
            Random random(height);
            const int width = static_cast<int>(random.integer(1, 9));
            const int row = static_cast<int>(random.integer(0, height - 1));
            const int col1 = static_cast<int>(random.integer(0, width - 1));
            const int col2 = static_cast<int>(random.integer(0, width - 1));
            const double val = random.uniform(-2.0, 2.0), c = random.uniform(-1.0, 1.0), s = random.uniform(-1.0, 1.0);
            const Matrix a = hardMatrix(height, width, hard, 10 * height);
            SCOPED_TRACE("height " + std::to_string(height));

            Guarded<double> dst(1);
            Matrix expected = a;
            Rows x(a, height, width);
            EXPECT_EQ(vornsSumColumnAbs_64f_D2L(x.data(), width, height, dst, col1, row), vornStsNoErr);
            EXPECT_TRUE(same(dst[0], model::sumColumnAbs(a, height, col1, row)));
            EXPECT_EQ(vornsDotProdColumn_64f_D2L(x.data(), width, height, dst, col1, col2, row), vornStsNoErr);
            EXPECT_TRUE(same(dst[0], model::dotProdColumn(a, height, col1, col2, row)));
            EXPECT_TRUE(x.are(a));

            EXPECT_EQ(vornsSumColumnSqr_64f_D2L(x.data(), width, height, dst, col1, row, val), vornStsNoErr);
            EXPECT_TRUE(same(dst[0], model::sumColumnSqr(expected, height, col1, row, val)));
            EXPECT_TRUE(x.are(expected));
            EXPECT_EQ(vornsAddMulColumn_64f_D2L(x.data(), width, height, col1, col2, row, val), vornStsNoErr);
            model::addMulColumn(expected, height, col1, col2, row, val);
            EXPECT_TRUE(x.are(expected));
            EXPECT_EQ(vornsMulColumn_64f_D2L(x.data(), width, height, col2, row, val), vornStsNoErr);
            model::mulColumn(expected, height, col2, row, val);
            EXPECT_TRUE(x.are(expected));
            EXPECT_EQ(vornsQRTransColumn_64f_D2L(x.data(), width, height, col1, col2, c, s), vornStsNoErr);
            model::rotateColumns(expected, height, col1, col2, c, s);
            EXPECT_TRUE(x.are(expected));
        }
    }
}

TEST(RowOperations, AreThoseOfTheModelAtEveryAddress) {
    for (int len = 1; len <= 70; ++len) {
        for (bool hard : {false, true}) {
            const std::vector<double> a = hardMatrix(1, len, hard, len).elements,
                                      b = hardMatrix(1, len, hard, 999 + len).elements;
            for (std::size_t offset : {0, 8, 16, 24, 40, 56}) {
                SCOPED_TRACE(std::to_string(len) + " at " + std::to_string(offset));
                Offset<double> x(len, offset), y(len, (offset + 8 * (len % 3)) % 64);
                x.assign(a), y.assign(b);
                double dst = 0.0;
                EXPECT_EQ(vornsSumRowAbs_64f(x, len, &dst), vornStsNoErr);
                EXPECT_TRUE(same(dst, model::sumRowAbs(a.data(), len)));
                EXPECT_TRUE(sameBits(x.values(), a));

                auto expected = b;
                model::addMulRow(a.data(), expected.data(), len, -1.75);
                EXPECT_EQ(vornsAddMulRow_64f(x, y, len, -1.75), vornStsNoErr);
                EXPECT_TRUE(sameBits(y.values(), expected));
                const double sum = model::sumRowSqr(expected.data(), len, 0.3);
                EXPECT_EQ(vornsSumRowSqr_64f(y, len, &dst, 0.3), vornStsNoErr);
                EXPECT_TRUE(same(dst, sum));
                EXPECT_TRUE(sameBits(y.values(), expected));
                EXPECT_TRUE(x.surroundingsUntouched() && y.surroundingsUntouched());
            }
            Guarded<double> x(a), y(b);
            double dst = 0.0;
            EXPECT_EQ(vornsSumRowAbs_64f(x, len, &dst), vornStsNoErr);
            EXPECT_EQ(vornsAddMulRow_64f(x, y, len, 2.0), vornStsNoErr);
            EXPECT_EQ(vornsAddMulRow_64f(x, x, len, 2.0), vornStsNoErr);  // in place: three times itself
            for (int i = 0; i < len; ++i) EXPECT_TRUE(same(x[i], a[i] + 2.0 * a[i]));
            EXPECT_EQ(vornsSumRowSqr_64f(y, len, &dst, 2.0), vornStsNoErr);
        }
    }
}

TEST(ColumnOperations, SumsTakeTheRowsOneByOne) {
    // 1 is lost beside 2^53 unless it comes first; two lanes would keep it.
    const double column[] = {0x1p53, 1.0, 1.0, 1.0, 1.0};
    Guarded<double> x(std::vector<double>(column, column + 5));
    double* rows[] = {&x[0], &x[1], &x[2], &x[3], &x[4]};
    double dst = 0.0;
    EXPECT_EQ(vornsSumColumnAbs_64f_D2L(rows, 1, 5, &dst, 0, 0), vornStsNoErr);
    EXPECT_EQ(dst, 0x1p53);
    EXPECT_EQ(vornsSumColumnAbs_64f_D2L(rows, 1, 5, &dst, 0, 1), vornStsNoErr);
    EXPECT_EQ(dst, 4.0);
    EXPECT_EQ(vornsSumRowAbs_64f(x, 5, &dst), vornStsNoErr);
    EXPECT_EQ(dst, 0x1p53);
}

TEST(ColumnOperations, TheColumnsOfARotationMayBeOne) {
    Guarded<double> x{3.0, 5.0};
    double* rows[] = {&x[0]};
    EXPECT_EQ(vornsQRTransColumn_64f_D2L(rows, 2, 1, 1, 1, 2.0, 0.25), vornStsNoErr);
    EXPECT_EQ(x[1], 5.0 * 2.0 - 5.0 * 0.25);
    EXPECT_EQ(x[0], 3.0);
    EXPECT_EQ(vornsQRTransColumn_64f_D2L(rows, 2, 1, 1, 0, 2.0, 0.25), vornStsNoErr);
    EXPECT_EQ(x[0], 2.0 * 3.0 + 0.25 * 8.75);
    EXPECT_EQ(x[1], 8.75 * 2.0 - 3.0 * 0.25);
}

TEST(ColumnOperations, RowsThatRepeatAreTakenAgain) {
    Guarded<double> x{3.0};
    double* rows[] = {x, x, x};
    double dst = 0.0;
    EXPECT_EQ(vornsSumColumnSqr_64f_D2L(rows, 1, 3, &dst, 0, 0, 2.0), vornStsNoErr);
    EXPECT_EQ(dst, 36.0 + 144.0 + 576.0);
    EXPECT_EQ(x[0], 24.0);
}

TEST(ColumnOperations, OrderOfChecks) {
    struct Arguments {
        std::shared_ptr<Guarded<double>> x, result;
        std::vector<double*> rows;
        double* const* list;
        double *src, *srcDst, *dst;
        int width = 2, height = 2, len = 2, col1 = 1, col2 = 0, row = 1;
    };
    const std::function<Arguments()> good = [] {
        Arguments a;
        a.x = std::make_shared<Guarded<double>>(std::vector<double>{1.0, 2.0, 3.0, 4.0});
        a.result = std::make_shared<Guarded<double>>(1);
        a.src = a.x->data(), a.srcDst = a.src + 2, a.dst = a.result->data();
        a.rows = {a.src, a.srcDst};
        a.list = a.rows.data();
        return a;
    };
    const std::function<bool(Arguments&)> untouched = [](Arguments& a) {
        return a.result->untouched() && a.x->values() == std::vector<double>{1.0, 2.0, 3.0, 4.0};
    };
    const Rule<Arguments> noList = {"rows", vornStsNullPtrErr, [](Arguments& a) { a.list = nullptr; }};
    const Rule<Arguments> noSrc = {"src", vornStsNullPtrErr, [](Arguments& a) { a.src = nullptr; }};
    const Rule<Arguments> noSrcDst = {"srcDst", vornStsNullPtrErr, [](Arguments& a) { a.srcDst = nullptr; }};
    const Rule<Arguments> noDst = {"dst", vornStsNullPtrErr, [](Arguments& a) { a.dst = nullptr; }};
    const auto size = [](const char* name, int Arguments::*member, int value) {
        return Rule<Arguments>{name, vornStsSizeErr, [=](Arguments& a) { a.*member = value; }};
    };
    using Rules = std::vector<Rule<Arguments>>;
    const Rules sizes = {size("width", &Arguments::width, 0), size("height", &Arguments::height, 0),
                         size("height", &Arguments::height, -3)};
    const Rules first = {size("column", &Arguments::col1, -1), size("column", &Arguments::col1, 2)};
    const Rules second = {size("column", &Arguments::col2, -1), size("column", &Arguments::col2, 2)};
    const Rules begin = {size("row", &Arguments::row, -1), size("row", &Arguments::row, 2)};
    const Rules length = {size("len", &Arguments::len, 0), size("len", &Arguments::len, -1)};
    const auto joined = [](std::initializer_list<Rules> parts) {
        Rules all;
        for (const Rules& part : parts) all.insert(all.end(), part.begin(), part.end());
        return all;
    };
    const auto expect = [&](std::function<VornStatus(Arguments&)> call, const Rules& rules) {
        expectCheckOrder<Arguments>(good, call, untouched, rules);
    };
    using A = Arguments;
    expect([](A& a) { return vornsSumColumnAbs_64f_D2L(a.list, a.width, a.height, a.dst, a.col1, a.row); },
           joined({{noList, noDst}, sizes, first, begin}));
    expect([](A& a) { return vornsSumColumnSqr_64f_D2L(a.list, a.width, a.height, a.dst, a.col1, a.row, 2.0); },
           joined({{noList, noDst}, sizes, first, begin}));
    expect([](A& a) { return vornsDotProdColumn_64f_D2L(a.list, a.width, a.height, a.dst, a.col1, a.col2, a.row); },
           joined({{noList, noDst}, sizes, first, second, begin}));
    expect([](A& a) { return vornsAddMulColumn_64f_D2L(a.list, a.width, a.height, a.col1, a.col2, a.row, 2.0); },
           joined({{noList}, sizes, first, second, begin}));
    expect([](A& a) { return vornsMulColumn_64f_D2L(a.list, a.width, a.height, a.col1, a.row, 2.0); },
           joined({{noList}, sizes, first, begin}));
    expect([](A& a) { return vornsQRTransColumn_64f_D2L(a.list, a.width, a.height, a.col1, a.col2, 2.0, 1.0); },
           joined({{noList}, sizes, first, second}));
    expect([](A& a) { return vornsSumRowAbs_64f(a.src, a.len, a.dst); }, joined({{noSrc, noDst}, length}));
    expect([](A& a) { return vornsSumRowSqr_64f(a.srcDst, a.len, a.dst, 2.0); }, joined({{noSrcDst, noDst}, length}));
    expect([](A& a) { return vornsAddMulRow_64f(a.src, a.srcDst, a.len, 2.0); }, joined({{noSrc, noSrcDst}, length}));
}

// The kernels under their own names, which have no header.
extern "C" {
void vornsRowSumAbs_64f_M7_Al(const Vorn64f* src, std::int64_t len, Vorn64f* dst);
void vornsRowSumSqr_64f_M7(Vorn64f* srcDst, std::int64_t len, Vorn64f* dst, Vorn64f val);
void vornsRowSumSqr_64f_M7_Al(Vorn64f* srcDst, std::int64_t len, Vorn64f* dst, Vorn64f val);
void vornsRowAddMul_64f_M7(const Vorn64f* src, Vorn64f* srcDst, std::int64_t len, Vorn64f val);
void vornsRowAddMul_64f_M7_Al(const Vorn64f* src, Vorn64f* srcDst, std::int64_t len, Vorn64f val);
}

TEST(RowOperations, KernelsAreCallable) {
    alignas(16) const double x[] = {1.0, -2.0, 3.0};
    alignas(16) double y[] = {1.0, 1.0, 1.0}, sum = 0.0;
    vornsRowSumAbs_64f_M7_Al(x, 3, &sum);
    EXPECT_EQ(sum, 6.0);
    vornsRowAddMul_64f_M7(x, y, 3, 2.0);
    vornsRowAddMul_64f_M7_Al(x, y, 3, 1.0);
    EXPECT_TRUE(y[0] == 4.0 && y[1] == -5.0 && y[2] == 10.0);
    vornsRowSumSqr_64f_M7(y, 3, &sum, 2.0);
    EXPECT_EQ(sum, 64.0 + 100.0 + 400.0);
    vornsRowSumSqr_64f_M7_Al(y, 3, &sum, 0.5);
    EXPECT_EQ(sum, 16.0 + 25.0 + 100.0);
}

}  // namespace
