/* vornsr: signal-processing and statistics primitives for speech recognition. One header for the whole library. */
#ifndef VORNSR_H
#define VORNSR_H

#include "vornsr/aurora.h"
#include "vornsr/estimation.h"
#include "vornsr/features.h"
#include "vornsr/fft.h"
#include "vornsr/frame.h"
#include "vornsr/linalg.h"
#include "vornsr/noise.h"
#include "vornsr/scoring.h"
#include "vornsr/signal.h"
#include "vornsr/types.h"
#include "vornsr/vq.h"

#endif
