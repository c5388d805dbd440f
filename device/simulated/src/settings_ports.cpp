#include "settings_ports.h"

#include <sqlite3.h>

#include <stdexcept>
#include <string_view>
#include <utility>

namespace TARN::Simulated {

namespace {

using DataShare::DataShareHelper;
using DataShare::DataSharePredicates;
using DataShare::DataShareResultSet;

constexpr int kFailed = -1;

constexpr char kSchema[] =
    "CREATE TABLE settings (TABLE_NAME TEXT NOT NULL, KEYWORD TEXT NOT NULL, VALUE TEXT NOT NULL, "
    "PRIMARY KEY (TABLE_NAME, KEYWORD)) WITHOUT ROWID";

/// One statement with its texts bound.
class Statement {
public:
    Statement(sqlite3* database, const char* sql, std::initializer_list<std::string_view> texts) {
        if (sqlite3_prepare_v2(database, sql, -1, &statement_, nullptr) != SQLITE_OK) {
            throw std::runtime_error(sqlite3_errmsg(database));
        }
        int position = 0;
        for (const std::string_view text : texts) {
            sqlite3_bind_text(statement_, ++position, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
        }
    }
    ~Statement() { sqlite3_finalize(statement_); }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    int Step() { return sqlite3_step(statement_); }
    int Reset() { return sqlite3_reset(statement_); }
    sqlite3_stmt* Get() { return statement_; }

private:
    sqlite3_stmt* statement_ = nullptr;
};

class ResultSet : public DataShareResultSet {
public:
    ResultSet(PhoneCore& core, std::unique_ptr<Statement> rows) : core_(core), rows_(std::move(rows)) {}

    int GoToFirstRow() override {
        if (const int code = core_.Fault("DataShareResultSet.GoToFirstRow"); code != 0) {
            return code;
        }
        return rows_ != nullptr && rows_->Reset() == SQLITE_OK && rows_->Step() == SQLITE_ROW ? 0 : kFailed;
    }

    int GetColumnIndex(const std::string& columnName, int& columnIndex) override {
        if (const int code = core_.Fault("DataShareResultSet.GetColumnIndex"); code != 0) {
            return code;
        }
        for (int i = 0; rows_ != nullptr && i < sqlite3_column_count(rows_->Get()); ++i) {
            if (columnName == sqlite3_column_name(rows_->Get(), i)) {
                columnIndex = i;
                return 0;
            }
        }
        return kFailed;
    }

    int GetString(int columnIndex, std::string& value) override {
        if (const int code = core_.Fault("DataShareResultSet.GetString"); code != 0) {
            return code;
        }
        if (rows_ == nullptr || columnIndex < 0 || columnIndex >= sqlite3_column_count(rows_->Get())) {
            return kFailed;
        }
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(rows_->Get(), columnIndex));
        value.assign(text, static_cast<size_t>(sqlite3_column_bytes(rows_->Get(), columnIndex)));
        return 0;
    }

    int Close() override {
        rows_.reset();
        return 0;
    }

private:
    PhoneCore& core_;
    std::unique_ptr<Statement> rows_;
};

/// The last segment of a settings URI's path: the table.
std::string_view TableOf(std::string_view uri) {
    const std::string_view path = uri.substr(0, uri.find('?'));
    return path.substr(path.rfind('/') + 1);
}

class Helper : public DataShareHelper {
public:
    Helper(PhoneCore& core, sqlite3* database) : core_(core), database_(database) {}

    std::shared_ptr<DataShareResultSet> Query(Uri& uri, const DataSharePredicates& predicates,
                                              std::vector<std::string>& /*columns*/,
                                              DataShare::DatashareBusinessError* /*error*/) override {
        if (core_.Fault("DataShareHelper.Query") != 0) {
            return nullptr;
        }
        std::string_view keyword;
        for (const auto& [column, value] : predicates.Equalities()) {
            if (column != "KEYWORD") {
                return nullptr;
            }
            keyword = value;
        }
        constexpr char kSelect[] = "SELECT KEYWORD, VALUE FROM settings WHERE TABLE_NAME = ? AND KEYWORD = ?";
        return std::make_shared<ResultSet>(
            core_, std::unique_ptr<Statement>(new Statement(database_, kSelect, {TableOf(uri.ToString()), keyword})));
    }

private:
    PhoneCore& core_;
    sqlite3* database_;
};

}  // namespace

void Settings::CloseDatabase::operator()(sqlite3* database) const noexcept {
    sqlite3_close_v2(database);
}

Settings::Settings(PhoneCore& core) : core_(core) {
    sqlite3* database = nullptr;
    const int opened = sqlite3_open(":memory:", &database);
    database_.reset(database);
    if (opened != SQLITE_OK || sqlite3_exec(database, kSchema, nullptr, nullptr, nullptr) != SQLITE_OK) {
        throw std::runtime_error(std::string("settings database: ") + sqlite3_errmsg(database));
    }
}

std::shared_ptr<DataShareHelper> Settings::Connect(const std::shared_ptr<IRemoteObject>& remote,
                                                   const std::string& /*uri*/, const std::string& /*extUri*/) {
    if (remote == nullptr || core_.Fault("DataShareHelper.Creator") != 0) {
        return nullptr;
    }
    return std::make_shared<Helper>(core_, database_.get());
}

void Settings::Apply(const FactsChange::Members<FactsChange::Members<std::string>>& tables) {
    for (const auto& [table, rows] : tables) {
        if (!rows) {
            Statement(database_.get(), "DELETE FROM settings WHERE TABLE_NAME = ?", {table}).Step();
            continue;
        }
        for (const auto& [keyword, value] : *rows) {
            if (value) {
                Statement(database_.get(), "INSERT OR REPLACE INTO settings VALUES (?, ?, ?)", {table, keyword, *value})
                    .Step();
            } else {
                Statement(database_.get(), "DELETE FROM settings WHERE TABLE_NAME = ? AND KEYWORD = ?",
                          {table, keyword})
                    .Step();
            }
        }
    }
}

}  // namespace TARN::Simulated
