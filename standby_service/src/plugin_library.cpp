#include "plugin_library.h"

#include <dlfcn.h>

namespace TARN::DevStandbyMgr {

namespace {
constexpr char kEntryName[] = "OnPluginRegister";
}

std::unique_ptr<PluginLibrary> PluginLibrary::Load(const std::string& path, std::string& error) {
    void* handle = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        error = ::dlerror();
        return nullptr;
    }
    void* entry = ::dlsym(handle, kEntryName);
    if (entry == nullptr) {
        error = path + ": no function " + kEntryName;
        ::dlclose(handle);
        return nullptr;
    }
    return std::unique_ptr<PluginLibrary>(new PluginLibrary(handle, reinterpret_cast<Entry>(entry)));
}

PluginLibrary::~PluginLibrary() {
    ::dlclose(handle_);
}

}  // namespace TARN::DevStandbyMgr
