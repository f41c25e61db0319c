#include "Foundation/Base64.h"

#include <string>

#include <gtest/gtest.h>

namespace vantor {
namespace {

std::string decoded(std::string_view text) {
    const auto data = dataFromBase64(text);
    if (!data)
        return "refused";
    std::string bytes;
    for (const std::byte byte : *data)
        bytes.push_back(static_cast<char>(byte));
    return bytes;
}

TEST(Base64Test, EveryLengthIsDecoded) {
    EXPECT_EQ(decoded(""), "");
    EXPECT_EQ(decoded("YQ=="), "a");
    EXPECT_EQ(decoded("YWI="), "ab");
    EXPECT_EQ(decoded("YWJj"), "abc");
    EXPECT_EQ(decoded("/+8A"), std::string("\xFF\xEF\0", 3));
}

TEST(Base64Test, EveryLengthIsEncoded) {
    for (const std::string_view text : {"", "YQ==", "YWI=", "YWJj", "/+8A", "AAAA/w=="})
        EXPECT_EQ(base64FromData(*dataFromBase64(text)), text);
}

TEST(Base64Test, WhatIsNotBase64IsRefused) {
    for (const std::string_view text :
         {"Y", "YQ", "YQ=", "====", "Y===", "YQ==YQ==", "Y Q=", "YWJ\n", "YW_j", "=QAA"})
        EXPECT_EQ(decoded(text), "refused") << text;
}

}  // namespace
}  // namespace vantor
