#include "why_command.h"

#include <memory>
#include "exit_status.h"
#include "inputs.h"
#include "night_reader.h"
#include "player.h"
#include "progress.h"
#include "time_argument.h"
#include "why.h"

namespace TARN::Cli {

namespace {

struct WhyOptions {
    PlayerOptions player;
    std::string trace;
    std::string at;  ///< as ReadTimeArgument takes it
    Story::WhyQuestion question;
    AnswerFormat format = AnswerFormat::TEXT;
};

constexpr char kWhyFooter[] =
    "Examples:\n"
    "  standby why night.jsonl --at 02:13                      everything, a line or two each\n"
    "  standby why night.jsonl --at 01:30 --about bluetooth    ... and what led to it\n"
    "  standby why night.jsonl --at 02:13 --app com.example.music\n";

int RunWhy(const WhyOptions& options, OutputFile& output) {
    Progress progress(!options.player.isProgressHidden);
    const Replay::Trace trace = ReadInput(options.trace, options.player.config);
    Story::NightReader reader;
    const int64_t t = ReadTimeArgument("--at", options.at, trace);
    Replay::Play(trace, {options.player.plugin, [&](double fraction) { progress.Show("playing", fraction); }}, reader);
    const Story::WhyAnswer answer = Story::Ask(reader.Result(), t, options.question);
    progress.Erase();
    if (options.format == AnswerFormat::JSON) {
        output.Stream() << Story::ToJson(answer).dump(2) << '\n';
    } else {
        Story::Tell(answer, output.Stream());
    }
    return output.Finish();
}

/// The words of --about.
std::vector<std::string> Subjects() {
    std::vector<std::string> words;
    for (size_t i = 0; i < Story::kAbouts; ++i) {
        words.emplace_back(Story::WordOf(static_cast<Story::About>(i)));
    }
    return words;
}

}  // namespace

void AddWhy(CLI::App& app, Action& action) {
    const auto shared = std::make_shared<WhyOptions>();
    WhyOptions& options = *shared;
    CLI::App& command = *app.add_subcommand("why", "Play a trace; tell why it is as it is at one moment");
    command.footer(kWhyFooter);
    AddTrace(command, options.trace, "The trace to play, - for standard input").required();
    AddAt(command, options.at).required();
    CLI::Option* about = command
                             .add_option_function<std::string>(
                                 "--about",
                                 [&options](const std::string& word) {
                                     options.question.about = Story::AboutOf(word);
                                     if (!options.question.about) {
                                         throw CLI::ValidationError("--about", word + "; expected one of " +
                                                                                   CLI::detail::join(Subjects(), ", "));
                                     }
                                 },
                                 "One subject and all that is known of it: " + CLI::detail::join(Subjects(), ", "))
                             ->type_name("SUBJECT");
    NameWords(*about, Subjects());
    command
        .add_option("--app", options.question.app,
                    "An application or native process, by name, bundle, uid or pid, in place of a subject")
        ->type_name("NAME")
        ->excludes(about);
    AddAnswerFormat(command, options.format);
    AddPlayerOptions(command, options.player);
    command.callback([shared, &action] { action = [shared](OutputFile& output) { return RunWhy(*shared, output); }; });
}

}  // namespace TARN::Cli
