// Features and word models in 16 bits, for the two 16-bit arithmetics of the mixture scores.
#pragma once

#include <vector>

#include "model.h"

namespace digits {

// How the score of a frame in a state is made. A score is a natural logarithm in each of them.
enum class Arithmetic {
    kFloat,   // single precision throughout
    kScaled,  // 16-bit features and models, sums in single precision
    kLow,     // 16-bit features and models, sums in 32-bit integers: whole numbers before the constant is added
};

const char* nameOf(Arithmetic arithmetic);
const char* functionOf(Arithmetic arithmetic);  // that scores a mixture in it

// The models on the integer grid of an arithmetic; constants and transitions stay with the models, which must outlive
// this object.
class QuantisedModels {
public:
    // For the two 16-bit arithmetics.
    QuantisedModels(const Models& models, Arithmetic arithmetic);

    // Rows of kRowStep elements from rows of kRowStep elements, each feature on its grid; out of range saturates.
    std::vector<Vorn16s> quantise(const std::vector<Vorn32f>& rows) const;

    const Models& models() const { return models_; }
    Arithmetic arithmetic() const { return arithmetic_; }
    Vorn32f score(int word, int state, const Vorn16s* features) const;

private:
    struct Matrices {
        std::vector<Vorn16s> mean, inverseVariance;
    };

    const Models& models_;
    Arithmetic arithmetic_;
    int scaleFactor_;
    std::vector<Vorn32f> grid_;  // steps of the integers in one unit of each feature
    std::vector<std::vector<Matrices>> words_;
};

}  // namespace digits
