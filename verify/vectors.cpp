#include "vectors.h"

#include <map>

namespace verify {

void callOnce(Digest& digest, const calls::Function& function, int len, int extra, const Draw& draw) {
    std::map<Role, Array> arrays;
    calls::Arguments arguments;
    const auto add = [&](Role role, Array array) {
        arguments[role] = arrays.emplace(role, std::move(array)).first->second.data();
    };
    for (Role role : {Role::src1, Role::src2, Role::srcDst, Role::val}) {
        if (function.has(role)) add(role, draw(role, function.element(role)));
    }
    const auto n = static_cast<std::size_t>(len);
    for (Role role : {Role::dst, Role::result, Role::result2, Role::index}) {
        if (function.has(role)) add(role, Array(function.element(role), calls::isOneElement(role) ? 1 : n));
    }
    arguments[Role::len] = len;
    arguments[Role::scaleFactor] = arguments[Role::hint] = extra;
    digest.add(function(arguments));
    for (const auto& [role, array] : arrays) {
        if (calls::isWritten(role)) digest.add(array);
    }
}

Workload onVectors(const calls::Function& function, double low, double high) {
    const std::vector<int> extras = function.has(Role::scaleFactor) ? std::vector{0, 1, 9, 31, -3, -40}
                                    : function.has(Role::hint)      ? std::vector{0, 1, 2}
                                                                    : std::vector{0};
    return {function.name(), [=](Source& source, Digest& digest) {
                for (int extra : extras) {
                    for (int len : lengths) {
                        const auto n = static_cast<std::size_t>(len);
                        callOnce(digest, function, len, extra,
                                 [&](Role, Element element) { return source.values(element, n, low, high); });
                        callOnce(digest, function, len, extra,
                                 [&](Role, Element element) { return source.patterns(element, n); });
                    }
                }
            }};
}

}  // namespace verify
