#pragma once

namespace TARN {
template <class Proxy>
class BrokerDelegator {
public:
    BrokerDelegator();
    ~BrokerDelegator();
};
}  // namespace TARN
