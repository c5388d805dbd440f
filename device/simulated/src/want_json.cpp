#include "want_json.h"

namespace TARN::Simulated {

nlohmann::ordered_json ToJson(const AAFwk::Want& want) {
    nlohmann::ordered_json object = nlohmann::ordered_json::object();
    for (const auto& [key, value] : want.GetParams()) {
        std::visit([&object, &key = key](const auto& member) { object.emplace(key, member); }, value);
    }
    return object;
}

}  // namespace TARN::Simulated
