#ifndef PLATFORM_DELAYED_SINGLETON_H
#define PLATFORM_DELAYED_SINGLETON_H

#include <memory>

namespace TARN {

/// The platform's way to reach a client of which a process has one: made on first use, shared by all.
template <class Client>
class DelayedSingleton {
public:
    static std::shared_ptr<Client> GetInstance() { return Client::Shared(); }
};

}  // namespace TARN

#endif  // PLATFORM_DELAYED_SINGLETON_H
