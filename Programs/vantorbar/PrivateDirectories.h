#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "Platform/Directories.h"

namespace vantor {

/// The user's places, but for what the extra writes: its history is a copy, and its logs are
/// nobody's. So it can run for a moment beside a program that keeps that history.
/// Errors: making it throws where the system has no place for temporary files. A history file that
///         can't be read isn't copied, and its graphs begin without one.
class PrivateDirectories final : public Directories {
public:
    /// `own` outlives it.
    explicit PrivateDirectories(const Directories& own);
    /// Removes the copies.
    ~PrivateDirectories() override;
    PrivateDirectories(const PrivateDirectories&) = delete;
    PrivateDirectories& operator=(const PrivateDirectories&) = delete;

    std::optional<std::filesystem::path> applicationSupport() const override { return folder_; }
    std::optional<std::filesystem::path> logs() const override { return folder_ / "Logs"; }
    std::optional<std::filesystem::path> preferences() const override { return own_.preferences(); }
    std::vector<std::filesystem::path> formerPreferences() const override {
        return own_.formerPreferences();
    }
    std::filesystem::path resources() const override { return own_.resources(); }
    std::filesystem::path systemRoot() const override { return own_.systemRoot(); }

private:
    const Directories& own_;
    std::filesystem::path folder_;
};

}  // namespace vantor
