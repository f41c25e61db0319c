#include "Platform/Linux/NVMLReadings.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include <pthread.h>

#include "Platform/Linux/NVMLLibrary.h"

namespace vantor {

using Time = std::chrono::steady_clock;

/// What the thread and the main queue share. The thread may outlive the readings: it is let go
/// when it hangs inside the library.
struct NVMLReadings::State {
    struct Answer {
        std::string address;
        std::optional<GPUFigures> figures;
        Time::time_point at;
    };

    std::string file;  // the thread's own, once it runs, as is the next
    std::unique_ptr<NVMLLibrary> library;

    std::mutex mutex;  // guards all that follows
    std::condition_variable changed;
    std::vector<Answer> answers;
    bool isAsked = false, isBusy = false, reads = false, ends = false;
    bool runs = false, isMissing = false, isHeld = false;
    Hold hold = Hold::kept;
    Time::time_point triesAgain{};

    void work();
    void serve(std::unique_lock<std::mutex>& lock);
    void readAll();
};

namespace {

void nameThread() noexcept {
    pthread_setname_np(pthread_self(), "vantor-nvml");  // a thread without a name works as well
}

}  // namespace

void NVMLReadings::State::work() {
    nameThread();
    library = NVMLLibrary::open(file);
    std::unique_lock lock(mutex);
    isMissing = library == nullptr;
    while (!isMissing && !ends) {
        changed.wait(lock, [this] { return isAsked || ends; });
        if (isAsked && !ends)
            serve(lock);
    }
    isBusy = true;
    lock.unlock();
    library.reset();
    lock.lock();
    isBusy = false;
    runs = false;
    changed.notify_all();
}

/// One request, without the lock while the library is in charge.
void NVMLReadings::State::serve(std::unique_lock<std::mutex>& lock) {
    const bool wantsReading = reads && Time::now() >= triesAgain;
    const Hold wanted = hold;
    isAsked = false;
    isBusy = true;
    lock.unlock();
    const bool begun = wantsReading && library->begin();
    if (begun)
        readAll();
    if (wanted == Hold::letGo)
        library->end();
    lock.lock();
    isHeld = wanted == Hold::kept && (begun || isHeld);
    if (wantsReading && !begun)
        triesAgain = Time::now() + kRetryAfter;
    isBusy = false;
}

void NVMLReadings::State::readAll() {
    // The addresses stay as they are, so that they can be read without the lock.
    for (Answer& answer : answers) {
        const auto figures = library->read(answer.address.c_str());
        const std::scoped_lock lock(mutex);
        answer.figures = figures;
        answer.at = Time::now();
    }
}

NVMLReadings::NVMLReadings(std::vector<std::string> addresses, std::string library)
    : state_(std::make_shared<State>()) {
    state_->file = std::move(library);
    for (std::string& address : addresses)
        state_->answers.push_back({std::move(address), std::nullopt, {}});
}

NVMLReadings::~NVMLReadings() { askToEnd(); }

void NVMLReadings::askToEnd() {
    const std::scoped_lock lock(state_->mutex);
    state_->ends = true;
    state_->changed.notify_all();
}

void NVMLReadings::end() {
    askToEnd();
    std::unique_lock lock(state_->mutex);
    state_->changed.wait_for(lock, kPatience, [this] { return !state_->runs; });
}

void NVMLReadings::request(Hold hold) { ask(true, hold); }

void NVMLReadings::letGo() {
    {
        const std::scoped_lock lock(state_->mutex);
        if (!state_->isHeld)
            return;
    }
    ask(false, Hold::letGo);
}

void NVMLReadings::ask(bool reads, Hold hold) {
    const std::scoped_lock lock(state_->mutex);
    if (state_->isBusy || state_->isMissing)
        return;
    state_->isAsked = true;
    state_->reads = reads;
    state_->hold = hold;
    if (!state_->runs)
        startThread();
    state_->changed.notify_all();
}

/// With the lock held. Where the system has no thread left, there are no readings.
void NVMLReadings::startThread() noexcept {
    try {
        std::thread([state = state_] { state->work(); }).detach();
        state_->runs = true;
    } catch (const std::system_error&) {
        state_->isMissing = true;
    }
}

std::optional<GPUFigures> NVMLReadings::answer(const std::string& address) const {
    const std::scoped_lock lock(state_->mutex);
    const auto found = std::ranges::find(state_->answers, address, &State::Answer::address);
    if (found == state_->answers.end() || Time::now() - found->at > kStaleAfter)
        return std::nullopt;
    return found->figures;
}

}  // namespace vantor
