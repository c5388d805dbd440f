#ifndef STANDBY_SERVICE_IMESSSAGE_LISTENER_H
#define STANDBY_SERVICE_IMESSSAGE_LISTENER_H

#include "standby_service_errors.h"

namespace TARN::DevStandbyMgr {

/// A source of standby messages that can be switched on and off.
class IMesssageListener {
public:
    virtual ErrCode StartListener() = 0;
    virtual ErrCode StopListener() = 0;
    virtual ~IMesssageListener() = default;
};

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_IMESSSAGE_LISTENER_H
