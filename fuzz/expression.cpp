// Reading trees, and evaluating them.
#include "expression.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

namespace fuzz {
namespace {

using nlohmann::json;

std::int64_t whole(double value) { return std::fabs(value) < 9e18 ? static_cast<std::int64_t>(value) : 0; }

}  // namespace

Expression::Expression(const json& tree, const Names& names) {
    if (!tree.is_null()) add(tree, names);
}

int Expression::argument(const json& name, const Names& names) {
    const int place = names.argument(name.get<std::string>());
    if (place < 0) throw std::runtime_error("no argument " + name.get<std::string>());
    standsOn_ |= std::uint64_t{1} << place;
    return place;
}

int Expression::add(const json& tree, const Names& names) {
    static const std::map<std::string, Operation> operations = {
        {"+", Operation::add},           {"-", Operation::subtract},      {"*", Operation::multiply},
        {"/", Operation::divide},        {"%", Operation::remainder},     {"<<", Operation::shiftLeft},
        {">>", Operation::shiftRight},   {"<", Operation::less},          {"<=", Operation::lessEqual},
        {"==", Operation::equal},        {"!=", Operation::unequal},      {">=", Operation::greaterEqual},
        {">", Operation::greater},       {"min", Operation::least},       {"max", Operation::most},
        {"abs", Operation::absolute},    {"pow2", Operation::powerOfTwo}, {"log2up", Operation::logarithm},
        {"roundup", Operation::roundUp}, {"if", Operation::choose},
    };
    const int at = static_cast<int>(nodes_.size());
    nodes_.emplace_back();
    Node node;
    if (tree.is_number()) {
        node.constant = tree.get<double>();
        node.isFloat = tree.is_number_float();
    } else if (tree.is_string()) {
        if (tree == "i") {
            node.operation = Operation::index;
        } else {
            node.operation = Operation::number;
            node.a = argument(tree, names);
            node.isFloat = names.isFloat(node.a);
        }
    } else {
        const std::string operation = tree.at(0);
        if (operation == "total") {
            node.operation = Operation::total;
            node.a = argument(tree.at(1), names);
        } else if (operation == "at" || operation == "run") {
            node.operation = operation == "at" ? Operation::element : Operation::run;
            node.a = argument(tree.at(1), names);
            node.b = add(tree.at(2), names);
        } else if (operation == "field") {
            node.operation = Operation::field;
            node.a = argument(tree.at(1), names);
            node.c = names.field(tree.at(2));
        } else if (operation == "fieldat") {
            node.operation = Operation::fieldAt;
            node.a = argument(tree.at(1), names);
            node.b = add(tree.at(2), names);
            node.c = names.field(tree.at(3));
        } else if (operation == "sum") {
            node.operation = Operation::sum;
            node.a = add(tree.at(1), names);
            node.b = add(tree.at(2), names);
        } else if (operation == "call") {
            node.operation = Operation::reported;
            node.a = names.function(tree.at(1));
            if (node.a < 0) throw std::runtime_error("no function " + tree.at(1).get<std::string>());
            node.b = names.argumentOf(node.a, tree.at(2));
            for (const auto& [name, operand] : tree.at(3).items()) {
                const int place = names.argumentOf(node.a, name);
                // An array or a context is passed as it is.
                const int passed = operand.is_string() && operand != "i" ? names.argument(operand) : -1;
                if (passed >= 0 && !names.isNumber(passed)) {
                    standsOn_ |= std::uint64_t{1} << passed;
                    node.given.emplace_back(place, -1 - passed);
                } else {
                    node.given.emplace_back(place, add(operand, names));
                }
            }
        } else {
            const auto found = operations.find(operation);
            if (found == operations.end()) throw std::runtime_error("no operation " + operation);
            node.operation = found->second;
            int* const operands[] = {&node.a, &node.b, &node.c};
            for (std::size_t i = 1; i < tree.size() && i <= 3; ++i) *operands[i - 1] = add(tree.at(i), names);
        }
    }
    if (node.operation >= Operation::choose) {
        for (const int operand : {node.a, node.b, node.c})
            node.isFloat = node.isFloat || (operand >= 0 && nodes_[operand].isFloat);
    }
    nodes_[at] = std::move(node);
    return at;
}

double Expression::evaluate(int at, const Scope& scope, double i) const {
    const Node& node = nodes_[at];
    const auto a = [&] { return evaluate(node.a, scope, i); };
    const auto b = [&] { return evaluate(node.b, scope, i); };
    switch (node.operation) {
        case Operation::constant:
            return node.constant;
        case Operation::number:
            return scope.number(node.a);
        case Operation::index:
            return i;
        case Operation::element:
            return scope.element(node.a, b());
        case Operation::run: {
            const double place = b();
            double size = 0, end = 0;
            for (double k = 0; end <= place && k < 65536; ++k) end += size = scope.element(node.a, k);
            return size;
        }
        case Operation::total:
            return scope.total(node.a);
        case Operation::field:
            return scope.field(node.a, 0, node.c);
        case Operation::fieldAt:
            return scope.field(node.a, b(), node.c);
        case Operation::reported: {
            std::vector<Scope::Given> given;
            for (const auto& [argument, operand] : node.given) {
                if (operand < 0) {
                    given.push_back({argument, -1 - operand, 0});
                } else {
                    given.push_back({argument, -1, evaluate(operand, scope, i)});
                }
            }
            return scope.reported(node.a, node.b, given);
        }
        case Operation::sum: {
            const double count = std::min(a(), 65536.0);
            double sum = 0;
            for (double k = 0; k < count; ++k) sum += evaluate(node.b, scope, k);
            return sum;
        }
        case Operation::choose:
            return a() != 0 ? b() : evaluate(node.c, scope, i);
        case Operation::add:
            return a() + b();
        case Operation::subtract:
            return a() - b();
        case Operation::multiply:
            return a() * b();
        case Operation::divide: {
            const double left = a(), right = b();
            if (node.isFloat) return left / right;
            return right == 0 ? 0 : std::trunc(left / right);
        }
        case Operation::remainder: {
            const double right = b();
            return right == 0 ? 0 : std::fmod(a(), right);
        }
        case Operation::shiftLeft:
            return std::ldexp(a(), static_cast<int>(whole(b())));
        case Operation::shiftRight:
            return std::floor(std::ldexp(a(), -static_cast<int>(whole(b()))));
        case Operation::less:
            return a() < b();
        case Operation::lessEqual:
            return a() <= b();
        case Operation::equal:
            return a() == b();
        case Operation::unequal:
            return a() != b();
        case Operation::greaterEqual:
            return a() >= b();
        case Operation::greater:
            return a() > b();
        case Operation::least:
            return std::min(a(), b());
        case Operation::most:
            return std::max(a(), b());
        case Operation::absolute:
            return std::fabs(a());
        case Operation::powerOfTwo:
            return std::ldexp(1.0, static_cast<int>(whole(a())));
        case Operation::logarithm: {
            const double value = a();
            int n = 0;
            while (n < 1024 && std::ldexp(1.0, n) < value) ++n;
            return n;
        }
        case Operation::roundUp: {
            const double unit = b();
            return unit == 0 ? a() : std::ceil(a() / unit) * unit;
        }
    }
    return 0;
}

}  // namespace fuzz
