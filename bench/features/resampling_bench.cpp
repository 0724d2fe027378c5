// Resampling beside plain loops, speexdsp, libsamplerate and soxr. Items are input samples.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>
#include <string>
#include <vector>

#include "features/common.h"
#include "plain/resampling.h"
#if defined(VORNSR_HAVE_SPEEXDSP)
#include <speex/speex_resampler.h>
#endif
#if defined(VORNSR_HAVE_SAMPLERATE)
#include <samplerate.h>
#endif
#if defined(VORNSR_HAVE_SOXR)
#include <soxr.h>
#endif

namespace {

using namespace bench::features;

// Samples with room around them for any filter in use here, and room for the results.
constexpr int around = 4096;
template <class T>
struct Signal {
    std::shared_ptr<T[]> block, result;
    const T* src;
    int len;
    Signal(int n, double factor) : len(n) {
        block = signal<T>(static_cast<std::size_t>(n + 2 * around), -3000, 3000);
        result = bench::buffer<T>(static_cast<std::size_t>(n * factor) + 64);
        src = block.get() + around;
    }
};

// The peers, on singles and, where they have it, on 16-bit integers. They keep their state from call to call.
template <class T>
std::vector<Call> peers(const Signal<T>& x, int in, int out, std::initializer_list<int> speexQualities) {
    std::vector<Call> calls;
    const int room = static_cast<int>(static_cast<double>(x.len) * out / in) + 60;
#if defined(VORNSR_HAVE_SPEEXDSP)
    for (int quality : speexQualities) {
        static const char* const names[] = {"speex0", "speex1", "speex2", "speex3", "speex4", "speex5",
                                            "speex6", "speex7", "speex8", "speex9", "speex10"};
        int error = 0;
        const std::shared_ptr<SpeexResamplerState> state(
            speex_resampler_init(1, static_cast<spx_uint32_t>(in), static_cast<spx_uint32_t>(out), quality, &error),
            speex_resampler_destroy);
        calls.push_back({names[quality], [=] {
                             auto inLen = static_cast<spx_uint32_t>(x.len), outLen = static_cast<spx_uint32_t>(room);
                             if constexpr (std::is_same_v<T, float>) {
                                 speex_resampler_process_float(state.get(), 0, x.src, &inLen, x.result.get(), &outLen);
                             } else {
                                 speex_resampler_process_int(state.get(), 0, x.src, &inLen, x.result.get(), &outLen);
                             }
                         }});
    }
#endif
#if defined(VORNSR_HAVE_SAMPLERATE)
    if constexpr (std::is_same_v<T, float>) {
        for (const auto& [name, kind] :
             {std::pair("src fastest", SRC_SINC_FASTEST), std::pair("src medium", SRC_SINC_MEDIUM_QUALITY),
              std::pair("src best", SRC_SINC_BEST_QUALITY)}) {
            int error = 0;
            const std::shared_ptr<SRC_STATE> state(src_new(kind, 1, &error), src_delete);
            calls.push_back({name, [=] {
                                 SRC_DATA data = {};
                                 data.data_in = x.src;
                                 data.data_out = x.result.get();
                                 data.input_frames = x.len;
                                 data.output_frames = room;
                                 data.src_ratio = static_cast<double>(out) / in;
                                 src_process(state.get(), &data);
                             }});
        }
    }
#endif
#if defined(VORNSR_HAVE_SOXR)
    for (const auto& [name, recipe] : {std::pair("soxr LQ", SOXR_LQ), std::pair("soxr HQ", SOXR_HQ)}) {
        const soxr_datatype_t type = std::is_same_v<T, float> ? SOXR_FLOAT32_I : SOXR_INT16_I;
        const soxr_io_spec_t io = soxr_io_spec(type, type);
        const soxr_quality_spec_t spec = soxr_quality_spec(static_cast<unsigned long>(recipe), 0);
        soxr_error_t error;
        const std::shared_ptr<soxr> state(soxr_create(in, out, 1, &error, &io, &spec, nullptr), soxr_delete);
        calls.push_back({name, [=] {
                             std::size_t used = 0, made = 0;
                             soxr_process(state.get(), x.src, static_cast<std::size_t>(x.len), &used, x.result.get(),
                                          static_cast<std::size_t>(room), &made);
                         }});
    }
#endif
    return calls;
}

struct Size {
    const char* name;
    int len;
};
constexpr Size sizes[] = {{"10 ms of 48000", 480}, {"L1", 4000}, {"last level", 2000000}};

void addFixed(int in, int out, int taps, int hint, std::initializer_list<int> speexQualities) {
    for (const Size& size : sizes) {
        const Signal<float> x(size.len, static_cast<double>(out) / in);
        VornResampleFixedState_32f* made;
        vornsResamplePolyphaseFixedInitAlloc_32f(&made, in, out, taps, hint, 0.92f, 9.0f);
        const std::shared_ptr<VornResampleFixedState_32f> state(made, vornsResamplePolyphaseFixedFree_32f);
        int bytes, rowLen, height;
        vornsResamplePolyphaseFixedGetSize_32f(in, out, taps, &bytes, &rowLen, &height);
        const auto rows = bench::buffer<float>(static_cast<std::size_t>(rowLen) * static_cast<std::size_t>(height));
        vornsResamplePolyphaseGetFixedFilter_32f(made, rows.get(), rowLen, height);
        const int whole = in / (out / height);
        std::vector<Call> calls = {{bench::ours,
                                    [=] {
                                        double time = 0;
                                        int n;
                                        vornsResamplePolyphaseFixed_32f(state.get(), x.src, x.len, x.result.get(), 1.0f,
                                                                        &time, &n);
                                    }},
                                   {"plain", [=] {
                                        plain::resampleFixed(rows.get(), rowLen, whole, height, (taps + 3) / 4 * 2,
                                                             x.src, x.len, x.result.get(), 0.5f);
                                    }}};
        for (const Call& call : peers(x, in, out, speexQualities)) calls.push_back(call);
        compare("vornsResamplePolyphaseFixed_32f " + std::to_string(in) + " to " + std::to_string(out) + ", " +
                    std::to_string(taps) + (hint == 2 ? " taps, accurate" : " taps"),
                size.name, size.len, x.result, calls);
    }
}

void addFixed16(int in, int out, int taps, int hint, std::initializer_list<int> speexQualities) {
    for (const Size& size : sizes) {
        const Signal<Vorn16s> x(size.len, static_cast<double>(out) / in);
        VornResampleFixedState_16s* made;
        vornsResamplePolyphaseFixedInitAlloc_16s(&made, in, out, taps, hint, 0.92f, 9.0f);
        const std::shared_ptr<VornResampleFixedState_16s> state(made, vornsResamplePolyphaseFixedFree_16s);
        int bytes, rowLen, height;
        vornsResamplePolyphaseFixedGetSize_16s(in, out, taps, &bytes, &rowLen, &height);
        const auto rows = bench::buffer<Vorn16s>(static_cast<std::size_t>(rowLen) * static_cast<std::size_t>(height));
        vornsResamplePolyphaseGetFixedFilter_16s(made, rows.get(), rowLen, height);
        const auto singles = bench::buffer<float>(static_cast<std::size_t>(rowLen) * static_cast<std::size_t>(height));
        std::copy_n(rows.get(), rowLen * height, singles.get());
        const int whole = in / (out / height), halfLen = (taps + 3) / 4 * 2;
        std::vector<Call> calls = {{bench::ours,
                                    [=] {
                                        double time = 0;
                                        int n;
                                        vornsResamplePolyphaseFixed_16s(state.get(), x.src, x.len, x.result.get(), 1.0f,
                                                                        &time, &n);
                                    }},
                                   {"plain", [=] {
                                        if (hint == 2) {
                                            plain::resampleFixed(singles.get(), rowLen, whole, height, halfLen, x.src,
                                                                 x.len, x.result.get(), 0.5f / 16384);
                                        } else {
                                            plain::resampleFixed(rows.get(), rowLen, whole, height, halfLen, x.src,
                                                                 x.len, x.result.get(), 0.5f / 16384);
                                        }
                                    }}};
        for (const Call& call : peers(x, in, out, speexQualities)) calls.push_back(call);
        compare("vornsResamplePolyphaseFixed_16s " + std::to_string(in) + " to " + std::to_string(out) + ", " +
                    std::to_string(taps) + (hint == 2 ? " taps, accurate" : " taps"),
                size.name, size.len, x.result, calls);
    }
}

// As many points a sample and as long a filter as libsamplerate's fastest sinc.
template <class T, class State>
void addVariable(const std::string& name, double factor, const std::string& factorName,
                 VornStatus (*make)(State**, int, int, Vorn32f, Vorn32f, Vorn32f), VornStatus (*release)(State*),
                 VornStatus (*run)(const State*, const T*, int, T*, Vorn64f, Vorn32f, Vorn64f*, int*)) {
    constexpr int nStep = 128;
    for (const Size& size : sizes) {
        const Signal<T> x(size.len, factor);
        State* made;
        make(&made, nStep, 1, 38.5f, 0.9f, 9.0f);
        const std::shared_ptr<State> state(made, release);
        VornResampleState_32f* ofSingles;
        vornsResamplePolyphaseInitAlloc_32f(&ofSingles, nStep, 1, 38.5f, 0.9f, 9.0f);
        struct Fields {
            double invStep;
            int nStep, tableLen;
            float norm;
            int flags;
            const float* table;
        } fields;
        std::memcpy(&fields, static_cast<const void*>(ofSingles), sizeof fields);
        const auto table = bench::buffer<float>(static_cast<std::size_t>(fields.tableLen + 1));
        std::copy_n(fields.table, fields.tableLen + 1, table.get());
        vornsResamplePolyphaseFree_32f(ofSingles);
        std::vector<Call> calls = {{bench::ours,
                                    [=] {
                                        double time = 0;
                                        int n;
                                        run(state.get(), x.src, x.len, x.result.get(), factor, 1.0f, &time, &n);
                                    }},
                                   {"plain", [=] {
                                        plain::resample(table.get(), nStep, fields.tableLen, x.src, x.len,
                                                        x.result.get(), factor, 1.0f);
                                    }}};
        const int in = 1000000, out = static_cast<int>(std::lround(factor * in));
        for (const Call& call : peers(x, in, out, {4})) calls.push_back(call);
        compare(name + " by " + factorName, size.name, size.len, x.result, calls);
    }
}

// The peers' lengths: speexdsp takes 64 taps (quality 4) or 256 (quality 10) at the lower of the two rates.
void addAll() {
    addFixed(48000, 16000, 192, 1, {4});
    addFixed(48000, 16000, 768, 1, {10});
    addFixed(44100, 16000, 176, 1, {4});
    addFixed(44100, 16000, 704, 1, {10});
    addFixed(8000, 16000, 64, 1, {4});
    addFixed(16000, 8000, 128, 1, {4});
    addFixed(48000, 16000, 192, 2, {4});
    addFixed16(48000, 16000, 192, 1, {4});
    addFixed16(44100, 16000, 176, 1, {4});
    addFixed16(8000, 16000, 64, 1, {4});
    addFixed16(48000, 16000, 192, 2, {4});
    for (const auto& [factor, name] :
         {std::pair(1.0 / 3, "1/3"), std::pair(160.0 / 441, "160/441"), std::pair(1 / std::numbers::sqrt2, "0.7071"),
          std::pair(2.0, "2"), std::pair(std::numbers::sqrt2, "1.4142")}) {
        addVariable<float>("vornsResamplePolyphase_32f", factor, name, vornsResamplePolyphaseInitAlloc_32f,
                           vornsResamplePolyphaseFree_32f, vornsResamplePolyphase_32f);
        addVariable<Vorn16s>("vornsResamplePolyphase_16s", factor, name, vornsResamplePolyphaseInitAlloc_16s,
                             vornsResamplePolyphaseFree_16s, vornsResamplePolyphase_16s);
    }
}

const bench::Family family(addAll);

}  // namespace
