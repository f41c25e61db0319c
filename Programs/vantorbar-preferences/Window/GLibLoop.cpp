#include "Programs/vantorbar-preferences/Window/GLibLoop.h"

#include <algorithm>
#include <exception>

#include <poll.h>

namespace vantor {
namespace {

constexpr const char* kSelf = "vantor-loop";

bool isSame(const GPollFD& left, const GPollFD& right) noexcept {
    return left.fd == right.fd && left.events == right.events;
}

/// Its entries are laid out, and its flags are, as poll(2) has them.
gint pollNow(GPollFD* descriptors, guint count) noexcept { return g_poll(descriptors, count, 0); }

}  // namespace

GLibLoop::GLibLoop(GApplication* application, LinuxMainQueue& queue)
    : application_(application), queue_(queue) {
    g_object_set_data(G_OBJECT(application_), kSelf, this);
    g_main_context_set_poll_func(nullptr, sleep);
}

GLibLoop::~GLibLoop() {
    g_main_context_set_poll_func(nullptr, nullptr);
    g_object_set_data(G_OBJECT(application_), kSelf, nullptr);
}

gint GLibLoop::sleep(GPollFD* descriptors, guint count, gint milliseconds) noexcept {
    auto* const application = g_application_get_default();
    auto* const self = static_cast<GLibLoop*>(g_object_get_data(G_OBJECT(application), kSelf));
    try {
        const bool isReady = milliseconds == 0 || pollNow(descriptors, count) > 0;
        if (!isReady)
            self->watch(descriptors, count);
        const double longest = milliseconds < 0 ? LinuxMainQueue::kForever : milliseconds / 1000.0;
        self->queue_.runOnce(isReady ? 0 : longest);
    } catch (const std::exception& error) {
        g_warning("%s", error.what());
    }
    return pollNow(descriptors, count);
}

void GLibLoop::watch(const GPollFD* descriptors, guint count) {
    if (std::equal(descriptors, descriptors + count, watched_.begin(), watched_.end(), isSame))
        return;
    watches_.clear();
    watched_.assign(descriptors, descriptors + count);
    for (const GPollFD& polled : watched_)
        watches_.push_back(
            queue_.watch(polled.fd, static_cast<short>(polled.events), [](short) {}));
}

}  // namespace vantor
