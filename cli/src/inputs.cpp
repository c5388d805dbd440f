#include "inputs.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <system_error>

#include "exit_status.h"
#include "json_fields.h"
#include "standby_config.h"

namespace TARN::Cli {

namespace {

using DevStandbyMgr::InputError;
using DevStandbyMgr::Refuse;

constexpr char kStandardInput[] = "-";
constexpr size_t kPieceBytes = size_t{64} * 1024;
constexpr size_t kMostLookedAt = size_t{1024} * 1024;

Replay::Trace Read(const std::string& name) {
    Input input(name, "a trace");
    return Replay::ReadTrace(input.Stream(), input.Name());
}

}  // namespace

Input::Input(const std::string& name, const std::string& expected)
    : name_(name), source_(file_.rdbuf()), stream_(this) {
    if (name == kStandardInput) {
        name_ = "standard input";
        source_ = std::cin.rdbuf();
        return;
    }
    if (std::error_code error; std::filesystem::is_directory(name, error)) {
        Refuse(name, "is a directory", expected);
    }
    errno = 0;
    file_.open(name);
    if (!file_.is_open()) {
        Refuse(name, std::strerror(errno), expected);
    }
}

Input::~Input() = default;

bool Input::ReadMore() {
    const size_t held = held_.size();
    held_.resize(held + kPieceBytes);
    const std::streamsize read = source_->sgetn(held_.data() + held, kPieceBytes);
    held_.resize(held + static_cast<size_t>(std::max<std::streamsize>(read, 0)));
    setg(held_.data(), held_.data(), held_.data() + held_.size());
    return read > 0;
}

Input::int_type Input::underflow() {
    held_.clear();
    return ReadMore() ? traits_type::to_int_type(*gptr()) : traits_type::eof();
}

std::string_view Input::FirstLine() {
    for (size_t begin = 0;;) {
        size_t end = held_.find('\n', begin);
        const bool isWhole = end != std::string::npos;
        if (!isWhole && held_.size() < kMostLookedAt && ReadMore()) {
            continue;
        }
        end = isWhole ? end : held_.size();
        const std::string_view line = std::string_view(held_).substr(begin, end - begin);
        const size_t text = line.find_first_not_of(" \t\r");
        if (!isWhole || (text != std::string_view::npos && line[text] != '#')) {
            return line;
        }
        begin = end + 1;
    }
}

std::optional<std::vector<Replay::Trace>> ReadInputs(const std::vector<std::string>& names, const std::string& config,
                                                     Progress& progress) {
    std::vector<Replay::Trace> traces;
    traces.reserve(names.size());
    bool isRight = true;
    const auto complain = [&](const std::string& text) {
        progress.Erase();
        Complain(text);
        isRight = false;
    };
    std::optional<DevStandbyMgr::StandbyConfigFile> overrides;
    try {
        if (!config.empty()) {
            overrides.emplace(config);
        }
    } catch (const InputError& error) {
        complain(error.what());
    }
    if (std::count(names.begin(), names.end(), kStandardInput) > 1) {
        complain("- stands for standard input, which can be read once only");
        return std::nullopt;
    }
    for (size_t i = 0; i < names.size(); ++i) {
        progress.Show("reading", static_cast<double>(i) / static_cast<double>(names.size()));
        try {
            Replay::Trace trace = Read(names[i]);
            if (overrides) {
                overrides->LayOver(trace.host);
            }
            traces.push_back(std::move(trace));
        } catch (const InputError& error) {
            complain(error.what());
        }
    }
    return isRight ? std::optional(std::move(traces)) : std::nullopt;
}

}  // namespace TARN::Cli
