// The intrinsics of this build and no more. <immintrin.h> declares those of every processor there is, and reading it
// took half a second in each file, a fifth of the whole build.
#pragma once

// GCC 12 takes the deliberately undefined operands of some 512-bit intrinsics for a fault of ours (its bug 105593).
#pragma GCC diagnostic push
#ifndef __clang__
#pragma GCC diagnostic ignored "-Wuninitialized"
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif

#if !defined(__AVX2__)

#include <pmmintrin.h>

#elif defined(__clang__) || __GNUC__ != 12 || defined(_IMMINTRIN_H_INCLUDED)

#include <immintrin.h>

#else

// GCC has a header for each set, which asks to be included through <immintrin.h>: for as long as this takes we say that
// it is. Other versions of GCC may have cut the sets differently; they take the whole.
#define _IMMINTRIN_H_INCLUDED
#include <smmintrin.h>
#include <x86gprintrin.h>

#include <avxintrin.h>

#include <avx2intrin.h>
#include <f16cintrin.h>
#if defined(__AVX512F__)
#include <avx512fintrin.h>

#include <avx512vlintrin.h>

#include <avx512bwintrin.h>
#include <avx512dqintrin.h>
#endif
#undef _IMMINTRIN_H_INCLUDED

#endif

#pragma GCC diagnostic pop
