#include "Platform/Simulated/SimulatedMainQueue.h"

#include <algorithm>
#include <utility>

namespace vantor::simulated {
namespace {

constexpr auto kEarliestFirst = [](const auto& left, const auto& right) {
    return left.comesAfter(right);
};

}  // namespace

void SimulatedMainQueue::moveTo(double time) noexcept { now_ = std::max(now_, time); }

std::optional<double> SimulatedMainQueue::nextDue() const noexcept {
    return calls_.empty() ? std::nullopt : std::optional(calls_.front().due);
}

void SimulatedMainQueue::runDueCalls() {
    while (!calls_.empty() && calls_.front().due <= now_) {
        std::ranges::pop_heap(calls_, kEarliestFirst);
        Task task = std::move(calls_.back().task);
        calls_.pop_back();
        task();
    }
}

void SimulatedMainQueue::runUntil(double time) {
    for (auto due = nextDue(); due && *due <= time; due = nextDue()) {
        moveTo(*due);
        runDueCalls();
    }
    moveTo(time);
}

SimulatedMainQueue::CallID SimulatedMainQueue::add(double due, Task task) {
    calls_.push_back({due, ++lastID_, std::move(task)});
    std::ranges::push_heap(calls_, kEarliestFirst);
    return static_cast<CallID>(lastID_);
}

void SimulatedMainQueue::async(Task task) { add(now_, std::move(task)); }

SimulatedMainQueue::CallID SimulatedMainQueue::after(double delaySeconds, Task task) {
    const double due = delaySeconds > 0 ? (now_ + delaySeconds) + latency_ : now_;
    return add(due, std::move(task));
}

void SimulatedMainQueue::cancel(CallID call) noexcept {
    const auto cancelled = std::ranges::find(calls_, static_cast<std::uint64_t>(call), &Call::id);
    if (cancelled == calls_.end())
        return;
    std::swap(*cancelled, calls_.back());
    calls_.pop_back();
    std::ranges::make_heap(calls_, kEarliestFirst);
}

}  // namespace vantor::simulated
