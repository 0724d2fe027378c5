// Blind equalisation, and the coding of a high band.
#include <iterator>
#include <vector>

#include "families.h"

namespace verify {
namespace {

// A bias that is carried from frame to frame.
template <auto equalise, class T, class Energy>
void blind(Source& source, Digest& digest, std::initializer_list<Energy> energies) {
    for (int len : lengths) {
        const auto ref = source.values<T>(len, -50, 50);
        std::vector<T> bias(len);
        for (Energy energy : energies) {
            auto x = source.values<T>(len, -50, 50);
            digest.add(equalise(ref.data(), x.data(), bias.data(), len, energy));
            digest.add(x);
            digest.add(bias);
        }
        auto x = source.patterns<T>(len);
        bias = source.patterns<T>(len);
        digest.add(equalise(ref.data(), x.data(), bias.data(), len, *energies.begin()));
        digest.add(x);
        digest.add(bias);
    }
}

const Workload workloads[] = {
    {"vornsBlindEqualization_Aurora_32f",
     [](Source& source, Digest& digest) {
         blind<vornsBlindEqualization_Aurora_32f, Vorn32f, Vorn32f>(source, digest, {3.9f, 10.0f, 3.0f, 4.2f});
     }},
    {"vornsBlindEqualization_Aurora_16s",
     [](Source& source, Digest& digest) {
         blind<vornsBlindEqualization_Aurora_16s, Vorn16s, int>(source, digest, {250, 600, 100, 270});
     }},
    {"vornsHighBandCoding_Aurora_32f",
     [](Source& source, Digest& digest) {
         for (double largest : {1e-6, 1e-4, 1.0, 1e6}) {
             for (int turn = 0; turn < 50; ++turn) {
                 const auto bands = source.values<Vorn32f>(3, 0, largest), low = source.values<Vorn32f>(65, 0, largest),
                            high = source.values<Vorn32f>(129, 0, largest);
                 std::vector<Vorn32f> dst(3);
                 digest.add(vornsHighBandCoding_Aurora_32f(bands.data(), low.data(), high.data(), dst.data()));
                 digest.add(dst);
             }
         }
     }},
    {"vornsHighBandCoding_Aurora_32s_Sfs",
     [](Source& source, Digest& digest) {
         for (int scaleFactor : {-7, -9, -40, 0, 30}) {
             for (int bits : {1, 4, 20, 31, 32}) {
                 const auto values = [&](std::size_t n) {
                     auto x = source.values<Vorn32s>(n);
                     for (Vorn32s& v : x) v = bits < 32 ? v & ((Vorn32s{1} << (bits - 1)) - 1) : v;
                     return x;
                 };
                 const auto bands = values(3), low = values(65), high = values(129);
                 std::vector<Vorn32s> dst(3);
                 digest.add(vornsHighBandCoding_Aurora_32s_Sfs(bands.data(), low.data(), high.data(), dst.data(),
                                                               scaleFactor));
                 digest.add(dst);
             }
         }
     }},
};

}  // namespace

Family equalisationWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
