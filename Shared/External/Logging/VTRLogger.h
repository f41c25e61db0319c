#pragma once

namespace vantor::inline VANTOR_MODULE {

/// A place for a logger of the suite's own: it holds nothing and does nothing.
class VTRLogger {};

}  // namespace vantor::inline VANTOR_MODULE
