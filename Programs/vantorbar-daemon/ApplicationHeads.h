#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "Platform/ProcessSource.h"

namespace vantor {

/// Which process stands for an application: the topmost one on the way up through parents that
/// are parts of the same application or, where none is known, of the same session. Shells, the
/// init and the user manager stand for nobody but themselves, and so do threads of the kernel. The
/// way goes on behind a shell that leads no session: "make" runs its commands with those.
/// Shape:  asks the source for as few applications as it can, each once in a reading; keeps its
///         room from one reading to the next.
class ApplicationHeads {
public:
    explicit ApplicationHeads(ProcessSource& source) noexcept : source_(source) {}

    /// `processes`, by rising number, outlives all questions about it.
    void setProcesses(std::span<const ProcessReading> processes);
    /// The place of the process that stands for the one at `place`.
    std::size_t headOf(std::size_t place);

private:
    std::optional<std::size_t> parentOf(std::size_t place) const noexcept;
    bool isSameApplication(std::size_t one, std::size_t other);
    ApplicationID application(std::size_t place);

    ProcessSource& source_;
    std::span<const ProcessReading> processes_;
    std::vector<std::optional<ApplicationID>> applications_;  // those asked for so far
};

}  // namespace vantor
