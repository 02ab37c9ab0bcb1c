#include "engine/primitives/failure_text.h"

#include <new>
#include <stdexcept>
#include <string_view>
#include <system_error>

#include <gtest/gtest.h>

namespace tolvane {
namespace {

TEST(FailureTextTest, IsASentenceAlsoForWhatTheLibraryThrows) {
  constexpr std::string_view shortage = "There is not enough memory for this. Close other programs";
  EXPECT_TRUE(FailureText::of(std::bad_alloc()).starts_with(shortage));
  EXPECT_TRUE(
      FailureText::of(std::length_error("vector::_M_default_append")).starts_with(shortage));
  const auto noThread = std::make_error_code(std::errc::resource_unavailable_try_again);
  EXPECT_TRUE(FailureText::of(std::system_error(noThread)).starts_with(shortage));
  EXPECT_EQ(FailureText::of(std::runtime_error("A sentence.")), "A sentence.");
}

}  // namespace
}  // namespace tolvane
