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
        const int run = longestRun();
        if (run >= longRun) {
            hangCount = hangReload;
            lengthenReload();
        }
        if (run >= shortRun) {
            shortHang = shortReload;
        } else {
            hangCount = wrapSub(hangCount, hangCount != 0);
            shortHang = wrapSub(shortHang, shortHang != 0);
        }
        return shortHang == 0 && hangCount == 0 && run < shortRun ? vornVADNonSpeech : vornVADSpeech;
    }

    // The next one of the frames that are still in the ring. Here both counters fall without a check, below zero too.
    VornVADDecision flush() {
        countFrame();
        if (ringTail == noTail) ringTail = ringHead;
        ringHead = after(ringHead);
        if (ringHead == ringTail || frameCount < firstDecided) return vornVADUndecided;
        const int run = longestRun();
        const std::int32_t hang = run >= longRun ? hangReload : hangCount;
        if (run >= longRun) lengthenReload();
        hangCount = wrapSub(hang, 1);
        shortHang = wrapSub(run >= shortRun ? shortReload : shortHang, 1);
        return shortHang < 1 && hangCount < 1 && run < shortRun ? vornVADNonSpeech : vornVADSpeech;
    }

private:
    // One place on; from the last one, or from what is no place at all, to the first.
    static std::int32_t after(std::int32_t place) {
        return static_cast<std::uint32_t>(place) < places - 1 ? place + 1 : 0;
    }

    // Of frames with speech, from the oldest one in the ring to the newest.
    int longestRun() const {
        int run = 0, longest = 0;
        std::int32_t place = ringHead;
        for (int frame = 0; frame < places; ++frame) {
            place = after(place);
            run = ring[place] != 0 ? run + 1 : 0;
            longest = std::max(longest, run);
        }
        return longest;
    }

    void lengthenReload() {
        if (frameCount < reloadChangesBefore) hangReload = nextReload;
    }
};
static_assert(sizeof(Hangover) == 32 && alignof(Hangover) == 1);

}  // namespace vorn::detection
