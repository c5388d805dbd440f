#ifndef PHONE_STRATEGY_STANDBY_DATASHARE_HELPER_H
#define PHONE_STRATEGY_STANDBY_DATASHARE_HELPER_H

#include <memory>
#include <string>

#include "datashare_helper.h"
#include "phone_standby_status.h"
#include "uri.h"

namespace TARN::DevStandbyMgr {

/// Reads single values of the settings data. Made for one query and dropped after it.
class StandbyDataShareHelper {
public:
    /// Connects to the settings data behind a system ability; a failure shows in Query.
    explicit StandbyDataShareHelper(int systemAbilityId);

    /// Reads into `value` the "VALUE" of the first row of `uri` whose "KEYWORD" is `key`.
    /// DATA_SHARE_UNAVAILABLE without a connection, DATA_SHARE_QUERY without a result set or a row;
    /// then `value` is as it was.
    [[nodiscard]] ErrCode Query(Uri& uri, const std::string& key, std::string& value);

private:
    static std::shared_ptr<DataShare::DataShareHelper> CreateDataShareHelper(int systemAbilityId);

    std::shared_ptr<DataShare::DataShareHelper> dataShareHelper_;
};

}  // namespace TARN::DevStandbyMgr

#endif  // PHONE_STRATEGY_STANDBY_DATASHARE_HELPER_H
