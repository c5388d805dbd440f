#include "shell.h"

#include <nlohmann/json.hpp>

#include "bench.h"
#include "commands.h"
#include "completion.h"
#include "istate_manager_adapter.h"
#include "json_fields.h"
#include "standby_names.h"
#include "standby_service_impl.h"
#include "time_zone.h"

namespace TARN::Shell {

namespace {

using DevStandbyMgr::InputError;
using DevStandbyMgr::Quote;
using DevStandbyMgr::Refuse;
using Replay::TimeZone;

constexpr char kDay[] = "%a %-d %b %Y %H:%M";

void ExpectUtf8(const std::string& line) {
    try {
        static_cast<void>(nlohmann::json(line).dump());
    } catch (const nlohmann::json::exception&) {
        Refuse("", Quote(line), "text in UTF-8");
    }
}

}  // namespace

struct Shell::Parts {
    Bench bench;
};

Shell::Shell(const Replay::Trace& trace, const Replay::TraceLines& lines, ShellOptions options, std::ostream& output)
    : my_(new Parts{Bench(trace, lines, std::move(options), output)}) {}

Shell::~Shell() = default;

bool Shell::Do(const std::string& line) {
    std::string_view rest = line;
    const std::string name(TakeWord(rest));
    if (name.empty() || name.front() == '#') {
        return true;
    }
    ExpectUtf8(line);
    const Command* command = FindCommand(name);
    if (command == nullptr) {
        Refuse("", Quote(name), "a command; help tells all of them");
    }
    try {
        Arguments words(rest, UsageOf(*command));
        command->run(my_->bench, words);
    } catch (const InputError& error) {
        const std::string text = error.what();
        throw InputError(text.starts_with(name) ? text : name + ": " + text);
    }
    my_->bench.TellNews();
    return !my_->bench.isLeaving;
}

void Shell::Finish() {
    my_->bench.news.Listen(false);  // what the end of the service brings about is nobody's doing
    my_->bench.phone.Finish();
}

std::string Shell::Greeting() const {
    const PhoneAtHand& phone = my_->bench.phone;
    const Replay::Trace& trace = phone.Trace();
    std::string text = trace.name + ", " + TimeZone::Format(phone.NowMs(), kDay) + ", " + trace.timezone.Name() + ".";
    if (!phone.IsTraceOver()) {
        text += " play goes to the end, " + TimeZone::Format(trace.end, kDay) + ".";
    }
    return text + " help tells the words, Tab completes them, quit leaves.\n";
}

std::string Shell::Prompt() const {
    PhoneAtHand& phone = my_->bench.phone;
    return TimeZone::Format(phone.NowMs(), "%H:%M ") +
           DevStandbyMgr::StateName(phone.Service().GetStateManager()->GetCurState()) + "> ";
}

std::vector<std::string> Shell::Complete(std::string_view text) const {
    return Completions(text, my_->bench.phone.Phone().Facts());
}

}  // namespace TARN::Shell
