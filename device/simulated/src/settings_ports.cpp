#include "settings_ports.h"

#include <sqlite3.h>

#include <algorithm>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

namespace TARN::Simulated {

namespace {

using DataShare::DataShareHelper;
using DataShare::DataSharePredicates;
using DataShare::DataShareResultSet;

constexpr int kFailed = -1;

constexpr char kSchema[] =
    "CREATE TABLE settings (TABLE_NAME TEXT NOT NULL, KEYWORD TEXT NOT NULL, VALUE TEXT NOT NULL, "
    "PRIMARY KEY (TABLE_NAME, KEYWORD)) WITHOUT ROWID";
constexpr char kSelect[] = "SELECT KEYWORD, VALUE FROM settings WHERE TABLE_NAME = ? AND KEYWORD = ?";
constexpr char kInsert[] = "INSERT OR REPLACE INTO settings VALUES (?, ?, ?)";
constexpr char kDelete[] = "DELETE FROM settings WHERE TABLE_NAME = ? AND KEYWORD = ?";
constexpr char kDeleteTable[] = "DELETE FROM settings WHERE TABLE_NAME = ?";

}  // namespace

/// The database, and the statements that nobody uses just now: the same few questions come all night long.
class SettingsDatabase {
public:
    SettingsDatabase() {
        const int opened = sqlite3_open(":memory:", &database_);
        if (opened != SQLITE_OK || sqlite3_exec(database_, kSchema, nullptr, nullptr, nullptr) != SQLITE_OK) {
            const std::string why = sqlite3_errmsg(database_);
            sqlite3_close(database_);
            throw std::runtime_error("settings database: " + why);
        }
    }
    ~SettingsDatabase() {
        for (const auto& [sql, statement] : idle_) {
            sqlite3_finalize(statement);
        }
        sqlite3_close(database_);
    }
    SettingsDatabase(const SettingsDatabase&) = delete;
    SettingsDatabase& operator=(const SettingsDatabase&) = delete;

    /// A prepared statement; `sql` is a literal.
    [[nodiscard]] sqlite3_stmt* Take(const char* sql) {
        const auto idle = std::find_if(idle_.begin(), idle_.end(), [sql](const auto& one) { return one.first == sql; });
        if (idle != idle_.end()) {
            sqlite3_stmt* statement = idle->second;
            idle_.erase(idle);
            return statement;
        }
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(database_, sql, -1, &statement, nullptr) != SQLITE_OK) {
            throw std::runtime_error(sqlite3_errmsg(database_));
        }
        return statement;
    }

    void GiveBack(const char* sql, sqlite3_stmt* statement) {
        sqlite3_reset(statement);
        idle_.emplace_back(sql, statement);
    }

private:
    sqlite3* database_ = nullptr;
    std::vector<std::pair<const char*, sqlite3_stmt*>> idle_;
};

namespace {

/// One statement with its texts bound.
class Statement {
public:
    Statement(std::shared_ptr<SettingsDatabase> database, const char* sql,
              std::initializer_list<std::string_view> texts)
        : database_(std::move(database)), sql_(sql), statement_(database_->Take(sql)) {
        int position = 0;
        for (const std::string_view text : texts) {
            sqlite3_bind_text(statement_, ++position, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
        }
    }
    ~Statement() { database_->GiveBack(sql_, statement_); }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    int Step() { return sqlite3_step(statement_); }
    int Reset() { return sqlite3_reset(statement_); }
    sqlite3_stmt* Get() { return statement_; }

private:
    std::shared_ptr<SettingsDatabase> database_;
    const char* sql_;
    sqlite3_stmt* statement_;
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
    Helper(PhoneCore& core, std::shared_ptr<SettingsDatabase> database) : core_(core), database_(std::move(database)) {}

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
        return std::make_shared<ResultSet>(
            core_, std::unique_ptr<Statement>(new Statement(database_, kSelect, {TableOf(uri.ToString()), keyword})));
    }

private:
    PhoneCore& core_;
    std::shared_ptr<SettingsDatabase> database_;
};

}  // namespace

Settings::Settings(PhoneCore& core) : database_(std::make_shared<SettingsDatabase>()), core_(core) {}

std::shared_ptr<DataShareHelper> Settings::Connect(const std::shared_ptr<IRemoteObject>& remote,
                                                   const std::string& /*uri*/, const std::string& /*extUri*/) {
    if (remote == nullptr || core_.Fault("DataShareHelper.Creator") != 0) {
        return nullptr;
    }
    return std::make_shared<Helper>(core_, database_);
}

void Settings::Apply(const FactsChange::Members<FactsChange::Members<std::string>>& tables) {
    for (const auto& [table, rows] : tables) {
        if (!rows) {
            Statement(database_, kDeleteTable, {table}).Step();
            continue;
        }
        for (const auto& [keyword, value] : *rows) {
            if (value) {
                Statement(database_, kInsert, {table, keyword, *value}).Step();
            } else {
                Statement(database_, kDelete, {table, keyword}).Step();
            }
        }
    }
}

}  // namespace TARN::Simulated
