#pragma once

#include <cstdlib>
#include <optional>
#include <string>

// The leak sanitizer's own; there only where a build has it.
extern "C" [[gnu::weak]] void __lsan_disable();
extern "C" [[gnu::weak]] void __lsan_enable();

namespace vantor::test {

/// With LOCPATH set, glibc's newlocale(3) never frees the search path that it makes of it. For the
/// life of this, the leak sanitizer looks away.
class LeakOfSearchPath {
public:
    LeakOfSearchPath() {
        if (__lsan_disable != nullptr)
            __lsan_disable();
    }
    ~LeakOfSearchPath() {
        if (__lsan_enable != nullptr)
            __lsan_enable();
    }
    LeakOfSearchPath(const LeakOfSearchPath&) = delete;
    LeakOfSearchPath& operator=(const LeakOfSearchPath&) = delete;
};

/// One variable of the environment, as it was before, after the test.
class Variable {
public:
    Variable(const char* name, const std::string& value) : name_(name) {
        if (const char* const before = std::getenv(name))
            before_ = before;
        ::setenv(name, value.c_str(), 1);
    }
    ~Variable() {
        if (before_)
            ::setenv(name_, before_->c_str(), 1);
        else
            ::unsetenv(name_);
    }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

private:
    const char* name_;
    std::optional<std::string> before_;
};

}  // namespace vantor::test
