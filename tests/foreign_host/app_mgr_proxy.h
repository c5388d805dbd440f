#pragma once

namespace TARN::AppExecFwk {
class AppMgrProxy;
}
