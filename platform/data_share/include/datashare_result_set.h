#ifndef PLATFORM_DATASHARE_RESULT_SET_H
#define PLATFORM_DATASHARE_RESULT_SET_H

#include <string>

namespace TARN::DataShare {

/// The rows that a query selected. Operations return 0 on success.
class DataShareResultSet {
public:
    virtual ~DataShareResultSet() = default;

    virtual int GoToFirstRow() = 0;
    virtual int GetColumnIndex(const std::string& columnName, int& columnIndex) = 0;
    virtual int GetString(int columnIndex, std::string& value) = 0;
    virtual int Close() = 0;
};

}  // namespace TARN::DataShare

#endif  // PLATFORM_DATASHARE_RESULT_SET_H
