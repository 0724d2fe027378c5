// What the decomposition is for: the factors give the matrix back, are orthonormal, and the values are the singular
// values, all within the stated bounds. Sums are formed in long double, and the values to compare with come from
// another algorithm.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "linalg/singular_values.h"
#include "support/recorded_frames.h"

namespace {

using namespace test;

// In units of (height + width) 2^-53, for values, products and orthonormal vectors alike.
constexpr double bound = 4.5;

// One-sided Jacobi rotations (Hestenes, 1958) in long double: columns are turned against one another until all are
// orthogonal; their lengths are the singular values.
std::vector<long double> singularValues(const Matrix& a, int height, int width) {
    const bool tall = height >= width;
    const int count = tall ? width : height, length = tall ? height : width;
    std::vector<std::vector<long double>> column(count, std::vector<long double>(length));
    for (int c = 0; c < count; ++c) {
        for (int r = 0; r < length; ++r) column[c][r] = tall ? a(r, c) : a(c, r);
    }
    const auto dot = [&](int p, int q) {
        long double sum = 0;
        for (int r = 0; r < length; ++r) sum += column[p][r] * column[q][r];
        return sum;
    };
    constexpr long double negligible = 16 * std::numeric_limits<long double>::epsilon();
    bool turned = true;
    for (int round = 0; round < 60 && turned; ++round) {
        turned = false;
        for (int p = 0; p < count; ++p) {
            for (int q = p + 1; q < count; ++q) {
                const long double pp = dot(p, p), qq = dot(q, q), pq = dot(p, q);
                if (std::fabs(pq) <= negligible * std::sqrt(pp * qq)) continue;
                turned = true;
                const long double zeta = (qq - pp) / (2 * pq);
                const long double t = (zeta < 0 ? -1 : 1) / (std::fabs(zeta) + std::sqrt(1 + zeta * zeta));
                const long double c = 1 / std::sqrt(1 + t * t), s = c * t;
                for (int r = 0; r < length; ++r) {
                    const long double x = column[p][r], y = column[q][r];
                    column[p][r] = c * x - s * y;
                    column[q][r] = s * x + c * y;
                }
            }
        }
    }
    EXPECT_FALSE(turned) << "the reference did not converge";
    std::vector<long double> values(width, 0.0L);
    for (int c = 0; c < count; ++c) values[c] = std::sqrt(dot(c, c));
    std::sort(values.rbegin(), values.rend());
    return values;
}

struct Errors {
    double values = 0.0, product = 0.0, orthonormal = 0.0;
    void meet(const Errors& other) {
        values = std::max(values, other.values);
        product = std::max(product, other.product);
        orthonormal = std::max(orthonormal, other.orthonormal);
    }
};

// In units of (height + width) 2^-53, of the largest value or of 1.
Errors errorsOf(const Matrix& a, int height, int width, const Decomposition& result) {
    const long double unit = std::ldexp(static_cast<long double>(height + width), -53);
    const double largest = *std::max_element(result.w.begin(), result.w.end());
    Errors errors;
    const auto meet = [](double& worst, long double error, long double of) {
        const double now = error == 0 ? 0.0 : static_cast<double>(std::fabs(error) / of);
        worst = now <= worst ? worst : now;  // a not-a-number counts
    };
    auto got = result.w.values();
    std::sort(got.rbegin(), got.rend());
    const auto expected = singularValues(a, height, width);
    for (int i = 0; i < width; ++i) {
        EXPECT_FALSE(got[i] < 0.0);
        meet(errors.values, got[i] - expected[i], unit * largest);
    }
    for (int r = 0; r < height; ++r) {
        for (int c = 0; c < width; ++c) {
            long double sum = 0;
            for (int k = 0; k < width; ++k)
                sum += static_cast<long double>(result.u(r, k)) * result.w[k] * result.v(c, k);
            meet(errors.product, sum - a(r, c), unit * largest);
        }
    }
    for (int i = 0; i < width; ++i) {
        for (int j = i; j < width; ++j) {
            long double sum = 0;
            for (int k = 0; k < width; ++k) sum += static_cast<long double>(result.v(k, i)) * result.v(k, j);
            meet(errors.orthonormal, sum - (i == j), unit);
        }
    }
    for (int i = 0; i < std::min(height, width); ++i) {
        for (int j = i; j < std::min(height, width); ++j) {
            long double sum = 0;
            if (height >= width) {
                for (int k = 0; k < height; ++k) sum += static_cast<long double>(result.u(k, i)) * result.u(k, j);
            } else {
                for (int k = 0; k < width; ++k) sum += static_cast<long double>(result.u(i, k)) * result.u(j, k);
            }
            meet(errors.orthonormal, sum - (i == j), unit);
        }
    }
    return errors;
}

Errors worst;

void expectAccurate(const Matrix& a, int height, int width, const std::string& what) {
    Decomposition result(sortingForm, a, height, width);
    ASSERT_EQ(result.run(), vornStsNoErr) << what;
    for (int i = 1; i < width; ++i) EXPECT_GE(result.w[i - 1], result.w[i]) << what;
    const Errors errors = errorsOf(a, height, width, result);
    EXPECT_LE(errors.values, bound) << what;
    EXPECT_LE(errors.product, bound) << what;
    EXPECT_LE(errors.orthonormal, bound) << what;
    worst.meet(errors);
}

// Prints the largest errors met, which docs/numerics.md tells.
class Accuracy : public ::testing::Test {
protected:
    static void TearDownTestSuite() {
        std::printf("worst, in units of (height + width) 2^-53: values %.3f, product %.3f, orthonormal %.3f\n",
                    worst.values, worst.product, worst.orthonormal);
    }
};

TEST_F(Accuracy, OfRandomMatrices) {
    for (int width : {1, 2, 3, 4, 5, 8, 13, 20, 39, 66}) {
        for (int height : {1, 2, 3, 5, 13, 40, 80}) {
            for (int seed = 0; seed < (width < 20 && height < 20 ? 20 : 1); ++seed)
                expectAccurate(uniformMatrix({height, width, width}, 1000 * seed + 10 * width + height), height, width,
                               std::to_string(height) + " x " + std::to_string(width));
        }
    }
}

TEST_F(Accuracy, OfMatricesOfLowRank) {
    for (int rank : {1, 2, 3, 7}) {
        for (Shape shape : {Shape{13, 13, 13}, Shape{40, 13, 13}, Shape{13, 40, 40}, Shape{80, 39, 39}})
            expectAccurate(matrixOfRank(rank, shape.height, shape.width, rank), shape.height, shape.width,
                           "rank " + std::to_string(rank));
    }
    // A row, a column and a diagonal block of zeros.
    Matrix a = uniformMatrix({12, 9, 9}, 4);
    for (int i = 0; i < 9; ++i) a(3, i) = 0.0;
    for (int i = 0; i < 12; ++i) a(i, 5) = a(i, 0) = 0.0;
    expectAccurate(a, 12, 9, "zeros");
}

TEST_F(Accuracy, OfMatricesWithEqualValues) {
    // A Householder matrix: all values are 1; beside it a block with the value 3.
    for (int width : {2, 5, 13, 30}) {
        Matrix a(width, width);
        for (int i = 0; i < width; ++i) {
            for (int j = 0; j < width; ++j) a(i, j) = (i == j) - 2.0 / width;
        }
        expectAccurate(a, width, width, "a reflection");
        for (int i = 0; i < width / 2; ++i) {
            for (int j = 0; j < width; ++j) a(i, j) *= 3.0;
        }
        expectAccurate(a, width, width, "two values");
    }
}

TEST_F(Accuracy, OfHilbertMatrices) {
    for (int width : {2, 5, 10, 20, 39}) {
        expectAccurate(hilbert(width, width), width, width, "Hilbert");
        expectAccurate(hilbert(60, width), 60, width, "Hilbert");
        expectAccurate(hilbert(width, 60), width, 60, "Hilbert");
    }
    // The largest value of the matrix of order 5 (Fettis and Caslin, 1967).
    Decomposition five(sortingForm, hilbert(5, 5), 5, 5);
    ASSERT_EQ(five.run(), vornStsNoErr);
    EXPECT_NEAR(five.w[0], 1.567050691098231, 2e-15);
    EXPECT_NEAR(five.w[4], 3.287928772171574e-6, 2e-15);
}

TEST_F(Accuracy, OfFramesOfSpectra) {
    expectAccurate(frames(98, 39), 98, 39, "frames");
    expectAccurate(frames(13, 39), 13, 39, "frames");
}

TEST_F(Accuracy, OfRecordedFrames) {
    const RecordedFrames recorded = recordedFrames(VORNSR_RECORDINGS "/test", 6, 39);
    ASSERT_GT(recorded.height, 100);
    Matrix a(recorded.height, recorded.width);
    a.elements = recorded.rows;
    expectAccurate(a, recorded.height, recorded.width, "recorded frames");
    expectAccurate(a, 13, recorded.width, "the first of them");
}

// A Kahan matrix, and one whose diagonal spans the whole precision and more.
TEST_F(Accuracy, OfGradedMatrices) {
    for (double base : {0.5, 0.1, 1e-3}) {
        const int width = 20;
        Matrix a(width, width), kahan(width, width);
        const Matrix noise = uniformMatrix({width, width, width}, 5);
        for (int i = 0; i < width; ++i) {
            for (int j = 0; j < width; ++j) {
                a(i, j) = std::pow(base, i) * noise(i, j);
                kahan(i, j) = j < i ? 0.0 : std::pow(std::sqrt(1 - base * base), i) * (i == j ? 1.0 : -base);
            }
        }
        expectAccurate(a, width, width, "graded");
        expectAccurate(kahan, width, width, "Kahan");
    }
}

// The stated range of values.
TEST_F(Accuracy, OverTheStatedRange) {
    for (double by : {1e-145, 1e-100, 1e-30, 1e30, 1e100, 1e145}) {
        for (Shape shape : {Shape{1, 1, 1}, Shape{13, 13, 13}, Shape{40, 39, 39}, Shape{7, 20, 20}})
            expectAccurate(scaled(uniformMatrix(shape, 8), by), shape.height, shape.width, "scaled");
    }
}

// Denormal singular values beside ordinary ones and by themselves: they cannot be told from zero beside the largest
// one; alone, on a diagonal, they need no sweep, but the reciprocal of a sum below 2^-1024 is infinite.
TEST_F(Accuracy, OfDenormalValues) {
    Matrix a = uniformMatrix({8, 5, 5}, 8);
    for (int r = 0; r < 8; ++r) a(r, 2) = r * 0x1p-1074;
    expectAccurate(a, 8, 5, "a denormal column");
    for (int r = 0; r < 8; ++r) a(r, 0) = (r - 3.5) * 1e-300;
    expectAccurate(a, 8, 5, "a vanishing column");
    Matrix diagonal(3, 3);
    diagonal(0, 0) = 0x1p-1023, diagonal(1, 1) = 0x1p-1022, diagonal(2, 2) = -0x1p-1000;
    Decomposition result(blockForm, diagonal, 3, 3);
    ASSERT_EQ(result.run(1), vornStsNoErr);
    EXPECT_TRUE(result.w[0] == 0x1p-1023 && result.w[1] == 0x1p-1022 && result.w[2] == 0x1p-1000);
    diagonal(0, 0) = 0x1p-1030;
    Decomposition refused(blockForm, diagonal, 3, 3);
    EXPECT_EQ(refused.run(), vornStsSvdNoConvergeErr);
}

// The comparison itself finds an error of a few units.
TEST_F(Accuracy, ErrorsAreSeen) {
    const Matrix a = uniformMatrix({13, 7, 7}, 2);
    Decomposition result(sortingForm, a, 13, 7);
    ASSERT_EQ(result.run(), vornStsNoErr);
    result.w[6] += result.w[0] * 0x1p-44;
    EXPECT_GT(errorsOf(a, 13, 7, result).values, bound);
    result.w[0] *= 1 + 0x1p-42;
    EXPECT_GT(errorsOf(a, 13, 7, result).product, bound);
    result.w[3] = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(errorsOf(a, 13, 7, result).product <= bound);
}

}  // namespace
