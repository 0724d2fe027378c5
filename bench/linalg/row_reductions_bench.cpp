// Sums of columns and rows, row updates and range mappings beside plain loops and Eigen.
#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

#ifdef VORNSR_HAVE_EIGEN
#include <Eigen/Dense>
#endif

#include "plain/row_reductions.h"
#include "support/bench.h"
#include "support/vectors.h"
#include "vornsr.h"

namespace {

#ifdef VORNSR_HAVE_EIGEN
template <class T>
using Matrix = Eigen::Map<Eigen::Array<T, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>>;
template <class T>
using Row = Eigen::Map<Eigen::Array<T, 1, Eigen::Dynamic>>;
template <class T>
using Column = Eigen::Map<Eigen::Array<T, Eigen::Dynamic, 1>>;
#endif

// One matrix for all: singles from 1/2 to 2, or whatever other types see in them.
template <class T>
struct Shape {
    int height, width;
    T* x;
    // Numbers of the columns and results, each with room for a row or a column.
    T *first, *second;
};

template <class T, class Ours, class Plain, class Eigens>
void compare(const std::string& name, const Ours& ours, const Plain& plain, [[maybe_unused]] const Eigens& eigen) {
    constexpr std::size_t memory = bench::vectors::most;
    // One matrix a type: what the updates leave of it stays what numbers of the type look like.
    static const auto matrix = [] {
        auto block = bench::buffer<T>(memory / sizeof(T));
        std::copy_n(reinterpret_cast<const T*>(bench::vectors::sources()), memory / sizeof(T), block.get());
        return block;
    }();
    for (int width : {13, 39, 64, 256}) {
        for (const auto& [place, bytes] :
             {std::pair{"L1", bench::inL1}, {"LLC", bench::inLastLevel}, {"memory", memory}}) {
            const int height = static_cast<int>(bytes / sizeof(T)) / width;
            const auto room = static_cast<std::size_t>(std::max(height, width)) * 2;
            const auto first = bench::buffer<T>(room), second = bench::buffer<T>(room);
            for (int j = 0; j < width; ++j) first[j] = T(1), second[j] = T(-1);
            const Shape<T> shape = {height, width, matrix.get(), first.get(), second.get()};
            const std::string size = std::to_string(width) + " " + place;
            const auto add = [&](const char* peer, auto call) {
                bench::add(name, size, peer, std::int64_t{height} * width, [=] {
                    call(shape);
                    bench::keep(matrix.get());
                    bench::keep(first.get());
                    bench::keep(second.get());
                });
            };
            add(bench::ours, ours);
            add("plain", plain);
#ifdef VORNSR_HAVE_EIGEN
            if constexpr (!std::is_same_v<Eigens, std::nullptr_t>) add("eigen", eigen);
#endif
        }
    }
}

#define CALL(T, ...) [](const Shape<T>& s) { __VA_ARGS__; }
#ifdef VORNSR_HAVE_EIGEN
#define EIGEN_CALL(T, ...)                                    \
    [](const Shape<T>& s) {                                   \
        [[maybe_unused]] Matrix<T> x(s.x, s.height, s.width); \
        [[maybe_unused]] Row<T> first(s.first, s.width);      \
        [[maybe_unused]] Row<T> second(s.second, s.width);    \
        [[maybe_unused]] Column<T> ofRows(s.first, s.height); \
        __VA_ARGS__;                                          \
    }
#else
#define EIGEN_CALL(T, ...) nullptr
#endif
float* singles(std::int16_t* room) { return reinterpret_cast<float*>(room); }

const bench::Family matrices([] {
    compare<float>("SumColumn_32f_D2", CALL(float, vornsSumColumn_32f_D2(s.x, s.width, s.height, s.first, s.width)),
                   CALL(float, plain::sumColumns(s.x, s.width, s.height, s.first, s.width)),
                   EIGEN_CALL(float, first = x.colwise().sum()));
    compare<double>("SumColumn_64f_D2", CALL(double, vornsSumColumn_64f_D2(s.x, s.width, s.height, s.first, s.width)),
                    CALL(double, plain::sumColumns(s.x, s.width, s.height, s.first, s.width)),
                    EIGEN_CALL(double, first = x.colwise().sum()));
    compare<Vorn16s>("SumColumn_16s32f_D2",
                     CALL(Vorn16s, vornsSumColumn_16s32f_D2(s.x, s.width, s.height, singles(s.first), s.width)),
                     CALL(Vorn16s, plain::sumColumns(s.x, s.width, s.height, singles(s.first), s.width)),
                     EIGEN_CALL(Vorn16s, (Row<float>(singles(s.first), s.width) = x.cast<float>().colwise().sum())));
    compare<float>("SumRow_32f_D2", CALL(float, vornsSumRow_32f_D2(s.x, s.width, s.width, s.first, s.height)),
                   CALL(float, plain::sumRows(s.x, s.width, s.width, s.first, s.height)),
                   EIGEN_CALL(float, ofRows = x.rowwise().sum()));
    compare<double>("SumRow_64f_D2", CALL(double, vornsSumRow_64f_D2(s.x, s.width, s.width, s.first, s.height)),
                    CALL(double, plain::sumRows(s.x, s.width, s.width, s.first, s.height)),
                    EIGEN_CALL(double, ofRows = x.rowwise().sum()));
    compare<Vorn16s>(
        "SumRow_16s32f_D2", CALL(Vorn16s, vornsSumRow_16s32f_D2(s.x, s.width, s.width, singles(s.first), s.height)),
        CALL(Vorn16s, plain::sumRows(s.x, s.width, s.width, singles(s.first), s.height)),
        EIGEN_CALL(Vorn16s, (Column<float>(singles(s.first), s.height) = x.cast<float>().rowwise().sum())));
    compare<float>("SubRow_32f_D2", CALL(float, vornsSubRow_32f_D2(s.first, s.width, s.x, s.width, s.height)),
                   CALL(float, plain::subRow(s.first, s.width, s.x, s.width, s.height)),
                   EIGEN_CALL(float, x.rowwise() -= first));
    compare<Vorn16s>("SubRow_16s_D2", CALL(Vorn16s, vornsSubRow_16s_D2(s.first, s.width, s.x, s.width, s.height)),
                     CALL(Vorn16s, plain::subRow(s.first, s.width, s.x, s.width, s.height)), nullptr);
    compare<float>("NormalizeColumn_32f_D2",
                   CALL(float, vornsNormalizeColumn_32f_D2(s.x, s.width, s.height, s.first, s.second, s.width)),
                   CALL(float, plain::normalizeColumns(s.x, s.width, s.height, s.first, s.second, s.width)),
                   EIGEN_CALL(float, x = (x.rowwise() - first).rowwise() * second));
    compare<Vorn16s>(
        "NormalizeColumn_16s_D2Sfs",
        CALL(Vorn16s, vornsNormalizeColumn_16s_D2Sfs(s.x, s.width, s.height, s.first, s.second, s.width, 0)),
        CALL(Vorn16s, plain::normalizeColumns(s.x, s.width, s.height, s.first, s.second, s.width, 0)), nullptr);
});

// In the plain calls and Eigen's x is the source, z the result, n the length.
const bench::Family mappings([] {
    using bench::vectors::most;
    const auto add = [](const std::string& name, auto* x, auto* z,
                        std::initializer_list<std::pair<const char*, void (*)(decltype(x), decltype(z), int)>> peers) {
        using S = std::remove_const_t<std::remove_pointer_t<decltype(x)>>;
        using T = std::remove_pointer_t<decltype(z)>;
        for (const bench::vectors::Size& size : bench::vectors::sizes) {
            const std::size_t len = size.elements != 0 ? size.elements : size.bytes / (sizeof(S) + sizeof(T));
            for (const auto& [peer, call] : peers) {
                bench::add(name, size.name, peer, static_cast<std::int64_t>(len), [=, call = call] {
                    call(x, z, static_cast<int>(len));
                    bench::keep(z);
                });
            }
        }
    };
    const auto* singles = reinterpret_cast<const Vorn32f*>(bench::vectors::sources());
    const auto* shorts = reinterpret_cast<const Vorn16s*>(bench::vectors::sources());
    std::byte* results = bench::vectors::results();
    add("NormalizeInRangeMinMax_32f", singles, reinterpret_cast<Vorn32f*>(results),
        {
            {bench::ours, [](const Vorn32f* x, Vorn32f* z,
                             int n) { vornsNormalizeInRangeMinMax_32f(x, z, n, 0.5f, 2, 0.1f, 0.9f, 1); }},
            {"plain", [](const Vorn32f* x, Vorn32f* z, int n) { plain::mapInRange(x, z, n, 0.5f, 2, 0.1f, 0.9f, 1); }},
#ifdef VORNSR_HAVE_EIGEN
            {"eigen",
             [](const Vorn32f* x, Vorn32f* z, int n) {
                 bench::vectors::array(z, n) = (bench::vectors::array(x, n).min(1.85f) - 0.65f).max(0.0f) * (1 / 1.2f);
             }},
#endif
        });
    add("NormalizeInRange_32f", singles, reinterpret_cast<Vorn32f*>(results),
        {{bench::ours, [](const Vorn32f* x, Vorn32f* z, int n) { vornsNormalizeInRange_32f(x, z, n, 0.1f, 0.9f, 1); }},
         {"plain", [](const Vorn32f* x, Vorn32f* z, int n) {
              float min = x[0], max = x[0];
              for (int i = 1; i < n; ++i) min = x[i] < min ? x[i] : min, max = x[i] > max ? x[i] : max;
              plain::mapInRange(x, z, n, min, max, 0.1f, 0.9f, 1);
          }}});
    add("NormalizeInRangeMinMax_32f16s", singles, reinterpret_cast<Vorn16s*>(results),
        {{bench::ours, [](const Vorn32f* x, Vorn16s* z,
                          int n) { vornsNormalizeInRangeMinMax_32f16s(x, z, n, 1000, 0.5f, 2, 0.1f, 0.9f); }},
         {"plain",
          [](const Vorn32f* x, Vorn16s* z, int n) { plain::mapInRange(x, z, n, 0.5f, 2, 0.1f, 0.9f, 1000); }}});
    add("NormalizeInRangeMinMax_32f8u", singles, reinterpret_cast<Vorn8u*>(results),
        {{bench::ours, [](const Vorn32f* x, Vorn8u* z,
                          int n) { vornsNormalizeInRangeMinMax_32f8u(x, z, n, 255, 0.5f, 2, 0.1f, 0.9f); }},
         {"plain", [](const Vorn32f* x, Vorn8u* z, int n) { plain::mapInRange(x, z, n, 0.5f, 2, 0.1f, 0.9f, 255); }}});
    add("NormalizeInRangeMinMax_16s", shorts, reinterpret_cast<Vorn16s*>(results),
        {{bench::ours, [](const Vorn16s* x, Vorn16s* z,
                          int n) { vornsNormalizeInRangeMinMax_16s(x, z, n, -32768, 32767, 1000, 0.1f, 0.9f); }},
         {"plain",
          [](const Vorn16s* x, Vorn16s* z, int n) { plain::mapInRange(x, z, n, -32768, 32767, 0.1f, 0.9f, 1000); }}});
    add("NormalizeInRangeMinMax_16s8u", shorts, reinterpret_cast<Vorn8u*>(results),
        {{bench::ours, [](const Vorn16s* x, Vorn8u* z,
                          int n) { vornsNormalizeInRangeMinMax_16s8u(x, z, n, -32768, 32767, 255, 0.1f, 0.9f); }},
         {"plain",
          [](const Vorn16s* x, Vorn8u* z, int n) { plain::mapInRange(x, z, n, -32768, 32767, 0.1f, 0.9f, 255); }}});
});

}  // namespace
