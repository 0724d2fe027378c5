// Gaussian scores beside the plain loops, Eigen, and BLAS used as toolkits use it: with the products of the model and
// the squares of the frames made beforehand, val - S / 2 = c + x^2 . (-v / 2) + x . (m v), one frame against many
// Gaussians is two matrix-vector products and many frames are a matrix product.
#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <utility>

#include "calls/signature.h"
#include "plain/gaussian.h"
#include "support/bench.h"
#include "vornsr.h"

#if defined(VORNSR_HAVE_EIGEN)
#include <Eigen/Core>
#endif
#if defined(VORNSR_HAVE_OPENBLAS)
#include <cblas.h>
#endif

namespace {

const int columns[] = {13, 26, 39, 40};
const int gaussians[] = {1, 8, 128, 1024, 65536};
const int frames[] = {1, 128, 1000};
const int mixtures[] = {6, 8, 128, 1000};

// Numbers in [low, high), fast enough for models of 40 MB before the first benchmark runs.
template <class T>
std::shared_ptr<T[]> random(std::size_t len, double low, double high) {
    auto block = bench::buffer<T>(len);
    std::uint64_t state = len;
    for (std::size_t i = 0; i < len; ++i) {
        state = state * 6364136223846793005u + 1442695040888963407u;
        block[i] = static_cast<T>(low + (high - low) * 0x1p-32 * static_cast<double>(state >> 32));
    }
    return block;
}

// Vectors of the size that features and inverse variances have: rows and one more, against which all rows stand.
template <class T>
struct Vectors {
    static constexpr bool isInteger = std::is_integral_v<T>;

    Vectors(int len, int height, double amplitude)
        : mean(random<T>(std::size_t(len) * std::size_t(height), -amplitude, amplitude)),
          var(random<T>(std::size_t(len) * std::size_t(height) + 1, isInteger ? 1 : 0.1, isInteger ? 20 : 2)),
          one(random<T>(std::size_t(len), -amplitude, amplitude)) {}

    std::shared_ptr<T[]> mean, var, one;
};
// Gaussians far apart: in a mixture one of them decides. Close together all count.
template <class T>
constexpr double farApart = std::is_integral_v<T> ? 3000 : 10;
template <class T>
constexpr double closeTogether = farApart<T> / 30;

// Members of one kind share the vectors.
template <class T>
const Vectors<T>& vectorsOf(int len, int height, double amplitude) {
    static std::map<std::pair<std::pair<int, int>, double>, Vectors<T>> all;
    return all.try_emplace({{len, height}, amplitude}, len, height, amplitude).first->second;
}

template <class T, class Val>
struct Data {
    Data(int len_, int height_, double amplitude)
        : vectors(vectorsOf<T>(len_, height_, amplitude)),
          len(len_),
          height(height_),
          mean(vectors.mean.get()),
          var(vectors.var.get()),
          one(vectors.one.get()),
          valBlock(random<Val>(std::size_t(height), -12, -5)),
          scoresBlock(random<Val>(std::size_t(height), -100, -50)),
          val(valBlock.get()),
          scores(scoresBlock.get()) {}

    Vectors<T> vectors;
    int len, height;
    const T *mean, *var, *one;
    std::shared_ptr<Val[]> valBlock, scoresBlock;
    const Val* val;
    Val* scores;  // in place: they drift from call to call
};

// A function and what it is compared with.
template <class T, class Val>
struct Peer {
    const char* name;
    std::function<void(const Data<T, Val>&)> call;
};

// Ours, whatever its layout and optional arguments. A constant for all rows is -50.
template <class... P>
auto member(const char* name, VornStatus (*function)(P...), int scaleFactor = 0) {
    using calls::Role;
    using Signature = calls::Signature<calls::scoreShapes, P...>;
    using T = typename Signature::template Pointee<void, Role::rows>;
    using Val = typename Signature::template Pointee<void, Role::dst, Role::result>;
    return Peer<T, Val>{
        name, [=](const Data<T, Val>& d) {
            [[maybe_unused]] static Val total;
            Signature::call(function, [&]<Role role, class Argument>() -> Argument {
                if constexpr (role == Role::rows) {
                    return d.mean;
                } else if constexpr (role == Role::rowVars || role == Role::var) {
                    return d.var;
                } else if constexpr (role == Role::src1) {
                    return d.one;
                } else if constexpr (role == Role::vals) {
                    return d.val;
                } else if constexpr (role == Role::dst) {
                    return d.scores;
                } else if constexpr (role == Role::result) {
                    return &total;
                } else if constexpr (role == Role::val) {
                    return -50;
                } else {
                    return role == Role::scaleFactor ? scaleFactor : role == Role::height ? d.height : d.len;
                }
            });
            bench::keep(&total);
        }};
}
template <class T, class Val>
void add(const char* function, const char* kind, int len, int height, double amplitude,
         std::initializer_list<Peer<T, Val>> peers) {
    const Data<T, Val> data(len, height, amplitude);
    for (const Peer<T, Val>& peer : peers) {
        bench::add(function, std::to_string(len) + "x" + std::to_string(height) + kind, peer.name, height,
                   [data, call = peer.call] {
                       call(data);
                       bench::keep(data.scores);
                   });
    }
}

// ---- Peers of the single forms.

#if defined(VORNSR_HAVE_EIGEN)
using Rows = Eigen::Map<const Eigen::Array<float, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>>;
using Vector = Eigen::Map<const Eigen::Array<float, 1, Eigen::Dynamic>>;

void eigenGaussians(const Data<float, float>& d) {
    const Rows mean(d.mean, d.height, d.len), var(d.var, d.height, d.len);
    const Vector one(d.one, d.len);
    for (int g = 0; g < d.height; ++g) d.scores[g] -= 0.5f * ((one - mean.row(g)).square() * var.row(g)).sum();
}
void eigenFrames(const Data<float, float>& d) {
    const Rows src(d.mean, d.height, d.len);
    const Vector mean(d.one, d.len), var(d.var, d.len);
    for (int i = 0; i < d.height; ++i) d.scores[i] = -50.0f - 0.5f * ((src.row(i) - mean).square() * var).sum();
}
#endif

#if defined(VORNSR_HAVE_OPENBLAS)
// Two matrix-vector products; the squares of the frame are part of the work.
void blasGaussians(const Data<float, float>& d) {
    float squares[64];
    for (int j = 0; j < d.len; ++j) squares[j] = d.one[j] * d.one[j];
    cblas_sgemv(CblasRowMajor, CblasNoTrans, d.height, d.len, -0.5f, d.var, d.len, squares, 1, 1.0f, d.scores, 1);
    cblas_sgemv(CblasRowMajor, CblasNoTrans, d.height, d.len, 1.0f, d.mean, d.len, d.one, 1, 1.0f, d.scores, 1);
}
#endif

// ---- One frame against many Gaussians.

void addGaussians(int len, int height) {
    const auto amplitude = farApart<float>;
    add<float, float>("vornsLogGaussMultiMix_32f_D2", "", len, height, amplitude, {
        member(bench::ours, vornsLogGaussMultiMix_32f_D2),
            {"plain", [](auto& d) { plain::multiMix(d.mean, d.var, d.len, d.one, d.len, d.scores, d.height); }},
            {"plain-baseline",
             [](auto& d) { plain_baseline::multiMix(d.mean, d.var, d.len, d.one, d.len, d.scores, d.height); }},
#if defined(VORNSR_HAVE_EIGEN)
            {"eigen", eigenGaussians},
#endif
#if defined(VORNSR_HAVE_OPENBLAS)
            {"openblas-2gemv", blasGaussians},
#endif
    });
    add<double, double>(
        "vornsLogGaussMultiMix_64f_D2", "", len, height, amplitude,
        {member(bench::ours, vornsLogGaussMultiMix_64f_D2),
         {"plain", [](auto& d) { plain::multiMix(d.mean, d.var, d.len, d.one, d.len, d.scores, d.height); }},
         {"plain-baseline",
          [](auto& d) { plain_baseline::multiMix(d.mean, d.var, d.len, d.one, d.len, d.scores, d.height); }}});
    add<Vorn16s, Vorn32f>(
        "vornsLogGaussMultiMix_Scaled_16s32f_D2", "", len, height, farApart<Vorn16s>,
        {member(bench::ours, vornsLogGaussMultiMix_Scaled_16s32f_D2, 4),
         {"plain", [](auto& d) { plain::multiMix(d.mean, d.var, d.len, d.one, d.len, d.scores, d.height); }},
         {"plain-baseline",
          [](auto& d) { plain_baseline::multiMix(d.mean, d.var, d.len, d.one, d.len, d.scores, d.height); }}});
    for (const bool shifts : {false, true}) {
        add<Vorn16s, Vorn32s>(
            "vornsLogGaussMultiMix_Low_16s32s_D2Sfs", shifts ? "sf8" : "sf0", len, height, farApart<Vorn16s>,
            {member(bench::ours, vornsLogGaussMultiMix_Low_16s32s_D2Sfs, shifts ? 8 : 0),
             {"plain", [](auto& d) { plain::multiMixLow(d.mean, d.var, d.len, d.one, d.len, d.scores, d.height); }},
             {"plain-baseline",
              [](auto& d) { plain_baseline::multiMixLow(d.mean, d.var, d.len, d.one, d.len, d.scores, d.height); }}});
    }
}

// ---- Many frames against one Gaussian: the rows are frames.

void addFrames(int len, int height) {
    add<float, float>("vornsLogGauss_32f_D2", "", len, height, farApart<float>, {
        member(bench::ours, vornsLogGauss_32f_D2),
            {"plain", [](auto& d) { plain::frames(d.mean, d.len, d.one, d.var, d.len, d.scores, d.height, -50.0f); }},
            {"plain-baseline",
             [](auto& d) { plain_baseline::frames(d.mean, d.len, d.one, d.var, d.len, d.scores, d.height, -50.0f); }},
#if defined(VORNSR_HAVE_EIGEN)
            {"eigen", eigenFrames},
#endif
    });
    add<Vorn16s, Vorn32f>(
        "vornsLogGauss_Scaled_16s32f_D2", "", len, height, farApart<Vorn16s>,
        {member(bench::ours, vornsLogGauss_Scaled_16s32f_D2, 4),
         {"plain", [](auto& d) { plain::frames(d.mean, d.len, d.one, d.var, d.len, d.scores, d.height, -50.0f); }},
         {"plain-baseline",
          [](auto& d) { plain_baseline::frames(d.mean, d.len, d.one, d.var, d.len, d.scores, d.height, -50.0f); }}});
    add<Vorn16s, Vorn32s>(
        "vornsLogGauss_Low_16s32s_D2Sfs", "", len, height, farApart<Vorn16s>,
        {member(bench::ours, vornsLogGauss_Low_16s32s_D2Sfs, 0),
         {"plain", [](auto& d) { plain::framesLow(d.mean, d.len, d.one, d.var, d.len, d.scores, d.height, -50); }},
         {"plain-baseline",
          [](auto& d) { plain_baseline::framesLow(d.mean, d.len, d.one, d.var, d.len, d.scores, d.height, -50); }}});
    add<float, float>(
        "vornsLogGaussMax_32f_D2", "", len, height, farApart<float>,
        {member(bench::ours, vornsLogGaussMax_32f_D2),
         {"plain", [](auto& d) { plain::framesMax(d.mean, d.len, d.one, d.var, d.len, d.scores, d.height, -50.0f); }},
         {"plain-baseline",
          [](auto& d) { plain_baseline::framesMax(d.mean, d.len, d.one, d.var, d.len, d.scores, d.height, -50.0f); }}});
}

// ---- Mixtures. "scores-only" over ours is the share of the scores in the call.

void addMixtures(int len, int height, const char* kind, bool close) {
    static Vorn32f total;
    const auto amplitude = close ? closeTogether<float> : farApart<float>;
    const auto amplitude16 = close ? closeTogether<Vorn16s> : farApart<Vorn16s>;
    add<float, float>("vornsLogGaussMixture_32f_D2", kind, len, height, amplitude,
                      {member(bench::ours, vornsLogGaussMixture_32f_D2),
                       member("scores-only", vornsLogGaussMultiMix_32f_D2),
                       {"plain", [](auto& d) {
                            total = plain::mixture(d.one, d.mean, d.var, d.height, d.len, d.len, d.val);
                            bench::keep(&total);
                        }}});
    add<double, double>(
        "vornsLogGaussMixture_64f_D2", kind, len, height, amplitude,
        {member(bench::ours, vornsLogGaussMixture_64f_D2), member("scores-only", vornsLogGaussMultiMix_64f_D2)});
    add<Vorn16s, Vorn32f>("vornsLogGaussMixture_Scaled_16s32f_D2", kind, len, height, amplitude16,
                          {member(bench::ours, vornsLogGaussMixture_Scaled_16s32f_D2, 20),
                           member("scores-only", vornsLogGaussMultiMix_Scaled_16s32f_D2, 20)});
    add<Vorn16s, Vorn32f>("vornsLogGaussMixture_LowScaled_16s32f_D2", kind, len, height, amplitude16,
                          {member(bench::ours, vornsLogGaussMixture_LowScaled_16s32f_D2, 15),
                           member("scores-only", vornsLogGaussMultiMix_LowScaled_16s32f_D2, 15)});
}

// ---- Many frames against many Gaussians: frame by frame, and as one matrix product over [x^2, x] and [-v / 2; m v].

void addBlock(int len, int numFrames, int numGaussians) {
    const auto cells = std::size_t(numFrames) * std::size_t(numGaussians);
    const auto& model = vectorsOf<float>(len, numGaussians, farApart<float>);
    const auto& speech = vectorsOf<float>(len, numFrames, farApart<float>);
    auto scores = bench::buffer<float>(cells);
    const std::string size =
        std::to_string(len) + "x" + std::to_string(numGaussians) + "x" + std::to_string(numFrames) + "frames";
    const char* function = "vornsLogGaussMultiMix_32f_D2";
    bench::add(function, size, bench::ours, std::int64_t(cells), [=] {
        for (int i = 0; i < numFrames; ++i) {
            vornsLogGaussMultiMix_32f_D2(model.mean.get(), model.var.get(), len, speech.mean.get() + i * len, len,
                                         scores.get() + i * numGaussians, numGaussians);
        }
        bench::keep(scores.get());
    });
    bench::add(function, size, "plain", std::int64_t(cells), [=] {
        for (int i = 0; i < numFrames; ++i) {
            plain::multiMix(model.mean.get(), model.var.get(), len, speech.mean.get() + i * len, len,
                            scores.get() + i * numGaussians, numGaussians);
        }
        bench::keep(scores.get());
    });
#if defined(VORNSR_HAVE_OPENBLAS)
    auto expanded = random<float>(2 * std::size_t(len) * std::size_t(numFrames), -1, 1);
    auto weights = random<float>(2 * std::size_t(len) * std::size_t(numGaussians), -1, 1);
    bench::add(function, size, "openblas-gemm", std::int64_t(cells), [=] {
        cblas_sgemm(CblasRowMajor, CblasNoTrans, CblasTrans, numFrames, numGaussians, 2 * len, 1.0f, expanded.get(),
                    2 * len, weights.get(), 2 * len, 1.0f, scores.get(), numGaussians);
        bench::keep(scores.get());
    });
#endif
}

const bench::Family family([] {
    for (int len : columns) {
        for (int height : gaussians) addGaussians(len, height);
        for (int height : frames) addFrames(len, height);
        for (int height : mixtures) {
            addMixtures(len, height, "", false);
            addMixtures(len, height, "close", true);
        }
    }
    for (int numFrames : {128, 1000}) addBlock(39, numFrames, 1024);
});

}  // namespace
