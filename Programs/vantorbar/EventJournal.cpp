#include "Programs/vantorbar/EventJournal.h"

#include <cerrno>
#include <cmath>
#include <iterator>
#include <system_error>
#include <utility>

#include <fmt/format.h>

namespace vantor {
namespace {

constexpr std::size_t kBufferBytes = 1 << 16;

bool needsEscape(char character) noexcept {
    return static_cast<unsigned char>(character) < 0x20 || character == '"' || character == '\\';
}

/// A JSON text. Bytes past ASCII go through as they are.
void appendJSONText(std::string& out, std::string_view text) {
    out += '"';
    for (const char character : text) {
        if (!needsEscape(character))
            out += character;
        else if (character == '"' || character == '\\')
            (out += '\\') += character;
        else if (character == '\n')
            out += "\\n";
        else
            fmt::format_to(std::back_inserter(out), "\\u{:04x}", static_cast<int>(character));
    }
    out += '"';
}

void appendJSONNumber(std::string& out, double value) {
    if (std::isfinite(value))
        fmt::format_to(std::back_inserter(out), "{}", value);
    else
        out += "null";
}

/// Integers, texts and arrays, which is what the daemon is sent; anything else is a number.
void appendJSON(std::string& out, const PropertyValue& value) {
    if (const auto* const text = value.text())
        return appendJSONText(out, *text);
    if (const auto* const integer = value.as<std::int64_t>()) {
        fmt::format_to(std::back_inserter(out), "{}", *integer);
        return;
    }
    const auto* const array = value.array();
    if (array == nullptr)
        return appendJSONNumber(out, value.doubleValue());
    const char* separator = "[";
    for (const PropertyValue& element : *array) {
        out += std::exchange(separator, ",");
        appendJSON(out, element);
    }
    out += array->empty() ? "[]" : "]";
}

}  // namespace

EventJournal::EventJournal(const std::filesystem::path& file)
    : file_(std::fopen(file.c_str(), "wbe")) {
    if (!file_)
        throw std::system_error(errno, std::generic_category(), file.string());
    buffer_.reserve(kBufferBytes + 4096);
}

void EventJournal::attach(const Clock& clock, const simulated::SimulatedMainQueue& queue,
                          double start) {
    clock_ = &clock;
    queue_ = &queue;
    start_ = start;
}

void EventJournal::begin(std::string_view kind) {
    const double time = clock_->now(), at = queue_->now() - start_;
    if (time != prefixTime_ || at != prefixAt_) {  // most instants have several lines
        prefix_ = "{\"time\":";
        appendJSONNumber(prefix_, prefixTime_ = time);
        prefix_ += ",\"at\":";
        appendJSONNumber(prefix_, prefixAt_ = at);
        prefix_ += ",\"kind\":\"";
    }
    ((buffer_ += prefix_) += kind) += '"';
}

void EventJournal::text(std::string_view key, std::string_view value) {
    ((buffer_ += ",\"") += key) += "\":";
    appendJSONText(buffer_, value);
}

void EventJournal::number(std::string_view key, double value) {
    ((buffer_ += ",\"") += key) += "\":";
    appendJSONNumber(buffer_, value);
}

void EventJournal::end() {
    buffer_ += "}\n";
    if (buffer_.size() >= kBufferBytes)
        flush();
}

void EventJournal::flush() {
    if (std::fwrite(buffer_.data(), 1, buffer_.size(), file_.get()) != buffer_.size() &&
        error_ == 0)
        error_ = errno;
    buffer_.clear();
}

void EventJournal::finish() {
    flush();
    if (std::fflush(file_.get()) != 0 && error_ == 0)
        error_ = errno;
    if (error_ != 0)
        throw std::system_error(error_, std::generic_category(), "can't write the events");
}

void EventJournal::length(double length) {
    begin("length");
    number("length", length);
    end();
}

void EventJournal::repaint() {
    begin("repaint");
    end();
}

void EventJournal::notification(std::string_view center, std::string_view name,
                                const NotificationInfo& info) {
    begin("notification");
    text("center", center);
    text("name", name);
    buffer_ += ",\"info\":";
    if (info.empty()) {
        buffer_ += "null";
    } else {
        char separator = '{';
        for (const auto& [key, value] : info) {
            buffer_ += std::exchange(separator, ',');
            appendJSONText(buffer_, key);
            buffer_ += ':';
            appendJSONText(buffer_, value);
        }
        buffer_ += '}';
    }
    end();
}

void EventJournal::systemLog(std::string_view line) {
    begin("systemlog");
    text("text", line);
    end();
}

void EventJournal::launch(std::string_view path) {
    begin("launch");
    text("path", path);
    end();
}

void EventJournal::daemon(std::string_view call, const PropertyValue::Array& arguments) {
    begin("daemon");
    text("call", call);
    buffer_ += ",\"arguments\":";
    appendJSON(buffer_, arguments);
    end();
}

void EventJournal::measures(std::string_view collector, std::optional<int> sequence) {
    begin("measure");
    text("collector", collector);
    if (sequence)
        number("sequence", *sequence);
    else
        buffer_ += ",\"sequence\":null";
    end();
}

void EventJournal::updated(std::string_view collector, int mode) {
    begin("updated");
    text("collector", collector);
    number("mode", mode);
    end();
}

void EventJournal::committed(std::string_view file, std::size_t statements, std::size_t failed) {
    begin("commit");
    text("file", file);
    number("statements", static_cast<double>(statements));
    number("failed", static_cast<double>(failed));
    end();
}

void EventJournal::extraLoaded(std::string_view extra) {
    begin("loaded");
    text("extra", extra);
    end();
}

void EventJournal::extraUnloaded(std::string_view extra) {
    begin("unloaded");
    text("extra", extra);
    end();
}

void EventJournal::logged(std::string_view message) {
    begin("log");
    text("text", message);
    end();
}

}  // namespace vantor
