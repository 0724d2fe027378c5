// Contexts of all forms of transforms, shared: every transform of the form, with a work buffer of its own or without.
#include <string>

#include "fft/forms.h"
#include "threads/together.h"

namespace {

using test::Buffers, test::Together;

// One context, and the calls that take it. Rows find out by their types how they are called.
template <class Spec>
class Transforms {
public:
    // In the library's memory or, with inMemory, in the caller's.
    Transforms(Together& together, const test::ContextForm<Spec>& form, int order, bool inMemory)
        : together_(together),
          name_(std::to_string(order) + (inMemory ? " in memory " : " ")),
          len_((std::size_t{1} << order) + 2) {
        const int flag = order % 2 == 0 ? 8 : 1;
        if (inMemory) {
            int spec = 0, init = 0;
            EXPECT_EQ(form.getSize(order, flag, 0, &spec, &init, &bufSize_), vornStsNoErr);
            const auto block = test::memory(spec), scratch = test::memory(init + 1);
            Spec* made = nullptr;
            EXPECT_EQ(form.init(&made, order, flag, 0, block->data(), scratch->data()), vornStsNoErr);
            context_ = std::shared_ptr<Spec>(made, [block](Spec*) {});
        } else {
            Spec* made = nullptr;
            EXPECT_EQ(form.initAlloc(&made, order, flag, 0), vornStsNoErr);
            context_ = test::owned(made, form.free);
        }
        EXPECT_EQ(form.getBufSize(context_.get(), &bufSize_), vornStsNoErr);
        together.add(name_ + "GetBufSize " + form.name, [context = context_, get = form.getBufSize](Buffers& b) {
            return get(context.get(), b.result<int>(1));
        });
    }

    template <class S, class D>
    Transforms& row(const char* name, VornStatus (*f)(const S*, D*, const Spec*, Vorn8u*)) {
        return add(name, [=, n = len_](Buffers& b, const Spec* context, Vorn8u* work) {
            return f(b.source<S>(n), b.result<D>(n), context, work);
        });
    }
    template <class T>
    Transforms& row(const char* name, VornStatus (*f)(T*, const Spec*, Vorn8u*)) {
        return add(name, [=, n = len_](Buffers& b, const Spec* context, Vorn8u* work) {
            return f(b.sourceAndResult<T>(n), context, work);
        });
    }
    template <class T>
    Transforms& row(const char* name, VornStatus (*f)(const T*, const T*, T*, T*, const Spec*, Vorn8u*)) {
        return add(name, [=, n = len_](Buffers& b, const Spec* context, Vorn8u* work) {
            return f(b.source<T>(n), b.source<T>(n), b.result<T>(n), b.result<T>(n), context, work);
        });
    }
    template <class T>
    Transforms& row(const char* name, VornStatus (*f)(T*, T*, const Spec*, Vorn8u*)) {
        return add(name, [=, n = len_](Buffers& b, const Spec* context, Vorn8u* work) {
            return f(b.sourceAndResult<T>(n), b.sourceAndResult<T>(n), context, work);
        });
    }
    // Fixed point.
    template <class S, class D>
    Transforms& row(const char* name, VornStatus (*f)(const S*, D*, const Spec*, int, Vorn8u*)) {
        return add(name, [=, n = len_](Buffers& b, const Spec* context, Vorn8u* work) {
            return f(b.source<S>(n), b.result<D>(n), context, 1, work);
        });
    }
    template <class T>
    Transforms& row(const char* name, VornStatus (*f)(T*, const Spec*, int, Vorn8u*)) {
        return add(name, [=, n = len_](Buffers& b, const Spec* context, Vorn8u* work) {
            return f(b.sourceAndResult<T>(n), context, 1, work);
        });
    }
    template <class T>
    Transforms& row(const char* name, VornStatus (*f)(const T*, const T*, T*, T*, const Spec*, int, Vorn8u*)) {
        return add(name, [=, n = len_](Buffers& b, const Spec* context, Vorn8u* work) {
            return f(b.source<T>(n), b.source<T>(n), b.result<T>(n), b.result<T>(n), context, 1, work);
        });
    }
    template <class T>
    Transforms& row(const char* name, VornStatus (*f)(T*, T*, const Spec*, int, Vorn8u*)) {
        return add(name, [=, n = len_](Buffers& b, const Spec* context, Vorn8u* work) {
            return f(b.sourceAndResult<T>(n), b.sourceAndResult<T>(n), context, 1, work);
        });
    }

private:
    // Every second call brings no work buffer.
    template <class Run>
    Transforms& add(const char* name, Run run) {
        together_.add(name_ + name, [run, context = context_, size = bufSize_](Buffers& b) {
            return run(b, context.get(), b.seed() % 2 == 0 ? b.scratch(size) : nullptr);
        });
        return *this;
    }

    Together& together_;
    std::string name_;
    std::size_t len_;
    int bufSize_ = 0;
    std::shared_ptr<Spec> context_;
};

// A short context, one in the caller's memory, and one long enough to be cut into blocks.
template <class Spec, class AddRows>
void expectShared(const test::ContextForm<Spec>& form, const AddRows& addRows) {
    Together small, large;
    addRows(Transforms<Spec>(small, form, 9, false));
    addRows(Transforms<Spec>(small, form, 4, true));
    small.expectSameAsAlone(10);
    addRows(Transforms<Spec>(large, form, 16, false));
    large.expectSameAsAlone(1);
}

#define ROW(function) row(#function, function)

TEST(ThreadsShareTransforms, Complex32fc) {
    expectShared(test::complex32fc, [](Transforms<VornsFFTSpec>&& of) {
        of.ROW(vornsFFTFwd_CToC_32fc).ROW(vornsFFTFwd_CToC_32fc_I);
        of.ROW(vornsFFTInv_CToC_32fc).ROW(vornsFFTInv_CToC_32fc_I);
    });
}

TEST(ThreadsShareTransforms, Complex32f) {
    expectShared(test::complex32f, [](Transforms<VornsFFTSpec>&& of) {
        of.ROW(vornsFFTFwd_CToC_32f).ROW(vornsFFTFwd_CToC_32f_I);
        of.ROW(vornsFFTInv_CToC_32f).ROW(vornsFFTInv_CToC_32f_I);
    });
}

TEST(ThreadsShareTransforms, Complex64fc) {
    expectShared(test::complex64fc, [](Transforms<VornsFFTSpec>&& of) {
        of.ROW(vornsFFTFwd_CToC_64fc).ROW(vornsFFTFwd_CToC_64fc_I);
        of.ROW(vornsFFTInv_CToC_64fc).ROW(vornsFFTInv_CToC_64fc_I);
    });
}

TEST(ThreadsShareTransforms, Complex64f) {
    expectShared(test::complex64f, [](Transforms<VornsFFTSpec>&& of) {
        of.ROW(vornsFFTFwd_CToC_64f).ROW(vornsFFTFwd_CToC_64f_I);
        of.ROW(vornsFFTInv_CToC_64f).ROW(vornsFFTInv_CToC_64f_I);
    });
}

TEST(ThreadsShareTransforms, Complex32sc) {
    expectShared(test::complex32sc, [](Transforms<VornsFFTFixedSpec>&& of) {
        of.ROW(vornsFFTFwd_CToC_32sc_Sfs).ROW(vornsFFTFwd_CToC_32sc_ISfs);
        of.ROW(vornsFFTInv_CToC_32sc_Sfs).ROW(vornsFFTInv_CToC_32sc_ISfs);
    });
}

TEST(ThreadsShareTransforms, Complex32s) {
    expectShared(test::complex32s, [](Transforms<VornsFFTFixedSpec>&& of) {
        of.ROW(vornsFFTFwd_CToC_32s_Sfs).ROW(vornsFFTFwd_CToC_32s_ISfs);
        of.ROW(vornsFFTInv_CToC_32s_Sfs).ROW(vornsFFTInv_CToC_32s_ISfs);
    });
}

TEST(ThreadsShareTransforms, Real32f) {
    expectShared(test::real32f, [](Transforms<VornsFFTSpec>&& of) {
        of.ROW(vornsFFTFwd_RToPerm_32f).ROW(vornsFFTFwd_RToPerm_32f_I);
        of.ROW(vornsFFTFwd_RToPack_32f).ROW(vornsFFTFwd_RToPack_32f_I);
        of.ROW(vornsFFTFwd_RToCCS_32f).ROW(vornsFFTFwd_RToCCS_32f_I);
        of.ROW(vornsFFTInv_PermToR_32f).ROW(vornsFFTInv_PermToR_32f_I);
        of.ROW(vornsFFTInv_PackToR_32f).ROW(vornsFFTInv_PackToR_32f_I);
        of.ROW(vornsFFTInv_CCSToR_32f).ROW(vornsFFTInv_CCSToR_32f_I);
    });
}

TEST(ThreadsShareTransforms, Real64f) {
    expectShared(test::real64f, [](Transforms<VornsFFTSpec>&& of) {
        of.ROW(vornsFFTFwd_RToPerm_64f).ROW(vornsFFTFwd_RToPerm_64f_I);
        of.ROW(vornsFFTFwd_RToPack_64f).ROW(vornsFFTFwd_RToPack_64f_I);
        of.ROW(vornsFFTFwd_RToCCS_64f).ROW(vornsFFTFwd_RToCCS_64f_I);
        of.ROW(vornsFFTInv_PermToR_64f).ROW(vornsFFTInv_PermToR_64f_I);
        of.ROW(vornsFFTInv_PackToR_64f).ROW(vornsFFTInv_PackToR_64f_I);
        of.ROW(vornsFFTInv_CCSToR_64f).ROW(vornsFFTInv_CCSToR_64f_I);
    });
}

TEST(ThreadsShareTransforms, Real32s) {
    expectShared(test::real32s, [](Transforms<VornsFFTFixedSpec>&& of) {
        of.ROW(vornsFFTFwd_RToPerm_32s_Sfs).ROW(vornsFFTFwd_RToPerm_32s_ISfs);
        of.ROW(vornsFFTFwd_RToPack_32s_Sfs).ROW(vornsFFTFwd_RToPack_32s_ISfs);
        of.ROW(vornsFFTFwd_RToCCS_32s_Sfs).ROW(vornsFFTFwd_RToCCS_32s_ISfs);
        of.ROW(vornsFFTInv_PermToR_32s_Sfs).ROW(vornsFFTInv_PermToR_32s_ISfs);
        of.ROW(vornsFFTInv_PackToR_32s_Sfs).ROW(vornsFFTInv_PackToR_32s_ISfs);
        of.ROW(vornsFFTInv_CCSToR_32s_Sfs).ROW(vornsFFTInv_CCSToR_32s_ISfs);
    });
}

TEST(ThreadsShareTransforms, Real16s32s) {
    expectShared(test::real16s32s, [](Transforms<VornsFFTFixedSpec>&& of) {
        of.ROW(vornsFFTFwd_RToCCS_16s32s_Sfs).ROW(vornsFFTInv_CCSToR_32s16s_Sfs);
    });
}

#undef ROW

}  // namespace
