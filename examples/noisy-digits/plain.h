// The plain front end, which knows nothing of noise.
#pragma once

#include "evaluation.h"

namespace digits {

FrontEndCall plainFrontEnd();

// The frames of a recording and where its word is among them.
Utterance utteranceOf(Analysis analysis, const Mixed& mixed);

}  // namespace digits
