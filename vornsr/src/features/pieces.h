// The memory of contexts: a record and the pieces that it points to, in one block of the caller's or each in a block of
// the library's own. One routine makes a context from either source.
#pragma once

#include <cstdint>
#include <cstring>

#include "frame/align.h"
#include "frame/memory.h"

namespace vorn::context {

// Both sources hand out pieces on 32-byte addresses. A piece that cannot be had is null.

// A caller's block, which has room for all pieces of the reported size.
class BlockPieces {
public:
    explicit BlockPieces(char* first) : next_(first) {}

    template <class T>
    T* take(std::int64_t len) {
        char* piece = alignedUp(next_, 32);
        next_ = piece + len * static_cast<std::int64_t>(sizeof(T));
        return reinterpret_cast<T*>(piece);
    }

private:
    char* next_;
};

// Blocks of the library's own, one a piece: who releases the context knows them by its record.
class AllocatedPieces {
public:
    template <class T>
    T* take(std::int64_t len) {
        return Scratch<T>(len).release();
    }
};

// The record of a context. A caller's block may begin at any address, so it is copied byte by byte.
template <class Record>
inline Record recordAt(const Record* context) {
    Record record;
    std::memcpy(&record, static_cast<const void*>(context), sizeof record);
    return record;
}
template <class Record>
inline void putRecord(Record* context, const Record& record) {
    std::memcpy(static_cast<void*>(context), &record, sizeof record);
}

}  // namespace vorn::context
