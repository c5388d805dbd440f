#include <algorithm>
#include <limits>
#include <vector>

#include "csv_mapping.h"
#include "csv_reader.h"
#include "import.h"
#include "json_fields.h"
#include "translation.h"

namespace TARN::Authoring {

namespace {

using DevStandbyMgr::Quote;
using DevStandbyMgr::Refuse;

/// Reads the rows behind the names.
class CsvImport {
public:
    CsvImport(const Source& source, CsvMapping mapping, std::ostream& output)
        : mapping_(std::move(mapping)),
          reader_(source.input, source.name, mapping_.separator),
          translation_(source, output, [this](const std::string& text) {
              return mapping_.time.Read(text, translation_.Clock(), last_);
          }) {}

    Imported Run() {
        ReadNames();
        while (reader_.Next(cells_)) {
            ++imported_.read;
            if (cells_.size() != count_) {
                Refuse(reader_.Where(), std::to_string(cells_.size()) + " fields",
                       std::to_string(count_) + " as in the first row");
            }
            ReadTime();
            for (const auto& [at, name, column] : columns_) {
                if (!cells_[at].empty()) {
                    Tell(cells_[at], *name, *column);
                }
            }
        }
        translation_.End(last_, imported_);
        return std::move(imported_);
    }

private:
    struct Place {
        size_t at;
        const std::string* name;
        const CsvMapping::Column* column;
    };

    void ReadNames() {
        if (!reader_.Next(cells_)) {
            Refuse(reader_.Where(), "nothing", "a row with the names of the columns");
        }
        count_ = cells_.size();
        time_ = Find(mapping_.timeColumn);
        value_ = mapping_.valueColumn.empty() ? count_ : Find(mapping_.valueColumn);
        for (const auto& [name, column] : mapping_.columns) {
            columns_.push_back({Find(name), &name, &column});
        }
        // the order of the file, so that what one row says at one time has the order of its columns
        std::sort(columns_.begin(), columns_.end(), [](const Place& a, const Place& b) { return a.at < b.at; });
    }

    size_t Find(const std::string& name) {
        const auto found = std::find(cells_.begin(), cells_.end(), name);
        if (found == cells_.end()) {
            constexpr size_t kMostTold = 10;
            std::string names;
            for (size_t i = 0; i < std::min(cells_.size(), kMostTold); ++i) {
                names.append(i == 0 ? "" : ", ").append(Quote(cells_[i]));
            }
            Refuse(reader_.Where(), "no column " + Quote(name), "it among " + names);
        }
        return static_cast<size_t>(found - cells_.begin());
    }

    void ReadTime() {
        const std::string& cell = cells_[time_];
        const auto t = mapping_.time.Read(cell, translation_.Clock(), last_);
        if (!t) {
            Refuse(reader_.Where(), mapping_.timeColumn + ": " + Quote(cell), mapping_.time.Expected());
        }
        if (*t < last_) {
            Refuse(reader_.Where(), mapping_.timeColumn + ": " + Quote(cell) + " goes back",
                   "rows in the order of time");
        }
        last_ = *t;
        translation_.Begin(last_);
    }

    void Tell(const std::string& cell, const std::string& name, const CsvMapping::Column& column) {
        if (column.word) {
            Say({column.word->word, cell}, cell, name);
        } else if (column.texts.empty()) {
            const auto saying = Translation::Read(cell);
            saying ? Say(*saying, cell, name) : imported_.losses.Add(name + "=" + cell);
        } else if (const auto found = column.texts.find(cell); found == column.texts.end()) {
            imported_.losses.Add(name + "=" + cell);
        } else if (const auto* raw = std::get_if<RawStep>(&found->second)) {
            translation_.Step(last_, raw->kind, raw->content);
        } else {
            Say(std::get<Saying>(found->second), cell, name);
        }
    }

    void Say(Saying saying, const std::string& cell, const std::string& name) {
        const bool isFromValue = Translation::NeedsValue(saying) && value_ < count_;
        if (isFromValue) {
            saying.value = cells_[value_];
        }
        if (!translation_.Say(last_, saying)) {
            imported_.losses.Add(name + "=" + cell +
                                 (isFromValue ? " " + mapping_.valueColumn + "=" + saying.value : ""));
        }
    }

    CsvMapping mapping_;
    CsvReader reader_;
    Translation translation_;
    Imported imported_;
    std::vector<std::string> cells_;
    size_t count_ = 0;  ///< of columns
    size_t time_ = 0;
    size_t value_ = 0;
    std::vector<Place> columns_;
    int64_t last_ = std::numeric_limits<int64_t>::min();
};

}  // namespace

Imported ImportCsv(const Source& source, const std::optional<std::string>& mapping, const std::string& mappingName,
                   std::ostream& output) {
    return CsvImport(source, mapping ? ReadCsvMapping(*mapping, mappingName) : CsvMapping(), output).Run();
}

}  // namespace TARN::Authoring
