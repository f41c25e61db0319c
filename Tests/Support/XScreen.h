#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Tests/Support/Child.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor::test {

/// An X server of the test's own with one screen, in a file in the format of window dumps.
/// Units:  pixels.
class XScreen {
public:
    XScreen(int width, int height);

    bool isInstalled() const noexcept { return server_.isRunning(); }
    bool isThere() const noexcept { return display_.size() > 1; }
    const std::string& display() const noexcept { return display_; }
    int width() const noexcept { return width_; }
    int height() const noexcept { return height_; }

    /// Rows of red, green and blue from the top; none where the file can't be read.
    std::vector<std::uint32_t> pixels() const;
    /// Ends it as a crash would.
    void crash();

private:
    int width_, height_;
    TemporaryFolder folder_;
    Child server_;
    std::string display_;
};

}  // namespace vantor::test
