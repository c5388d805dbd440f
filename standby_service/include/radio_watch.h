#ifndef STANDBY_SERVICE_RADIO_WATCH_H
#define STANDBY_SERVICE_RADIO_WATCH_H

#include <cstdint>
#include <memory>
#include <string_view>

#include "event_handler.h"
#include "owned_tasks.h"
#include "radio_ledger.h"
#include "standby_config.h"
#include "standby_message.h"

namespace TARN::DevStandbyMgr {

/// Sees to it that no radio stays off that nothing wants off any more: has the device's ledger switch on what it holds
/// when the service has started, and when the screen has been on for a minute; what is refused then, again after
/// StandbyPolicy::retryAfterSeconds as long as the screen stays on. Does nothing on a device without a ledger.
class RadioWatch {
public:
    RadioWatch(const StandbyConfig& config, std::shared_ptr<AppExecFwk::EventHandler> handler);

    /// The strategies have brought back what they knew of.
    void Start();
    void Stop();

    /// The plugin goes, and with it all that it wanted.
    void OnUnload();

    /// The strategies have been told.
    void OnDelivered(const StandbyMessage& message);

    /// What the handler's thread does while this lives, for the ledger to keep.
    class Work {
    public:
        Work(const RadioWatch& watch, std::string_view name) : ledger_(watch.ledger_) { Note(name); }
        ~Work() { Note({}); }
        Work(const Work&) = delete;
        Work& operator=(const Work&) = delete;

    private:
        void Note(std::string_view name) {
            if (ledger_ != nullptr) {
                ledger_->NoteWork(name);
            }
        }

        RadioLedger* ledger_;
    };

private:
    [[nodiscard]] RadioLedger::WantedOff Wanted() const noexcept;
    void Look();
    void LookIn(int64_t delayMs);

    RadioLedger* ledger_;
    int64_t retryMs_;
    bool isPowerOffAlive_;
    bool isScreenOn_ = true;
    bool isUserAsleep_ = false;
    bool isLookWaiting_ = false;
    OwnedTasks tasks_;
};

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_RADIO_WATCH_H
