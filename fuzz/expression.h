// Sizes and bounds that follow from other arguments, as small trees that are evaluated for every call.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <nlohmann/json_fwd.hpp>
#include <utility>
#include <vector>

namespace fuzz {

// What an expression asks of the call that it stands in. Arguments are told by their places.
class Scope {
public:
    virtual double number(int argument) const = 0;
    virtual double element(int argument, double index) const = 0;
    virtual double total(int argument) const = 0;  // of the elements of an array
    virtual double field(int argument, double index, int name) const = 0;
    // The number that a function reports through its argument `output`, given those of its other arguments: pairs of a
    // place in its own list and a number, or of a place and -1 - the place of an argument of the call.
    struct Given {
        int argument;
        int passed;  // the place of an argument of the call that is passed as it is, or -1
        double value;
    };
    virtual double reported(int function, int output, const std::vector<Given>& given) const = 0;

protected:
    ~Scope() = default;
};

// How names become places while the table is read.
struct Names {
    std::function<int(const std::string&)> argument;  // -1 if there is none
    std::function<bool(int)> isNumber, isFloat;
    std::function<int(const std::string&)> field;
    std::function<int(const std::string&)> function;
    std::function<int(int function, const std::string&)> argumentOf;
};

class Expression {
public:
    Expression() = default;
    Expression(const nlohmann::json& tree, const Names& names);

    bool present() const { return !nodes_.empty(); }
    double value(const Scope& scope, double i = 0) const { return evaluate(0, scope, i); }
    // A bit for each argument that it stands on.
    std::uint64_t standsOn() const { return standsOn_; }

private:
    enum class Operation : std::uint8_t {
        constant,
        number,
        index,
        element,
        run,
        total,
        field,
        fieldAt,
        reported,
        sum,
        choose,
        add,
        subtract,
        multiply,
        divide,
        remainder,
        shiftLeft,
        shiftRight,
        less,
        lessEqual,
        equal,
        unequal,
        greaterEqual,
        greater,
        least,
        most,
        absolute,
        powerOfTwo,
        logarithm,
        roundUp,
    };
    struct Node {
        Operation operation = Operation::constant;
        double constant = 0;
        bool isFloat = false;                    // then a division is not truncated
        int a = -1, b = -1, c = -1;              // operands, or places
        std::vector<std::pair<int, int>> given;  // of calls: (argument, node)
    };

    int add(const nlohmann::json& tree, const Names& names);
    int argument(const nlohmann::json& name, const Names& names);
    double evaluate(int node, const Scope& scope, double i) const;

    std::vector<Node> nodes_;
    std::uint64_t standsOn_ = 0;
};

}  // namespace fuzz
