#pragma once

#include <cstdint>
#include <vector>

#include <glib.h>

#include "Hosts/Panel/PanelSession.h"

namespace vantor {

/// Has GLib's default main loop serve a session, in a program whose loop that is: its main queue,
/// and what is to be displayed before the loop sleeps.
/// Thread: the one of that loop.
class QueueSource {
public:
    /// The session outlives it.
    explicit QueueSource(PanelSession& session);
    ~QueueSource();
    QueueSource(const QueueSource&) = delete;
    QueueSource& operator=(const QueueSource&) = delete;

    /// Whether the loop is serving the queue right now.
    bool isServing() const noexcept { return isServing_; }

private:
    struct Record;
    struct Descriptor {
        int number;
        short events;
        gpointer tag;
    };

    static gboolean prepare(GSource* source, gint* timeout) noexcept;
    static gboolean check(GSource* source) noexcept;
    static gboolean dispatch(GSource* source, GSourceFunc, gpointer) noexcept;
    static QueueSource& self(GSource* source) noexcept;
    void follow(std::span<const pollfd> descriptors);
    bool isSame(std::span<const pollfd> descriptors) const noexcept;

    PanelSession& session_;
    GSource* source_;
    std::vector<Descriptor> descriptors_;
    std::int64_t due_ = 0;  // microseconds of GLib's clock
    bool isServing_ = false;
};

}  // namespace vantor
