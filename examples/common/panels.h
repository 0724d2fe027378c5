// Panels under one another that share a time axis, and what several of the pictures draw on them.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "front_end.h"
#include "picture.h"
#include "svg.h"

namespace digits {

inline constexpr double kSheetWidth = 960, kPlotLeft = 84, kPlotRight = 866;  // the sheet, and the plots on it
inline constexpr double kStepMs = 1000.0 * kFrameStep / kSampleRate;
inline constexpr double kFrameMs = 1000.0 * kFrameLength / kSampleRate;

// A frame is drawn as one step around its middle.
inline double frameStart(int frame) { return frame * kStepMs + 0.5 * (kFrameMs - kStepMs); }
inline double frameMiddle(int frame) { return frame * kStepMs + 0.5 * kFrameMs; }

// With a true minus sign.
std::string number(double value);

double decibels(double magnitude);

// How a matrix is painted: its colours, the value where they begin, and the look of its cells.
struct Paint {
    Colour (*colour)(double);
    double begin;
    const char* style;
};

inline constexpr Paint kHeat{heat, 0.0, "smooth"}, kBalance{balance, -1.0, "cells"};

class Panels {
public:
    Panels(const std::string& title, std::size_t samples, int frames);

    Sheet& sheet() { return sheet_; }
    const Axis& time() const { return time_; }
    int frames() const { return frames_; }

    // An upright line through all panels, where the frame begins.
    void mark(int frame) { borders_.push_back(frameStart(frame)); }

    // Begins a panel of the given height under the last one and returns its top.
    double begin(double height, const std::string& title, const std::string& note = {});
    double bottom() const { return bottom_; }

    void frame();
    void ticksLeft(const Axis& axis, const std::vector<double>& values, const std::string& prefix,
                   const std::string& unit);

    // A matrix as a picture, row 0 at the bottom, with a bar that tells its colours.
    void matrix(int rows, const std::function<double(int row, int frame)>& value, const Paint& paint, double low,
                double high, const std::string& lowText, const std::string& highText);

    // The time axis under the last panel.
    std::string finish();

private:
    Sheet sheet_;
    Axis time_;
    int frames_;
    std::vector<double> borders_;
    double top_ = 0, bottom_ = -6;
};

// A panel; returns its axis of kilohertz.
Axis drawSpectrogram(Panels& panels, const Analysis& analysis, double height, const std::string& title,
                     const std::string& note);

// Names with a piece of each one's line, up to the right.
void drawKey(Sheet& sheet, double right, double y, const std::vector<std::string>& names, const char* const* keys);

// The size that all but one in fifty stay within: colours end there. Never 0.
double usualSize(std::vector<double> sizes);

}  // namespace digits
