// The words for findings.
#include "finding.h"

namespace fuzz {

const char* nameOf(Wrong wrong) {
    switch (wrong) {
        case Wrong::nothing:
            return "nothing";
        case Wrong::crash:
            return "crash";
        case Wrong::hang:
            return "hang";
        case Wrong::refused:
            return "refused";
        case Wrong::accepted:
            return "accepted";
        case Wrong::outside:
            return "written-outside";
        case Wrong::between:
            return "written-between-rows";
        case Wrong::input:
            return "input-written";
        case Wrong::onError:
            return "written-on-error";
        case Wrong::unwritten:
            return "unwritten";
        case Wrong::builds:
            return "builds-differ";
        case Wrong::alignment:
            return "alignment-differs";
        case Wrong::inPlace:
            return "in-place-differs";
        case Wrong::leak:
            return "leak";
        case Wrong::allocates:
            return "allocates";
        case Wrong::allocationIgnored:
            return "allocation-ignored";
        case Wrong::noContext:
            return "no-context";
        case Wrong::mode:
            return "mode-changed";
    }
    return "";
}

}  // namespace fuzz
