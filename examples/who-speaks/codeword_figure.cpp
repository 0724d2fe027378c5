// Densities as colours, codewords as points.
#include "codeword_figure.h"

#include <algorithm>
#include <cmath>

#include "panels.h"
#include "picture.h"
#include "svg.h"

namespace digits {
namespace {

constexpr int kColumns = 3, kAcross = 52, kUp = 39;  // panels side by side; cells of a panel
constexpr double kPanelWidth = 296, kPanelHeight = 222, kGap = 24, kTop = 40, kLeft = 12;

// The ends between which 99 of 100 places lie, with some room.
Axis axisOf(std::vector<double> places) {
    std::sort(places.begin(), places.end());
    const double low = places[places.size() / 200], high = places[places.size() - 1 - places.size() / 200];
    const double room = std::max(0.06 * (high - low), 1e-3);
    return {low - room, high + room, 0.0, 1.0};
}

class Density {
public:
    Density(const Axis& across, const Axis& up) : across_(across), up_(up), count_(kAcross * kUp, 0) {}

    void add(const std::array<double, 2>& place) {
        const double x = across_(place[0]) * kAcross, y = up_(place[1]) * kUp;
        if (x < 0 || y < 0 || x >= kAcross || y >= kUp) return;
        most_ = std::max(most_, ++count_[static_cast<std::size_t>(y) * kAcross + static_cast<std::size_t>(x)]);
    }

    // Roots make the thin parts visible.
    double at(int x, int y) const {
        return std::sqrt(static_cast<double>(count_[static_cast<std::size_t>(y) * kAcross + x]) / most_);
    }

private:
    const Axis &across_, &up_;
    std::vector<int> count_;
    int most_ = 1;
};

}  // namespace

std::optional<Plane> planeOfFrames(const Run& run) {
    std::vector<Vorn32f> rows;
    for (const Outcome& outcome : run.outcomes) {
        for (int t = 0; t < outcome.frames(); ++t) {
            const Vorn32f* const row = outcome.analysis.row(t);
            rows.insert(rows.end(), row, row + kVoiceFeatures);
        }
    }
    return principalPlane(std::move(rows), kVoiceFeatures);
}

std::string codewordFigure(const Run& run, const Plane& plane) {
    std::vector<double> places[2];
    for (const auto& place : plane.places) {
        for (int i = 0; i < 2; ++i) places[i].push_back(place[i]);
    }
    const Axis across = axisOf(std::move(places[0])), up = axisOf(std::move(places[1]));
    std::vector<Density> densities(run.speakers.size(), Density(across, up));
    std::vector<int> frames(run.speakers.size(), 0);
    std::size_t row = 0;
    for (const Outcome& outcome : run.outcomes) {
        for (int t = 0; t < outcome.frames(); ++t, ++row) {
            if (outcome.spoken) densities[*outcome.spoken].add(plane.places[row]);
        }
        if (outcome.spoken) frames[*outcome.spoken] += outcome.frames();
    }

    Sheet sheet(kSheetWidth, "Codewords over the frames of each speaker, in two dimensions");
    double bottom = 0;
    for (std::size_t i = 0; i < run.speakers.size(); ++i) {
        const Speaker& speaker = run.speakers[i];
        const double left = kLeft + static_cast<double>(i % kColumns) * (kPanelWidth + kGap);
        const double top = kTop + static_cast<double>(i / kColumns) * (kPanelHeight + kGap + 20);
        bottom = top + kPanelHeight;
        sheet.text(left, top - 8, speaker.name, "title");
        sheet.text(left + kPanelWidth, top - 8, format("%d frames, %d codewords", frames[i], speaker.codebook.size()),
                   "label", "end");
        const auto pixel = [&](int x, int y) { return heat(densities[i].at(x, kUp - 1 - y)); };
        sheet.picture(left, top, kPanelWidth, kPanelHeight, pngAddress(kAcross, kUp, pixel), "cells");
        const std::vector<Vorn32f> words = speaker.codebook.words();
        for (std::size_t at = 0; at < words.size(); at += kVoiceFeatures) {
            const auto place = plane.place(words.data() + at);
            const double x = across(place[0]), y = up(place[1]);
            if (x < 0 || x > 1 || y < 0 || y > 1) continue;
            sheet.box(left + x * kPanelWidth - 2.5, top + (1 - y) * kPanelHeight - 2.5, 5, 5, "codeword");
        }
        sheet.box(left, top, kPanelWidth, kPanelHeight, "frame");
    }
    sheet.text(kLeft, bottom + 20,
               format("to the right: first component, %.0f %% of the variance; upward: second component, %.0f %%",
                      100.0 * plane.shares[0], 100.0 * plane.shares[1]),
               "label");
    return sheet.finish(bottom + 26);
}

}  // namespace digits
