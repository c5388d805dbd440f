#ifndef DEVICE_SIMULATED_PREFERENCES_PORTS_H
#define DEVICE_SIMULATED_PREFERENCES_PORTS_H

#include <map>
#include <memory>
#include <string>

#include "phone_core.h"
#include "preferences_helper.h"

namespace TARN::Simulated {

/// Preferences as XML files below the phone's file root:
/// `<preferences version="1.0"><bool key="..." value="true"/></preferences>`.
/// A file that is not there, is torn or is not XML is an empty store; one that cannot be read cannot be opened.
class PreferencesFiles : public NativePreferences::PreferencesService {
public:
    explicit PreferencesFiles(PhoneCore& core) : core_(core) {}
    std::shared_ptr<NativePreferences::Preferences> Open(const std::string& path, int& errCode) override;
    int Evict(const std::string& path) override;

    void DropAll() { cache_.clear(); }

private:
    PhoneCore& core_;
    std::map<std::string, std::shared_ptr<NativePreferences::Preferences>> cache_;
};

}  // namespace TARN::Simulated

#endif  // DEVICE_SIMULATED_PREFERENCES_PORTS_H
