// How a function is called, deduced from the type of its pointer: what each parameter is for, and what its elements
// are. Tests, workloads and benchmarks give a member one row, hand over arguments by their roles and let this find the
// order. It knows no data and no meaning. Calls go through one routine a type of function, so that rows cost little to
// compile; where calls are timed, Signature finds the order at compile time.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "vornsr/types.h"

namespace calls {

// ---- Elements: what arrays and constants consist of.

enum class Element : std::uint8_t {
    none,
    u8,
    s8,
    u16,
    s16,
    u32,
    s32,
    s64,
    f32,
    f64,
    sc8,
    sc16,
    sc32,
    sc64,
    fc32,
    fc64
};
using ElementTypes = std::tuple<void, Vorn8u, Vorn8s, Vorn16u, Vorn16s, Vorn32u, Vorn32s, Vorn64s, Vorn32f, Vorn64f,
                                Vorn8sc, Vorn16sc, Vorn32sc, Vorn64sc, Vorn32fc, Vorn64fc>;
inline constexpr std::size_t elementCount = std::tuple_size_v<ElementTypes>;

// none for types that are no elements.
template <class T>
inline constexpr Element elementOf = []<std::size_t... i>(std::index_sequence<i...>) {
    return static_cast<Element>(((std::is_same_v<T, std::tuple_element_t<i, ElementTypes>> ? i : 0) + ...));
}
(std::make_index_sequence<elementCount>());

constexpr std::size_t partsOf(Element element) { return element >= Element::sc8 ? 2 : 1; }

// use.operator()<T>() with the type of the element's parts.
template <std::size_t i = static_cast<std::size_t>(Element::f64), class Use>
decltype(auto) withPart(Element element, const Use& use) {
    constexpr Element parts[] = {Element::s8, Element::s16, Element::s32, Element::s64, Element::f32, Element::f64};
    if (element >= Element::sc8) element = parts[static_cast<int>(element) - static_cast<int>(Element::sc8)];
    if constexpr (i > 1) {
        if (element != static_cast<Element>(i)) return withPart<i - 1>(element, use);
    }
    return use.template operator()<std::tuple_element_t<i, ElementTypes>>();
}
inline std::size_t alignmentOf(Element element) {
    return withPart(element, []<class T>() { return sizeof(T); });
}
inline std::size_t sizeOf(Element element) { return partsOf(element) * alignmentOf(element); }
inline bool isFloat(Element element) {
    return withPart(element, []<class T>() { return std::is_floating_point_v<T>; });
}

// ---- Parameters, as their types tell, and roles, which say what they are for.

enum class Kind : std::uint8_t { number, value, source, result, list, context };
struct Parameter {
    Kind kind;
    Element element;
};

template <class P>
constexpr Parameter parameterOf() {
    if constexpr (std::is_pointer_v<P>) {
        using T = std::remove_pointer_t<P>;
        if constexpr (std::is_pointer_v<T>) {
            return {Kind::list, elementOf<std::remove_cv_t<std::remove_pointer_t<T>>>};
        } else {
            constexpr Element element = elementOf<std::remove_cv_t<T>>;
            if (element == Element::none) return {Kind::context, element};
            return {std::is_const_v<T> ? Kind::source : Kind::result, element};
        }
    } else {
        return {std::is_same_v<P, int> ? Kind::number : Kind::value, elementOf<P>};
    }
}

enum class Role : std::uint8_t {
    src1,        // the first operand; of scores the vector that all rows share, or the features
    src2,        // the second operand; of scores of one vector the means
    var,         // inverse variances, or variances, beside src1 or src2
    vals,        // a constant for each row
    rows,        // rows in one block, step apart
    rowVars,     // their variances
    rowList,     // rows by their pointers
    rowVarList,  // their variances
    context,
    val,  // a constant, by value; the argument is a pointer to it
    dst,
    srcDst,  // operand and result
    result,  // one element, as are the next two
    result2,
    index,  // an int, and may be null
    len,
    height,
    step,
    scaleFactor,
    hint,
    mode,  // how to round
    count_
};
inline constexpr std::size_t roleCount = static_cast<std::size_t>(Role::count_);

constexpr bool isOneElement(Role role) { return role == Role::result || role == Role::result2 || role == Role::index; }
constexpr bool isPointer(Role role) { return role < Role::len && role != Role::val; }
constexpr bool isWritten(Role role) { return role >= Role::dst && role <= Role::index; }

// Parameters in their order.
struct Shape {
    constexpr Shape(std::initializer_list<Role> list) {
        for (Role role : list) roles[count++] = role;
    }
    constexpr bool has(Role role) const {
        for (std::size_t i = 0; i < count; ++i) {
            if (roles[i] == role) return true;
        }
        return false;
    }
    std::array<Role, 10> roles = {};
    std::size_t count = 0;
};

// The shapes of a group of families: the first that fits a type is meant. Names say what types cannot: _I and _ISfs
// that the result is an operand, Sfs and Scaled that a last number is a scale factor (which a function without name may
// have).

using enum Role;

inline constexpr Shape elementWiseShapes[] = {
    {src1, dst, len},
    {src1, dst, len, scaleFactor},
    {src1, src2, dst, len},
    {src1, src2, dst, len, scaleFactor},
    {src1, len, result},
    {src1, len, result, scaleFactor},
    {src1, len, result, hint},
    {src1, len, result, index},
    {src1, len, result, result2},
    {src1, src2, len, result},
    {src1, src2, len, result, scaleFactor},
    {src1, val, dst, len},
    {src1, val, dst, len, scaleFactor},
    {val, dst, len},
    {dst, len},
    {srcDst, len},
    {srcDst, len, scaleFactor},
    {src1, srcDst, len},
    {src1, srcDst, len, scaleFactor},
    {val, srcDst, len},
    {val, srcDst, len, scaleFactor},
};

inline constexpr Shape conversionShapes[] = {
    {src1, dst, len},
    {src1, dst, len, scaleFactor},
    {src1, dst, len, mode},
    {src1, dst, len, mode, scaleFactor},
};

inline constexpr Shape logArithmeticShapes[] = {
    {src1, srcDst, len},
    {src1, srcDst, len, scaleFactor},
    {src1, srcDst, len, hint},
};
inline constexpr Shape logSumShapes[] = {{src1, result, len}, {src1, result, len, scaleFactor}};

// Scores of one vector; of many frames and one Gaussian; of one frame and many Gaussians; of a mixture.
inline constexpr Shape scoreShapes[] = {
    {src1, src2, len, result, val},
    {src1, src2, len, result, val, scaleFactor},
    {src1, src2, var, len, result, val},
    {src1, src2, var, len, result, val, scaleFactor},
    {src1, src2, context, len, result, val},
    {src1, src2, context, len, result, val, scaleFactor},

    {rows, step, src1, len, dst, height, val},
    {rows, step, src1, len, dst, height, val, scaleFactor},
    {rows, step, src1, var, len, dst, height, val},
    {rows, step, src1, var, len, dst, height, val, scaleFactor},
    {rowList, src1, len, dst, height, val},
    {rowList, src1, len, dst, height, val, scaleFactor},
    {rowList, src1, var, len, dst, height, val},
    {rowList, src1, var, len, dst, height, val, scaleFactor},

    {rows, rowVars, step, src1, len, dst, height},
    {rows, rowVars, step, src1, len, dst, height, scaleFactor},
    {rows, rowVars, step, src1, len, vals, dst, height},
    {rows, rowVars, step, src1, len, vals, dst, height, scaleFactor},
    {rowList, rowVarList, src1, len, dst, height},
    {rowList, rowVarList, src1, len, dst, height, scaleFactor},
    {rowList, rowVarList, src1, len, vals, dst, height},
    {rowList, rowVarList, src1, len, vals, dst, height, scaleFactor},

    {src1, rows, height, step, len, vals, result},
    {src1, rows, height, step, len, vals, result, scaleFactor},
    {src1, rows, rowVars, height, step, len, vals, result},
    {src1, rows, rowVars, height, step, len, vals, result, scaleFactor},
    {src1, rowList, height, len, vals, result},
    {src1, rowList, height, len, vals, result, scaleFactor},
    {src1, rowList, rowVarList, height, len, vals, result},
    {src1, rowList, rowVarList, height, len, vals, result, scaleFactor},
};

// Distances of one vector; of many vectors from one Gaussian; of one vector from many Gaussians.
inline constexpr Shape distanceShapes[] = {
    {src1, src2, var, len, result},
    {src1, src2, var, len, result, scaleFactor},
    {rows, step, src1, var, len, dst, height},
    {rowList, src1, var, len, dst, height},
    {rows, rowVars, step, src1, len, dst, height},
    {rowList, rowVarList, src1, len, dst, height},
};

// The element types of arithmetic: first and second operand, which may be a constant or the srcDst, and result.
template <class First, class Second, class Result>
struct Operands {
    using A = First;
    using B = Second;
    using D = Result;
};
template <class A, class B, class D, class... More>
Operands<A, B, D> operandsOf(VornStatus (*)(const A*, const B*, D*, int, More...));
template <class A, class D, class... More>
Operands<A, D, D> operandsOf(VornStatus (*)(const A*, D*, int, More...));
template <class A, class D, class... More>
Operands<A, A, D> operandsOf(VornStatus (*)(const A*, std::type_identity_t<A>, D*, int, More...));
template <class D, class... More>
Operands<D, D, D> operandsOf(VornStatus (*)(D, D*, int, More...));

// ---- Which shape a type has.

// A constant has the type of an array beside it.
constexpr bool isOfAnArray(Parameter constant, std::span<const Parameter> parameters) {
    for (const Parameter& other : parameters) {
        if ((other.kind == Kind::source || other.kind == Kind::result) && other.element == constant.element)
            return true;
    }
    return false;
}
constexpr bool accepts(Role role, Parameter parameter, std::span<const Parameter> all, std::string_view name) {
    switch (role) {
        case src1:
        case src2:
        case var:
        case vals:
        case rows:
        case rowVars:
            return parameter.kind == Kind::source;
        case rowList:
        case rowVarList:
            return parameter.kind == Kind::list;
        case context:
            return parameter.kind == Kind::context;
        case val:
            return (parameter.kind == Kind::value || parameter.kind == Kind::number) && isOfAnArray(parameter, all);
        case dst:
            return parameter.kind == Kind::result && !name.ends_with("_I") && !name.ends_with("_ISfs");
        case srcDst:
        case result:
        case result2:
            return parameter.kind == Kind::result;
        case index:
            return parameter.kind == Kind::result && parameter.element == Element::s32 &&
                   all[0].element != Element::s32;
        case scaleFactor:
            return parameter.kind == Kind::number &&
                   (name.ends_with("Sfs") || name.find("Scaled") != name.npos || name.empty());
        default:
            return parameter.kind == Kind::number;
    }
}
// Null if there is none.
constexpr const Shape* fittingShape(std::span<const Parameter> parameters, std::string_view name,
                                    std::span<const Shape> shapes) {
    for (const Shape& shape : shapes) {
        bool fits = shape.count == parameters.size();
        for (std::size_t i = 0; i < shape.count && fits; ++i) {
            fits = accepts(shape.roles[i], parameters[i], parameters, name);
        }
        if (fits) return &shape;
    }
    return nullptr;
}

// The list ends with a parameter that nothing refers to: there are functions without any.
template <class... P>
inline constexpr Parameter parametersOf[] = {parameterOf<P>()..., {}};

// What the compiler knows of a function without its name, for calls that are timed: roles at compile time.
template <const auto& shapes, class... P>
struct Signature {
    static constexpr Shape shape = *fittingShape({parametersOf<P...>, sizeof...(P)}, std::string_view(), shapes);
    static constexpr std::size_t indexOf(Role role) {
        std::size_t i = 0;
        while (i < shape.count && shape.roles[i] != role) ++i;
        return i;
    }
    // What a pointer with one of these roles points to; None if there is none.
    template <class None, Role... roles>
    static auto pointee() {
        constexpr std::size_t place = std::min({indexOf(roles)...});
        if constexpr (place < sizeof...(P)) {
            return std::type_identity<
                std::remove_cv_t<std::remove_pointer_t<std::tuple_element_t<place, std::tuple<P...>>>>>();
        } else {
            return std::type_identity<None>();
        }
    }
    template <class None, Role... roles>
    using Pointee = typename decltype(pointee<None, roles...>())::type;

    // get.operator()<role, type>() gives the argument.
    template <class Get>
    static VornStatus call(VornStatus (*function)(P...), const Get& get) {
        return [&]<std::size_t... i>(std::index_sequence<i...>) {
            return function(get.template operator()<shape.roles[i], P>()...);
        }
        (std::index_sequence_for<P...>());
    }
};

// ---- Calls.

// Pointers and numbers by role; a function takes those that it has parameters for.
class Arguments {
public:
    struct Argument {
        Argument() = default;
        Argument(const void* p) : pointer(p) {}
        Argument(int n) : number(n) {}
        const void* pointer = nullptr;
        int number = 0;
    };
    Argument& operator[](Role role) { return all_[static_cast<std::size_t>(role)]; }
    const Argument& operator[](Role role) const { return all_[static_cast<std::size_t>(role)]; }

private:
    std::array<Argument, roleCount> all_;
};

namespace detail {

using Pointer = void (*)();
using Invoke = VornStatus (*)(Pointer, const Role*, const Arguments&);

template <class P>
P get(Role role, const Arguments& arguments) {
    const Arguments::Argument& argument = arguments[role];
    if constexpr (std::is_pointer_v<P>) {
        return static_cast<P>(const_cast<void*>(argument.pointer));
    } else {
        if constexpr (std::is_same_v<P, int>) {
            if (role != val) return argument.number;
        }
        P constant;
        std::memcpy(&constant, argument.pointer, sizeof constant);
        return constant;
    }
}
template <class... P>
VornStatus invoke(Pointer function, const Role* roles, const Arguments& arguments) {
    const auto call = reinterpret_cast<VornStatus (*)(P...)>(function);
    return [&]<std::size_t... i>(std::index_sequence<i...>) { return call(get<P>(roles[i], arguments)...); }
    (std::index_sequence_for<P...>());
}

}  // namespace detail

class Function {
public:
    template <class... P>
    Function(const char* name, VornStatus (*function)(P...), std::span<const Shape> shapes)
        : name_(name),
          pointer_(reinterpret_cast<detail::Pointer>(function)),
          invoke_(detail::invoke<P...>),
          parameters_(parametersOf<P...>, sizeof...(P)),
          shape_(fitting(shapes)) {}

    const char* name() const { return name_; }
    bool nameHas(std::string_view part) const { return std::string_view(name_).find(part) != std::string_view::npos; }
    const Shape& shape() const { return shape_; }
    bool has(Role role) const { return shape_.has(role); }
    // What the argument consists of; none for a role without parameter.
    Element element(Role role) const {
        for (std::size_t i = 0; i < shape_.count; ++i) {
            if (shape_.roles[i] == role) return parameters_[i].element;
        }
        return Element::none;
    }

    VornStatus operator()(const Arguments& arguments) const {
        return invoke_(pointer_, shape_.roles.data(), arguments);
    }

private:
    const Shape& fitting(std::span<const Shape> shapes) const {
        const Shape* shape = fittingShape(parameters_, name_, shapes);
        if (shape == nullptr) throw std::logic_error(std::string("no shape fits ") + name_);
        return *shape;
    }

    const char* name_;
    detail::Pointer pointer_;
    detail::Invoke invoke_;
    std::span<const Parameter> parameters_;
    const Shape& shape_;
};

}  // namespace calls

// A function under its own name: calls::Function f(VORN_NAMED(vornsLn_32f), calls::elementWiseShapes).
#define VORN_NAMED(function) #function, function
