#include "base_network_strategy.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>
#include <utility>

#include "dump_words.h"
#include "exemption_flag.h"
#include "local_time.h"
#include "net_policy_client.h"
#include "running_applications.h"
#include "standby_constants.h"
#include "standby_service_impl.h"
#include "standby_service_log.h"
#include "time_service_client.h"

namespace TARN::DevStandbyMgr {

namespace {

using NetManagerStandard::NetPolicyClient;

constexpr uint32_t kTaskTypes = 32;
constexpr size_t kFirewalls = 2;

/// The one firewall of the phone, as all network strategies see it, beside the two fields that derived classes share.
struct SharedFirewall {
    bool isWanted = false;
    std::optional<bool> policy;   ///< on or off, as the device confirmed last; nobody knows before it did
    std::set<uint32_t> trusted;   ///< the trust list as the device told last, and whoever may have come onto it since
    bool isListKnown = false;     ///< the device told it, and nothing happened to it that it did not confirm
    bool isStandbysTurn = false;  ///< the applications were collected for deep standby, not for the user's sleep
    int64_t switchedMs = 0;       ///< when the policy was last switched, 0 never
    BaseNetworkStrategy* inCharge = nullptr;                 ///< who follows changes: the last that was asked for it
    std::array<BaseNetworkStrategy*, kFirewalls> live = {};  ///< who brings the rules: those that hear messages
    std::set<uint32_t>* asked = nullptr;                     ///< collects whom a rule would allow
};

SharedFirewall g_firewall;

std::shared_ptr<NetPolicyClient> Client() {
    return DelayedSingleton<NetPolicyClient>::GetInstance();
}

RunningApplications& Applications() {
    return StandbyServiceImpl::GetInstance()->Applications();
}

bool IsExempting(uint32_t taskType, int32_t mask) {
    return taskType < kTaskTypes && ((static_cast<uint32_t>(mask) >> taskType) & 1U) != 0;
}

bool IsPolicy(bool isOn) {
    return g_firewall.policy == isOn;
}

/// Asks the device for the trust list it holds. False, and what is believed of it stays, when it does not tell.
bool LookAtTrustlist() {
    std::vector<uint32_t> uids;
    const int32_t status = Client()->GetDeviceIdleTrustlist(uids);
    g_firewall.isListKnown = status == ERR_OK;
    if (status != ERR_OK) {
        STANDBYSERVICE_LOGW("the trust list could not be read, err code is %{public}d", status);
        return false;
    }
    g_firewall.trusted = {uids.begin(), uids.end()};
    return true;
}

std::vector<uint32_t> Difference(const std::set<uint32_t>& from, const std::set<uint32_t>& without) {
    std::vector<uint32_t> rest;
    std::set_difference(from.begin(), from.end(), without.begin(), without.end(), std::back_inserter(rest));
    return rest;
}

bool IsAutomatic() {
    return StandbyServiceImpl::GetInstance()->IsAutomatic();
}

int32_t StateOf(const StandbyMessage& message) {
    return message.Params().GetIntParam(CURRENT_STATE, 0);
}

}  // namespace

bool BaseNetworkStrategy::isFirewallEnabled_ = false;
std::unordered_map<uint32_t, NetLimitedAppInfo> BaseNetworkStrategy::netLimitedAppInfo_;

BaseNetworkStrategy::~BaseNetworkStrategy() {
    if (g_firewall.inCharge == this) {
        g_firewall.inCharge = nullptr;
    }
    std::replace(g_firewall.live.begin(), g_firewall.live.end(), this, static_cast<BaseNetworkStrategy*>(nullptr));
}

void BaseNetworkStrategy::SetFirewallStatus(bool isEnabled) {
    isFirewallEnabled_ = isEnabled;
}

void BaseNetworkStrategy::ForgetShared() {
    isFirewallEnabled_ = false;
    netLimitedAppInfo_.clear();
    g_firewall = {};
}

void BaseNetworkStrategy::HandleEvent(const StandbyMessage& message) {
    switch (message.eventId) {
        case StandbyMessageType::STATE_TRANSIT:
        case StandbyMessageType::RES_CTRL_CONDITION_CHANGED:
        case StandbyMessageType::ALLOW_LIST_CHANGED:
        case StandbyMessageType::BG_TASK_STATUS_CHANGED:
        case StandbyMessageType::HOST_REFRESH:
            if (IsAutomatic()) {
                g_firewall.live[static_cast<size_t>(kind_)] = this;
                Follow(message);
            }
            break;
        default:
            break;
    }
}

void BaseNetworkStrategy::Follow(const StandbyMessage& message) {
    switch (message.eventId) {
        case StandbyMessageType::STATE_TRANSIT:
            if (StateOf(message) != StandbyState::MAINTENANCE) {
                static_cast<void>(DisableNetworkFirewall(message));
            }
            if (StateOf(message) != StandbyState::SLEEP) {
                GiveUpPending();
            }
            break;
        case StandbyMessageType::ALLOW_LIST_CHANGED:
            UpdateExemptionList(message);
            break;
        case StandbyMessageType::BG_TASK_STATUS_CHANGED:
            UpdateBgTaskAppStatus(message);
            break;
        case StandbyMessageType::HOST_REFRESH:
            HandleProcessStatusChanged(message);
            break;
        default:
            FollowChanges();
            break;
    }
}

ErrCode BaseNetworkStrategy::OnCreated() {
    return ERR_OK;
}

ErrCode BaseNetworkStrategy::OnDestroy() {
    return ERR_OK;
}

ErrCode BaseNetworkStrategy::EnableNetworkFirewall(const StandbyMessage& message) {
    if (StateOf(message) != StandbyState::SLEEP ||
        message.Params().GetIntParam(CURRENT_PHASE, 0) != StandbyPhase::DEEP) {
        return ERR_STATE_REQ_NOT_MET;
    }
    if (isFirewallEnabled_) {
        UpdateFirewallAllowList();
        return ERR_OK;
    }
    return EnableNetworkFirewallInner();
}

ErrCode BaseNetworkStrategy::DisableNetworkFirewall(const StandbyMessage& message) {
    if (!isFirewallEnabled_ || StateOf(message) == StandbyState::SLEEP) {
        return ERR_STATE_REQ_NOT_MET;
    }
    DisableNetworkFirewallInner();
    return idlePolicyStatus_;
}

void BaseNetworkStrategy::GiveUpPending() {
    if (g_firewall.isWanted && !isFirewallEnabled_) {
        g_firewall.isWanted = false;
        static_cast<void>(Settle());
    }
}

ErrCode BaseNetworkStrategy::EnableNetworkFirewallInner() {
    Applications().MarkStale();
    if (IsPolicy(true)) {
        UpdateFirewallAllowList();  // it could not go off, and now it is wanted again
    } else {
        HandleDeviceIdlePolicy(true);
    }
    return idlePolicyStatus_;
}

void BaseNetworkStrategy::DisableNetworkFirewallInner() {
    HandleDeviceIdlePolicy(false);
}

void BaseNetworkStrategy::HandleDeviceIdlePolicy(bool enableFirewall) {
    g_firewall.inCharge = this;
    g_firewall.isWanted = enableFirewall;
    if (enableFirewall && IsPolicy(true)) {
        idlePolicyStatus_ = SwitchPolicy(true);  // says it once more; its list follows changes by itself
    } else {
        idlePolicyStatus_ = Settle();
    }
}

void BaseNetworkStrategy::UpdateFirewallAllowList() {
    g_firewall.inCharge = this;
    g_firewall.isWanted = true;
    Applications().MarkStale();
    idlePolicyStatus_ = Settle();
}

void BaseNetworkStrategy::UpdateExemptionList(const StandbyMessage& message) {
    if (message.Params().GetIntParam("allowType", 0) == AllowType::NETWORK) {
        FollowChanges();
    }
}

void BaseNetworkStrategy::UpdateBgTaskAppStatus(const StandbyMessage& /*message*/) {
    FollowChanges();
}

void BaseNetworkStrategy::HandleProcessStatusChanged(const StandbyMessage& /*message*/) {
    FollowChanges();
}

void BaseNetworkStrategy::FollowChanges() {
    if (g_firewall.inCharge == nullptr) {
        g_firewall.inCharge = this;
    }
    const bool isSettled =
        !g_firewall.isWanted && IsPolicy(false) && g_firewall.isListKnown && g_firewall.trusted.empty();
    if (g_firewall.inCharge == this && !isSettled) {
        static_cast<void>(Settle());
    }
}

/// Brings the device to what is wanted. What it refuses now is tried again later.
ErrCode BaseNetworkStrategy::Settle() {
    const ErrCode status = g_firewall.isWanted ? PutUp() : TakeDown();
    isFirewallEnabled_ = IsPolicy(true);
    if (status != ERR_OK) {
        StandbyServiceImpl::GetInstance()->RefreshLater();
    }
    return status;
}

ErrCode BaseNetworkStrategy::PutUp() {
    const bool isSwitching = !IsPolicy(true);
    std::set<uint32_t> allowed;
    const ErrCode derived = DeriveAllowed(allowed);
    if (derived != ERR_OK && isSwitching) {
        return derived;  // a policy without its list would cut off everybody
    }
    if (derived != ERR_OK || !TellTrustlist(allowed, isSwitching)) {
        StandbyServiceImpl::GetInstance()->RefreshLater();  // the policy goes on without waiting for the list
    }
    return isSwitching ? SwitchPolicy(true) : ERR_OK;
}

ErrCode BaseNetworkStrategy::TakeDown() {
    const bool isSwitching = !IsPolicy(false);
    if (isSwitching) {
        if (const ErrCode status = SwitchPolicy(false); status != ERR_OK) {
            return status;  // and whoever is on the list of a policy that stays needs it
        }
    }
    if (!TellTrustlist({}, isSwitching)) {
        StandbyServiceImpl::GetInstance()->RefreshLater();
    }
    return ERR_OK;
}

ErrCode BaseNetworkStrategy::SwitchPolicy(bool enable) {
    const int32_t status = Client()->SetDeviceIdlePolicy(enable);
    if (status != ERR_OK) {
        STANDBYSERVICE_LOGW("the device-idle policy was refused, err code is %{public}d", status);
        return status;
    }
    if (std::exchange(g_firewall.policy, enable) != enable) {
        g_firewall.switchedMs = MiscServices::TimeServiceClient::GetInstance()->GetWallTimeMs();
    }
    return ERR_OK;
}

/// Tells the device what has to change on its trust list. `isSwitching` says so too when nothing has to. False when the
/// device did not confirm that the list is as wanted after that.
bool BaseNetworkStrategy::TellTrustlist(const std::set<uint32_t>& wanted, bool isSwitching) {
    const bool isKnown = LookAtTrustlist();
    const std::vector<uint32_t> added = Difference(wanted, isKnown ? g_firewall.trusted : std::set<uint32_t>());
    const std::vector<uint32_t> removed = Difference(g_firewall.trusted, wanted);
    if (!added.empty() || (isSwitching && g_firewall.isWanted)) {
        SetFirewallAllowedList(added, true);
    }
    if (!removed.empty() || (isSwitching && !g_firewall.isWanted)) {
        SetFirewallAllowedList(removed, false);
    }
    if (isKnown && added.empty() && removed.empty()) {
        return true;
    }
    if (isKnown && LookAtTrustlist()) {
        return g_firewall.trusted == wanted;
    }
    g_firewall.isListKnown = false;
    g_firewall.trusted.insert(wanted.begin(), wanted.end());  // whoever may be on it, to be taken off some day
    return false;
}

/// Whom the strategy that this moment belongs to lets through. The bits of the applications stay as they were when they
/// cannot be had.
ErrCode BaseNetworkStrategy::DeriveAllowed(std::set<uint32_t>& allowed) {
    ErrCode status = CollectApps();
    BaseNetworkStrategy* judge = this;
    if (status == ERR_OK && IsAutomatic()) {
        const Firewall turn = g_firewall.isStandbysTurn ? Firewall::DEEP_STANDBY : Firewall::USER_SLEEP;
        BaseNetworkStrategy* live = g_firewall.live[static_cast<size_t>(turn)];
        if (live != nullptr && live != this) {
            judge = live;
            status = judge->CollectApps();  // by its own mask of tasks
        }
    }
    if (status == ERR_OK) {
        allowed = judge->AskWhoIsAllowed();
    }
    return status;
}

ErrCode BaseNetworkStrategy::CollectApps() {
    auto before = netLimitedAppInfo_;
    const ErrCode status = InitNetLimitedAppInfo();
    if (status != ERR_OK) {
        netLimitedAppInfo_.swap(before);
    }
    return status;
}

std::set<uint32_t> BaseNetworkStrategy::AskWhoIsAllowed() {
    std::set<uint32_t> allowed;
    g_firewall.asked = &allowed;
    SetNetAllowApps(true);
    g_firewall.asked = nullptr;
    return allowed;
}

bool BaseNetworkStrategy::IsAskedOnly(const std::vector<uint32_t>& uids) {
    if (g_firewall.asked == nullptr) {
        return false;
    }
    g_firewall.asked->insert(uids.begin(), uids.end());
    return true;
}

void BaseNetworkStrategy::SetNetAllowApps(bool isAllow) {
    std::vector<uint32_t> uids;
    for (const auto& [uid, app] : netLimitedAppInfo_) {
        if (IsExempted(app.exemptionFlags)) {
            uids.push_back(uid);
        }
    }
    if (!IsAskedOnly(uids)) {
        SetFirewallAllowedList(uids, isAllow);
    }
}

void BaseNetworkStrategy::ResetFirewallAllowList() {
    g_firewall.isWanted = false;
    g_firewall.inCharge = nullptr;
    std::replace(g_firewall.live.begin(), g_firewall.live.end(), this, static_cast<BaseNetworkStrategy*>(nullptr));
    netLimitedAppInfo_.clear();
    if (!IsPolicy(false) && SwitchPolicy(false) != ERR_OK) {
        StandbyServiceImpl::GetInstance()->RefreshLater();
        return;
    }
    if (!LookAtTrustlist() && Applications().Update() == ERR_OK) {
        for (const auto& [uid, app] : Applications().ByUid()) {
            g_firewall.trusted.insert(static_cast<uint32_t>(uid));  // anybody may be on it
        }
    }
    if (const std::vector<uint32_t> uids = Difference(g_firewall.trusted, {}); !uids.empty()) {
        if (const int32_t status = Client()->SetDeviceIdleTrustlist(uids, false); status == ERR_OK) {
            g_firewall.trusted.clear();
        } else {
            STANDBYSERVICE_LOGW("the trust list could not be emptied, err code is %{public}d", status);
        }
    }
    if (!g_firewall.trusted.empty() || !g_firewall.isListKnown) {
        StandbyServiceImpl::GetInstance()->RefreshLater();
    }
}

ErrCode BaseNetworkStrategy::InitNetLimitedAppInfo() {
    if (GetAllRunningAppInfo() != ERR_OK || GetExemptionConfig() != ERR_OK || !AddTaskAndForegroundFlags()) {
        return ERR_RUNNING_PROCESSES_UNAVAILABLE;
    }
    g_firewall.isStandbysTurn = true;
    return ERR_OK;
}

ErrCode BaseNetworkStrategy::GetAllRunningAppInfo() {
    g_firewall.isStandbysTurn = false;
    if (Applications().Update() != ERR_OK) {
        return ERR_RUNNING_PROCESSES_UNAVAILABLE;
    }
    if (!Applications().AreAllClassified()) {
        StandbyServiceImpl::GetInstance()->RefreshLater();
    }
    netLimitedAppInfo_.clear();
    for (const auto& [uid, app] : Applications().ByUid()) {
        const bool isSystem = app.isSystem.value_or(false);
        netLimitedAppInfo_[static_cast<uint32_t>(uid)] = {app.name,
                                                          isSystem ? ExemptionFlag::UNRESTRICTED : uint8_t{0}};
    }
    return ERR_OK;
}

ErrCode BaseNetworkStrategy::GetExemptionConfig() {
    std::set<std::string> allowed;
    std::set<std::string> restricted;
    if (!StandbyServiceImpl::GetInstance()->FetchExemptions(AllowType::NETWORK, "NETWORK", allowed, restricted)) {
        return ERR_RUNNING_PROCESSES_UNAVAILABLE;
    }
    for (const auto& [uid, app] : Applications().ByUid()) {
        const auto entry = netLimitedAppInfo_.find(static_cast<uint32_t>(uid));
        if (entry == netLimitedAppInfo_.end()) {
            continue;
        }
        for (const RunningApplication::Process& process : app.processes) {
            if (allowed.count(process.name) != 0) {
                entry->second.exemptionFlags |= ExemptionFlag::EXEMPTION;
            }
            if (restricted.count(process.name) != 0) {
                entry->second.exemptionFlags |= ExemptionFlag::RESTRICTED;
            }
        }
    }
    return ERR_OK;
}

/// False when the phone never told, on a host that decides by itself: who plays or is looked at would be cut off.
bool BaseNetworkStrategy::AddTaskAndForegroundFlags() {
    if (!Applications().UpdateUse()) {
        StandbyServiceImpl::GetInstance()->RefreshLater();
        if (!Applications().IsUseKnown() && IsAutomatic()) {
            return false;
        }
    }
    for (const auto& [uid, app] : Applications().ByUid()) {
        uint8_t& flags = netLimitedAppInfo_[static_cast<uint32_t>(uid)].exemptionFlags;
        const bool isExempted = std::any_of(app.taskTypes.begin(), app.taskTypes.end(),
                                            [this](uint32_t type) { return IsExempting(type, exemptedTaskType_); });
        flags |= isExempted ? ExemptionFlag::CONTINUOUS_TASK : uint8_t{0};
        flags |= app.isForeground ? ExemptionFlag::FOREGROUND : uint8_t{0};
    }
    return true;
}

void BaseNetworkStrategy::ShellDump(const std::vector<std::string>& args, std::string& result) {
    if (!IsDetailDump(args) || !IsAutomatic()) {
        return;
    }
    const BaseNetworkStrategy* teller = g_firewall.inCharge;
    if (teller == nullptr) {
        const auto live =
            std::find_if(g_firewall.live.begin(), g_firewall.live.end(), [](const auto* one) { return one; });
        teller = live == g_firewall.live.end() ? this : *live;
    }
    if (teller != this) {
        result += "told by the one in charge\n";  // the firewall is one
        return;
    }
    result += std::string("firewall: ") + (IsPolicy(true) ? "on" : IsPolicy(false) ? "off" : "not known");
    result += g_firewall.switchedMs == 0 ? "" : " since " + LocalTimeText(g_firewall.switchedMs);
    if (!IsPolicy(g_firewall.isWanted)) {
        result += g_firewall.isWanted ? ", to go on as soon as it can" : ", to go off as soon as it can";
    }
    result += "\n";
    if (!g_firewall.isListKnown) {
        result += "the device did not confirm its trust list\n";
    }
    if (!IsPolicy(false) || g_firewall.isWanted) {
        result += g_firewall.isStandbysTurn ? "rule: deep standby\n" : "rule: user sleep, configured exemptions only\n";
        DumpApplications(result);
    } else if (!g_firewall.trusted.empty()) {
        result += "trust list: " + std::to_string(g_firewall.trusted.size()) + " left, to be taken off\n";
    }
}

void BaseNetworkStrategy::DumpApplications(std::string& result) {
    std::set<uint32_t> uids = g_firewall.trusted;
    for (const auto& [uid, app] : netLimitedAppInfo_) {
        uids.insert(uid);
    }
    for (const bool isTrusted : {true, false}) {
        std::string lines;
        size_t count = 0;
        for (const uint32_t uid : uids) {
            if ((g_firewall.trusted.count(uid) != 0) != isTrusted) {
                continue;
            }
            ++count;
            const auto app = netLimitedAppInfo_.find(uid);
            lines += "  uid " + std::to_string(uid) + " " +
                     (app == netLimitedAppInfo_.end()
                          ? std::string("(ended)")
                          : app->second.name + ": " + DescribeExemption(app->second.exemptionFlags)) +
                     "\n";
        }
        result += std::string(isTrusted ? "trust list" : "shut out") + ": " + std::to_string(count) + "\n" + lines;
    }
}

}  // namespace TARN::DevStandbyMgr
