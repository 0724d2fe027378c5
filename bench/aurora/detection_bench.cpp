// Voice activity detection beside plain loops: streams of frames, from the cache or from memory.
#include "features/common.h"
#include "plain/detection.h"

namespace {

using namespace bench::features;

constexpr std::size_t bands = 25, spectrum = 64, frameLength = bands + spectrum;

using Record = std::shared_ptr<unsigned char[]>;
VornsVADState* stateIn(const Record& record) { return reinterpret_cast<VornsVADState*>(record.get()); }

// Magnitudes in which flags come and go.
template <class T, class Tracker, class Init, class Decision>
void addStream(const std::string& name, Init init, Decision decision, std::size_t bytes, const std::string& size) {
    const std::size_t frames = bytes / (frameLength * sizeof(T));
    const auto x = signal<T>(frames * frameLength, 1, 20);
    for (std::size_t n = 0; n < frames; ++n) {
        if (n / 50 % 2 == 1) {
            for (std::size_t i = 0; i < frameLength; i += 2) x[n * frameLength + i] = static_cast<T>(60);
        }
    }
    const auto record = bench::buffer<unsigned char>(64);
    init(stateIn(record));
    const auto own = std::make_shared<plain::Detector<Tracker>>();
    const auto speech = bench::buffer<int>(1);
    const auto over = [=](const auto& decide) {
        int count = 0;
        for (std::size_t n = 0; n < frames; ++n) {
            count += decide(&x[n * frameLength], &x[n * frameLength + bands]) == vornVADSpeech;
        }
        speech[0] = count;
    };
    compare(name, size, static_cast<std::int64_t>(frames), speech,
            {{bench::ours,
              [=] {
                  over([=](const T* b, const T* s) {
                      int result;
                      decision(b, s, 0, &result, stateIn(record));
                      return result;
                  });
              }},
             {"plain", [=] { over([=](const T* b, const T* s) { return plain::decide(*own, b, s, 0); }); }}});
}

void addFlush() {
    const auto record = bench::buffer<unsigned char>(64);
    vornsVADInit_Aurora_32f(stateIn(record));
    const auto own = std::make_shared<plain::Detector<float>>();
    const auto result = bench::buffer<int>(1);
    compare("vornsVADFlush_Aurora_32f", "7 calls", 7, result,
            {{bench::ours,
              [=] {
                  for (int n = 0; n < 7; ++n) vornsVADFlush_Aurora_32f(result.get(), stateIn(record));
              }},
             {"plain", [=] {
                  for (int n = 0; n < 7; ++n) result[0] = plain::flush(*own);
              }}});
}

const bench::Family detection([] {
    for (auto [size, bytes] :
         {std::pair("L1", bench::inL1), {"last level", bench::inLastLevel}, {"memory", bench::inMemory / 8}}) {
        addStream<float, float>("vornsVADDecision_Aurora_32f", vornsVADInit_Aurora_32f, vornsVADDecision_Aurora_32f,
                                bytes, size);
        addStream<std::int16_t, std::int32_t>("vornsVADDecision_Aurora_16s", vornsVADInit_Aurora_16s,
                                              vornsVADDecision_Aurora_16s, bytes, size);
    }
    addFlush();
});

}  // namespace
