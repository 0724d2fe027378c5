// Dynamic time warping.
#include <iterator>

#include "families.h"

namespace verify {
namespace {

struct Heights {
    int first, second;
};
const Heights heightsOfPairs[] = {{1, 1},   {2, 2},   {3, 5},     {16, 9},   {17, 33},
                                  {33, 33}, {60, 47}, {124, 124}, {150, 160}};
const int widths[] = {1, 2, 3, 4, 7, 8, 12, 13, 14, 20, 39, 400};

// Two sequences whose rows resemble one another, so that bands and beams decide: call(rows1, rows2, heights, width,
// step, delta, beam), a beam for each row and column being one difference of two elements.
template <class T, class Call>
void overSequences(Source& source, double range, const Call& call) {
    for (const Heights& heights : heightsOfPairs) {
        for (int width : widths) {
            if (width == 400 && heights.first > 40) continue;
            const int step = width + 1;
            const auto rows = [&](int height) {
                auto block = source.values<float>(static_cast<std::size_t>(height) * step, -range / 8, range / 8);
                std::vector<T> result;
                for (int i = 0; i < height; ++i) {
                    const double at = static_cast<double>(i) / height;
                    for (int c = 0; c < step; ++c) {
                        const double saw = std::fabs(at * (2 + c % 3) - std::floor(at * (2 + c % 3)) - 0.5) * range;
                        result.push_back(
                            static_cast<T>(saw + range / 8 + block[static_cast<std::size_t>(i) * step + c]));
                    }
                }
                return result;
            };
            const auto first = rows(heights.first), second = rows(heights.second);
            for (int delta : {0, 2, 9, 1000, -1}) {
                for (double beam : {0.0, 0.3, 2.0, 1e6}) {
                    call(first, second, heights, width, step, delta, beam * range * std::sqrt(width));
                }
            }
        }
    }
}

template <class T>
std::vector<const T*> pointersTo(const std::vector<T>& rows, int height, int step) {
    std::vector<const T*> pointers;
    for (int i = 0; i < height; ++i) pointers.push_back(&rows[static_cast<std::size_t>(i) * step]);
    return pointers;
}

void floatBlocks(Source& source, Digest& digest) {
    overSequences<Vorn32f>(source, 20,
                           [&](auto& first, auto& second, Heights h, int width, int step, int delta, double beam) {
                               Vorn32f result = -1;
                               digest.add(vornsDTW_L2_32f_D2(first.data(), h.first, second.data(), h.second, width,
                                                             step, &result, delta, static_cast<Vorn32f>(beam)));
                               digest.add(result);
                           });
}
void floatLists(Source& source, Digest& digest) {
    overSequences<Vorn32f>(source, 20,
                           [&](auto& first, auto& second, Heights h, int width, int step, int delta, double beam) {
                               Vorn32f result = -1;
                               digest.add(vornsDTW_L2_32f_D2L(pointersTo(first, h.first, step).data(), h.first,
                                                              pointersTo(second, h.second, step).data(), h.second,
                                                              width, &result, delta, static_cast<Vorn32f>(beam)));
                               digest.add(result);
                           });
}

const int warpingScales[] = {0, 3, -4, 200};
template <class T>
auto integerBlocks(double range,
                   VornStatus (*function)(const T*, int, const T*, int, int, int, Vorn32s*, int, Vorn32s, int)) {
    return [=](Source& source, Digest& digest) {
        overSequences<T>(
            source, range, [&](auto& first, auto& second, Heights h, int width, int step, int delta, double beam) {
                Vorn32s result = -1;
                digest.add(function(first.data(), h.first, second.data(), h.second, width, step, &result, delta,
                                    static_cast<Vorn32s>(std::min(beam, 2e9)), warpingScales[(width + h.first) % 4]));
                digest.add(result);
            });
    };
}
template <class T>
auto integerLists(double range, VornStatus (*function)(const T* const*, int, const T* const*, int, int, Vorn32s*, int,
                                                       Vorn32s, int)) {
    return [=](Source& source, Digest& digest) {
        overSequences<T>(
            source, range, [&](auto& first, auto& second, Heights h, int width, int step, int delta, double beam) {
                Vorn32s result = -1;
                digest.add(function(pointersTo(first, h.first, step).data(), h.first,
                                    pointersTo(second, h.second, step).data(), h.second, width, &result, delta,
                                    static_cast<Vorn32s>(std::min(beam, 2e9)), warpingScales[(width + h.first) % 4]));
                digest.add(result);
            });
    };
}

#define WARPING_ROW(function, run) \
    { #function, run }
const Workload workloads[] = {
    WARPING_ROW(vornsDTW_L2_32f_D2, floatBlocks),
    WARPING_ROW(vornsDTW_L2_32f_D2L, floatLists),
    WARPING_ROW(vornsDTW_L2_8u32s_D2Sfs, integerBlocks<Vorn8u>(200, vornsDTW_L2_8u32s_D2Sfs)),
    WARPING_ROW(vornsDTW_L2_8u32s_D2LSfs, integerLists<Vorn8u>(200, vornsDTW_L2_8u32s_D2LSfs)),
    WARPING_ROW(vornsDTW_L2Low_16s32s_D2Sfs, integerBlocks<Vorn16s>(30000, vornsDTW_L2Low_16s32s_D2Sfs)),
    WARPING_ROW(vornsDTW_L2Low_16s32s_D2LSfs, integerLists<Vorn16s>(30000, vornsDTW_L2Low_16s32s_D2LSfs)),
};

}  // namespace

Family warpingWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
