// Making and releasing transform contexts.
#include "fft/contexts/context.h"

#include <cmath>
#include <cstring>

#include "fft/contexts/tables.h"
#include "frame/checks.h"
#include "frame/memory.h"
#include "frame/rounding.h"

namespace vorn::fft {
namespace {

// Blocks of 16 bytes are counted, so that sizes beyond 2 GiB can be asked for.
Vorn8u* allocateBytes(std::int64_t bytes) {
    const std::int64_t units = roundedUp16(bytes) / 16;
    return units > INT32_MAX ? nullptr : static_cast<Vorn8u*>(allocateBlock(static_cast<int>(units), 16));
}

// Where tables come from: the caller's memory, one behind the other, or the library's allocator, each on its own.
class TableMemory {
public:
    static TableMemory allocator() { return TableMemory(nullptr); }
    static TableMemory behind(Vorn8u* place) { return TableMemory(place); }

    template <class Entry>
    bool take(Entry*& table, std::int64_t bytes) {
        if (next_ == nullptr) {
            table = reinterpret_cast<Entry*>(allocateBytes(bytes));
        } else {
            table = reinterpret_cast<Entry*>(next_);
            next_ += roundedUp16(bytes);
        }
        return table != nullptr;
    }

private:
    explicit TableMemory(Vorn8u* next) : next_(next) {}
    Vorn8u* next_;
};

// Of nearest mode, as the tables are.
template <class T>
VORN_NOINLINE void putInverseRoot(int order, T* root) {
    *root = static_cast<T>(1.0 / std::sqrt(static_cast<double>(std::int64_t{1} << order)));
}
template <class T>
T inverseRoot(int order) {
    T root;
    const RoundingGuard nearest(Rounding::Nearest);
    putInverseRoot(order, &root);
    return root;
}

// Sets the record's plain fields; it holds zeros.
template <class T>
VornStatus fillRecord(FloatSpec<T>& spec, Form form, int order, int flag, int hint, bool allocated) {
    const T inverseLength = T(1) / static_cast<T>(std::int64_t{1} << order);
    switch (flag) {
        case 1:
            spec.normFwd = 1, spec.normFactor = inverseLength;
            break;
        case 2:
            spec.normInv = 1, spec.normFactor = inverseLength;
            break;
        case 4:
            spec.normFwd = spec.normInv = 1, spec.normFactor = inverseRoot<T>(order);
            break;
        case 8:
            break;
        default:
            return vornStsFftFlagErr;
    }
    spec.idCtx = form.tag;
    spec.order = order;
    spec.hint = hint;
    spec.workBufSize = workBufSize<T>(order, form.real);
    spec.allocated = allocated;
    return vornStsNoErr;
}

// Takes the memory of all tables and fills them from the quarter-wave table, which is made in sine.
template <class T>
VornStatus makeTables(FloatSpec<T>& spec, Form form, TableMemory memory, T* sine) {
    const int order = spec.order, complexOrder = form.real ? order - 1 : order;
    const ComplexSizes sizes = complexSizes<T>(complexOrder);
    if (!memory.take(spec.bitRevTab, sizes.bitReversal)) return vornStsMemAllocErr;
    if (!memory.take(spec.twdTab, sizes.twiddles)) return vornStsMemAllocErr;
    if (form.real) {
        if (!memory.take(spec.realRecTab, recombinationSize<T>(order))) return vornStsMemAllocErr;
        if (!memory.take(spec.ccsRecTab, recombinationSize<T>(order))) return vornStsMemAllocErr;
    }
    QuarterWave<T>::fill(sine, order);
    const QuarterWave<T> wave{sine, order};
    fillBitReversal(spec.bitRevTab, complexOrder);
    if (complexOrder >= firstTableOrder) fillTwiddles(wave, complexOrder, spec.twdTab, spec.blkTwdTab);
    if (form.real) {
        fillRealRecombination(wave, spec.realRecTab);
        fillCcsRecombination(wave, spec.ccsRecTab);
    }
    return vornStsNoErr;
}

template <class T>
void releaseTables(FloatSpec<T>& spec) {
    vornsFree(spec.bitRevTab);
    vornsFree(spec.twdTab);
    vornsFree(spec.realRecTab);
    vornsFree(spec.ccsRecTab);
}

// A record of zeros is filled and its tables are allocated; nothing stays allocated on failure.
template <class T>
VornStatus makeAllocated(FloatSpec<T>& spec, Form form, int order, int flag, int hint) {
    VORN_CHECK(fillRecord(spec, form, order, flag, hint, true));
    if (order < firstTableOrder) return vornStsNoErr;
    const Scratch<T> sine((std::int64_t{1} << order) / 4 + 1);
    if (!sine) return vornStsMemAllocErr;
    const VornStatus status = makeTables(spec, form, TableMemory::allocator(), sine.get());
    if (status != vornStsNoErr) releaseTables(spec);
    return status;
}

constexpr bool flagIsKnown(int flag) { return flag == 1 || flag == 2 || flag == 4 || flag == 8; }

// The checks of a creation in the caller's memory behind those of ctxOut and order.
VornStatus memoryGiven(int order, int flag, const Vorn8u* specMem, const Vorn8u* initBuf) {
    VORN_CHECK(notNull(specMem));
    VORN_CHECK(require(flagIsKnown(flag), vornStsFftFlagErr));
    if (order >= firstTableOrder) VORN_CHECK(notNull(initBuf));
    return vornStsNoErr;
}

// Makes a float context at place, an address on a multiple of 16.
template <class T>
void makePlaced(Form form, int order, int flag, int hint, Vorn8u* place, Vorn8u* initBuf) {
    std::memset(place, 0, sizeof(FloatSpec<T>));
    auto& spec = *reinterpret_cast<FloatSpec<T>*>(place);
    fillRecord(spec, form, order, flag, hint, false);
    if (order < firstTableOrder) return;
    Vorn8u* tables = place + roundedUp16(sizeof(FloatSpec<T>));
    makeTables(spec, form, TableMemory::behind(tables), reinterpret_cast<T*>(alignedUp(initBuf, 16)));
}

template <class T>
int fixedWorkBufSize(FixedForm form, int order) {
    return reported(bufSizeFor(workBufSize<T>(order, form.inner.real)) + form.conversionArea(order));
}

// The header of a fixed-point context at place, with the inner context directly behind it.
template <class T>
FixedSpec& placeHeader(FixedForm form, int order, int hint, bool allocated, Vorn8u* place) {
    static_assert(sizeof(FixedSpec) % 16 == 0);
    auto& spec = *reinterpret_cast<FixedSpec*>(place);
    spec = {form.tag,  order,
            hint,      fixedWorkBufSize<T>(form, order),
            allocated, reinterpret_cast<VornsFFTSpec*>(place + sizeof(FixedSpec))};
    return spec;
}

}  // namespace

template <class T>
VornStatus getSize(Form form, int order, int* specSize, int* initBufSize, int* workBufSize) {
    VORN_CHECK(orderInRange(order));
    VORN_CHECK(notNull(specSize, initBufSize, workBufSize));
    const Sizes sizes = floatSizes<T>(order, form.real);
    *specSize = reported(sizes.spec);
    *initBufSize = reported(sizes.initBuf);
    *workBufSize = reported(sizes.workBuf);
    return vornStsNoErr;
}

template <class T>
VornStatus getSize(FixedForm form, int order, int* specSize, int* initBufSize, int* workBufSize) {
    VORN_CHECK(getSize<T>(form.inner, order, specSize, initBufSize, workBufSize));
    const int work = reported(*workBufSize + form.conversionArea(order));
    *specSize = reported(std::int64_t{*specSize} + 48);
    if (*initBufSize != 0) *initBufSize = reported(std::int64_t{*initBufSize} + 16);
    *workBufSize = work != 0 ? reported(std::int64_t{work} + 16) : 0;
    return vornStsNoErr;
}

template <class T>
VornStatus initAlloc(Form form, VornsFFTSpec** ctxOut, int order, int flag, int hint) {
    VORN_CHECK(notNull(ctxOut));
    VORN_CHECK(orderInRange(order));
    Scratch<Vorn8u> record(sizeof(FloatSpec<T>));
    if (!record) return vornStsMemAllocErr;
    std::memset(record.get(), 0, sizeof(FloatSpec<T>));
    VORN_CHECK(makeAllocated(*reinterpret_cast<FloatSpec<T>*>(record.get()), form, order, flag, hint));
    *ctxOut = reinterpret_cast<VornsFFTSpec*>(record.release());
    return vornStsNoErr;
}

template <class T>
VornStatus initAlloc(FixedForm form, VornsFFTFixedSpec** ctxOut, int order, int flag, int hint) {
    VORN_CHECK(notNull(ctxOut));
    VORN_CHECK(orderInRange(order));
    Scratch<Vorn8u> record(sizeof(FixedSpec) + sizeof(FloatSpec<T>));
    if (!record) return vornStsMemAllocErr;
    std::memset(record.get(), 0, sizeof(FixedSpec) + sizeof(FloatSpec<T>));
    const FixedSpec& header = placeHeader<T>(form, order, hint, true, record.get());
    VORN_CHECK(makeAllocated(*recordOf<T>(header.inner), form.inner, order, flag, 0));
    *ctxOut = reinterpret_cast<VornsFFTFixedSpec*>(record.release());
    return vornStsNoErr;
}

template <class T>
VornStatus init(Form form, VornsFFTSpec** ctxOut, int order, int flag, int hint, Vorn8u* specMem, Vorn8u* initBuf) {
    VORN_CHECK(notNull(ctxOut));
    VORN_CHECK(orderInRange(order));
    VORN_CHECK(memoryGiven(order, flag, specMem, initBuf));
    Vorn8u* place = alignedUp(specMem, 16);
    makePlaced<T>(form, order, flag, hint, place, initBuf);
    *ctxOut = reinterpret_cast<VornsFFTSpec*>(place);
    return vornStsNoErr;
}

template <class T>
VornStatus init(FixedForm form, VornsFFTFixedSpec** ctxOut, int order, int flag, int hint, Vorn8u* specMem,
                Vorn8u* initBuf) {
    VORN_CHECK(notNull(ctxOut));
    VORN_CHECK(orderInRange(order));
    VORN_CHECK(memoryGiven(order, flag, specMem, initBuf));
    Vorn8u* place = alignedUp(specMem, 16);
    placeHeader<T>(form, order, hint, false, place);
    makePlaced<T>(form.inner, order, flag, 0, place + sizeof(FixedSpec), initBuf);
    *ctxOut = reinterpret_cast<VornsFFTFixedSpec*>(place);
    return vornStsNoErr;
}

template <class T>
void release(VornsFFTSpec* ctx) {
    FloatSpec<T>& spec = *recordOf<T>(ctx);
    spec.idCtx = releasedTag;
    if (spec.allocated != 1) return;
    releaseTables(spec);
    vornsFree(ctx);
}

template <class T>
void release(VornsFFTFixedSpec* ctx) {
    FixedSpec& spec = *recordOf(ctx);
    spec.idCtx = releasedTag;
    if (spec.allocated != 1) return;
    releaseTables(*recordOf<T>(spec.inner));
    vornsFree(ctx);
}

#define VORN_FOR_PRECISION(T)                                                                     \
    template VornStatus getSize<T>(Form, int, int*, int*, int*);                                  \
    template VornStatus getSize<T>(FixedForm, int, int*, int*, int*);                             \
    template VornStatus initAlloc<T>(Form, VornsFFTSpec**, int, int, int);                        \
    template VornStatus initAlloc<T>(FixedForm, VornsFFTFixedSpec**, int, int, int);              \
    template VornStatus init<T>(Form, VornsFFTSpec**, int, int, int, Vorn8u*, Vorn8u*);           \
    template VornStatus init<T>(FixedForm, VornsFFTFixedSpec**, int, int, int, Vorn8u*, Vorn8u*); \
    template void release<T>(VornsFFTSpec*);                                                      \
    template void release<T>(VornsFFTFixedSpec*);
VORN_FOR_PRECISION(float)
VORN_FOR_PRECISION(double)
#undef VORN_FOR_PRECISION

}  // namespace vorn::fft
