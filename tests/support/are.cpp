#include "are.h"

namespace TARN::Tests {

::testing::Matcher<const std::vector<std::string>&> Are(
    std::initializer_list<::testing::Matcher<const std::string&>> lines) {
    return ::testing::ElementsAreArray(lines);
}

}  // namespace TARN::Tests
