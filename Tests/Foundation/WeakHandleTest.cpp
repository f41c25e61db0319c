#include "Foundation/WeakHandle.h"

#include <optional>

#include <gtest/gtest.h>

namespace vantor {
namespace {

struct Owner {
    WeakSource<Owner> self{*this};
};

TEST(WeakHandleTest, AnswersItsOwnerWhileThatLives) {
    Owner owner;
    EXPECT_EQ(owner.self.handle().get(), &owner);
}

TEST(WeakHandleTest, AnswersNullOnceTheOwnerIsGone) {
    std::optional<Owner> owner(std::in_place);
    const WeakHandle<Owner> handle = owner->self.handle();
    owner.reset();
    EXPECT_EQ(handle.get(), nullptr);
}

TEST(WeakHandleTest, AnEmptyOneAnswersNull) { EXPECT_EQ(WeakHandle<Owner>().get(), nullptr); }

}  // namespace
}  // namespace vantor
