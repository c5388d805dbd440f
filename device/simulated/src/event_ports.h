#ifndef DEVICE_SIMULATED_EVENT_PORTS_H
#define DEVICE_SIMULATED_EVENT_PORTS_H

#include <memory>
#include <vector>

#include "common_event_service.h"
#include "phone_core.h"

namespace TARN::Simulated {

/// Broadcasts: each is delivered, as work of its own, to those who are subscribed by then.
class CommonEvents : public EventFwk::CommonEventService {
public:
    explicit CommonEvents(PhoneCore& core) : core_(core) {}
    bool Subscribe(const std::shared_ptr<EventFwk::CommonEventSubscriber>& subscriber) override;
    bool Unsubscribe(const std::shared_ptr<EventFwk::CommonEventSubscriber>& subscriber) override;
    bool Publish(const EventFwk::CommonEventData& data, const EventFwk::CommonEventPublishInfo& info) override;

    /// Queues the delivery of a broadcast, whoever published it.
    void Post(EventFwk::CommonEventData data);

    void DropAll() { subscribers_.clear(); }

private:
    void Deliver(const EventFwk::CommonEventData& data) const;

    PhoneCore& core_;
    std::vector<std::shared_ptr<EventFwk::CommonEventSubscriber>> subscribers_;
};

}  // namespace TARN::Simulated

#endif  // DEVICE_SIMULATED_EVENT_PORTS_H
