#include "Shared/Database/HistoryLog.h"

#include "Platform/SystemLog.h"

namespace vantor::inline VANTOR_MODULE {

void logHistory(const Ports& ports, std::string_view text, std::source_location) {
    ports.systemLog.write(text);
}

}  // namespace vantor::inline VANTOR_MODULE
