// Words in the order of their distances.
#pragma once

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "simd/simd.h"
#include "vq/codebook/tolerance.h"
#include "vq/search/distances.h"

namespace vorn::vq {

// The words that are next in the plain order of their distances, equal ones in rising index: at first about as many as
// are expected to be asked for, then always twice as many, as long as they fit.
class NearestKeys {
public:
    explicit NearestKeys(int expected) : wanted_(std::clamp(expected, 16, most)) {}

    // A distance that is not negative, and its index: ordered as the pairs are.
    using Key = std::uint64_t;
    static Key keyOf(Vorn32f distance, int index) {
        return Key{std::bit_cast<std::uint32_t>(distance)} << 32 | static_cast<std::uint32_t>(index);
    }
    static int indexOf(Key key) { return static_cast<int>(key & 0xFFFFFFFFu); }
    static Vorn32f distanceOf(Key key) { return std::bit_cast<Vorn32f>(static_cast<std::uint32_t>(key >> 32)); }

    // All keys of distances from `least` on, up to the farthest that counts, or the first of them.
    void collect(const Vorn32f* distance, int count, Vorn32f least) {
        size_ = 0;
        isAll_ = true;
        Vorn32f greatest = farthest;
        const auto take = [&](int j) {
            const Vorn32f d = distance[j];
            if (d >= least && d <= greatest) key_[size_++] = keyOf(d, j);
        };
        const auto keepWanted = [&] {
            if (size_ <= wanted_) return;
            std::nth_element(key_, key_ + wanted_, key_ + size_);
            size_ = wanted_;
            isAll_ = false;
            greatest = distanceOf(*std::max_element(key_, key_ + size_));
        };
        constexpr int block = f32xN::lanes;
        int j = 0;
        for (; j + block <= count; j += block) {
            const f32xN d = load<f32xN>(distance + j);
            if (!any((d >= splat<f32xN>(least)) & (d <= splat<f32xN>(greatest)))) continue;
            for (int k = 0; k < block; ++k) take(j + k);
            if (size_ + block > 2 * wanted_) keepWanted();
        }
        for (; j < count; ++j) take(j);
        keepWanted();
        std::sort(key_, key_ + size_);
        wanted_ = std::min(2 * wanted_, most);
    }

    int size() const { return size_; }
    bool isAll() const { return isAll_; }  // nothing that was asked for is missing
    Key operator[](int i) const { return key_[i]; }

private:
    static constexpr int most = 1024;
    int wanted_;
    int size_ = 0;
    bool isAll_ = false;
    Key key_[2 * most];
};

// Hands out the indices of distances rank by rank, ascending; those of near-equal distances in rising order, none
// twice. The distances keep still meanwhile.
class Ranking {
public:
    Ranking(const Vorn32f* distance, int count, int expectedRanks)
        : distance_(distance), count_(count), keys_(expectedRanks + 8) {}

    // Index -1 where no distance qualifies any more. An infinite one never does.
    Found next() {
        constexpr int ranksByScan = 1;  // so few are found sooner than sorted
        last_ = rank_++ >= ranksByScan && fromKeys() ? found_ : byScan();
        return last_;
    }

private:
    // The rules, over all distances.
    Found byScan() const {
        Found found;
        for (int j = 0; j < count_; ++j) {
            j = nextToLookAt(j, found.distance);
            if (j == count_) break;
            const Vorn32f d = distance_[j];
            if (!(d <= farthest)) continue;
            if (isBelow(d, found.distance) && isBelow(last_.distance, d)) found = {j, d};
            if (j > last_.index && nearLast(d)) {
                found = {j, last_.distance};
                break;  // nothing is below it that was not handed out
            }
        }
        return found;
    }

    // The same from the sorted keys, of which only those near the last distance and those that tolerance may mistake
    // for the smallest one beyond it count. False where these are too many or not all there.
    bool fromKeys() {
        if (!isSorted_) refill();
        if (answer()) return true;
        if (keys_.isAll()) return false;
        refill();
        return answer();
    }

    void refill() {
        // Below this none is near the last distance.
        keys_.collect(distance_, count_, last_.distance * (1 - 2e-06f));
        isSorted_ = true;
        first_ = 0;
    }

    bool answer() {
        constexpr int most = 32;
        const int size = keys_.size();
        if (first_ + 2 < size && keys_[first_] == NearestKeys::keyOf(last_.distance, last_.index)) {
            const Vorn32f after = NearestKeys::distanceOf(keys_[first_ + 1]);
            if (isBelow(last_.distance, after) && !nearLast(after) &&
                isBelow(after, NearestKeys::distanceOf(keys_[first_ + 2]))) {
                found_ = {NearestKeys::indexOf(keys_[++first_]), after};  // all of them clearly apart
                return true;
            }
        }
        int end = first_;
        const auto distanceAt = [&](int i) { return NearestKeys::distanceOf(keys_[i]); };
        // Distances only rise: what is below for this rank is below for all further ones.
        while (first_ < size && distanceAt(first_) < last_.distance && !nearLast(distanceAt(first_))) ++first_;
        end = first_;
        int next = count_;
        for (; end < size && (distanceAt(end) <= last_.distance || nearLast(distanceAt(end))); ++end) {
            if (end - first_ >= most) return false;
            const int index = NearestKeys::indexOf(keys_[end]);
            if (index > last_.index) next = std::min(next, index);
        }
        if (end == size && !keys_.isAll()) return false;
        if (next < count_) {
            found_ = {next, last_.distance};
            return true;
        }
        while (end < size && !isBelow(last_.distance, distanceAt(end))) ++end;
        // A distance that is clearly above its forerunner cannot stand in the way of any before it.
        int members[most], count = 0;
        for (int i = end; i < size; ++i) {
            if (i > end && isBelow(distanceAt(i - 1), distanceAt(i))) break;
            if (count == most || (i + 1 == size && !keys_.isAll())) return false;
            const int index = NearestKeys::indexOf(keys_[i]);
            int k = count++;
            for (; k > 0 && members[k - 1] > index; --k) members[k] = members[k - 1];
            members[k] = index;
        }
        if (count == 0 && !keys_.isAll()) return false;
        found_ = {};
        for (int k = 0; k < count; ++k) found_.meet(members[k], distance_[members[k]]);
        return true;
    }

    // A narrower tolerance than that between clusters.
    bool nearLast(Vorn32f d) const {
        const Vorn64f difference = static_cast<Vorn64f>(d) - last_.distance;
        return std::fabs(difference) <=
               1e-06 * std::fabs(static_cast<Vorn64f>(d > last_.distance ? d : last_.distance));
    }

    // From j on, the first distance that may be taken: every one that the rules take is below the best or about as
    // large as the last one.
    int nextToLookAt(int j, Vorn32f best) const {
        const f32xN bests = splat<f32xN>(best), last = splat<f32xN>(last_.distance);
        for (; j + f32xN::lanes <= count_; j += f32xN::lanes) {
            const f32xN d = load<f32xN>(distance_ + j);
            const auto near = absOf(d - last) <= maxOf(d, last) * splat<f32xN>(2e-06f);
            if (any(((d < bests) & (d >= last)) | near)) break;
        }
        return j;
    }

    const Vorn32f* distance_;
    int count_;
    int rank_ = 0;
    Found last_ = {-1, 0.0f};
    Found found_;
    NearestKeys keys_;
    bool isSorted_ = false;
    int first_ = 0;
};

}  // namespace vorn::vq
