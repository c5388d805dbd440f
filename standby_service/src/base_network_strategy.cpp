#include "base_network_strategy.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "dump_words.h"
#include "exemption_flag.h"
#include "host_reason.h"
#include "idle_firewall.h"
#include "running_applications.h"
#include "standby_constants.h"
#include "standby_service_impl.h"

namespace TARN::DevStandbyMgr {

namespace {

constexpr uint32_t kTaskTypes = 32;
constexpr size_t kFirewalls = 2;

/// The one firewall of the phone, as all network strategies see it, beside the two fields that derived classes share.
struct SharedFirewall {
    IdleFirewall device;
    bool isWanted = false;
    bool isStandbysTurn = false;  ///< the applications were collected for deep standby, not for the user's sleep
    BaseNetworkStrategy* inCharge = nullptr;                 ///< who follows changes: the last that was asked for it
    std::array<BaseNetworkStrategy*, kFirewalls> live = {};  ///< who brings the rules: those that hear messages
    std::set<uint32_t>* asked = nullptr;                     ///< collects whom a rule would allow
    uint8_t unanswered = 0;              ///< bits of Question that failed when the applications were collected
    std::optional<FirewallReason> told;  ///< the last reason
};

SharedFirewall g_firewall;

RunningApplications& Applications() {
    return StandbyServiceImpl::GetInstance()->Applications();
}

std::set<uint32_t> RunningUids() {
    std::set<uint32_t> uids;
    if (Applications().Update() == ERR_OK) {
        for (const auto& [uid, app] : Applications().ByUid()) {
            uids.insert(static_cast<uint32_t>(uid));
        }
    }
    return uids;
}

bool IsExempting(uint32_t taskType, int32_t mask) {
    return taskType < kTaskTypes && ((static_cast<uint32_t>(mask) >> taskType) & 1U) != 0;
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
    if (g_firewall.device.IsOn()) {
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
    if (enableFirewall && g_firewall.device.IsOn()) {
        idlePolicyStatus_ = g_firewall.device.Switch(true);  // says it once more; its list follows changes by itself
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
    if (g_firewall.inCharge == this && (g_firewall.isWanted || !g_firewall.device.IsGone())) {
        static_cast<void>(Settle());
    }
}

/// Brings the device to what is wanted. What it refuses now is tried again later.
ErrCode BaseNetworkStrategy::Settle() {
    const ErrCode status = g_firewall.isWanted ? PutUp() : TakeDown();
    isFirewallEnabled_ = g_firewall.device.IsOn();
    if (status != ERR_OK) {
        StandbyServiceImpl::GetInstance()->RefreshLater();
    }
    return status;
}

ErrCode BaseNetworkStrategy::PutUp() {
    const bool isSwitching = !g_firewall.device.IsOn();
    std::set<uint32_t> allowed;
    const ErrCode derived = DeriveAllowed(allowed);
    if (derived != ERR_OK && isSwitching) {
        return derived;  // a policy without its list would cut off everybody
    }
    if (derived != ERR_OK || !TellTrustlist(allowed, isSwitching)) {
        StandbyServiceImpl::GetInstance()->RefreshLater();  // the policy goes on without waiting for the list
    }
    return isSwitching ? g_firewall.device.Switch(true) : ERR_OK;
}

ErrCode BaseNetworkStrategy::TakeDown() {
    const bool isSwitching = !g_firewall.device.IsOff();
    if (isSwitching) {
        if (const ErrCode status = g_firewall.device.Switch(false); status != ERR_OK) {
            return status;  // and whoever is on the list of a policy that stays needs it
        }
    }
    if (!TellTrustlist({}, isSwitching)) {
        StandbyServiceImpl::GetInstance()->RefreshLater();
    }
    return ERR_OK;
}

/// False when the device did not confirm its list.
bool BaseNetworkStrategy::TellTrustlist(const std::set<uint32_t>& wanted, bool isSwitching) {
    return g_firewall.device.Bring(
        wanted, isSwitching ? std::optional(g_firewall.isWanted) : std::nullopt,
        [this](const std::vector<uint32_t>& uids, bool isAdded) { SetFirewallAllowedList(uids, isAdded); });
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
    if (StandbyServiceImpl::GetInstance()->WantsReasons()) {
        judge->TellReason(status, allowed);
    }
    return status;
}

/// Tells whom the firewall lets through, or why that is not known, if it is other than told before.
void BaseNetworkStrategy::TellReason(ErrCode status, const std::set<uint32_t>& allowed) const {
    FirewallReason reason;
    reason.failedQuestion = DescribeQuestions(g_firewall.unanswered);
    if (status != ERR_OK) {
        reason.isDeepStandby = kind_ == Firewall::DEEP_STANDBY;
    } else {
        reason.isDeepStandby = g_firewall.isStandbysTurn;
        for (const auto& [uid, app] : netLimitedAppInfo_) {
            reason.apps.push_back(
                {static_cast<int32_t>(uid), -1, app.name, app.exemptionFlags, allowed.count(uid) != 0});
        }
        std::sort(reason.apps.begin(), reason.apps.end(),
                  [](const AppVerdict& one, const AppVerdict& other) { return one.uid < other.uid; });
    }
    if (g_firewall.told != reason) {
        g_firewall.told = std::move(reason);
        StandbyServiceImpl::GetInstance()->TellReason(*g_firewall.told);
    }
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
    const bool isOff = g_firewall.device.IsOff() || g_firewall.device.Switch(false) == ERR_OK;
    if (!isOff || !g_firewall.device.Empty(RunningUids)) {
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
    const ErrCode status = Applications().Update();
    g_firewall.unanswered = Applications().Unanswered() & (Question::APPLICATIONS | Question::SYSTEM);
    if (status != ERR_OK) {
        return status;
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
    const uint8_t failed =
        StandbyServiceImpl::GetInstance()->FetchExemptions(AllowType::NETWORK, "NETWORK", allowed, restricted);
    g_firewall.unanswered |= failed;
    if (failed != 0) {
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
        g_firewall.unanswered |= Applications().Unanswered();
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
        const auto live = std::find_if(g_firewall.live.begin(), g_firewall.live.end(),
                                       [](const auto* one) { return one != nullptr; });
        teller = live == g_firewall.live.end() ? this : *live;
    }
    if (teller != this) {
        result += "told by the one in charge\n";  // the firewall is one
        return;
    }
    result += "firewall: " + g_firewall.device.Describe(g_firewall.isWanted) + "\n";
    if (g_firewall.isWanted || !g_firewall.device.IsOff()) {
        result += g_firewall.isStandbysTurn ? "rule: deep standby\n" : "rule: user sleep, configured exemptions only\n";
        DumpApplications(result);
    } else if (const size_t left = g_firewall.device.Trusted().size(); left != 0) {
        result += "trust list: " + std::to_string(left) + " left, to be taken off\n";
    }
}

void BaseNetworkStrategy::DumpApplications(std::string& result) {
    const std::set<uint32_t>& trusted = g_firewall.device.Trusted();
    std::set<uint32_t> uids = trusted;
    for (const auto& [uid, app] : netLimitedAppInfo_) {
        uids.insert(uid);
    }
    for (const bool isTrusted : {true, false}) {
        std::string lines;
        size_t count = 0;
        for (const uint32_t uid : uids) {
            if ((trusted.count(uid) != 0) != isTrusted) {
                continue;
            }
            ++count;
            const auto app = netLimitedAppInfo_.find(uid);
            lines += "  uid " + std::to_string(uid) + " ";
            if (app == netLimitedAppInfo_.end()) {
                lines += "(ended)\n";
                continue;
            }
            lines += app->second.name + ": " + DescribeExemption(app->second.exemptionFlags);
            lines += !isTrusted && IsExempted(app->second.exemptionFlags) ? ", which is not enough now\n" : "\n";
        }
        result += std::string(isTrusted ? "trust list" : "shut out") + ": " + std::to_string(count) + "\n" + lines;
    }
}

}  // namespace TARN::DevStandbyMgr
