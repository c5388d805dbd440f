#include "preferences_ports.h"

#include <sstream>
#include <string_view>
#include <utility>

#include <pugixml.hpp>

#include "device.h"
#include "file_service.h"

namespace TARN::Simulated {

namespace {

constexpr int kCannotOpen = -1;
constexpr int kCannotWrite = -2;

class XmlPreferences : public NativePreferences::Preferences {
public:
    XmlPreferences(PhoneCore& core, std::string path, const std::string& text) : core_(core), path_(std::move(path)) {
        if (!document_.load_buffer(text.data(), text.size()) || !document_.child("preferences")) {
            document_.reset();
            document_.append_child("preferences").append_attribute("version").set_value("1.0");
        }
    }

    bool GetBool(const std::string& key, bool defaultValue) override {
        if (core_.Fault("Preferences.GetBool") != 0) {
            return false;
        }
        const pugi::xml_attribute value = Find(key).attribute("value");
        const std::string_view text = value.value();
        if (text == "true" || text == "1") {
            return true;
        }
        return text != "false" && text != "0" && defaultValue;
    }

    int PutBool(const std::string& key, bool value) override {
        if (const int code = core_.Fault("Preferences.PutBool"); code != 0) {
            return code;
        }
        pugi::xml_node node = Find(key);
        if (!node) {
            node = document_.child("preferences").append_child("bool");
            node.append_attribute("key").set_value(key.c_str());
        }
        pugi::xml_attribute attribute = node.attribute("value");
        if (!attribute) {  // also where somebody wrote the key alone
            attribute = node.append_attribute("value");
        }
        return attribute.set_value(value ? "true" : "false") ? 0 : kCannotWrite;
    }

    int FlushSync() override {
        if (const int code = core_.Fault("Preferences.FlushSync"); code != 0) {
            return code;
        }
        std::ostringstream text;
        document_.save(text, "  ");
        return Device::Current().Files().Replace(path_, text.str()) ? 0 : kCannotWrite;
    }

private:
    pugi::xml_node Find(const std::string& key) const {
        return document_.child("preferences").find_child_by_attribute("bool", "key", key.c_str());
    }

    PhoneCore& core_;
    std::string path_;
    pugi::xml_document document_;
};

}  // namespace

std::shared_ptr<NativePreferences::Preferences> PreferencesFiles::Open(const std::string& path, int& errCode) {
    errCode = core_.Fault("PreferencesHelper.GetPreferences");
    if (errCode != 0) {
        return nullptr;
    }
    auto& cached = cache_[path];
    if (cached == nullptr) {
        std::string text;
        FileUtil::FileService& files = Device::Current().Files();
        if (!files.Load(path, text) && files.Exists(path)) {
            errCode = kCannotOpen;
            cache_.erase(path);
            return nullptr;
        }
        cached = std::make_shared<XmlPreferences>(core_, path, text);
    }
    return cached;
}

int PreferencesFiles::Evict(const std::string& path) {
    const int code = core_.Fault("PreferencesHelper.RemovePreferencesFromCache");
    if (code == 0) {
        cache_.erase(path);
    }
    return code;
}

}  // namespace TARN::Simulated
