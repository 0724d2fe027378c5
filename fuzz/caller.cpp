// Calls through libffi.
#include "caller.h"

#include <dlfcn.h>

#include <stdexcept>

namespace fuzz {
namespace {

ffi_type* partType(const Element& element) {
    switch (element.kind) {
        case Kind::single:
            return &ffi_type_float;
        case Kind::real:
            return &ffi_type_double;
        case Kind::half:
            return &ffi_type_uint16;
        case Kind::natural:
            return element.part == 1 ? &ffi_type_uint8 : element.part == 2 ? &ffi_type_uint16 : &ffi_type_uint32;
        case Kind::integer:
            break;
    }
    switch (element.part) {
        case 1:
            return &ffi_type_sint8;
        case 2:
            return &ffi_type_sint16;
        case 4:
            return &ffi_type_sint32;
        default:
            return &ffi_type_sint64;
    }
}

// Complex numbers are structures of two.
ffi_type* typeOf(const Element& element) {
    ffi_type* part = partType(element);
    if (element.parts == 1) return part;
    struct Pair {
        ffi_type* part;
        ffi_type* elements[3];
        ffi_type type;
    };
    static std::vector<std::unique_ptr<Pair>> pairs;
    for (const auto& pair : pairs) {
        if (pair->part == part) return &pair->type;
    }
    pairs.push_back(std::make_unique<Pair>());
    Pair& pair = *pairs.back();
    pair.part = part;
    pair.elements[0] = pair.elements[1] = part;
    pair.elements[2] = nullptr;
    pair.type = {0, 0, FFI_TYPE_STRUCT, pair.elements};
    return &pair.type;
}

}  // namespace

Callers::Callers(const Table& table) {
    for (const Function& function : table.functions()) {
        auto caller = std::make_unique<Caller>();
        for (const Argument& argument : function.arguments) {
            caller->types.push_back(argument.role == Role::number ? typeOf(argument.element) : &ffi_type_pointer);
        }
        ffi_type* result = function.result == Result::status    ? &ffi_type_sint32
                           : function.result == Result::nothing ? &ffi_type_void
                                                                : &ffi_type_pointer;
        if (ffi_prep_cif(&caller->interface, FFI_DEFAULT_ABI, static_cast<unsigned>(caller->types.size()), result,
                         caller->types.data()) != FFI_OK) {
            throw std::runtime_error("cannot call " + function.name);
        }
        callers_.push_back(std::move(caller));
    }
}

int Callers::call(int function, void (*address)(), void** values, void** pointer) {
    union {
        ffi_arg status;
        void* pointer;
    } result{};
    Caller& caller = *callers_[function];
    ffi_call(&caller.interface, address, &result, values);
    if (caller.interface.rtype == &ffi_type_pointer) {
        *pointer = result.pointer;
        return 0;
    }
    return caller.interface.rtype == &ffi_type_void ? 0 : static_cast<int>(result.status);
}

Library::Library(const std::string& path, const Table& table) : path_(path) {
    void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) throw std::runtime_error(dlerror());
    for (const Function& function : table.functions()) {
        addresses_.push_back(reinterpret_cast<void (*)()>(dlsym(handle, function.name.c_str())));
    }
}

}  // namespace fuzz
