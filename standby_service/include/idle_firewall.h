#ifndef STANDBY_SERVICE_IDLE_FIREWALL_H
#define STANDBY_SERVICE_IDLE_FIREWALL_H

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "standby_service_errors.h"

namespace TARN::DevStandbyMgr {

/// The device's side of the firewall: the device-idle policy and its trust list, as the device confirmed them last.
/// What it did not confirm is not believed.
class IdleFirewall {
public:
    using Tell = std::function<void(const std::vector<uint32_t>& uids, bool isAdded)>;

    /// Whether the policy is confirmed to be on, or off; neither while nobody knows.
    [[nodiscard]] bool IsOn() const noexcept { return policy_ == true; }
    [[nodiscard]] bool IsOff() const noexcept { return policy_ == false; }

    /// Whether the policy is off and nobody is on its list, both confirmed.
    [[nodiscard]] bool IsGone() const noexcept { return IsOff() && isListKnown_ && trusted_.empty(); }

    /// Who is on the trust list, or may be.
    [[nodiscard]] const std::set<uint32_t>& Trusted() const noexcept { return trusted_; }

    /// Switches the policy. What the policy service answered; a refusal is logged and changes nothing.
    ErrCode Switch(bool enable);

    /// Brings the trust list to `wanted` through `tell`: who joins, then who leaves, and nobody else. `isSaid` says so
    /// too when nobody joins (true) or leaves (false). False when the device did not confirm the list after that.
    bool Bring(const std::set<uint32_t>& wanted, std::optional<bool> isSaid, const Tell& tell);

    /// Takes everybody off the trust list; `suspects` is asked where the device does not tell who that is. False as
    /// above.
    bool Empty(const std::function<std::set<uint32_t>()>& suspects);

    /// "on since 2026-03-02 00:12:00" and what is not confirmed, for the dump; `isWanted` is what it should be.
    [[nodiscard]] std::string Describe(bool isWanted) const;

private:
    bool LookAtList();

    std::optional<bool> policy_;
    int64_t switchedMs_ = 0;  ///< when the policy was last switched, 0 never
    std::set<uint32_t> trusted_;
    bool isListKnown_ = false;
};

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_IDLE_FIREWALL_H
