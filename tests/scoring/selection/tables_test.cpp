// Shortlists and sign tables: bit for bit against the bit-by-bit model, and what they must not read or write.
#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <string>
#include <vector>

#include "model/selection.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using test::Guarded;
using test::Random;
using test::sameBits;

// Rows of step bytes, each against a guard page of its own.
class Shortlist {
public:
    Shortlist(const std::vector<Vorn8u>& bytes, int numRows, int step) {
        for (int r = 0; r < numRows; ++r) {
            const Vorn8u* row = &bytes[static_cast<std::size_t>(r) * step];
            rows_.emplace_back(std::vector<Vorn8u>(row, row + step));
        }
        for (const auto& row : rows_) pointers_.push_back(row.data());
        list_ = std::make_unique<Guarded<Vorn8u*>>(pointers_);
    }
    Vorn8u* const* rows() const { return list_->data(); }
    std::vector<Vorn8u> bytes() const {
        std::vector<Vorn8u> all;
        for (const auto& row : rows_) all.insert(all.end(), row.begin(), row.end());
        return all;
    }
    bool surroundingsUntouched() const {
        for (const auto& row : rows_) {
            if (!row.surroundingsUntouched()) return false;
        }
        return true;
    }

private:
    std::vector<Guarded<Vorn8u>> rows_;
    std::vector<Vorn8u*> pointers_;
    std::unique_ptr<Guarded<Vorn8u*>> list_;
};

std::vector<Vorn8u> randomBytes(Random& random, std::size_t n, int density = 2) {
    std::vector<Vorn8u> bytes(n);
    for (Vorn8u& byte : bytes) {
        byte = random.anyBits<Vorn8u>();
        for (int k = 1; k < density; ++k) byte &= random.anyBits<Vorn8u>();
    }
    return bytes;
}
std::vector<Vorn32s> randomIndices(Random& random, std::int64_t n, int limit) {
    return random.integers<Vorn32s>(static_cast<std::size_t>(n), 0, limit - 1);
}
int fieldBytes(int start, int width) { return (start + width + 7) / 8; }

// ---- Shortlists.

TEST(Shortlist, FillsEqualTheModel) {
    Random random(1);
    for (int turn = 0; turn < 200; ++turn) {
        const int width = static_cast<int>(random.integer(1, 60)), start = static_cast<int>(random.integer(0, 40));
        const int step = fieldBytes(start, width) + turn % 3, numRows = static_cast<int>(random.integer(1, 9));
        const int count = static_cast<int>(random.integer(1, 12));
        const auto bytes = randomBytes(random, static_cast<std::size_t>(numRows) * step);
        const auto compare = [&](const char* name, const std::vector<int>& counts, bool ofColumns, int limit,
                                 const auto& call) {
            std::int64_t total = 0;
            for (int n : counts) total += n;
            const Guarded<Vorn32s> indices(randomIndices(random, total, limit));
            const Guarded<Vorn32s> given(std::vector<Vorn32s>(counts.begin(), counts.end()));
            const Shortlist expected(bytes, numRows, step), actual(bytes, numRows, step);
            (ofColumns ? model::fillColumns : model::fillRows)(indices, counts, expected.rows(), start);
            ASSERT_EQ(call(indices.data(), given.data(), actual.rows()), vornStsNoErr) << name;
            EXPECT_TRUE(sameBits(actual.bytes(), expected.bytes())) << name;
            EXPECT_TRUE(actual.surroundingsUntouched()) << name;
        };
        const auto someCounts = [&](int n) {
            std::vector<int> counts(static_cast<std::size_t>(n));
            for (int& c : counts) c = static_cast<int>(random.integer(1, 12));
            return counts;
        };
        compare("Row", std::vector<int>(numRows, count), false, width, [&](auto* i, auto*, auto* rows) {
            return vornsFillShortlist_Row_1u(i, width, count, rows, numRows, step, start);
        });
        compare("RowVar", someCounts(numRows), false, width, [&](auto* i, auto* counts, auto* rows) {
            return vornsFillShortlist_RowVar_1u(i, counts, width, rows, numRows, step, start);
        });
        compare("Column", std::vector<int>(width, count), true, numRows, [&](auto* i, auto*, auto* rows) {
            return vornsFillShortlist_Column_1u(i, count, rows, numRows, step, start, width);
        });
        compare("ColumnVar", someCounts(width), true, numRows, [&](auto* i, auto* counts, auto* rows) {
            return vornsFillShortlist_ColumnVar_1u(i, counts, rows, numRows, step, start, width);
        });
    }
}

TEST(Shortlist, TheFirstBitIsTheMostSignificantOfItsByte) {
    Vorn8u row[2] = {0, 0};
    Vorn8u* const rows[] = {row};
    const Vorn32s indices[] = {0, 7, 8};
    ASSERT_EQ(vornsFillShortlist_Row_1u(indices, 9, 3, rows, 1, 2, 0), vornStsNoErr);
    EXPECT_EQ(row[0], 0x81);
    EXPECT_EQ(row[1], 0x80);
    ASSERT_EQ(vornsFillShortlist_Row_1u(indices, 9, 3, rows, 1, 2, 3), vornStsNoErr);
    EXPECT_EQ(row[0], 0x81 ^ 0x10);
    EXPECT_EQ(row[1], 0x80 ^ 0x30);
}

TEST(Shortlist, TheSameIndexTwiceClearsItsBit) {
    for (Vorn8u before : {0x00, 0x10, 0xFF}) {
        Vorn8u row[1] = {before};
        Vorn8u* const rows[] = {row};
        const Vorn32s twice[] = {3, 3}, inOneRow[] = {0, 0};
        ASSERT_EQ(vornsFillShortlist_Row_1u(twice, 8, 2, rows, 1, 1, 0), vornStsNoErr);
        EXPECT_EQ(row[0], before);
        ASSERT_EQ(vornsFillShortlist_Column_1u(inOneRow, 2, rows, 1, 1, 3, 1), vornStsNoErr);
        EXPECT_EQ(row[0], before);
    }
}

// ---- Sign tables.

TEST(SignTable, EqualsTheModelAtEveryWidthOffsetAndSlack) {
    Random random(2);
    for (int width = 1; width <= 40; ++width) {
        for (int start : {0, 1, 2, 3, 4, 5, 6, 7, 8, 13, 16}) {
            for (int slack : {0, 1, 3, 6, 8, 31, 32}) {
                const int step = fieldBytes(start, width) + slack, numRows = 3;
                const int frames = static_cast<int>(random.integer(1, 6)),
                          count = static_cast<int>(random.integer(1, 3));
                const Shortlist lists(randomBytes(random, static_cast<std::size_t>(numRows) * step), numRows, step);
                const Guarded<Vorn32s> indices(randomIndices(random, std::int64_t{count} * frames, numRows));
                const auto expected = model::signTable(indices, count, lists.rows(), start, frames, width);
                const Guarded<Vorn8u> sign(expected.size());
                ASSERT_EQ(
                    vornsBuildSignTable_8u1u(indices, count, lists.rows(), numRows, step, start, sign, frames, width),
                    vornStsNoErr);
                EXPECT_TRUE(sameBits(sign.values(), expected)) << width << " from " << start << ", slack " << slack;
                EXPECT_TRUE(sign.surroundingsUntouched());
            }
        }
    }
}

TEST(SignTable, EqualsTheModelForWideFields) {
    Random random(3);
    std::vector<int> widths;
    for (int width = 41; width <= 700; width += 7) widths.push_back(width);
    for (int width : {8183, 8184, 8185, 8191, 8192, 8193, 8200, 8201, 16385, 20000}) widths.push_back(width);
    for (int width : widths) {
        const int start = static_cast<int>(random.integer(0, 70)), step = fieldBytes(start, width) + width % 3;
        const int numRows = 4, frames = 3, count = 1 + width % 4;
        const Shortlist lists(randomBytes(random, static_cast<std::size_t>(numRows) * step, 3), numRows, step);
        const Guarded<Vorn32s> indices(randomIndices(random, std::int64_t{count} * frames, numRows));
        const auto expected = model::signTable(indices, count, lists.rows(), start, frames, width);
        const Guarded<Vorn8u> sign(expected.size());
        ASSERT_EQ(vornsBuildSignTable_8u1u(indices, count, lists.rows(), numRows, step, start, sign, frames, width),
                  vornStsNoErr);
        EXPECT_TRUE(sameBits(sign.values(), expected)) << width << " from " << start;
        EXPECT_TRUE(sign.surroundingsUntouched());
    }
}

TEST(SignTable, MovesTheFieldToTheFirstBit) {
    for (int slack : {0, 40}) {
        const Shortlist lists(std::vector<Vorn8u>(static_cast<std::size_t>(1 + slack), 0b00010100), 1, 1 + slack);
        const Vorn32s indices[] = {0};
        Vorn8u table = 0xFF;
        ASSERT_EQ(vornsBuildSignTable_8u1u(indices, 1, lists.rows(), 1, 1 + slack, 3, &table, 1, 5), vornStsNoErr);
        EXPECT_EQ(table, 0b10100000);
    }
}

// What a shortlist is filled with is what a table selects.
TEST(SignTable, SelectsWhatItsShortlistsName) {
    const int width = 21, start = 5, step = 4;
    const Shortlist lists(std::vector<Vorn8u>(3 * step, 0), 3, step);
    const Vorn32s named[] = {0, 20, 7, 8, 7 + 4, 19};
    ASSERT_EQ(vornsFillShortlist_Row_1u(named, width, 2, lists.rows(), 3, step, start), vornStsNoErr);
    const Vorn32s codewords[] = {0, 1, 2, 2, 1, 0};
    Vorn8u table[9];
    ASSERT_EQ(vornsBuildSignTable_8u1u(codewords, 2, lists.rows(), 3, step, start, table, 3, width), vornStsNoErr);
    const std::vector<std::vector<int>> expected = {{0, 7, 8, 20}, {11, 19}, {0, 7, 8, 20}};
    for (int f = 0; f < 3; ++f) {
        std::vector<int> selected;
        for (int g = 0; g < 24; ++g) {
            if ((table[3 * f + g / 8] & (128 >> g % 8)) != 0) selected.push_back(g);
        }
        EXPECT_EQ(selected, expected[f]) << f;
    }
}

TEST(SignTable, WithCountsEqualsTheModel) {
    Random random(4);
    for (int turn = 0; turn < 600; ++turn) {
        const int width = static_cast<int>(random.integer(1, 45)), start = static_cast<int>(random.integer(0, 20));
        const int step = fieldBytes(start, width) + turn % 2, numRows = 6;
        std::vector<int> counts(static_cast<std::size_t>(random.integer(1, 8)));
        std::int64_t total = 0;
        for (int& c : counts) total += c = static_cast<int>(random.integer(1, 6));
        // Few bits: many rows have none in the field, and some have one right before or behind it.
        auto bytes = randomBytes(random, static_cast<std::size_t>(numRows) * step, 5);
        const Shortlist lists(bytes, numRows, step);
        const Guarded<Vorn32s> indices(randomIndices(random, total, numRows));
        const Guarded<Vorn32s> given(std::vector<Vorn32s>(counts.begin(), counts.end()));
        const auto expected = model::signTableOfCounts(indices, counts, lists.rows(), start, width);
        const Guarded<Vorn8u> sign(expected.size());
        ASSERT_EQ(vornsBuildSignTable_Var_8u1u(indices, given, lists.rows(), numRows, step, start, sign,
                                               static_cast<int>(counts.size()), width),
                  vornStsNoErr);
        EXPECT_TRUE(sameBits(sign.values(), expected)) << width << " from " << start;
        EXPECT_TRUE(sign.surroundingsUntouched());
    }
}

TEST(SignTable, WithCountsSetsOnlyTheFirstBitOfARow) {
    // Codeword 0 selects nothing in the field, although its neighbours' bits are set; codeword 1 selects its last bit.
    const Shortlist lists({0b11000000, 0b00000001, 0b00000000, 0b00000010}, 2, 2);
    const Vorn32s indices[] = {0, 1, 0, 0, 0, 0}, counts[] = {1, 2, 3};
    Vorn8u table[6] = {9, 9, 9, 9, 9, 9};
    ASSERT_EQ(vornsBuildSignTable_Var_8u1u(indices, counts, lists.rows(), 2, 2, 2, table, 3, 13), vornStsNoErr);
    EXPECT_EQ(std::vector<Vorn8u>(table, table + 6), (std::vector<Vorn8u>{0, 0, 0x80, 0, 0x80, 0}));
}

// ---- Checks.

struct Call {
    std::vector<Vorn32s> numbers = {0, 1, 2, 1, 0, 2};
    std::vector<Vorn32s> countNumbers = {2, 2, 2};
    std::vector<Vorn8u> bytes = std::vector<Vorn8u>(12, 0x5A);
    std::vector<Vorn8u*> pointers = {&bytes[0], &bytes[4], &bytes[8]};
    std::vector<Vorn8u> table = std::vector<Vorn8u>(3, 0xA5);
    const Vorn32s *indices = numbers.data(), *counts = countNumbers.data();
    Vorn8u* const* rows = pointers.data();
    Vorn8u* sign = table.data();
    // Three rows of three bits.
    int width = 3, count = 2, numRows = 3, step = 2, start = 10, frames = 3;

    Call() = default;
    Call(const Call&) = delete;
    Call(Call&&) = default;
};
bool untouched(Call& c) { return c.bytes == std::vector<Vorn8u>(12, 0x5A) && c.table == std::vector<Vorn8u>(3, 0xA5); }
using Rule = test::Rule<Call>;
const Rule nullIndices = {"indices", vornStsNullPtrErr, [](Call& c) { c.indices = nullptr; }};
const Rule nullCounts = {"counts", vornStsNullPtrErr, [](Call& c) { c.counts = nullptr; }};
const Rule nullRows = {"rows", vornStsNullPtrErr, [](Call& c) { c.rows = nullptr; }};
const Rule nullSign = {"sign", vornStsNullPtrErr, [](Call& c) { c.sign = nullptr; }};
const Rule noRows = {"numRows", vornStsSizeErr, [](Call& c) { c.numRows = 0; }};
const Rule noWidth = {"width", vornStsSizeErr, [](Call& c) { c.width = -1; }};
const Rule noStep = {"step 0", vornStsSizeErr, [](Call& c) { c.step = 0; }};
const Rule noCount = {"count", vornStsSizeErr, [](Call& c) { c.count = 0; }};
const Rule noFrames = {"frames", vornStsSizeErr, [](Call& c) { c.frames = 0; }};
const Rule noStart = {"start", vornStsSizeErr, [](Call& c) { c.start = -1; }};
const Rule noCounts = {"counts[2]", vornStsSizeErr, [](Call& c) { c.countNumbers[2] = 0; }};
const Rule farStart = {"field", vornStsStrideErr, [](Call& c) { c.start = c.start < 0 ? c.start : 14; }};
const Rule badIndex = {"index 3", vornStsBadArgErr, [](Call& c) { c.numbers[5] = 3; }};
const Rule negativeIndex = {"index -1", vornStsBadArgErr, [](Call& c) { c.numbers[0] = -1; }};

void expectOrder(const std::function<VornStatus(Call&)>& call, const std::vector<Rule>& rules) {
    test::expectCheckOrder<Call>([] { return Call(); }, call, untouched, rules);
}

TEST(Shortlist, ChecksPointersSizesFieldAndIndices) {
    expectOrder(
        [](Call& c) {
            return vornsFillShortlist_Row_1u(c.indices, c.width, c.count, c.rows, c.numRows, c.step, c.start);
        },
        {nullIndices, nullRows, noRows, noWidth, noStep, noCount, noStart, farStart, badIndex, negativeIndex});
    expectOrder(
        [](Call& c) {
            return vornsFillShortlist_RowVar_1u(c.indices, c.counts, c.width, c.rows, c.numRows, c.step, c.start);
        },
        {nullIndices, nullCounts, nullRows, noRows, noWidth, noStep, noStart, noCounts, farStart, badIndex,
         negativeIndex});
    expectOrder(
        [](Call& c) {
            return vornsFillShortlist_Column_1u(c.indices, c.count, c.rows, c.numRows, c.step, c.start, c.width);
        },
        {nullIndices, nullRows, noRows, noWidth, noStep, noCount, noStart, farStart, badIndex, negativeIndex});
    expectOrder(
        [](Call& c) {
            return vornsFillShortlist_ColumnVar_1u(c.indices, c.counts, c.rows, c.numRows, c.step, c.start, c.width);
        },
        {nullIndices, nullCounts, nullRows, noRows, noWidth, noStep, noStart, noCounts, farStart, badIndex,
         negativeIndex});
}

TEST(SignTable, ChecksPointersSizesFieldAndIndices) {
    expectOrder(
        [](Call& c) {
            return vornsBuildSignTable_8u1u(c.indices, c.count, c.rows, c.numRows, c.step, c.start, c.sign, c.frames,
                                            c.width);
        },
        {nullIndices, nullRows, nullSign, noCount, noRows, noStep, noWidth, noFrames, noStart, farStart, badIndex,
         negativeIndex});
    // The counts are looked at behind the field.
    expectOrder(
        [](Call& c) {
            return vornsBuildSignTable_Var_8u1u(c.indices, c.counts, c.rows, c.numRows, c.step, c.start, c.sign,
                                                c.frames, c.width);
        },
        {nullIndices, nullCounts, nullRows, nullSign, noRows, noStep, noWidth, noFrames, noStart, farStart, noCounts,
         badIndex, negativeIndex});
}

// Exactly as many bytes as the field needs pass; one less does not, and neither does a sum beyond the integers.
TEST(Shortlist, StepsHoldTheField) {
    std::vector<Vorn8u> bytes(300, 0);
    Vorn8u* const rows[] = {bytes.data()};
    const Vorn32s zero[1000] = {};
    Vorn8u sign[200];
    for (int width : {1, 2, 7, 8, 9, 24, 25, 1000}) {
        for (int start : {0, 1, 6, 7, 8, 9, 800}) {
            const int step = (start + width + 7) / 8;
            for (const auto& [bytesOfRow, status] : {std::pair{step, vornStsNoErr}, {step - 1, vornStsStrideErr}}) {
                if (bytesOfRow < 1) continue;
                EXPECT_EQ(vornsFillShortlist_Row_1u(zero, width, 2, rows, 1, bytesOfRow, start), status);
                EXPECT_EQ(vornsFillShortlist_Column_1u(zero, 1, rows, 1, bytesOfRow, start, width), status);
                EXPECT_EQ(vornsBuildSignTable_8u1u(zero, 1, rows, 1, bytesOfRow, start, sign, 1, width), status);
            }
        }
    }
    EXPECT_EQ(vornsFillShortlist_Row_1u(zero, INT_MAX, 1, rows, 1, INT_MAX / 8, INT_MAX), vornStsStrideErr);
    EXPECT_EQ(vornsBuildSignTable_8u1u(zero, 1, rows, 1, INT_MAX / 8, INT_MAX, sign, 1, INT_MAX), vornStsStrideErr);
}

// The largest index stands last in more indices than one pass of registers takes.
TEST(Shortlist, EveryIndexIsTested) {
    const Shortlist lists(std::vector<Vorn8u>(5, 0), 5, 1);
    const Guarded<Vorn8u> sign(100);
    for (int at = 0; at < 100; ++at) {
        for (Vorn32s bad : {5, 6, -1, INT_MAX, INT_MIN}) {
            std::vector<Vorn32s> indices(100, 4);
            indices[at] = bad;
            EXPECT_EQ(vornsBuildSignTable_8u1u(indices.data(), 1, lists.rows(), 5, 1, 0, sign, 100, 8),
                      vornStsBadArgErr);
            EXPECT_EQ(vornsFillShortlist_Row_1u(indices.data(), 5, 20, lists.rows(), 5, 1, 0), vornStsBadArgErr);
        }
    }
    EXPECT_TRUE(sign.untouched());
    EXPECT_EQ(lists.bytes(), std::vector<Vorn8u>(5, 0));
}

}  // namespace
