#ifndef STANDBY_SERVICE_PLUGIN_LIBRARY_H
#define STANDBY_SERVICE_PLUGIN_LIBRARY_H

#include <memory>
#include <string>

namespace TARN::DevStandbyMgr {

/// A plugin's shared library while it is loaded. Unloading is real: nothing process-wide of it survives.
class PluginLibrary {
public:
    /// Loads the library at `path`. Null, and the reason in `error`, when that fails or it has no entry.
    [[nodiscard]] static std::unique_ptr<PluginLibrary> Load(const std::string& path, std::string& error);

    ~PluginLibrary();
    PluginLibrary(const PluginLibrary&) = delete;
    PluginLibrary& operator=(const PluginLibrary&) = delete;

    /// Calls the library's `OnPluginRegister`.
    bool Register() const { return entry_(); }

private:
    using Entry = bool (*)();

    PluginLibrary(void* handle, Entry entry) : handle_(handle), entry_(entry) {}

    void* handle_;
    Entry entry_;
};

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_PLUGIN_LIBRARY_H
