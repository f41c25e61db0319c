#pragma once

#include <string>

namespace vantor::inline VANTOR_MODULE {

/// What went wrong: SQLite's code and its words.
struct SQLError {
    std::string domain;
    int code = 0;
    std::string message;

    bool operator==(const SQLError&) const = default;
};

}  // namespace vantor::inline VANTOR_MODULE
