#include "file_util.h"

#include "device.h"
#include "file_service.h"

namespace TARN::FileUtil {

bool LoadFile(const std::string& path, std::string& content) {
    return Device::Current().Files().Load(path, content);
}

bool ReplaceFile(const std::string& path, const std::string& content) {
    return Device::Current().Files().Replace(path, content);
}

}  // namespace TARN::FileUtil
