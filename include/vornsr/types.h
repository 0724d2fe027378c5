/* Element types, status codes and modes shared by every header of vornsr. C99 and C++. */
#ifndef VORNSR_TYPES_H
#define VORNSR_TYPES_H

#include <stdint.h>

#ifdef __cplusplus
#define VORN_BEGIN_DECLS \
    extern "C" {         \
    _Pragma("GCC visibility push(default)")
#define VORN_END_DECLS            \
    _Pragma("GCC visibility pop") \
    }
#else
#define VORN_BEGIN_DECLS _Pragma("GCC visibility push(default)")
#define VORN_END_DECLS _Pragma("GCC visibility pop")
#endif

/**
 * @defgroup vornsr_types Types and statuses
 * @brief What every function of the library shares.
 *
 * Names. A function is named by its prefix, its stem, the type codes from source to result and its modifiers:
 * `vornsConvert_32f16s_Sfs` converts singles (32f) to signed 16-bit integers (16s) with a scale factor (Sfs).
 * Modifiers: `I` in place; `Sfs` integer result with a scale factor; `ISfs` both; `D2` a matrix as one block with a row
 * stride in elements; `D2L` a matrix as an array of row pointers.
 *
 * Scale factor. An integer result with scale factor sf is the exact value times 2^-sf, rounded to nearest with ties to
 * even and saturated, unless a family says otherwise.
 *
 * Threads. There is no shared mutable state. Every function may run on several threads at once on separate buffers, and
 * contexts that a call only reads may be shared.
 *
 * Memory. A function allocates only if its page says so under "Memory", and gives back before it returns what it has
 * not made for the caller. Where memory is short nothing stays allocated.
 *
 * Alignment is never an error. Unless a family says otherwise it never changes a result either.
 *
 * Bits. The same arguments give the same bits on every processor and in every build. Excepted are the sign and the
 * payload of a not-a-number that arithmetic gives (not those that a family names), and the processor's exception flags.
 *
 * Denormals. Results are promised with the processor's default handling of denormals. If the caller has switched it to
 * take denormal operands for zero or to flush denormal results to zero, a denormal operand or result of a
 * floating-point step may become a zero of its sign; where no step meets one, nothing changes. The library leaves these
 * modes as they are.
 * @{
 */

typedef uint8_t Vorn8u;
typedef int8_t Vorn8s;
typedef uint16_t Vorn16u;
typedef int16_t Vorn16s;
typedef uint32_t Vorn32u;
typedef int32_t Vorn32s;
typedef int64_t Vorn64s;
typedef float Vorn32f;
typedef double Vorn64f;

/** Half-precision float in its IEEE 754 layout: a storage form, met in conversions only. */
typedef uint16_t Vorn16f;

typedef struct {
    Vorn8s re, im;
} Vorn8sc;
typedef struct {
    Vorn16s re, im;
} Vorn16sc;
typedef struct {
    Vorn32s re, im;
} Vorn32sc;
typedef struct {
    Vorn64s re, im;
} Vorn64sc;
typedef struct {
    Vorn32f re, im;
} Vorn32fc;
typedef struct {
    Vorn64f re, im;
} Vorn64fc;

/** Result of almost every function: 0 success, negative an error (outputs untouched), positive a warning (outputs
 *  complete, with the replacement values that the family states), unless the family says otherwise. */
typedef Vorn32s VornStatus;

enum {
    vornStsNoErr = 0,              /**< success */
    vornStsErr = -2,               /**< a nested codebook search failed */
    vornStsBadArgErr = -5,         /**< an argument other than a size is outside its allowed set */
    vornStsSizeErr = -6,           /**< a length, count, height or index is out of range */
    vornStsRangeErr = -7,          /**< the values do not allow the operation */
    vornStsNullPtrErr = -8,        /**< a required pointer is null */
    vornStsMemAllocErr = -9,       /**< an internal allocation failed; nothing was computed */
    vornStsDivByZeroErr = -10,     /**< division by a constant that is zero; nothing was computed */
    vornStsFftOrderErr = -15,      /**< transform order out of range */
    vornStsFftFlagErr = -16,       /**< transform normalisation flag out of range */
    vornStsContextMatchErr = -17,  /**< the context was made for another form, or was released */
    vornStsStrideErr = -37,        /**< a row stride is smaller than what the row must hold */
    vornStsSvdNoConvergeErr = -65, /**< the singular value iteration reached its limit */
    vornStsCdbkFlagErr = -66,      /**< codebook hint flag not allowed */
    vornStsNegOccErr = -67,        /**< an occupation count is negative or not a number */
    vornStsNotInitErr = -69,       /**< a filter bank context has not been filled for this operation */
    vornStsMelFlagErr = -70,       /**< filter bank flags not allowed */
    vornStsMelFreqErr = -71,       /**< filter bank frequency range not allowed */
    vornStsNoRootErr = -114,       /**< too few line spectral roots found */
    vornStsLspOrderErr = -115,     /**< line spectral frequencies out of order or range */
    vornStsUnstableErr = -116,     /**< a reflection coefficient reached magnitude one */
    vornStsDurbinErr = -117,       /**< the Durbin recursion failed */
    vornStsLengthLimitErr = -119,  /**< a length is above the family's limit */
    vornStsCdbkModeErr = -9999,    /**< a codebook context holds an unknown hint */
    vornStsSqrtNegArg = 3,         /**< warning: a negative value met under a root */
    vornStsZeroRange = 4,          /**< warning: every element was replaced, or the range is zero */
    vornStsDivByZero = 6,          /**< warning: division by zero met among the elements */
    vornStsLnZeroArg = 7,          /**< warning: a zero met under a logarithm */
    vornStsLnNegArg = 8,           /**< warning: a negative value met under a logarithm */
    vornStsBelowFloor = 11,        /**< warning: every element fell below its floor */
    vornStsZeroOcc = 16,           /**< warning: an occupation count is zero; nothing is computed */
    vornStsCdbkSizeReduced = 31    /**< warning: the codebook came out with another size */
};

/** How a conversion rounds. */
typedef Vorn32s VornRoundMode;

enum {
    vornRndZero = 0, /**< truncate toward zero */
    vornRndNear = 1  /**< round to nearest, ties to even */
};

/** @} */

#endif
