#ifndef PLATFORM_BROKER_REGISTRATION_H
#define PLATFORM_BROKER_REGISTRATION_H

#include <functional>
#include <memory>
#include <string>

#include "device.h"
#include "iremote_object.h"

namespace TARN {

/// A typed face of a remote object.
class IRemoteBroker {
public:
    virtual ~IRemoteBroker() = default;
};

/// The process's registry of proxy creators: which class stands for the remote objects of an interface.
class BrokerRegistration {
public:
    using Creator = std::function<std::unique_ptr<IRemoteBroker>(const std::shared_ptr<IRemoteObject>&)>;

    virtual ~BrokerRegistration() = default;

    static BrokerRegistration& GetInstance() { return Device::Current().Brokers(); }

    /// False when the descriptor is taken already.
    virtual bool Register(const std::string& descriptor, Creator creator) = 0;
    virtual void Unregister(const std::string& descriptor) = 0;
};

/// Registers `Proxy` under its descriptor for as long as this object lives. Meant to be a static object of
/// the library that needs the proxy; where no device is installed it registers nothing.
template <class Proxy>
class BrokerDelegator {
public:
    BrokerDelegator() {
        isRegistered_ = Device::Installed() != nullptr &&
                        BrokerRegistration::GetInstance().Register(
                            Proxy::GetDescriptor(), [](const std::shared_ptr<IRemoteObject>& remote) {
                                return std::unique_ptr<IRemoteBroker>(std::make_unique<Proxy>(remote));
                            });
    }
    ~BrokerDelegator() {
        if (isRegistered_ && Device::Installed() != nullptr) {
            BrokerRegistration::GetInstance().Unregister(Proxy::GetDescriptor());
        }
    }
    BrokerDelegator(const BrokerDelegator&) = delete;
    BrokerDelegator& operator=(const BrokerDelegator&) = delete;

private:
    bool isRegistered_ = false;
};

}  // namespace TARN

#endif  // PLATFORM_BROKER_REGISTRATION_H
