#include "csv_mapping.h"

#include <sstream>

#include "json_fields.h"
#include "trace.h"

namespace TARN::Authoring {

namespace {

using DevStandbyMgr::ExpectObject;
using DevStandbyMgr::InputError;
using DevStandbyMgr::JsonFields;
using DevStandbyMgr::Quote;
using DevStandbyMgr::ReadString;
using DevStandbyMgr::Refuse;
using PlainJson = nlohmann::json;

Saying ReadSaying(const PlainJson& value, const std::string& where) {
    const auto saying = Translation::Read(ReadString(value, where));
    if (!saying) {
        Refuse(where, Quote(value), "one of " + Translation::Words());
    }
    return *saying;
}

/// One kind of step and its content, as a trace would say it.
RawStep ReadRawStep(const PlainJson& object, const std::string& where) {
    if (object.size() != 1 || object.contains("t")) {
        Refuse(where, "an object of " + std::to_string(object.size()) + " members",
               "one kind of step, such as {\"broadcast\": {\"action\": \"...\"}}");
    }
    RawStep step{object.begin().key(), object.begin().value().dump()};
    PlainJson line = object;
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

CsvMapping::Column ReadColumn(const PlainJson& value, const std::string& where) {
    CsvMapping::Column column;
    if (!value.is_object()) {
        column.word = ReadSaying(value, where);
        if (!Translation::NeedsValue(*column.word) && column.word->word != "ignore") {
            Refuse(where, Quote(value), "light, proximity, alarm, or an object from the column's texts to words");
        }
        return column;
    }
    for (const auto& [text, meaning] : value.items()) {
        const std::string member = where + "." + text;
        column.texts.emplace(
            text, meaning.is_object() ? Meaning(ReadRawStep(meaning, member)) : Meaning(ReadSaying(meaning, member)));
    }
    if (column.texts.empty()) {
        Refuse(where, "nothing", "texts of the column, each with a word");
    }
    return column;
}

CsvMapping ReadObject(const PlainJson& object) {
    CsvMapping mapping;
    JsonFields fields(object, "");
    fields.Optional("time", [&](const PlainJson& value, const std::string& where) {
        if (value.is_string()) {
            mapping.timeColumn = value.get<std::string>();
            return;
        }
        JsonFields time(value, where);
        mapping.timeColumn = ReadString(time.Require("column", "the column's name"), time.Where("column"));
        time.Optional("format", [&](const PlainJson& format, const std::string& formatWhere) {
            mapping.time = LogTime(ReadString(format, formatWhere), formatWhere);
        });
        time.Finish();
    });
    fields.Optional("value", [&](const PlainJson& value, const std::string& where) {
        mapping.valueColumn = ReadString(value, where);
    });
    fields.Optional("separator", [&](const PlainJson& value, const std::string& where) {
        const std::string separator = ReadString(value, where);
        if (separator.size() != 1 || separator == "\"" || separator == "\n" || separator == "\r") {
            Refuse(where, Quote(value), "one character, such as \";\"");
        }
        mapping.separator = separator.front();
    });
    const PlainJson& columns = fields.Require("columns", "an object from names of columns to what they mean");
    ExpectObject(columns, "columns");
    mapping.columns.clear();
    for (const auto& [name, value] : columns.items()) {
        mapping.columns.emplace(name, ReadColumn(value, "columns." + name));
    }
    fields.Finish();
    return mapping;
}

}  // namespace

CsvMapping ReadCsvMapping(const std::string& text, const std::string& name) {
    try {
        constexpr int kMostDepth = 32;  // what is written again is written level by level
        bool isDeep = false;
        const PlainJson object = PlainJson::parse(
            text,
            [&isDeep](int depth, PlainJson::parse_event_t /*event*/, PlainJson& /*value*/) {
                isDeep = isDeep || depth > kMostDepth;
                return !isDeep;
            },
            /*allow_exceptions=*/false, /*ignore_comments=*/true);
        if (isDeep || object.is_discarded()) {
            throw InputError((isDeep ? "objects in objects without end" : "not JSON") +
                             std::string("; expected a mapping such as {\"time\": \"when\", \"columns\": {...}}"));
        }
        return ReadObject(object);
    } catch (const InputError& error) {
        throw InputError(name + ": " + error.what());
    }
}

}  // namespace TARN::Authoring
