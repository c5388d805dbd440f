#include "crash_line.h"

#include <unistd.h>

#include <array>
#include <charconv>
#include <csignal>
#include <cstdint>
#include <string_view>

#include "plain_text.h"
#include "result_file.h"
#include "session.h"

namespace TARN::Cli {

namespace {

constexpr std::array kCrashes = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT};
std::array<struct sigaction, kCrashes.size()> before;

/// A line that is put together without memory of the heap, which may be what broke.
class Line {
public:
    void Add(std::string_view text) noexcept {
        for (size_t i = 0; i < text.size() && length_ < text_.size() - 1; ++i) {
            // a name must not steer the terminal
            const size_t control = DevStandbyMgr::ControlAt(text.substr(i));
            text_[length_++] = control > 0 ? '?' : text[i];
            i += control > 1 ? control - 1 : 0;
        }
    }
    void Add(int64_t number, size_t digits) noexcept {
        std::array<char, 24> text{};
        const auto end = std::to_chars(text.data(), text.data() + text.size(), number).ptr;
        for (auto length = static_cast<size_t>(end - text.data()); length < digits; ++length) {
            Add("0");
        }
        Add({text.data(), static_cast<size_t>(end - text.data())});
    }
    /// How far into the trace it was, as a time argument is written: +5h13m02s.
    void AddMoment(int64_t ms) noexcept {
        const int64_t seconds = ms / 1000;
        Add("+");
        Add(seconds / 3600, 1);
        Add("h");
        Add(seconds / 60 % 60, 2);
        Add("m");
        Add(seconds % 60, 2);
        Add("s");
    }
    void Write() noexcept {
        text_[length_++] = '\n';
        [[maybe_unused]] const ssize_t ignored = ::write(STDERR_FILENO, text_.data(), length_);
    }

private:
    std::array<char, 1024> text_{};
    size_t length_ = 0;
};

void Tell(int signal, siginfo_t* info, void* /*context*/) {
    for (size_t i = 0; i < kCrashes.size(); ++i) {
        ::sigaction(kCrashes[i], &before[i], nullptr);
    }
    RemoveUnfinished();
    if (const auto running = Replay::WhatRuns()) {
        Line line;
        line.Add("standby: ");
        line.Add(running->trace);
        if (*running->side != '\0') {
            line.Add(", ");
            line.Add(running->side);
        }
        line.Add(": crashed at ");
        line.AddMoment(running->sinceStartMs);
        line.Write();
    }
    // What made the fault makes it again on return, and abort() goes on by itself; what somebody sent does not.
    if (info->si_code <= 0 && signal != SIGABRT) {
        ::raise(signal);
    }
}

}  // namespace

void TellOfCrashes() {
    // a stack of its own, for what crashes may be the stack
    static std::array<char, 64 * 1024> memory;
    stack_t stack{};
    if (::sigaltstack(nullptr, &stack) == 0 && (stack.ss_flags & SS_DISABLE) != 0) {
        stack = {};
        stack.ss_sp = memory.data();
        stack.ss_size = memory.size();
        ::sigaltstack(&stack, nullptr);
    }
    struct sigaction action {};
    action.sa_sigaction = Tell;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK;
    for (size_t i = 0; i < kCrashes.size(); ++i) {
        ::sigaction(kCrashes[i], &action, &before[i]);
    }
}

}  // namespace TARN::Cli
