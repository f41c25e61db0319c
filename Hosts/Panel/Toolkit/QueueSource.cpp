#include "Hosts/Panel/Toolkit/QueueSource.h"

#include <algorithm>
#include <exception>

namespace vantor {
namespace {

constexpr std::int64_t kNanosecondsInMicrosecond = 1000;
constexpr std::int64_t kMicrosecondsInMillisecond = 1000;
constexpr std::int64_t kLongestWait = 3'600'000;  // milliseconds

}  // namespace

struct QueueSource::Record {
    GSource source;
    QueueSource* self;
};

QueueSource::QueueSource(PanelSession& session) : session_(session) {
    static GSourceFuncs functions{prepare, check, dispatch, nullptr, nullptr, nullptr};
    source_ = g_source_new(&functions, sizeof(Record));
    reinterpret_cast<Record*>(source_)->self = this;
    g_source_set_name(source_, "vantorbar");
    g_source_set_can_recurse(source_, FALSE);
    g_source_attach(source_, nullptr);
}

QueueSource::~QueueSource() {
    g_source_destroy(source_);
    g_source_unref(source_);
}

QueueSource& QueueSource::self(GSource* source) noexcept {
    return *reinterpret_cast<Record*>(source)->self;
}

gboolean QueueSource::prepare(GSource* source, gint* timeout) noexcept {
    QueueSource& own = self(source);
    const LinuxMainQueue::Wait wait = own.session_.mainQueue().prepareToWait();
    if (!own.isSame(wait.descriptors))
        own.follow(wait.descriptors);
    const std::int64_t microseconds =
        (wait.nanoseconds + kNanosecondsInMicrosecond - 1) / kNanosecondsInMicrosecond;
    own.due_ = g_get_monotonic_time() + microseconds;
    *timeout = static_cast<gint>(std::min(
        (microseconds + kMicrosecondsInMillisecond - 1) / kMicrosecondsInMillisecond,
        kLongestWait));
    return microseconds <= 0 || own.session_.needsDisplay() ? TRUE : FALSE;
}

gboolean QueueSource::check(GSource* source) noexcept {
    const QueueSource& own = self(source);
    if (g_get_monotonic_time() >= own.due_)
        return TRUE;
    const bool isReady = std::ranges::any_of(own.descriptors_, [source](const Descriptor& one) {
        return g_source_query_unix_fd(source, one.tag) != 0;
    });
    return isReady ? TRUE : FALSE;
}

gboolean QueueSource::dispatch(GSource* source, GSourceFunc, gpointer) noexcept {
    // What runs may end the source, but not before it has returned: see `isServing`.
    QueueSource& own = self(source);
    own.isServing_ = true;
    try {
        own.session_.mainQueue().runOnce(0);
        own.session_.displayIfNeeded();
    } catch (const std::exception& error) {
        g_warning("vantorbar: %s", error.what());
    }
    own.isServing_ = false;
    return G_SOURCE_CONTINUE;
}

bool QueueSource::isSame(std::span<const pollfd> descriptors) const noexcept {
    return std::ranges::equal(descriptors, descriptors_,
                              [](const pollfd& wanted, const Descriptor& followed) {
                                  return wanted.fd == followed.number &&
                                         wanted.events == followed.events;
                              });
}

void QueueSource::follow(std::span<const pollfd> descriptors) {
    for (const Descriptor& one : descriptors_)
        g_source_remove_unix_fd(source_, one.tag);
    descriptors_.clear();
    for (const pollfd& polled : descriptors) {  // GLib's conditions are the flags of poll(2)
        const auto condition = static_cast<GIOCondition>(polled.events);
        descriptors_.push_back(
            {polled.fd, polled.events, g_source_add_unix_fd(source_, polled.fd, condition)});
    }
}

}  // namespace vantor
