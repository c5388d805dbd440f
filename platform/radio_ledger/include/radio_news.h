#ifndef PLATFORM_RADIO_NEWS_H
#define PLATFORM_RADIO_NEWS_H

#include <functional>

namespace TARN {

/// A phone that tells when one of its radios changes.
class RadioNews {
public:
    using RadioObserver = std::function<void()>;

    virtual ~RadioNews() = default;

    /// Calls `observer` from now on, on any thread, each time Bluetooth, Wi-Fi or the modem of a slot went on or off,
    /// whoever switched it and once the radio's port answers so. In place of an earlier observer; null ends it, and
    /// none runs any more when the call has returned. The device drops it with what is pending.
    virtual void ObserveRadios(RadioObserver observer) = 0;
};

}  // namespace TARN

#endif  // PLATFORM_RADIO_NEWS_H
