#ifndef PLATFORM_FILE_UTIL_H
#define PLATFORM_FILE_UTIL_H

#include <string>

namespace TARN::FileUtil {

/// Reads the whole regular file at `path` of the installed device into `content`. False, and `content` untouched, when
/// it cannot be read.
[[nodiscard]] bool LoadFile(const std::string& path, std::string& content);

/// Replaces the file at `path` of the installed device by one that holds `content`; at any instant the old or the new
/// content is there whole. Makes missing folders. False, and the old file as it was, on failure.
[[nodiscard]] bool ReplaceFile(const std::string& path, const std::string& content);

}  // namespace TARN::FileUtil

#endif  // PLATFORM_FILE_UTIL_H
