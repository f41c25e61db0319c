#include "Foundation/StringTable.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "Foundation/UTF8.h"

namespace vantor {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr char32_t kReplacement = 0xFFFD;

/// Takes a table apart from its front. Each operation is false where the text isn't what it should
/// be, and then nothing more can be read.
class StringTableReader {
public:
    explicit StringTableReader(std::string_view text) noexcept : rest_(text) {}

    bool readPair(std::string& key, std::string& text) {
        return skipBlanks() && readQuoted(key) && skipBlanks() && take("=") && skipBlanks() &&
               readQuoted(text) && skipBlanks() && take(";");
    }

private:
    bool take(std::string_view part) noexcept {
        const bool found = rest_.starts_with(part);
        rest_.remove_prefix(found ? part.size() : 0);
        return found;
    }

    /// Up to `end`, and past it.
    bool skipPast(std::string_view end) noexcept {
        const auto at = rest_.find(end);
        rest_.remove_prefix(at == rest_.npos ? rest_.size() : at + end.size());
        return at != rest_.npos;
    }

    bool skipBlanks() noexcept {
        for (;;) {
            rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t\r\n\v\f"), rest_.size()));
            if (take("//"))
                skipPast("\n");  // the file may end with the comment
            else if (!take("/*"))
                return true;
            else if (!skipPast("*/"))
                return false;
        }
    }

    bool readQuoted(std::string& into) {
        into.clear();
        if (!take("\""))
            return false;
        for (;;) {
            const auto plain = rest_.find_first_of("\"\\");
            if (plain == rest_.npos)
                return false;
            into += rest_.substr(0, plain);
            rest_.remove_prefix(plain);
            if (take("\""))
                return true;
            rest_.remove_prefix(1);
            if (!readEscape(into))
                return false;
        }
    }

    /// What stands behind a backslash.
    bool readEscape(std::string& into) {
        if (rest_.empty())
            return false;
        const char letter = rest_.front();
        rest_.remove_prefix(1);
        constexpr std::string_view kLetters = "ntr", kControls = "\n\t\r";
        if (const auto control = kLetters.find(letter); control != kLetters.npos)
            into += kControls[control];
        else if (letter == 'U' || letter == 'u')
            appendUTF8(readUnits(), into);
        else
            into += letter;  // of one that takes several bytes, the others follow as plain text
        return true;
    }

    /// One UTF-16 unit, and the second half of a surrogate pair where there is one.
    char32_t readUnits() noexcept {
        const char32_t first = readHexadecimal();
        const std::string_view behind = rest_;
        if (isHighSurrogate(first) && (take("\\U") || take("\\u"))) {
            const char32_t second = readHexadecimal();
            if (second >= 0xDC00 && second < 0xE000)
                return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
        }
        rest_ = behind;
        return first == 0 ? kReplacement : first;  // a null would end a text of C
    }

    static bool isHighSurrogate(char32_t unit) noexcept { return unit >= 0xD800 && unit < 0xDC00; }

    char32_t readHexadecimal() noexcept {
        const std::string_view digits = rest_.substr(0, 4);
        unsigned unit = 0;
        const auto end =
            std::from_chars(digits.data(), digits.data() + digits.size(), unit, 16).ptr;
        rest_.remove_prefix(static_cast<std::size_t>(end - digits.data()));
        return unit;
    }

    std::string_view rest_;
};

}  // namespace

StringTable stringTable(std::string_view bytes) {
    std::string_view text = validUTF8Prefix(bytes);
    if (text.starts_with(kByteOrderMark))
        text.remove_prefix(kByteOrderMark.size());
    StringTableReader reader(text);
    StringTable table;
    for (std::string key, value; reader.readPair(key, value);)
        table.insert_or_assign(std::move(key), std::move(value));
    return table;
}

}  // namespace vantor
