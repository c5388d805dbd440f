#ifndef PLATFORM_PREFERENCES_H
#define PLATFORM_PREFERENCES_H

#include <string>

namespace TARN::NativePreferences {

/// One open preferences file.
class Preferences {
public:
    virtual ~Preferences() = default;

    /// The stored value; `defaultValue` when the key is absent or holds another type.
    virtual bool GetBool(const std::string& key, bool defaultValue) = 0;

    /// Puts a value under a key, in memory. Returns 0 on success.
    virtual int PutBool(const std::string& key, bool value) = 0;

    /// Writes what is in memory to the file, whole or not at all. Returns 0 once it is on disk.
    virtual int FlushSync() = 0;
};

}  // namespace TARN::NativePreferences

#endif  // PLATFORM_PREFERENCES_H
