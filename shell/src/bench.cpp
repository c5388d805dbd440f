#include "bench.h"

namespace TARN::Shell {

void News::OnEvent(const Story::Night& night, const Story::Event& event) {
    if (!isListening_ || event.subject == Story::Subject::DUMP) {
        return;
    }
    if (event.isRepeat && areStatesRepeated_ && event.subject == Story::Subject::STATE) {
        Story::Event again = event;
        again.isRepeat = false;
        timeline_.OnEvent(night, again);
    } else {
        timeline_.OnEvent(night, event);
    }
}

template <class Call>
void Hearing::Each(const Call& call) {
    call(reader_);
    if (witness_ != nullptr) {
        call(*witness_);
    }
}

void Hearing::OnBegin(const Replay::Trace& trace) {
    Each([&](RecordSink& sink) { sink.OnBegin(trace); });
}

void Hearing::OnStep(const Replay::Step& step) {
    Each([&](RecordSink& sink) { sink.OnStep(step); });
}

void Hearing::OnLog(int64_t t, const LogLine& line) {
    Each([&](RecordSink& sink) {
        if (line.level >= sink.LeastLog()) {
            sink.OnLog(t, line);
        }
    });
}

void Hearing::OnCall(int64_t t, std::string_view operation, const nlohmann::ordered_json& arguments,
                     const nlohmann::ordered_json& result) {
    Each([&](RecordSink& sink) { sink.OnCall(t, operation, arguments, result); });
}

void Hearing::OnDeliver(int64_t t, const DevStandbyMgr::StandbyMessage& message) {
    Each([&](RecordSink& sink) { sink.OnDeliver(t, message); });
}

void Hearing::OnReason(int64_t t, const DevStandbyMgr::HostReason& reason) {
    Each([&](RecordSink& sink) {
        if (sink.WantsReasons()) {
            sink.OnReason(t, reason);
        }
    });
}

void Hearing::OnDump(int64_t t, const std::string& text) {
    dump_ = text;
    Each([&](RecordSink& sink) { sink.OnDump(t, text); });
}

void Hearing::OnEnd(int64_t t, const Replay::Summary& summary) {
    Each([&](RecordSink& sink) { sink.OnEnd(t, summary); });
}

Bench::Bench(const Replay::Trace& trace, const Replay::TraceLines& lines, ShellOptions shellOptions,
             std::ostream& stream)
    : options(std::move(shellOptions)),
      output(stream),
      news(stream, options.isColored),
      hearing(news, options.witness),
      phone(trace, lines, options.pluginPath, hearing) {
    TellNews();
    news.Listen(true);
}

void Bench::TellNews() {
    hearing.Settle();
    news.Flush();
}

void Bench::TellAll() {
    News all(output, options.isColored);
    all.Listen(true);
    for (const Story::Event& event : hearing.Night().events) {
        all.OnEvent(hearing.Night(), event);
    }
    all.Flush();
}

}  // namespace TARN::Shell
