// Autocorrelation beside the plain loop.
#include <algorithm>
#include <cstdlib>
#include <string>

#include "plain/autocorrelation.h"
#include "support/bench.h"
#include "vornsr.h"

namespace {

void autoCorrelation(int srcLen, int lags) {
    const auto src = bench::buffer<float>(static_cast<std::size_t>(srcLen)),
               dst = bench::buffer<float>(static_cast<std::size_t>(lags));
    for (int i = 0; i < srcLen; ++i) src[i] = static_cast<float>(std::rand()) / static_cast<float>(RAND_MAX) - 0.5f;
    const std::string size = std::to_string(srcLen) + "x" + std::to_string(lags);
    bench::add("vornsAutoCorr_32f", size, bench::ours, srcLen, [=] {
        vornsAutoCorr_32f(src.get(), srcLen, dst.get(), lags);
        bench::keep(dst.get());
    });
    bench::add("vornsAutoCorr_32f", size, "plain", srcLen, [=] {
        plain::autoCorrelation(src.get(), srcLen, dst.get(), lags);
        bench::keep(dst.get());
    });
}

const bench::Family family([] {
    for (int lags : {5, 13, 17, 100, 400, 1000}) autoCorrelation(std::max(400, lags), lags);
});

}  // namespace
