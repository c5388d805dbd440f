#ifndef PLATFORM_TASK_H
#define PLATFORM_TASK_H

#include <cstddef>
#include <new>
#include <type_traits>
#include <utility>

namespace TARN::AppExecFwk {

/// Work that waits in a queue: a callable that is moved and never copied. A small one, a few pointers, lies in the task
/// itself, so that what is posted again and again allocates nothing.
class Task {
public:
    Task() = default;

    template <class Callable, class Function = std::decay_t<Callable>>
    requires(!std::is_same_v<Function, Task> && std::is_invocable_v<Function&>) Task(Callable&& callable) {
        if constexpr (kFits<Function>) {
            new (room_) Function(std::forward<Callable>(callable));
            kind_ = &kInside<Function>;
        } else {
            new (room_) Function*(new Function(std::forward<Callable>(callable)));
            kind_ = &kOutside<Function>;
        }
    }

    Task(Task&& other) noexcept { Take(other); }
    Task& operator=(Task&& other) noexcept {
        if (this != &other) {
            Task dropped(std::move(*this));  // goes last: it may look at this one
            Take(other);
        }
        return *this;
    }
    Task(const Task&) = delete;
    Task& operator=(const Task&) = delete;
    ~Task() {
        if (kind_ != nullptr) {
            kind_->destroy(room_);
        }
    }

    explicit operator bool() const noexcept { return kind_ != nullptr; }
    void operator()() { kind_->run(room_); }

private:
    static constexpr size_t kRoom = 5 * sizeof(void*);

    /// What a task does with its callable.
    struct Kind {
        void (*run)(void* room);
        void (*move)(void* to, void* from) noexcept;  ///< leaves nothing in `from`
        void (*destroy)(void* room) noexcept;
    };

    template <class Function>
    static constexpr bool kFits = sizeof(Function) <= kRoom &&
                                  alignof(Function) <= alignof(void*) && std::is_nothrow_move_constructible_v<Function>;

    template <class Function>
    static constexpr Kind kInside = {[](void* room) { (*static_cast<Function*>(room))(); },
                                     [](void* to, void* from) noexcept {
                                         new (to) Function(std::move(*static_cast<Function*>(from)));
                                         static_cast<Function*>(from)->~Function();
                                     },
                                     [](void* room) noexcept { static_cast<Function*>(room)->~Function(); }};

    template <class Function>
    static constexpr Kind kOutside = {
        [](void* room) { (**static_cast<Function**>(room))(); },
        [](void* to, void* from) noexcept { *static_cast<Function**>(to) = *static_cast<Function**>(from); },
        [](void* room) noexcept { delete *static_cast<Function**>(room); }};

    void Take(Task& other) noexcept {
        kind_ = std::exchange(other.kind_, nullptr);
        if (kind_ != nullptr) {
            kind_->move(room_, other.room_);
        }
    }

    const Kind* kind_ = nullptr;
    alignas(void*) std::byte room_[kRoom];
};

}  // namespace TARN::AppExecFwk

#endif  // PLATFORM_TASK_H
