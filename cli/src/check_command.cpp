#include "check_command.h"

#include <memory>

#include "exit_status.h"
#include "inputs.h"
#include "json_fields.h"
#include "progress.h"
#include "slip_watch.h"
#include "trace_names.h"

namespace TARN::Cli {

namespace {

struct CheckOptions {
    ManyTraces many;
    bool isStrict = false;
    bool isProgressHidden = false;
};

constexpr char kCheckFooter[] =
    "A slip is what a trace may say and its writer hardly means: a broadcast that nobody listens to, a member\n"
    "or a name that nobody asks for, a state out of its range, a charger of which nobody is told. Each kind is\n"
    "told once a trace, on standard error. replay tells the same.\n"
    "Exit status:\n"
    "  0  every trace can be played\n"
    "  2  one cannot, or with --strict one has a slip\n";

std::string Count(size_t count, const std::string& what) {
    return (count == 0 ? "no" : std::to_string(count)) + " " + what + (count == 1 ? "" : "s");
}

int RunCheck(const CheckOptions& options, OutputFile& output) {
    Progress progress(!options.isProgressHidden);
    const auto tell = [&progress](const std::string& line) {
        progress.Erase();
        Complain(line);
    };
    SlipWatch slips(/*isStrict=*/false, tell);  // all of them are looked through, whatever is found
    TraceNames names(options.many.names, options.many.list);
    size_t read = 0;
    size_t wrong = 0;
    for (bool isOver = false; !isOver;) {
        const size_t waiting = names.Waiting();
        progress.Show("checking", static_cast<double>(read) / static_cast<double>(read + waiting + 1));
        try {
            const auto name = names.Next();
            isOver = !name;
            if (name) {
                ++read;
                (void)slips.Read(*name);
            }
        } catch (const DevStandbyMgr::InputError& error) {
            tell(error.what());
            ++wrong;
        }
    }
    progress.Erase();
    output.Stream() << Count(read, "trace") << ", " << Count(slips.Count(), "slip")
                    << (wrong == 0 ? "" : ", " + std::to_string(wrong) + " cannot be played") << '\n';
    const int status = output.Finish();
    const bool isWrong = wrong > 0 || (options.isStrict && slips.Count() > 0);
    return status == kDone && isWrong ? kInputWrong : status;
}

}  // namespace

void AddCheck(CLI::App& app, Action& action) {
    const auto shared = std::make_shared<CheckOptions>();
    CLI::App& command = *app.add_subcommand("check", "Read traces; tell what they hardly mean");
    command.footer(kCheckFooter);
    AddTraceNames(command, shared->many, "Traces to check");
    AddStrict(command, shared->isStrict);
    command.add_flag("--no-progress", shared->isProgressHidden, "Show no progress on the terminal");
    command.callback([shared, &action] {
        CheckNamed(shared->many);
        action = [shared](OutputFile& output) { return RunCheck(*shared, output); };
    });
}

}  // namespace TARN::Cli
