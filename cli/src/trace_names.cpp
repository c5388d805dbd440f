#include "trace_names.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <system_error>

#include "json_fields.h"
#include "output_file.h"
#include "plain_text.h"

namespace TARN::Cli {

namespace {

namespace fs = std::filesystem;

using DevStandbyMgr::InputError;
using DevStandbyMgr::Refuse;

constexpr char kStandardInput[] = "-";
constexpr char kExpectedList[] = "a file with the name of a trace on each line";
constexpr size_t kLongestName = size_t{1024} * 1024;

bool IsTrace(const fs::directory_entry& entry) {
    std::error_code ignored;
    const std::string name = entry.path().filename().string();
    return (name.ends_with(".jsonl") || name.ends_with(".jsonl.gz")) && entry.is_regular_file(ignored);
}

}  // namespace

TraceNames::TraceNames(const std::vector<std::string>& names, const std::string& list)
    : named_(names.begin(), names.end()), listName_(list == kStandardInput ? "standard input" : list) {
    const auto readers = std::count(names.begin(), names.end(), kStandardInput) + (list == kStandardInput ? 1 : 0);
    if (readers > 1) {
        throw InputError("- stands for standard input, which can be read once only");
    }
    if (list == kStandardInput) {
        RequireStandardInput();
        list_ = &std::cin;
    } else if (!list.empty()) {
        errno = 0;
        file_.open(list);
        if (!file_.is_open()) {
            Refuse(list, std::strerror(errno), kExpectedList);
        }
        list_ = &file_;
    }
    std::error_code error;
    areMany_ = names.size() != 1 || list_ != nullptr || fs::is_directory(names.front(), error);
}

std::optional<std::string> TraceNames::Next() {
    while (folder_.empty()) {
        auto name = NextNamed();
        if (!name) {
            return std::nullopt;
        }
        if (std::error_code error; !fs::is_directory(*name, error)) {
            return name;
        }
        Open(*name);
    }
    std::string name = std::move(folder_.front());
    folder_.pop_front();
    return name;
}

std::optional<std::string> TraceNames::NextNamed() {
    std::string name;
    if (!named_.empty()) {
        name = std::move(named_.front());
        named_.pop_front();
        return name;
    }
    try {
        while (list_ != nullptr && DevStandbyMgr::ReadLine(*list_, name, kExpectedList, kLongestName)) {
            if (!name.empty()) {
                return name;
            }
        }
        if (list_ != nullptr && list_->bad()) {
            Refuse("", "cannot be read", kExpectedList);
        }
    } catch (const InputError& error) {
        list_ = nullptr;  // there is nothing behind it
        throw InputError(listName_ + ": " + error.what());
    }
    return std::nullopt;
}

void TraceNames::Open(const std::string& folder) {
    std::vector<std::string> found;
    std::error_code error;
    for (fs::recursive_directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        if (IsTrace(*entry)) {
            found.push_back(entry->path().string());
        }
    }
    if (error) {
        Refuse(folder, error.message(), "a folder that can be read");
    }
    if (found.empty()) {
        Refuse(folder, "holds no trace", "files with names that end in .jsonl or .jsonl.gz");
    }
    std::sort(found.begin(), found.end());
    folder_.assign(found.begin(), found.end());
}

}  // namespace TARN::Cli
