// Absolute values beside plain loops and Eigen.
#include <cstdlib>

#include "plain/absolute.h"
#include "support/vectors.h"
#include "vornsr.h"

namespace {

using namespace bench::vectors;

template <class T>
void addAbsolute(const char* name, VornStatus (*function)(const T*, T*, int)) {
    add(name, function, {PLAIN(plain::absolute(x, z, n)) EIGEN(array(z, n) = array(x, n).abs())});
}

const bench::Family absolute([] {
    addAbsolute("Abs_16s", vornsAbs_16s);
    addAbsolute("Abs_32s", vornsAbs_32s);
    addAbsolute("Abs_32f", vornsAbs_32f);
    addAbsolute("Abs_64f", vornsAbs_64f);
});

}  // namespace
