#include "Foundation/UUID.h"

#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace vantor {
namespace {

constexpr std::string_view kForm = "XXXXXXXX-XXXX-4XXX-VXXX-XXXXXXXXXXXX";

bool fits(char letter, char form) {
    const auto isOf = [letter](std::string_view letters) {
        return letters.find(letter) != letters.npos;
    };
    if (form == 'X')
        return isOf("0123456789ABCDEF");
    return form == 'V' ? isOf("89AB") : letter == form;
}

TEST(UUIDTest, HasTheFormOfARandomOne) {
    const std::string uuid = newUUID().value_or("");
    ASSERT_EQ(uuid.size(), kForm.size());
    for (std::size_t at = 0; at < uuid.size(); ++at)
        EXPECT_TRUE(fits(uuid[at], kForm[at])) << uuid << " at " << at;
}

TEST(UUIDTest, NoTwoAreTheSame) { EXPECT_NE(newUUID(), newUUID()); }

}  // namespace
}  // namespace vantor
