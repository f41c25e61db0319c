#pragma once

#include <string_view>

namespace vantor::inline VANTOR_MODULE {

/// Whether the first line of an integrity report says that all is well, whatever its case and the
/// blanks and line ends around it.
bool isIntegrityReportOK(std::string_view report);

}  // namespace vantor::inline VANTOR_MODULE
