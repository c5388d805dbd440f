#include "completion.h"

#include <algorithm>
#include <cctype>
#include <set>

#include "commands.h"
#include "common_event_support.h"
#include "operations.h"
#include "phrases.h"
#include "standby_constants.h"
#include "why.h"

namespace TARN::Shell {

namespace {

using Words = std::set<std::string>;

Words CommandNames() {
    Words names;
    for (const CommandGroup& group : CommandGroups()) {
        for (const Command& command : group.commands) {
            names.emplace(command.name);
        }
    }
    return names;
}

/// Those that can be typed as one word.
Words AppNames(const Simulated::PhoneFacts& facts) {
    Words names;
    for (const Simulated::Process& process : facts.processes) {
        names.insert(process.name);
        names.insert(process.bundles.begin(), process.bundles.end());
    }
    std::erase_if(names, [](const std::string& name) {
        return name.find(' ') != std::string::npos || name != Story::Tame(name);
    });
    return names;
}

Words Broadcasts() {
    using EventFwk::CommonEventSupport;
    Words names;
    for (const std::string_view name :
         {CommonEventSupport::COMMON_EVENT_SCREEN_ON, CommonEventSupport::COMMON_EVENT_SCREEN_OFF,
          CommonEventSupport::COMMON_EVENT_SCREEN_UNLOCKED, CommonEventSupport::COMMON_EVENT_CHARGING,
          CommonEventSupport::COMMON_EVENT_DISCHARGING, CommonEventSupport::COMMON_EVENT_POWER_SAVE_MODE_CHANGED,
          CommonEventSupport::COMMON_EVENT_TIME_CHANGED, CommonEventSupport::COMMON_EVENT_TIMEZONE_CHANGED}) {
        names.emplace(name);
    }
    return names;
}

Words Subjects() {
    Words words;
    for (size_t i = 0; i < Story::kAbouts; ++i) {
        words.emplace(Story::WordOf(static_cast<Story::About>(i)));
    }
    return words;
}

Words DumpWords() {
    using namespace DevStandbyMgr;
    Words words;
    for (const std::string_view word :
         {DUMP_DETAIL_INFO, DUMP_STRATGY_DETAIL, DUMP_SIMULATE_SENSOR, DUMP_POWEROFF_STRATEGY}) {
        words.emplace(word);
    }
    return words;
}

/// What a word of a usage in capitals stands for; nothing where that cannot be told.
Words StandIns(std::string_view name, const Simulated::PhoneFacts& facts) {
    if (name == "WORD") {
        return CommandNames();
    }
    if (name == "NAME") {
        return AppNames(facts);
    }
    if (name == "ACTION") {
        return Broadcasts();
    }
    if (name == "OPERATION") {
        return {Simulated::Operations().begin(), Simulated::Operations().end()};
    }
    if (name == "VALUE") {
        const auto names = ValueNames();
        return {names.begin(), names.end()};
    }
    if (name == "ABOUT") {
        return Subjects();
    }
    return name == "DUMPWORD..." ? DumpWords() : Words();
}

/// The alternatives of one word of a usage, "[light|deep]".
Words Alternatives(std::string_view word, const Simulated::PhoneFacts& facts) {
    Words alternatives;
    while (!word.empty()) {
        const size_t length = std::min(word.find_first_of("[]|"), word.size());
        const std::string_view one = word.substr(0, length);
        if (!one.empty() && std::islower(static_cast<unsigned char>(one.front())) != 0) {
            alternatives.emplace(one);
        } else if (one.starts_with("--")) {
            alternatives.emplace(one);
        } else {
            alternatives.merge(StandIns(one, facts));
        }
        word.remove_prefix(std::min(length + 1, word.size()));
    }
    return alternatives;
}

/// What can stand behind a command's name and the words `before`.
Words Following(const Command& command, const std::vector<std::string>& before, const Simulated::PhoneFacts& facts) {
    if (command.name == "why" && (before.empty() || before.back() != "--app")) {
        Words words = before.empty() ? Subjects() : Words();
        words.insert("--app");
        return words;
    }
    std::string_view usage = command.usage;
    std::string_view word = TakeWord(usage);
    for (size_t i = 0; i < before.size() && !word.ends_with("...]"); ++i) {
        word = TakeWord(usage);
    }
    return Alternatives(command.name == "why" ? "NAME" : word, facts);
}

}  // namespace

std::vector<std::string> Completions(std::string_view text, const Simulated::PhoneFacts& facts) {
    std::vector<std::string> before;
    const size_t last = text.find_last_of(" \t") + 1;
    std::string_view rest = text.substr(0, last);
    while (!rest.empty()) {
        if (const std::string_view word = TakeWord(rest); !word.empty()) {
            before.emplace_back(word);
        }
    }
    Words words;
    if (before.empty()) {
        words = CommandNames();
    } else if (const Command* command = FindCommand(before.front())) {
        before.erase(before.begin());
        words = Following(*command, before, facts);
    }
    const std::string_view begun = text.substr(last);
    std::erase_if(words, [&](const std::string& word) { return !word.starts_with(begun); });
    return {words.begin(), words.end()};
}

}  // namespace TARN::Shell
