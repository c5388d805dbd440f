#ifndef STANDBY_SERVICE_PLAIN_TEXT_H
#define STANDBY_SERVICE_PLAIN_TEXT_H

#include <cstddef>
#include <istream>
#include <string>
#include <string_view>

namespace TARN::DevStandbyMgr {

/// More than any file of ours has in a line; a device or a file without line ends is not read into memory whole.
inline constexpr size_t kLongestLine = size_t{16} * 1024 * 1024;

/// Reads the next line, without its end. False at the end of the input, or where it cannot be read: `input.bad()`. The
/// last line may lack an end, and then `input.eof()`. Throws InputError for a line of more than `mostBytes`, whole
/// megabytes; `expected` says what should be there.
[[nodiscard]] bool ReadLine(std::istream& input, std::string& line, const char* expected,
                            size_t mostBytes = kLongestLine);

/// Reads all that is left of the input, whose name is for messages. Throws InputError when that is more than
/// `mostBytes`, whole megabytes.
[[nodiscard]] std::string ReadWhole(std::istream& input, const std::string& name, const std::string& expected,
                                    size_t mostBytes = kLongestLine);

/// How many bytes of a control character a text begins with: one, two in UTF-8, or none.
[[nodiscard]] size_t ControlAt(std::string_view text) noexcept;

/// Text that a terminal shows and does not obey, since names come from outside: control characters, also those of two
/// bytes in UTF-8, become "?".
[[nodiscard]] std::string Tame(std::string_view text);

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_PLAIN_TEXT_H
