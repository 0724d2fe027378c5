// What each function asks of its arguments, as tools/extents.py writes it from the headers and the table of extents.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "element.h"
#include "expression.h"

namespace fuzz {

struct Piece {
    Expression low, high;  // absent: no bound
    bool lowOpen = false, highOpen = false;
    Expression by;                            // if there: only so many apart
    bool notNumber = false, nonzero = false;  // instead of bounds
};

struct Range {
    bool any = true;
    std::vector<Piece> pieces;
    std::uint64_t standsOn() const;
};

enum class Role : std::uint8_t { number, array, context };
enum class Direction : std::uint8_t { in, out, inout, work };
enum class Shape : std::uint8_t { flat, rows, list };
enum class Order : std::uint8_t { none, rising, strict, falling };
enum class Verb : std::uint8_t { make, init, use, set, ready, release };

struct Argument {
    std::string name, type;
    int pointers = 0;
    bool tested = true;
    bool nullable = false;
    Role role = Role::number;
    Element element;

    // Numbers.
    Range range;
    bool size = false;      // how much is done or allocated follows from it, so it should be small
    bool exponent = false;  // as an exponent of two at that
    bool bounded = false;   // the size of an array of the call follows from it, so that too much is seen beforehand

    // Arrays: flat ones are rows, one in number.
    Direction direction = Direction::in;
    Shape shape = Shape::flat;
    Expression height, step, width;
    bool noNull = false;
    bool hasContent = false, contentTested = true;
    Range content;
    Order order = Order::none;
    std::vector<int> same;

    // Contexts.
    Verb verb = Verb::use;
    std::vector<int> forms;
    bool formTested = true;
    Expression count;  // of an array of pointers to contexts
    Expression bytes;  // of the caller's memory
    int memory = -1;   // the array that it is made in
    std::vector<std::pair<int, Expression>> fields;

    // What must be known before the argument can be chosen, and of that what its size stands on.
    std::uint64_t needs = 0;
    std::uint64_t sizeNeeds = 0;

    bool written() const {
        return role == Role::array && (direction == Direction::out || direction == Direction::inout);
    }
    bool makes() const { return role == Role::context && (verb == Verb::make || verb == Verb::init); }
};

enum class Result : std::uint8_t { status, nothing, pointer };

struct Function {
    std::string name, header;
    Result result = Result::status;
    bool makesBlock = false;
    Expression blockCount;
    int blockForm = -1;
    Element blockElement;
    std::vector<Argument> arguments;
    std::vector<int> may, partial;
    bool unset = false;
    bool memory = false;     // it may allocate
    bool shortage = false;   // it may give no error where memory is short
    bool address = false;    // its results depend on the addresses of its arrays
    std::vector<int> order;  // in which arguments are chosen, so that what they need is known

    int argument(const std::string& name) const;  // -1 if there is none
    bool mayGive(int status) const;
    bool mayGiveAfterWriting(int status) const;
};

// A function and the argument that a form stands at.
struct Place {
    int function;
    int argument;  // -1: the block that it returns
};

class Table {
public:
    // Throws std::runtime_error with what is wrong.
    explicit Table(const std::string& path);

    const std::vector<Function>& functions() const { return functions_; }
    const Function& at(int function) const { return functions_[function]; }
    int find(const std::string& name) const;  // -1 if there is none

    // By form.
    const std::vector<Place>& makers(int form) const { return makers_[form]; }
    const std::vector<Place>& setters(int form) const { return setters_[form]; }
    const std::vector<Place>& users(int form) const { return users_[form]; }
    const std::vector<Place>& releasers(int form) const { return releasers_[form]; }
    int forms() const { return static_cast<int>(formNames_.size()); }
    const std::string& formName(int form) const { return formNames_[form]; }
    const std::string& statusName(int status) const;

private:
    void readFunction(const nlohmann::json& row, Function& function);
    void readArgument(const nlohmann::json& row, Function& function, Argument& argument);
    int form(const std::string& name);
    int field(const std::string& name);
    Names names(const Function& function);
    void findPlaces();
    void findSizes();

    std::vector<Function> functions_;
    std::map<std::string, int> byName_, formByName_, fieldByName_;
    std::vector<std::string> formNames_;
    std::vector<std::vector<Place>> makers_, setters_, users_, releasers_;
    std::map<int, std::string> statusNames_;
    std::map<std::string, bool> exponents_;  // names of numbers and fields that some size is an exponential of
};

}  // namespace fuzz
