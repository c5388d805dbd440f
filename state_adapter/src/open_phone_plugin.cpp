#include "open_phone_plugin.h"

#include "app_mgr_proxy.h"
#include "broker_registration.h"
#include "listener_manager_adapter_ext.h"
#include "phone_constarint_adapter_ext.h"
#include "phone_state_manager_adapter_ext.h"
#include "phone_strategy_manager_adapter_ext.h"
#include "standby_service_impl.h"
#include "standby_service_log.h"
#include "suspend_manager_proxy.h"

namespace {

// The platform's clients turn remote objects into these proxies inside this library.
const TARN::BrokerDelegator<TARN::AppExecFwk::AppMgrProxy> g_appMgrDelegator;
const TARN::BrokerDelegator<TARN::SuspendManager::SuspendManagerProxy> g_suspendManagerDelegator;

}  // namespace

extern "C" __attribute__((visibility("default"))) bool OnPluginRegister() {
    using namespace TARN::DevStandbyMgr;
    IConstraintManagerAdapter* constraintManager = new PhoneConstarintAdapterExt();
    IListenerManagerAdapter* listenerManager = new ListenerManagerAdapterExt();
    IStrategyManagerAdapter* strategyManager = new PhoneStrategyManagerAdapterExt();
    IStateManagerAdapter* stateManager = new PhoneStateManagerAdapterExt();
    StandbyServiceImpl::GetInstance()->RegisterPluginInner(constraintManager, listenerManager, strategyManager,
                                                           stateManager);
    STANDBYSERVICE_LOGI("plugin register succeed");
    return true;
}
