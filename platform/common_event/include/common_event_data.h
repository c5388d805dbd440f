#ifndef PLATFORM_COMMON_EVENT_DATA_H
#define PLATFORM_COMMON_EVENT_DATA_H

#include <utility>

#include "want.h"

namespace TARN::EventFwk {

/// What a broadcast says: its Want, whose action names the broadcast.
class CommonEventData {
public:
    CommonEventData() = default;
    explicit CommonEventData(AAFwk::Want want) : want_(std::move(want)) {}

    void SetWant(AAFwk::Want want) { want_ = std::move(want); }
    [[nodiscard]] const AAFwk::Want& GetWant() const noexcept { return want_; }

private:
    AAFwk::Want want_;
};

}  // namespace TARN::EventFwk

#endif  // PLATFORM_COMMON_EVENT_DATA_H
