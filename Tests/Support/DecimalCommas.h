#pragma once

#include <clocale>

namespace vantor::test {

/// For its life, this thread's locale is one that writes "1,50": made for it, so that no machine
/// needs to have such a locale.
class DecimalCommas {
public:
    /// Throws where the locale can't be made.
    DecimalCommas();
    ~DecimalCommas();
    DecimalCommas(const DecimalCommas&) = delete;
    DecimalCommas& operator=(const DecimalCommas&) = delete;

    /// Whether it is still the thread's.
    bool areInUse() const noexcept;

private:
    locale_t commas_, previous_;
};

}  // namespace vantor::test
