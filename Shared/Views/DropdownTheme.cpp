#include "Shared/Views/DropdownTheme.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

Painting::Font face(std::int64_t size, Painting::Weight weight, std::string family) {
    return {.size = static_cast<double>(size), .weight = weight, .family = std::move(family)};
}

}  // namespace

Painting::Font vtrNormalFont(std::int64_t size) {
    return face(size, Painting::Weight::regular, "Helvetica");
}

Painting::Font vtrMediumFont(std::int64_t size) {
    return face(size, Painting::Weight::medium, "Helvetica Neue");
}

Painting::Font vtrBoldFont(std::int64_t size) {
    return face(size, Painting::Weight::bold, "Helvetica");
}

double widthOfText(std::string_view text, const Painting::Font& font) noexcept {
    return text.empty() ? 0 : Painting::sizeOfText(text, {.font = font}).width;
}

}  // namespace vantor::inline VANTOR_MODULE
