#include "watched_arguments.h"

namespace agent::watch {

bool Argument<int32_t *>::finish(const Call &call, int32_t result)
{
    guarded_.check(call);
    if (result == 0 && guarded_.value < 0 && call.facts().counts) {
        call.fault("the count is " + std::to_string(guarded_.value));
    }
    const bool wrote = *own_ != guarded_.value;
    *own_ = guarded_.value;
    return wrote;
}

Argument<char *>::Argument(const Call &call, char *own)
    : own_(own), width_(call.facts().text_width), may_fill_size_(call.facts().is_size_less_one)
{
}

void Argument<char *>::take_size(int32_t size)
{
    if (width_ == 0) {
        width_ = static_cast<size_t>(size) + (may_fill_size_ ? 1 : 0);
    }
    area_.assign(width_ + 2 * kGuardSize, static_cast<char>(kGuardByte));
    std::copy_n(own_, width_, handed());
}

bool Argument<char *>::finish(const Call &call, int32_t result)
{
    Guard guard;
    std::copy_n(area_.begin(), kGuardSize, guard.begin());
    check_guard(call, guard, "before");
    std::copy_n(area_.end() - kGuardSize, kGuardSize, guard.begin());
    check_guard(call, guard, "behind");
    if (result == 0 && memchr(handed(), '\0', width_) == nullptr) {
        call.fault("the text does not end within its " + std::to_string(width_) + " bytes");
    }
    const bool wrote = memcmp(own_, handed(), width_) != 0;
    std::copy_n(handed(), width_, own_);
    return wrote;
}

bool Argument<char **>::finish(const Call &call, int32_t result)
{
    guarded_.check(call);
    char *answer = guarded_.value;
    if (answer == nullptr) {
        if (result == 0) {
            call.fault("it answers 0 and leaves no answer");
        }
    } else if (!may_be_freed(answer)) {
        call.fault("the answer is not from malloc()");
        answer = nullptr;
    } else if (memchr(answer, '\0', room_of(answer)) == nullptr) {
        call.fault("the answer does not end within its memory");
        answer[0] = '\0';
    }
    *own_ = answer;
    return answer != nullptr;
}

} // namespace agent::watch
