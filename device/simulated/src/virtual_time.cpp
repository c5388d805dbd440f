#include "virtual_time.h"

#include <algorithm>
#include <utility>

namespace TARN::Simulated {

namespace {

constexpr size_t kChildren = 4;  // a shallow heap: fewer moves for each piece of work

}  // namespace

VirtualTime::Ticket VirtualTime::Post(int64_t dueMs, Work&& work, std::string_view name, const void* owner) {
    const std::lock_guard lock(mutex_);
    const uint32_t index = FreeSlot();
    Slot& slot = slots_[index];
    slot.work = std::move(work);
    slot.owner = owner;
    slot.arrival = arrivals_++;
    if (!name.empty()) {
        JoinName(index, name);
    }
    heap_.emplace_back();
    Raise(heap_.size() - 1, {std::max(dueMs, NowMs()), slot.arrival, index});
    return {index, slot.arrival};
}

// Work is destroyed outside the lock: what it holds may post or cancel in its destructor.
bool VirtualTime::Cancel(const Ticket& ticket) {
    Work dropped;
    const std::lock_guard lock(mutex_);
    if (ticket.slot >= slots_.size() || slots_[ticket.slot].at == kNone ||
        slots_[ticket.slot].arrival != ticket.arrival) {
        return false;
    }
    dropped = Take(ticket.slot);
    return true;
}

void VirtualTime::CancelNamed(std::string_view name, const void* owner) {
    Work dropped;  // mostly there is one, and then nothing is allocated
    std::vector<Work> others;
    const std::lock_guard lock(mutex_);
    const Names::value_type* named = FindName(name);
    for (uint32_t index = named == nullptr ? kNone : named->second; index != kNone;) {
        const uint32_t next = slots_[index].next;
        if (slots_[index].owner == owner) {
            if (dropped) {
                others.push_back(Take(index));
            } else {
                dropped = Take(index);
            }
        }
        index = next;
    }
}

void VirtualTime::CancelOwned(const void* owner) {
    std::vector<Work> dropped;
    const std::lock_guard lock(mutex_);
    for (uint32_t index = 0; index < slots_.size(); ++index) {
        if (slots_[index].at != kNone && slots_[index].owner == owner) {
            dropped.push_back(Take(index));
        }
    }
}

void VirtualTime::Clear() {
    std::vector<Slot> dropped;
    const std::lock_guard lock(mutex_);
    dropped.swap(slots_);
    heap_.clear();
    names_.clear();
    latestName_ = nullptr;
    firstFree_ = kNone;
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
    std::unique_lock lock(mutex_);
    if (heap_.empty() || heap_.front().dueMs > lastDueMs) {
        return false;
    }
    nowMs_.store(heap_.front().dueMs, std::memory_order_relaxed);
    Work work = Take(heap_.front().slot);
    lock.unlock();
    work();
    return true;
}

/// Takes waiting work out of the queue.
VirtualTime::Work VirtualTime::Take(uint32_t slot) {
    Slot& taken = slots_[slot];
    const size_t hole = taken.at;
    LeaveName(taken);
    taken.at = kNone;
    taken.next = std::exchange(firstFree_, slot);
    const Place last = heap_.back();
    heap_.pop_back();
    if (hole < heap_.size()) {
        if (last < heap_[hole]) {
            Raise(hole, last);
        } else {
            Sink(hole, last);
        }
    }
    return std::move(taken.work);
}

void VirtualTime::Put(size_t at, const Place& place) {
    heap_[at] = place;
    slots_[place.slot].at = static_cast<uint32_t>(at);
}

/// Finds the place for one that may have to run earlier than those before it.
void VirtualTime::Raise(size_t at, const Place& place) {
    for (; at > 0; at = (at - 1) / kChildren) {
        const Place& parent = heap_[(at - 1) / kChildren];
        if (!(place < parent)) {
            break;
        }
        Put(at, parent);
    }
    Put(at, place);
}

/// Finds the place for one that may have to run later than those behind it.
void VirtualTime::Sink(size_t at, const Place& place) {
    for (;;) {
        const size_t first = at * kChildren + 1;
        if (first >= heap_.size()) {
            break;
        }
        const auto begin = heap_.begin() + static_cast<ptrdiff_t>(first);
        const auto end = heap_.begin() + static_cast<ptrdiff_t>(std::min(first + kChildren, heap_.size()));
        const auto least = std::min_element(begin, end);
        if (!(*least < place)) {
            break;
        }
        Put(at, *least);
        at = static_cast<size_t>(least - heap_.begin());
    }
    Put(at, place);
}

uint32_t VirtualTime::FreeSlot() {
    if (firstFree_ == kNone) {
        slots_.emplace_back();
        heap_.reserve(slots_.capacity());  // it never holds more: nothing fails half-way through a post
        return static_cast<uint32_t>(slots_.size() - 1);
    }
    return std::exchange(firstFree_, slots_[firstFree_].next);
}

/// A name that was posted before. Mostly it is the one of the last time: who posts a task anew has just taken the
/// waiting one back.
VirtualTime::Names::value_type* VirtualTime::FindName(std::string_view name) {
    if (latestName_ == nullptr || latestName_->first != name) {
        const auto named = names_.find(name);
        if (named == names_.end()) {
            return nullptr;
        }
        latestName_ = &*named;
    }
    return latestName_;
}

void VirtualTime::JoinName(uint32_t slot, std::string_view name) {
    Names::value_type* named = FindName(name);
    if (named == nullptr) {
        named = latestName_ = &*names_.emplace(name, kNone).first;
    }
    slots_[slot].name = named;
    slots_[slot].previous = kNone;
    slots_[slot].next = std::exchange(named->second, slot);
    if (slots_[slot].next != kNone) {
        slots_[slots_[slot].next].previous = slot;
    }
}

void VirtualTime::LeaveName(Slot& slot) {
    if (slot.name == nullptr) {
        return;
    }
    (slot.previous == kNone ? slot.name->second : slots_[slot.previous].next) = slot.next;
    if (slot.next != kNone) {
        slots_[slot.next].previous = slot.previous;
    }
    slot.name = nullptr;
}

size_t VirtualTime::Waiting() const {
    const std::lock_guard lock(mutex_);
    return heap_.size();
}

}  // namespace TARN::Simulated
