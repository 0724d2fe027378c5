// Time warping: how far two recordings are from each other when their frames may pass at different speeds.
#pragma once

#include <vector>

#include "frames.h"

namespace digits {

// The roads that are looked at. A frame of the longer recording goes with one of the shorter; from frame to frame the
// road moves on by none, one or two. The band lets it stray from the diagonal, and the beam drops what is dearer than
// the best so far by more than that.
inline constexpr int kWarpBand = 8;          // frames
inline constexpr int kWarpWidth = kStatic;   // features that count: more of them were no better, and take longer
inline constexpr Vorn32f kWarpBeam = 15.0f;  // of cost

// Frames that warping compares: rows of kRowStep elements, each feature in units of its spread.
struct Sequence {
    std::vector<Vorn32f> rows;
    int height = 0;

    const Vorn32f* row(int t) const { return rows.data() + static_cast<std::ptrdiff_t>(t) * kRowStep; }
};

// Brings features to mean 0 and deviation 1, as they are in the frames that it is made from.
class Spread {
public:
    explicit Spread(const Frames& frames);

    Sequence operator()(const Analysis& recording) const;

private:
    std::vector<Vorn32f> mean_, scale_;
};

// What it costs when no road leads from beginning to end, because one recording is far too long for the other.
extern const Vorn32f kNoRoad;

// The distance of a frame from its partner along the best road, on average; or kNoRoad.
//
// H. Sakoe, S. Chiba, "Dynamic programming algorithm optimization for spoken word recognition", 1978.
Vorn32f warpedDistance(const Sequence& first, const Sequence& second);

// What passes inside of warpedDistance(), for a picture.
struct WarpTrace {
    // A row for each frame of the longer recording: columns from begin up to end.
    struct Range {
        int begin, end;
        bool holds(int column) const { return begin <= column && column < end; }
    };

    bool firstIsLonger = true;
    int height = 0, width = 0;      // frames of the longer and of the shorter recording
    std::vector<Vorn32f> distance;  // of each frame from each
    std::vector<Range> band, beam;  // where roads may go, and where the beam has left some
    std::vector<int> road;          // the best one's column in each row; none if there is no road
    Vorn32f cost = 0.0f;            // its distance a frame

    Vorn32f at(int row, int column) const { return distance[static_cast<std::size_t>(row) * width + column]; }
};

WarpTrace traceWarping(const Sequence& first, const Sequence& second);

}  // namespace digits
