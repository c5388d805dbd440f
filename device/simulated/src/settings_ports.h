#ifndef DEVICE_SIMULATED_SETTINGS_PORTS_H
#define DEVICE_SIMULATED_SETTINGS_PORTS_H

#include <memory>
#include <string>

#include "datashare_helper.h"
#include "phone_core.h"

namespace TARN::Simulated {

class SettingsDatabase;

/// The settings data: rows of a SQLite database in memory, read through the data-share client.
class Settings : public DataShare::DataShareService {
public:
    /// Throws std::runtime_error when the database cannot be made.
    explicit Settings(PhoneCore& core);

    std::shared_ptr<DataShare::DataShareHelper> Connect(const std::shared_ptr<IRemoteObject>& remote,
                                                        const std::string& uri, const std::string& extUri) override;

    /// Changes rows: an empty value removes a row, an empty table all of its rows.
    void Apply(const FactsChange::Members<FactsChange::Members<std::string>>& tables);

private:
    std::shared_ptr<SettingsDatabase> database_;
    PhoneCore& core_;
};

}  // namespace TARN::Simulated

#endif  // DEVICE_SIMULATED_SETTINGS_PORTS_H
