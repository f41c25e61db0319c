#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

#include <locale.h>
#include <plist/plist.h>

#include "Foundation/PropertyListBounds.h"

namespace vantor {

// For this folder's sources alone: a property list as the library's tree of nodes, and what of
// the library's must be given back.

struct CFree {
    void operator()(void* memory) const noexcept { std::free(memory); }
};
using CText = std::unique_ptr<char, CFree>;

/// The library reads a real by the C numeric locale of the thread, which is a host's to set.
class PlainNumbers {
public:
    PlainNumbers() noexcept : previous_(uselocale(plainLocale())) {}
    ~PlainNumbers() { uselocale(previous_); }
    PlainNumbers(const PlainNumbers&) = delete;
    PlainNumbers& operator=(const PlainNumbers&) = delete;

private:
    static locale_t plainLocale() noexcept {
        static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
        return plain;
    }
    locale_t previous_;
};

/// The nodes of one property list, which live as long as it does.
class PropertyListTree {
public:
    /// XML or binary. Without a root where `bytes` is neither, or is beyond bounds.
    explicit PropertyListTree(std::string_view bytes) noexcept : root_(parsed(bytes)) {}

    plist_t root() const noexcept { return root_.get(); }

private:
    struct Free {
        void operator()(void* node) const noexcept { plist_free(node); }
    };

    static plist_t parsed(std::string_view bytes) noexcept {
        if (!propertyListIsWithinBounds(bytes))
            return nullptr;
        const PlainNumbers scope;
        plist_t root = nullptr;
        plist_from_memory(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &root);
        return root;
    }

    std::unique_ptr<void, Free> root_;
};

}  // namespace vantor
