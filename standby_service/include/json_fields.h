#ifndef STANDBY_SERVICE_JSON_FIELDS_H
#define STANDBY_SERVICE_JSON_FIELDS_H

#include <array>
#include <cstdint>
#include <limits>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "json_value.h"

namespace TARN::DevStandbyMgr {

/// Input that a person gave and that cannot be used; the message says where, what is wrong, what was expected.
class InputError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Reads a JSON object key by key and refuses what it does not know. `where` is the object's name in messages,
/// empty for the outermost one; the keys outlive the reading.
class JsonFields {
public:
    JsonFields(const JsonValue& object, std::string where);

    /// The member, marked as known; null when it is absent.
    [[nodiscard]] const JsonValue* Find(std::string_view key) {
        known_.at(knownCount_++) = {key.data(), key.size()};
        return found_ == members_.size() ? nullptr : FindAmongMembers(key);
    }

    /// The member, marked as known; throws when it is absent. `expected` says what should stand there.
    [[nodiscard]] const JsonValue& Require(std::string_view key, const char* expected);

    /// Calls `read(value, where)` when the key is there.
    template <class Read>
    void Optional(std::string_view key, Read&& read) {
        if (const JsonValue* value = Find(key)) {
            std::forward<Read>(read)(*value, Where(key));
        }
    }

    /// Throws when the object has a key that nobody asked for.
    void Finish() const;

    /// The name of a member in messages.
    [[nodiscard]] std::string Where(std::string_view key) const;

private:
    static constexpr size_t kMostKnown = 40;

    /// A key; without a value of its own, so that room for many costs nothing.
    struct Key {
        const char* text;
        size_t size;
    };

    const JsonValue* FindAmongMembers(std::string_view key);

    std::span<const JsonValue::Member> members_;
    std::string where_;
    size_t found_ = 0;  ///< members that were asked for
    size_t knownCount_ = 0;
    std::array<Key, kMostKnown> known_;
};

/// Typed reads; each throws InputError when the value is of another type or out of range.
[[nodiscard]] bool ReadBool(const JsonValue& value, std::string_view where);
[[nodiscard]] int64_t ReadInteger(const JsonValue& value, std::string_view where,
                                  int64_t least = std::numeric_limits<int64_t>::min(),
                                  int64_t most = std::numeric_limits<int64_t>::max());
[[nodiscard]] int32_t ReadInt32(const JsonValue& value, std::string_view where);
[[nodiscard]] double ReadNumber(const JsonValue& value, std::string_view where);
[[nodiscard]] std::string ReadString(const JsonValue& value, std::string_view where);
[[nodiscard]] std::vector<std::string> ReadStrings(const JsonValue& value, std::string_view where);
[[nodiscard]] int32_t ReadDecimalKey(std::string_view key, std::string_view where);

/// Throws unless the value is an object or, for the second, an array.
void ExpectObject(const JsonValue& value, std::string_view where);
void ExpectArray(const JsonValue& value, std::string_view where);

/// Throws "where: what; expected ...", without the first part where there is none.
[[noreturn]] void Refuse(std::string_view where, const std::string& what, std::string_view expected);

/// `value` as it stands in messages: its JSON text, cut when long, or what kind of structure it is.
[[nodiscard]] std::string Quote(const JsonValue& value);

/// A text as it stands in messages, cut when long.
[[nodiscard]] std::string Quote(std::string_view text);

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_JSON_FIELDS_H
