#ifndef PLATFORM_DATASHARE_PREDICATES_H
#define PLATFORM_DATASHARE_PREDICATES_H

#include <string>
#include <utility>
#include <vector>

namespace TARN::DataShare {

/// The conditions that select rows; all of them must hold.
class DataSharePredicates {
public:
    DataSharePredicates& EqualTo(std::string column, std::string value) {
        equalities_.emplace_back(std::move(column), std::move(value));
        return *this;
    }

    /// Pairs of column and the text that it must equal.
    [[nodiscard]] const std::vector<std::pair<std::string, std::string>>& Equalities() const noexcept {
        return equalities_;
    }

private:
    std::vector<std::pair<std::string, std::string>> equalities_;
};

}  // namespace TARN::DataShare

#endif  // PLATFORM_DATASHARE_PREDICATES_H
