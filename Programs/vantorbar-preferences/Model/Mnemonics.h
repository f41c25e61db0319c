#pragma once

#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vantor {

/// Finds a key for each label, so that translators needn't: the label with a low line before the
/// letter that reaches it together with Alt. No letter is given twice among those of one set.
/// Shape:  the first letter of a word if there is one free, else any of the label's letters. A
///         label without any, as in languages that aren't written in Latin letters, has one in
///         brackets behind it. Where no letter is free there is none. Low lines of the label itself
///         are doubled.
/// Units:  letters are those of ASCII, in lower case in `taken`.
class Mnemonics {
public:
    std::string mark(std::string_view label);
    /// Those of a part of a window that goes while the rest stays.
    const std::set<char>& taken() const noexcept { return taken_; }

private:
    std::set<char> taken_;
};

}  // namespace vantor
