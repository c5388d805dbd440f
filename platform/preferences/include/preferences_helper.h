#ifndef PLATFORM_PREFERENCES_HELPER_H
#define PLATFORM_PREFERENCES_HELPER_H

#include <memory>
#include <string>

#include "device.h"
#include "preferences.h"

namespace TARN::NativePreferences {

/// The preferences library of a phone.
class PreferencesService {
public:
    virtual ~PreferencesService() = default;

    virtual std::shared_ptr<Preferences> Open(const std::string& path, int& errCode) = 0;
    virtual int Evict(const std::string& path) = 0;
};

/// Opens preferences files and keeps them in a cache until told otherwise.
class PreferencesHelper {
public:
    /// The store of the file at `path`, which need not exist yet; null when it cannot be opened, with the
    /// reason in `errCode`.
    static std::shared_ptr<Preferences> GetPreferences(const std::string& path, int& errCode) {
        return Device::Current().Preferences().Open(path, errCode);
    }

    /// Drops the file from the cache, so that the next open reads it anew. Returns 0 on success.
    static int RemovePreferencesFromCache(const std::string& path) {
        return Device::Current().Preferences().Evict(path);
    }
};

}  // namespace TARN::NativePreferences

#endif  // PLATFORM_PREFERENCES_HELPER_H
