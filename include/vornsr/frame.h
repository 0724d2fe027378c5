/* The library's own record, its memory blocks, and the small floating-point core. */
#ifndef VORNSR_FRAME_H
#define VORNSR_FRAME_H

#include "types.h"

VORN_BEGIN_DECLS

/**
 * @defgroup vornsr_version Version record
 * @brief What the library says of itself: version, build, processor.
 * @{
 */

/** What the library says of itself. It lies in constant storage: do not change or free it. */
typedef struct {
    int major;             /**< 5 */
    int minor;             /**< 1 */
    int majorBuild;        /**< 133 */
    int build;             /**< 245 */
    char targetCpu[8];     /**< "m7", zero-filled */
    const char* name;      /**< "libvornsrm7.so.5.1" */
    const char* version;   /**< "5.1.1" */
    const char* buildDate; /**< "Jun 17 2006" */
} VornLibraryVersion;

/** The version record. Cannot fail. */
const VornLibraryVersion* vornsrGetLibVersion(void);

/** @} */

/**
 * @defgroup vornsr_memory Memory blocks
 * @brief Blocks on which the aligned kernels can run.
 *
 * `vornsMalloc_*(len)` returns a block of len elements whose address is a multiple of 32, not initialised, or null when
 * len is below 1 or when `malloc` has no such block. One `malloc` of the payload plus 40 bytes stands behind each
 * block; the 8 bytes before the payload keep its address.
 *
 * `vornsFree(pointer)` takes such a block, or null, which does nothing. As with `free`, freeing twice or freeing a
 * pointer from elsewhere is undefined.
 *
 * As thread-safe as `malloc` and `free`.
 * @{
 */
Vorn8u* vornsMalloc_8u(int len);
Vorn8s* vornsMalloc_8s(int len);
Vorn16u* vornsMalloc_16u(int len);
Vorn16s* vornsMalloc_16s(int len);
Vorn8sc* vornsMalloc_8sc(int len);
Vorn32u* vornsMalloc_32u(int len);
Vorn32s* vornsMalloc_32s(int len);
Vorn32f* vornsMalloc_32f(int len);
Vorn16sc* vornsMalloc_16sc(int len);
Vorn64s* vornsMalloc_64s(int len);
Vorn64f* vornsMalloc_64f(int len);
Vorn32sc* vornsMalloc_32sc(int len);
Vorn32fc* vornsMalloc_32fc(int len);
Vorn64sc* vornsMalloc_64sc(int len);
Vorn64fc* vornsMalloc_64fc(int len);
void vornsFree(void* pointer);
/** @} */

/**
 * @defgroup vornsr_core Floating-point core
 * @brief Special values, and the calling thread's rounding control.
 *
 * The constants are the replacement values of warnings: a quiet not-a-number, and the two infinities, of each width.
 *
 * `vorn_set_rc_ssx(mode)` writes the two rounding bits (mask 0x6000: 0 nearest, 0x2000 down, 0x4000 up, 0x6000 toward
 * zero) of the vector floating-point control register (MXCSR) of the calling thread, leaves its other bits alone, and
 * returns the register's former value whole; other bits of mode count nothing. `vorn_set_cw_ssx(word)` writes the
 * register whole: the caller answers for it (bits 16 and up must be 0, and a cleared mask bit, 7 to 12, lets an
 * exception that comes later end the program).
 * @{
 */
extern const Vorn32f vornConstantOfNAN_32f;
extern const Vorn64f vornConstantOfNAN_64f;
extern const Vorn32f vornConstantOfINF_32f;
extern const Vorn64f vornConstantOfINF_64f;
extern const Vorn32f vornConstantOfINF_NEG_32f;
extern const Vorn64f vornConstantOfINF_NEG_64f;

int vorn_set_rc_ssx(int mode);
void vorn_set_cw_ssx(int word);
/** @} */

VORN_END_DECLS

#endif
