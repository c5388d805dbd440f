#ifndef PLATFORM_DATASHARE_HELPER_H
#define PLATFORM_DATASHARE_HELPER_H

#include <memory>
#include <string>
#include <vector>

#include "datashare_predicates.h"
#include "datashare_result_set.h"
#include "device.h"
#include "iremote_object.h"
#include "uri.h"

namespace TARN::DataShare {

class DatashareBusinessError;

/// A connection to one data-share provider.
class DataShareHelper {
public:
    virtual ~DataShareHelper() = default;

    /// Connects to the provider of `uri` through `remote`; null when that fails. `extUri` names an extension
    /// to start when the provider is not there; empty for none.
    static std::shared_ptr<DataShareHelper> Creator(const std::shared_ptr<IRemoteObject>& remote,
                                                    const std::string& uri, const std::string& extUri);

    /// Selects rows of the table that `uri` names; an empty column list selects all columns. Null when the
    /// query fails. `error`, if given, receives what the provider said.
    virtual std::shared_ptr<DataShareResultSet> Query(Uri& uri, const DataSharePredicates& predicates,
                                                      std::vector<std::string>& columns,
                                                      DatashareBusinessError* error) = 0;
};

/// The data-share providers of a phone.
class DataShareService {
public:
    virtual ~DataShareService() = default;

    virtual std::shared_ptr<DataShareHelper> Connect(const std::shared_ptr<IRemoteObject>& remote,
                                                     const std::string& uri, const std::string& extUri) = 0;
};

inline std::shared_ptr<DataShareHelper> DataShareHelper::Creator(const std::shared_ptr<IRemoteObject>& remote,
                                                                 const std::string& uri, const std::string& extUri) {
    return Device::Current().Settings().Connect(remote, uri, extUri);
}

}  // namespace TARN::DataShare

#endif  // PLATFORM_DATASHARE_HELPER_H
