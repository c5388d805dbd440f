#ifndef PLATFORM_RADIO_LEDGER_H
#define PLATFORM_RADIO_LEDGER_H

#include <cstdint>
#include <string_view>

namespace TARN {

/// Holds the radios that calls of this process switched off, over its end and its crash, until they are on again. What
/// goes through the device's ports is entered by itself. Any thread may call.
class RadioLedger {
public:
    /// What somebody still wants to be off.
    enum class WantedOff : uint8_t { NOTHING, BLUETOOTH };

    virtual ~RadioLedger() = default;

    /// The calling thread works on this from now on, "USER_SLEEP_STATE_CHANGED": it is kept with what is switched off
    /// meanwhile. Empty: on nothing that has a name. One thread at a time.
    virtual void NoteWork(std::string_view work) = 0;

    /// Whether any radio is held, those aside that are still wanted off.
    [[nodiscard]] virtual bool HoldsForgotten(WantedOff wanted) = 0;

    /// Switches on each such radio that is not on by itself, and logs for each what was forgotten and by whom. Those
    /// that do not come on stay held.
    virtual void SwitchOnForgotten(WantedOff wanted) = 0;
};

}  // namespace TARN

#endif  // PLATFORM_RADIO_LEDGER_H
