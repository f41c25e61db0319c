#pragma once

#include "Platform/Ports.h"
#include "Shared/External/Logging/LGLogFormatter.h"

namespace vantor::inline VANTOR_MODULE {

/// "2015/03/09 14:05:00:250  text", in the user's time zone.
class LGLogFileFormatterDefault final : public LGLogFormatter {
public:
    /// The ports outlive it.
    explicit LGLogFileFormatterDefault(const Ports& ports) : ports_(ports) {}
    std::optional<std::string> formatLogMessage(const LGLogMessage& message) override;

private:
    const Ports& ports_;
};

}  // namespace vantor::inline VANTOR_MODULE
