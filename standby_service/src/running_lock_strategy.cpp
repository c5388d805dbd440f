#include "running_lock_strategy.h"

#include <algorithm>
#include <iterator>
#include <list>
#include <utility>

#include "ability_manager_helper.h"
#include "dump_words.h"
#include "exemption_flag.h"
#include "host_reason.h"
#include "local_time.h"
#include "power_mgr_client.h"
#include "running_applications.h"
#include "standby_constants.h"
#include "standby_service_impl.h"
#include "standby_service_log.h"

namespace TARN::DevStandbyMgr {

namespace {

constexpr char kConfigName[] = "RUNNING_LOCK";

RunningApplications& Applications() {
    return StandbyServiceImpl::GetInstance()->Applications();
}

bool IsAutomatic() {
    return StandbyServiceImpl::GetInstance()->IsAutomatic();
}

void RefreshLater() {
    StandbyServiceImpl::GetInstance()->RefreshLater();
}

}  // namespace

void RunningLockStrategy::HandleEvent(const StandbyMessage& message) {
    const auto inSleep = [&message] { return message.Params().GetIntParam(CURRENT_STATE, 0) == StandbyState::SLEEP; };
    switch (message.eventId) {
        case StandbyMessageType::STATE_TRANSIT:
            if (!inSleep() && IsAutomatic()) {
                isWanted_ = false;
                Settle();
            }
            break;
        case StandbyMessageType::PHASE_TRANSIT:
            if (inSleep() && message.Params().GetIntParam(CURRENT_PHASE, 0) >= StandbyPhase::SYS_RES_DEEP &&
                IsAutomatic()) {
                isWanted_ = true;
                Settle();
            }
            break;
        case StandbyMessageType::ALLOW_LIST_CHANGED:
        case StandbyMessageType::BG_TASK_STATUS_CHANGED:
        case StandbyMessageType::HOST_REFRESH:
            if (IsAutomatic()) {
                Settle();
            }
            break;
        default:
            break;
    }
}

ErrCode RunningLockStrategy::OnCreated() {
    isProxied_ = false;
    isWanted_ = false;
    if (IsAutomatic()) {
        LookAtHeld();
        RestoreLeft();  // what a service of before held back when it crashed, or could not restore
    }
    return ERR_OK;
}

ErrCode RunningLockStrategy::OnDestroy() {
    isWanted_ = false;
    Settle();
    return ERR_OK;
}

/// Brings the power manager to what is wanted now.
void RunningLockStrategy::Settle() {
    if (!isHeldKnown_) {
        LookAtHeld();
    }
    if (!isWanted_) {
        unanswered_ = 0;  // nobody is asked any more
        TellReason();
    }
    if (isWanted_ && !isProxied_) {
        StartProxy();
    } else if (isWanted_) {
        FollowChanges();
    } else if (isProxied_) {
        StopProxy();
    } else {
        RestoreLeft();
    }
}

void RunningLockStrategy::StartProxy() {
    Applications().MarkStale();
    if (CollectApps() != ERR_OK) {
        TellReason();
        RefreshLater();
        return;
    }
    isProxied_ = true;
    sinceMs_ = NowMs();
    CollectNatives();
    ProxyAppAndProcess(true);
}

void RunningLockStrategy::StopProxy() {
    ProxyAppAndProcess(false);
    isProxied_ = false;
    ClearProxyRecord();
    refused_.clear();
    owed_.clear();
    RestoreLeft();
}

void RunningLockStrategy::FollowChanges() {
    const std::set<std::string> restrictedBefore = restricted_;
    const ErrCode status = CollectApps();
    TellReason();
    if (status != ERR_OK) {
        RefreshLater();
        return;
    }
    TellApps();
    const std::set<Pair> refused = std::exchange(refused_, {});  // of natives, since applications were just told
    const std::set<Pair> owed = std::exchange(owed_, {});
    static_cast<void>(ProxyRunningLockList(true, {refused.begin(), refused.end()}));
    static_cast<void>(ProxyRunningLockList(false, {owed.begin(), owed.end()}));
    if (restricted_ != restrictedBefore || !areNativesKnown_) {
        RenewNatives();
    } else {
        FollowAllowedNatives();
    }
}

ErrCode RunningLockStrategy::CollectApps() {
    const auto service = StandbyServiceImpl::GetInstance();
    const uint8_t decisive =
        Applications().Update() != ERR_OK
            ? Question::APPLICATIONS
            : service->FetchExemptions(AllowType::RUNNING_LOCK, kConfigName, allowed_, restricted_);
    if (decisive != 0) {
        unanswered_ = decisive;
        return ERR_RUNNING_PROCESSES_UNAVAILABLE;
    }
    if (!Applications().UpdateUse() || !Applications().AreAllClassified()) {
        RefreshLater();
    }
    unanswered_ = Applications().Unanswered();
    std::map<Pair, ProxiedAppInfo> apps;
    for (const auto& [uid, app] : Applications().ByUid()) {
        uint8_t shared = app.isSystem.value_or(false) ? ExemptionFlag::UNRESTRICTED : uint8_t{0};
        shared |= app.taskTypes.empty() ? uint8_t{0} : ExemptionFlag::CONTINUOUS_TASK;
        shared |= app.isForeground ? ExemptionFlag::FOREGROUND : uint8_t{0};
        for (const RunningApplication::Process& process : app.processes) {
            uint8_t flag = shared;
            flag |= allowed_.count(process.name) != 0 ? ExemptionFlag::EXEMPTION : uint8_t{0};
            flag |= restricted_.count(process.name) != 0 ? ExemptionFlag::RESTRICTED : uint8_t{0};
            apps[{process.pid, uid}] = {process.name, uid, process.pid, flag};
        }
    }
    apps_.swap(apps);
    for (const auto& [pair, ended] : apps) {
        if (apps_.count(pair) == 0) {
            held_.erase(pair);  // its locks went with it
        }
    }
    return ERR_OK;
}

/// Holds back the applications that are to be and are not, and restores those that are and are not to be.
void RunningLockStrategy::TellApps() {
    std::vector<Pair> toProxy;
    std::vector<Pair> toRestore;
    for (const auto& [pair, app] : apps_) {
        refused_.erase(pair);  // an application is asked for anew each time
        owed_.erase(pair);
        if (IsExempted(app.exemptionFlag) == (held_.count(pair) != 0)) {
            (IsExempted(app.exemptionFlag) ? toRestore : toProxy).push_back(pair);
        }
    }
    static_cast<void>(ProxyRunningLockList(false, toRestore));
    static_cast<void>(ProxyRunningLockList(true, toProxy));
}

/// Knows the natives of this moment, and who of them is exempted; holds nobody back yet.
void RunningLockStrategy::CollectNatives() {
    isSettingUp_ = true;
    areNativesKnown_ = InitNativeProcInfo() == ERR_OK;
    exemptedNatives_.clear();
    FollowAllowedNatives();
    isSettingUp_ = false;
    if (!areNativesKnown_) {
        RefreshLater();
    }
}

/// Natives that came onto the allow list are exempted, those that left it are no more.
void RunningLockStrategy::FollowAllowedNatives() {
    std::vector<Native> left;
    std::copy_if(exemptedNatives_.begin(), exemptedNatives_.end(), std::back_inserter(left),
                 [this](const Native& native) { return allowed_.count(native.second) == 0; });
    for (const Native& native : left) {
        exemptedNatives_.erase(native);
    }
    if (!left.empty()) {
        TellReason();
    }
    for (const auto& [uid, name] : left) {
        RemoveExemptionFlag(uid, name, ExemptionFlag::EXEMPTION);
    }
    const std::vector<Native> joined = CollectAllowedNatives();
    TellReason();
    for (const auto& [uid, name] : joined) {
        AddExemptionFlag(uid, name, ExemptionFlag::EXEMPTION);
    }
}

/// Knows the natives that the allow list names; those that are new.
std::vector<RunningLockStrategy::Native> RunningLockStrategy::CollectAllowedNatives() {
    std::list<SystemProcessInfo> natives;
    areAllowedNativesKnown_ = allowed_.empty() || AbilityManagerHelper::GetInstance()->GetRunningSystemProcess(natives);
    if (!areAllowedNativesKnown_) {
        STANDBYSERVICE_LOGW("the native processes could not be fetched");
        RefreshLater();
    }
    std::vector<Native> joined;
    for (const SystemProcessInfo& native : natives) {
        if (allowed_.count(native.processName) != 0 &&
            exemptedNatives_.emplace(native.uid, native.processName).second) {
            joined.emplace_back(native.uid, native.processName);
        }
    }
    return joined;
}

/// The natives are collected anew: those that were held back are restored first, since nobody knows them after that.
void RunningLockStrategy::RenewNatives() {
    areAppsLeftAlone_ = true;
    ProxyAppAndProcess(false);
    static_cast<void>(
        ProxyRunningLockList(false, HeldNatives()));  // those that were held back under both orders of their pair
    CollectNatives();
    ProxyAppAndProcess(true);
    areAppsLeftAlone_ = false;
}

void RunningLockStrategy::RestoreLeft() {
    static_cast<void>(ProxyRunningLockList(false, {held_.begin(), held_.end()}));
}

void RunningLockStrategy::LookAtHeld() {
    std::vector<Pair> held;
    const int32_t status = PowerMgr::PowerMgrClient::GetInstance().GetProxiedRunningLocks(held);
    isHeldKnown_ = status == ERR_OK;
    if (isHeldKnown_) {
        held_.insert(held.begin(), held.end());
    } else {
        STANDBYSERVICE_LOGW("the proxied running locks could not be read, err code is %{public}d", status);
        RefreshLater();
    }
}

std::vector<RunningLockStrategy::Pair> RunningLockStrategy::HeldNatives() const {
    std::vector<Pair> natives;
    std::copy_if(held_.begin(), held_.end(), std::back_inserter(natives),
                 [this](const Pair& pair) { return apps_.count(pair) == 0; });
    return natives;
}

ErrCode RunningLockStrategy::InitNativeProcInfo() {
    return ERR_OK;
}

void RunningLockStrategy::ProxyAppAndProcess(bool isProxied) {
    if (areAppsLeftAlone_) {
        return;
    }
    std::vector<Pair> processes;
    for (const auto& [pair, app] : apps_) {
        if (isProxied ? !IsExempted(app.exemptionFlag) && held_.count(pair) == 0 : held_.count(pair) != 0) {
            processes.push_back(pair);
        }
    }
    static_cast<void>(ProxyRunningLockList(isProxied, processes));
}

void RunningLockStrategy::AddExemptionFlag(int32_t uid, const std::string& name, uint8_t flag) {
    ChangeFlag(uid, name, flag, true);
}

void RunningLockStrategy::RemoveExemptionFlag(int32_t uid, const std::string& name, uint8_t flag) {
    ChangeFlag(uid, name, flag, false);
}

void RunningLockStrategy::ChangeFlag(int32_t uid, const std::string& name, uint8_t flag, bool isSet) {
    for (auto& [pair, app] : apps_) {
        if (app.uid == uid && app.name == name) {
            app.exemptionFlag = static_cast<uint8_t>(isSet ? app.exemptionFlag | flag : app.exemptionFlag & ~flag);
        }
    }
    if (isProxied_) {
        TellApps();
    }
}

/// Tells whose running locks count, or why that is not known, if it is other than told before.
void RunningLockStrategy::TellReason() {
    const auto service = StandbyServiceImpl::GetInstance();
    if (!service->WantsReasons()) {
        return;
    }
    constexpr uint8_t kDecisive = Question::APPLICATIONS | Question::ALLOW_LIST | Question::RESTRICT_SET;
    RunningLockReason reason;
    reason.isProxying = isWanted_ && isProxied_;
    const bool lacksNatives = reason.isProxying && !(areNativesKnown_ && areAllowedNativesKnown_);
    reason.failedQuestion = DescribeQuestions(unanswered_ | (lacksNatives ? Question::NATIVES : uint8_t{0}));
    if (reason.isProxying && (unanswered_ & kDecisive) == 0) {
        for (const auto& [pair, app] : apps_) {
            reason.apps.push_back({app.uid, app.pid, app.name, app.exemptionFlag, IsExempted(app.exemptionFlag)});
        }
        for (const auto& [uid, name] : exemptedNatives_) {
            const uint8_t more = restricted_.count(name) != 0 ? ExemptionFlag::RESTRICTED : uint8_t{0};
            reason.apps.push_back({uid, -1, name, static_cast<uint8_t>(ExemptionFlag::EXEMPTION | more), true});
        }
    }
    if (told_ != reason) {
        told_ = std::move(reason);
        service->TellReason(told_);
    }
}

void RunningLockStrategy::ClearProxyRecord() {
    apps_.clear();
    exemptedNatives_.clear();
}

ErrCode RunningLockStrategy::ProxyRunningLockList(bool isProxied,
                                                  const std::vector<std::pair<int32_t, int32_t>>& proxiedAppList) {
    if (proxiedAppList.empty() || (!isProxied && isSettingUp_)) {
        return ERR_OK;
    }
    const ErrCode status = PowerMgr::PowerMgrClient::GetInstance().ProxyRunningLocks(isProxied, proxiedAppList);
    if (status != ERR_OK) {
        STANDBYSERVICE_LOGW("running locks were not %{public}s, err code is %{public}d",
                            isProxied ? "proxied" : "restored", status);
        RefreshLater();
    }
    for (const Pair& pair : proxiedAppList) {
        refused_.erase(pair);
        refused_.erase({pair.second, pair.first});  // derived classes name a single process the other way round
        owed_.erase(pair);
        if (status != ERR_OK) {
            (isProxied ? refused_ : owed_).insert(pair);
        } else if (isProxied) {
            held_.insert(pair);
        } else {
            held_.erase(pair);
        }
    }
    return status;
}

void RunningLockStrategy::ShellDump(const std::vector<std::string>& args, std::string& result) {
    if (!IsDetailDump(args) || !IsAutomatic()) {
        return;
    }
    result += "\n=================RunningLock=========================\n";
    result +=
        "running locks: " + (isProxied_ ? "proxied since " + LocalTimeText(sinceMs_) : std::string("left alone")) +
        "\n";
    for (const bool isHeld : {true, false}) {
        std::string lines;
        size_t count = 0;
        for (const auto& [pair, app] : apps_) {
            if ((held_.count(pair) != 0) != isHeld) {
                continue;
            }
            ++count;
            lines += "  pid " + std::to_string(app.pid) + " uid " + std::to_string(app.uid) + " " + app.name + ": " +
                     DescribeExemption(app.exemptionFlag) + "\n";
        }
        if (isProxied_) {
            result += std::string(isHeld ? "held back" : "not held back") + ": " + std::to_string(count) + "\n" + lines;
        }
    }
    if (isProxied_) {
        result += "natives held back: " + std::to_string(HeldNatives().size()) + "\n";
    } else if (!held_.empty()) {
        result += "still to be restored: " + std::to_string(held_.size()) + "\n";
    }
}

}  // namespace TARN::DevStandbyMgr
