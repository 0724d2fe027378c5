// From the flags of the frames to decisions: a ring of the last frames' bits, and two counters that hold on to speech
// for a while behind it. The same for every family.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

#include "frame/wrap.h"
#include "vornsr/aurora.h"

namespace vorn::detection {

// The fields that a caller's record ends with. It may start at any address: packed, they are read and written as such.
struct __attribute__((packed)) Hangover {
    static constexpr int places = 7;
    static constexpr int firstDecided = 11;  // frames before it only measure
    static constexpr int shortRun = 3, longRun = 4, shortReload = 5;
    // A long run before frame 36 loads the first reload and sets the second for those that follow.
    static constexpr int firstReload = 23, nextReload = 40, reloadChangesBefore = 36;
    static constexpr int noTail = -1;

    std::int32_t ringHead = 0, ringTail = noTail;
    std::int32_t hangReload = firstReload, hangCount = 0, shortHang = 0;
    std::uint8_t ring[places] = {}, unused = 0;
    std::int32_t frameCount = 0;

    // Frames are counted before they are used. The count stays at its end: nothing tells later frames apart.
    void countFrame() {
        if (frameCount < std::numeric_limits<std::int32_t>::max()) ++frameCount;
    }

    // The decision on a frame, which has been counted.
    VornVADDecision decide(bool speech) {
        if (frameCount < firstDecided) return vornVADUndecided;
        ringHead = after(ringHead);
        ring[ringHead] = speech;
        const bool isShort = hasRun(shortRun);
        if (hasRun(longRun)) {
            hangCount = hangReload;
            lengthenReload();
        }
        if (isShort) {
            shortHang = shortReload;
        } else {
            hangCount = wrapSub(hangCount, hangCount != 0);
            shortHang = wrapSub(shortHang, shortHang != 0);
        }
        return shortHang == 0 && hangCount == 0 && !isShort ? vornVADNonSpeech : vornVADSpeech;
    }

    // The next one of the frames that are still in the ring. Here both counters fall without a check, below zero too.
    VornVADDecision flush() {
        countFrame();
        if (ringTail == noTail) ringTail = ringHead;
        ringHead = after(ringHead);
        if (ringHead == ringTail || frameCount < firstDecided) return vornVADUndecided;
        const bool isShort = hasRun(shortRun), isLong = hasRun(longRun);
        hangCount = wrapSub(isLong ? hangReload : hangCount, 1);
        if (isLong) lengthenReload();
        shortHang = wrapSub(isShort ? shortReload : shortHang, 1);
        return shortHang < 1 && hangCount < 1 && !isShort ? vornVADNonSpeech : vornVADSpeech;
    }

private:
    // One place on; from the last one, or from what is no place at all, to the first.
    static std::int32_t after(std::int32_t place) {
        return static_cast<std::uint32_t>(place) < places - 1 ? place + 1 : 0;
    }

    // Whether so many frames in a row have speech. Bit 0 is that of the oldest one in the ring, which stands behind the
    // newest.
    bool hasRun(int length) const {
        unsigned inPlace = 0;
        for (int place = 0; place < places; ++place) inPlace |= static_cast<unsigned>(ring[place] != 0) << place;
        const unsigned frames = (inPlace >> after(ringHead) | inPlace << (places - after(ringHead))) & 0x7Fu;
        unsigned runs = frames;
        for (int further = 1; further < length; ++further) runs &= frames >> further;
        return runs != 0;
    }

    void lengthenReload() {
        if (frameCount < reloadChangesBefore) hangReload = nextReload;
    }
};
static_assert(sizeof(Hangover) == 32 && alignof(Hangover) == 1);

}  // namespace vorn::detection
