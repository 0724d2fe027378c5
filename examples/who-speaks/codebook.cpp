// Contexts of the library, and the warning that they have fewer words than were asked for.
#include "codebook.h"

#include <bit>

#include "checked.h"

namespace digits {
namespace {

constexpr int kWholeSteps = 0;  // scale factor of the distances in 16 bits

template <typename Element>
int heightOf(const std::vector<Element>& rows, int step) {
    return static_cast<int>(rows.size()) / step;
}

}  // namespace

Codebook::Codebook(const std::vector<Vorn32f>& rows, int width, int step, int words, Search search) : width_(width) {
    VornCdbkState* state = nullptr;
    DIGITS_WARNS(vornStsCdbkSizeReduced, vornsCdbkInitAlloc_L2_32f, &state, rows.data(), width, step,
                 heightOf(rows, step), words, static_cast<int>(search));
    state_.reset(state);
}

Codebook Codebook::grown(const std::vector<Vorn32f>& rows, int width, int step, int words, Search tree) {
    return Codebook(rows, width, step, words, tree);
}

Codebook Codebook::of(const std::vector<Vorn32f>& words, int width) {
    return Codebook(words, width, width, heightOf(words, width), Search::kScan);
}

int Codebook::size() const {
    int size = 0;
    DIGITS_CALL(vornsGetCdbkSize_32f, state_.get(), &size);
    return size;
}

int Codebook::bits() const { return std::bit_width(static_cast<unsigned>(size() - 1)); }

std::vector<Vorn32f> Codebook::words() const {
    std::vector<Vorn32f> words(static_cast<std::size_t>(size()) * width_);
    DIGITS_CALL(vornsGetCodebook_32f, state_.get(), words.data(), width_);
    return words;
}

Nearest<Vorn32f> Codebook::nearest(const Stretch& frames) const {
    const auto height = static_cast<std::size_t>(frames.height);
    Nearest<Vorn32f> result{std::vector<Vorn32s>(height), std::vector<Vorn32f>(height)};
    DIGITS_CALL(vornsVQDist_32f, frames.rows, kRowStep, result.word.data(), result.distance.data(), frames.height,
                state_.get());
    return result;
}

std::vector<Vorn16s> inSteps(const std::vector<Vorn32f>& values) {
    std::vector<Vorn16s> steps(values.size());
    DIGITS_CALL(vornsConvert_32f16s_Sfs, values.data(), steps.data(), static_cast<int>(values.size()), vornRndNear,
                -kStepsExponent);
    return steps;
}

Codebook16::Codebook16(const std::vector<Vorn16s>& rows, int width, int step, int words, Search search)
    : width_(width) {
    VornCdbkState* state = nullptr;
    DIGITS_WARNS(vornStsCdbkSizeReduced, vornsCdbkInitAlloc_L2_16s, &state, rows.data(), width, step,
                 heightOf(rows, step), words, static_cast<int>(search));
    state_.reset(state);
}

Codebook16 Codebook16::grown(const std::vector<Vorn16s>& rows, int width, int step, int words) {
    return Codebook16(rows, width, step, words, Search::kTreeByRadius);
}

Codebook16 Codebook16::of(const std::vector<Vorn16s>& words, int width) {
    return Codebook16(words, width, width, heightOf(words, width), Search::kScan);
}

std::vector<Vorn16s> Codebook16::words() const {
    int size = 0;
    DIGITS_CALL(vornsGetCdbkSize_16s, state_.get(), &size);
    std::vector<Vorn16s> words(static_cast<std::size_t>(size) * width_);
    DIGITS_CALL(vornsGetCodebook_16s, state_.get(), words.data(), width_);
    return words;
}

Nearest<Vorn32s> Codebook16::nearest(const std::vector<Vorn16s>& rows) const {
    const int height = heightOf(rows, kRowStep);
    Nearest<Vorn32s> result{std::vector<Vorn32s>(static_cast<std::size_t>(height)),
                            std::vector<Vorn32s>(static_cast<std::size_t>(height))};
    DIGITS_CALL(vornsVQDist_16s32s_Sfs, rows.data(), kRowStep, result.word.data(), result.distance.data(), height,
                state_.get(), kWholeSteps);
    return result;
}

double sumOfSquares(const std::vector<Vorn32f>& distances) {
    Vorn64f sum = 0.0;
    DIGITS_CALL(vornsDotProd_32f64f, distances.data(), distances.data(), static_cast<int>(distances.size()), &sum);
    return sum;
}

}  // namespace digits
