// The families of workloads, one file each.
#pragma once

#include <cstddef>

#include "workload.h"

namespace verify {

struct Family {
    const Workload* workloads;
    std::size_t count;
};

Family frameWorkloads();
Family logArithmeticWorkloads();
Family gaussSingleWorkloads();
Family gaussianWorkloads();
Family estimationWorkloads();
Family featureWorkloads();
Family moveWorkloads();
Family convertWorkloads();
Family arithmeticWorkloads();
Family reductionWorkloads();
Family fftWorkloads();

inline const Family families[] = {
    frameWorkloads(),      logArithmeticWorkloads(), gaussSingleWorkloads(), gaussianWorkloads(),
    estimationWorkloads(), featureWorkloads(),       moveWorkloads(),        convertWorkloads(),
    arithmeticWorkloads(), reductionWorkloads(),     fftWorkloads(),
};

}  // namespace verify
