#include "plain.h"

#include <memory>
#include <utility>

namespace digits {

Utterance utteranceOf(Analysis analysis, const Mixed& mixed) {
    return {std::move(analysis), frameAt(mixed.begin), frameAt(mixed.end)};
}

FrontEndCall plainFrontEnd() {
    return [frontEnd = std::make_shared<FrontEnd>()](const Mixed& mixed) {
        return utteranceOf(frontEnd->analyse(mixed.samples), mixed);
    };
}

}  // namespace digits
