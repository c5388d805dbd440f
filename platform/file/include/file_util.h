#ifndef PLATFORM_FILE_UTIL_H
#define PLATFORM_FILE_UTIL_H

#include <string>

namespace TARN::FileUtil {

/// Reads the whole regular file at `path`, below the installed device's file root, into `content`.
/// False, and `content` untouched, when it cannot be read.
[[nodiscard]] bool LoadFile(const std::string& path, std::string& content);

/// Replaces the file at `path`, below the installed device's file root, with `content`. A crash at any
/// instant leaves the old or the new content whole: the bytes go to a temporary file in the same folder,
/// which is flushed to disk and renamed. Makes missing folders. False, and the old file as it was, on failure.
[[nodiscard]] bool ReplaceFile(const std::string& path, const std::string& content);

}  // namespace TARN::FileUtil

#endif  // PLATFORM_FILE_UTIL_H
