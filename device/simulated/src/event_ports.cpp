#include "event_ports.h"

#include <algorithm>
#include <utility>

#include "want_json.h"

namespace TARN::Simulated {

using Json = nlohmann::ordered_json;

bool CommonEvents::Subscribe(const std::shared_ptr<EventFwk::CommonEventSubscriber>& subscriber) {
    constexpr std::string_view kOperation = "CommonEventManager.SubscribeCommonEvent";
    const bool isAccepted = core_.Fault(kOperation) == 0;
    if (isAccepted) {
        subscribers_.push_back(subscriber);
    }
    const auto arguments = [&subscriber] {
        return Json{{"actions", subscriber->GetSubscribeInfo().GetMatchingSkills().GetEvents()}};
    };
    core_.Show(kOperation, arguments, isAccepted);
    return isAccepted;
}

bool CommonEvents::Unsubscribe(const std::shared_ptr<EventFwk::CommonEventSubscriber>& subscriber) {
    constexpr std::string_view kOperation = "CommonEventManager.UnSubscribeCommonEvent";
    const auto found = std::find(subscribers_.begin(), subscribers_.end(), subscriber);
    const bool isAccepted = core_.Fault(kOperation) == 0 && found != subscribers_.end();
    if (isAccepted) {
        subscribers_.erase(found);
    }
    core_.Show(kOperation, PhoneCore::NoArguments, isAccepted);
    return isAccepted;
}

bool CommonEvents::Publish(const EventFwk::CommonEventData& data, const EventFwk::CommonEventPublishInfo& info) {
    constexpr std::string_view kOperation = "CommonEventManager.PublishCommonEvent";
    const bool isAccepted = core_.Fault(kOperation) == 0;
    const auto arguments = [&] {
        return Json{{"action", data.GetWant().GetAction()},
                    {"want", ToJson(data.GetWant())},
                    {"permissions", info.GetSubscriberPermissions()}};
    };
    core_.Show(kOperation, arguments, isAccepted);
    if (isAccepted) {
        Post(data);
    }
    return isAccepted;
}

void CommonEvents::Post(EventFwk::CommonEventData data) {
    core_.time.Post(core_.time.NowMs(), [this, data = std::move(data)] { Deliver(data); });
}

void CommonEvents::Deliver(const EventFwk::CommonEventData& data) const {
    const auto subscribers = subscribers_;  // a receiver may subscribe and unsubscribe
    for (const auto& subscriber : subscribers) {
        const auto& actions = subscriber->GetSubscribeInfo().GetMatchingSkills().GetEvents();
        if (std::find(actions.begin(), actions.end(), data.GetWant().GetAction()) != actions.end()) {
            subscriber->OnReceiveEvent(data);
        }
    }
}

}  // namespace TARN::Simulated
