#pragma once

#include <string_view>

#include "Platform/Appearance.h"
#include "Platform/PreferenceDomain.h"

namespace vantor {

/// Another domain, with values of this process's own laid over it. Writing changes only those.
/// `below` outlives it.
class OverlaidPreferences final : public PreferenceDomain {
public:
    explicit OverlaidPreferences(PreferenceDomain& below) : below_(below) {}

    PropertyValue read(std::string_view key) override;
    void write(std::string_view key, const PropertyValue& value) override;
    void synchronise() override {}
    PropertyValue::Dictionary readAll() override;

private:
    PreferenceDomain& below_;
    PropertyValue::Dictionary own_;
};

/// An appearance that doesn't change.
class FixedAppearance final : public Appearance {
public:
    FixedAppearance(bool dark, bool contrast) noexcept : dark_(dark), contrast_(contrast) {}
    bool isDark() const noexcept override { return dark_; }
    bool increasesContrast() const noexcept override { return contrast_; }

private:
    bool dark_, contrast_;
};

}  // namespace vantor
