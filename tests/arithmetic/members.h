// Every member of element-wise arithmetic: how it is called, and what it means. Calls and models are plain function
// pointers, so that members with the same types share the code that checks them.
#pragma once

#include <cmath>

#include "arithmetic/quotients.h"
#include "model/arithmetic.h"
#include "vornsr.h"

namespace members {

// visit(name, call, model, scaled): call(src1, src2, dst, len, sf), model(src1, src2, sf).
template <class Visit>
void forVectors(const Visit& visit) {
    visit(
        "vornsAdd_8u_Sfs",
        +[](const Vorn8u* a, const Vorn8u* b, Vorn8u* d, int len, int sf) { return vornsAdd_8u_Sfs(a, b, d, len, sf); },
        +[](Vorn8u a, Vorn8u b, int sf) -> Vorn8u { return model::sum<Vorn8u>(a, b, sf); }, true);
    visit(
        "vornsAdd_8u16u",
        +[](const Vorn8u* a, const Vorn8u* b, Vorn16u* d, int len, int) { return vornsAdd_8u16u(a, b, d, len); },
        +[](Vorn8u a, Vorn8u b, int sf) -> Vorn16u { return model::sum<Vorn16u>(a, b, sf); }, false);
    visit(
        "vornsAdd_16u",
        +[](const Vorn16u* a, const Vorn16u* b, Vorn16u* d, int len, int) { return vornsAdd_16u(a, b, d, len); },
        +[](Vorn16u a, Vorn16u b, int sf) -> Vorn16u { return model::sum<Vorn16u>(a, b, sf); }, false);
    visit(
        "vornsAdd_16s",
        +[](const Vorn16s* a, const Vorn16s* b, Vorn16s* d, int len, int) { return vornsAdd_16s(a, b, d, len); },
        +[](Vorn16s a, Vorn16s b, int sf) -> Vorn16s { return model::sum<Vorn16s>(a, b, sf); }, false);
    visit(
        "vornsAdd_16s_Sfs",
        +[](const Vorn16s* a, const Vorn16s* b, Vorn16s* d, int len, int sf) {
            return vornsAdd_16s_Sfs(a, b, d, len, sf);
        },
        +[](Vorn16s a, Vorn16s b, int sf) -> Vorn16s { return model::sum<Vorn16s>(a, b, sf); }, true);
    visit(
        "vornsAdd_16s32f",
        +[](const Vorn16s* a, const Vorn16s* b, Vorn32f* d, int len, int) { return vornsAdd_16s32f(a, b, d, len); },
        +[](Vorn16s a, Vorn16s b, int) -> Vorn32f { return static_cast<Vorn32f>(a) + static_cast<Vorn32f>(b); }, false);
    visit(
        "vornsAdd_16sc_Sfs",
        +[](const Vorn16sc* a, const Vorn16sc* b, Vorn16sc* d, int len, int sf) {
            return vornsAdd_16sc_Sfs(a, b, d, len, sf);
        },
        +[](Vorn16sc a, Vorn16sc b, int sf) -> Vorn16sc { return model::sumC(a, b, sf); }, true);
    visit(
        "vornsAdd_32u",
        +[](const Vorn32u* a, const Vorn32u* b, Vorn32u* d, int len, int) { return vornsAdd_32u(a, b, d, len); },
        +[](Vorn32u a, Vorn32u b, int sf) -> Vorn32u { return model::sum<Vorn32u>(a, b, sf); }, false);
    visit(
        "vornsAdd_32s_Sfs",
        +[](const Vorn32s* a, const Vorn32s* b, Vorn32s* d, int len, int sf) {
            return vornsAdd_32s_Sfs(a, b, d, len, sf);
        },
        +[](Vorn32s a, Vorn32s b, int sf) -> Vorn32s { return model::sum<Vorn32s>(a, b, sf); }, true);
    visit(
        "vornsAdd_32sc_Sfs",
        +[](const Vorn32sc* a, const Vorn32sc* b, Vorn32sc* d, int len, int sf) {
            return vornsAdd_32sc_Sfs(a, b, d, len, sf);
        },
        +[](Vorn32sc a, Vorn32sc b, int sf) -> Vorn32sc { return model::sumC(a, b, sf); }, true);
    visit(
        "vornsAdd_32f",
        +[](const Vorn32f* a, const Vorn32f* b, Vorn32f* d, int len, int) { return vornsAdd_32f(a, b, d, len); },
        +[](Vorn32f a, Vorn32f b, int) -> Vorn32f { return a + b; }, false);
    visit(
        "vornsAdd_32fc",
        +[](const Vorn32fc* a, const Vorn32fc* b, Vorn32fc* d, int len, int) { return vornsAdd_32fc(a, b, d, len); },
        +[](Vorn32fc a, Vorn32fc b, int) -> Vorn32fc {
            return {a.re + b.re, a.im + b.im};
        },
        false);
    visit(
        "vornsAdd_64f",
        +[](const Vorn64f* a, const Vorn64f* b, Vorn64f* d, int len, int) { return vornsAdd_64f(a, b, d, len); },
        +[](Vorn64f a, Vorn64f b, int) -> Vorn64f { return a + b; }, false);
    visit(
        "vornsAdd_64fc",
        +[](const Vorn64fc* a, const Vorn64fc* b, Vorn64fc* d, int len, int) { return vornsAdd_64fc(a, b, d, len); },
        +[](Vorn64fc a, Vorn64fc b, int) -> Vorn64fc {
            return {a.re + b.re, a.im + b.im};
        },
        false);
    visit(
        "vornsSub_8u_Sfs",
        +[](const Vorn8u* a, const Vorn8u* b, Vorn8u* d, int len, int sf) { return vornsSub_8u_Sfs(a, b, d, len, sf); },
        +[](Vorn8u a, Vorn8u b, int sf) -> Vorn8u { return model::difference<Vorn8u>(b, a, sf); }, true);
    visit(
        "vornsSub_16s",
        +[](const Vorn16s* a, const Vorn16s* b, Vorn16s* d, int len, int) { return vornsSub_16s(a, b, d, len); },
        +[](Vorn16s a, Vorn16s b, int sf) -> Vorn16s { return model::difference<Vorn16s>(b, a, sf); }, false);
    visit(
        "vornsSub_16s_Sfs",
        +[](const Vorn16s* a, const Vorn16s* b, Vorn16s* d, int len, int sf) {
            return vornsSub_16s_Sfs(a, b, d, len, sf);
        },
        +[](Vorn16s a, Vorn16s b, int sf) -> Vorn16s { return model::difference<Vorn16s>(b, a, sf); }, true);
    visit(
        "vornsSub_16s32f",
        +[](const Vorn16s* a, const Vorn16s* b, Vorn32f* d, int len, int) { return vornsSub_16s32f(a, b, d, len); },
        +[](Vorn16s a, Vorn16s b, int) -> Vorn32f { return static_cast<Vorn32f>(b) - static_cast<Vorn32f>(a); }, false);
    visit(
        "vornsSub_16sc_Sfs",
        +[](const Vorn16sc* a, const Vorn16sc* b, Vorn16sc* d, int len, int sf) {
            return vornsSub_16sc_Sfs(a, b, d, len, sf);
        },
        +[](Vorn16sc a, Vorn16sc b, int sf) -> Vorn16sc { return model::differenceC(b, a, sf); }, true);
    visit(
        "vornsSub_32s_Sfs",
        +[](const Vorn32s* a, const Vorn32s* b, Vorn32s* d, int len, int sf) {
            return vornsSub_32s_Sfs(a, b, d, len, sf);
        },
        +[](Vorn32s a, Vorn32s b, int sf) -> Vorn32s { return model::difference<Vorn32s>(b, a, sf); }, true);
    visit(
        "vornsSub_32sc_Sfs",
        +[](const Vorn32sc* a, const Vorn32sc* b, Vorn32sc* d, int len, int sf) {
            return vornsSub_32sc_Sfs(a, b, d, len, sf);
        },
        +[](Vorn32sc a, Vorn32sc b, int sf) -> Vorn32sc { return model::differenceC(b, a, sf); }, true);
    visit(
        "vornsSub_32f",
        +[](const Vorn32f* a, const Vorn32f* b, Vorn32f* d, int len, int) { return vornsSub_32f(a, b, d, len); },
        +[](Vorn32f a, Vorn32f b, int) -> Vorn32f { return b - a; }, false);
    visit(
        "vornsSub_32fc",
        +[](const Vorn32fc* a, const Vorn32fc* b, Vorn32fc* d, int len, int) { return vornsSub_32fc(a, b, d, len); },
        +[](Vorn32fc a, Vorn32fc b, int) -> Vorn32fc {
            return {b.re - a.re, b.im - a.im};
        },
        false);
    visit(
        "vornsSub_64f",
        +[](const Vorn64f* a, const Vorn64f* b, Vorn64f* d, int len, int) { return vornsSub_64f(a, b, d, len); },
        +[](Vorn64f a, Vorn64f b, int) -> Vorn64f { return b - a; }, false);
    visit(
        "vornsSub_64fc",
        +[](const Vorn64fc* a, const Vorn64fc* b, Vorn64fc* d, int len, int) { return vornsSub_64fc(a, b, d, len); },
        +[](Vorn64fc a, Vorn64fc b, int) -> Vorn64fc {
            return {b.re - a.re, b.im - a.im};
        },
        false);
    visit(
        "vornsMul_8u_Sfs",
        +[](const Vorn8u* a, const Vorn8u* b, Vorn8u* d, int len, int sf) { return vornsMul_8u_Sfs(a, b, d, len, sf); },
        +[](Vorn8u a, Vorn8u b, int sf) -> Vorn8u { return model::product<Vorn8u>(a, b, sf); }, true);
    visit(
        "vornsMul_8u16u",
        +[](const Vorn8u* a, const Vorn8u* b, Vorn16u* d, int len, int) { return vornsMul_8u16u(a, b, d, len); },
        +[](Vorn8u a, Vorn8u b, int sf) -> Vorn16u { return model::product<Vorn16u>(a, b, sf); }, false);
    visit(
        "vornsMul_16s",
        +[](const Vorn16s* a, const Vorn16s* b, Vorn16s* d, int len, int) { return vornsMul_16s(a, b, d, len); },
        +[](Vorn16s a, Vorn16s b, int sf) -> Vorn16s { return model::product<Vorn16s>(a, b, sf); }, false);
    visit(
        "vornsMul_16s_Sfs",
        +[](const Vorn16s* a, const Vorn16s* b, Vorn16s* d, int len, int sf) {
            return vornsMul_16s_Sfs(a, b, d, len, sf);
        },
        +[](Vorn16s a, Vorn16s b, int sf) -> Vorn16s { return model::product<Vorn16s>(a, b, sf); }, true);
    visit(
        "vornsMul_16s32f",
        +[](const Vorn16s* a, const Vorn16s* b, Vorn32f* d, int len, int) { return vornsMul_16s32f(a, b, d, len); },
        +[](Vorn16s a, Vorn16s b, int) -> Vorn32f { return static_cast<Vorn32f>(a) * static_cast<Vorn32f>(b); }, false);
    visit(
        "vornsMul_16s32s_Sfs",
        +[](const Vorn16s* a, const Vorn16s* b, Vorn32s* d, int len, int sf) {
            return vornsMul_16s32s_Sfs(a, b, d, len, sf);
        },
        +[](Vorn16s a, Vorn16s b, int sf) -> Vorn32s { return model::product<Vorn32s>(a, b, sf); }, true);
    visit(
        "vornsMul_16u16s_Sfs",
        +[](const Vorn16u* a, const Vorn16s* b, Vorn16s* d, int len, int sf) {
            return vornsMul_16u16s_Sfs(a, b, d, len, sf);
        },
        +[](Vorn16u a, Vorn16s b, int sf) -> Vorn16s { return model::product<Vorn16s>(a, b, sf); }, true);
    visit(
        "vornsMul_16sc_Sfs",
        +[](const Vorn16sc* a, const Vorn16sc* b, Vorn16sc* d, int len, int sf) {
            return vornsMul_16sc_Sfs(a, b, d, len, sf);
        },
        +[](Vorn16sc a, Vorn16sc b, int sf) -> Vorn16sc { return model::productC(a, b, sf); }, true);
    visit(
        "vornsMul_32s_Sfs",
        +[](const Vorn32s* a, const Vorn32s* b, Vorn32s* d, int len, int sf) {
            return vornsMul_32s_Sfs(a, b, d, len, sf);
        },
        +[](Vorn32s a, Vorn32s b, int sf) -> Vorn32s { return model::product32s(a, b, sf); }, true);
    visit(
        "vornsMul_32sc_Sfs",
        +[](const Vorn32sc* a, const Vorn32sc* b, Vorn32sc* d, int len, int sf) {
            return vornsMul_32sc_Sfs(a, b, d, len, sf);
        },
        +[](Vorn32sc a, Vorn32sc b, int sf) -> Vorn32sc { return model::productC(a, b, sf); }, true);
    visit(
        "vornsMul_32s32sc_Sfs",
        +[](const Vorn32s* a, const Vorn32sc* b, Vorn32sc* d, int len, int sf) {
            return vornsMul_32s32sc_Sfs(a, b, d, len, sf);
        },
        +[](Vorn32s a, Vorn32sc b, int sf) -> Vorn32sc {
            return {model::product<Vorn32s>(a, b.re, sf), model::product<Vorn32s>(a, b.im, sf)};
        },
        true);
    visit(
        "vornsMul_32f",
        +[](const Vorn32f* a, const Vorn32f* b, Vorn32f* d, int len, int) { return vornsMul_32f(a, b, d, len); },
        +[](Vorn32f a, Vorn32f b, int) -> Vorn32f { return a * b; }, false);
    visit(
        "vornsMul_32fc",
        +[](const Vorn32fc* a, const Vorn32fc* b, Vorn32fc* d, int len, int) { return vornsMul_32fc(a, b, d, len); },
        +[](Vorn32fc a, Vorn32fc b, int) -> Vorn32fc {
            return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
        },
        false);
    visit(
        "vornsMul_64f",
        +[](const Vorn64f* a, const Vorn64f* b, Vorn64f* d, int len, int) { return vornsMul_64f(a, b, d, len); },
        +[](Vorn64f a, Vorn64f b, int) -> Vorn64f { return a * b; }, false);
    visit(
        "vornsMul_64fc",
        +[](const Vorn64fc* a, const Vorn64fc* b, Vorn64fc* d, int len, int) { return vornsMul_64fc(a, b, d, len); },
        +[](Vorn64fc a, Vorn64fc b, int) -> Vorn64fc {
            return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
        },
        false);
    visit(
        "vornsDiv_8u_Sfs",
        +[](const Vorn8u* a, const Vorn8u* b, Vorn8u* d, int len, int sf) { return vornsDiv_8u_Sfs(a, b, d, len, sf); },
        +[](Vorn8u a, Vorn8u b, int sf) -> Vorn8u { return model::quotient<Vorn8u>(b, a, sf); }, true);
    visit(
        "vornsDiv_16s_Sfs",
        +[](const Vorn16s* a, const Vorn16s* b, Vorn16s* d, int len, int sf) {
            return vornsDiv_16s_Sfs(a, b, d, len, sf);
        },
        +[](Vorn16s a, Vorn16s b, int sf) -> Vorn16s { return model::quotient<Vorn16s>(b, a, sf); }, true);
    visit(
        "vornsDiv_16sc_Sfs",
        +[](const Vorn16sc* a, const Vorn16sc* b, Vorn16sc* d, int len, int sf) {
            return vornsDiv_16sc_Sfs(a, b, d, len, sf);
        },
        +[](Vorn16sc a, Vorn16sc b, int sf) -> Vorn16sc { return model::quotientC(b, a, sf); }, true);
    visit(
        "vornsDiv_32s_Sfs",
        +[](const Vorn32s* a, const Vorn32s* b, Vorn32s* d, int len, int sf) {
            return vornsDiv_32s_Sfs(a, b, d, len, sf);
        },
        +[](Vorn32s a, Vorn32s b, int sf) -> Vorn32s { return model::quotient<Vorn32s>(b, a, sf); }, true);
    visit(
        "vornsDiv_32s16s_Sfs",
        +[](const Vorn16s* a, const Vorn32s* b, Vorn16s* d, int len, int sf) {
            return vornsDiv_32s16s_Sfs(a, b, d, len, sf);
        },
        +[](Vorn16s a, Vorn32s b, int sf) -> Vorn16s { return model::quotient<Vorn16s>(b, a, sf); }, true);
    visit(
        "vornsDiv_32f",
        +[](const Vorn32f* a, const Vorn32f* b, Vorn32f* d, int len, int) { return vornsDiv_32f(a, b, d, len); },
        +[](Vorn32f a, Vorn32f b, int) -> Vorn32f { return b / a; }, false);
    visit(
        "vornsDiv_32fc",
        +[](const Vorn32fc* a, const Vorn32fc* b, Vorn32fc* d, int len, int) { return vornsDiv_32fc(a, b, d, len); },
        +[](Vorn32fc a, Vorn32fc b, int) -> Vorn32fc { return divided(b, a); }, false);
    visit(
        "vornsDiv_64f",
        +[](const Vorn64f* a, const Vorn64f* b, Vorn64f* d, int len, int) { return vornsDiv_64f(a, b, d, len); },
        +[](Vorn64f a, Vorn64f b, int) -> Vorn64f { return b / a; }, false);
    visit(
        "vornsDiv_64fc",
        +[](const Vorn64fc* a, const Vorn64fc* b, Vorn64fc* d, int len, int) { return vornsDiv_64fc(a, b, d, len); },
        +[](Vorn64fc a, Vorn64fc b, int) -> Vorn64fc { return divided(b, a); }, false);
}

// call(src, srcDst, len, sf), model(src, srcDst, sf).
template <class Visit>
void forVectorsInPlace(const Visit& visit) {
    visit(
        "vornsAdd_8u_ISfs",
        +[](const Vorn8u* a, Vorn8u* b, int len, int sf) { return vornsAdd_8u_ISfs(a, b, len, sf); },
        +[](Vorn8u a, Vorn8u b, int sf) -> Vorn8u { return model::sum<Vorn8u>(a, b, sf); }, true);
    visit(
        "vornsAdd_16s_I", +[](const Vorn16s* a, Vorn16s* b, int len, int) { return vornsAdd_16s_I(a, b, len); },
        +[](Vorn16s a, Vorn16s b, int sf) -> Vorn16s { return model::sum<Vorn16s>(a, b, sf); }, false);
    visit(
        "vornsAdd_16s_ISfs",
        +[](const Vorn16s* a, Vorn16s* b, int len, int sf) { return vornsAdd_16s_ISfs(a, b, len, sf); },
        +[](Vorn16s a, Vorn16s b, int sf) -> Vorn16s { return model::sum<Vorn16s>(a, b, sf); }, true);
    visit(
        "vornsAdd_16s32s_I", +[](const Vorn16s* a, Vorn32s* b, int len, int) { return vornsAdd_16s32s_I(a, b, len); },
        +[](Vorn16s a, Vorn32s b, int sf) -> Vorn32s { return model::sum<Vorn32s>(a, b, sf); }, false);
    visit(
        "vornsAdd_16sc_ISfs",
        +[](const Vorn16sc* a, Vorn16sc* b, int len, int sf) { return vornsAdd_16sc_ISfs(a, b, len, sf); },
        +[](Vorn16sc a, Vorn16sc b, int sf) -> Vorn16sc { return model::sumC(a, b, sf); }, true);
    visit(
        "vornsAdd_32s_ISfs",
        +[](const Vorn32s* a, Vorn32s* b, int len, int sf) { return vornsAdd_32s_ISfs(a, b, len, sf); },
        +[](Vorn32s a, Vorn32s b, int sf) -> Vorn32s { return model::sum<Vorn32s>(a, b, sf); }, true);
    visit(
        "vornsAdd_32sc_ISfs",
        +[](const Vorn32sc* a, Vorn32sc* b, int len, int sf) { return vornsAdd_32sc_ISfs(a, b, len, sf); },
        +[](Vorn32sc a, Vorn32sc b, int sf) -> Vorn32sc { return model::sumC(a, b, sf); }, true);
    visit(
        "vornsAdd_32f_I", +[](const Vorn32f* a, Vorn32f* b, int len, int) { return vornsAdd_32f_I(a, b, len); },
        +[](Vorn32f a, Vorn32f b, int) -> Vorn32f { return a + b; }, false);
    visit(
        "vornsAdd_32fc_I", +[](const Vorn32fc* a, Vorn32fc* b, int len, int) { return vornsAdd_32fc_I(a, b, len); },
        +[](Vorn32fc a, Vorn32fc b, int) -> Vorn32fc {
            return {a.re + b.re, a.im + b.im};
        },
        false);
    visit(
        "vornsAdd_64f_I", +[](const Vorn64f* a, Vorn64f* b, int len, int) { return vornsAdd_64f_I(a, b, len); },
        +[](Vorn64f a, Vorn64f b, int) -> Vorn64f { return a + b; }, false);
    visit(
        "vornsAdd_64fc_I", +[](const Vorn64fc* a, Vorn64fc* b, int len, int) { return vornsAdd_64fc_I(a, b, len); },
        +[](Vorn64fc a, Vorn64fc b, int) -> Vorn64fc {
            return {a.re + b.re, a.im + b.im};
        },
        false);
    visit(
        "vornsSub_8u_ISfs",
        +[](const Vorn8u* a, Vorn8u* b, int len, int sf) { return vornsSub_8u_ISfs(a, b, len, sf); },
        +[](Vorn8u a, Vorn8u b, int sf) -> Vorn8u { return model::difference<Vorn8u>(b, a, sf); }, true);
    visit(
        "vornsSub_16s_I", +[](const Vorn16s* a, Vorn16s* b, int len, int) { return vornsSub_16s_I(a, b, len); },
        +[](Vorn16s a, Vorn16s b, int sf) -> Vorn16s { return model::difference<Vorn16s>(b, a, sf); }, false);
    visit(
        "vornsSub_16s_ISfs",
        +[](const Vorn16s* a, Vorn16s* b, int len, int sf) { return vornsSub_16s_ISfs(a, b, len, sf); },
        +[](Vorn16s a, Vorn16s b, int sf) -> Vorn16s { return model::difference<Vorn16s>(b, a, sf); }, true);
    visit(
        "vornsSub_16sc_ISfs",
        +[](const Vorn16sc* a, Vorn16sc* b, int len, int sf) { return vornsSub_16sc_ISfs(a, b, len, sf); },
        +[](Vorn16sc a, Vorn16sc b, int sf) -> Vorn16sc { return model::differenceC(b, a, sf); }, true);
    visit(
        "vornsSub_32s_ISfs",
        +[](const Vorn32s* a, Vorn32s* b, int len, int sf) { return vornsSub_32s_ISfs(a, b, len, sf); },
        +[](Vorn32s a, Vorn32s b, int sf) -> Vorn32s { return model::difference<Vorn32s>(b, a, sf); }, true);
    visit(
        "vornsSub_32sc_ISfs",
        +[](const Vorn32sc* a, Vorn32sc* b, int len, int sf) { return vornsSub_32sc_ISfs(a, b, len, sf); },
        +[](Vorn32sc a, Vorn32sc b, int sf) -> Vorn32sc { return model::differenceC(b, a, sf); }, true);
    visit(
        "vornsSub_32f_I", +[](const Vorn32f* a, Vorn32f* b, int len, int) { return vornsSub_32f_I(a, b, len); },
        +[](Vorn32f a, Vorn32f b, int) -> Vorn32f { return b - a; }, false);
    visit(
        "vornsSub_32fc_I", +[](const Vorn32fc* a, Vorn32fc* b, int len, int) { return vornsSub_32fc_I(a, b, len); },
        +[](Vorn32fc a, Vorn32fc b, int) -> Vorn32fc {
            return {b.re - a.re, b.im - a.im};
        },
        false);
    visit(
        "vornsSub_64f_I", +[](const Vorn64f* a, Vorn64f* b, int len, int) { return vornsSub_64f_I(a, b, len); },
        +[](Vorn64f a, Vorn64f b, int) -> Vorn64f { return b - a; }, false);
    visit(
        "vornsSub_64fc_I", +[](const Vorn64fc* a, Vorn64fc* b, int len, int) { return vornsSub_64fc_I(a, b, len); },
        +[](Vorn64fc a, Vorn64fc b, int) -> Vorn64fc {
            return {b.re - a.re, b.im - a.im};
        },
        false);
    visit(
        "vornsMul_8u_ISfs",
        +[](const Vorn8u* a, Vorn8u* b, int len, int sf) { return vornsMul_8u_ISfs(a, b, len, sf); },
        +[](Vorn8u a, Vorn8u b, int sf) -> Vorn8u { return model::product<Vorn8u>(a, b, sf); }, true);
    visit(
        "vornsMul_16s_I", +[](const Vorn16s* a, Vorn16s* b, int len, int) { return vornsMul_16s_I(a, b, len); },
        +[](Vorn16s a, Vorn16s b, int sf) -> Vorn16s { return model::product<Vorn16s>(a, b, sf); }, false);
    visit(
        "vornsMul_16s_ISfs",
        +[](const Vorn16s* a, Vorn16s* b, int len, int sf) { return vornsMul_16s_ISfs(a, b, len, sf); },
        +[](Vorn16s a, Vorn16s b, int sf) -> Vorn16s { return model::product<Vorn16s>(a, b, sf); }, true);
    visit(
        "vornsMul_16sc_ISfs",
        +[](const Vorn16sc* a, Vorn16sc* b, int len, int sf) { return vornsMul_16sc_ISfs(a, b, len, sf); },
        +[](Vorn16sc a, Vorn16sc b, int sf) -> Vorn16sc { return model::productC(a, b, sf); }, true);
    visit(
        "vornsMul_32s_ISfs",
        +[](const Vorn32s* a, Vorn32s* b, int len, int sf) { return vornsMul_32s_ISfs(a, b, len, sf); },
        +[](Vorn32s a, Vorn32s b, int sf) -> Vorn32s { return model::product32s(a, b, sf); }, true);
    visit(
        "vornsMul_32sc_ISfs",
        +[](const Vorn32sc* a, Vorn32sc* b, int len, int sf) { return vornsMul_32sc_ISfs(a, b, len, sf); },
        +[](Vorn32sc a, Vorn32sc b, int sf) -> Vorn32sc { return model::productC(a, b, sf); }, true);
    visit(
        "vornsMul_32s32sc_ISfs",
        +[](const Vorn32s* a, Vorn32sc* b, int len, int sf) { return vornsMul_32s32sc_ISfs(a, b, len, sf); },
        +[](Vorn32s a, Vorn32sc b, int sf) -> Vorn32sc {
            return {model::product<Vorn32s>(a, b.re, sf), model::product<Vorn32s>(a, b.im, sf)};
        },
        true);
    visit(
        "vornsMul_32f_I", +[](const Vorn32f* a, Vorn32f* b, int len, int) { return vornsMul_32f_I(a, b, len); },
        +[](Vorn32f a, Vorn32f b, int) -> Vorn32f { return a * b; }, false);
    visit(
        "vornsMul_32fc_I", +[](const Vorn32fc* a, Vorn32fc* b, int len, int) { return vornsMul_32fc_I(a, b, len); },
        +[](Vorn32fc a, Vorn32fc b, int) -> Vorn32fc {
            return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
        },
        false);
    visit(
        "vornsMul_64f_I", +[](const Vorn64f* a, Vorn64f* b, int len, int) { return vornsMul_64f_I(a, b, len); },
        +[](Vorn64f a, Vorn64f b, int) -> Vorn64f { return a * b; }, false);
    visit(
        "vornsMul_64fc_I", +[](const Vorn64fc* a, Vorn64fc* b, int len, int) { return vornsMul_64fc_I(a, b, len); },
        +[](Vorn64fc a, Vorn64fc b, int) -> Vorn64fc {
            return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
        },
        false);
    visit(
        "vornsDiv_8u_ISfs",
        +[](const Vorn8u* a, Vorn8u* b, int len, int sf) { return vornsDiv_8u_ISfs(a, b, len, sf); },
        +[](Vorn8u a, Vorn8u b, int sf) -> Vorn8u { return model::quotient<Vorn8u>(b, a, sf); }, true);
    visit(
        "vornsDiv_16s_ISfs",
        +[](const Vorn16s* a, Vorn16s* b, int len, int sf) { return vornsDiv_16s_ISfs(a, b, len, sf); },
        +[](Vorn16s a, Vorn16s b, int sf) -> Vorn16s { return model::quotient<Vorn16s>(b, a, sf); }, true);
    visit(
        "vornsDiv_16sc_ISfs",
        +[](const Vorn16sc* a, Vorn16sc* b, int len, int sf) { return vornsDiv_16sc_ISfs(a, b, len, sf); },
        +[](Vorn16sc a, Vorn16sc b, int sf) -> Vorn16sc { return model::quotientC(b, a, sf); }, true);
    visit(
        "vornsDiv_32s_ISfs",
        +[](const Vorn32s* a, Vorn32s* b, int len, int sf) { return vornsDiv_32s_ISfs(a, b, len, sf); },
        +[](Vorn32s a, Vorn32s b, int sf) -> Vorn32s { return model::quotient<Vorn32s>(b, a, sf); }, true);
    visit(
        "vornsDiv_32f_I", +[](const Vorn32f* a, Vorn32f* b, int len, int) { return vornsDiv_32f_I(a, b, len); },
        +[](Vorn32f a, Vorn32f b, int) -> Vorn32f { return b / a; }, false);
    visit(
        "vornsDiv_32fc_I", +[](const Vorn32fc* a, Vorn32fc* b, int len, int) { return vornsDiv_32fc_I(a, b, len); },
        +[](Vorn32fc a, Vorn32fc b, int) -> Vorn32fc { return divided(b, a); }, false);
    visit(
        "vornsDiv_64f_I", +[](const Vorn64f* a, Vorn64f* b, int len, int) { return vornsDiv_64f_I(a, b, len); },
        +[](Vorn64f a, Vorn64f b, int) -> Vorn64f { return b / a; }, false);
    visit(
        "vornsDiv_64fc_I", +[](const Vorn64fc* a, Vorn64fc* b, int len, int) { return vornsDiv_64fc_I(a, b, len); },
        +[](Vorn64fc a, Vorn64fc b, int) -> Vorn64fc { return divided(b, a); }, false);
}

// call(src, val, dst, len, sf), model(src, val, sf).
template <class Visit>
void forConstants(const Visit& visit) {
    visit(
        "vornsAddC_8u_Sfs",
        +[](const Vorn8u* a, Vorn8u v, Vorn8u* d, int len, int sf) { return vornsAddC_8u_Sfs(a, v, d, len, sf); },
        +[](Vorn8u a, Vorn8u v, int sf) -> Vorn8u { return model::sum<Vorn8u>(a, v, sf); }, true);
    visit(
        "vornsAddC_16s_Sfs",
        +[](const Vorn16s* a, Vorn16s v, Vorn16s* d, int len, int sf) { return vornsAddC_16s_Sfs(a, v, d, len, sf); },
        +[](Vorn16s a, Vorn16s v, int sf) -> Vorn16s { return model::sum<Vorn16s>(a, v, sf); }, true);
    visit(
        "vornsAddC_16sc_Sfs",
        +[](const Vorn16sc* a, Vorn16sc v, Vorn16sc* d, int len, int sf) {
            return vornsAddC_16sc_Sfs(a, v, d, len, sf);
        },
        +[](Vorn16sc a, Vorn16sc v, int sf) -> Vorn16sc { return model::sumC(a, v, sf); }, true);
    visit(
        "vornsAddC_32s_Sfs",
        +[](const Vorn32s* a, Vorn32s v, Vorn32s* d, int len, int sf) { return vornsAddC_32s_Sfs(a, v, d, len, sf); },
        +[](Vorn32s a, Vorn32s v, int sf) -> Vorn32s { return model::sum<Vorn32s>(a, v, sf); }, true);
    visit(
        "vornsAddC_32sc_Sfs",
        +[](const Vorn32sc* a, Vorn32sc v, Vorn32sc* d, int len, int sf) {
            return vornsAddC_32sc_Sfs(a, v, d, len, sf);
        },
        +[](Vorn32sc a, Vorn32sc v, int sf) -> Vorn32sc { return model::sumC(a, v, sf); }, true);
    visit(
        "vornsAddC_32f",
        +[](const Vorn32f* a, Vorn32f v, Vorn32f* d, int len, int) { return vornsAddC_32f(a, v, d, len); },
        +[](Vorn32f a, Vorn32f v, int) -> Vorn32f { return v == 0 ? a : a + v; }, false);
    visit(
        "vornsAddC_32fc",
        +[](const Vorn32fc* a, Vorn32fc v, Vorn32fc* d, int len, int) { return vornsAddC_32fc(a, v, d, len); },
        +[](Vorn32fc a, Vorn32fc v, int) -> Vorn32fc {
            return {a.re + v.re, a.im + v.im};
        },
        false);
    visit(
        "vornsAddC_64f",
        +[](const Vorn64f* a, Vorn64f v, Vorn64f* d, int len, int) { return vornsAddC_64f(a, v, d, len); },
        +[](Vorn64f a, Vorn64f v, int) -> Vorn64f { return a + v; }, false);
    visit(
        "vornsAddC_64fc",
        +[](const Vorn64fc* a, Vorn64fc v, Vorn64fc* d, int len, int) { return vornsAddC_64fc(a, v, d, len); },
        +[](Vorn64fc a, Vorn64fc v, int) -> Vorn64fc {
            return {a.re + v.re, a.im + v.im};
        },
        false);
    visit(
        "vornsSubC_8u_Sfs",
        +[](const Vorn8u* a, Vorn8u v, Vorn8u* d, int len, int sf) { return vornsSubC_8u_Sfs(a, v, d, len, sf); },
        +[](Vorn8u a, Vorn8u v, int sf) -> Vorn8u { return model::difference<Vorn8u>(a, v, sf); }, true);
    visit(
        "vornsSubC_16s_Sfs",
        +[](const Vorn16s* a, Vorn16s v, Vorn16s* d, int len, int sf) { return vornsSubC_16s_Sfs(a, v, d, len, sf); },
        +[](Vorn16s a, Vorn16s v, int sf) -> Vorn16s { return model::difference<Vorn16s>(a, v, sf); }, true);
    visit(
        "vornsSubC_16sc_Sfs",
        +[](const Vorn16sc* a, Vorn16sc v, Vorn16sc* d, int len, int sf) {
            return vornsSubC_16sc_Sfs(a, v, d, len, sf);
        },
        +[](Vorn16sc a, Vorn16sc v, int sf) -> Vorn16sc { return model::differenceC(a, v, sf); }, true);
    visit(
        "vornsSubC_32s_Sfs",
        +[](const Vorn32s* a, Vorn32s v, Vorn32s* d, int len, int sf) { return vornsSubC_32s_Sfs(a, v, d, len, sf); },
        +[](Vorn32s a, Vorn32s v, int sf) -> Vorn32s { return model::difference<Vorn32s>(a, v, sf); }, true);
    visit(
        "vornsSubC_32sc_Sfs",
        +[](const Vorn32sc* a, Vorn32sc v, Vorn32sc* d, int len, int sf) {
            return vornsSubC_32sc_Sfs(a, v, d, len, sf);
        },
        +[](Vorn32sc a, Vorn32sc v, int sf) -> Vorn32sc { return model::differenceC(a, v, sf); }, true);
    visit(
        "vornsSubC_32f",
        +[](const Vorn32f* a, Vorn32f v, Vorn32f* d, int len, int) { return vornsSubC_32f(a, v, d, len); },
        +[](Vorn32f a, Vorn32f v, int) -> Vorn32f { return v == 0 ? a : a - v; }, false);
    visit(
        "vornsSubC_32fc",
        +[](const Vorn32fc* a, Vorn32fc v, Vorn32fc* d, int len, int) { return vornsSubC_32fc(a, v, d, len); },
        +[](Vorn32fc a, Vorn32fc v, int) -> Vorn32fc {
            return {a.re - v.re, a.im - v.im};
        },
        false);
    visit(
        "vornsSubC_64f",
        +[](const Vorn64f* a, Vorn64f v, Vorn64f* d, int len, int) { return vornsSubC_64f(a, v, d, len); },
        +[](Vorn64f a, Vorn64f v, int) -> Vorn64f { return a - v; }, false);
    visit(
        "vornsSubC_64fc",
        +[](const Vorn64fc* a, Vorn64fc v, Vorn64fc* d, int len, int) { return vornsSubC_64fc(a, v, d, len); },
        +[](Vorn64fc a, Vorn64fc v, int) -> Vorn64fc {
            return {a.re - v.re, a.im - v.im};
        },
        false);
    visit(
        "vornsSubCRev_8u_Sfs",
        +[](const Vorn8u* a, Vorn8u v, Vorn8u* d, int len, int sf) { return vornsSubCRev_8u_Sfs(a, v, d, len, sf); },
        +[](Vorn8u a, Vorn8u v, int sf) -> Vorn8u { return model::difference<Vorn8u>(v, a, sf); }, true);
    visit(
        "vornsSubCRev_16s_Sfs",
        +[](const Vorn16s* a, Vorn16s v, Vorn16s* d, int len, int sf) {
            return vornsSubCRev_16s_Sfs(a, v, d, len, sf);
        },
        +[](Vorn16s a, Vorn16s v, int sf) -> Vorn16s { return model::difference<Vorn16s>(v, a, sf); }, true);
    visit(
        "vornsSubCRev_16sc_Sfs",
        +[](const Vorn16sc* a, Vorn16sc v, Vorn16sc* d, int len, int sf) {
            return vornsSubCRev_16sc_Sfs(a, v, d, len, sf);
        },
        +[](Vorn16sc a, Vorn16sc v, int sf) -> Vorn16sc { return model::differenceC(v, a, sf); }, true);
    visit(
        "vornsSubCRev_32s_Sfs",
        +[](const Vorn32s* a, Vorn32s v, Vorn32s* d, int len, int sf) {
            return vornsSubCRev_32s_Sfs(a, v, d, len, sf);
        },
        +[](Vorn32s a, Vorn32s v, int sf) -> Vorn32s { return model::difference<Vorn32s>(v, a, sf); }, true);
    visit(
        "vornsSubCRev_32sc_Sfs",
        +[](const Vorn32sc* a, Vorn32sc v, Vorn32sc* d, int len, int sf) {
            return vornsSubCRev_32sc_Sfs(a, v, d, len, sf);
        },
        +[](Vorn32sc a, Vorn32sc v, int sf) -> Vorn32sc { return model::differenceC(v, a, sf); }, true);
    visit(
        "vornsSubCRev_32f",
        +[](const Vorn32f* a, Vorn32f v, Vorn32f* d, int len, int) { return vornsSubCRev_32f(a, v, d, len); },
        +[](Vorn32f a, Vorn32f v, int) -> Vorn32f { return v - a; }, false);
    visit(
        "vornsSubCRev_32fc",
        +[](const Vorn32fc* a, Vorn32fc v, Vorn32fc* d, int len, int) { return vornsSubCRev_32fc(a, v, d, len); },
        +[](Vorn32fc a, Vorn32fc v, int) -> Vorn32fc {
            return {v.re - a.re, v.im - a.im};
        },
        false);
    visit(
        "vornsSubCRev_64f",
        +[](const Vorn64f* a, Vorn64f v, Vorn64f* d, int len, int) { return vornsSubCRev_64f(a, v, d, len); },
        +[](Vorn64f a, Vorn64f v, int) -> Vorn64f { return v - a; }, false);
    visit(
        "vornsSubCRev_64fc",
        +[](const Vorn64fc* a, Vorn64fc v, Vorn64fc* d, int len, int) { return vornsSubCRev_64fc(a, v, d, len); },
        +[](Vorn64fc a, Vorn64fc v, int) -> Vorn64fc {
            return {v.re - a.re, v.im - a.im};
        },
        false);
    visit(
        "vornsMulC_8u_Sfs",
        +[](const Vorn8u* a, Vorn8u v, Vorn8u* d, int len, int sf) { return vornsMulC_8u_Sfs(a, v, d, len, sf); },
        +[](Vorn8u a, Vorn8u v, int sf) -> Vorn8u { return model::product<Vorn8u>(a, v, sf); }, true);
    visit(
        "vornsMulC_16s_Sfs",
        +[](const Vorn16s* a, Vorn16s v, Vorn16s* d, int len, int sf) { return vornsMulC_16s_Sfs(a, v, d, len, sf); },
        +[](Vorn16s a, Vorn16s v, int sf) -> Vorn16s { return model::product<Vorn16s>(a, v, sf); }, true);
    visit(
        "vornsMulC_16sc_Sfs",
        +[](const Vorn16sc* a, Vorn16sc v, Vorn16sc* d, int len, int sf) {
            return vornsMulC_16sc_Sfs(a, v, d, len, sf);
        },
        +[](Vorn16sc a, Vorn16sc v, int sf) -> Vorn16sc { return model::productC(a, v, sf); }, true);
    visit(
        "vornsMulC_32s_Sfs",
        +[](const Vorn32s* a, Vorn32s v, Vorn32s* d, int len, int sf) { return vornsMulC_32s_Sfs(a, v, d, len, sf); },
        +[](Vorn32s a, Vorn32s v, int sf) -> Vorn32s { return model::product32s(a, v, sf); }, true);
    visit(
        "vornsMulC_32sc_Sfs",
        +[](const Vorn32sc* a, Vorn32sc v, Vorn32sc* d, int len, int sf) {
            return vornsMulC_32sc_Sfs(a, v, d, len, sf);
        },
        +[](Vorn32sc a, Vorn32sc v, int sf) -> Vorn32sc { return model::productC(a, v, sf); }, true);
    visit(
        "vornsMulC_32f",
        +[](const Vorn32f* a, Vorn32f v, Vorn32f* d, int len, int) { return vornsMulC_32f(a, v, d, len); },
        +[](Vorn32f a, Vorn32f v, int) -> Vorn32f { return v == 1   ? a
                                                           : v == 0 ? 0
                                                                    : a * v; }, false);
    visit(
        "vornsMulC_32fc",
        +[](const Vorn32fc* a, Vorn32fc v, Vorn32fc* d, int len, int) { return vornsMulC_32fc(a, v, d, len); },
        +[](Vorn32fc a, Vorn32fc v, int) -> Vorn32fc {
            return {a.re * v.re - a.im * v.im, a.re * v.im + a.im * v.re};
        },
        false);
    visit(
        "vornsMulC_64f",
        +[](const Vorn64f* a, Vorn64f v, Vorn64f* d, int len, int) { return vornsMulC_64f(a, v, d, len); },
        +[](Vorn64f a, Vorn64f v, int) -> Vorn64f { return a * v; }, false);
    visit(
        "vornsMulC_64fc",
        +[](const Vorn64fc* a, Vorn64fc v, Vorn64fc* d, int len, int) { return vornsMulC_64fc(a, v, d, len); },
        +[](Vorn64fc a, Vorn64fc v, int) -> Vorn64fc {
            return {a.re * v.re - a.im * v.im, a.re * v.im + a.im * v.re};
        },
        false);
    visit(
        "vornsMulC_32f16s_Sfs",
        +[](const Vorn32f* a, Vorn32f v, Vorn16s* d, int len, int sf) {
            return vornsMulC_32f16s_Sfs(a, v, d, len, sf);
        },
        +[](Vorn32f a, Vorn32f v, int sf) -> Vorn16s { return model::rounded16s((a * v) * model::powerOfTwo(sf)); },
        true);
    visit(
        "vornsMulC_Low_32f16s",
        +[](const Vorn32f* a, Vorn32f v, Vorn16s* d, int len, int) { return vornsMulC_Low_32f16s(a, v, d, len); },
        +[](Vorn32f a, Vorn32f v, int sf) -> Vorn16s { return model::rounded16s((a * v) * model::powerOfTwo(sf)); },
        false);
    visit(
        "vornsDivC_8u_Sfs",
        +[](const Vorn8u* a, Vorn8u v, Vorn8u* d, int len, int sf) { return vornsDivC_8u_Sfs(a, v, d, len, sf); },
        +[](Vorn8u a, Vorn8u v, int sf) -> Vorn8u { return model::quotient<Vorn8u>(a, v, sf); }, true);
    visit(
        "vornsDivC_16s_Sfs",
        +[](const Vorn16s* a, Vorn16s v, Vorn16s* d, int len, int sf) { return vornsDivC_16s_Sfs(a, v, d, len, sf); },
        +[](Vorn16s a, Vorn16s v, int sf) -> Vorn16s { return model::quotient<Vorn16s>(a, v, sf); }, true);
    visit(
        "vornsDivC_16sc_Sfs",
        +[](const Vorn16sc* a, Vorn16sc v, Vorn16sc* d, int len, int sf) {
            return vornsDivC_16sc_Sfs(a, v, d, len, sf);
        },
        +[](Vorn16sc a, Vorn16sc v, int sf) -> Vorn16sc { return model::quotientC(a, v, sf); }, true);
    visit(
        "vornsDivC_32f",
        +[](const Vorn32f* a, Vorn32f v, Vorn32f* d, int len, int) { return vornsDivC_32f(a, v, d, len); },
        +[](Vorn32f a, Vorn32f v, int) -> Vorn32f {
            const Vorn32f r = 1 / v;
            return r == 1 ? a : r == 0 ? 0 : a * r;
        },
        false);
    visit(
        "vornsDivC_32fc",
        +[](const Vorn32fc* a, Vorn32fc v, Vorn32fc* d, int len, int) { return vornsDivC_32fc(a, v, d, len); },
        +[](Vorn32fc a, Vorn32fc v, int) -> Vorn32fc { return divided(a, v); }, false);
    visit(
        "vornsDivC_64f",
        +[](const Vorn64f* a, Vorn64f v, Vorn64f* d, int len, int) { return vornsDivC_64f(a, v, d, len); },
        +[](Vorn64f a, Vorn64f v, int) -> Vorn64f { return a / v; }, false);
    visit(
        "vornsDivC_64fc",
        +[](const Vorn64fc* a, Vorn64fc v, Vorn64fc* d, int len, int) { return vornsDivC_64fc(a, v, d, len); },
        +[](Vorn64fc a, Vorn64fc v, int) -> Vorn64fc { return divided(a, v); }, false);
    visit(
        "vornsDivCRev_16u",
        +[](const Vorn16u* a, Vorn16u v, Vorn16u* d, int len, int) { return vornsDivCRev_16u(a, v, d, len); },
        +[](Vorn16u a, Vorn16u v, int sf) -> Vorn16u { return model::quotient<Vorn16u>(v, a, sf); }, false);
    visit(
        "vornsDivCRev_32f",
        +[](const Vorn32f* a, Vorn32f v, Vorn32f* d, int len, int) { return vornsDivCRev_32f(a, v, d, len); },
        +[](Vorn32f a, Vorn32f v, int) -> Vorn32f { return v / a; }, false);
}

// call(val, srcDst, len, sf), model(srcDst, val, sf).
template <class Visit>
void forConstantsInPlace(const Visit& visit) {
    visit(
        "vornsAddC_8u_ISfs", +[](Vorn8u v, Vorn8u* a, int len, int sf) { return vornsAddC_8u_ISfs(v, a, len, sf); },
        +[](Vorn8u a, Vorn8u v, int sf) -> Vorn8u { return model::sum<Vorn8u>(a, v, sf); }, true);
    visit(
        "vornsAddC_16s_I", +[](Vorn16s v, Vorn16s* a, int len, int) { return vornsAddC_16s_I(v, a, len); },
        +[](Vorn16s a, Vorn16s v, int sf) -> Vorn16s { return model::sum<Vorn16s>(a, v, sf); }, false);
    visit(
        "vornsAddC_16s_ISfs", +[](Vorn16s v, Vorn16s* a, int len, int sf) { return vornsAddC_16s_ISfs(v, a, len, sf); },
        +[](Vorn16s a, Vorn16s v, int sf) -> Vorn16s { return model::sum<Vorn16s>(a, v, sf); }, true);
    visit(
        "vornsAddC_16sc_ISfs",
        +[](Vorn16sc v, Vorn16sc* a, int len, int sf) { return vornsAddC_16sc_ISfs(v, a, len, sf); },
        +[](Vorn16sc a, Vorn16sc v, int sf) -> Vorn16sc { return model::sumC(a, v, sf); }, true);
    visit(
        "vornsAddC_32s_ISfs", +[](Vorn32s v, Vorn32s* a, int len, int sf) { return vornsAddC_32s_ISfs(v, a, len, sf); },
        +[](Vorn32s a, Vorn32s v, int sf) -> Vorn32s { return model::sum<Vorn32s>(a, v, sf); }, true);
    visit(
        "vornsAddC_32sc_ISfs",
        +[](Vorn32sc v, Vorn32sc* a, int len, int sf) { return vornsAddC_32sc_ISfs(v, a, len, sf); },
        +[](Vorn32sc a, Vorn32sc v, int sf) -> Vorn32sc { return model::sumC(a, v, sf); }, true);
    visit(
        "vornsAddC_32f_I", +[](Vorn32f v, Vorn32f* a, int len, int) { return vornsAddC_32f_I(v, a, len); },
        +[](Vorn32f a, Vorn32f v, int) -> Vorn32f { return v == 0 ? a : a + v; }, false);
    visit(
        "vornsAddC_32fc_I", +[](Vorn32fc v, Vorn32fc* a, int len, int) { return vornsAddC_32fc_I(v, a, len); },
        +[](Vorn32fc a, Vorn32fc v, int) -> Vorn32fc {
            return {a.re + v.re, a.im + v.im};
        },
        false);
    visit(
        "vornsAddC_64f_I", +[](Vorn64f v, Vorn64f* a, int len, int) { return vornsAddC_64f_I(v, a, len); },
        +[](Vorn64f a, Vorn64f v, int) -> Vorn64f { return a + v; }, false);
    visit(
        "vornsAddC_64fc_I", +[](Vorn64fc v, Vorn64fc* a, int len, int) { return vornsAddC_64fc_I(v, a, len); },
        +[](Vorn64fc a, Vorn64fc v, int) -> Vorn64fc {
            return {a.re + v.re, a.im + v.im};
        },
        false);
    visit(
        "vornsSubC_8u_ISfs", +[](Vorn8u v, Vorn8u* a, int len, int sf) { return vornsSubC_8u_ISfs(v, a, len, sf); },
        +[](Vorn8u a, Vorn8u v, int sf) -> Vorn8u { return model::difference<Vorn8u>(a, v, sf); }, true);
    visit(
        "vornsSubC_16s_I", +[](Vorn16s v, Vorn16s* a, int len, int) { return vornsSubC_16s_I(v, a, len); },
        +[](Vorn16s a, Vorn16s v, int sf) -> Vorn16s { return model::difference<Vorn16s>(a, v, sf); }, false);
    visit(
        "vornsSubC_16s_ISfs", +[](Vorn16s v, Vorn16s* a, int len, int sf) { return vornsSubC_16s_ISfs(v, a, len, sf); },
        +[](Vorn16s a, Vorn16s v, int sf) -> Vorn16s { return model::difference<Vorn16s>(a, v, sf); }, true);
    visit(
        "vornsSubC_16sc_ISfs",
        +[](Vorn16sc v, Vorn16sc* a, int len, int sf) { return vornsSubC_16sc_ISfs(v, a, len, sf); },
        +[](Vorn16sc a, Vorn16sc v, int sf) -> Vorn16sc { return model::differenceC(a, v, sf); }, true);
    visit(
        "vornsSubC_32s_ISfs", +[](Vorn32s v, Vorn32s* a, int len, int sf) { return vornsSubC_32s_ISfs(v, a, len, sf); },
        +[](Vorn32s a, Vorn32s v, int sf) -> Vorn32s { return model::difference<Vorn32s>(a, v, sf); }, true);
    visit(
        "vornsSubC_32sc_ISfs",
        +[](Vorn32sc v, Vorn32sc* a, int len, int sf) { return vornsSubC_32sc_ISfs(v, a, len, sf); },
        +[](Vorn32sc a, Vorn32sc v, int sf) -> Vorn32sc { return model::differenceC(a, v, sf); }, true);
    visit(
        "vornsSubC_32f_I", +[](Vorn32f v, Vorn32f* a, int len, int) { return vornsSubC_32f_I(v, a, len); },
        +[](Vorn32f a, Vorn32f v, int) -> Vorn32f { return v == 0 ? a : a - v; }, false);
    visit(
        "vornsSubC_32fc_I", +[](Vorn32fc v, Vorn32fc* a, int len, int) { return vornsSubC_32fc_I(v, a, len); },
        +[](Vorn32fc a, Vorn32fc v, int) -> Vorn32fc {
            return {a.re - v.re, a.im - v.im};
        },
        false);
    visit(
        "vornsSubC_64f_I", +[](Vorn64f v, Vorn64f* a, int len, int) { return vornsSubC_64f_I(v, a, len); },
        +[](Vorn64f a, Vorn64f v, int) -> Vorn64f { return a - v; }, false);
    visit(
        "vornsSubC_64fc_I", +[](Vorn64fc v, Vorn64fc* a, int len, int) { return vornsSubC_64fc_I(v, a, len); },
        +[](Vorn64fc a, Vorn64fc v, int) -> Vorn64fc {
            return {a.re - v.re, a.im - v.im};
        },
        false);
    visit(
        "vornsSubCRev_8u_ISfs",
        +[](Vorn8u v, Vorn8u* a, int len, int sf) { return vornsSubCRev_8u_ISfs(v, a, len, sf); },
        +[](Vorn8u a, Vorn8u v, int sf) -> Vorn8u { return model::difference<Vorn8u>(v, a, sf); }, true);
    visit(
        "vornsSubCRev_16s_ISfs",
        +[](Vorn16s v, Vorn16s* a, int len, int sf) { return vornsSubCRev_16s_ISfs(v, a, len, sf); },
        +[](Vorn16s a, Vorn16s v, int sf) -> Vorn16s { return model::difference<Vorn16s>(v, a, sf); }, true);
    visit(
        "vornsSubCRev_16sc_ISfs",
        +[](Vorn16sc v, Vorn16sc* a, int len, int sf) { return vornsSubCRev_16sc_ISfs(v, a, len, sf); },
        +[](Vorn16sc a, Vorn16sc v, int sf) -> Vorn16sc { return model::differenceC(v, a, sf); }, true);
    visit(
        "vornsSubCRev_32s_ISfs",
        +[](Vorn32s v, Vorn32s* a, int len, int sf) { return vornsSubCRev_32s_ISfs(v, a, len, sf); },
        +[](Vorn32s a, Vorn32s v, int sf) -> Vorn32s { return model::difference<Vorn32s>(v, a, sf); }, true);
    visit(
        "vornsSubCRev_32sc_ISfs",
        +[](Vorn32sc v, Vorn32sc* a, int len, int sf) { return vornsSubCRev_32sc_ISfs(v, a, len, sf); },
        +[](Vorn32sc a, Vorn32sc v, int sf) -> Vorn32sc { return model::differenceC(v, a, sf); }, true);
    visit(
        "vornsSubCRev_32f_I", +[](Vorn32f v, Vorn32f* a, int len, int) { return vornsSubCRev_32f_I(v, a, len); },
        +[](Vorn32f a, Vorn32f v, int) -> Vorn32f { return v - a; }, false);
    visit(
        "vornsSubCRev_32fc_I", +[](Vorn32fc v, Vorn32fc* a, int len, int) { return vornsSubCRev_32fc_I(v, a, len); },
        +[](Vorn32fc a, Vorn32fc v, int) -> Vorn32fc {
            return {v.re - a.re, v.im - a.im};
        },
        false);
    visit(
        "vornsSubCRev_64f_I", +[](Vorn64f v, Vorn64f* a, int len, int) { return vornsSubCRev_64f_I(v, a, len); },
        +[](Vorn64f a, Vorn64f v, int) -> Vorn64f { return v - a; }, false);
    visit(
        "vornsSubCRev_64fc_I", +[](Vorn64fc v, Vorn64fc* a, int len, int) { return vornsSubCRev_64fc_I(v, a, len); },
        +[](Vorn64fc a, Vorn64fc v, int) -> Vorn64fc {
            return {v.re - a.re, v.im - a.im};
        },
        false);
    visit(
        "vornsMulC_8u_ISfs", +[](Vorn8u v, Vorn8u* a, int len, int sf) { return vornsMulC_8u_ISfs(v, a, len, sf); },
        +[](Vorn8u a, Vorn8u v, int sf) -> Vorn8u { return model::product<Vorn8u>(a, v, sf); }, true);
    visit(
        "vornsMulC_16s_I", +[](Vorn16s v, Vorn16s* a, int len, int) { return vornsMulC_16s_I(v, a, len); },
        +[](Vorn16s a, Vorn16s v, int sf) -> Vorn16s { return model::product<Vorn16s>(a, v, sf); }, false);
    visit(
        "vornsMulC_16s_ISfs", +[](Vorn16s v, Vorn16s* a, int len, int sf) { return vornsMulC_16s_ISfs(v, a, len, sf); },
        +[](Vorn16s a, Vorn16s v, int sf) -> Vorn16s { return model::product<Vorn16s>(a, v, sf); }, true);
    visit(
        "vornsMulC_16sc_ISfs",
        +[](Vorn16sc v, Vorn16sc* a, int len, int sf) { return vornsMulC_16sc_ISfs(v, a, len, sf); },
        +[](Vorn16sc a, Vorn16sc v, int sf) -> Vorn16sc { return model::productC(a, v, sf); }, true);
    visit(
        "vornsMulC_32s_ISfs", +[](Vorn32s v, Vorn32s* a, int len, int sf) { return vornsMulC_32s_ISfs(v, a, len, sf); },
        +[](Vorn32s a, Vorn32s v, int sf) -> Vorn32s { return model::product32s(a, v, sf); }, true);
    visit(
        "vornsMulC_32sc_ISfs",
        +[](Vorn32sc v, Vorn32sc* a, int len, int sf) { return vornsMulC_32sc_ISfs(v, a, len, sf); },
        +[](Vorn32sc a, Vorn32sc v, int sf) -> Vorn32sc { return model::productC(a, v, sf); }, true);
    visit(
        "vornsMulC_32f_I", +[](Vorn32f v, Vorn32f* a, int len, int) { return vornsMulC_32f_I(v, a, len); },
        +[](Vorn32f a, Vorn32f v, int) -> Vorn32f { return v == 1   ? a
                                                           : v == 0 ? 0
                                                                    : a * v; }, false);
    visit(
        "vornsMulC_32fc_I", +[](Vorn32fc v, Vorn32fc* a, int len, int) { return vornsMulC_32fc_I(v, a, len); },
        +[](Vorn32fc a, Vorn32fc v, int) -> Vorn32fc {
            return {a.re * v.re - a.im * v.im, a.re * v.im + a.im * v.re};
        },
        false);
    visit(
        "vornsMulC_64f_I", +[](Vorn64f v, Vorn64f* a, int len, int) { return vornsMulC_64f_I(v, a, len); },
        +[](Vorn64f a, Vorn64f v, int) -> Vorn64f { return a * v; }, false);
    visit(
        "vornsMulC_64fc_I", +[](Vorn64fc v, Vorn64fc* a, int len, int) { return vornsMulC_64fc_I(v, a, len); },
        +[](Vorn64fc a, Vorn64fc v, int) -> Vorn64fc {
            return {a.re * v.re - a.im * v.im, a.re * v.im + a.im * v.re};
        },
        false);
    visit(
        "vornsDivC_8u_ISfs", +[](Vorn8u v, Vorn8u* a, int len, int sf) { return vornsDivC_8u_ISfs(v, a, len, sf); },
        +[](Vorn8u a, Vorn8u v, int sf) -> Vorn8u { return model::quotient<Vorn8u>(a, v, sf); }, true);
    visit(
        "vornsDivC_16s_ISfs", +[](Vorn16s v, Vorn16s* a, int len, int sf) { return vornsDivC_16s_ISfs(v, a, len, sf); },
        +[](Vorn16s a, Vorn16s v, int sf) -> Vorn16s { return model::quotient<Vorn16s>(a, v, sf); }, true);
    visit(
        "vornsDivC_16sc_ISfs",
        +[](Vorn16sc v, Vorn16sc* a, int len, int sf) { return vornsDivC_16sc_ISfs(v, a, len, sf); },
        +[](Vorn16sc a, Vorn16sc v, int sf) -> Vorn16sc { return model::quotientC(a, v, sf); }, true);
    visit(
        "vornsDivC_32f_I", +[](Vorn32f v, Vorn32f* a, int len, int) { return vornsDivC_32f_I(v, a, len); },
        +[](Vorn32f a, Vorn32f v, int) -> Vorn32f {
            const Vorn32f r = 1 / v;
            return r == 1 ? a : r == 0 ? 0 : a * r;
        },
        false);
    visit(
        "vornsDivC_32fc_I", +[](Vorn32fc v, Vorn32fc* a, int len, int) { return vornsDivC_32fc_I(v, a, len); },
        +[](Vorn32fc a, Vorn32fc v, int) -> Vorn32fc { return divided(a, v); }, false);
    visit(
        "vornsDivC_64f_I", +[](Vorn64f v, Vorn64f* a, int len, int) { return vornsDivC_64f_I(v, a, len); },
        +[](Vorn64f a, Vorn64f v, int) -> Vorn64f { return a / v; }, false);
    visit(
        "vornsDivC_64fc_I", +[](Vorn64fc v, Vorn64fc* a, int len, int) { return vornsDivC_64fc_I(v, a, len); },
        +[](Vorn64fc a, Vorn64fc v, int) -> Vorn64fc { return divided(a, v); }, false);
    visit(
        "vornsDivCRev_16u_I", +[](Vorn16u v, Vorn16u* a, int len, int) { return vornsDivCRev_16u_I(v, a, len); },
        +[](Vorn16u a, Vorn16u v, int sf) -> Vorn16u { return model::quotient<Vorn16u>(v, a, sf); }, false);
    visit(
        "vornsDivCRev_32f_I", +[](Vorn32f v, Vorn32f* a, int len, int) { return vornsDivCRev_32f_I(v, a, len); },
        +[](Vorn32f a, Vorn32f v, int) -> Vorn32f { return v / a; }, false);
}

}  // namespace members
