#pragma once

#include <vector>

#include <gtk/gtk.h>

#include "Platform/Linux/LinuxMainQueue.h"

namespace vantor {

/// Has GLib's loop sleep in the main queue, so that one sleep waits for both, also while a dialog
/// or a drag runs a loop of its own.
/// Thread: the one that made it, which is the main queue's and serves GLib's default context.
class GLibLoop {
public:
    /// `application` is the process's default one, and carries the loop to GLib, which takes no
    /// data beside its function. The queue outlives it.
    GLibLoop(GApplication* application, LinuxMainQueue& queue);
    ~GLibLoop();
    GLibLoop(const GLibLoop&) = delete;
    GLibLoop& operator=(const GLibLoop&) = delete;

private:
    static gint sleep(GPollFD* descriptors, guint count, gint milliseconds) noexcept;
    void watch(const GPollFD* descriptors, guint count);

    GApplication* application_;
    LinuxMainQueue& queue_;
    std::vector<GPollFD> watched_;
    std::vector<LinuxMainQueue::Watch> watches_;
};

}  // namespace vantor
