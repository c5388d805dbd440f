#include "csv_mapping.h"

#include <sstream>

#include <nlohmann/json.hpp>

#include "json_fields.h"
#include "trace.h"

namespace TARN::Authoring {

namespace {

using DevStandbyMgr::ExpectObject;
using DevStandbyMgr::InputError;
using DevStandbyMgr::JsonComments;
using DevStandbyMgr::JsonDocument;
using DevStandbyMgr::JsonFields;
using DevStandbyMgr::JsonValue;
using DevStandbyMgr::Quote;
using DevStandbyMgr::ReadString;
using DevStandbyMgr::Refuse;

Saying ReadSaying(const JsonValue& value, const std::string& where) {
    const auto saying = Translation::Read(ReadString(value, where));
    if (!saying) {
        Refuse(where, Quote(value), "one of " + Translation::Words());
    }
    return *saying;
}

/// One kind of step and its content, as a trace would say it.
RawStep ReadRawStep(const JsonValue& object, const std::string& where) {
    const auto members = object.Members();
    if (members.size() != 1 || members.front().name == "t") {
        Refuse(where, "an object of " + std::to_string(members.size()) + " members",
               "one kind of step, such as {\"broadcast\": {\"action\": \"...\"}}");
    }
    RawStep step{std::string(members.front().name), ToJson(members.front().value).dump()};
    nlohmann::json line = ToJson(object);
    line["t"] = 0;
    std::istringstream trace("{\"trace\": 1, \"start\": 0}\n" + line.dump() + "\n");
    try {
        (void)Replay::ReadTrace(trace, "");
    } catch (const InputError& error) {
        const std::string what = error.what();
        throw InputError(where + what.substr(what.find(": ")));
    }
    return step;
}

CsvMapping::Column ReadColumn(const JsonValue& value, const std::string& where) {
    CsvMapping::Column column;
    if (!value.IsObject()) {
        column.word = ReadSaying(value, where);
        if (!Translation::NeedsValue(*column.word) && column.word->word != "ignore") {
            Refuse(where, Quote(value), "light, proximity, alarm, or an object from the column's texts to words");
        }
        return column;
    }
    for (const auto& [name, meaning] : value.Members()) {
        const std::string text(name);
        const std::string member = where + "." + text;
        column.texts.emplace(
            text, meaning.IsObject() ? Meaning(ReadRawStep(meaning, member)) : Meaning(ReadSaying(meaning, member)));
    }
    if (column.texts.empty()) {
        Refuse(where, "nothing", "texts of the column, each with a word");
    }
    return column;
}

CsvMapping ReadObject(const JsonValue& object) {
    CsvMapping mapping;
    JsonFields fields(object, "");
    fields.Optional("time", [&](const JsonValue& value, const std::string& where) {
        if (value.IsString()) {
            mapping.timeColumn = value.String();
            return;
        }
        JsonFields time(value, where);
        mapping.timeColumn = ReadString(time.Require("column", "the column's name"), time.Where("column"));
        time.Optional("format", [&](const JsonValue& format, const std::string& formatWhere) {
            mapping.time = LogTime(ReadString(format, formatWhere), formatWhere);
        });
        time.Finish();
    });
    fields.Optional("value", [&](const JsonValue& value, const std::string& where) {
        mapping.valueColumn = ReadString(value, where);
    });
    fields.Optional("separator", [&](const JsonValue& value, const std::string& where) {
        const std::string separator = ReadString(value, where);
        if (separator.size() != 1 || separator == "\"" || separator == "\n" || separator == "\r") {
            Refuse(where, Quote(value), "one character, such as \";\"");
        }
        mapping.separator = separator.front();
    });
    const JsonValue& columns = fields.Require("columns", "an object from names of columns to what they mean");
    ExpectObject(columns, "columns");
    mapping.columns.clear();
    for (const auto& [key, value] : columns.Members()) {
        const std::string name(key);
        mapping.columns.emplace(name, ReadColumn(value, "columns." + name));
    }
    fields.Finish();
    return mapping;
}

}  // namespace

CsvMapping ReadCsvMapping(const std::string& text, const std::string& name) {
    try {
        JsonDocument document;
        return ReadObject(
            document.Read(text, "a mapping such as {\"time\": \"when\", \"columns\": {...}}", JsonComments::SKIPPED));
    } catch (const InputError& error) {
        throw InputError(name + ": " + error.what());
    }
}

}  // namespace TARN::Authoring
