/* Functions with a fault each, and some without, for the tests of vornsr-fuzz. Compiled twice: the second build differs
 * where a fault is that builds differ. */
#include <math.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>
#include <xmmintrin.h>

enum { ok = 0, badArg = -5, badSize = -6, nullPtr = -8, memory = -9, mismatch = -17, warning = 16 };

#ifdef PLANTED_OTHER_BUILD
#define OTHER_BUILD 1
#else
#define OTHER_BUILD 0
#endif

#define CHECK(condition, status) \
    if (!(condition)) return status

static int copied(const float* src, float* dst, int len) {
    CHECK(src != NULL && dst != NULL, nullPtr);
    CHECK(len >= 1, badSize);
    for (int i = 0; i < len; ++i) dst[i] = src[i];
    return ok;
}

/* ---- Without a fault. */

int plantedCopy(const float* src, float* dst, int len) { return copied(src, dst, len); }

/* The payload of a not-a-number may differ. */
int plantedPayload(const float* src, float* dst, int len) {
    const int status = copied(src, dst, len);
    const uint32_t nan = OTHER_BUILD ? 0x7FC12345u : 0xFFC00000u;
    if (status == ok && len % 3 == 0) memcpy(dst, &nan, sizeof nan);
    return status;
}

/* A warning after which nothing is computed. */
int plantedWarning(const float* src, float* dst, int len) {
    CHECK(src != NULL && dst != NULL, nullPtr);
    CHECK(len >= 1, badSize);
    return src[0] == 0 ? warning : copied(src, dst, len);
}

int plantedRows(const int16_t* const* rows, int16_t* dst, int dstStep, const int* widths, int height) {
    CHECK(rows != NULL && dst != NULL && widths != NULL, nullPtr);
    CHECK(height >= 1 && dstStep >= 1, badSize);
    for (int i = 0; i < height; ++i) CHECK(widths[i] >= 1 && widths[i] <= dstStep, badSize);
    for (int i = 0; i < height; ++i) CHECK(rows[i] != NULL, nullPtr);
    for (int i = 0; i < height; ++i) dst[i * dstStep] = rows[i][widths[i] - 1];
    return ok;
}

/* ---- Memory. */

int plantedReadsBehind(const float* src, float* dst, int len) {
    const int status = copied(src, dst, len);
    if (status == ok && len == 5 && src[len] == 3.0f) dst[0] = 1;
    return status;
}

int plantedReadsBefore(const float* src, float* dst, int len) {
    const int status = copied(src, dst, len);
    if (status == ok && src[-1] == 3.0f) dst[0] = 1;
    return status;
}

int plantedWritesBehind(const float* src, float* dst, int len) {
    const int status = copied(src, dst, len);
    if (status == ok && len % 4 == 3) dst[len] = 0;
    return status;
}

int plantedWritesBetween(const float* src, float* dst, int step, int width, int height) {
    CHECK(src != NULL && dst != NULL, nullPtr);
    CHECK(width >= 1 && height >= 1 && step >= width, badSize);
    for (int row = 0; row < height; ++row) {
        for (int i = 0; i < width; ++i) dst[row * step + i] = src[i];
        if (row + 1 < height && step > width) dst[row * step + width] = 0;
    }
    return ok;
}

int plantedWritesInput(const float* src, float* dst, int len) {
    const int status = copied(src, dst, len);
    if (status == ok && len == 4) ((float*)src)[3] += 1;
    return status;
}

int plantedWritesOnError(const float* src, float* dst, int len, int mode) {
    CHECK(src != NULL && dst != NULL, nullPtr);
    CHECK(len >= 1, badSize);
    dst[0] = src[0];
    CHECK(mode >= 0 && mode <= 3, badArg);
    return copied(src, dst, len);
}

int plantedUnwritten(const float* src, float* dst, int len) { return copied(src, dst, len > 8 ? len - 1 : len); }

/* ---- Bits. */

int plantedAlignment(const float* src, float* dst, int len) {
    const int status = copied(src, dst, len);
    if (status == ok && (uintptr_t)src % 16 == 4) dst[0] += 1;
    return status;
}

int plantedBuilds(const float* src, float* dst, int len) {
    const int status = copied(src, dst, len);
    if (status == ok && OTHER_BUILD && len == 17) dst[16] = nextafterf(dst[16], 0);
    return status;
}

int plantedZeroSign(const float* src, float* dst, int len) {
    const int status = copied(src, dst, len);
    if (status == ok && OTHER_BUILD && src[0] == 0) dst[0] = -src[0];
    return status;
}

int plantedStatusByBuild(const float* src, float* dst, int len) {
    const int status = copied(src, dst, len);
    return status == ok && OTHER_BUILD && len == 9 ? warning : status;
}

int plantedInPlace(const float* src, float* dst, int len) {
    CHECK(src != NULL && dst != NULL, nullPtr);
    CHECK(len >= 1, badSize);
    for (int i = 0; i < len; ++i) dst[i] = src[i] + (i > 0 ? src[i - 1] : 1.0f);
    return ok;
}

int plantedMode(const float* src, float* dst, int len) {
    const int status = copied(src, dst, len);
    if (status == ok && len == 3) _MM_SET_ROUNDING_MODE(_MM_ROUND_UP);
    return status;
}

/* ---- Checks. */

int plantedRefuses(const float* src, float* dst, int len) {
    CHECK(len != 16, badArg);
    return copied(src, dst, len);
}

int plantedAccepts(const float* src, float* dst, int len) {
    CHECK(src != NULL && dst != NULL, nullPtr);
    return len < 1 ? ok : copied(src, dst, len);
}

int plantedAcceptsNan(const float* src, float* dst, int len, float val) {
    CHECK(!(val < 0), badArg);
    return copied(src, dst, len);
}

int plantedNull(const float* src, float* dst, int len) {
    CHECK(src != NULL, nullPtr);
    CHECK(len >= 1, badSize);
    for (int i = 0; i < len; ++i) dst[i] = src[i];
    return ok;
}

int plantedNullRow(const float* const* rows, float* dst, int width, int height) {
    CHECK(rows != NULL && dst != NULL, nullPtr);
    CHECK(width >= 1 && height >= 1, badSize);
    for (int i = 0; i < height; ++i) dst[i] = rows[i][width - 1];
    return ok;
}

int plantedContent(const int* index, float* dst, int len) {
    CHECK(index != NULL && dst != NULL, nullPtr);
    CHECK(len >= 1, badSize);
    for (int i = 0; i < len; ++i) CHECK(index[i] >= 0, badArg);
    for (int i = 0; i < len; ++i) dst[i] = (float)i;
    return ok; /* that none is below its predecessor was to be tested as well */
}

/* ---- The end of the process. */

int plantedHangs(const float* src, float* dst, int len) {
    const int status = copied(src, dst, len);
    for (volatile int more = status == ok && len == 7; more;) continue;
    return status;
}

int plantedDivides(const int* src, int* dst, int len) {
    CHECK(src != NULL && dst != NULL, nullPtr);
    CHECK(len >= 1, badSize);
    volatile int divisor = src[0] == 0 ? 0 : 1;
    for (int i = 0; i < len; ++i) dst[i] = src[i] / divisor;
    return ok;
}

/* ---- Allocation. */

int plantedLeaks(const float* src, float* dst, int len) {
    void* volatile scratch = malloc(64);
    CHECK(scratch != NULL, memory);
    if (len != 8) free(scratch);
    return copied(src, dst, len);
}

int plantedIgnoresShortage(const float* src, float* dst, int len) {
    void* volatile scratch = malloc(64);
    free(scratch);
    return copied(src, dst, len);
}

/* Its row does not say so. */
int plantedAllocates(const float* src, float* dst, int len) {
    void* volatile scratch = malloc(64);
    CHECK(scratch != NULL, memory);
    free(scratch);
    return copied(src, dst, len);
}

int plantedWritesBeforeAllocation(const float* src, float* dst, int len) {
    const int status = copied(src, dst, len);
    CHECK(status == ok, status);
    void* volatile scratch = malloc(64);
    CHECK(scratch != NULL, memory);
    free(scratch);
    return ok;
}

/* ---- Contexts. */

typedef struct {
    int mark, len, uses;
    float sum;
} Sum;

static const int sumMark = 0x53554D21;

static int makeSum(Sum** sum, int len) {
    CHECK(sum != NULL, nullPtr);
    CHECK(len >= 1 && len <= 64, badSize);
    Sum* made = malloc(sizeof *made);
    CHECK(made != NULL, memory);
    made->mark = sumMark;
    made->len = len;
    made->uses = 0;
    made->sum = 0;
    *sum = made;
    return ok;
}

int plantedSumMake(Sum** sum, int len) { return makeSum(sum, len); }

/* For contexts of other forms. */
int plantedThirdMake(Sum** sum, int len) { return makeSum(sum, len); }
int plantedUntestedMake(Sum** sum, int len) { return makeSum(sum, len); }

int plantedSumSize(int len, int* size) {
    CHECK(size != NULL, nullPtr);
    CHECK(len >= 1 && len <= 64, badSize);
    *size = (int)sizeof(Sum) + len;
    return ok;
}

int plantedSumInit(void* block, int len) {
    CHECK(block != NULL, nullPtr);
    CHECK(len >= 1 && len <= 64, badSize);
    const Sum made = {sumMark, len, 0, 0};
    memcpy(block, &made, sizeof made);
    memset((char*)block + sizeof made, 0, (size_t)len);
    return ok;
}

int plantedSumAdd(Sum* sum, const float* src, float* total) {
    CHECK(sum != NULL && src != NULL && total != NULL, nullPtr);
    Sum now;
    memcpy(&now, sum, sizeof now);
    CHECK(now.mark == sumMark, mismatch);
    for (int i = 0; i < now.len; ++i) now.sum += src[i];
    memcpy(sum, &now, sizeof now);
    *total = now.sum;
    return ok;
}

int plantedSumFree(Sum* sum) {
    CHECK(sum != NULL, nullPtr);
    CHECK(sum->mark == sumMark, mismatch);
    sum->mark = 0;
    free(sum);
    return ok;
}

/* The third use of a context differs. */
int plantedThirdUse(Sum* sum, const float* src, float* total) {
    const int status = plantedSumAdd(sum, src, total);
    if (status == ok && ++sum->uses == 3 && OTHER_BUILD) *total += 1;
    return status;
}

int plantedFormNotTested(Sum* sum, float* total) {
    CHECK(sum != NULL && total != NULL, nullPtr);
    *total = 0;
    return ok;
}

int plantedMakesNothing(Sum** sum, int len) {
    if (len == 4) return sum == NULL ? nullPtr : ok;
    return makeSum(sum, len);
}

int plantedNothingFree(Sum* sum) { return plantedSumFree(sum); }

int plantedInitTooLong(void* block, int len) {
    const int status = plantedSumInit(block, len);
    if (status == ok && len > 2) ((char*)block)[sizeof(Sum) + (size_t)len] = 0;
    return status;
}

float* plantedBlock(int len) { return len < 1 ? NULL : malloc((size_t)len * sizeof(float)); }

void plantedRelease(void* block) { free(block); }
