// Reading the table, and what follows from it for each argument.
#include "table.h"

#include <algorithm>
#include <fstream>
#include <functional>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace fuzz {
namespace {

using nlohmann::json;

std::uint64_t bit(int argument) { return std::uint64_t{1} << argument; }

template <class T>
T named(const std::map<std::string, T>& values, const std::string& name) {
    const auto found = values.find(name);
    if (found == values.end()) throw std::runtime_error("unknown word " + name);
    return found->second;
}

std::string textIn(const json& row, const char* key, const char* otherwise) {
    const auto found = row.find(key);
    return found == row.end() || found->is_null() ? otherwise : found->get<std::string>();
}

bool trueIn(const json& row, const char* key, bool otherwise) {
    const auto found = row.find(key);
    return found == row.end() || found->is_null() ? otherwise : found->get<bool>();
}

json treeIn(const json& row, const char* key) {
    const auto found = row.find(key);
    return found == row.end() ? json() : *found;
}

Range rangeOf(const json& row, const Names& names) {
    Range range;
    if (row.is_null()) return range;
    range.any = false;
    for (const json& one : row) {
        Piece piece;
        piece.low = Expression(one.at("lo"), names);
        piece.high = Expression(one.at("hi"), names);
        piece.lowOpen = one.at("loOpen");
        piece.highOpen = one.at("hiOpen");
        piece.by = Expression(treeIn(one, "by"), names);
        piece.notNumber = trueIn(one, "nan", false);
        piece.nonzero = trueIn(one, "nonzero", false);
        range.pieces.push_back(std::move(piece));
    }
    return range;
}

// The names that a tree takes two to the power of.
void findExponents(const json& tree, bool inside, std::map<std::string, bool>& names) {
    if (tree.is_string()) {
        if (inside) names[tree] = true;
    } else if (tree.is_array() && !tree.empty() && tree[0].is_string()) {
        const std::string operation = tree[0];
        if (operation == "log2up") return;
        if (operation == "field") {
            if (inside) names[tree.at(2)] = true;
            return;
        }
        if (operation == "call") return;
        for (std::size_t i = 1; i < tree.size(); ++i) {
            findExponents(tree[i], inside || operation == "pow2" || (operation == "<<" && i == 2), names);
        }
    }
}

}  // namespace

std::uint64_t Range::standsOn() const {
    std::uint64_t needs = 0;
    for (const Piece& piece : pieces) needs |= piece.low.standsOn() | piece.high.standsOn() | piece.by.standsOn();
    return needs;
}

int Function::argument(const std::string& wanted) const {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (arguments[i].name == wanted) return static_cast<int>(i);
    }
    return -1;
}

bool Function::mayGive(int status) const { return std::find(may.begin(), may.end(), status) != may.end(); }

bool Function::mayGiveAfterWriting(int status) const {
    return std::find(partial.begin(), partial.end(), status) != partial.end();
}

Table::Table(const std::string& path) {
    std::ifstream file(path);
    if (!file) throw std::runtime_error("cannot read " + path);
    const json all = json::parse(file);
    for (const auto& [name, value] : all.at("statuses").items()) statusNames_[value] = name;
    const json& rows = all.at("functions");
    functions_.resize(rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        byName_[rows[i].at("name")] = static_cast<int>(i);
        // Names first: expressions may speak of any function's.
        functions_[i].name = rows[i].at("name");
        for (const json& one : rows[i].at("args")) {
            Argument argument;
            argument.name = one.at("name");
            functions_[i].arguments.push_back(std::move(argument));
            for (const char* key : {"count", "height", "step", "width", "bytes"}) {
                findExponents(treeIn(one, key), false, exponents_);
            }
        }
        if (functions_[i].arguments.size() > 63) throw std::runtime_error(functions_[i].name + ": too many arguments");
    }
    for (std::size_t i = 0; i < rows.size(); ++i) {
        try {
            readFunction(rows[i], functions_[i]);
        } catch (const std::exception& error) {
            throw std::runtime_error(functions_[i].name + ": " + error.what());
        }
    }
    findPlaces();
    findSizes();
}

int Table::find(const std::string& name) const {
    const auto found = byName_.find(name);
    return found == byName_.end() ? -1 : found->second;
}

int Table::form(const std::string& name) {
    const auto [at, fresh] = formByName_.emplace(name, static_cast<int>(formNames_.size()));
    if (fresh) formNames_.push_back(name);
    return at->second;
}

int Table::field(const std::string& name) {
    return fieldByName_.emplace(name, static_cast<int>(fieldByName_.size())).first->second;
}

const std::string& Table::statusName(int status) const {
    static const std::string unknown = "no known status";
    const auto found = statusNames_.find(status);
    return found == statusNames_.end() ? unknown : found->second;
}

Names Table::names(const Function& function) {
    Names names;
    names.argument = [&function](const std::string& name) { return function.argument(name); };
    names.isNumber = [&function](int argument) { return function.arguments[argument].role == Role::number; };
    names.isFloat = [&function](int argument) { return function.arguments[argument].element.isFloat(); };
    names.field = [this](const std::string& name) { return field(name); };
    names.function = [this](const std::string& name) { return find(name); };
    names.argumentOf = [this](int other, const std::string& name) {
        const int argument = functions_[other].argument(name);
        if (argument < 0) throw std::runtime_error(functions_[other].name + " has no argument " + name);
        return argument;
    };
    return names;
}

void Table::readFunction(const json& row, Function& function) {
    function.header = textIn(row, "header", "");
    const std::string result = row.at("returns");
    function.result = result == "VornStatus" ? Result::status : result == "void" ? Result::nothing : Result::pointer;
    const json& arguments = row.at("args");
    static const std::map<std::string, Role> roles = {
        {"number", Role::number}, {"array", Role::array}, {"context", Role::context}};
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        function.arguments[i].role = named(roles, arguments[i].at("role"));
        elementOf(arguments[i].at("type"), function.arguments[i].element);
    }
    for (std::size_t i = 0; i < arguments.size(); ++i) readArgument(arguments[i], function, function.arguments[i]);
    const json made = treeIn(row, "made");
    if (!made.is_null()) {
        function.makesBlock = true;
        function.blockCount = Expression(made.at("count"), names(function));
        function.blockForm = form(made.at("form"));
        elementOf(result.substr(0, result.find('*')), function.blockElement);
    }
    function.may = row.value("may", std::vector<int>());
    function.partial = row.value("partial", std::vector<int>());
    function.unset = trueIn(row, "unset", false);
    function.memory = trueIn(row, "memory", false);
    function.shortage = trueIn(row, "shortage", false);
    function.address = trueIn(row, "address", false);

    std::uint64_t known = 0;
    std::vector<int>& order = function.order;
    std::function<void(int, std::uint64_t)> resolve = [&](int i, std::uint64_t path) {
        if (known & bit(i)) return;
        if (path & bit(i)) throw std::runtime_error(function.arguments[i].name + " stands on itself");
        for (std::size_t other = 0; other < function.arguments.size(); ++other) {
            if (function.arguments[i].needs & bit(static_cast<int>(other)))
                resolve(static_cast<int>(other), path | bit(i));
        }
        known |= bit(i);
        order.push_back(i);
    };
    for (std::size_t i = 0; i < function.arguments.size(); ++i) resolve(static_cast<int>(i), 0);
    // What a size stands on through other numbers counts as well.
    for (const int i : order) {
        Argument& argument = function.arguments[i];
        for (const int other : order) {
            if (argument.sizeNeeds & bit(other) && function.arguments[other].role == Role::number) {
                argument.sizeNeeds |= function.arguments[other].needs;
            }
        }
    }
}

void Table::readArgument(const json& row, Function& function, Argument& argument) {
    static const std::map<std::string, Direction> directions = {
        {"in", Direction::in}, {"out", Direction::out}, {"inout", Direction::inout}, {"work", Direction::work}};
    static const std::map<std::string, Shape> shapes = {
        {"flat", Shape::flat}, {"rows", Shape::rows}, {"list", Shape::list}};
    static const std::map<std::string, Order> orders = {
        {"none", Order::none}, {"rising", Order::rising}, {"strict", Order::strict}, {"falling", Order::falling}};
    static const std::map<std::string, Verb> verbs = {{"new", Verb::make},    {"init", Verb::init},
                                                      {"use", Verb::use},     {"set", Verb::set},
                                                      {"ready", Verb::ready}, {"free", Verb::release}};
    const Names names = this->names(function);
    argument.type = row.at("type");
    argument.pointers = row.at("pointers");
    argument.tested = trueIn(row, "tested", true);
    argument.nullable = trueIn(row, "nullable", false);
    const bool isElement = elementOf(argument.type, argument.element);
    switch (argument.role) {
        case Role::number:
            if (!isElement) throw std::runtime_error(argument.name + ": unknown type " + argument.type);
            argument.range = rangeOf(treeIn(row, "range"), names);
            argument.needs = argument.range.standsOn();
            break;
        case Role::array: {
            if (!isElement) throw std::runtime_error(argument.name + ": unknown type " + argument.type);
            argument.direction = named(directions, row.at("direction"));
            argument.shape = named(shapes, row.at("shape"));
            if (argument.shape == Shape::flat) {
                argument.width = Expression(row.at("count"), names);
            } else {
                argument.height = Expression(row.at("height"), names);
                argument.width = Expression(row.at("width"), names);
                if (argument.shape == Shape::rows) argument.step = Expression(row.at("step"), names);
            }
            argument.noNull = trueIn(row, "nonull", false);
            argument.sizeNeeds = argument.height.standsOn() | argument.step.standsOn() | argument.width.standsOn();
            const json content = treeIn(row, "content");
            if (!content.is_null()) {
                argument.hasContent = true;
                argument.content = rangeOf(treeIn(content, "range"), names);
                argument.order = named(orders, textIn(content, "order", "none"));
                argument.contentTested = trueIn(content, "tested", true);
            }
            argument.needs = argument.sizeNeeds | argument.content.standsOn();
            for (const json& name : treeIn(row, "same")) argument.same.push_back(function.argument(name));
            break;
        }
        case Role::context:
            argument.verb = named(verbs, row.at("verb"));
            for (const json& name : row.at("forms")) argument.forms.push_back(form(name));
            argument.formTested = trueIn(row, "formTested", true);
            argument.count = Expression(treeIn(row, "count"), names);
            argument.bytes = Expression(treeIn(row, "bytes"), names);
            argument.sizeNeeds = argument.count.standsOn() | argument.bytes.standsOn();
            argument.needs = argument.sizeNeeds;
            if (const std::string memory = textIn(row, "memory", ""); !memory.empty()) {
                argument.memory = function.argument(memory);
            }
            const json fields = treeIn(row, "fields");
            for (const auto& [name, tree] : fields.items()) {
                argument.fields.emplace_back(field(name), Expression(tree, names));
                findExponents(tree, false, exponents_);
            }
            // Every number of the making call is a field, if the row says nothing else of that name.
            if (argument.makes()) {
                for (const Argument& other : function.arguments) {
                    const int place = field(other.name);
                    const bool said = std::any_of(argument.fields.begin(), argument.fields.end(),
                                                  [&](const auto& one) { return one.first == place; });
                    if (other.role == Role::number && !said) {
                        argument.fields.emplace_back(place, Expression(json(other.name), names));
                    }
                }
                for (const auto& one : argument.fields) argument.needs |= one.second.standsOn();
                argument.needs &= ~bit(function.argument(argument.name));  // fields may be asked of the context itself
            }
            break;
    }
}

void Table::findPlaces() {
    for (auto* places : {&makers_, &setters_, &users_, &releasers_}) places->resize(formNames_.size());
    for (std::size_t i = 0; i < functions_.size(); ++i) {
        const Function& function = functions_[i];
        if (function.makesBlock) makers_[function.blockForm].push_back({static_cast<int>(i), -1});
        for (std::size_t a = 0; a < function.arguments.size(); ++a) {
            const Argument& argument = function.arguments[a];
            const Place place = {static_cast<int>(i), static_cast<int>(a)};
            for (const int form : argument.forms) {
                switch (argument.verb) {
                    case Verb::make:
                    case Verb::init:
                        makers_[form].push_back(place);
                        break;
                    case Verb::release:
                        releasers_[form].push_back(place);
                        break;
                    case Verb::set:
                        setters_[form].push_back(place);
                        [[fallthrough]];
                    case Verb::use:
                    case Verb::ready:
                        if (!argument.count.present()) users_[form].push_back(place);
                        break;
                }
            }
        }
    }
}

// Numbers that sizes follow from must be small; so must those of calls that allocate, and whatever is counted from zero
// without an end.
void Table::findSizes() {
    for (Function& function : functions_) {
        std::uint64_t sizes = function.blockCount.standsOn();
        bool makes = function.makesBlock;
        for (const Argument& argument : function.arguments) {
            sizes |= argument.sizeNeeds;
            makes = makes || argument.makes();
        }
        for (std::size_t i = 0; i < function.arguments.size(); ++i) {
            Argument& argument = function.arguments[i];
            if (argument.role != Role::number) continue;
            argument.bounded = sizes >> i & 1;
            argument.size = argument.bounded || (makes && !argument.range.any);
            for (const Piece& piece : argument.range.pieces) {
                argument.size =
                    argument.size || (piece.low.present() && !piece.high.present() && !argument.element.isFloat());
            }
            // An order of a transform ends at a constant; other orders bear the name as well.
            const auto endsByItself = [](const Piece& piece) {
                return piece.high.present() && piece.high.standsOn() == 0;
            };
            const auto& pieces = argument.range.pieces;
            argument.exponent = argument.size && exponents_.count(argument.name) != 0 &&
                                std::all_of(pieces.begin(), pieces.end(), endsByItself);
        }
    }
}

}  // namespace fuzz
