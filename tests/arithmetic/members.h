// Every member of element-wise arithmetic, one row each: its name and what it means. How it is called and on which
// types follows from its pointer. Members with the same types share the code that checks them.
#pragma once

#include <algorithm>
#include <cmath>
#include <type_traits>

#include "arithmetic/quotients.h"
#include "calls/signature.h"
#include "model/arithmetic.h"
#include "vornsr.h"

namespace members {

// ---- Meanings: of<D>(a, b, sf) for operands a and b, of which b may be a constant.

template <class T>
constexpr bool isComplex = requires(T z) {
    z.re;
};
template <class T>
constexpr bool isReal = std::is_floating_point_v<T>;

struct Sum {
    template <class D, class A, class B>
    static D of(A a, B b, int sf) {
        if constexpr (isReal<D>) {
            return static_cast<D>(a) + static_cast<D>(b);
        } else if constexpr (!isComplex<D>) {
            return model::sum<D>(a, b, sf);
        } else if constexpr (isReal<model::Part<D>>) {
            return {a.re + b.re, a.im + b.im};
        } else {
            return model::sumC(a, b, sf);
        }
    }
};
struct Difference {
    template <class D, class A, class B>
    static D of(A a, B b, int sf) {
        if constexpr (isReal<D>) {
            return static_cast<D>(a) - static_cast<D>(b);
        } else if constexpr (!isComplex<D>) {
            return model::difference<D>(a, b, sf);
        } else if constexpr (isReal<model::Part<D>>) {
            return {a.re - b.re, a.im - b.im};
        } else {
            return model::differenceC(a, b, sf);
        }
    }
};
struct Product {
    template <class D, class A, class B>
    static D of(A a, B b, int sf) {
        if constexpr (isReal<D>) {
            return static_cast<D>(a) * static_cast<D>(b);
        } else if constexpr (isReal<A>) {
            return model::rounded16s((a * b) * model::singleOfScale(sf));
        } else if constexpr (std::is_same_v<A, Vorn32s> && std::is_same_v<B, Vorn32s>) {
            return model::product32s(a, b, sf);
        } else if constexpr (!isComplex<D>) {
            return model::product<D>(a, b, sf);
        } else if constexpr (!isComplex<A>) {
            return {model::product<Vorn32s>(a, b.re, sf), model::product<Vorn32s>(a, b.im, sf)};
        } else if constexpr (isReal<model::Part<D>>) {
            return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
        } else {
            return model::productC(a, b, sf);
        }
    }
};
struct Quotient {
    template <class D, class A, class B>
    static D of(A a, B b, int sf) {
        if constexpr (isReal<D>) {
            return a / b;
        } else if constexpr (!isComplex<D>) {
            return model::quotient<D>(a, b, sf);
        } else if constexpr (isReal<model::Part<D>>) {
            return divided(a, b);
        } else {
            return model::quotientC(a, b, sf);
        }
    }
};

// Vectors are subtracted from, and divided into, the second one; so are vectors and constants in the Rev forms.
template <class Operation>
struct Reversed {
    template <class D, class A, class B>
    static D of(A a, B b, int sf) {
        return Operation::template of<D>(b, a, sf);
    }
};
using DifferenceFromSecond = Reversed<Difference>;
using QuotientOfSecond = Reversed<Quotient>;

// Single constants have short cuts: a neutral one leaves the operand as it is.
struct SumWithConstant {
    template <class D, class A, class V>
    static D of(A a, V v, int sf) {
        if constexpr (std::is_same_v<D, Vorn32f>) {
            if (v == 0) return a;
        }
        return Sum::of<D>(a, v, sf);
    }
};
struct DifferenceOfConstant {
    template <class D, class A, class V>
    static D of(A a, V v, int sf) {
        if constexpr (std::is_same_v<D, Vorn32f>) {
            if (v == 0) return a;
        }
        return Difference::of<D>(a, v, sf);
    }
};
struct ProductWithConstant {
    template <class D, class A, class V>
    static D of(A a, V v, int sf) {
        if constexpr (std::is_same_v<D, Vorn32f>) {
            if (v == 1 || v == 0) return v == 1 ? a : 0;
        }
        return Product::of<D>(a, v, sf);
    }
};
struct QuotientByConstant {
    template <class D, class A, class V>
    static D of(A a, V v, int sf) {
        if constexpr (std::is_same_v<D, Vorn32f>) {
            return ProductWithConstant::of<D>(a, 1 / v, sf);
        } else {
            return Quotient::of<D>(a, v, sf);
        }
    }
};

// ---- Members.

template <class First, class Second, class Result>
struct Member : calls::Function {
    using A = First;
    using B = Second;
    using D = Result;
    D (*model)(A, B, int);

    bool inPlace() const { return has(calls::Role::srcDst); }
    bool constant() const { return has(calls::Role::val); }
    bool scaled() const { return has(calls::Role::scaleFactor); }
    bool dividesByVector() const { return nameHas("Div_") || nameHas("DivCRev"); }
    bool dividesByConstant() const { return nameHas("DivC_"); }

    // Any form as one of two operands and a result: a srcDst gets its operand before the call, a constant is the first
    // element of b.
    VornStatus operator()(const A* a, const B* b, D* d, int len, int sf) const {
        using calls::Role;
        if constexpr (std::is_same_v<A, D>) {
            if (inPlace() && constant()) std::copy_n(a, len, d);
        }
        if constexpr (std::is_same_v<B, D>) {
            if (inPlace() && !constant()) std::copy_n(b, len, d);
        }
        calls::Arguments arguments;
        arguments[Role::src1] = a, arguments[Role::dst] = arguments[Role::srcDst] = d;
        arguments[Role::src2] = arguments[Role::val] = b;
        arguments[Role::len] = len, arguments[Role::scaleFactor] = sf;
        return Function::operator()(arguments);
    }
};

template <class Meaning, class Visit, class... P>
void row(const Visit& visit, const char* name, VornStatus (*function)(P...)) {
    using Of = decltype(calls::operandsOf(function));
    using A = typename Of::A;
    using B = typename Of::B;
    using D = typename Of::D;
    visit(Member<A, B, D>{{name, function, calls::elementWiseShapes}, &Meaning::template of<D, A, B>});
}

// visit(member) for each.
template <class Visit>
void forAll(const Visit& visit) {
#define ROW(function, meaning) row<meaning>(visit, VORN_NAMED(function));
    // clang-format off
    ROW(vornsAdd_8u_Sfs, Sum)
    ROW(vornsAdd_8u16u, Sum)
    ROW(vornsAdd_16u, Sum)
    ROW(vornsAdd_16s, Sum)
    ROW(vornsAdd_16s_Sfs, Sum)
    ROW(vornsAdd_16s32f, Sum)
    ROW(vornsAdd_16sc_Sfs, Sum)
    ROW(vornsAdd_32u, Sum)
    ROW(vornsAdd_32s_Sfs, Sum)
    ROW(vornsAdd_32sc_Sfs, Sum)
    ROW(vornsAdd_32f, Sum)
    ROW(vornsAdd_32fc, Sum)
    ROW(vornsAdd_64f, Sum)
    ROW(vornsAdd_64fc, Sum)
    ROW(vornsSub_8u_Sfs, DifferenceFromSecond)
    ROW(vornsSub_16s, DifferenceFromSecond)
    ROW(vornsSub_16s_Sfs, DifferenceFromSecond)
    ROW(vornsSub_16s32f, DifferenceFromSecond)
    ROW(vornsSub_16sc_Sfs, DifferenceFromSecond)
    ROW(vornsSub_32s_Sfs, DifferenceFromSecond)
    ROW(vornsSub_32sc_Sfs, DifferenceFromSecond)
    ROW(vornsSub_32f, DifferenceFromSecond)
    ROW(vornsSub_32fc, DifferenceFromSecond)
    ROW(vornsSub_64f, DifferenceFromSecond)
    ROW(vornsSub_64fc, DifferenceFromSecond)
    ROW(vornsMul_8u_Sfs, Product)
    ROW(vornsMul_8u16u, Product)
    ROW(vornsMul_16s, Product)
    ROW(vornsMul_16s_Sfs, Product)
    ROW(vornsMul_16s32f, Product)
    ROW(vornsMul_16s32s_Sfs, Product)
    ROW(vornsMul_16u16s_Sfs, Product)
    ROW(vornsMul_16sc_Sfs, Product)
    ROW(vornsMul_32s_Sfs, Product)
    ROW(vornsMul_32sc_Sfs, Product)
    ROW(vornsMul_32s32sc_Sfs, Product)
    ROW(vornsMul_32f, Product)
    ROW(vornsMul_32fc, Product)
    ROW(vornsMul_64f, Product)
    ROW(vornsMul_64fc, Product)
    ROW(vornsDiv_8u_Sfs, QuotientOfSecond)
    ROW(vornsDiv_16s_Sfs, QuotientOfSecond)
    ROW(vornsDiv_16sc_Sfs, QuotientOfSecond)
    ROW(vornsDiv_32s_Sfs, QuotientOfSecond)
    ROW(vornsDiv_32s16s_Sfs, QuotientOfSecond)
    ROW(vornsDiv_32f, QuotientOfSecond)
    ROW(vornsDiv_32fc, QuotientOfSecond)
    ROW(vornsDiv_64f, QuotientOfSecond)
    ROW(vornsDiv_64fc, QuotientOfSecond)
    ROW(vornsAdd_8u_ISfs, Sum)
    ROW(vornsAdd_16s_I, Sum)
    ROW(vornsAdd_16s_ISfs, Sum)
    ROW(vornsAdd_16s32s_I, Sum)
    ROW(vornsAdd_16sc_ISfs, Sum)
    ROW(vornsAdd_32s_ISfs, Sum)
    ROW(vornsAdd_32sc_ISfs, Sum)
    ROW(vornsAdd_32f_I, Sum)
    ROW(vornsAdd_32fc_I, Sum)
    ROW(vornsAdd_64f_I, Sum)
    ROW(vornsAdd_64fc_I, Sum)
    ROW(vornsSub_8u_ISfs, DifferenceFromSecond)
    ROW(vornsSub_16s_I, DifferenceFromSecond)
    ROW(vornsSub_16s_ISfs, DifferenceFromSecond)
    ROW(vornsSub_16sc_ISfs, DifferenceFromSecond)
    ROW(vornsSub_32s_ISfs, DifferenceFromSecond)
    ROW(vornsSub_32sc_ISfs, DifferenceFromSecond)
    ROW(vornsSub_32f_I, DifferenceFromSecond)
    ROW(vornsSub_32fc_I, DifferenceFromSecond)
    ROW(vornsSub_64f_I, DifferenceFromSecond)
    ROW(vornsSub_64fc_I, DifferenceFromSecond)
    ROW(vornsMul_8u_ISfs, Product)
    ROW(vornsMul_16s_I, Product)
    ROW(vornsMul_16s_ISfs, Product)
    ROW(vornsMul_16sc_ISfs, Product)
    ROW(vornsMul_32s_ISfs, Product)
    ROW(vornsMul_32sc_ISfs, Product)
    ROW(vornsMul_32s32sc_ISfs, Product)
    ROW(vornsMul_32f_I, Product)
    ROW(vornsMul_32fc_I, Product)
    ROW(vornsMul_64f_I, Product)
    ROW(vornsMul_64fc_I, Product)
    ROW(vornsDiv_8u_ISfs, QuotientOfSecond)
    ROW(vornsDiv_16s_ISfs, QuotientOfSecond)
    ROW(vornsDiv_16sc_ISfs, QuotientOfSecond)
    ROW(vornsDiv_32s_ISfs, QuotientOfSecond)
    ROW(vornsDiv_32f_I, QuotientOfSecond)
    ROW(vornsDiv_32fc_I, QuotientOfSecond)
    ROW(vornsDiv_64f_I, QuotientOfSecond)
    ROW(vornsDiv_64fc_I, QuotientOfSecond)
    ROW(vornsAddC_8u_Sfs, SumWithConstant)
    ROW(vornsAddC_16s_Sfs, SumWithConstant)
    ROW(vornsAddC_16sc_Sfs, SumWithConstant)
    ROW(vornsAddC_32s_Sfs, SumWithConstant)
    ROW(vornsAddC_32sc_Sfs, SumWithConstant)
    ROW(vornsAddC_32f, SumWithConstant)
    ROW(vornsAddC_32fc, SumWithConstant)
    ROW(vornsAddC_64f, SumWithConstant)
    ROW(vornsAddC_64fc, SumWithConstant)
    ROW(vornsSubC_8u_Sfs, DifferenceOfConstant)
    ROW(vornsSubC_16s_Sfs, DifferenceOfConstant)
    ROW(vornsSubC_16sc_Sfs, DifferenceOfConstant)
    ROW(vornsSubC_32s_Sfs, DifferenceOfConstant)
    ROW(vornsSubC_32sc_Sfs, DifferenceOfConstant)
    ROW(vornsSubC_32f, DifferenceOfConstant)
    ROW(vornsSubC_32fc, DifferenceOfConstant)
    ROW(vornsSubC_64f, DifferenceOfConstant)
    ROW(vornsSubC_64fc, DifferenceOfConstant)
    ROW(vornsSubCRev_8u_Sfs, DifferenceFromSecond)
    ROW(vornsSubCRev_16s_Sfs, DifferenceFromSecond)
    ROW(vornsSubCRev_16sc_Sfs, DifferenceFromSecond)
    ROW(vornsSubCRev_32s_Sfs, DifferenceFromSecond)
    ROW(vornsSubCRev_32sc_Sfs, DifferenceFromSecond)
    ROW(vornsSubCRev_32f, DifferenceFromSecond)
    ROW(vornsSubCRev_32fc, DifferenceFromSecond)
    ROW(vornsSubCRev_64f, DifferenceFromSecond)
    ROW(vornsSubCRev_64fc, DifferenceFromSecond)
    ROW(vornsMulC_8u_Sfs, ProductWithConstant)
    ROW(vornsMulC_16s_Sfs, ProductWithConstant)
    ROW(vornsMulC_16sc_Sfs, ProductWithConstant)
    ROW(vornsMulC_32s_Sfs, ProductWithConstant)
    ROW(vornsMulC_32sc_Sfs, ProductWithConstant)
    ROW(vornsMulC_32f, ProductWithConstant)
    ROW(vornsMulC_32fc, ProductWithConstant)
    ROW(vornsMulC_64f, ProductWithConstant)
    ROW(vornsMulC_64fc, ProductWithConstant)
    ROW(vornsMulC_32f16s_Sfs, ProductWithConstant)
    ROW(vornsMulC_Low_32f16s, ProductWithConstant)
    ROW(vornsDivC_8u_Sfs, QuotientByConstant)
    ROW(vornsDivC_16s_Sfs, QuotientByConstant)
    ROW(vornsDivC_16sc_Sfs, QuotientByConstant)
    ROW(vornsDivC_32f, QuotientByConstant)
    ROW(vornsDivC_32fc, QuotientByConstant)
    ROW(vornsDivC_64f, QuotientByConstant)
    ROW(vornsDivC_64fc, QuotientByConstant)
    ROW(vornsDivCRev_16u, QuotientOfSecond)
    ROW(vornsDivCRev_32f, QuotientOfSecond)
    ROW(vornsAddC_8u_ISfs, SumWithConstant)
    ROW(vornsAddC_16s_I, SumWithConstant)
    ROW(vornsAddC_16s_ISfs, SumWithConstant)
    ROW(vornsAddC_16sc_ISfs, SumWithConstant)
    ROW(vornsAddC_32s_ISfs, SumWithConstant)
    ROW(vornsAddC_32sc_ISfs, SumWithConstant)
    ROW(vornsAddC_32f_I, SumWithConstant)
    ROW(vornsAddC_32fc_I, SumWithConstant)
    ROW(vornsAddC_64f_I, SumWithConstant)
    ROW(vornsAddC_64fc_I, SumWithConstant)
    ROW(vornsSubC_8u_ISfs, DifferenceOfConstant)
    ROW(vornsSubC_16s_I, DifferenceOfConstant)
    ROW(vornsSubC_16s_ISfs, DifferenceOfConstant)
    ROW(vornsSubC_16sc_ISfs, DifferenceOfConstant)
    ROW(vornsSubC_32s_ISfs, DifferenceOfConstant)
    ROW(vornsSubC_32sc_ISfs, DifferenceOfConstant)
    ROW(vornsSubC_32f_I, DifferenceOfConstant)
    ROW(vornsSubC_32fc_I, DifferenceOfConstant)
    ROW(vornsSubC_64f_I, DifferenceOfConstant)
    ROW(vornsSubC_64fc_I, DifferenceOfConstant)
    ROW(vornsSubCRev_8u_ISfs, DifferenceFromSecond)
    ROW(vornsSubCRev_16s_ISfs, DifferenceFromSecond)
    ROW(vornsSubCRev_16sc_ISfs, DifferenceFromSecond)
    ROW(vornsSubCRev_32s_ISfs, DifferenceFromSecond)
    ROW(vornsSubCRev_32sc_ISfs, DifferenceFromSecond)
    ROW(vornsSubCRev_32f_I, DifferenceFromSecond)
    ROW(vornsSubCRev_32fc_I, DifferenceFromSecond)
    ROW(vornsSubCRev_64f_I, DifferenceFromSecond)
    ROW(vornsSubCRev_64fc_I, DifferenceFromSecond)
    ROW(vornsMulC_8u_ISfs, ProductWithConstant)
    ROW(vornsMulC_16s_I, ProductWithConstant)
    ROW(vornsMulC_16s_ISfs, ProductWithConstant)
    ROW(vornsMulC_16sc_ISfs, ProductWithConstant)
    ROW(vornsMulC_32s_ISfs, ProductWithConstant)
    ROW(vornsMulC_32sc_ISfs, ProductWithConstant)
    ROW(vornsMulC_32f_I, ProductWithConstant)
    ROW(vornsMulC_32fc_I, ProductWithConstant)
    ROW(vornsMulC_64f_I, ProductWithConstant)
    ROW(vornsMulC_64fc_I, ProductWithConstant)
    ROW(vornsDivC_8u_ISfs, QuotientByConstant)
    ROW(vornsDivC_16s_ISfs, QuotientByConstant)
    ROW(vornsDivC_16sc_ISfs, QuotientByConstant)
    ROW(vornsDivC_32f_I, QuotientByConstant)
    ROW(vornsDivC_32fc_I, QuotientByConstant)
    ROW(vornsDivC_64f_I, QuotientByConstant)
    ROW(vornsDivC_64fc_I, QuotientByConstant)
    ROW(vornsDivCRev_16u_I, QuotientOfSecond)
    ROW(vornsDivCRev_32f_I, QuotientOfSecond)
    // clang-format on
#undef ROW
}

}  // namespace members
