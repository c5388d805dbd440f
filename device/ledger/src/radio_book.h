#ifndef DEVICE_LEDGER_RADIO_BOOK_H
#define DEVICE_LEDGER_RADIO_BOOK_H

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

#include "device.h"
#include "radio.h"
#include "radio_ledger.h"

namespace TARN::Ledger {

/// The ledger itself. Its file names each radio that is held with when it was switched off and by whom:
/// {"wifi": {"since": 1772400000000, "by": "a timer"}}. It is replaced whole before a switch-off and after a switch-on.
/// No lock is held while the phone is called.
class RadioBook : public RadioLedger {
public:
    explicit RadioBook(Device& phone) : phone_(phone) {}

    /// Enters the radio and then switches it off by `call`, whose status is returned; one that is off already, by
    /// somebody else, is not entered. Where the file cannot be written, the radio stays on and a non-zero status says
    /// so: one that is off and on no paper could be lost.
    int32_t SwitchOff(const std::string& name, const std::function<int32_t()>& call);

    /// Switches the radio on by `call`, whose status is returned. One that somebody else has off stays so, with
    /// success.
    int32_t SwitchOn(const std::string& name, const std::function<int32_t()>& call);

    /// A radio may have gone on or off.
    void Look();

    /// Leaves memory; the file is read again when the ledger is next needed.
    void Close();

    void NoteWork(std::string_view work) override;
    [[nodiscard]] bool HoldsForgotten(WantedOff wanted) override;
    void SwitchOnForgotten(WantedOff wanted) override;

private:
    /// How far a radio that is held has come: a phone switches it a little later than it is told, and what it says
    /// until then is older than what it was told.
    enum class Stage : uint8_t { GOING_OFF, OFF, GOING_ON };

    struct Entry {
        std::shared_ptr<Radio> radio;
        int64_t sinceMs = 0;
        std::string by;
        Stage stage = Stage::OFF;
        uint64_t version = 0;  ///< another one whenever something became of it: an answer may be about a time before
    };
    using Entries = std::map<std::string, Entry>;

    /// What is held, read from the file when it is first asked for. Under the lock, like the two below.
    Entries& Held();
    void ReadFile();
    [[nodiscard]] bool WriteFile();

    [[nodiscard]] Entries Copy();
    [[nodiscard]] bool IsHeld(const std::string& name);

    /// The radio is about to go off. Its version; nothing, and it is not held, where that could not be written.
    [[nodiscard]] std::optional<uint64_t> Enter(const std::string& name, std::shared_ptr<Radio> radio);
    void SetStage(const std::string& name, Stage stage);
    /// The radio is on, unless anything became of it since that was so.
    void Strike(const std::string& name, uint64_t version);
    void SwitchOnForgotten(const std::string& name, const Entry& entry);

    Device& phone_;
    std::mutex mutex_;
    bool isOpen_ = false;
    Entries entries_;
    uint64_t versions_ = 0;
    std::thread::id worker_;
    std::string work_;
};

}  // namespace TARN::Ledger

#endif  // DEVICE_LEDGER_RADIO_BOOK_H
