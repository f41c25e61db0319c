#include "Platform/Linux/DatePattern.h"

#include <array>
#include <memory>

#include <dlfcn.h>
#include <fmt/format.h>
#include <unicode/udat.h>
#include <unicode/ustring.h>

namespace vantor {
namespace {

// The library's names carry its version: those that its headers declare are the ones to look up.
#define VANTOR_NAME(name) VANTOR_TEXT(name)
#define VANTOR_TEXT(name) #name

constexpr const char* kLibrary = "libicui18n.so." U_ICU_VERSION_SHORT;
constexpr int kMostLetters = 256;

struct Library {
    Library() : handle(dlopen(kLibrary, RTLD_NOW | RTLD_LOCAL)) {
        find(open, VANTOR_NAME(udat_open));
        find(format, VANTOR_NAME(udat_format));
        find(close, VANTOR_NAME(udat_close));
        find(toUTF8, VANTOR_NAME(u_strToUTF8));
        find(fromUTF8, VANTOR_NAME(u_strFromUTF8));
    }

    template <class Function>
    void find(Function& function, const char* name) {
        if (handle != nullptr)
            function = reinterpret_cast<Function>(dlsym(handle, name));
    }
    bool isWhole() const { return open && format && close && toUTF8 && fromUTF8; }

    void* handle;  // stays open, as what is in it may
    decltype(&udat_open) open = nullptr;
    decltype(&udat_format) format = nullptr;
    decltype(&udat_close) close = nullptr;
    decltype(&u_strToUTF8) toUTF8 = nullptr;
    decltype(&u_strFromUTF8) fromUTF8 = nullptr;
};

const Library& library() {
    static const Library opened;
    return opened;
}

using Letters = std::array<char16_t, kMostLetters>;

std::string utf8(const Library& icu, const Letters& letters, std::int32_t count) {
    std::array<char, kMostLetters * 3> text;
    std::int32_t size = 0;
    UErrorCode status = U_ZERO_ERROR;
    icu.toUTF8(text.data(), static_cast<std::int32_t>(text.size()), &size, letters.data(), count,
               &status);
    return U_SUCCESS(status) ? std::string(text.data(), static_cast<std::size_t>(size)) : "";
}

}  // namespace

std::string dateInPattern(double localSeconds, std::string_view pattern,
                          const std::string& locale) {
    const Library& icu = library();
    if (!icu.isWhole())
        return "";
    UErrorCode status = U_ZERO_ERROR;
    Letters letters;
    std::int32_t count = 0;
    icu.fromUTF8(letters.data(), kMostLetters, &count, pattern.data(),
                 static_cast<std::int32_t>(pattern.size()), &status);
    if (U_FAILURE(status))
        return "";
    // The moment is told as if the place were on GMT, so that the library needs no zone.
    const auto release = [&icu](void* format) { icu.close(static_cast<UDateFormat*>(format)); };
    const std::unique_ptr<void, decltype(release)> format(
        icu.open(UDAT_PATTERN, UDAT_PATTERN, locale.c_str(), u"GMT", -1, letters.data(), count,
                 &status),
        release);
    if (U_FAILURE(status))
        return "";
    Letters text;
    const std::int32_t length = icu.format(static_cast<UDateFormat*>(format.get()), localSeconds * U_MILLIS_PER_SECOND,
                                           text.data(), kMostLetters, nullptr, &status);
    return U_SUCCESS(status) ? utf8(icu, text, length) : "";
}

}  // namespace vantor
