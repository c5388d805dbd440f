#ifndef STANDBY_SERVICE_JSON_FIELDS_H
#define STANDBY_SERVICE_JSON_FIELDS_H

#include <cstdint>
#include <limits>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

namespace TARN::DevStandbyMgr {

/// Input that a person gave and that cannot be used; the message says where, what is wrong, what was expected.
class InputError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Reads a JSON object key by key and refuses what it does not know. `where` is the object's name in messages,
/// empty for the outermost one.
class JsonFields {
public:
    using Json = nlohmann::json;

    JsonFields(const Json& object, std::string where);

    /// The member, marked as known; null when it is absent.
    [[nodiscard]] const Json* Find(const std::string& key);

    /// The member, marked as known; throws when it is absent. `expected` says what should stand there.
    [[nodiscard]] const Json& Require(const std::string& key, const std::string& expected);

    /// Calls `read(value, where)` when the key is there.
    template <class Read>
    void Optional(const std::string& key, Read&& read) {
        if (const Json* value = Find(key)) {
            std::forward<Read>(read)(*value, Where(key));
        }
    }

    /// Throws when the object has a key that nobody asked for.
    void Finish() const;

    /// The name of a member in messages.
    [[nodiscard]] std::string Where(const std::string& key) const;

private:
    const Json& object_;
    std::string where_;
    std::set<std::string> known_;
};

/// Typed reads; each throws InputError when the value is of another type or out of range.
[[nodiscard]] bool ReadBool(const nlohmann::json& value, const std::string& where);
[[nodiscard]] int64_t ReadInteger(const nlohmann::json& value, const std::string& where,
                                  int64_t least = std::numeric_limits<int64_t>::min(),
                                  int64_t most = std::numeric_limits<int64_t>::max());
[[nodiscard]] int32_t ReadInt32(const nlohmann::json& value, const std::string& where);
[[nodiscard]] double ReadNumber(const nlohmann::json& value, const std::string& where);
[[nodiscard]] std::string ReadString(const nlohmann::json& value, const std::string& where);
[[nodiscard]] std::vector<std::string> ReadStrings(const nlohmann::json& value, const std::string& where);
[[nodiscard]] int32_t ReadDecimalKey(const std::string& key, const std::string& where);

/// Throws unless the value is an object or, for the second, an array.
void ExpectObject(const nlohmann::json& value, const std::string& where);
void ExpectArray(const nlohmann::json& value, const std::string& where);

/// Throws "where: what; expected ...", without the first part where there is none.
[[noreturn]] void Refuse(const std::string& where, const std::string& what, const std::string& expected);

/// `value` as it stands in messages: its JSON text, cut when long, or what kind of structure it is.
[[nodiscard]] std::string Quote(const nlohmann::json& value);

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_JSON_FIELDS_H
