#include "Hosts/Gtk/BarLoop.h"

#include <algorithm>
#include <utility>

namespace vantor {
namespace {

/// An item that changes its length each time it is painted mustn't be painted for ever.
constexpr int kMostPaintsAtOnce = 4;

bool isSame(const pollfd& left, const pollfd& right) noexcept {
    return left.fd == right.fd && left.events == right.events;
}

}  // namespace

void BarLoop::serve() {
    BarWait wait;
    for (int round = 0; round < kMostPaintsAtOnce; ++round) {
        display();
        wait = toolkit_.serve();
        if (!host_.needsDisplay())
            break;
    }
    waitFor(wait);
    if (toolkit_.isLost())
        queue_.stop();
}

/// Until the item has the length that it paints: nobody sees it cut off.
void BarLoop::display() {
    for (int paint = 0; host_.needsDisplay() && paint < kMostPaintsAtOnce; ++paint)
        host_.displayIfNeeded();
}

void BarLoop::waitFor(const BarWait& wait) {
    if (!std::ranges::equal(wait.descriptors, watched_, isSame))
        watch(wait.descriptors);
    cancelCall();
    if (wait.milliseconds < 0)
        return;
    // What the call is for happens after the batch that it is part of.
    call_ = queue_.after(wait.milliseconds / 1000.0, [this] { isCallDue_ = false; });
    isCallDue_ = true;
}

void BarLoop::watch(std::span<const pollfd> descriptors) {
    watches_.clear();
    watched_.assign(descriptors.begin(), descriptors.end());
    for (const pollfd& polled : watched_)
        watches_.push_back(queue_.watch(polled.fd, polled.events, [](short) {}));
}

void BarLoop::cancelCall() noexcept {
    if (std::exchange(isCallDue_, false))
        queue_.cancel(call_);
}

}  // namespace vantor
