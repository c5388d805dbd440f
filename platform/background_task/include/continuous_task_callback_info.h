#ifndef PLATFORM_CONTINUOUS_TASK_CALLBACK_INFO_H
#define PLATFORM_CONTINUOUS_TASK_CALLBACK_INFO_H

#include <sys/types.h>
#include <cstdint>

namespace TARN::BackgroundTaskMgr {

/// One continuous (long-running background) task: 2 audio playback, 4 location, 8 voice call.
class ContinuousTaskCallbackInfo {
public:
    ContinuousTaskCallbackInfo(uint32_t typeId, int32_t creatorUid, pid_t creatorPid)
        : typeId_(typeId), creatorUid_(creatorUid), creatorPid_(creatorPid) {}

    [[nodiscard]] uint32_t GetTypeId() const noexcept { return typeId_; }
    [[nodiscard]] int32_t GetCreatorUid() const noexcept { return creatorUid_; }
    [[nodiscard]] pid_t GetCreatorPid() const noexcept { return creatorPid_; }

    friend bool operator==(const ContinuousTaskCallbackInfo&, const ContinuousTaskCallbackInfo&) = default;

private:
    uint32_t typeId_;
    int32_t creatorUid_;
    pid_t creatorPid_;
};

}  // namespace TARN::BackgroundTaskMgr

#endif  // PLATFORM_CONTINUOUS_TASK_CALLBACK_INFO_H
