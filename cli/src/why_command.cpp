#include "why_command.h"

#include "exit_status.h"
#include "inputs.h"
#include "json_fields.h"
#include "night_reader.h"
#include "player.h"
#include "time_argument.h"

namespace TARN::Cli {

int RunWhy(const WhyOptions& options, OutputFile& output) {
    Progress progress(!options.player.isProgressHidden);
    const auto traces = ReadInputs({options.trace}, options.player.config, progress);
    if (!traces) {
        return kInputWrong;
    }
    const Replay::Trace& trace = traces->front();
    Story::NightReader reader;
    Story::WhyAnswer answer;
    try {
        const int64_t t = ReadTimeArgument("--at", options.at, trace);
        Replay::Play(trace, {options.player.plugin, [&](double fraction) { progress.Show("playing", fraction); }},
                     reader);
        answer = Story::Ask(reader.Result(), t, options.question);
    } catch (const DevStandbyMgr::InputError& error) {
        progress.Erase();
        Complain(error.what());
        return kInputWrong;
    } catch (const Replay::RunError& error) {
        progress.Erase();
        Complain(error.what());
        return kRunFailed;
    }
    progress.Erase();
    if (options.format == AnswerFormat::JSON) {
        output.Stream() << Story::ToJson(answer).dump(2) << '\n';
    } else {
        Story::Tell(answer, output.Stream());
    }
    return output.Finish();
}

}  // namespace TARN::Cli
