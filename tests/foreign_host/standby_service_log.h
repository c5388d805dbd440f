#pragma once

namespace TARN::DevStandbyMgr {
void PrintLine(const char* level, const char* file, const char* function, int line, const char* format, ...);
}  // namespace TARN::DevStandbyMgr

#define FOREIGN_LOG(level, ...) ::TARN::DevStandbyMgr::PrintLine(level, __FILE__, __func__, __LINE__, __VA_ARGS__)
#define STANDBYSERVICE_LOGD(...) FOREIGN_LOG("debug", __VA_ARGS__)
#define STANDBYSERVICE_LOGI(...) FOREIGN_LOG("info", __VA_ARGS__)
#define STANDBYSERVICE_LOGW(...) FOREIGN_LOG("warn", __VA_ARGS__)
#define STANDBYSERVICE_LOGE(...) FOREIGN_LOG("error", __VA_ARGS__)
