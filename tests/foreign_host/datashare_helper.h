#pragma once

#include <memory>
#include <string>
#include <vector>

#include "uri.h"

namespace TARN {
class IRemoteObject;
}

namespace TARN::DataShare {
class BusinessError;

class DataSharePredicates {
public:
    void EqualTo(const std::string& column, const std::string& value);
};

class DataShareResultSet {
public:
    [[nodiscard]] int GoToFirstRow();
    [[nodiscard]] int GetColumnIndex(const std::string& name, int& index);
    [[nodiscard]] int GetString(int index, std::string& value);
    [[nodiscard]] int Close();
};

class DataShareHelper {
public:
    static std::shared_ptr<DataShareHelper> Creator(const std::shared_ptr<IRemoteObject>& remote,
                                                    const std::string& uri, const std::string& extUri);
    std::shared_ptr<DataShareResultSet> Query(Uri& uri, const DataSharePredicates& predicates,
                                              std::vector<std::string>& columns, BusinessError* error);
};
}  // namespace TARN::DataShare
