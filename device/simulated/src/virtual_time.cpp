#include "virtual_time.h"

#include <algorithm>

namespace TARN::Simulated {

VirtualTime::Ticket VirtualTime::Post(int64_t dueMs, Work work, std::string name, const void* owner) {
    const std::lock_guard lock(mutex_);
    const Ticket ticket(std::max(dueMs, NowMs()), arrivals_++);
    const auto entry = queue_.emplace(ticket, Entry{std::move(work), std::move(name), owner}).first;
    if (!entry->second.name.empty()) {
        named_.emplace(entry->second.name, ticket);
    }
    return ticket;
}

// Work is destroyed outside the lock: what it holds may post or cancel in its destructor.
bool VirtualTime::Cancel(const Ticket& ticket) {
    std::map<Ticket, Entry>::node_type dropped;
    const std::lock_guard lock(mutex_);
    dropped = queue_.extract(ticket);
    if (dropped.empty()) {
        return false;
    }
    ForgetName(dropped.mapped().name, ticket);
    return true;
}

void VirtualTime::CancelNamed(const std::string& name, const void* owner) {
    std::map<Ticket, Entry> dropped;
    const std::lock_guard lock(mutex_);
    const auto [first, last] = named_.equal_range(name);
    for (auto it = first; it != last;) {
        const auto entry = queue_.find(it->second);
        if (entry->second.owner == owner) {
            it = named_.erase(it);  // before its name, which lies in the entry
            dropped.insert(queue_.extract(entry));
        } else {
            ++it;
        }
    }
}

void VirtualTime::CancelOwned(const void* owner) {
    std::map<Ticket, Entry> dropped;
    const std::lock_guard lock(mutex_);
    for (auto it = queue_.begin(); it != queue_.end();) {
        const auto entry = it++;
        if (entry->second.owner == owner) {
            ForgetName(entry->second.name, entry->first);
            dropped.insert(queue_.extract(entry));
        }
    }
}

void VirtualTime::Clear() {
    std::map<Ticket, Entry> dropped;
    const std::lock_guard lock(mutex_);
    named_.clear();
    dropped.swap(queue_);
}

void VirtualTime::RunBefore(int64_t ms) {
    while (RunNext(ms - 1)) {
    }
    nowMs_.store(std::max(ms, NowMs()), std::memory_order_relaxed);
}

void VirtualTime::RunThrough(int64_t ms) {
    while (RunNext(ms)) {
    }
    nowMs_.store(std::max(ms, NowMs()), std::memory_order_relaxed);
}

bool VirtualTime::RunNext(int64_t lastDueMs) {
    std::map<Ticket, Entry>::node_type next;
    {
        const std::lock_guard lock(mutex_);
        if (queue_.empty() || queue_.begin()->first.first > lastDueMs) {
            return false;
        }
        next = queue_.extract(queue_.begin());
        ForgetName(next.mapped().name, next.key());
    }
    nowMs_.store(next.key().first, std::memory_order_relaxed);
    next.mapped().work();
    return true;
}

void VirtualTime::ForgetName(const std::string& name, const Ticket& ticket) {
    if (name.empty()) {
        return;
    }
    const auto [first, last] = named_.equal_range(name);
    const auto found = std::find_if(first, last, [&ticket](const auto& entry) { return entry.second == ticket; });
    if (found != last) {
        named_.erase(found);
    }
}

size_t VirtualTime::Waiting() const {
    const std::lock_guard lock(mutex_);
    return queue_.size();
}

}  // namespace TARN::Simulated
