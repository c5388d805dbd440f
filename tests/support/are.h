#ifndef TESTS_ARE_H
#define TESTS_ARE_H

#include <gmock/gmock.h>

#include <initializer_list>
#include <string>
#include <vector>

namespace TARN::Tests {

/// Exactly these lines in this order, each a text or a matcher: `EXPECT_THAT(lines, Are({"a", HasSubstr("b")}))`.
/// No template, so that the tests compile fast.
[[nodiscard]] ::testing::Matcher<const std::vector<std::string>&> Are(
    std::initializer_list<::testing::Matcher<const std::string&>> lines);

}  // namespace TARN::Tests

#endif  // TESTS_ARE_H
