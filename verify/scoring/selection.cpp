// Shortlists, sign tables and mixtures of selected Gaussians.
#include <iterator>

#include "families.h"

namespace verify {
namespace {

std::vector<Vorn32s> indicesBelow(Source& source, std::size_t n, int limit) {
    std::vector<Vorn32s> indices(n);
    for (Vorn32s& index : indices) index = static_cast<Vorn32s>(source.bits() % static_cast<unsigned>(limit));
    return indices;
}

// ---- Tables.

struct TableShape {
    int width, start, slack, numRows, frames, count;
};
const TableShape tableShapes[] = {{1, 0, 0, 1, 1, 1},    {5, 3, 0, 2, 3, 2},      {8, 8, 40, 4, 5, 3},
                                  {24, 7, 33, 6, 9, 4},  {25, 1, 32, 6, 7, 2},    {57, 7, 1, 5, 6, 3},
                                  {64, 0, 0, 5, 6, 3},   {100, 5, 8, 9, 4, 6},    {515, 11, 0, 12, 8, 5},
                                  {9000, 6, 3, 7, 3, 4}, {17, 100, 32, 3, 50, 2}, {33, 2, 0, 30, 40, 1}};

struct Shortlists {
    Shortlists(Source& source, const TableShape& shape)
        : step((shape.start + shape.width + 7) / 8 + shape.slack),
          bytes(source.patterns<Vorn8u>(static_cast<std::size_t>(shape.numRows) * step)) {
        for (int r = 0; r < shape.numRows; ++r) rows.push_back(&bytes[static_cast<std::size_t>(r) * step]);
    }
    int step;
    std::vector<Vorn8u> bytes;
    std::vector<Vorn8u*> rows;
};

// One list of indices below limit for each row or column; then counts of their own for each.
template <class Lists, class Limit, class Call>
auto fills(const Lists& lists, const Limit& limit, const Call& call) {
    return [=](Source& source, Digest& digest) {
        for (const TableShape& shape : tableShapes) {
            Shortlists shortlists(source, shape);
            std::vector<Vorn32s> counts;
            for (int i = 0; i < lists(shape); ++i) counts.push_back(1 + static_cast<Vorn32s>(source.bits() % 6));
            const auto indices = indicesBelow(source, counts.size() * 6, limit(shape));
            digest.add(call(indices.data(), counts.data(), shape, shortlists.rows.data(), shortlists.step));
            digest.add(shortlists.bytes);
        }
    };
}
int numRowsOf(const TableShape& s) { return s.numRows; }
int widthOf(const TableShape& s) { return s.width; }
#define FILL(function, lists, limit, ...)                                                                          \
    {                                                                                                              \
#function, fills(lists, limit,                                                                             \
                         []([[maybe_unused]] const Vorn32s* indices, [[maybe_unused]] const Vorn32s* counts,       \
                            const TableShape& s, Vorn8u* const* rows, int step) { return function(__VA_ARGS__); }) \
    }

template <class Call>
auto signTables(const Call& call) {
    return [=](Source& source, Digest& digest) {
        for (const TableShape& shape : tableShapes) {
            for (int thinned : {0, 6}) {
                Shortlists shortlists(source, shape);
                for (int k = 0; k < thinned; ++k) {
                    for (Vorn8u& byte : shortlists.bytes) byte &= static_cast<Vorn8u>(source.bits());
                }
                std::vector<Vorn32s> counts;
                for (int f = 0; f < shape.frames; ++f) counts.push_back(1 + static_cast<Vorn32s>(source.bits() % 5));
                const auto indices = indicesBelow(source, static_cast<std::size_t>(shape.frames) * 6, shape.numRows);
                std::vector<Vorn8u> sign(static_cast<std::size_t>(shape.frames) * ((shape.width + 7) / 8), 0x55);
                digest.add(
                    call(indices.data(), counts.data(), shape, shortlists.rows.data(), shortlists.step, sign.data()));
                digest.add(sign);
            }
        }
    };
}

// ---- Mixtures.

template <class T>
struct SelectedCase {
    std::vector<T> src, mean, var;
    std::vector<const T*> srcRows, meanRows, varRows;
    std::vector<Vorn32f> val;
    std::vector<Vorn8u> sign;
    int frames, width, len, step;
};

template <class T, class Call>
auto mixtures(const Call& call) {
    return [=](Source& source, Digest& digest) {
        struct {
            int frames, width, len;
        } const shapes[] = {{1, 1, 1}, {3, 9, 2}, {70, 20, 5}, {33, 16, 8}, {100, 64, 13}, {80, 40, 39}, {5, 300, 100}};
        for (const auto& shape : shapes) {
            for (double range : {0.5, 4.0, 300.0}) {
                SelectedCase<T> c;
                c.frames = shape.frames, c.width = shape.width, c.len = shape.len, c.step = shape.len + shape.width % 3;
                const auto matrix = [&](int height, double low, double high) {
                    std::vector<T> block;
                    for (int i = 0; i < height * c.step; ++i) {
                        const double x = source.uniform(low, high);
                        block.push_back(static_cast<T>(std::is_integral_v<T> ? x * 100 : x));
                    }
                    return block;
                };
                const auto pointers = [&](const std::vector<T>& block) {
                    std::vector<const T*> rows;
                    for (std::size_t i = 0; i < block.size(); i += c.step) rows.push_back(&block[i]);
                    return rows;
                };
                c.src = matrix(c.frames, -range, range), c.srcRows = pointers(c.src);
                c.mean = matrix(c.width, -range, range), c.meanRows = pointers(c.mean);
                c.var = matrix(c.width, 0.1, 2), c.varRows = pointers(c.var);
                c.val = source.values<Vorn32f>(c.width, -9, 9);
                c.sign = source.patterns<Vorn8u>(static_cast<std::size_t>(c.frames) * ((c.width + 7) / 8));
                for (int scaleFactor : {14, 3, -2, 140}) {
                    std::vector<Vorn32f> result(c.frames, 1.0f);
                    digest.add(call(c, result.data(), scaleFactor));
                    digest.add(result);
                }
            }
        }
    };
}
#define MIXTURE(function, T, ...)                                                                                   \
    {                                                                                                               \
#function, mixtures < T>([](const SelectedCase <T>& c, Vorn32f* result, [[maybe_unused]] int scaleFactor) { \
                       return function(__VA_ARGS__);                                                                \
                   })                                                                                               \
    }
#define SELECTED c.val.data(), c.sign.data(), c.width, result, c.frames, -50.0f
#define BLOCKS c.src.data(), c.mean.data()
#define LISTS c.srcRows.data(), c.meanRows.data()

const Workload workloads[] = {
    FILL(vornsFillShortlist_Row_1u, numRowsOf, widthOf, indices, s.width, 5, rows, s.numRows, step, s.start),
    FILL(vornsFillShortlist_RowVar_1u, numRowsOf, widthOf, indices, counts, s.width, rows, s.numRows, step, s.start),
    FILL(vornsFillShortlist_Column_1u, widthOf, numRowsOf, indices, 5, rows, s.numRows, step, s.start, s.width),
    FILL(vornsFillShortlist_ColumnVar_1u, widthOf, numRowsOf, indices, counts, rows, s.numRows, step, s.start, s.width),
    {"vornsBuildSignTable_8u1u", signTables([](const Vorn32s* indices, const Vorn32s*, const TableShape& s,
                                               Vorn8u* const* rows, int step, Vorn8u* sign) {
         return vornsBuildSignTable_8u1u(indices, s.count, rows, s.numRows, step, s.start, sign, s.frames, s.width);
     })},
    {"vornsBuildSignTable_Var_8u1u", signTables([](const Vorn32s* indices, const Vorn32s* counts, const TableShape& s,
                                                   Vorn8u* const* rows, int step, Vorn8u* sign) {
         return vornsBuildSignTable_Var_8u1u(indices, counts, rows, s.numRows, step, s.start, sign, s.frames, s.width);
     })},
    MIXTURE(vornsLogGaussMixture_Select_32f_D2, Vorn32f, BLOCKS, c.var.data(), c.step, c.len, SELECTED),
    MIXTURE(vornsLogGaussMixture_Select_32f_D2L, Vorn32f, LISTS, c.varRows.data(), c.len, SELECTED),
    MIXTURE(vornsLogGaussMixture_SelectIdVar_32f_D2, Vorn32f, BLOCKS, c.step, c.len, SELECTED),
    MIXTURE(vornsLogGaussMixture_SelectIdVar_32f_D2L, Vorn32f, LISTS, c.len, SELECTED),
    MIXTURE(vornsLogGaussMixture_SelectScaled_16s32f_D2, Vorn16s, BLOCKS, c.var.data(), c.step, c.len, SELECTED,
            scaleFactor),
    MIXTURE(vornsLogGaussMixture_SelectScaled_16s32f_D2L, Vorn16s, LISTS, c.varRows.data(), c.len, SELECTED,
            scaleFactor),
    MIXTURE(vornsLogGaussMixture_SelectIdVarScaled_16s32f_D2, Vorn16s, BLOCKS, c.step, c.len, SELECTED, scaleFactor),
    MIXTURE(vornsLogGaussMixture_SelectIdVarScaled_16s32f_D2L, Vorn16s, LISTS, c.len, SELECTED, scaleFactor),
};

}  // namespace

Family selectionWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
