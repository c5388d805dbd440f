#pragma once

#include <string>

#include "want.h"

namespace TARN::EventFwk {
class MatchingSkills {
public:
    void AddEvent(const std::string& event);
};

class CommonEventSubscribeInfo {
public:
    explicit CommonEventSubscribeInfo(const MatchingSkills& skills);
};

class CommonEventData {
public:
    explicit CommonEventData(const AAFwk::Want& want);
    AAFwk::Want GetWant() const;
};

class CommonEventSubscriber {
public:
    explicit CommonEventSubscriber(const CommonEventSubscribeInfo& subscribeInfo);
    virtual ~CommonEventSubscriber();
    virtual void OnReceiveEvent(const CommonEventData& data) = 0;
};
}  // namespace TARN::EventFwk
