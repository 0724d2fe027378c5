// The version record.
#include "vornsr/frame.h"

static const VornLibraryVersion record = {5, 1, 133, 245, "m7", "libvornsrm7.so.5.1", "5.1.1", "Jun 17 2006"};

const VornLibraryVersion* vornsrGetLibVersion() { return &record; }
