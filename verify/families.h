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
Family selectionWorkloads();
Family distanceWorkloads();
Family warpingWorkloads();
Family columnWorkloads();
Family accumulatorWorkloads();
Family updateWorkloads();
Family clusteringWorkloads();
Family bankWorkloads();
Family lifterWorkloads();
Family deltaWorkloads();
Family conditioningWorkloads();
Family linearPredictionWorkloads();
Family conversionWorkloads();
Family reflectionWorkloads();
Family resamplingWorkloads();
Family moveWorkloads();
Family convertWorkloads();
Family arithmeticWorkloads();
Family reductionWorkloads();
Family logarithmWorkloads();
Family sumLogarithmWorkloads();
Family squareRootWorkloads();
Family magnitudeWorkloads();
Family absoluteWorkloads();
Family fftWorkloads();
Family autocorrelationWorkloads();
Family singularValueWorkloads();
Family productWorkloads();
Family rowReductionWorkloads();
Family curveWorkloads();
Family codebookWorkloads();
Family quantisationWorkloads();
Family formingWorkloads();
Family noiseReductionWorkloads();
Family auroraBankWorkloads();
Family waveformWorkloads();
Family detectionWorkloads();
Family equalisationWorkloads();
Family auroraDeltaWorkloads();
Family trackingWorkloads();
Family suppressionWorkloads();
Family pitchWorkloads();

// In the order of digests.txt: the digest of all depends on it.
inline const Family families[] = {
    frameWorkloads(),        logArithmeticWorkloads(),   gaussSingleWorkloads(),   gaussianWorkloads(),
    selectionWorkloads(),    distanceWorkloads(),        warpingWorkloads(),       columnWorkloads(),
    accumulatorWorkloads(),  updateWorkloads(),          clusteringWorkloads(),    bankWorkloads(),
    lifterWorkloads(),       deltaWorkloads(),           conditioningWorkloads(),  linearPredictionWorkloads(),
    conversionWorkloads(),   reflectionWorkloads(),      resamplingWorkloads(),    moveWorkloads(),
    convertWorkloads(),      arithmeticWorkloads(),      reductionWorkloads(),     logarithmWorkloads(),
    sumLogarithmWorkloads(), squareRootWorkloads(),      magnitudeWorkloads(),     absoluteWorkloads(),
    fftWorkloads(),          autocorrelationWorkloads(), singularValueWorkloads(), productWorkloads(),
    rowReductionWorkloads(), curveWorkloads(),           codebookWorkloads(),      quantisationWorkloads(),
    formingWorkloads(),      noiseReductionWorkloads(),  auroraBankWorkloads(),    waveformWorkloads(),
    detectionWorkloads(),    equalisationWorkloads(),    auroraDeltaWorkloads(),   trackingWorkloads(),
    suppressionWorkloads(),  pitchWorkloads(),
};

}  // namespace verify
