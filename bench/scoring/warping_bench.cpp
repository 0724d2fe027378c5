// Dynamic time warping beside the plain loop: two words of a recogniser, without and with a beam, and long sequences
// that a beam follows.
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "plain/warping.h"
#include "support/bench.h"
#include "vornsr.h"

namespace {

constexpr Vorn32f noBeam = 1e30f;

// Features that say the same at two speeds, on an integer scale.
template <class T>
struct Words {
    Words(int height1_, int height2_, int width_)
        : height1(height1_), height2(height2_), width(width_), src1(rows(height1)), src2(rows(height2)) {}

    int height1, height2, width;
    std::shared_ptr<T[]> src1, src2;

private:
    std::shared_ptr<T[]> rows(int height) const {
        std::minstd_rand generator(static_cast<unsigned>(height));
        std::uniform_real_distribution<double> noise(-4, 4);
        auto block = bench::buffer<T>(static_cast<std::size_t>(height) * width);
        for (int i = 0; i < height; ++i) {
            const double at = (i + 0.5) / height * std::max(height1, height2) / 15;
            for (int c = 0; c < width; ++c)
                block[static_cast<std::size_t>(i) * width + c] =
                    static_cast<T>(128 + 60 * std::sin(at * (1 + 0.3 * (c % 7)) + c) + noise(generator));
        }
        return block;
    }
};

void addFloats(const std::string& size, const Words<Vorn32f>& words, int delta, Vorn32f beam) {
    const auto cells = std::int64_t{words.height1} * words.height2;
    bench::add("DTW_L2_32f_D2", size, bench::ours, cells, [=] {
        Vorn32f result;
        vornsDTW_L2_32f_D2(words.src1.get(), words.height1, words.src2.get(), words.height2, words.width, words.width,
                           &result, delta, beam);
        bench::keep(&result);
    });
    bench::add("DTW_L2_32f_D2", size, "plain", cells, [=] {
        Vorn32f result =
            plain::warp(words.src1.get(), words.height1, words.src2.get(), words.height2, words.width, delta, beam);
        bench::keep(&result);
    });
}

template <class T, class Ours>
void addIntegers(const std::string& name, int width, Ours ours) {
    const Words<T> words(100, 120, width);
    const std::string size = std::to_string(width) + "x100x120";
    bench::add(name, size, bench::ours, 12000, [=] {
        Vorn32s result;
        ours(words.src1.get(), 100, words.src2.get(), 120, width, width, &result, 100, 2147483647, 0);
        bench::keep(&result);
    });
    bench::add(name, size, "plain", 12000, [=] {
        Vorn32f cost = plain::warp(words.src1.get(), 100, words.src2.get(), 120, width, 100, noBeam);
        auto result = static_cast<Vorn32s>(std::rint(cost));
        bench::keep(&result);
    });
}

const bench::Family words([] {
    for (int width : {1, 4, 13, 14, 26, 39, 64, 500}) {
        const std::string size = std::to_string(width);
        const Words<Vorn32f> pair(100, 120, width);
        addFloats(size + "x100x120", pair, 100, noBeam);
        if (width != 13 && width != 39) continue;
        addFloats(size + "x100x120 band", pair, 5, noBeam);
        addFloats(size + "x100x120 beam", pair, 100, 100.0f * std::sqrt(static_cast<float>(width)));
        addFloats(size + "x100x120 narrow", pair, 100, 0.0f);
        addFloats(size + "x1000x1200", Words<Vorn32f>(1000, 1200, width), 1000, noBeam);
        addFloats(size + " LLC beam", Words<Vorn32f>(20000, 24000, width), 200, 60.0f);
        addFloats(size + " memory beam", Words<Vorn32f>(400000, 480000, width), 200, 60.0f);
    }
    for (int width : {13, 39}) {
        addIntegers<Vorn8u>("DTW_L2_8u32s_D2Sfs", width, vornsDTW_L2_8u32s_D2Sfs);
        addIntegers<Vorn16s>("DTW_L2Low_16s32s_D2Sfs", width, vornsDTW_L2Low_16s32s_D2Sfs);
    }
});

}  // namespace
